#pragma once

// What the updater costs as a program, against one that shows an empty window.

namespace benchmarks {

// Names of the benchmarks, which the reporter knows their results by. The first two take the time
// from the start of the process until its first window has been drawn; the last the processor time from the
// confirmation of an update to its end.
constexpr const char* kEmptyWindow = "empty window";
constexpr const char* kUpdater = "updater";
constexpr const char* kUpdateInWindow = "update in the window";

// Counter: the most memory that the process had resident, in bytes.
constexpr const char* kPeakBytes = "peak";

void registerProgramBenchmarks();

}  // namespace benchmarks
