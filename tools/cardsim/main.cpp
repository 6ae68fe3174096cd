// cardsim: makes, shows, changes, breaks and power-cycles simulated machines.

#include <iostream>

#include "tools/cardsim/Commands.h"
#include "tools/command_line/CommandLine.h"

// NOLINTNEXTLINE(bugprone-exception-escape): only a mistake in the commands throws here
int main(int argc, char** argv) {
    CLI::App program{"Makes, shows, changes, breaks and power-cycles simulated machines.", "cardsim"};
    cardsim::addMachineCommands(program, std::cout);
    cardsim::addCardCommands(program, std::cout);
    cardsim::addFaultCommands(program, std::cout);
    cardsim::addDriverCommand(program, std::cout);
    cardsim::addPromCommands(program, std::cout);
    cardsim::addRecordCommand(program, std::cout);
    cardsim::addServeCommand(program, std::cout);
    return tools::runCommandLine(program, {argv + 1, argv + argc}, std::cout, std::cerr);
}
