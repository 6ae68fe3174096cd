#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>

#include "catalogue/BoardRevision.h"
#include "catalogue/CardModels.h"
#include "catalogue/Dates.h"
#include "catalogue/FirmwareVersion.h"
#include "files/UserError.h"
#include "simulator/jtag/FpgaConfiguration.h"
#include "tools/cardsim/Commands.h"
#include "tools/cardsim/IdentityText.h"
#include "tools/cardsim/MachineArguments.h"
#include "tools/command_line/CommandLine.h"

namespace cardsim {
namespace {

using files::UserError;
using simulator::Board;
using simulator::Card;
using simulator::FpgaConfiguration;
using simulator::Machine;
using simulator::PromCells;

struct CardOptions {
    std::string folder;
    std::size_t number = 0;
    std::string model;
    std::optional<std::string> name, location, board, identity, firmware, date;
    std::optional<unsigned> protection;
};

void requireOff(const Machine& machine) {
    if (machine.isOn()) {
        throw UserError(
            "Cards can be added and removed only while the machine is off; switch it off with \"cardsim "
            "power-off\".");
    }
}

// Programs the firmware that the options describe, starting from what the PROM holds, or from firmware M0 for
// the board if it holds none. Identity and protection stay as they are.
void changeFirmware(const CardOptions& options, const Board& board, PromCells& cells) {
    FpgaConfiguration configuration = simulator::decodeConfiguration(cells.pages())
                                          .value_or(FpgaConfiguration{.modelCode = board.modelCode,
                                                                      .boardRevision = board.revision,
                                                                      .flavour = 'M',
                                                                      .version = 0,
                                                                      .date = 0});
    if (options.firmware) {
        const auto version = *catalogue::parseFirmwareVersion(*options.firmware);
        configuration.flavour = version.flavour;
        configuration.version = version.number;
    }
    if (options.date) {
        configuration.date = *catalogue::parseFirmwareDate(*options.date);
    }
    cells.assign(
        PromCells(simulator::encodeConfiguration(configuration), cells.userCode(), cells.protection())
            .bytes());
}

void changeBoard(const CardOptions& options, Board& board) {
    board.name = options.name.value_or(board.name);
    board.location = options.location.value_or(board.location);
    if (options.board) {
        board.revision = *catalogue::parseBoardRevision(*options.board);
    }
}

void changeSpecialRow(const CardOptions& options, PromCells& cells) {
    if (options.identity) {
        cells.setUserCode(*parseIdentity(*options.identity));
    }
    if (options.protection) {
        cells.setProtection(static_cast<uint8_t>(*options.protection));
    }
}

void addCard(const CardOptions& options, std::ostream& out) {
    if (options.firmware.has_value() != options.date.has_value()) {
        tools::refuseUsage("Give both --firmware and --date, or neither for an empty PROM.");
    }
    const auto directory = openMachine(options.folder);
    Machine& machine = directory->machine();
    requireOff(machine);
    const catalogue::CardModel& model = *catalogue::modelByName(options.model);
    Board board{.name = std::string(model.name),
                .location = machine.freeSlot(),
                .modelCode = model.code,
                .revision = 0};
    changeBoard(options, board);
    PromCells cells;
    if (options.firmware) {
        changeFirmware(options, board, cells);
    }
    changeSpecialRow(options, cells);
    const Card& card = machine.addCard(board, std::move(cells));
    directory->save();
    out << "Added card " << machine.cardCount() << ": " << nameOf(card) << ".\n";
}

void removeCard(const CardOptions& options, std::ostream& out) {
    const auto directory = openMachine(options.folder);
    requireOff(directory->machine());
    const std::size_t index = indexOfCard(directory->machine(), options.number);
    const std::string name = nameOf(directory->machine().card(index));
    directory->removeCard(index);
    directory->save();
    out << "Removed " << name << " and deleted its PROM.\n";
}

void changeCard(const CardOptions& options, std::ostream& out) {
    if (!options.name && !options.location && !options.board && !options.identity && !options.protection &&
        !options.firmware && !options.date) {
        tools::refuseUsage("Nothing to change: give at least one option.");
    }
    const auto directory = openMachine(options.folder);
    Card& card = directory->machine().card(indexOfCard(directory->machine(), options.number));
    if (options.date && !options.firmware && !simulator::decodeConfiguration(card.cells().pages())) {
        throw UserError("The card's PROM holds no firmware whose date could be changed.");
    }
    Board board = card.board();
    changeBoard(options, board);
    card.setBoard(board);
    if (options.firmware || options.date) {
        changeFirmware(options, board, card.cells());
    }
    changeSpecialRow(options, card.cells());
    directory->save();
    out << "Changed " << nameOf(card) << ".\n";
}

void addDescription(CLI::App& command, CardOptions& options) {
    command.add_option("--name", options.name, "The name that the driver gives the card")
        ->check(checkDescription)
        ->type_name("TEXT");
    command.add_option("--location", options.location, "Where the card is")
        ->check(checkDescription)
        ->type_name("TEXT");
    command.add_option("--board", options.board, "Board revision letter, or NC for a board without one")
        ->check(tools::takenBy(catalogue::parseBoardRevision, catalogue::kBoardRevisionForm))
        ->type_name("LETTER|NC");
    command
        .add_option("--identity", options.identity,
                    "Serial number such as 2103070021, identity word such as 0x21307015, or blank")
        ->check(tools::takenBy(
            parseIdentity,
            "An identity is a serial number of ten digits, 0x and eight hexadecimal digits, or "
            "the word blank."))
        ->type_name("IDENTITY");
    command.add_option("--protection", options.protection, "Protection bits")
        ->transform(tools::wholeNumber(0, PromCells::kProtectionMask))
        ->type_name("0-7");
    command
        .add_option("--firmware", options.firmware,
                    "Firmware for the PROM, such as M12: flavour M or W, and version 0 to 99")
        ->check(tools::takenBy(catalogue::parseFirmwareVersion,
                               "Firmware is M or W followed by a version from 0 to 99, such as M12."))
        ->type_name("FIRMWARE");
    command.add_option("--date", options.date, "Date of the firmware, from 2000 to 2015")
        ->check(catalogue::firmwareDateFault)
        ->type_name("YYYY-MM-DD");
}

}  // namespace

void addCardCommands(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<CardOptions>();
    const auto add = [&](const char* name, const char* description, const auto& command) {
        CLI::App* const subcommand = program.add_subcommand(name, description);
        addFolder(*subcommand, options->folder);
        subcommand->callback([options, &out, command] { command(*options, out); });
        return subcommand;
    };
    CLI::App* const addition = add("add", "Add a card to a machine that is off", addCard);
    addition->add_option("--model", options->model, "Card model: " + catalogue::modelNames())
        ->required()
        ->check(tools::takenBy(catalogue::modelByName, catalogue::modelForm()))
        ->type_name("MODEL");
    addDescription(*addition, *options);

    addCardNumber(*add("remove", "Remove a card and its PROM from a machine that is off", removeCard),
                  options->number);

    CLI::App* const change =
        add("change", "Change a card's name, location, board, identity, protection or firmware", changeCard);
    addCardNumber(*change, options->number);
    addDescription(*change, *options);
}

}  // namespace cardsim
