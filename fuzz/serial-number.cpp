// Serial numbers as they are typed and shown.

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
    require(isModelCode(identityModelCode(*identity)), "an accepted serial number is a known model's");
    require(!isBlankIdentity(*identity) && *identity >> 31 == 0, "an accepted serial number is not blank");
    require(parseTypedSerialNumber(serialNumberText(*identity)) == identity,
            "a typed serial number is shown as the same identity");
    require(manufactureDateText(*identity) != "Unknown!", "an accepted serial number has a valid week");
}

// Any word can be read from a card.
void checkShown(uint32_t identity) {
    const std::string text = serialNumberText(identity);
    const auto typed = parseTypedSerialNumber(text);
    require(!typed || *typed == identity, "different identities show different serial numbers");
    require(text.size() > kSerialNumberCharacters || parseSerialNumber(text) == identity,
            "a shown serial number reads back as its identity");
    require(!manufactureDateText(identity).empty(), "every identity has a date text");
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
