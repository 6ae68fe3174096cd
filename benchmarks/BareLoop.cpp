// A file of its own, so that the compiler knows as little about the host here as it does in the player's
// port.

#include "benchmarks/BareLoop.h"

#include "card/Registers.h"
#include "hw/JtagPort.h"

namespace benchmarks {
namespace {

// What the player reads in a row, unrolled as it is there: a loop around every single read would make the
// measure slower than what is measured.
constexpr uint64_t kReadsInARow = kReadsPerMicrosecond * kSettlingMicroseconds;

}  // namespace

void makeAccesses(const Accesses& accesses) {
    uint32_t* const output = RegisterAt(kJtagOutputRegister);
    for (uint64_t store = 0; store < accesses.stores; ++store) {
        MacWriteULONG(output, 0);
    }
    for (uint64_t row = 0; row < accesses.loads / kReadsInARow; ++row) {
#pragma GCC unroll kReadsInARow
        for (uint64_t load = 0; load < kReadsInARow; ++load) {
            MacReadULONG(output);
        }
    }
    for (uint64_t load = 0; load < accesses.loads % kReadsInARow; ++load) {
        MacReadULONG(output);
    }
}

}  // namespace benchmarks
