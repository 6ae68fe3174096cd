#pragma once

// How many register accesses playing an image must make, worked out from the image and IEEE 1149.1 alone.

#include <cstdint>
#include <span>

struct Accesses {
    uint64_t stores = 0;
    uint64_t loads = 0;
    bool operator==(const Accesses&) const = default;
};

// For images made of XREPEAT, XSTATE, XRUNTEST, XSIR, XSDRSIZE, XTDOMASK, XSDRTDO and XCOMPLETE, whose scans
// all begin and end in Run-Test/Idle and whose compared scans succeed at once. failedScans is how often the
// last XSDRTDO is repeated, when it is one that fails for good.
Accesses expectedAccesses(std::span<const uint8_t> image, int failedScans = 0);
