#pragma once

// A reserve of memory. If an allocation fails, the reserve is released, once, and the allocation is tried
// again, so that there is room to finish and to tell the user. The latest zone is used until it is destroyed.

#include <cstdint>
#include <memory>
#include <new>

class LGrowZone {
  public:
    explicit LGrowZone(int32_t reserveBytes);
    LGrowZone(const LGrowZone&) = delete;
    LGrowZone& operator=(const LGrowZone&) = delete;
    ~LGrowZone();

    // Whether the reserve has been released, so that the next allocation to fail fails for good.
    bool MemoryIsLow() const { return mReserve == nullptr; }

  private:
    static void GiveReserveBack();

    std::unique_ptr<char[]> mReserve;
    std::new_handler mPreviousHandler;
    LGrowZone* mPreviousZone;
};
