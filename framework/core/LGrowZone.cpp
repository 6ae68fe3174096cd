#include "framework/core/LGrowZone.h"

#include <cstdio>

namespace {

LGrowZone* gZone = nullptr;

}  // namespace

// Value-initialised, so that every page of the reserve really exists.
LGrowZone::LGrowZone(int32_t reserveBytes)
    : mReserve(new char[static_cast<std::size_t>(reserveBytes)]()),
      mPreviousHandler(std::set_new_handler(&GiveReserveBack)),
      mPreviousZone(gZone) {
    gZone = this;
}

LGrowZone::~LGrowZone() {
    std::set_new_handler(mPreviousHandler);
    gZone = mPreviousZone;
}

void LGrowZone::GiveReserveBack() {
    if (gZone->MemoryIsLow()) {
        throw std::bad_alloc();
    }
    gZone->mReserve.reset();
    std::fputs("Memory is low\n", stderr);
}
