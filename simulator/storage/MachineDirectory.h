#pragma once

// A simulated machine that lives in a folder: machine.json and one .prom file per card (PromCells gives the
// bytes), so that it survives from run to run and can be inspected and copied.
//
// In a run, what a PROM commits goes into its file at once, so a process that is killed leaves what a real
// PROM would hold. Everything else is saved by save() and by nothing else, all of it or nothing. One process
// at a time may change a machine; others may look at it meanwhile. The folder is opened once: whatever its
// name leads to later, the machine stays with the folder that it was opened in.
//
// Failures are MachineError or files::FileError.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "files/Folder.h"
#include "simulator/machine/Machine.h"

namespace simulator {

class MachineDirectory {
  public:
    enum class OnOpening {
        powerUp,      // for a run: switched on if it is off, and what PROMs commit is kept at once
        leaveAsItIs,  // for a change, which nothing shows of before save()
    };

    // A machine without cards, off, in a folder that is not there yet, is empty, or holds nothing but what an
    // interrupted create() left; nothing of the machine is written into it until save(). Throws when the
    // folder holds something else or cannot be created.
    [[nodiscard]] static std::unique_ptr<MachineDirectory> create(const std::filesystem::path& folder);

    // A machine as it was saved. Throws, leaving the files alone, when there is none, when another process
    // has it open, or when a file is not what it should be.
    [[nodiscard]] static std::unique_ptr<MachineDirectory> open(const std::filesystem::path& folder,
                                                                OnOpening onOpening);

    // The same to look at, also while another process has it open.
    [[nodiscard]] static std::unique_ptr<const MachineDirectory> view(const std::filesystem::path& folder);

    MachineDirectory(const MachineDirectory&) = delete;
    MachineDirectory& operator=(const MachineDirectory&) = delete;

    Machine& machine() { return machine_; }
    const Machine& machine() const { return machine_; }

    // Whether another process had the machine open when it was viewed. The cells are then those of that
    // moment, and the rest is what that process saved last.
    bool isInUse() const { return isInUse_; }

    // Whether something written to a path would take the place of one of the machine's own files, by
    // whatever name or link.
    bool owns(const std::filesystem::path& path) const;

    // Takes a card out of a machine that is off; its PROM's file goes with the next save().
    void removeCard(std::size_t index);

    // Saves the machine, cards that were added since included. Throws when a file cannot be written; what
    // could not be written is tried again by the next save(). Throws, too, once all is saved, when a PROM's
    // file was found to have been replaced by something else.
    void save();

  private:
    struct PromFile {
        std::string name;
        bool behind = false;                  // cells have changed that are not in the file
        std::optional<std::string> replaced;  // what was found in its place
    };

    explicit MachineDirectory(const std::filesystem::path& folder) : folder_(folder) {}

    void lock() const;
    void load();
    std::string unusedPromName() const;
    // Keeps track of the card's commits from now on.
    void attachPromFile(Card& card, const std::string& name);
    // Finds out whether the file is what it should be, and writes if so. If not, the file is behind.
    void writeIfIntact(PromFile& file, std::size_t offset, std::span<const uint8_t> bytes) const;

    files::Folder folder_;
    bool isInUse_ = false;
    bool writesThrough_ = false;
    std::vector<std::unique_ptr<PromFile>> promFiles_;  // as many as cards, once attached
    std::vector<std::string> removedPromFiles_;
    Machine machine_;
};

}  // namespace simulator
