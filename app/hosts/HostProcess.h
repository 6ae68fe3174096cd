#pragma once

// What every host's main needs of its process.

#include <filesystem>

// Makes the process independent of how it was started. The first thing that main calls, before anything opens
// a file. Connects closed standard descriptors to /dev/null; lets a write to a closed pipe or beyond a limit
// on files fail instead of ending the process; and lets children be waited for although the parent process
// ignored the end of its own.
void SetUpProcess();

// The program's bundle, on a host that has no bundles of its own: the folder named for the program, such as
// vupdater-simulated.app, beside it. Empty if it is not there.
std::filesystem::path BundleBesideExecutable();
