#include "tools/xsvf/ShowCommand.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "images/ByteText.h"
#include "images/prom/ContentText.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"
#include "tools/xsvf/ImageSummary.h"

namespace tools {
namespace {

void show(const std::string& name, std::ostream& out) {
    const std::vector<uint8_t> image = readInput(name);
    const images::ImageReport report = images::checkImage(image);
    out << inputName(name) << '\n';
    if (report.fault) {
        out << "  Fault    " << faultText(*report.fault) << '\n';
    } else {
        out << "  For      "
            << (report.configuration ? images::contentText(report.configuration) : kUnknownContent) << '\n';
    }
    out << "  Size     " << images::bytesText(image.size()) << '\n'
        << "  Content  " << playText(report) << (report.fault ? ", up to the fault" : "") << '\n';
}

void showAll(const std::vector<std::string>& names, std::ostream& out, std::ostream& err) {
    refuseStandardInputTwice(names);
    bool isAnyUnread = false;
    for (const std::string& name : names) {
        try {
            show(name, out);
        } catch (const std::runtime_error& unreadable) {
            err << "xsvf: " << unreadable.what() << '\n';
            isAnyUnread = true;
        }
    }
    if (isAnyUnread) {
        throw CLI::RuntimeError(kFailed);
    }
}

}  // namespace

void addShowCommand(CLI::App& program, std::ostream& out, std::ostream& err) {
    const auto names = std::make_shared<std::vector<std::string>>();
    CLI::App* const command = program.add_subcommand(
        "show", "Show what images are: card model, board, firmware, date, size and the time on a card");
    command->add_option("image", *names, "The images; - is standard input")
        ->required()
        ->check(fileName())
        ->type_name("IMAGE");
    command->footer("Exits with 0 if every image can be read, and 1 if any cannot.");
    command->callback([names, &out, &err] { showAll(*names, out, err); });
}

}  // namespace tools
