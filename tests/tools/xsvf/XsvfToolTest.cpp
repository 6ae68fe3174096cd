#include "tools/xsvf/XsvfTool.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <sstream>

#include "simulator/Files.h"
#include "simulator/FpgaConfiguration.h"
#include "tests/support/TemporaryDirectory.h"
#include "tools/command_line/CommandLine.h"

namespace tools {

namespace fs = std::filesystem;

class XsvfTool : public testing::Test {
  protected:
    int runWith(const std::vector<std::string>& arguments) {
        out_.str("");
        err_.str("");
        return runXsvf(arguments, out_, err_);
    }
    void makeImage(const std::vector<std::string>& content) {
        std::vector<std::string> arguments{
            "make", "--model", "K40", "--flavour",          "W",    "--version",
            "7",    "--board", "B",   "--output-directory", folder_};
        arguments.insert(arguments.end(), content.begin(), content.end());
        ASSERT_EQ(runWith(arguments), kDone) << err_.str();
        ASSERT_EQ(out_.str(), image_ + "\n");
    }
    void write(const fs::path& path, std::string_view text) {
        simulator::replaceFile(path, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    }

    const TemporaryDirectory directory_;
    const fs::path& folder_ = directory_.path();
    const std::string image_ = folder_ / "K40W07B.xsv";
    const std::string other_ = folder_ / "K40W08B.xsv";
    const std::string listing_ = folder_ / "listing";
    std::ostringstream out_, err_;
};

TEST_F(XsvfTool, ListsAssemblesAndChecksAnImage) {
    makeImage({"--date", "2005-11-02"});
    ASSERT_EQ(runWith({"list", image_, "--output", listing_}), kDone) << err_.str();
    ASSERT_EQ(runWith({"list", image_}), kDone);
    const auto listing = simulator::readFile(listing_);
    EXPECT_EQ(out_.str(), std::string(listing.begin(), listing.end()));
    ASSERT_EQ(runWith({"assemble", listing_, "--output", other_}), kDone) << err_.str();
    auto image = simulator::readFile(image_);
    EXPECT_TRUE(simulator::readFile(other_) == image);

    EXPECT_EQ(runWith({"check", other_, image_}), kFailed);
    EXPECT_EQ(err_.str(),
              "xsvf: " + other_ + ": The name does not fit, the content is that of K40W07B.xsv.\n");
    EXPECT_EQ(out_.str(), image_ +
                              ": 7702 commands, 1082458 bytes, 275756419 register accesses, about 92 s "
                              "on a card.\n");
    image[image.size() - 300] ^= 1;  // in the last page, where the image compares it
    simulator::replaceFile(image_, image);
    EXPECT_EQ(runWith({"check", image_}), kFailed);
    EXPECT_EQ(err_.str(),
              "xsvf: " + image_ + ": offset 0x108044: The comparison fails on a simulated card.\n");
}

TEST_F(XsvfTool, DoesNotJudgeTheNameOfAForeignContent) {
    write(folder_ / "payload", std::string(simulator::kPromBytes, 'x'));
    makeImage({"--payload", folder_ / "payload"});
    EXPECT_EQ(runWith({"check", image_}), kDone) << err_.str();
    EXPECT_NE(out_.str().find("; the content is no configuration that tells whether the name fits.\n"),
              std::string::npos);
}

TEST_F(XsvfTool, TakesAPayloadThatIsLikeAnUsedPromAndKeepsIt) {
    write(image_, std::string(simulator::kPromBytes, '\0'));
    const std::vector<std::string> arguments{
        "make", "--model",   "K40",  "--flavour",          "W",    "--version", "08", "--board",
        "B",    "--payload", image_, "--output-directory", folder_};
    ASSERT_EQ(runWith(arguments), kDone) << err_.str();
    EXPECT_EQ(out_.str(), other_ + "\n");
    EXPECT_EQ(runWith({"check", other_}), kDone) << err_.str();
    auto over = arguments;
    over[6] = "7";
    EXPECT_EQ(runWith(over), kFailed);
    EXPECT_EQ(err_.str(), "xsvf: " + image_ + ": would be replaced by what is made from it.\n");
    EXPECT_EQ(simulator::readFile(image_).size(), simulator::kPromBytes);
    over[10] = "";
    EXPECT_EQ(runWith(over), kWrongUsage) << "no payload is not a made-up one";
}

TEST_F(XsvfTool, MakesWhatALinkLeadsTo) {
    write(listing_, "XCOMPLETE\n");
    fs::create_symlink("K40W08B.xsv", image_);
    ASSERT_EQ(runWith({"assemble", listing_, "--output", image_}), kDone) << err_.str();
    EXPECT_TRUE(fs::is_symlink(image_));
    EXPECT_EQ(simulator::readFile(other_).size(), 1U);
    fs::create_symlink("loop", folder_ / "loop");
    EXPECT_EQ(runWith({"assemble", listing_, "--output", folder_ / "loop"}), kFailed);
    EXPECT_NE(err_.str().find("/loop: is a link that leads nowhere.\n"), std::string::npos) << err_.str();
}

TEST_F(XsvfTool, LeavesFilesAloneWhenItFails) {
    write(listing_, "XREPEAT 3\nXSDR 0x12\n");
    write(image_, "old");
    EXPECT_EQ(runWith({"assemble", listing_, "--output", image_}), kFailed);
    EXPECT_EQ(err_.str(), "xsvf: " + listing_ +
                              ", line 2: The value \"0x12\" needs 1 byte; the size in force here is 0.\n");
    EXPECT_EQ(simulator::readFile(image_).size(), 3U);
    write(listing_, "XCOMPLETE\n");
    const std::string pipe = folder_ / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& wrong : {std::string(folder_), pipe, other_ + "/none"}) {
        EXPECT_EQ(runWith({"assemble", listing_, "--output", wrong}), kFailed) << wrong;
        EXPECT_EQ(err_.str().find("xsvf: " + wrong), 0U) << err_.str();
    }
    EXPECT_TRUE(fs::is_fifo(pipe));
    for (const char* command : {"list", "check"}) {
        for (const std::string& wrong : {std::string(folder_), other_ + "/none"}) {
            EXPECT_EQ(runWith({command, wrong}), kFailed) << wrong;
            EXPECT_EQ(err_.str().find("xsvf: " + wrong + ": could not be "), 0U) << err_.str();
        }
        EXPECT_EQ(runWith({command}), kWrongUsage);
    }
}

}  // namespace tools
