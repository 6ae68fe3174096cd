#include "hw/PromPrograms.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Compares with two hexadecimal digits per byte, blanks left out.
void expectBytes(std::span<const uint8_t> bytes, std::string listing) {
    std::erase(listing, ' ');
    std::string text;
    for (const uint8_t byte : bytes) {
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 15];
    }
    EXPECT_EQ(text, listing);
}

TEST(PromProgramsTest, ProtectAndReadTheIdentity) {
    expectBytes(kProtectProgram,
                "0700 1200 1201 0400000000 020D1FFF 020D1FDF 0800000021 01001FF1FFFE"
                "09 0000000000 01EA06A126 040001ADB0 020D1E1F 0400000000 020D1D1F 0800000007"
                "0100 09 68 00 020D1D7F 0400000002 0800000011 01000000 09 010000 000000"
                "0400000000 020D1E7F 0800000004 0100 09 06 00 04000036B1 020D1D5F 0400000033"
                "020D1C5F 0100 09 06 06 040001ADB0 020D1E1F 0400000000 020D1FFF 020D1FFF"
                "0800000002 0100 09 00 00 00");
    expectBytes(kReadProgram,
                "0708 1201 0400000000 020D1FFF 020D1FDF 0800000021 010001F1FFFF"
                "09 01FFFFFFFE 000A04A126 020D1FFF 020D1D1F 0800000007 0100 09 08 00"
                "0800000011 01000000 09 010000 000000 020D1FBF 0800000021 0101FFFFFFFF"
                "09 01FFFFFFFE 00FFFFFFFF 020D1FFF 00");
}

TEST(PromProgramsTest, WriteAnIdentity) {
    const auto step = [](const std::string& check, const std::string& wait) {
        return "020D1D7F 0800000011 01" + check + "09 010000" + check +
               "020D1FBF 0800000021 010000000000 09 004260E02A 0000000000 04000036B0 020D1D5F 04" + wait;
    };
    auto program = kWriteProgram;
    PatchIdentity(program, 0xFFFFFFFF);
    PatchIdentity(program, 0x21307015);
    expectBytes(program,
                "0700 1200 1201 0400000FA0 020D1E1F 0400000000 020D1FFF 020D1FFF 020D1D1F 0800000007"
                "0100 09 08 00" +
                    step("000000", "00000000") + step("010000", "00000000") + step("000000", "00000FA0") +
                    "020D1E1F 0400000000 020D1FFF 020D1D1F 0800000007 0100 09 08 00 0800000011 01000000"
                    "09 010000 000000 020D1FBF 0800000021 01004260E02A 09 01FFFFFFFE 00FFFFFFFF"
                    "0400000FA0 020D1E1F 0400000000 020D1FFF 00");
}

}  // namespace
