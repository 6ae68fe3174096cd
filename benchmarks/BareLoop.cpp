// A separate file, so that the compiler knows as little about the host here as it does in the player's port.

#include "benchmarks/BareLoop.h"

#include "card/Registers.h"
#include "hw/JtagPort.h"

namespace benchmarks {
namespace {

// The reads that the player makes in a row, unrolled as they are there: with a loop around each read this
// would be slower than the player.
constexpr int32_t kReadsInARow = kReadsPerMicrosecond * kSettlingMicroseconds;

}  // namespace

void makeAccesses(const images::Accesses& accesses) {
    uint32_t* const output = RegisterAt(kJtagOutputRegister);
    for (uint64_t store = 0; store < accesses.stores; ++store) {
        MacWriteULONG(output, 0);
    }
    for (uint64_t row = 0; row < accesses.loads / kReadsInARow; ++row) {
#pragma GCC unroll kReadsInARow
        for (int32_t load = 0; load < kReadsInARow; ++load) {
            MacReadULONG(output);
        }
    }
    for (uint64_t load = 0; load < accesses.loads % kReadsInARow; ++load) {
        MacReadULONG(output);
    }
}

}  // namespace benchmarks
