#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>

#include "files/OutputFile.h"
#include "files/UserError.h"
#include "simulator/jtag/Waveform.h"
#include "simulator/storage/MachineFiles.h"
#include "tools/cardsim/Commands.h"
#include "tools/cardsim/MachineArguments.h"
#include "tools/cardsim/MachineText.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"

namespace cardsim {
namespace {

using files::UserError;
using simulator::RecordingRequest;

struct RecordOptions {
    std::string folder;
    std::size_t number = 0;
    RecordingRequest request;
    bool cancel = false;
};

// Absolute, since the next run may start in another folder, and with all links followed, so that two names of
// one file compare equal.
std::string resolved(const std::string& file) {
    std::error_code error;
    const auto place = files::behindLinks(std::filesystem::absolute(file, error));
    const auto canonical = std::filesystem::weakly_canonical(place, error);
    return (error ? place : canonical).string();
}

// Throws UserError if the folder is missing, or if the file holds something else or another card's recording.
void requireUsable(const std::string& file, const simulator::Machine& machine, const simulator::Card& card) {
    if (!std::filesystem::is_directory(std::filesystem::path(file).parent_path())) {
        throw UserError(file + ": its folder does not exist.");
    }
    simulator::requireRecordable(file);
    for (std::size_t index = 0; index < machine.cardCount(); ++index) {
        const auto& other = machine.card(index).recordingRequest();
        if (&machine.card(index) != &card && other && files::isSameFile(other->file, file)) {
            throw UserError(file + ": another card's recording goes there already.");
        }
    }
}

// The name goes into machine.json, which takes one line of UTF-8.
std::string checkRecordingFile(const std::string& name) {
    const std::string fault = tools::checkPath(name);
    return fault.empty() ? checkText(name) : fault;
}

void record(RecordOptions options, std::ostream& out) {
    if (options.cancel == !options.request.file.empty()) {
        tools::refuseUsage("Name a file to record into, or give --cancel.");
    }
    const auto directory = openMachine(options.folder);
    simulator::Card& card = directory->machine().card(indexOfCard(directory->machine(), options.number));
    if (options.cancel) {
        if (!card.recordingRequest()) {
            throw UserError("No recording is pending for this card.");
        }
        card.requestRecording(std::nullopt);
    } else {
        options.request.file = resolved(options.request.file);
        requireForeign(*directory, options.request.file);
        simulator::requireOutsideMachines(options.request.file);
        requireUsable(options.request.file, directory->machine(), card);
        card.requestRecording(options.request);
    }
    directory->save();
    out << nameOf(card) << ": " << (options.cancel ? "nothing will be recorded" : describe(options.request))
        << ".\n";
}

}  // namespace

void addRecordCommand(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<RecordOptions>();
    CLI::App* const command = program.add_subcommand(
        "record", "Record a card's JTAG signals during the updater's next run, as a waveform for GTKWave");
    addFolder(*command, options->folder);
    addCardNumber(*command, options->number);
    command->add_option("file", options->request.file, "The file to write, such as identity.vcd")
        ->check(checkRecordingFile)
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
