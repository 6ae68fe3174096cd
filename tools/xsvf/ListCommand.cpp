#include "tools/xsvf/ListCommand.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>

#include "images/Listing.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"

namespace tools {

namespace {

struct ListOptions {
    std::string image;
    std::string output = "-";
};

void list(const ListOptions& options, std::ostream& out) {
    const std::string text = images::listingOf(readInput(options.image));
    writeOutput(options.output, {reinterpret_cast<const uint8_t*>(text.data()), text.size()}, out,
                options.output + '\n', options.image);
}

}  // namespace

void addListCommand(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<ListOptions>();
    CLI::App* const command = program.add_subcommand("list", "Show an image command by command");
    command->add_option("image", options->image, "The image, or - for standard input")
        ->required()
        ->check(fileName())
        ->type_name("IMAGE");
    command->add_option("--output", options->output, "Where the listing goes; - is standard output")
        ->capture_default_str()
        ->check(fileName())
        ->type_name("FILE");
    command->callback([options, &out] { list(*options, out); });
}

}  // namespace tools
