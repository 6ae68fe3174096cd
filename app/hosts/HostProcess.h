#pragma once

// Setting up the process, and finding its bundle, for every host's main.

#include <filesystem>

// Makes the process independent of how it was started. main calls it first, before anything opens a file.
// Keeps closed standard descriptors from being used for anything else, makes writes to a closed pipe or
// beyond a file size limit fail instead of ending the process, and makes it possible to wait for children
// even if the parent process ignored the end of its own.
void SetUpProcess();

// The program's bundle, on a host without bundles: the folder beside the program that is named for it, such
// as vupdater-simulated.app. Empty if there is none.
std::filesystem::path BundleBesideExecutable();
