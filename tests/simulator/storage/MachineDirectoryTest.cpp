#include "simulator/storage/MachineDirectory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>

#include "files/OutputFile.h"
#include "files/WholeFile.h"
#include "tests/simulator/Probe.h"
#include "tests/support/TemporaryDirectory.h"

namespace simulator {

namespace fs = std::filesystem;
using OnOpening = MachineDirectory::OnOpening;

static std::string contentOf(const fs::path& path) {
    const auto bytes = files::readFile(path);
    return {bytes.begin(), bytes.end()};
}

static void put(const fs::path& path, const std::string& content) {
    files::writeOutputFile(path, std::vector<uint8_t>(content.begin(), content.end()));
}

static std::map<std::string, std::string> filesIn(const fs::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        files[entry.path().filename()] = contentOf(entry.path());
    }
    return files;
}

class MachineDirectoryTest : public testing::Test {
  protected:
    MachineDirectoryTest() {
        const auto directory = MachineDirectory::create(folder_);
        addDefaultCards(directory->machine());
        directory->save();
    }
    std::unique_ptr<MachineDirectory> open(OnOpening onOpening = OnOpening::leaveAsItIs) {
        return MachineDirectory::open(folder_, onOpening);
    }
    const TemporaryDirectory temporary_;
    const fs::path& folder_ = temporary_.path();
};

// Injects a fault of every kind. The first strikes at once, the others wait.
static void injectEveryFault(Card& card) {
    for (std::size_t kind = 0; kind < kFaultKinds; ++kind) {
        const FaultKindDescription& has = faultKinds()[kind];
        card.inject({.kind = static_cast<FaultKind>(kind),
                     .code = has.hasCode ? 0x80000001 : 0,
                     .page = has.hasPage ? 511U : 0,
                     .times = has.hasTimes ? 3U : 0,
                     .factor = has.hasFactor ? 1000U : 1,
                     .when = kind % 2 == 0 ? Fault::When::atClock : Fault::When::atAccess,
                     .count = kind == 0 ? 0 : 1U << 30,
                     .prevented = has.canBePrevented});
    }
}

// The machine is saved with a row partly programmed, a scan partly shifted, a page misread once, and firmware
// that differs from the PROM.
TEST_F(MachineDirectoryTest, MachineThatStaysOnResumesExactly) {
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
        directory->machine().card(2).requestRecording(RecordingRequest{folder_ / "wave.vcd", 3, 4});
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
    EXPECT_EQ(contentOf(folder_ / "machine.json"), saved) << "nothing is lost";
    EXPECT_EQ(machine.ledger().entries().size(), 1U);
    EXPECT_EQ(machine.card(2).running()->version, 7);
    EXPECT_EQ(machine.card(2).faults().all(), faults);
    EXPECT_EQ(machine.card(1).faults().all().at(0).times, 1U);
    EXPECT_EQ(machine.drivers().loaded["some"].secondsToAttach, 1U);

    SimulatedHost host(machine, {});
    EXPECT_EQ(Probe(host, 1).shift(std::vector<bool>(24)), Probe::bitsOf(0xF5035093 >> 8, 24));
    EXPECT_FALSE(Probe(host, 2).tdo()) << "stuck low, at once";
    Probe(host, 0).wait(1000);
    EXPECT_EQ(machine.card(0).identity(), 0x21417003U) << "the times before and after the save add up";
}

TEST_F(MachineDirectoryTest, PromFileIsCurrentWhenTheProcessIsKilled) {
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
    EXPECT_NE(contentOf(folder_ / "card-1.prom").substr(262144, 3), "\x21\x41\x70") << "interrupted";
}

TEST_F(MachineDirectoryTest, SavePublishesChangesAndRemovesInterruptedSaves) {
    fs::permissions(folder_ / "machine.json", fs::perms::owner_all);
    const auto before = filesIn(folder_);
    const auto directory = open();
    directory->machine().card(0).setBoard({"Renamed", "", 0x21, 1});
    directory->machine().card(0).cells().erase();
    EXPECT_TRUE(filesIn(folder_) == before);

    fs::create_directory(folder_ / ".saving");
    put(folder_ / ".saving" / "machine.json", "a save that was killed");
    directory->save();
    const auto after = filesIn(folder_);
    EXPECT_EQ(after.size(), before.size());
    EXPECT_TRUE(after.at("card-1.prom") != before.at("card-1.prom"));
    EXPECT_EQ(fs::status(folder_ / "machine.json").permissions(), fs::perms::owner_all);
}

TEST_F(MachineDirectoryTest, MachineInUseIsReadOnlyForOthers) {
    const auto run = open(OnOpening::powerUp);
    run->machine().card(0).setBoard({"Not saved", "", 0x21, 1});
    run->machine().card(0).cells().erase();
    const auto view = MachineDirectory::view(folder_);
    EXPECT_TRUE(view->isInUse());
    EXPECT_FALSE(view->machine().isOn()) << "as last saved";
    EXPECT_EQ(view->machine().card(0).board().name, "VornMX-B");
    EXPECT_TRUE(view->machine().card(0).cells().isPageErased(0)) << "as the cells are now";
    EXPECT_NE(complaintOf([this] { (void)open(); }).find("is in use by another program."), std::string::npos);
    const TemporaryDirectory copy;
    fs::copy(folder_, copy.path(), fs::copy_options::recursive);
    const auto first = MachineDirectory::view(copy.path());
    EXPECT_FALSE(first->isInUse());
    EXPECT_NO_THROW((void)MachineDirectory::open(copy.path(), OnOpening::leaveAsItIs));
}

// During a run the folder is moved, a copy takes its place, and some of the machine's files are replaced.
TEST_F(MachineDirectoryTest, RunKeepsToItsOwnFolderAndFiles) {
    const auto run = open(OnOpening::powerUp);
    const fs::path moved = folder_.string() + "-moved";
    fs::copy(folder_, moved, fs::copy_options::recursive);
    const auto untouched = filesIn(folder_);
    fs::rename(folder_, moved.string() + "2");
    fs::rename(moved, folder_);
    fs::rename(moved.string() + "2", moved);
    put(moved / "diary", std::string(300000, 'd'));
    fs::remove(moved / "card-1.prom");
    fs::create_symlink("diary", moved / "card-1.prom");
    fs::remove(moved / "card-2.prom");
    ASSERT_EQ(::mkfifo((moved / "card-2.prom").c_str(), 0600), 0);
    fs::resize_file(moved / "card-3.prom", 10);
    for (std::size_t index = 0; index < 4; ++index) {
        run->machine().card(index).cells().setUserCode(0x21417007);
    }
    EXPECT_EQ(contentOf(moved / "card-4.prom").substr(262144, 4), "\x21\x41\x70\x07");
    const std::string told = complaintOf([&] { run->save(); });
    for (const std::string text :
         {"card-1.prom: is not an ordinary file.", "card-2.prom: is not an ordinary file.",
          "card-3.prom: is 10 bytes long instead of 262149. It was rewritten."}) {
        EXPECT_NE(told.find(text), std::string::npos) << told;
    }
    EXPECT_TRUE(filesIn(folder_) == untouched);
    EXPECT_TRUE(contentOf(moved / "diary") == std::string(300000, 'd'));
    EXPECT_EQ(MachineDirectory::view(moved)->machine().card(0).identity(), 0x21417007U);
    EXPECT_EQ(complaintOf([&] { run->save(); }), "") << "reported once";
    fs::remove_all(moved);
}

}  // namespace simulator
