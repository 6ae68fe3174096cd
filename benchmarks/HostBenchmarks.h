#pragma once

// What this computer's host costs for each access to a card, compared with the processor's own loads and
// stores on the same mapping, which is a plain file's.

namespace benchmarks {

// Names of the benchmarks, by which the reporter finds their results. On a bus an access takes some 0.5 to 2
// microseconds; `OnABus` spends half a microsecond after each.
constexpr const char* kPlainAccesses = "plain accesses";
constexpr const char* kHostAccesses = "the host's accesses";
constexpr const char* kPlainAccessesOnABus = "plain accesses on a bus";
constexpr const char* kHostAccessesOnABus = "the host's, on a bus";

void registerHostBenchmarks();

}  // namespace benchmarks
