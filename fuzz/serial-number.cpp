// Serial numbers, as they are typed and as they are shown.

#include <cstring>

#include "catalogue/CardIdentity.h"
#include "catalogue/CardModels.h"
#include "fuzz/Require.h"

namespace {

using namespace catalogue;

void checkTyped(std::string_view text) {
    const auto identity = parseTypedSerialNumber(text);
    if (!identity) {
        return;
    }
    require(isModelCode(identityModelCode(*identity)), "a serial number that is taken is a known model's");
    require(!isBlankIdentity(*identity) && *identity >> 31 == 0, "it can be written and is not blank then");
    require(parseTypedSerialNumber(serialNumberText(*identity)) == identity,
            "what is shown reads back as the same");
    require(manufactureDateText(*identity) != "Unknown!", "its week is one of a year");
}

// Any word can be read from a card.
void checkShown(uint32_t identity) {
    const std::string text = serialNumberText(identity);
    const auto typed = parseTypedSerialNumber(text);
    require(!typed || *typed == identity, "no two cards show the same serial number");
    require(text.size() > kSerialNumberCharacters || parseSerialNumber(text) == identity,
            "what is shown reads back as the same, valid or not");
    require(!manufactureDateText(identity).empty(), "there is a text for every date");
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
