#include "tools/xsvf/XsvfTool.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <ostream>

#include "tools/xsvf/AssembleCommand.h"
#include "tools/xsvf/CheckCommand.h"
#include "tools/xsvf/ListCommand.h"
#include "tools/xsvf/MakeCommand.h"

namespace tools {

int runXsvf(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    try {
        CLI::App program(
            "Makes, lists, assembles and checks firmware images for the cards' configuration PROMs", "xsvf");
        program.require_subcommand(1);
        addMakeCommand(program, out);
        addListCommand(program, out);
        addAssembleCommand(program);
        addCheckCommand(program, out, err);
        try {
            std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());  // the order CLI11 takes
            program.parse(reversed);
        } catch (const CLI::RuntimeError& failure) {
            return failure.get_exit_code();
        } catch (const CLI::ParseError& error) {
            return program.exit(error, out, err) == 0 ? kXsvfDone : kXsvfWrongUsage;
        }
        out.flush();
        if (!out) {
            err << "xsvf: The output could not be written completely.\n";
            return kXsvfFailed;
        }
        return kXsvfDone;
    } catch (const std::exception& error) {
        err << "xsvf: " << error.what() << '\n';
        return kXsvfFailed;
    }
}

}  // namespace tools
