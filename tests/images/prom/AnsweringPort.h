#pragma once

// A JTAG port on which the player always gets the answers that it expects, and not for ever. One lives at a
// time.

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "images/AccessCount.h"
#include "xsvf/StateRecord.h"

// Thrown through the player where a real port would go on: by reading behind the image, and by too many
// clocks.
struct PortIsClosed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct AnsweringPort {
    AnsweringPort();

    // Opens an image at an offset for a player with this record.
    void open(std::vector<uint8_t>& image, uint32_t offset, const tagSXsvfInfo& info, uint64_t clocks);

    images::Accesses accesses;  // that a card would see
    const tagSXsvfInfo* info = nullptr;
    uint64_t clocksLeft = 0;
    int32_t samples = 0;  // since the last byte of the image
};
