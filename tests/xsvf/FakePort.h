#pragma once

// A JTAG port that records what the player does and answers from a script. Only one may exist at a time.

#include <deque>
#include <string>
#include <vector>

#include "xsvf/StateRecord.h"

struct FakePort {
    FakePort();

    // 0 or 1: a TCK cycle with TMS at that level and TDI low; o or i: the same with TDI high; s: a sample of
    // TDO; w and a number: a wait in microseconds.
    std::string log;
    std::deque<uint8_t> tdo;  // the next samples; 0 after the last
};

// The bytes of a text such as "07 08".
std::vector<uint8_t> bytesOf(const std::string& hexadecimal);

// Plays an image over the existing port.
tagSXsvfInfo played(std::vector<uint8_t> image);
