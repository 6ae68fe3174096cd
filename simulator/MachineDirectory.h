#pragma once

// A simulated machine that lives in a folder: machine.json and one .prom file per card (PromCells gives the
// bytes), so that it survives from run to run and can be inspected and copied.
//
// What a PROM commits goes into its file at once, so a process that is killed leaves what a real PROM would
// hold. Everything else is saved by save() and by nothing else. One process at a time has a machine open.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "simulator/Files.h"
#include "simulator/Machine.h"

namespace simulator {

class MachineDirectory {
  public:
    enum class OnOpening { powerUp, leaveAsItIs };  // what happens to a machine that is off

    // A machine without cards, off, in a folder that is empty or not there yet; nothing is written into it
    // until save(). Throws MachineError when the folder holds something or cannot be made.
    [[nodiscard]] static std::unique_ptr<MachineDirectory> create(const std::filesystem::path& folder);

    // A machine as it was saved. Throws MachineError, leaving the files alone, when there is none, when
    // another process has it open, or when a file is not what it should be.
    [[nodiscard]] static std::unique_ptr<MachineDirectory> open(const std::filesystem::path& folder,
                                                                OnOpening onOpening);

    MachineDirectory(const MachineDirectory&) = delete;
    MachineDirectory& operator=(const MachineDirectory&) = delete;

    [[nodiscard]] Machine& machine() { return machine_; }

    // Takes a card out of a machine that is off; its PROM's file goes with the next save().
    void removeCard(std::size_t index);

    // Saves the machine, cards that were added since included. Throws MachineError when a file cannot be
    // written; what could not be written is tried again by the next save().
    void save();

  private:
    struct PromFile {
        std::string name;
        bool behind;  // the file is not there yet, or a commit could not be written into it
    };

    explicit MachineDirectory(std::filesystem::path folder);

    void load();
    [[nodiscard]] std::string unusedPromName() const;
    // Has the card's commits written into a file from now on.
    void attachPromFile(Card& card, PromFile file);

    std::filesystem::path folder_;
    FolderLock lock_;
    std::vector<std::unique_ptr<PromFile>> promFiles_;  // as many as cards, once attached
    std::vector<std::string> removedPromFiles_;
    Machine machine_;
};

}  // namespace simulator
