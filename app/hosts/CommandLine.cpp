#include "app/hosts/CommandLine.h"

#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "app/hosts/FailureMessage.h"
#include "app/hosts/HostProcess.h"
#include "framework/widgets/UDisplay.h"

namespace {

// An unexpected word is reported before a missing one, because it may be that one, mistyped.
std::string whatIsWrong(const std::vector<std::string>& rest, const CLI::Error& error) {
    for (const std::string& word : rest) {
        if (word.size() > 1 && word.front() == '-') {
            return "Unknown option " + word.substr(0, word.find('=')) + '.';
        }
    }
    return rest.empty() ? error.what() : "Unexpected argument \"" + rest.front() + "\".";
}

// The exit code if the program is to end now.
std::optional<int> parse(CLI::App& commandLine, int argc, char** argv) {
    const std::string& name = commandLine.get_name();
    commandLine.set_version_flag("--version", name + " " VUPDATER_VERSION, "Print the version and exit");
    commandLine.failure_message([&name](const CLI::App* program, const CLI::Error& error) {
        return name + ": " + whatIsWrong(program->remaining(), error) + "\nFor help: " + name + " --help\n";
    });
    try {
        commandLine.parse(argc, argv);
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        const int exitCode = commandLine.exit(error) == 0 ? 0 : kWrongUsage;
        if (!std::cout.flush()) {
            Say(name.c_str(), "The output could not be written completely.");
            return kFailed;
        }
        return exitCode;
    }
}

}  // namespace

void Say(const char* program, const char* what) {
    std::fprintf(stderr, "%s: %s\n", program, what);
}

int RunProgram(const Program& program, int argc, char** argv) {
    SetUpProcess();
    try {
        CLI::App commandLine(program.description, program.name);
        program.addArguments(commandLine);
        if (const auto exitCode = parse(commandLine, argc, argv)) {
            return *exitCode;
        }
        UDisplay::Open(program.name, kNoDisplay);
        return program.run();
    } catch (const std::exception& error) {
        Say(program.name, error.what());
        ShowFailure(error.what());
        return kFailed;
    }
}
