#include "tools/command_line/CommandLine.h"

#include <charconv>
#include <exception>
#include <new>
#include <ostream>

namespace tools {
namespace {

// The command line as far as it was understood: "cardsim fault inject".
std::string complaintAbout(const CLI::App* program, const CLI::Error& error) {
    const CLI::App* command = program;
    std::string name = program->get_name();
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().back();
        name += ' ' + command->get_name();
    }
    std::string what = error.what();
    if (command->get_require_subcommand_min() > 0) {
        const std::vector<std::string> rest = command->remaining();
        what = rest.empty() ? "A command is missing." : '"' + rest.front() + "\" is no command.";
    }
    return name + ": " + what + "\nFor help: " + name + " --help\n";
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
    } catch (const std::exception& error) {
        err << program.get_name() << ": " << error.what() << '\n';
        return kFailed;
    }
}

}  // namespace

int runCommandLine(CLI::App& program, const std::vector<std::string>& arguments, std::ostream& out,
                   std::ostream& err) {
    program.require_subcommand(1);
    program.failure_message(complaintAbout);
    const int exitCode = exitCodeOf(program, arguments, out, err);
    out.flush();
    if (!out) {
        err << program.get_name() << ": The output could not be written completely.\n";
        return kFailed;
    }
    return exitCode;
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
