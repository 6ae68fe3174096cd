#pragma once

// Switching the computer off.

#include <systemd/sd-bus.h>

namespace client {

// Has logind switch the computer off, which may ask the user for a password. True if that has begun or was
// under way. Otherwise a line on standard error says why, and which programs prevent it.
[[nodiscard]] bool powerOffThroughLogind(sd_bus* connection);

}  // namespace client
