// A file of its own, so that the compiler knows as little about the host here as it does in the player's
// port.

#include "benchmarks/BareLoop.h"

#include "card/Registers.h"

namespace benchmarks {

void makeAccesses(const Accesses& accesses) {
    uint32_t* const output = RegisterAt(kJtagOutputRegister);
    for (uint64_t store = 0; store < accesses.stores; ++store)
        MacWriteULONG(output, 0);
    for (uint64_t load = 0; load < accesses.loads; ++load)
        MacReadULONG(output);
}

}  // namespace benchmarks
