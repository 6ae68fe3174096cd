#pragma once

// A simulated machine in a folder: machine.json and one .prom file per card (see PromCells for its bytes), so
// that it survives from run to run and can be inspected and copied.
//
// During a run, every change of a PROM is written to its file at once, so a process that is killed leaves
// what a real PROM would hold. Everything else is saved by save() alone, all of it or nothing. One process at
// a time may change a machine; others may view it meanwhile. The folder is opened once: the machine stays
// with it even if its name leads elsewhere later.
//
// Failures are files::UserError.

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
        powerUp,      // for a run: switched on if it is off, and PROMs write to their files at once
        leaveAsItIs,  // for a change that does not show before save()
    };

    // A machine without cards, switched off, in a folder that is new, empty, or holds only what an
    // interrupted create() left. Nothing is written until save(). Throws if the folder holds anything else or
    // cannot be created.
    [[nodiscard]] static std::unique_ptr<MachineDirectory> create(const std::filesystem::path& folder);

    // A machine as it was saved. Throws, leaving the files alone, if there is none, if another process has it
    // open, or if a file is not what it should be.
    [[nodiscard]] static std::unique_ptr<MachineDirectory> open(const std::filesystem::path& folder,
                                                                OnOpening onOpening);

    // The same, to view only, even while another process has it open.
    [[nodiscard]] static std::unique_ptr<const MachineDirectory> view(const std::filesystem::path& folder);

    MachineDirectory(const MachineDirectory&) = delete;
    MachineDirectory& operator=(const MachineDirectory&) = delete;

    Machine& machine() { return machine_; }
    const Machine& machine() const { return machine_; }

    // Whether another process had the machine open when it was viewed. The cells are then as they were at
    // that moment, and the rest is what was saved last.
    bool isInUse() const { return isInUse_; }

    // Whether writing to a path would replace one of the machine's own files, by whatever name or link.
    bool owns(const std::filesystem::path& path) const;

    // Removes a card; the machine must be off. The next save() deletes its PROM's file.
    void removeCard(std::size_t index);

    // Saves the machine, including cards that were added. Throws if a file cannot be written; the next save()
    // tries again. Also throws, after everything has been saved, if a PROM's file had been replaced by
    // something else.
    void save();

  private:
    struct PromFile {
        std::string name;
        bool behind = false;                  // the file lacks some changes
        std::optional<std::string> replaced;  // says what was found in its place
    };

    explicit MachineDirectory(const std::filesystem::path& folder) : folder_(folder) {}

    void lock() const;
    void load();
    std::string unusedPromName() const;
    // Writes the card's changes to the file from now on, or notes that it is behind.
    void attachPromFile(Card& card, const std::string& name);
    void attachNewPromFiles();
    // Writes if the file is still what it should be; if not, marks it as behind.
    void writeIfIntact(PromFile& file, std::size_t offset, std::span<const uint8_t> bytes) const;
    // Call once every file is up to date. Throws if one had been replaced.
    void finishSave();

    files::Folder folder_;
    bool isInUse_ = false;
    bool writesThrough_ = false;
    std::vector<std::unique_ptr<PromFile>> promFiles_;  // as many as cards, once attached
    std::vector<std::string> removedPromFiles_;
    Machine machine_;
};

}  // namespace simulator
