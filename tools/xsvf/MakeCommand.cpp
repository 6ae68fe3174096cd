#include <filesystem>
#include <memory>
#include <ostream>

#include "catalogue/BoardRevision.h"
#include "catalogue/CardModels.h"
#include "catalogue/Dates.h"
#include "catalogue/FirmwareVersion.h"
#include "catalogue/ImageName.h"
#include "files/FileError.h"
#include "images/prom/FirmwareImage.h"
#include "simulator/jtag/FpgaConfiguration.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"
#include "tools/xsvf/Commands.h"

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
        throw files::FileError(inputName(name), "is " + std::to_string(bytes.size()) +
                                                    " bytes long; a PROM has " +
                                                    std::to_string(simulator::kPromBytes));
    }
    return bytes;
}

// The options have been checked.
void make(const MakeOptions& options, std::ostream& out) {
    const catalogue::CardModel& model = *catalogue::modelByName(options.model);
    const uint8_t version = static_cast<uint8_t>(options.version);
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
        throw files::FileError(options.outputDirectory, "could not be created", error.value());
    }
    writeOutput(path, images::makeFirmwareImage(std::span<const uint8_t, simulator::kPromBytes>(prom)), out,
                path.string() + '\n', options.payload);
}

void addNameOptions(CLI::App& command, MakeOptions& options) {
    command.add_option("--model", options.model, "Card model: " + catalogue::modelNames())
        ->required()
        ->check(takenBy(catalogue::modelByName, catalogue::modelForm()))
        ->type_name("MODEL");
    command
        .add_option("--flavour", options.flavour,
                    "Byte order of the registers: M big-endian, W little-endian")
        ->required()
        ->check(
            takenBy([](std::string_view text) { return text.size() == 1 && catalogue::isFlavour(text[0]); },
                    "A flavour is M or W."))
        ->type_name("M|W");
    command.add_option("--version", options.version, "Firmware version, 0 to 99")
        ->required()
        ->transform(wholeNumber(0, catalogue::kHighestVersion))
        ->type_name("VERSION");
    command.add_option("--board", options.board, "Board revision letter, or NC for a board without one")
        ->capture_default_str()
        ->check(takenBy(catalogue::parseBoardRevision, catalogue::kBoardRevisionForm))
        ->type_name("LETTER|NC");
}

void addContentOptions(CLI::App& command, MakeOptions& options) {
    auto* const content = command.add_option_group("content", "The contents of the PROM");
    content
        ->add_option("--date", options.date,
                     "Date of the firmware, from 2000 to 2015, for a configuration made from these options")
        ->check(catalogue::firmwareDateFault)
        ->type_name("YYYY-MM-DD");
    content
        ->add_option("--payload", options.payload,
                     "File with the PROM's 262144 bytes, or - for standard input")
        ->check(checkFileName)
        ->type_name("FILE");
    content->require_option(1);
}

}  // namespace

void addMakeCommand(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<MakeOptions>();
    CLI::App* const command = program.add_subcommand("make", "Make a firmware image and print its path");
    addNameOptions(*command, *options);
    addContentOptions(*command, *options);
    command
        ->add_option("--output-directory", options->outputDirectory,
                     "The folder for the image; created if missing")
        ->check(checkPath)
        ->type_name("DIR")
        ->capture_default_str();
    command->callback([options, &out] { make(*options, out); });
}

}  // namespace tools
