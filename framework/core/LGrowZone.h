#pragma once

#include <cstdint>
#include <memory>
#include <new>

// A reserve of memory for the moment when an allocation fails: the reserve is given back, once, and the
// allocation is tried again, so that there is room to finish and to tell the user. The latest one is in
// charge until it is destroyed.
class LGrowZone {
  public:
    explicit LGrowZone(int32_t reserveBytes);
    LGrowZone(const LGrowZone&) = delete;
    LGrowZone& operator=(const LGrowZone&) = delete;
    ~LGrowZone();

    // Whether the reserve has been given back, so that the next failing allocation fails for good.
    bool MemoryIsLow() const { return mReserve == nullptr; }

  private:
    static void GiveReserveBack();

    std::unique_ptr<char[]> mReserve;
    std::new_handler mPreviousHandler;
    LGrowZone* mPreviousZone;
};
