#pragma once

// The updater's private driver: installed when no card can be found, removed when the updater ends.

#include <cstdint>

// Installs the driver and stores a reference to it. Returns 1 when it was loaded, else 0 with a null
// reference.
//
// This build carries no private driver, so it always answers as an installation that failed.
int32_t ExtractAndLoadKext(void** driverReference);

// Unloads and deletes the driver. Returns 1 when it ran, 0 when the reference was null, which it always is
// here.
int32_t UnloadAndDeleteKext(void** driverReference);
