// vupdater-agent: root's part of the updater, which hands out the cards that the administrator has named.

#include <systemd/sd-event.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>
#include <memory>

#include "files/PrintableText.h"
#include "files/StandardDescriptors.h"
#include "linux/agent/Agent.h"
#include "linux/agent/CardKeeper.h"
#include "linux/agent/CardReport.h"

namespace {

constexpr std::chrono::seconds kBusLimit(25);

// The exit code for a wrong command line, as in the other programs.
constexpr int kWrongUsage = 2;

using Loop = std::unique_ptr<sd_event, bus::Releaser<sd_event_unref>>;

Loop newLoop() {
    sd_event* loop = nullptr;
    sd_event_new(&loop);
    for (const int signal : {SIGTERM, SIGINT}) {
        sd_event_add_signal(loop, nullptr, signal | SD_EVENT_SIGNAL_PROCMASK, nullptr, nullptr);
    }
    // The reader of the messages may go away.
    std::signal(SIGPIPE, SIG_IGN);
    return Loop(loop);
}

int serve(agent::CardKeeper& keeper, std::chrono::seconds idleTime) {
    const Loop loop = newLoop();
    int result = 0;
    const bus::Connection connection = bus::openSystemBus(kBusLimit, result);
    if (!connection) {
        files::say("The system bus cannot be reached: " + bus::Error().reason(result) + ".");
        return 1;
    }
    sd_bus_attach_event(connection.get(), loop.get(), SD_EVENT_PRIORITY_NORMAL);
    sd_bus_set_exit_on_disconnect(connection.get(), 1);
    agent::Agent agent(loop.get(), connection.get(), keeper, idleTime);
    agent.start();
    const int code = sd_event_loop(loop.get());
    // Answers that are still to be sent.
    sd_bus_flush(connection.get());
    return code == 0 ? 0 : 1;
}

int run(int argc, char** argv) {
    CLI::App program(
        "Opens the cards named in /etc/vupdater/cards.d for programs whose users may use them. The "
        "system bus starts it.",
        "vupdater-agent");
    agent::CardKeeper::Folders folders;
    unsigned idleSeconds = 30;
    bool isCheck = false;
    program.add_flag(
        "--check", isCheck,
        "Show which of the named cards are there and whether they can be used; exit with 0 if one can");
    program.set_version_flag("--version", "vupdater-agent " VUPDATER_VERSION, "Print the version and exit");
    program.add_option("--sys", folders.sys, "The folder in which the kernel describes the devices")
        ->capture_default_str();
    auto* const rules = program.add_option("--cards", folders.rules, "The folder whose files name the cards")
                            ->capture_default_str();
    program.add_option("--idle", idleSeconds, "Exit after this many seconds without clients")
        ->capture_default_str();
    program.failure_message([](const CLI::App*, const CLI::Error& error) {
        return std::string("vupdater-agent: ") + error.what() + "\nFor help: vupdater-agent --help\n";
    });
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : kWrongUsage;
    }
    if (*rules) {
        // Whoever chooses the folder is responsible for it.
        folders.rulesOwner = geteuid();
    }
    agent::CardKeeper keeper(folders);
    if (isCheck) {
        return agent::reportCards(keeper, std::cout) ? 0 : 1;
    }
    return serve(keeper, std::chrono::seconds(idleSeconds));
}

}  // namespace

int main(int argc, char** argv) {
    files::reserveStandardDescriptors();
    try {
        return run(argc, argv);
    } catch (const std::exception& exception) {
        files::say(exception.what());
        return 1;
    }
}
