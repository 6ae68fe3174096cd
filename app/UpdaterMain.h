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

    // Tells for the path of each firmware image in the bundle whether it may be offered. Asked before
    // anything else is done, and again before the image is written; one that may not is as if it were not
    // there.
    std::function<bool(const std::string& path)> mayBeOffered;
};

// The exit code if the display or the session ends while the updater runs.
constexpr int kDisplayLost = 5;

// Runs the updater until it has quit, and returns the process's exit code: 0, or kDisplayLost.
int UpdaterMain(const UpdaterSetup& setup = {});
