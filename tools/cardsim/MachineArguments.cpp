#include "tools/cardsim/MachineArguments.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "files/PrintableText.h"
#include "files/UserError.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"

namespace cardsim {

std::unique_ptr<simulator::MachineDirectory> openMachine(const std::string& folder) {
    using simulator::MachineDirectory;
    return MachineDirectory::open(folder, MachineDirectory::OnOpening::leaveAsItIs);
}

std::unique_ptr<const simulator::MachineDirectory> viewMachine(const std::string& folder) {
    return simulator::MachineDirectory::view(folder);
}

void requireForeign(const simulator::MachineDirectory& directory, const std::string& file) {
    if (directory.owns(file)) {
        throw files::UserError(file + ": is one of the machine's own files.");
    }
}

std::size_t indexOfCard(const simulator::Machine& machine, std::size_t number) {
    if (number < 1 || number > machine.cardCount()) {
        throw files::UserError("There is no card " + std::to_string(number) + "; the machine has " +
                               std::to_string(machine.cardCount()) + ".");
    }
    return number - 1;
}

std::string nameOf(const simulator::Card& card) {
    return files::printable(card.board().name + " in " + card.board().location);
}

CLI::Option* addFolder(CLI::App& command, std::string& folder) {
    return command.add_option("folder", folder, "The machine's folder")
        ->required()
        ->check(tools::checkPath)
        ->type_name("DIR");
}

CLI::Option* addCardNumber(CLI::App& command, std::size_t& number) {
    return command.add_option("card", number, "The card's number, as shown by \"cardsim show\"")
        ->required()
        ->transform(tools::wholeNumber(1))
        ->type_name("CARD");
}

std::string checkText(const std::string& text) {
    const bool isOneLine = std::ranges::none_of(text, [](unsigned char c) { return c == 0x7F || c < ' '; });
    if (!isOneLine) {
        return "The text must be a single line without control characters.";
    }
    try {
        static_cast<void>(nlohmann::json(text).dump());
        return "";
    } catch (const nlohmann::json::exception&) {
        return "The text must be valid UTF-8.";
    }
}

std::string checkDescription(const std::string& text) {
    constexpr std::size_t kMostBytes = 255;
    if (text.empty() || text.size() > kMostBytes) {
        return "The text must be 1 to " + std::to_string(kMostBytes) + " bytes long.";
    }
    return checkText(text);
}

}  // namespace cardsim
