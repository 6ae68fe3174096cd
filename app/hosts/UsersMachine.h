#pragma once

// The simulated machine for a user who names none, for example by starting the updater from the desktop's
// menu.

#include <filesystem>

// Creates the machine if there is none and returns its folder, vupdater/machine in the user's data folder.
// Throws what MachineDirectory throws.
std::filesystem::path UsersMachine();
