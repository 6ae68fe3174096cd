#include "simulator/MachineDirectory.h"

#include <gtest/gtest.h>

#include "simulator/MachineError.h"
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
    // What opening the machine complains of, after the name of the file that it has to name.
    std::string complaint(const fs::path& about) {
        try {
            (void)MachineDirectory::open(folder_, OnOpening::powerUp);
        } catch (const MachineError& error) {
            const std::string text = error.what();
            EXPECT_TRUE(text.starts_with(about.string() + ": ")) << text;
            return text.substr(std::min(text.size(), about.string().size() + 2));
        }
        return "none";
    }

    const TemporaryDirectory temporary_;
    const fs::path& folder_ = temporary_.path();
};

// Saved in the middle of everything: a row half programmed, a scan half shifted, and firmware that differs
// from the PROM.
TEST_F(MachineDirectoryTest, AMachineThatStaysOnCarriesOnWhereItWas) {
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
        second.reset();
        second.enter(Probe::Scan::data);
        second.clocks({0, 0, 0, 0, 0, 0, 0, 0, 0});
        directory->machine().card(2).cells().erase();
        directory->machine().card(2).requestRecording(RecordingRequest{"/tmp/wave.vcd", 3, 4});
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

    SimulatedHost host(machine, {});
    EXPECT_EQ(Probe(host, 1).shift(std::vector<bool>(24)), Probe::bitsOf(0xF5035093 >> 8, 24));
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
        EXPECT_TRUE(complaint(folder_ / "machine.json").starts_with(each.complaint)) << each.instead;
    }
    put(folder_ / "machine.json", good);
    fs::resize_file(folder_ / "card-2.prom", 262144);
    EXPECT_EQ(complaint(folder_ / "card-2.prom"), "is 262144 bytes long instead of 262149.");
}

}  // namespace simulator
