#include "tools/xsvf/ListCommand.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <ostream>

#include "files/OutputFile.h"
#include "files/WholeFile.h"
#include "images/Listing.h"
#include "tools/command_line/CommandLine.h"

namespace tools {

namespace {

struct ListOptions {
    std::filesystem::path image;
    std::filesystem::path output;
};

void list(const ListOptions& options, std::ostream& out) {
    const std::string text = images::listingOf(files::readFile(options.image));
    if (options.output.empty()) {
        out << text;
    } else {
        files::writeOutputFile(options.output, {reinterpret_cast<const uint8_t*>(text.data()), text.size()},
                               options.image);
    }
}

}  // namespace

void addListCommand(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<ListOptions>();
    CLI::App* const command = program.add_subcommand("list", "Show an image command by command");
    command->add_option("image", options->image, "The image")
        ->required()
        ->check(fileName())
        ->type_name("IMAGE");
    command->add_option("--output", options->output, "Where the listing goes instead of standard output")
        ->check(fileName())
        ->type_name("FILE");
    command->callback([options, &out] { list(*options, out); });
}

}  // namespace tools
