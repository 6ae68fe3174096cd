#pragma once

// Stands in for the JTAG port: writes down what the player does and answers from a script. One lives at a
// time.

#include <deque>
#include <string>
#include <vector>

#include "xsvf/StateRecord.h"

struct FakePort {
    FakePort();

    // 0 and 1: a TCK cycle with that level of TMS, or o and i when TDI was high; s: a sample of TDO;
    // w and a number: a wait of so many microseconds.
    std::string log;
    std::deque<uint8_t> tdo;  // the samples to come; then 0
};

// "07 08" as bytes.
std::vector<uint8_t> bytesOf(const std::string& hexadecimal);

// Plays an image over the port that lives at the moment.
tagSXsvfInfo played(std::vector<uint8_t> image);
