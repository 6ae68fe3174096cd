#include "tools/xsvf/MakeCommand.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <ostream>
#include <stdexcept>

#include "catalogue/BoardRevision.h"
#include "catalogue/CardModels.h"
#include "catalogue/FirmwareDate.h"
#include "catalogue/FirmwareVersion.h"
#include "catalogue/ImageName.h"
#include "images/prom/FirmwareImage.h"
#include "simulator/jtag/FpgaConfiguration.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"

namespace tools {

namespace {

struct MakeOptions {
    std::string model;
    char flavour = 'M';
    uint32_t version = 0;
    std::string board = "NC";
    std::string date;
    std::string payload;
    std::filesystem::path outputDirectory = ".";
};

std::vector<uint8_t> readPayload(const std::string& name) {
    std::vector<uint8_t> bytes = readInput(name);
    if (bytes.size() != simulator::kPromBytes) {
        throw std::runtime_error(inputName(name) + ": is " + std::to_string(bytes.size()) +
                                 " bytes long; a PROM has " + std::to_string(simulator::kPromBytes) + ".");
    }
    return bytes;
}

// The options have passed their checks.
void make(const MakeOptions& options, std::ostream& out) {
    const catalogue::CardModel& model = *catalogue::modelByName(options.model);
    const auto version = static_cast<uint8_t>(options.version);
    const uint8_t boardRevision = catalogue::parseBoardRevision(options.board).value_or(0);

    std::vector<uint8_t> prom;
    if (options.payload.empty()) {
        const uint16_t date = catalogue::parseFirmwareDate(options.date).value_or(0);
        prom = simulator::encodeConfiguration({model.code, boardRevision, options.flavour, version, date});
    } else {
        prom = readPayload(options.payload);
    }

    const auto path = options.outputDirectory / catalogue::imageFileName({.modelCode = model.code,
                                                                          .flavour = options.flavour,
                                                                          .version = version,
                                                                          .boardRevision = boardRevision})
                                                    .value();
    std::error_code error;
    std::filesystem::create_directories(options.outputDirectory, error);
    if (error) {
        throw std::runtime_error(options.outputDirectory.string() + ": could not be created (" +
                                 error.message() + ").");
    }
    writeOutput(path, images::makeFirmwareImage(std::span<const uint8_t, simulator::kPromBytes>(prom)), out,
                path.string() + '\n', options.payload);
}

}  // namespace

void addMakeCommand(CLI::App& program, std::ostream& out) {
    auto options = std::make_shared<MakeOptions>();
    CLI::App* command = program.add_subcommand("make", "Make a firmware image and print its path");
    command->add_option("--model", options->model, "Card model: " + catalogue::modelNames())
        ->required()
        ->check(takenBy(catalogue::modelByName, catalogue::modelForm()))
        ->type_name("MODEL");
    command
        ->add_option("--flavour", options->flavour,
                     "Byte order of the registers: M big-endian, W little-endian")
        ->required()
        ->check(
            takenBy([](std::string_view text) { return text.size() == 1 && catalogue::isFlavour(text[0]); },
                    "A flavour is M or W."))
        ->type_name("M|W");
    command->add_option("--version", options->version, "Firmware version, 0 to 99")
        ->required()
        ->transform(wholeNumber(0, 99))
        ->type_name("VERSION");
    command->add_option("--board", options->board, "Board revision letter, or NC for a board without one")
        ->capture_default_str()
        ->check(takenBy(catalogue::parseBoardRevision, catalogue::kBoardRevisionForm))
        ->type_name("LETTER|NC");
    auto* content = command->add_option_group("content", "What the PROM is to hold");
    content
        ->add_option("--date", options->date,
                     "Date of the firmware, in the years 2000 to 2015, for a configuration made from these "
                     "options")
        ->check(catalogue::firmwareDateFault)
        ->type_name("YYYY-MM-DD");
    content
        ->add_option("--payload", options->payload,
                     "File with the PROM's 262144 bytes instead; - is standard input")
        ->check(fileName())
        ->type_name("FILE");
    content->require_option(1);
    command
        ->add_option("--output-directory", options->outputDirectory,
                     "Where the image goes; created if missing")
        ->check(fileName())
        ->type_name("DIR")
        ->capture_default_str();
    command->callback([options, &out] { make(*options, out); });
}

}  // namespace tools
