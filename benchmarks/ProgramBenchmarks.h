#pragma once

// What the updater costs as a program, against one that shows an empty window.

namespace benchmarks {

// Names of the benchmarks, which the reporter knows their results by. Their times are from the start of the
// process: until its first window has been drawn for the first two, of the writing alone for the last.
constexpr const char* kEmptyWindow = "empty window";
constexpr const char* kUpdater = "updater";
constexpr const char* kUpdateInWindow = "update in the window";

// Counter: the most memory that the process had resident, in bytes.
constexpr const char* kPeakBytes = "peak";

void registerProgramBenchmarks();

}  // namespace benchmarks
