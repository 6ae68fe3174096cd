// The firmware image tool. Exits with 0, with 1 when a command failed, and with 2 when it was called wrongly.

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "tools/xsvf/MakeCommand.h"

int main(int argc, char** argv) {
    try {
        CLI::App program("Makes firmware images for the cards' configuration PROMs", "xsvf");
        program.require_subcommand(1);
        tools::addMakeCommand(program);
        try {
            program.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            return program.exit(error) == 0 ? 0 : 2;
        }
    } catch (const std::exception& error) {
        std::cerr << "xsvf: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
