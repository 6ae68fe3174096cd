#pragma once

// What the updater costs as a program, against one that shows an empty window, and others that show
// a little more.

namespace benchmarks {

// Names of the benchmarks, which the reporter knows their results by. All but the last take the time
// from the start of the process until its first window has been drawn; the last takes the processor time from
// the confirmation of an update to its end.
constexpr const char* kEmptyWindow = "empty window";
constexpr const char* kTextWindow = "window with a text";
constexpr const char* kControlsWindow = "window with controls";
constexpr const char* kUpdater = "updater";
constexpr const char* kUpdateInWindow = "update in the window";

// Counters: the processor time that the process had had when its first window had been drawn, and the most
// memory that it had resident, in bytes.
constexpr const char* kWorkedSeconds = "worked";
constexpr const char* kPeakBytes = "peak";

void registerProgramBenchmarks();

}  // namespace benchmarks
