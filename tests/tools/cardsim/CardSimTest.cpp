#include "tools/cardsim/CardSim.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "simulator/MachineDirectory.h"
#include "tests/support/TemporaryDirectory.h"
#include "tools/command_line/CommandLine.h"
#include "xsvf/Assembler.h"

namespace cardsim {

namespace fs = std::filesystem;
using simulator::MachineDirectory;
using tools::kDone;
using tools::kFailed;
using tools::kWrongUsage;

class CardSimTest : public testing::Test {
  protected:
    int runWith(const std::vector<std::string>& arguments) {
        out_.str("");
        err_.str("");
        return run(arguments, out_, err_);
    }
    [[nodiscard]] bool says(const std::string& text) const {
        return out_.str().find(text) != std::string::npos;
    }

    const TemporaryDirectory directory_;
    const fs::path& folder_ = directory_.path();
    const TemporaryDirectory other_;
    std::ostringstream out_, err_;
};

TEST_F(CardSimTest, MakesShowsAndPowerCycles) {
    ASSERT_EQ(runWith({"make", folder_}), kDone) << err_.str();
    ASSERT_EQ(runWith({"show", folder_}), kDone);
    EXPECT_TRUE(says("Power       off")) << out_.str();
    EXPECT_TRUE(says("Identity    2103070021 (0x21307015)"));
    EXPECT_TRUE(says("Vorn K40, board B, firmware W7 of 9 Mar 2005; 512 pages programmed, 0 erased"));
    ASSERT_EQ(runWith({"power-cycle", folder_}), kDone);
    {
        const auto directory = MachineDirectory::open(folder_, MachineDirectory::OnOpening::leaveAsItIs);
        directory->machine().card(2).cells().erase();
        directory->machine().ledger().record(simulator::Misuse::shortWait, "Vorn DX8", "Too short.", 42);
        directory->save();
    }
    ASSERT_EQ(runWith({"show", folder_}), kDone);
    EXPECT_TRUE(says("Running     Vorn DX8, board without revision, firmware W7 of 23 Nov 2004"));
    EXPECT_TRUE(says("PROM        no configuration; 0 pages programmed, 512 erased")) << out_.str();
    EXPECT_TRUE(says("Identity    blank (0xFFFFFFFF)"));
    EXPECT_TRUE(says("1 x short wait, first at access 42, Vorn DX8: Too short."));
    ASSERT_EQ(runWith({"power-cycle", folder_}), kDone);
    EXPECT_TRUE(says("Vorn DX8 in PCI slot 3: no configuration"));
}

TEST_F(CardSimTest, AMachineCanDoWithoutADriver) {
    ASSERT_EQ(runWith({"make", "--without-driver", folder_ / "bare"}), kDone) << err_.str();
    ASSERT_EQ(runWith({"show", folder_ / "bare"}), kDone);
    EXPECT_TRUE(says("Driver      none\n")) << out_.str();
    ASSERT_EQ(runWith({"make", folder_ / "usual"}), kDone);
    ASSERT_EQ(runWith({"show", folder_ / "usual"}), kDone);
    EXPECT_TRUE(says("Driver      resident\n"));

    EXPECT_EQ(runWith({"driver", folder_ / "usual", "--resident", "perhaps"}), kWrongUsage);
    ASSERT_EQ(runWith({"driver", folder_ / "usual", "--resident", "no", "--administrator", "refuse"}), kDone);
    ASSERT_EQ(runWith({"driver", folder_ / "usual", "--private-driver", "publishes-nothing"}), kDone);
    ASSERT_EQ(runWith({"power-cycle", folder_ / "usual"}), kDone);
    EXPECT_EQ(runWith({"driver", folder_ / "usual", "--resident", "yes"}), kFailed) << "the machine is on";
    ASSERT_EQ(runWith({"driver", folder_ / "usual", "--administrator", "ask"}), kDone);
    ASSERT_EQ(runWith({"show", folder_ / "usual"}), kDone);
    EXPECT_TRUE(says("Driver      none; a private one publishes nothing\n")) << out_.str();
}

TEST_F(CardSimTest, PlugsChangesAndPullsCards) {
    ASSERT_EQ(runWith({"make", folder_}), kDone);
    ASSERT_EQ(runWith({"add", folder_, "--model", "VornMX-C", "--board", "B", "--firmware", "M3", "--date",
                       "2005-01-02", "--identity", "2203070021"}),
              kDone)
        << err_.str();
    ASSERT_EQ(runWith({"add", folder_, "--model", "K40", "--name", "Second", "--location", "Shelf"}), kDone);
    ASSERT_EQ(runWith({"change", folder_, "1", "--firmware", "W9"}), kDone);
    ASSERT_EQ(runWith({"change", folder_, "1", "--date", "2006-02-01", "--protection", "5"}), kDone);
    ASSERT_EQ(runWith({"change", folder_, "2", "--identity", "blank", "--board", "NC", "--name", "Renamed"}),
              kDone);
    ASSERT_EQ(runWith({"power-cycle", folder_}), kDone);
    for (const std::string refused : {"add", "remove"}) {
        std::vector<std::string> arguments{refused, folder_};
        refused == "add" ? arguments.insert(arguments.end(), {"--model", "DX8"})
                         : arguments.insert(arguments.end(), {"1"});
        EXPECT_EQ(runWith(arguments), kFailed) << "the machine is on";
    }
    ASSERT_EQ(runWith({"power-off", folder_}), kDone);
    ASSERT_EQ(runWith({"remove", folder_, "3"}), kDone);
    EXPECT_TRUE(says("Removed Vorn DX8 in PCI slot 3"));
    ASSERT_EQ(runWith({"power-cycle", folder_}), kDone);
    ASSERT_EQ(runWith({"show", folder_}), kDone);
    for (const char* text :
         {"Running     VornMX-B, board A, firmware W9 of 1 Feb 2006", "Identity    2103070021",
          "Protection  0x5", "Card 2: Renamed in PCI slot 2\n  Board       Vorn K40, board without revision",
          "Card 3: Vorn DX8-XS", "Card 4: VornMX-C in PCI slot 5", "Identity    2203070021 (0x22307015)",
          "Running     VornMX-C, board B, firmware M3 of 2 Jan 2005", "Card 5: Second in Shelf",
          "Identity    blank", "Running     no configuration", "Lamp        off"})
        EXPECT_TRUE(says(text)) << text << out_.str();
    EXPECT_FALSE(fs::exists(folder_ / "card-3.prom"));
}

TEST_F(CardSimTest, SaysWhatIsWrongWithACommandLine) {
    ASSERT_EQ(runWith({"make", folder_}), kDone);
    const struct {
        std::vector<std::string> arguments;
        const char* complaint;
    } kCases[] = {
        {{"change", folder_, "-1", "--name", "A"}, "\"-1\" is not a whole number from 1 on."},
        {{"change", folder_, "0", "--name", "A"}, "\"0\" is not a whole number from 1 on."},
        {{"change", folder_, "9", "--name", "A"}, "There is no card 9; the machine has 4."},
        {{"change", folder_, "1"}, "Nothing was named that could be changed."},
        {{"change", folder_, "1", "--name", "Two\nlines"}, "A text is one line without control characters."},
        {{"change", folder_, "1", "--name", "\xFF"}, "A text is UTF-8."},
        {{"add", folder_, "--model", "K40", "--date", "2005-01-02"}, "Firmware has a version and a date"},
        {{"fault", "inject", folder_, "1", "tdo-low", "--at-clock", "-1"},
         "\"-1\" is not a whole number from 0 on."},
        {{"fault", "inject", folder_, "1", "foreign-identification", "--code", "0xF5035093"},
         "0xF5035093 is the PROM's own code, not a foreign one."},
        {{"driver", folder_}, "Nothing was named that could be changed."},
        {{"driver", folder_, "--resident", "1"}, "\"1\" is none of no|yes."},
        {{"prom", "dump", folder_, "1", folder_}, "is not an ordinary file."},
        {{"record", folder_, "1", folder_ / "card-1.prom"}, "is there already and is no recording."},
        {{"record", folder_, "1", folder_ / "none/wave.vcd"}, "there is no such folder."},
        {{"record", folder_, "1", folder_ / "\xFF.vcd"}, "A text is UTF-8."},
        {{"record", folder_, "2", folder_ / "alias.vcd"}, "another card is to be recorded there."}};
    std::filesystem::create_symlink("real.vcd", folder_ / "alias.vcd");
    ASSERT_EQ(runWith({"record", folder_, "1", folder_ / "real.vcd"}), kDone) << err_.str();
    for (const auto& each : kCases) {
        EXPECT_NE(runWith(each.arguments), kDone) << each.complaint;
        EXPECT_NE(err_.str().find(each.complaint), std::string::npos) << err_.str();
    }
}

TEST_F(CardSimTest, BreaksAndMendsCards) {
    ASSERT_EQ(runWith({"make", folder_}), kDone);
    ASSERT_EQ(runWith({"fault", "inject", folder_, "01", "page-misread", "--page", "007", "--times", "04",
                       "--at-access", "1000"}),
              kDone)
        << err_.str();
    ASSERT_EQ(runWith({"fault", "inject", folder_, "2", "foreign-identification", "--code", "0x1234"}),
              kDone);
    ASSERT_EQ(
        runWith({"fault", "inject", folder_, "2", "slow-programming", "--factor", "3", "--at-clock", "9"}),
        kDone);
    ASSERT_EQ(runWith({"fault", "inject", folder_, "3", "power-lost"}), kDone);
    ASSERT_EQ(runWith({"power-cycle", folder_}), kDone);
    EXPECT_TRUE(says("The machine lost its power and is off."));
    ASSERT_EQ(runWith({"power-cycle", folder_}), kDone);
    ASSERT_EQ(runWith({"show", folder_}), kDone);
    for (const char* text : {"Power       on", "page-misread, page 7, 4 times, at access 1000 (waiting)",
                             "foreign-identification, code 0x00001234 (has struck)",
                             "slow-programming, factor 3, at clock 9 (waiting)", "power-lost (has struck)"})
        EXPECT_TRUE(says(text)) << text << out_.str();

    EXPECT_EQ(runWith({"fault", "clear", folder_, "--kind", "tdo-low"}), kFailed);
    EXPECT_EQ(runWith({"fault", "clear", folder_, "2", "--kind", "slow-programming"}), kDone);
    EXPECT_TRUE(says("Cleared 1 fault."));
    EXPECT_EQ(runWith({"fault", "clear", folder_}), kDone);
    EXPECT_TRUE(says("Cleared 3 faults."));
    ASSERT_EQ(runWith({"show", folder_}), kDone);
    EXPECT_FALSE(says("Fault"));
    ASSERT_EQ(runWith({"fault", "kinds"}), kDone);
    EXPECT_TRUE(says("service-silent"));
}

TEST_F(CardSimTest, ARecordingIsRequestedAndTakenBack) {
    ASSERT_EQ(runWith({"make", folder_}), kDone);
    ASSERT_EQ(runWith({"record", folder_, "2", "wave.vcd", "--from", "30", "--for", "12"}), kDone);
    ASSERT_EQ(runWith({"show", folder_}), kDone);
    const std::string file = fs::current_path() / "wave.vcd";
    EXPECT_TRUE(says("Recording   the next run, from 30 to 42 microseconds, into " + file)) << out_.str();
    EXPECT_EQ(runWith({"record", folder_, "2"}), kWrongUsage);
    EXPECT_EQ(runWith({"record", folder_, "1", "--cancel"}), kFailed) << "there is none";
    EXPECT_EQ(runWith({"record", folder_, "2", "--cancel"}), kDone);
    ASSERT_EQ(runWith({"show", folder_}), kDone);
    EXPECT_FALSE(says("Recording"));
}

// A small image that writes pages 3, 4 and 6, one of them with something else than the card will hold.
TEST_F(CardSimTest, TakesPromsOutAndComparesThem) {
    std::vector<uint8_t> image;
    XsvfAssembler<std::vector<uint8_t>> xsvf(image);
    const auto select = [&](uint32_t instruction, uint32_t microseconds) {
        xsvf.XRUNTEST(microseconds);
        xsvf.XSIR(13, instruction << 5 | simulator::Fpga::kBypass);
        xsvf.XRUNTEST(0);
    };
    select(simulator::Prom::enterProgrammingInstruction, 0);
    xsvf.XSDRSIZE(7);
    xsvf.XSDRE(0);
    for (const uint32_t page : {3U, 4U, 6U}) {
        select(simulator::Prom::addressInstruction, 0);
        xsvf.XSDRSIZE(17);
        xsvf.XSDRE(page * simulator::Prom::kPageAddressStep << 1);
        select(simulator::Prom::pageDataInstruction, 0);
        xsvf.XSDRSIZE(4097);
        xsvf.XSDRE(page << 1);
        select(simulator::Prom::programInstruction, simulator::Prom::kProgramMicroseconds);
    }
    const fs::path imageFile = other_.path() / "image.xsv";
    const fs::path promFile = other_.path() / "content.prom";
    simulator::replaceFile(imageFile, image);
    ASSERT_EQ(runWith({"make", folder_}), kDone);
    EXPECT_EQ(runWith({"prom", "compare", folder_, "1", imageFile}), kFailed) << "it has no end";
    image.push_back(0);
    simulator::replaceFile(imageFile, image);
    EXPECT_EQ(runWith({"prom", "compare", folder_, "1", imageFile}), kDifferent) << err_.str();
    EXPECT_TRUE(says("0 of the 3 pages")) << out_.str();
    EXPECT_TRUE(says("Different: 3 to 4, 6.")) << out_.str();

    ASSERT_EQ(runWith({"prom", "dump", folder_, "1", promFile}), kDone);
    std::vector<uint8_t> content = simulator::readFile(promFile);
    ASSERT_EQ(content.size(), 262149U);
    for (const uint8_t page : {uint8_t{3}, uint8_t{4}, uint8_t{6}}) {
        std::fill_n(content.begin() + ptrdiff_t{page} * 512, 512, uint8_t{0});
        content[page * std::size_t{512}] = page;
    }
    content.resize(262144);  // the pages alone
    simulator::replaceFile(promFile, content);
    ASSERT_EQ(runWith({"prom", "load", folder_, "2", promFile}), kDone);
    EXPECT_EQ(runWith({"prom", "compare", folder_, "2", imageFile}), kDone);
    ASSERT_EQ(runWith({"show", folder_}), kDone);
    EXPECT_TRUE(says("2304190204")) << "the identity stays";
    content.pop_back();
    simulator::replaceFile(promFile, content);
    EXPECT_EQ(runWith({"prom", "load", folder_, "2", promFile}), kFailed);
    EXPECT_NE(err_.str().find("262143 bytes long"), std::string::npos);
}

TEST_F(CardSimTest, ComplaintsAndExitCodes) {
    EXPECT_EQ(runWith({"--help"}), kDone);
    for (const std::vector<std::string>& wrong :
         {std::vector<std::string>{},
          {"show"},
          {"dance", folder_},
          {"show", folder_, "more"},
          {"fault", "inject", folder_, "1", "tdo-down"},
          {"fault", "inject", folder_, "1", "tdo-low", "--page", "1"},
          {"fault", "inject", folder_, "1", "page-misread", "--page", "1"},
          {"fault", "inject", folder_, "1", "page-not-taken", "--page", "512"},
          {"fault", "inject", folder_, "1", "foreign-identification", "--code", "0x100000000"},
          {"change", folder_, "1", "--identity", "2116070021"},
          {"change", folder_, "1", "--firmware", "X7"}}) {
        EXPECT_EQ(runWith(wrong), kWrongUsage);
        EXPECT_FALSE(err_.str().empty());
    }
    EXPECT_EQ(runWith({"fault", "cure"}), kWrongUsage);
    EXPECT_EQ(err_.str(), "cardsim fault: \"cure\" is no command.\nFor help: cardsim fault --help\n");
    EXPECT_EQ(runWith({"show", folder_ / "none"}), kFailed);
    EXPECT_EQ(err_.str().find("cardsim: " + (folder_ / "none").string() + ": "), 0U) << err_.str();
    ASSERT_EQ(runWith({"make", folder_}), kDone);
    EXPECT_EQ(runWith({"make", folder_}), kFailed) << "an existing machine is not overwritten";
    EXPECT_EQ(runWith({"fault", "inject", folder_, "5", "tdo-low"}), kFailed);
    EXPECT_EQ(err_.str(), "cardsim: There is no card 5; the machine has 4.\n");
}

}  // namespace cardsim
