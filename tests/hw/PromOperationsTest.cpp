#include "hw/PromOperations.h"

#include <gtest/gtest.h>

#include "hw/ApplicationHooks.h"
#include "tests/hw/ScriptedCard.h"

namespace {

constexpr uint64_t identification = uint64_t{0xF5035093} << 1;
constexpr uint32_t identity = 0x21307015;
const std::string couldNotWrite = "Error / Error writing Serial Number! ";

// What the chain gives out in the captured scans of the programs: the bypass bit, then the PROM's register.
void answerRead(ScriptedCard& card, uint64_t code, uint64_t userCode) {
    card.answers(code, 33);
    card.answers(0, 7 + 17);
    for (int attempt = 0; attempt < 9; ++attempt) {
        card.answers(userCode << 1, 33);
    }
}

void answerWriteAndProtect(ScriptedCard& card, uint64_t verified) {
    card.answers(0, 7 + 17 + 33);
    card.answers(0x10000, 17);
    card.answers(0, 33 + 17 + 33 + 7 + 17);
    card.answers(verified << 1, 33);
    card.answers(identification, 33);
    card.answers(0, 7 + 17 + 4 + 4 + 2);
}

TEST(PromOperations, readIdentityFromTheRightChainOnly) {
    // Identification, user code, what is read, result; bit 31 of a user code does not come back.
    const std::tuple<uint64_t, uint32_t, uint32_t, uint16_t> cases[] = {
        {identification, identity, identity, 0},
        {identification, ~0U, 0x7FFFFFFF, 0},
        {identification ^ 2, identity, 77, 1},
        {0x1FFFFFFFF, ~0U, 77, 1}};
    for (const auto& [code, userCode, read, result] : cases) {
        ScriptedCard card;
        answerRead(card, code, userCode);
        uint32_t stored = 77;
        EXPECT_EQ(GetSerialNumber(&stored), result);
        EXPECT_EQ(stored, read);
    }
}

TEST(PromOperations, writeIdentityAndReadItBack) {
    // What is written, verified, the identification and identity read back, result, alert.
    const std::tuple<uint32_t, uint32_t, uint64_t, uint32_t, uint16_t, std::string> cases[] = {
        {identity, identity, identification, identity, 0, ""},
        {identity, identity, 0, identity, 1, "Error 2 / Unable to read Serial Number from VornMX/K40! "},
        {identity, identity & ~1U, identification, identity, 2, couldNotWrite},
        {0x80000001, 0x80000001, identification, 1, 2, couldNotWrite},
        // Only the bits that are 1 in the identity are verified, so reading back has to notice the others.
        {identity, ~0U, identification, ~0U, 2, "Error / Serial Number readback does not match! "},
    };
    for (const auto& [written, verified, code, readBack, result, alert] : cases) {
        ScriptedCard card;
        answerWriteAndProtect(card, verified);
        answerRead(card, code, readBack);
        EXPECT_EQ(WriteSerialNumber(written), result);
        EXPECT_EQ(card.asked, alert);
    }
}

TEST(PromOperations, programNamesTheErrorAndStillWritesTheIdentity) {
    const std::tuple<std::vector<uint8_t>, uint16_t, std::string> cases[] = {
        {{0x08, 0, 0, 0, 1, 0x01, 1, 0x09, 0, 1}, 2, "TDO Mismatch Error"},
        {{0x07, 1, 0x08, 0, 0, 0, 1, 0x01, 1, 0x09, 0, 1}, 3, "TDO Mismatch Error after max retries"},
        {{0x05}, 4, "Illegal Command Error"},
        {{0x14, 2}, 5, "Illegal State Error"},
        {{0x08, 0, 1, 0, 0}, 6, "Data Overflow Error"},
    };
    for (auto [image, code, title] : cases) {
        ScriptedCard card;
        gSerialNumber = code == 2 ? 0 : code == 3 ? 0x7FFFFFFF : identity;
        EXPECT_EQ(ProgramConfigProm(image.data(), 1), code);
        std::string alerts = code < 4 ? "Error / Serial Number is blank! " : "";
        alerts.append(title).append(" / EEPROM Programming Failure! ").append(couldNotWrite);
        EXPECT_EQ(card.asked, alerts);  // the last one comes from the silent chain
    }
}

}  // namespace
