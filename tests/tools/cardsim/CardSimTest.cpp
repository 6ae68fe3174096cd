#include "tools/cardsim/CardSim.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "simulator/MachineDirectory.h"
#include "tests/support/CommandLineTest.h"
#include "tools/command_line/CommandLine.h"
#include "xsvf/Assembler.h"

namespace cardsim {

namespace fs = std::filesystem;
using simulator::MachineDirectory;
using tools::kDone;
using tools::kFailed;
using tools::kWrongUsage;

class CardSimTest : public CommandLineTest {
  protected:
    CardSimTest() : CommandLineTest(run) {}
};

TEST_F(CardSimTest, MakesShowsAndPowerCycles) {
    follow({{"make machine"},
            {"show machine",
             kDone,
             {"Power       off", "Identity    2103070021 (0x21307015)",
              "Vorn K40, board B, firmware W7 of 9 Mar 2005; 512 pages programmed, 0 erased"}},
            {"make machine", kFailed},
            {"power-cycle machine"}});
    {
        const auto directory = MachineDirectory::open("machine", MachineDirectory::OnOpening::leaveAsItIs);
        directory->machine().card(2).cells().erase();
        directory->machine().ledger().record(simulator::Misuse::shortWait, "Vorn DX8", "Too short.", 42);
        directory->save();
    }
    follow({{"show machine",
             kDone,
             {"Running     Vorn DX8, board without revision, firmware W7 of 23 Nov 2004",
              "PROM        no configuration; 0 pages programmed, 512 erased",
              "Identity    blank (0xFFFFFFFF)", "1 x short wait, first at access 42, Vorn DX8: Too short."}},
            {"power-cycle machine", kDone, {"Vorn DX8 in PCI slot 3: no configuration"}}});
}

TEST_F(CardSimTest, AMachineCanDoWithoutADriver) {
    follow({{"make --without-driver bare"},
            {"show bare", kDone, {"Driver      none\n"}},
            {"make usual"},
            {"show usual", kDone, {"Driver      resident\n"}},
            {"driver usual --resident perhaps", kWrongUsage},
            {"driver usual --resident no --administrator refuse"},
            {"driver usual --private-driver publishes-nothing"},
            {"power-cycle usual"},
            {"driver usual --resident yes", kFailed},  // the machine is on
            {"driver usual --administrator ask"},
            {"show usual", kDone, {"Driver      none; a private one publishes nothing\n"}}});
}

TEST_F(CardSimTest, PlugsChangesAndPullsCards) {
    follow(
        {{"make machine"},
         {"add machine --model VornMX-C --board B --firmware M3 --date 2005-01-02 --identity 2203070021"},
         {"add machine --model K40 --name Second --location Shelf"},
         {"change machine 1 --firmware W9"},
         {"change machine 1 --date 2006-02-01 --protection 5"},
         {"change machine 2 --identity blank --board NC --name Renamed"},
         {"power-cycle machine"},
         {"add machine --model DX8", kFailed},  // the machine is on
         {"remove machine 1", kFailed},
         {"power-off machine"},
         {"remove machine 3", kDone, {"Removed Vorn DX8 in PCI slot 3"}},
         {"power-cycle machine"},
         {"show machine",
          kDone,
          {"Running     VornMX-B, board A, firmware W9 of 1 Feb 2006", "Identity    2103070021",
           "Protection  0x5", "Card 2: Renamed in PCI slot 2\n  Board       Vorn K40, board without revision",
           "Card 3: Vorn DX8-XS", "Card 4: VornMX-C in PCI slot 5", "Identity    2203070021 (0x22307015)",
           "Running     VornMX-C, board B, firmware M3 of 2 Jan 2005", "Card 5: Second in Shelf",
           "Identity    blank", "Running     no configuration", "Lamp        off"}}});
    EXPECT_FALSE(fs::exists("machine/card-3.prom"));
}

TEST_F(CardSimTest, BreaksAndMendsCards) {
    follow({{"make machine"},
            {"fault inject machine 01 page-misread --page 007 --times 04 --at-access 1000"},
            {"fault inject machine 2 foreign-identification --code 0x1234"},
            {"fault inject machine 2 slow-programming --factor 3 --at-clock 9"},
            {"fault inject machine 3 power-lost"},
            {"power-cycle machine", kDone, {"The machine lost its power and is off."}},
            {"power-cycle machine"},
            {"show machine",
             kDone,
             {"Power       on", "page-misread, page 7, 4 times, at access 1000 (waiting)",
              "foreign-identification, code 0x00001234 (has struck)",
              "slow-programming, factor 3, at clock 9 (waiting)", "power-lost (has struck)"}},
            {"fault clear machine --kind tdo-low", kFailed},
            {"fault clear machine 2 --kind slow-programming", kDone, {"Cleared 1 fault."}},
            {"fault clear machine", kDone, {"Cleared 3 faults."}},
            {"fault kinds", kDone, {"service-silent"}},
            {"show machine"}});
    EXPECT_FALSE(says("Fault"));
}

TEST_F(CardSimTest, ARecordingIsRequestedAndTakenBack) {
    const std::string file = fs::current_path() / "wave.vcd";
    follow({{"make machine"},
            {"record machine 2 wave.vcd --from 30 --for 12"},
            {"show machine", kDone, {"Recording   the next run, from 30 to 42 microseconds, into " + file}},
            {"record machine 2", kWrongUsage},
            {"record machine 1 --cancel", kFailed},  // there is none
            {"record machine 2 --cancel"},
            {"show machine"}});
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
    simulator::replaceFile("endless.xsv", image);
    xsvf.XCOMPLETE();
    simulator::replaceFile("image.xsv", image);
    follow({{"make machine"},
            {"prom compare machine 1 endless.xsv", kFailed},
            {"prom compare machine 1 image.xsv", kDifferent, {"0 of the 3 pages", "Different: 3 to 4, 6."}},
            {"prom dump machine 1 content.prom"}});

    std::vector<uint8_t> content = simulator::readFile("content.prom");
    ASSERT_EQ(content.size(), 262149U);
    for (const uint8_t page : {uint8_t{3}, uint8_t{4}, uint8_t{6}}) {
        std::fill_n(content.begin() + ptrdiff_t{page} * 512, 512, uint8_t{0});
        content[page * std::size_t{512}] = page;
    }
    content.resize(262144);  // the pages alone
    simulator::replaceFile("content.prom", content);
    content.pop_back();
    simulator::replaceFile("short.prom", content);
    follow({{"prom load machine 2 content.prom"},
            {"prom compare machine 2 image.xsv"},
            {"show machine", kDone, {"2304190204"}},  // the identity stays
            {"prom load machine 2 short.prom", kFailed, {"262143 bytes long"}}});
}

TEST_F(CardSimTest, ComplaintsAndExitCodes) {
    fs::create_symlink("real.vcd", "alias.vcd");
    const std::string nothing = "Nothing was named that could be changed.";
    const std::string notUtf8 = "A text is UTF-8.";
    follow({{"--help"},
            {"make machine"},
            {"record machine 1 real.vcd"},
            {"", kWrongUsage},
            {"show", kWrongUsage},
            {"dance machine", kWrongUsage},
            {"show machine more", kWrongUsage},
            {"show none", kFailed, {"cardsim: none: "}},
            {"change machine -1 --name A", kWrongUsage, {"\"-1\" is not a whole number from 1 on."}},
            {"change machine 0 --name A", kWrongUsage, {"\"0\" is not a whole number from 1 on."}},
            {"change machine 9 --name A", kFailed, {"cardsim: There is no card 9; the machine has 4.\n"}},
            {"change machine 1", kFailed, {nothing}},
            {"change machine 1 --name \"Two\nlines\"", kWrongUsage, {"without control characters."}},
            {"change machine 1 --name \xFF", kWrongUsage, {notUtf8}},
            {"change machine 1 --identity 2116070021", kWrongUsage},
            {"change machine 1 --firmware X7", kWrongUsage},
            {"add machine --model K40 --date 2005-01-02", kFailed, {"Firmware has a version and a date"}},
            {"fault cure", kWrongUsage, {"cardsim fault: \"cure\" is no command.\nFor help: cardsim fault"}},
            {"fault inject machine 1 tdo-down", kWrongUsage},
            {"fault inject machine 1 tdo-low --page 1", kWrongUsage},
            {"fault inject machine 1 page-misread --page 1", kWrongUsage},
            {"fault inject machine 1 page-not-taken --page 512", kWrongUsage},
            {"fault inject machine 1 tdo-low --at-clock -1", kWrongUsage, {"from 0 on."}},
            {"fault inject machine 1 foreign-identification --code 0x100000000", kWrongUsage},
            {"fault inject machine 1 foreign-identification --code 0xF5035093",
             kWrongUsage,
             {"0xF5035093 is the PROM's own code, not a foreign one."}},
            {"driver machine", kFailed, {nothing}},
            {"driver machine --resident 1", kWrongUsage, {"\"1\" is none of no|yes."}},
            {"prom dump machine 1 machine", kFailed, {"is not an ordinary file."}},
            {"record machine 1 machine/card-1.prom", kFailed, {"is there already and is no recording."}},
            {"record machine 1 none/wave.vcd", kFailed, {"there is no such folder."}},
            {"record machine 1 \xFF.vcd", kWrongUsage, {notUtf8}},
            {"record machine 2 alias.vcd", kFailed, {"another card is to be recorded there."}}});
}

}  // namespace cardsim
