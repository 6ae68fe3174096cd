#pragma once

// The program's entry, the same on every host: a host's main installs its Host and calls this.

#include <chrono>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

class LListener;

// What a host's main adds to the updater. By default that is nothing.
struct UpdaterSetup {
    // The window's title; if it is empty, that of the layout.
    std::string windowTitle;

    // Hears the window's states (app/WindowState.h), and so when a write begins and ends. It must outlive the
    // updater's run.
    LListener* windowStateListener = nullptr;

    // How long a load from the open card takes, to tell how long a write takes. Without it, the shortest time
    // that the updater counts on.
    std::function<std::chrono::nanoseconds()> loadTime;

    // Decides, from its path, whether a firmware image in the bundle may be offered. Called for each image
    // before anything else is done. An image that may not be offered is treated as if it were not there.
    std::function<bool(const std::string& path)> mayBeOffered;

    // The same for the bytes that are about to be written, because another file may have taken the path
    // since.
    std::function<bool(const std::string& path, std::span<const uint8_t> image)> mayBeWritten;
};

// The exit code if the display or the session ends while the updater runs.
constexpr int kDisplayLost = 5;

// Runs the updater until it has quit, and returns the process's exit code: 0, or kDisplayLost.
[[nodiscard]] int UpdaterMain(const UpdaterSetup& setup = {});
