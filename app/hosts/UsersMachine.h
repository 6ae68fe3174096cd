#pragma once

// The simulated machine of a user who names none, as when the updater is started from the desktop's menu.

#include <filesystem>

// Makes the machine if there is none, and returns its folder, vupdater/machine among the user's data. Throws
// what MachineDirectory throws.
std::filesystem::path UsersMachine();
