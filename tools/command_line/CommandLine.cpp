#include "tools/command_line/CommandLine.h"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <exception>
#include <memory>
#include <new>
#include <ostream>

#include "files/StandardDescriptors.h"
#include "tools/command_line/HelpFormatter.h"

namespace tools {
namespace {

constexpr const char* kExitCodes =
    "Exits with 0 if the command succeeds, 1 if it fails, and 2 if the command line is wrong. For help on a "
    "command, give its name and --help.";

std::string whatIsWrong(const CLI::App& command, const CLI::Error& error) {
    std::vector<std::string> rest = command.remaining();
    std::erase(rest, "--");  // nothing after it is an option
    const bool takesCommands = command.get_require_subcommand_min() > 0;
    if (rest.empty()) {
        const std::string what = error.what();
        return takesCommands && command.get_subcommands().empty() ? "Name a command."
                                                                  : what + (what.ends_with('.') ? "" : ".");
    }
    const auto option = std::ranges::find_if(
        rest, [](const std::string& word) { return word.size() > 1 && word.front() == '-'; });
    if (option != rest.end()) {
        return "Unknown option " + option->substr(0, option->find('=')) + '.';
    }
    return takesCommands ? "Unknown command \"" + rest.front() + "\"."
                         : "Unexpected argument \"" + rest.front() + "\".";
}

// The sentence begins with the part of the command line that was understood, such as "cardsim fault inject".
std::string complaintAbout(const CLI::App* program, const CLI::Error& error) {
    const CLI::App* command = program;
    std::string name = program->get_name();
    while (command->remaining_size() == 0 && !command->get_subcommands().empty()) {
        command = command->get_subcommands().back();
        name += ' ' + command->get_name();
    }
    return name + ": " + whatIsWrong(*command, error) + "\nFor help: " + name + " --help\n";
}

void setFormatter(CLI::App& command, const std::shared_ptr<HelpFormatter>& formatter) {
    command.formatter(formatter);
    for (CLI::App* const subcommand : command.get_subcommands({})) {
        setFormatter(*subcommand, formatter);
    }
}

int exitCodeOf(CLI::App& program, const std::vector<std::string>& arguments, std::ostream& out,
               std::ostream& err) {
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());  // the order CLI11 takes
        program.parse(reversed);
        return kDone;
    } catch (const CLI::RuntimeError& ending) {
        return ending.get_exit_code();
    } catch (const CLI::ParseError& error) {
        return program.exit(error, out, err) == 0 ? kDone : kWrongUsage;
    } catch (const std::bad_alloc&) {
        err << program.get_name() << ": There is not enough memory.\n";
        return kFailed;
    } catch (const std::exception& error) {  // a UserError, unless a library's own
        err << program.get_name() << ": " << error.what() << '\n';
        return kFailed;
    }
}

}  // namespace

int runCommandLine(CLI::App& program, const std::vector<std::string>& arguments, std::ostream& out,
                   std::ostream& err) {
    files::reserveStandardDescriptors();
    // Writing beyond a limit on file sizes then fails, instead of ending the program halfway.
    std::signal(SIGXFSZ, SIG_IGN);
    program.require_subcommand(1);
    program.failure_message(complaintAbout);
    program.set_version_flag("--version", program.get_name() + " " VUPDATER_VERSION,
                             "Print the version and exit");
    program.footer(kExitCodes);
    setFormatter(program, std::make_shared<HelpFormatter>());
    const int exitCode = exitCodeOf(program, arguments, out, err);
    out.flush();
    if (!out) {
        err << program.get_name() << ": The output could not be written completely.\n";
        return kFailed;
    }
    return exitCode;
}

void refuseUsage(const std::string& what) {
    throw CLI::ValidationError(what, CLI::ExitCodes::ValidationError);
}

void exitWith(int exitCode) {
    throw CLI::RuntimeError(exitCode);
}

CLI::Validator wholeNumber(uint64_t least, uint64_t most) {
    const auto normalise = [=](std::string& text) {
        uint64_t number = 0;
        const char* const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, number);
        if (stop != end || error != std::errc() || number < least || number > most) {
            const bool isBounded = most != std::numeric_limits<uint64_t>::max();
            return '"' + text + "\" is not a whole number from " + std::to_string(least) +
                   (isBounded ? " to " + std::to_string(most) : " on") + '.';
        }
        text = std::to_string(number);
        return std::string();
    };
    return CLI::Validator(normalise, "");
}

}  // namespace tools
