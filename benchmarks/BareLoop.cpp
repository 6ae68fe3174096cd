// A file of its own, so that the compiler knows as little about the host here as it does in the player's
// port.

#include "benchmarks/BareLoop.h"

#include "card/Registers.h"

namespace benchmarks {

void makeAccesses(const Accesses& accesses) {
    uint32_t* const output = RegisterAt(kJtagOutputRegister);
    for (uint64_t write = 0; write < accesses.writes; ++write)
        MacWriteULONG(output, 0);
    for (uint64_t read = 0; read < accesses.reads; ++read)
        MacReadULONG(output);
}

}  // namespace benchmarks
