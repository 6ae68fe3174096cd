#pragma once

// How a loss of the machine's power ends the program that runs the machine.

#include <functional>

#include "simulator/storage/MachineDirectory.h"

namespace simulator {

constexpr int kPowerWasLost = 3;  // the exit code of such a program
constexpr const char* kPowerLossMessage = "The machine has lost its power.";

// From now on, a loss of power ends this process: `say` is called with the message, the machine is saved, and
// the process exits with kPowerWasLost, without destructors. If the machine cannot be saved, `say` is called
// with the reason, too. The directory must outlive the machine's run.
void endProcessOnPowerLoss(MachineDirectory& directory, std::function<void(const char*)> say);

}  // namespace simulator
