#pragma once

// The process entry, the same on every host: a host's main installs its Host and calls this.

// Runs the updater until it has quit, and returns the process's exit code.
int UpdaterMain();
