#include "tests/whole/ExpectedAccesses.h"

#include <stdexcept>

namespace {

// One TCK cycle is three stores, each followed by 15 loads.
constexpr uint64_t storesPerClock = 3;
constexpr uint64_t loadsPerClock = uint64_t{3} * 15;
constexpr uint64_t loadsPerMicrosecond = 3;

// From Run-Test/Idle to Shift-DR and, its last bit clocked on the way out, back. Shift-IR is one step
// further.
constexpr uint64_t clocksAroundDataScan = 3 + 2;
constexpr uint64_t clocksAroundInstructionScan = clocksAroundDataScan + 1;

class Estimator {
  public:
    explicit Estimator(std::span<const uint8_t> image) : image_(image) {}

    Accesses estimate(int failedScans) {
        total_.stores = 1;
        clocks(5);
        while (step(failedScans)) {
        }
        total_.stores += 1;
        return total_;
    }

  private:
    void clocks(uint64_t count) {
        total_.stores += count * storesPerClock;
        total_.loads += count * loadsPerClock;
    }

    uint32_t number(int bytes) {
        uint32_t result = 0;
        for (int i = 0; i < bytes; ++i) {
            result = result << 8 | image_[position_++];
        }
        return result;
    }

    void dataScan() {
        clocks(dataBits_ + clocksAroundDataScan);
        total_.loads += dataBits_ + wait_ * loadsPerMicrosecond;
    }

    bool step(int failedScans) {
        const uint32_t dataBytes = (dataBits_ + 7) / 8;
        switch (number(1)) {
            case 0:
                return false;
            case 1:
                position_ += dataBytes;
                return true;
            case 2: {
                const uint32_t bits = number(1);
                position_ += (bits + 7) / 8;
                clocks(bits + clocksAroundInstructionScan);
                total_.loads += wait_ * loadsPerMicrosecond;
                return true;
            }
            case 4:
                wait_ = number(4);
                return true;
            case 7:
                number(1);
                return true;
            case 8:
                dataBits_ = number(4);
                return true;
            case 9: {
                position_ += std::size_t{2} * dataBytes;
                // The scan that fails for good is followed by one instruction and the end.
                const bool fails = failedScans > 0 && image_[position_] == 2 && image_[position_ + 4] == 0;
                for (int i = 0; i < (fails ? failedScans : 1); ++i) {
                    dataScan();
                }
                return !fails;
            }
            case 14:
                position_ += dataBytes;
                clocks(dataBits_ + clocksAroundDataScan);
                return true;
            case 18:
                clocks(number(1) == 0 ? 5 : 1);
                return true;
            default:
                throw std::runtime_error("a command that cannot be estimated");
        }
    }

    std::span<const uint8_t> image_;
    std::size_t position_ = 0;
    uint32_t dataBits_ = 0;
    uint64_t wait_ = 0;
    Accesses total_;
};

}  // namespace

Accesses expectedAccesses(std::span<const uint8_t> image, int failedScans) {
    return Estimator(image).estimate(failedScans);
}
