#include "tools/xsvf/XsvfTool.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "simulator/Files.h"
#include "simulator/FpgaConfiguration.h"
#include "tests/support/CommandLineTest.h"
#include "tools/command_line/CommandLine.h"

namespace tools {

namespace fs = std::filesystem;
using simulator::readFile;

class XsvfTool : public CommandLineTest {
  protected:
    XsvfTool() : CommandLineTest(runXsvf) {}

    static void write(const fs::path& path, std::string_view text) {
        simulator::replaceFile(path, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    }

    const std::string make_ = "make --model K40 --flavour W --board B --version ";
};

TEST_F(XsvfTool, ListsAssemblesAndChecksAnImage) {
    follow({{make_ + "7 --date 2005-11-02", kDone, {"K40W07B.xsv\n"}},
            {"list K40W07B.xsv --output listing"},
            {"assemble listing --output K40W08B.xsv"},
            {"check K40W08B.xsv K40W07B.xsv",
             kFailed,
             {"xsvf: K40W08B.xsv: The name does not fit, the content is that of K40W07B.xsv.\n",
              "K40W07B.xsv: 7702 commands, 1082458 bytes, 275756419 register accesses, about 92 s on a "
              "card.\n"}}});
    auto image = readFile("K40W07B.xsv");
    EXPECT_TRUE(readFile("K40W08B.xsv") == image);
    const auto listing = readFile("listing");
    image[image.size() - 300] ^= 1;  // in the last page, where the image compares it
    simulator::replaceFile("damaged.xsv", image);
    follow({{"check damaged.xsv",
             kFailed,
             {"xsvf: damaged.xsv: offset 0x108044: The comparison fails on a simulated card.\n"}},
            {"list K40W07B.xsv", kDone, {std::string(listing.begin(), listing.end())}}});
}

TEST_F(XsvfTool, KeepsAPayloadNamedLikeAnImage) {
    write("K40W07B.xsv", std::string(simulator::kPromBytes, '\0'));
    write("too-long", std::string(simulator::kPromBytes + 1, '\0'));
    follow(
        {{make_ + "08 --payload K40W07B.xsv", kDone, {"K40W08B.xsv\n"}},
         {"check K40W08B.xsv",
          kDone,
          {"; the content is no configuration that tells whether the name fits.\n"}},
         {make_ + "7 --payload ./K40W07B.xsv", kFailed, {": would be replaced by what is made from it.\n"}},
         {make_ + "7 --payload \"\"", kWrongUsage},
         {make_ + "7 --payload too-long", kFailed, {"262145 bytes"}}});
    EXPECT_EQ(readFile("K40W07B.xsv").size(), simulator::kPromBytes);
}

TEST_F(XsvfTool, WritesWhereALinkLeads) {
    write("listing", "XCOMPLETE\n");
    fs::create_symlink("image.xsv", "link.xsv");
    fs::create_symlink("loop", "loop");
    follow({{"assemble listing --output link.xsv"},
            {"assemble listing --output loop", kFailed, {"loop: is a link that leads nowhere.\n"}}});
    EXPECT_TRUE(fs::is_symlink("link.xsv"));
    EXPECT_EQ(readFile("image.xsv").size(), 1U);
}

TEST_F(XsvfTool, LeavesFilesAloneWhenItFails) {
    write("bad", "XREPEAT 3\nXSDR 0x12\n");
    write("good", "XCOMPLETE\n");
    write("image.xsv", "old");
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    follow({{"assemble bad --output image.xsv",
             kFailed,
             {"xsvf: bad, line 2: The value \"0x12\" needs 1 byte; the size in force here is 0.\n"}},
            {"assemble good --output .", kFailed, {"xsvf: ."}},
            {"assemble good --output pipe", kFailed, {"xsvf: pipe"}},
            {"assemble good --output none/none", kFailed, {"xsvf: none/none"}},
            {"list .", kFailed, {"xsvf: .: could not be "}},
            {"list none", kFailed, {"xsvf: none: could not be "}},
            {"list", kWrongUsage},
            {"check .", kFailed, {"xsvf: .: could not be "}},
            {"check none", kFailed, {"xsvf: none: could not be "}},
            {"check", kWrongUsage}});
    EXPECT_EQ(readFile("image.xsv").size(), 3U);
    EXPECT_TRUE(fs::is_fifo("pipe"));
}

}  // namespace tools
