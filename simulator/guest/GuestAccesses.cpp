#include "simulator/guest/GuestAccesses.h"

namespace simulator {

void GuestAccesses::addStray(const char* detail) {
    ++strays_;
    machine_.ledger().record(Misuse::strayAccess, card_.board().name, detail, machine_.accesses());
}

std::string GuestAccesses::text() const {
    std::string text = digest_.text();
    if (strays_ != 0) {
        text += ", " + std::to_string(strays_) + " stray";
    }
    return text;
}

}  // namespace simulator
