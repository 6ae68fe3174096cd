// xsvf: makes, shows, lists, assembles and checks firmware images.

#include <iostream>

#include "tools/command_line/CommandLine.h"
#include "tools/xsvf/Commands.h"

// NOLINTNEXTLINE(bugprone-exception-escape): only a mistake in the commands throws here
int main(int argc, char** argv) {
    CLI::App program("Makes, shows, lists, assembles and checks firmware images for the cards' PROMs.",
                     "xsvf");
    tools::addMakeCommand(program, std::cout);
    tools::addListingCommands(program, std::cout);
    tools::addCheckCommands(program, std::cout, std::cerr);
    return tools::runCommandLine(program, {argv + 1, argv + argc}, std::cout, std::cerr);
}
