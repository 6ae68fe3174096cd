#include "tools/xsvf/XsvfTool.h"

#include "tools/command_line/CommandLine.h"
#include "tools/xsvf/AssembleCommand.h"
#include "tools/xsvf/CheckCommand.h"
#include "tools/xsvf/ListCommand.h"
#include "tools/xsvf/MakeCommand.h"
#include "tools/xsvf/ShowCommand.h"

namespace tools {

int runXsvf(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    CLI::App program(
        "Makes, shows, lists, assembles and checks firmware images for the cards' configuration PROMs",
        "xsvf");
    addMakeCommand(program, out);
    addListCommand(program, out);
    addAssembleCommand(program, out);
    addShowCommand(program, out, err);
    addCheckCommand(program, out, err);
    return runCommandLine(program, arguments, out, err);
}

}  // namespace tools
