#pragma once

// Where an application's bundle lies on a host that has no bundles of its own.

#include <filesystem>

// The folder VUpdater.app beside the running executable, whatever the working directory; an empty path when
// it is not there.
std::filesystem::path BundleBesideExecutable();
