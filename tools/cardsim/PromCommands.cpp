#include <algorithm>
#include <memory>
#include <ostream>
#include <vector>

#include "files/UserError.h"
#include "images/play/ImagePlay.h"
#include "tools/cardsim/Commands.h"
#include "tools/cardsim/MachineArguments.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"

namespace cardsim {
namespace {

using files::UserError;
using simulator::Card;
using simulator::kPromBytes;
using simulator::kPromPages;
using simulator::PromCells;

struct PromOptions {
    std::string folder;
    std::size_t number = 0;
    std::string file;
};

void dump(const PromOptions& options, std::ostream& out) {
    const auto directory = viewMachine(options.folder);
    const Card& card = directory->machine().card(indexOfCard(directory->machine(), options.number));
    if (!tools::isStandardStream(options.file)) {
        requireForeign(*directory, options.file);
    }
    tools::writeOutput(options.file, card.cells().bytes(), out,
                       "Wrote the PROM of " + nameOf(card) + " to " + options.file + ".\n");
}

// If the file holds the pages alone, identity and protection stay as they are.
void load(const PromOptions& options, std::ostream& out) {
    const auto directory = openMachine(options.folder);
    Card& card = directory->machine().card(indexOfCard(directory->machine(), options.number));
    const std::vector<uint8_t> content = tools::readInput(options.file);
    if (content.size() != kPromBytes && content.size() != PromCells::kBytes) {
        throw UserError(tools::inputName(options.file) + ": is " + std::to_string(content.size()) +
                        " bytes long; a PROM has " + std::to_string(kPromBytes) + ", or " +
                        std::to_string(PromCells::kBytes) + " with identity and protection.");
    }
    std::vector<uint8_t> image(card.cells().bytes().begin(), card.cells().bytes().end());
    std::ranges::copy(content, image.begin());
    card.cells().assign(image);
    directory->save();
    out << "Loaded the PROM of " << nameOf(card) << " from " << tools::inputName(options.file) << ".\n";
}

// What an image leaves in an erased PROM.
PromCells contentOfImage(const std::string& file) {
    const std::vector<uint8_t> image = tools::readInput(file);
    images::ImagePlay play(image);
    while (!play.isComplete()) {
        if (const auto fault = play.playCommand()) {
            throw UserError(tools::inputName(file) + ": " + *fault);
        }
    }
    PromCells content;
    content.assign(play.content().bytes());
    return content;
}

// "0 to 3, 7"
std::string rangesOf(const std::vector<std::size_t>& pages) {
    std::string text;
    for (std::size_t first = 0, next = 0; first < pages.size(); first = next) {
        for (next = first + 1; next < pages.size() && pages[next] == pages[next - 1] + 1;) {
            ++next;
        }
        text += (first == 0 ? "" : ", ") + std::to_string(pages[first]);
        if (next > first + 1) {
            text += " to " + std::to_string(pages[next - 1]);
        }
    }
    return text;
}

void compare(const PromOptions& options, std::ostream& out) {
    const auto directory = viewMachine(options.folder);
    const Card& card = directory->machine().card(indexOfCard(directory->machine(), options.number));
    const PromCells expected = contentOfImage(options.file);
    std::size_t written = 0;
    std::vector<std::size_t> different;
    for (std::size_t page = 0; page < kPromPages; ++page) {
        if (expected.isPageErased(page)) {
            continue;
        }
        ++written;
        if (!std::ranges::equal(expected.bytesOf(PromCells::page(page)),
                                card.cells().bytesOf(PromCells::page(page)))) {
            different.push_back(page);
        }
    }
    if (written == 0) {
        throw UserError(tools::inputName(options.file) + ": programs no pages.");
    }
    out << nameOf(card) << ": " << written - different.size() << " of the " << written
        << " pages that the image programs are in the PROM.\n";
    if (!different.empty()) {
        out << "Different: " << rangesOf(different) << ".\n";
        tools::exitWith(kDifferent);
    }
}

}  // namespace

void addPromCommands(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<PromOptions>();
    CLI::App* const prom = program.add_subcommand("prom", "Dump, load or compare a card's PROM");
    prom->require_subcommand(1);
    const auto add = [&](const char* name, const char* description, const char* file, const auto& command) {
        CLI::App* const subcommand = prom->add_subcommand(name, description);
        addFolder(*subcommand, options->folder);
        addCardNumber(*subcommand, options->number);
        subcommand->add_option("file", options->file, file)
            ->required()
            ->check(tools::checkFileName)
            ->type_name("FILE");
        subcommand->callback([options, &out, command] { command(*options, out); });
    };
    add("dump", "Write the contents of a card's PROM to a file", "The file, or - for standard output", dump);
    add("load", "Load a file into a card's PROM, as if the card had shipped with it",
        "The file, or - for standard input", load);
    add("compare",
        "Check whether a card's PROM holds what a firmware image programs; exits with 3 if it does not",
        "The firmware image, or - for standard input", compare);
}

}  // namespace cardsim
