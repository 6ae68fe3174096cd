#pragma once

// What the Mac services have handed out and not been given back since the host was installed, so that a leak
// is something one can see.

#include <cstddef>

struct LiveObjects {
    std::size_t services = 0;
    std::size_t iterators = 0;
    std::size_t coreFoundationObjects = 0;
    std::size_t appleEventDescriptors = 0;
    std::size_t authorizations = 0;

    bool operator==(const LiveObjects&) const = default;
};

// All zero while no host is installed.
LiveObjects CountLiveObjects();
