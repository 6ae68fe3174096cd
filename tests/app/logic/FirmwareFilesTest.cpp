#include "app/logic/FirmwareFiles.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>

#include "platform/LiveObjects.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

// Puts names into the table in any order. A bundle lists its files sorted.
void setNames(std::initializer_list<const char*> names) {
    gNumXSVFiles = 0;
    for (const char* name : names) {
        std::strncpy(gszResourceNames[gNumXSVFiles++], name, kResourceNameBytes - 1);
    }
}

TEST(FirmwareFilesTest, FirstMatchingFileWins) {
    struct Case {
        std::initializer_list<const char*> names;
        uint16_t model;
        uint16_t board;
        int32_t index;
        uint16_t version;
    };
    for (const Case& c :
         {Case{{"VMAM12NC.xsv", "VMAM10NC.xsv"}, 0x20, 0, 0, 12},
          Case{{"VMAM10NC.xsv", "VMAM12NC.xsv"}, 0x20, 0, 0, 10},
          Case{{"VMAM12NC.xsv", "K40W07B.xsv"}, 0x23, 2, 1, 7}, Case{{"K40W07B.xsv"}, 0x23, 0, -1, 0xFFFF},
          Case{{"K40W07NC.xsv"}, 0x23, 'N' - '@', -1, 0xFFFF}, Case{{"VMBM9"}, 0x21, 1, -1, 0xFFFF},
          Case{{"VMBM1xA.xsv"}, 0x21, 1, 0, 1}, Case{{}, 0x21, 1, -1, 0xFFFF}}) {
        setNames(c.names);
        ChooseFirmware(c.model, c.board);
        EXPECT_EQ(gNewFirmware, c.index);
        EXPECT_EQ(gusNewFirmwareRev, c.version);
        std::memset(gszResourceNames, 0, sizeof gszResourceNames);
    }
}

TEST(FirmwareFilesTest, OverviewExplainsEachName) {
    setNames({"VMBM12A.xsv", "K40W07NC.xsv", "notes.xsv", "DX.xsv"});
    EXPECT_EQ(FirmwareOverview(),
              "VornMX-B, board A: M12 (VMBM12A.xsv)\nVorn K40: W7 (K40W07NC.xsv)\nnotes.xsv\nDX.xsv");
}

TEST(FirmwareFilesTest, CurrentMeansSameLetterAndNotOlder) {
    EXPECT_TRUE(IsFirmwareCurrent(ByteOrderLetter(0), 12, FirmwareByteOrderLetter("VMBM12A"), 12));
    EXPECT_FALSE(IsFirmwareCurrent('M', 11, 'M', 12));
    EXPECT_FALSE(IsFirmwareCurrent('W', 12, 'M', 10));
    EXPECT_TRUE(IsFirmwareCurrent(ByteOrderLetter(1), 12, FirmwareByteOrderLetter("VMB?10A"), 10));
}

TEST(FirmwareFilesTest, CatalogueLimitsItsEntriesNamesAndPaths) {
    const TemporaryDirectory directory;
    FakeHost host;
    host.bundle = directory.path() / std::string(200 - directory.path().string().size(), 'x');

    const auto resources = host.bundle / "Contents/Resources";
    std::filesystem::create_directories(resources);
    for (int i = 0; i < 18; ++i) {
        std::ofstream(resources / ("VMAM" + std::to_string(10 + i) + "NC.xsv")) << "x";
    }
    std::ofstream(resources / "K40W07B-a-long-name.xsv") << "x";
    std::ofstream(resources / ("A-path-that-is-too-long" + std::string(40, 'x') + ".xsv")) << "x";
    CatalogueFirmwareFiles();
    EXPECT_EQ(gNumXSVFiles, 16);
    EXPECT_STREQ(gszResourceNames[0], "K40W07B-a-lon");
    EXPECT_STREQ(gszResourceNames[1], "VMAM10NC.xsv");
    EXPECT_STREQ(gszResourcePaths[1], (resources / "VMAM10NC.xsv").c_str());

    // Those that may not be offered take no places.
    CatalogueFirmwareFiles([](const std::string& path) { return path.ends_with("7NC.xsv"); });
    EXPECT_EQ(FirmwareOverview(), "VornMX-A: M17 (VMAM17NC.xsv)\nVornMX-A: M27 (VMAM27NC.xsv)");
    EXPECT_STREQ(gszResourcePaths[1], (resources / "VMAM27NC.xsv").c_str());
    EXPECT_EQ(CountLiveObjects(), LiveObjects());
}

}  // namespace
