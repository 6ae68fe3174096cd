#include <iostream>

#include "tools/xsvf/XsvfTool.h"

int main(int argc, char** argv) {
    return tools::runXsvf({argv + 1, argv + argc}, std::cout, std::cerr);
}
