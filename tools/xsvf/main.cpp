#include <csignal>
#include <iostream>

#include "tools/xsvf/XsvfTool.h"

int main(int argc, char** argv) {
    // A write beyond a limit on files is to fail, and not to end the program in its midst.
    std::signal(SIGXFSZ, SIG_IGN);
    return tools::runXsvf({argv + 1, argv + argc}, std::cout, std::cerr);
}
