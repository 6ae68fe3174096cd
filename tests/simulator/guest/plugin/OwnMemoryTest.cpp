#include "simulator/guest/plugin/OwnMemory.h"

#include <gtest/gtest.h>

#include <vector>

namespace simulator {

TEST(OwnMemoryTest, TellsWhatNeedsNoPointer) {
    const struct {
        const char* instruction;
        bool needsNoPointer;
        std::vector<uint8_t> bytes;
    } cases[] = {
        {"push %rbx", true, {0x53}},
        {"pop %r12", true, {0x41, 0x5C}},
        {"call +0x10", true, {0xE8, 0x10, 0, 0, 0}},
        {"ret", true, {0xC3}},
        {"mov 0x10(%rip),%edx", true, {0x8B, 0x15, 0x10, 0, 0, 0}},
        {"cmpb $0,0x10(%rip)", true, {0x80, 0x3D, 0x10, 0, 0, 0, 0}},
        {"mov 8(%rsp),%rax", true, {0x48, 0x8B, 0x44, 0x24, 0x08}},
        {"mov (%rsi),%eax", false, {0x8B, 0x06}},
        {"mov (%rbp),%eax", false, {0x8B, 0x45, 0x00}},
        {"mov (%r12),%eax", false, {0x41, 0x8B, 0x04, 0x24}},
        {"mov (%rsp,%rax),%eax", false, {0x8B, 0x04, 0x04}},
        {"mov (%rsp,%r12),%eax", false, {0x42, 0x8B, 0x04, 0x24}},
        {"call *0x40(%rax)", false, {0xFF, 0x50, 0x40}},
        {"push (%rax)", false, {0xFF, 0x30}},
        {"rep movsl", false, {0xF3, 0xA5}},
        {"mov %fs:(%rsp),%eax", false, {0x64, 0x8B, 0x04, 0x24}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(accessesOnlyOwnMemory(each.bytes), each.needsNoPointer) << each.instruction;
    }
}

}  // namespace simulator
