#pragma once

// How much of what the Mac services have handed out since the host was installed has not been given back, so
// that leaks can be seen.

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
