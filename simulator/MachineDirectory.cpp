#include "simulator/MachineDirectory.h"

#include <algorithm>
#include <span>
#include <system_error>
#include <utility>

#include "simulator/MachineError.h"
#include "simulator/StoredMachine.h"

namespace simulator {
namespace {

constexpr const char* kMachineFile = "machine.json";

StoredMachine readMachine(const std::filesystem::path& path) {
    const std::vector<uint8_t> text = readFile(path);
    try {
        return decodeMachine({reinterpret_cast<const char*>(text.data()), text.size()});
    } catch (const MachineError& error) {
        throw MachineError(path.string() + ": " + error.what());
    }
}

PromCells readCells(const std::filesystem::path& path) {
    std::vector<uint8_t> image = readFile(path);
    if (image.size() != PromCells::kImageBytes)
        throw MachineError(path.string() + ": is " + std::to_string(image.size()) +
                           " bytes long instead of " + std::to_string(PromCells::kImageBytes) + ".");
    return PromCells(std::move(image));
}

}  // namespace

MachineDirectory::MachineDirectory(std::filesystem::path folder)
    : folder_(std::move(folder)), lock_(folder_) {}

std::unique_ptr<MachineDirectory> MachineDirectory::create(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw MachineError(folder.string() + ": could not be made (" + error.message() + ").");
    std::unique_ptr<MachineDirectory> directory(new MachineDirectory(folder));
    if (!std::filesystem::is_empty(folder, error))
        throw MachineError(folder.string() + ": is not an empty folder.");
    return directory;
}

std::unique_ptr<MachineDirectory> MachineDirectory::open(const std::filesystem::path& folder,
                                                         OnOpening onOpening) {
    std::unique_ptr<MachineDirectory> directory(new MachineDirectory(folder));
    directory->load();
    if (onOpening == OnOpening::powerUp)
        directory->machine_.powerOn();
    return directory;
}

void MachineDirectory::load() {
    const StoredMachine stored = readMachine(folder_ / kMachineFile);
    const auto cellsOf = [this](const StoredMachine::Card& card) {
        return readCells(folder_ / card.promFile);
    };
    restoreMachine(machine_, stored, cellsOf, [this](Card& card, const StoredMachine::Card& storedCard) {
        attachPromFile(card, {storedCard.promFile, false});
    });
}

std::string MachineDirectory::unusedPromName() const {
    for (std::size_t number = promFiles_.size() + 1;; ++number) {
        std::string name = "card-" + std::to_string(number) + ".prom";
        const auto isTaken = [&](const auto& file) { return file->name == name; };
        if (std::ranges::none_of(promFiles_, isTaken))
            return name;
    }
}

void MachineDirectory::attachPromFile(Card& card, PromFile promFile) {
    PromFile& file = *promFiles_.emplace_back(std::make_unique<PromFile>(std::move(promFile)));
    card.cells().setWriteThrough([this, &file](std::size_t offset, std::span<const uint8_t> bytes) {
        if (file.behind)
            return;
        try {
            writeIntoFile(folder_ / file.name, offset, bytes);
        } catch (const MachineError&) {
            // Nobody between here and the program could report it; save() tries again and does.
            file.behind = true;
        }
    });
}

void MachineDirectory::removeCard(std::size_t index) {
    machine_.removeCard(index);
    if (index >= promFiles_.size())
        return;
    removedPromFiles_.push_back(promFiles_[index]->name);
    promFiles_.erase(promFiles_.begin() + static_cast<std::ptrdiff_t>(index));
}

void MachineDirectory::save() {
    StoredMachine stored = describeMachine(machine_);
    for (std::size_t index = 0; index < machine_.cardCount(); ++index) {
        Card& card = machine_.card(index);
        if (index == promFiles_.size())
            attachPromFile(card, {unusedPromName(), true});
        PromFile& file = *promFiles_[index];
        if (file.behind)
            replaceFile(folder_ / file.name, card.cells().image());
        file.behind = false;
        stored.cards[index].promFile = file.name;
    }
    const std::string text = encodeMachine(stored);
    replaceFile(folder_ / kMachineFile, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    // Only now that no description names them any more.
    for (const std::string& name : std::exchange(removedPromFiles_, {}))
        removeFile(folder_ / name);
}

}  // namespace simulator
