#pragma once

// How much of its work the player hands to the trace hook xsvfPrintLenVal.

#include <cstdint>

// Set by the caller before a run.
extern int32_t xsvf_iDebugLevel;

// Above the first level, the values of a final mismatch; above the second, those of every shift, retry and
// mask.
constexpr int32_t kTraceMismatches = 0;
constexpr int32_t kTraceShifts = 3;
