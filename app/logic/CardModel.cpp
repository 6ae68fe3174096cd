#include "app/logic/CardModel.h"

namespace {

// The letter of a VornMX variant lies this far above its model code: 0x20 is 'A'.
constexpr int kVariantLetterOffset = 0x21;

}  // namespace

bool IsModelCode(uint32_t code) {
    return code >= kVornMXA && code <= kVornDX8XS;
}

std::string ModelName(uint16_t modelCode) {
    switch (modelCode) {
        case kVornK40:
            return "Vorn K40";
        case kVornDX8:
            return "Vorn DX8";
        case kVornDX8XS:
            return "Vorn DX8-XS";
        default:
            return std::string("VornMX-") + static_cast<char>(modelCode + kVariantLetterOffset);
    }
}
