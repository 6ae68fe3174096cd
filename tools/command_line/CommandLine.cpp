#include "tools/command_line/CommandLine.h"

#include <exception>
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

}  // namespace

int runCommandLine(CLI::App& program, const std::vector<std::string>& arguments, std::ostream& out,
                   std::ostream& err) {
    program.require_subcommand(1);
    program.failure_message(complaintAbout);
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());  // the order CLI11 takes
        program.parse(reversed);
    } catch (const CLI::RuntimeError& ending) {
        return ending.get_exit_code();
    } catch (const CLI::ParseError& error) {
        return program.exit(error, out, err) == 0 ? kDone : kWrongUsage;
    } catch (const std::exception& error) {
        err << program.get_name() << ": " << error.what() << '\n';
        return kFailed;
    }
    out.flush();
    if (!out) {
        err << program.get_name() << ": The output could not be written completely.\n";
        return kFailed;
    }
    return kDone;
}

}  // namespace tools
