#include "tools/xsvf/AssembleCommand.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <stdexcept>

#include "images/ListingReader.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"

namespace tools {

namespace {

constexpr const char* kListingForm =
    "A listing has one command per line, with its operands in the order of the image. Sizes, waits and "
    "counts are decimal, or hexadecimal with 0x; values are hexadecimal with 0x and need no high zeros; "
    "states have their names, such as Run-Test/Idle, or a number for the bare byte. XSDRINC's step values "
    "stand after its data. BYTES and a value stands for bytes as they are. An offset with a colon before the "
    "command, and a comment after a semicolon, are for the reader alone.";

struct AssembleOptions {
    std::string listing;
    std::string output;
};

void assemble(const AssembleOptions& options, std::ostream& out) {
    const std::vector<uint8_t> text = readInput(options.listing);
    const auto result = images::imageOf({reinterpret_cast<const char*>(text.data()), text.size()});
    if (const auto* const error = std::get_if<images::ListingError>(&result)) {
        throw std::runtime_error(inputName(options.listing) + ", line " + std::to_string(error->line) + ": " +
                                 error->reason);
    }
    writeOutput(options.output, std::get<std::vector<uint8_t>>(result), out, options.output + '\n',
                options.listing);
}

}  // namespace

void addAssembleCommand(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<AssembleOptions>();
    CLI::App* const command =
        program.add_subcommand("assemble", "Make an image from its listing and print its path");
    command->add_option("listing", options->listing, "The listing, or - for standard input")
        ->required()
        ->check(fileName())
        ->type_name("LISTING");
    command->add_option("--output", options->output, "Where the image goes, or - for standard output")
        ->required()
        ->check(fileName())
        ->type_name("IMAGE");
    command->footer(kListingForm);
    command->callback([options, &out] { assemble(*options, out); });
}

}  // namespace tools
