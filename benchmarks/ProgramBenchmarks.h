#pragma once

// What the updater costs as a program, compared with a hand-built copy of its window
// (window/PlainWindow.cpp).

namespace benchmarks {

// Names of the benchmarks, by which the reporter finds their results. The first two take the time from the
// start of the process until its first window has been drawn; the last takes the processor time from the
// confirmation of an update to its end.
constexpr const char* kPlainWindow = "hand-built window";
constexpr const char* kUpdater = "updater";
constexpr const char* kUpdateInWindow = "update in the window";

// Counters: the processor time that the process used until its first window had been drawn, and its peak
// resident memory in bytes.
constexpr const char* kWorkedSeconds = "worked";
constexpr const char* kPeakBytes = "peak";

void registerProgramBenchmarks();

}  // namespace benchmarks
