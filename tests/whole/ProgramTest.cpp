// The program as a process: its command line, its machine's folder, and a termination signal.

#include <gtest/gtest.h>

#include <QProcess>
#include <QStringList>
#include <csignal>
#include <utility>
#include <vector>

#include "simulator/DefaultMachine.h"
#include "simulator/MachineDirectory.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/ValueChangeDump.h"

namespace {

using simulator::MachineDirectory;

constexpr int patienceMilliseconds = 60000;

class Program : public testing::Test {
  protected:
    Program() {
        const auto directory = MachineDirectory::create(machineFolder);
        simulator::addDefaultCards(directory->machine());
        directory->save();
        // Nothing may depend on where the program is started from.
        process.setWorkingDirectory("/");
    }

    void start(const std::filesystem::path& machine) {
        process.start(UPDATER_PROGRAM, {QString::fromStdString(machine.string())});
    }

    void startAndShowTheFirstCard() {
        process.setReadChannel(QProcess::StandardError);
        start(machineFolder);
        std::string line = readErrorLine();
        while (!line.empty() && line.find("VMBM12A.xsv for firmware") == std::string::npos) {
            line = readErrorLine();
        }
        ASSERT_FALSE(line.empty()) << "the first card was not shown";
    }

    std::string readErrorLine() {
        while (!process.canReadLine() && process.waitForReadyRead(patienceMilliseconds)) {
        }
        return process.readLine().toStdString();
    }

    TemporaryDirectory directory;
    std::filesystem::path machineFolder = directory.path() / "machine";
    QProcess process;
};

TEST_F(Program, TerminationSignalEndsItAndTheMachineIsSaved) {
    startAndShowTheFirstCard();

    // One process at a time has a machine.
    QProcess second;
    second.start(UPDATER_PROGRAM, {QString::fromStdString(machineFolder.string())});
    ASSERT_TRUE(second.waitForFinished(patienceMilliseconds));
    EXPECT_EQ(second.exitCode(), 1);
    EXPECT_TRUE(second.readAllStandardError().contains(machineFolder.c_str()));

    kill(static_cast<pid_t>(process.processId()), SIGTERM);
    ASSERT_TRUE(process.waitForFinished(patienceMilliseconds));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
    const auto saved = MachineDirectory::open(machineFolder, MachineDirectory::OnOpening::leaveAsItIs);
    EXPECT_TRUE(saved->machine().isOn());
    EXPECT_GT(saved->machine().accesses(), 0u);
    EXPECT_TRUE(saved->machine().ledger().empty());
}

// As an observer beside the chain would decode it: the states that TMS leads through, and what TDO brings.
TEST_F(Program, AKilledRunLeavesAWaveformOfTheIdentityRead) {
    const std::filesystem::path waveform = directory.path() / "identity.vcd";
    {
        const auto machine = MachineDirectory::open(machineFolder, MachineDirectory::OnOpening::leaveAsItIs);
        machine->machine().card(0).requestRecording(simulator::RecordingRequest{.file = waveform});
        machine->save();
    }
    startAndShowTheFirstCard();
    process.kill();
    ASSERT_TRUE(process.waitForFinished(patienceMilliseconds));

    const auto moments = ValueChangeDump(waveform).moments;
    auto state = simulator::TapState::testLogicReset;
    uint64_t scanned = 0;
    int bits = 0;
    std::vector<uint64_t> scans;  // of 33 bits
    for (std::size_t index = 1; index < moments.size(); ++index) {
        const auto& before = moments[index - 1].values;
        const auto& now = moments[index].values;
        ASSERT_GT(moments[index].nanoseconds, moments[index - 1].nanoseconds);
        if (before.at("TCK") == "0" && now.at("TCK") == "1") {
            if (state == simulator::TapState::shiftDr) {
                scanned |= (before.at("TDO") == "1" ? uint64_t{1} : 0) << bits++;
            } else if (state == simulator::TapState::updateDr && bits == 33) {
                scans.push_back(std::exchange(scanned, 0));
            }
            state = nextTapState(state, now.at("TMS") == "1");
            if (state == simulator::TapState::captureDr) {
                bits = 0;
                scanned = 0;
            }
        }
        ASSERT_EQ(now.at("prom_state"), tapStateName(state)) << moments[index].nanoseconds;
        ASSERT_EQ(now.at("fpga_state"), tapStateName(state)) << moments[index].nanoseconds;
    }
    ASSERT_GE(scans.size(), 2u);
    EXPECT_EQ(scans[0] >> 1, 0xF5035093) << "the PROM's identification code, above the FPGA's bypass bit";
    EXPECT_EQ(scans[1] >> 1, 0x21307015) << "the card's identity";
    const auto saved = MachineDirectory::open(machineFolder, MachineDirectory::OnOpening::leaveAsItIs);
    EXPECT_FALSE(saved->machine().card(0).recordingRequest()) << "for one run alone";
}

TEST_F(Program, EndsWithTheMachinesPower) {
    {
        const auto directory =
            MachineDirectory::open(machineFolder, MachineDirectory::OnOpening::leaveAsItIs);
        directory->machine().card(0).inject({.kind = simulator::FaultKind::powerLost,
                                             .when = simulator::Fault::When::atAccess,
                                             .count = 500});
        directory->save();
    }
    start(machineFolder);
    ASSERT_TRUE(process.waitForFinished(patienceMilliseconds));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 3);
    EXPECT_TRUE(process.readAllStandardError().endsWith("The machine has lost its power.\n"));
    const auto saved = MachineDirectory::open(machineFolder, MachineDirectory::OnOpening::leaveAsItIs);
    EXPECT_FALSE(saved->machine().isOn());
}

TEST_F(Program, WrongUsageIsSaidSo) {
    process.start(UPDATER_PROGRAM, QStringList{});
    ASSERT_TRUE(process.waitForFinished(patienceMilliseconds));
    EXPECT_EQ(process.exitCode(), 2);
    EXPECT_TRUE(process.readAllStandardError().contains("machine"));
}

TEST_F(Program, MachineThatCannotBeOpenedIsSaidSo) {
    const auto missing = directory.path() / "nowhere";
    start(missing);
    ASSERT_TRUE(process.waitForFinished(patienceMilliseconds));
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardError().contains(missing.c_str()));
}

}  // namespace
