#include <memory>
#include <ostream>

#include "images/Listing.h"
#include "images/ListingReader.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"
#include "tools/xsvf/Commands.h"

namespace tools {
namespace {

constexpr const char* kListingForm =
    "A listing has one command per line, with its operands in the order of the image. Sizes, waits and "
    "counts are decimal, or hexadecimal with 0x. Values are hexadecimal with 0x and need no leading zeros. "
    "States are names, such as Run-Test/Idle, or the number of the operand byte. XSDRINC's step values "
    "follow its data. BYTES and a value are bytes that are not a command. An offset with a colon before "
    "the command, and a comment after a semicolon, are ignored.";

struct ListingOptions {
    std::string input;
    std::string output = "-";
};

void list(const ListingOptions& options, std::ostream& out) {
    const std::string text = images::listingOf(readInput(options.input));
    writeOutput(options.output, {reinterpret_cast<const uint8_t*>(text.data()), text.size()}, out,
                options.output + '\n', options.input);
}

void assemble(const ListingOptions& options, std::ostream& out) {
    const std::vector<uint8_t> text = readInput(options.input);
    const auto image =
        images::assemble({reinterpret_cast<const char*>(text.data()), text.size()}, inputName(options.input));
    writeOutput(options.output, image, out, options.output + '\n', options.input);
}

}  // namespace

void addListingCommands(CLI::App& program, std::ostream& out) {
    const auto listing = std::make_shared<ListingOptions>();
    CLI::App* const list = program.add_subcommand("list", "List the commands of an image");
    list->add_option("image", listing->input, "The image, or - for standard input")
        ->required()
        ->check(checkFileName)
        ->type_name("IMAGE");
    list->add_option("--output", listing->output, "The file for the listing, or - for standard output")
        ->capture_default_str()
        ->check(checkFileName)
        ->type_name("FILE");
    list->callback([listing, &out] { tools::list(*listing, out); });

    const auto assembly = std::make_shared<ListingOptions>();
    CLI::App* const assemble =
        program.add_subcommand("assemble", "Make an image from its listing and print its path");
    assemble->add_option("listing", assembly->input, "The listing, or - for standard input")
        ->required()
        ->check(checkFileName)
        ->type_name("LISTING");
    assemble->add_option("--output", assembly->output, "The file for the image, or - for standard output")
        ->required()
        ->check(checkFileName)
        ->type_name("IMAGE");
    assemble->footer(kListingForm);
    assemble->callback([assembly, &out] { tools::assemble(*assembly, out); });
}

}  // namespace tools
