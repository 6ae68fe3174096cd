#pragma once

// What the updater costs as a program, against its window put together by hand (window/PlainWindow.cpp).

namespace benchmarks {

// Names of the benchmarks, which the reporter knows their results by. The first two take the time from the
// start of the process until its first window has been drawn; the last takes the processor time from the
// confirmation of an update to its end.
constexpr const char* kPlainWindow = "hand-built window";
constexpr const char* kUpdater = "updater";
constexpr const char* kUpdateInWindow = "update in the window";

// Counters: the processor time that the process had had when its first window had been drawn, and the most
// memory that it had resident, in bytes.
constexpr const char* kWorkedSeconds = "worked";
constexpr const char* kPeakBytes = "peak";

void registerProgramBenchmarks();

}  // namespace benchmarks
