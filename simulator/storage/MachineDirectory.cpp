#include "simulator/storage/MachineDirectory.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <span>
#include <system_error>
#include <tuple>
#include <utility>

#include "files/Commit.h"
#include "files/FileError.h"
#include "files/OutputFile.h"
#include "files/UserError.h"
#include "simulator/storage/MachineFiles.h"
#include "simulator/storage/StoredMachine.h"

namespace simulator {
namespace {

namespace fs = std::filesystem;
using files::FileError;
using files::Folder;

// A try fails only if a save happens during it, and a run has a handful of saves.
constexpr int kMostViews = 100;

bool isUnmade(const Folder& folder) {
    return std::ranges::all_of(folder.names(), files::belongsToCommits);
}

files::OpenFile machineFile(const Folder& folder) {
    try {
        return files::committedFile(folder, kMachineFile);
    } catch (const FileError& error) {
        if (error.systemError() != ENOENT) {
            throw;
        }
        throw FileError(folder.path(), isUnmade(folder)
                                           ? R"(holds no machine yet; "cardsim make" makes one there)"
                                           : "is not a simulated machine, it has no machine.json");
    }
}

StoredMachine readMachine(const Folder& folder) {
    const files::OpenFile file = machineFile(folder);
    const std::vector<uint8_t> text = file.read();
    try {
        return decodeMachine({reinterpret_cast<const char*>(text.data()), text.size()});
    } catch (const files::UserError& error) {
        throw files::UserError(file.name().string() + ": " + error.what());
    }
}

void requirePromSize(const files::OpenFile& file) {
    if (const auto bytes = file.status().st_size; bytes != PromCells::kBytes) {
        throw FileError(file.name(), "is " + std::to_string(bytes) + " bytes long instead of " +
                                         std::to_string(PromCells::kBytes));
    }
}

PromCells readCells(const Folder& folder, const std::string& name) {
    const files::OpenFile file = files::committedFile(folder, name);
    requirePromSize(file);
    return PromCells(file.read());
}

// Identifies the save that a reader sees.
auto versionOf(const Folder& folder) {
    const struct stat status = machineFile(folder).status();
    return std::tuple(status.st_ino, status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
}

}  // namespace

void MachineDirectory::lock() const {
    if (!folder_.lock(Folder::Purpose::writing)) {
        throw FileError(folder_.path(), "the simulated machine is in use by another program");
    }
}

std::unique_ptr<MachineDirectory> MachineDirectory::create(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw FileError(folder, "could not be created", error.value());
    }
    std::unique_ptr<MachineDirectory> directory(new MachineDirectory(folder));
    directory->lock();
    if (!isUnmade(directory->folder_)) {
        throw FileError(folder, "is not an empty folder");
    }
    return directory;
}

std::unique_ptr<MachineDirectory> MachineDirectory::open(const fs::path& folder, OnOpening onOpening) {
    std::unique_ptr<MachineDirectory> directory(new MachineDirectory(folder));
    directory->lock();
    directory->writesThrough_ = onOpening == OnOpening::powerUp;
    directory->load();
    files::recover(directory->folder_, kMachineFile);
    if (onOpening == OnOpening::powerUp) {
        directory->machine_.powerOn();
    }
    return directory;
}

std::unique_ptr<const MachineDirectory> MachineDirectory::view(const fs::path& folder) {
    for (int views = 1;; ++views) {
        std::unique_ptr<MachineDirectory> directory(new MachineDirectory(folder));
        directory->isInUse_ = !directory->folder_.lock(Folder::Purpose::reading);
        const auto before = versionOf(directory->folder_);
        std::exception_ptr failure;
        try {
            directory->load();
        } catch (const std::runtime_error&) {
            failure = std::current_exception();
        }
        if (directory->isInUse_ && versionOf(directory->folder_) != before && views < kMostViews) {
            continue;  // parts of two saves
        }
        if (failure) {
            std::rethrow_exception(failure);
        }
        directory->folder_.unlock();
        return directory;
    }
}

void MachineDirectory::load() {
    const StoredMachine stored = readMachine(folder_);
    const auto cellsOf = [this](const StoredMachine::Card& card) {
        return readCells(folder_, card.promFile);
    };
    restoreMachine(machine_, stored, cellsOf, [this](Card& card, const StoredMachine::Card& storedCard) {
        attachPromFile(card, storedCard.promFile);
    });
}

bool MachineDirectory::owns(const fs::path& path) const {
    const fs::path goal = files::behindLinks(path);
    std::vector<std::string> own{kMachineFile};
    for (const auto& file : promFiles_) {
        own.push_back(file->name);
    }
    const bool isHere = folder_.isAt(goal.parent_path());
    if (isHere && files::belongsToCommits(goal.filename())) {
        return true;
    }
    return std::ranges::any_of(own, [&](const std::string& name) {
        return (isHere && goal.filename() == name) || folder_.isFileAt(name, goal);
    });
}

std::string MachineDirectory::unusedPromName() const {
    for (std::size_t number = promFiles_.size() + 1;; ++number) {
        std::string name = "card-" + std::to_string(number) + kPromExtension;
        const auto isTaken = [&](const auto& file) { return file->name == name; };
        // A file of this name that is not the machine's belongs to somebody else.
        if (std::ranges::none_of(promFiles_, isTaken) && !folder_.status(name)) {
            return name;
        }
    }
}

void MachineDirectory::attachPromFile(Card& card, const std::string& name) {
    PromFile& file = *promFiles_.emplace_back(std::make_unique<PromFile>());
    file.name = name;
    card.cells().setWriteThrough([this, &file](std::size_t offset, std::span<const uint8_t> bytes) {
        if (writesThrough_ && !file.behind) {
            writeIfIntact(file, offset, bytes);
        } else {
            file.behind = true;
        }
    });
}

void MachineDirectory::writeIfIntact(PromFile& file, std::size_t offset,
                                     std::span<const uint8_t> bytes) const {
    // A failure cannot be reported from here; save() tries again and reports it.
    try {
        const files::OpenFile open = folder_.file(file.name, Folder::Purpose::writing);
        requirePromSize(open);
        open.write(offset, bytes);
    } catch (const FileError& error) {
        file.behind = true;
        if (error.systemError() == 0 || error.systemError() == ENOENT) {
            file.replaced = error.what();
        }
    }
}

void MachineDirectory::removeCard(std::size_t index) {
    machine_.removeCard(index);
    if (index >= promFiles_.size()) {
        return;
    }
    removedPromFiles_.push_back(promFiles_[index]->name);
    promFiles_.erase(promFiles_.begin() + static_cast<std::ptrdiff_t>(index));
}

void MachineDirectory::attachNewPromFiles() {
    for (std::size_t index = promFiles_.size(); index < machine_.cardCount(); ++index) {
        attachPromFile(machine_.card(index), unusedPromName());
        promFiles_.back()->behind = true;
    }
}

void MachineDirectory::save() {
    attachNewPromFiles();
    StoredMachine stored = describeMachine(machine_);
    for (std::size_t index = 0; index < promFiles_.size(); ++index) {
        stored.cards[index].promFile = promFiles_[index]->name;
    }
    const std::string text = encodeMachine(stored);
    for (const auto& file : promFiles_) {
        if (!file->behind) {
            writeIfIntact(*file, 0, {});
        }
    }
    // First, so that a folder with any file of a machine holds a machine.
    files::Commit commit(folder_, kMachineFile);
    commit.put(kMachineFile, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    for (std::size_t index = 0; index < promFiles_.size(); ++index) {
        if (promFiles_[index]->behind) {
            commit.put(promFiles_[index]->name, machine_.card(index).cells().bytes());
        }
    }
    commit.take();
    for (const std::string& name : std::exchange(removedPromFiles_, {})) {
        if (folder_.status(name)) {
            folder_.remove(name);
        }
    }
    finishSave();
}

void MachineDirectory::finishSave() {
    std::string replaced;
    for (const auto& file : promFiles_) {
        file->behind = false;
        replaced += file->replaced ? *file->replaced + " It was rewritten. " : "";
        file->replaced.reset();
    }
    if (!replaced.empty()) {
        replaced.pop_back();
        throw files::UserError(replaced);
    }
}

}  // namespace simulator
