#include <iostream>

#include "tools/cardsim/CardSim.h"

int main(int argc, char** argv) {
    return cardsim::run({argv + 1, argv + argc}, std::cout, std::cerr);
}
