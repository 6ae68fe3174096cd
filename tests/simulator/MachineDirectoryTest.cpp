#include "simulator/MachineDirectory.h"

#include <gtest/gtest.h>

#include "tests/simulator/Probe.h"
#include "tests/support/TemporaryDirectory.h"

namespace simulator {

namespace fs = std::filesystem;
using OnOpening = MachineDirectory::OnOpening;

static std::string contentOf(const fs::path& path) {
    const auto bytes = readFile(path);
    return {bytes.begin(), bytes.end()};
}

static void put(const fs::path& path, const std::string& content) {
    replaceFile(path, std::vector<uint8_t>(content.begin(), content.end()));
}

class MachineDirectoryTest : public testing::Test {
  protected:
    MachineDirectoryTest() {
        const auto directory = MachineDirectory::create(folder_);
        addDefaultCards(directory->machine());
        directory->save();
    }
    // Opening the machine complains of a file, in words that begin so.
    void expectComplaint(const fs::path& file, const std::string& words) {
        const auto complaint =
            complaintOf([this] { (void)MachineDirectory::open(folder_, OnOpening::powerUp); });
        EXPECT_TRUE(complaint.starts_with(file.string() + ": " + words)) << words << ": " << complaint;
    }

    const TemporaryDirectory temporary_;
    const fs::path& folder_ = temporary_.path();
};

// A fault of every kind, of which the first has struck and the others wait.
static void injectEveryFault(Card& card) {
    for (std::size_t kind = 0; kind < kFaultKinds; ++kind) {
        const FaultKindDescription& has = faultKinds()[kind];
        card.inject({.kind = static_cast<FaultKind>(kind),
                     .code = has.hasCode ? 0x80000001 : 0,
                     .page = has.hasPage ? 511U : 0,
                     .times = has.hasTimes ? 3U : 0,
                     .factor = has.hasFactor ? 1000U : 1,
                     .when = kind % 2 == 0 ? Fault::When::atClock : Fault::When::atAccess,
                     .count = kind == 0 ? 0 : 1U << 30});
    }
}

// Saved in the middle of everything: a row half programmed, a scan half shifted, a page that has been misread
// once, and firmware that differs from the PROM.
TEST_F(MachineDirectoryTest, AMachineThatStaysOnCarriesOnWhereItWas) {
    std::vector<Fault> faults;
    {
        const auto directory = MachineDirectory::open(folder_, OnOpening::powerUp);
        SimulatedHost host(directory->machine(), {});
        Probe first(host, 0);
        Probe second(host, 1);
        first.reset();
        first.enterProgramming();
        first.address(0x8000);
        first.userCode(0x21417003);
        first.instruction(Prom::programInstruction);
        first.wait(13000);
        directory->machine().card(1).inject({.kind = FaultKind::pageMisread, .page = 0, .times = 2});
        second.reset();
        second.scanPage(Prom::readPageInstruction, std::vector<uint8_t>(kPageBytes));
        second.reset();
        second.enter(Probe::Scan::data);
        second.clocks({0, 0, 0, 0, 0, 0, 0, 0, 0});
        directory->machine().card(2).cells().erase();
        directory->machine().card(2).requestRecording(RecordingRequest{"/tmp/wave.vcd", 3, 4});
        directory->machine().drivers().loaded["some"] = {"com_example_other", 1};
        injectEveryFault(directory->machine().card(2));
        faults = directory->machine().card(2).faults().all();
        host.loadWord(nullptr);
        directory->save();
    }
    const std::string saved = contentOf(folder_ / "machine.json");
    const auto directory = MachineDirectory::open(folder_, OnOpening::powerUp);
    Machine& machine = directory->machine();
    directory->save();
    EXPECT_EQ(contentOf(folder_ / "machine.json"), saved) << "nothing lost on the way";
    EXPECT_EQ(machine.ledger().entries().size(), 1U);
    EXPECT_EQ(machine.card(2).running()->version, 7);
    EXPECT_EQ(machine.card(2).faults().all(), faults);
    EXPECT_EQ(machine.card(1).faults().all().at(0).times, 1U);
    EXPECT_EQ(machine.drivers().loaded["some"].secondsToAttach, 1U);

    SimulatedHost host(machine, {});
    EXPECT_EQ(Probe(host, 1).shift(std::vector<bool>(24)), Probe::bitsOf(0xF5035093 >> 8, 24));
    EXPECT_FALSE(Probe(host, 2).tdo()) << "stuck low, at once";
    Probe(host, 0).wait(1000);
    EXPECT_EQ(machine.card(0).identity(), 0x21417003U) << "the time before and after counts together";
}

TEST_F(MachineDirectoryTest, AKilledProcessLeavesWhatThePromHolds) {
    {
        const auto directory = MachineDirectory::open(folder_, OnOpening::powerUp);
        SimulatedHost host(directory->machine(), {});
        Probe probe(host);
        probe.reset();
        probe.enterProgramming();
        probe.programUserCode(0x21417004);
        EXPECT_EQ(contentOf(folder_ / "card-1.prom").substr(262144), "\x21\x41\x70\x04\x03");
        probe.userCode(0x21417005);
        probe.instruction(Prom::programInstruction);
    }
    EXPECT_NE(contentOf(folder_ / "card-1.prom").substr(262144, 3), "\x21\x41\x70") << "broken off";
}

TEST_F(MachineDirectoryTest, MalformedDescriptionsAreExplained) {
    {
        const auto directory = MachineDirectory::open(folder_, OnOpening::powerUp);
        directory->machine().card(0).inject({.kind = FaultKind::pageMisread, .page = 7, .times = 2});
        directory->save();
    }
    const std::string good = contentOf(folder_ / "machine.json");
    const struct {
        const char *part, *instead, *complaint;
    } kCases[] = {
        {"{", "[", "not JSON at byte "},
        {"\"format\": 1", "\"format\": 2", "format is not 1; another version"},
        {"\"accesses\": 0", "\"accesses\": 1e999", "a number in it is too large."},
        {"\"accesses\": 0,", "", "accesses is missing."},
        {"\"accesses\": 0", "\"accesses\": -1", "accesses is not a whole number from 0 to"},
        {"\"accesses\": 0", "\"accesses\": 0, \"x\": 3", "x is a field that this program does not know."},
        {"\"modelCode\": 33", "\"modelCode\": 38", "cards[0].modelCode is not a whole number from 32 to 37."},
        {"card-2.prom", "card-1.prom", "cards[1].promFile belongs to another card already."},
        {"\"tap\": \"Test", "\"tap\": \"Rest", "cards[0].promJtag.tap is not a state"},
        {"\"pageData\": \"00", "\"pageData\": \"0x", "cards[0].prom.pageData is not 512 bytes"},
        {"\"operation\": \"none\"", "\"operation\": \"dance\"", "cards[0].prom.operation is not a word"},
        {"page-misread", "page-turned", "cards[0].faults[0].kind is not a fault that this program knows."},
        {"\"page\": 7", "\"page\": 512", "cards[0].faults[0].page is not a whole number from 0 to 511."},
    };
    for (const auto& each : kCases) {
        std::string bad = good;
        bad.replace(bad.find(each.part), std::string(each.part).size(), each.instead);
        put(folder_ / "machine.json", bad);
        expectComplaint(folder_ / "machine.json", each.complaint);
    }
    put(folder_ / "machine.json", good);
    fs::resize_file(folder_ / "card-2.prom", 262144);
    expectComplaint(folder_ / "card-2.prom", "is 262144 bytes long instead of 262149.");
}

}  // namespace simulator
