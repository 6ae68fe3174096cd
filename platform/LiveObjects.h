#pragma once

// Counts what the Mac services have handed out and not been given back, so that a leak is something one can
// see.

#include <cstddef>

struct LiveObjects {
    std::size_t services = 0;
    std::size_t iterators = 0;
    std::size_t coreFoundationObjects = 0;
    std::size_t appleEventDescriptors = 0;
    std::size_t authorizations = 0;

    bool operator==(const LiveObjects&) const = default;
};

// Everything that is alive in this process at this moment.
LiveObjects CountLiveObjects();
