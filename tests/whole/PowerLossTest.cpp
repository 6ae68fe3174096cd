// The power fails during the write of a whole image, and returns.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "files/WholeFile.h"
#include "images/CommandReader.h"
#include "simulator/storage/MachineDirectory.h"
#include "tests/support/SystemTmp.h"
#include "tests/whole/ExpectedAccesses.h"
#include "tests/whole/FirstCardUpdate.h"

namespace {

using simulator::FaultKind;
using simulator::MachineDirectory;
using simulator::Prom;
using When = simulator::Fault::When;

constexpr int powerWasLost = 7;

class PowerLossTest : public testing::Test {
  protected:
    PowerLossTest() {
        bundle_.addShippedResource(imageName);
        bundle_.addShippedResource("vupdaterkext.pax");
        image_ = files::readFile(bundle_.resource(imageName));
        const auto directory = MachineDirectory::create(folder_.path());
        directory->machine().addCard(
            {"VornMX-B", "PCI slot 1", 0x21, 1},
            {simulator::encodeConfiguration({0x21, 1, 'M', 10, 0x4511}), identity, 3});
        directory->save();
    }

    // A window's threads do not survive being forked.
    void SetUp() override {
        if (UpdaterSession::hasRun) {
            GTEST_SKIP() << "a window was open in this process; ctest runs each test in a new one";
        }
    }

    // Starts the updater in a new process, in which the power fails after a number of accesses from the click
    // on Update. The process ends with it.
    void update(uint64_t accesses) {
        const pid_t child = fork();
        if (child == 0) {
            const auto directory =
                MachineDirectory::open(folder_.path(), MachineDirectory::OnOpening::powerUp);
            simulator::Machine& machine = directory->machine();
            machine.onPowerLost([&] {
                directory->save();
                testing::internal::GetCapturedStderr();  // removes its file
                std::_Exit(powerWasLost);
            });
            UpdaterSession session(machine, bundle_);
            session.run([&] {
                machine.card(0).inject({.kind = FaultKind::powerLost,
                                        .when = When::atAccess,
                                        .count = machine.accesses() + accesses});
                session.click("UPDT");
            });
            std::_Exit(EXIT_SUCCESS);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == powerWasLost) << status;
    }

    // Checks the next start: the firmware's version, or 0 for a card that is not on the bus.
    void expectAfterwards(int version, bool keepsIdentity) {
        std::optional<SystemTmp> tmp;
        if (version == 0) {
            tmp.emplace();
        }
        const auto directory =
            MachineDirectory::open(folder_.path(), MachineDirectory::OnOpening::leaveAsItIs);
        simulator::Machine& machine = directory->machine();
        EXPECT_FALSE(machine.isOn());
        machine.powerOn();
        EXPECT_EQ(machine.card(0).running() ? machine.card(0).running()->version : 0, version);
        EXPECT_EQ(machine.card(0).identity() == identity, keepsIdentity);
        UpdaterSession session(machine, bundle_);
        bool hasWindow = false;
        session.run([&] {
            hasWindow = true;
            EXPECT_EQ(session.text("FWVR"), (std::string("M") += std::to_string(version)));
            EXPECT_EQ(session.identityDialogs.empty(), keepsIdentity);
        });
        EXPECT_EQ(hasWindow, version != 0);
        if (!hasWindow) {
            // A private driver could not show it either.
            EXPECT_TRUE(session.alerts.back().message.starts_with("No card was found"));
        }
        EXPECT_TRUE(machine.ledger().empty());
    }

    TemporaryDirectory folder_;
    TestBundle bundle_;
    std::vector<uint8_t> image_;
};

// Twentieths of the image's accesses.
class PowerLossInImageTest : public PowerLossTest, public testing::WithParamInterface<uint64_t> {};

TEST_P(PowerLossInImageTest, LeavesOldNoOrNewFirmware) {
    constexpr uint64_t parts = 20;
    uint64_t erasing = 0;     // accesses before the erase
    uint64_t programmed = 0;  // accesses after the last page
    images::CommandReader reader(image_);
    images::AccessCounter counter;
    while (const auto command = reader.next()) {
        const uint64_t before = counter.total().count();
        counter.take(*command);
        if (command->opcode() == XsvfOpcode::XSIR) {
            const int instruction = (command->first[0] << 8 | command->first[1]) >> 5 & 0xFF;
            erasing = instruction == Prom::eraseInstruction ? before : erasing;
            programmed = instruction == Prom::programInstruction ? counter.total().count() : programmed;
        }
    }
    constexpr uint64_t soon = 1'000;
    const uint64_t cut = soon + counter.total().count() * GetParam() / parts;
    ASSERT_TRUE(soon < erasing && erasing < programmed);
    update(cut);
    const int version = cut < erasing ? 10 : cut < programmed ? 0 : 12;
    expectAfterwards(version, cut < erasing);
}

INSTANTIATE_TEST_SUITE_P(, PowerLossInImageTest, testing::Range(uint64_t{0}, uint64_t{20}));

// After the image: the identity is written three times, verified, protected and read back.
struct Cut {
    bool isFromTheEnd;
    int64_t accesses;
    bool keepsIdentity;

    friend std::ostream& operator<<(std::ostream& out, const Cut& cut) {
        return out << (cut.isFromTheEnd ? "end " : "image end ") << std::showpos << cut.accesses;
    }
};

class PowerLossInIdentityTest : public PowerLossTest, public testing::WithParamInterface<Cut> {};

TEST_P(PowerLossInIdentityTest, LeavesTheNewFirmware) {
    uint64_t from = accessesOf(image_).count();
    from += GetParam().isFromTheEnd ? identityAccesses().count() : 0;
    update(from + static_cast<uint64_t>(GetParam().accesses));
    expectAfterwards(12, GetParam().keepsIdentity);
}

INSTANTIATE_TEST_SUITE_P(, PowerLossInIdentityTest,
                         testing::Values(Cut{false, 30'000, false},  // being written for the first time
                                         Cut{false, 90'000, false},  // again
                                         Cut{false, 175'000, true},  // verified
                                         Cut{true, -600'000, true},  // protected
                                         Cut{true, -900, true}));    // read back

}  // namespace
