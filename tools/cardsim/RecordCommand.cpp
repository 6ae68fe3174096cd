#include "tools/cardsim/RecordCommand.h"

#include <filesystem>

#include "files/OutputFile.h"
#include "files/PrintableText.h"
#include "simulator/base/MachineError.h"
#include "simulator/jtag/Waveform.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"

namespace cardsim {
namespace {

using simulator::MachineError;
using simulator::RecordingRequest;

struct RecordOptions {
    std::string folder;
    std::size_t number = 0;
    RecordingRequest request;
    bool cancel = false;
};

// Absolute, since the next run may start elsewhere, and past all links, so that two names of one file are
// seen to be the same.
std::string placeOf(const std::string& file) {
    std::error_code error;
    const auto place = files::behindLinks(std::filesystem::absolute(file, error));
    const auto canonical = std::filesystem::weakly_canonical(place, error);
    return (error ? place : canonical).string();
}

// A recording needs a folder, and a place that nothing and nobody else has.
void requireUsable(const std::string& file, const simulator::Machine& machine, const simulator::Card& card) {
    if (!std::filesystem::is_directory(std::filesystem::path(file).parent_path()))
        throw MachineError(file + ": there is no such folder.");
    simulator::requireRecordable(file);
    for (std::size_t index = 0; index < machine.cardCount(); ++index) {
        const auto& other = machine.card(index).recordingRequest();
        if (&machine.card(index) != &card && other && files::isSameFile(other->file, file))
            throw MachineError(file + ": another card is to be recorded there.");
    }
}

void record(RecordOptions options, std::ostream& out) {
    if (options.cancel == !options.request.file.empty())
        tools::refuseUsage("Name a file to record into, or give --cancel.");
    const auto directory = openMachine(options.folder);
    simulator::Card& card = directory->machine().card(indexOfCard(directory->machine(), options.number));
    if (options.cancel) {
        if (!card.recordingRequest()) {
            throw MachineError("No recording is pending for this card.");
        }
        card.requestRecording(std::nullopt);
    } else {
        options.request.file = placeOf(options.request.file);
        requireForeign(*directory, options.request.file);
        tools::requireOutsideMachines(options.request.file);
        requireUsable(options.request.file, directory->machine(), card);
        card.requestRecording(options.request);
    }
    directory->save();
    out << nameOf(card) << ": " << (options.cancel ? "nothing is recorded" : describe(options.request))
        << ".\n";
}

}  // namespace

std::string describe(const RecordingRequest& request) {
    const std::string until =
        request.microseconds == RecordingRequest::kMostMicroseconds
            ? "its end"
            : std::to_string(request.fromMicroseconds + request.microseconds) + " microseconds";
    return "the next run, from " + std::to_string(request.fromMicroseconds) + " to " + until + ", into " +
           files::printable(request.file);
}

void addRecordCommand(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<RecordOptions>();
    CLI::App* const command = program.add_subcommand(
        "record", "Record a card's JTAG signals during the updater's next run, as a waveform for GTKWave");
    addFolder(*command, options->folder);
    addCardNumber(*command, options->number);
    command->add_option("file", options->request.file, "The file to write, such as identity.vcd")
        ->check(checkText)
        ->type_name("FILE");
    const auto addTime = [&](const char* name, uint64_t least, uint64_t& microseconds,
                             const char* description) {
        command->add_option(name, microseconds, description)
            ->transform(tools::wholeNumber(least, RecordingRequest::kMostMicroseconds))
            ->type_name("MICROSECONDS");
    };
    addTime("--from", 0, options->request.fromMicroseconds, "Start this long after the run begins");
    addTime("--for", 1, options->request.microseconds, "Stop after this long (default: end of the run)");
    command->add_flag("--cancel", options->cancel, "Cancel a pending recording");
    command->callback([options, &out] { record(*options, out); });
}

}  // namespace cardsim
