// Serial numbers, as they are typed and as they are shown.

#include <cstring>

#include "app/logic/CardIdentity.h"
#include "app/logic/CardModel.h"
#include "fuzz/Require.h"
#include "hw/PromOperations.h"

namespace {

void checkTyped(std::string_view text) {
    const auto identity = ParseSerialNumber(text);
    if (!identity)
        return;
    require(IsModelCode(IdentityModelCode(*identity)), "a serial number that is taken is a known model's");
    require(!IsBlankIdentity(*identity) && *identity >> 31 == 0, "it can be written and is not blank then");
    require(ParseSerialNumber(SerialNumberText(*identity)) == identity,
            "what is shown reads back as the same");
    require(ManufactureDateText(*identity) != "Unknown!", "its week is one of a year");
}

// Any word can be read from a card.
void checkShown(uint32_t identity) {
    const auto readBack = ParseSerialNumber(SerialNumberText(identity));
    require(!readBack || *readBack == identity, "no two cards show the same serial number");
    require(!ManufactureDateText(identity).empty(), "there is a text for every date");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    checkTyped({reinterpret_cast<const char*>(data), size});
    uint32_t identity = 0;
    if (size >= sizeof identity) {
        std::memcpy(&identity, data, sizeof identity);
        checkShown(identity);
    }
    return 0;
}
