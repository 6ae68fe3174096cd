#pragma once

// The words of machine.json that stand for enumerators, in the order of the enumerations.

#include <array>
#include <string_view>

namespace simulator {

constexpr int kMachineFormat = 1;

constexpr std::array<std::string_view, 4> kRegisterNames{"none", "page data", "user code", "control data"};
constexpr std::array<std::string_view, 4> kOperationNames{"none", "program", "erase",
                                                          "leave programming mode"};
constexpr std::array<std::string_view, 3> kDriverFaultNames{"none", "does not load", "publishes nothing"};

constexpr std::array<std::string_view, 3> kWhenNames{"at once", "at access", "at clock"};

}  // namespace simulator
