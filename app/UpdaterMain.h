#pragma once

// The program's entry, the same on every host: a host's main installs its Host and calls this.

#include <functional>
#include <string>

class LListener;

// What a host's main adds to the updater. By default that is nothing.
struct UpdaterSetup {
    // Hears the window's states (app/WindowState.h), and so when a write begins and ends. It must outlive the
    // updater's run.
    LListener* windowStateListener = nullptr;

    // Decides, from its path, whether a firmware image in the bundle may be offered. Called for each image
    // before anything else is done, and again before one is written. An image that may not be offered is
    // treated as if it were not there.
    std::function<bool(const std::string& path)> mayBeOffered;
};

// The exit code if the display or the session ends while the updater runs.
constexpr int kDisplayLost = 5;

// Runs the updater until it has quit, and returns the process's exit code: 0, or kDisplayLost.
[[nodiscard]] int UpdaterMain(const UpdaterSetup& setup = {});
