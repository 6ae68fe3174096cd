#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include "platform/LiveObjects.h"
#include "tests/support/FakeHost.h"

namespace {

TEST(ProcessesTest, WalkEndsAtNoProcessAndStartsAgain) {
    FakeHost host;
    const std::string uncut(254, 'x');
    host.processList = {{0x100000007, uncut + "\u00e9, cut before this letter"}, {9, "second"}};
    ProcessSerialNumber process = {0, kNoProcess};
    Str255 name = {0};
    ProcessInfoRec information = {kProcessInfoRecordLength, name, {}, nullptr};

    EXPECT_EQ(GetNextProcess(&process), noErr);
    EXPECT_EQ(process.highLongOfPSN, 1u);
    EXPECT_EQ(process.lowLongOfPSN, 7u);
    EXPECT_EQ(GetProcessInformation(&process, &information), noErr);
    EXPECT_EQ(name[0], uncut.size());
    EXPECT_EQ(GetNextProcess(&process), noErr);
    EXPECT_EQ(GetProcessInformation(&process, &information), noErr);
    EXPECT_EQ(GetNextProcess(&process), procNotFound);
    EXPECT_EQ(process.lowLongOfPSN, kNoProcess);
    // Without a process, the name buffer keeps the last process's name.
    EXPECT_EQ(GetProcessInformation(&process, &information), procNotFound);
    Str255 second;
    CopyCStringToPascal("second", second);
    EXPECT_TRUE(EqualString(name, second, true, true));
    EXPECT_EQ(GetNextProcess(&process), noErr);
    EXPECT_EQ(process.lowLongOfPSN, 7u);

    information.processInfoLength = 59;
    EXPECT_EQ(GetProcessInformation(&process, &information), paramErr);

    // Only the shutdown event, 'aevt' 'shut', can be sent: not 'quit', and no other class.
    AEDesc target, reply;
    ASSERT_EQ(AECreateDesc(typeProcessSerialNumber, &process, sizeof process, &target), noErr);
    for (const auto& [eventClass, eventID, result] : {std::tuple{0x61657674U, 0x73687574U, noErr},
                                                      {0x61657674U, 0x71756974U, paramErr},
                                                      {0x78787878U, 0x73687574U, paramErr}}) {
        AppleEvent event;
        ASSERT_EQ(AECreateAppleEvent(eventClass, eventID, &target, 0, 0, &event), noErr);
        EXPECT_EQ(AESend(&event, &reply, 0, 0, 0, nullptr, nullptr), result) << eventID;
        AEDisposeDesc(&event);
    }
    AEDisposeDesc(&target);
}

}  // namespace
