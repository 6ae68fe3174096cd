#pragma once

// The program's entry, the same on every host: a host's main installs its Host and calls this.

// The exit code if the display or the session ends while the updater runs.
constexpr int kDisplayLost = 5;

// Runs the updater until it has quit, and returns the process's exit code: 0, or kDisplayLost.
int UpdaterMain();
