#pragma once

// A JTAG port that always gives the player the answers it expects, for a limited number of clocks. Only one
// may exist at a time.

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "images/AccessCount.h"
#include "xsvf/StateRecord.h"

// Thrown through the player where a real port would continue: by a read past the image, and by too many
// clocks.
struct PortIsClosed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct AnsweringPort {
    AnsweringPort();

    // Opens an image at an offset, for a player with this record.
    void open(std::vector<uint8_t>& image, uint32_t offset, const tagSXsvfInfo& info, uint64_t clocks);

    images::Accesses accesses;  // the register accesses that a card would see
    const tagSXsvfInfo* info = nullptr;
    uint64_t clocksLeft = 0;
    int32_t samples = 0;  // since the last byte of the image
};
