// The program as a process: its command line, its machine's folder, and a termination signal.

#include <gtest/gtest.h>

#include <QProcess>
#include <QStringList>
#include <csignal>
#include <functional>
#include <memory>

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

    void start() { process.start(UPDATER_PROGRAM, {QString::fromStdString(machineFolder.string())}); }

    void startAndShowTheFirstCard() {
        process.setReadChannel(QProcess::StandardError);
        start();
        std::string line = readErrorLine();
        while (!line.empty() && line.find("VMBM12A.xsv for firmware") == std::string::npos) {
            line = readErrorLine();
        }
        ASSERT_FALSE(line.empty()) << "the first card was not shown";
    }

    // The machine as it is in its folder.
    std::unique_ptr<MachineDirectory> saved() const {
        return MachineDirectory::open(machineFolder, MachineDirectory::OnOpening::leaveAsItIs);
    }
    void changeMachine(const std::function<void(simulator::Machine&)>& change) const {
        const auto opened = saved();
        change(opened->machine());
        opened->save();
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
    const auto after = saved();
    EXPECT_TRUE(after->machine().isOn());
    EXPECT_GT(after->machine().accesses(), 0u);
    EXPECT_TRUE(after->machine().ledger().empty());
}

TEST_F(Program, AKilledRunLeavesAWaveformThatIsWhole) {
    const std::filesystem::path waveform = directory.path() / "identity.vcd";
    changeMachine([&](auto& machine) {
        machine.card(0).requestRecording(simulator::RecordingRequest{.file = waveform});
    });
    startAndShowTheFirstCard();
    process.kill();
    ASSERT_TRUE(process.waitForFinished(patienceMilliseconds));

    const auto moments = ValueChangeDump(waveform).moments;
    EXPECT_GT(moments.size(), 1000u) << "the identity has been read";
    EXPECT_EQ(moments.back().values.at("prom_state"), moments.back().values.at("fpga_state"));
    EXPECT_FALSE(saved()->machine().card(0).recordingRequest()) << "for one run alone";
}

TEST_F(Program, EndsWithTheMachinesPower) {
    changeMachine([](auto& machine) {
        machine.card(0).inject({.kind = simulator::FaultKind::powerLost,
                                .when = simulator::Fault::When::atAccess,
                                .count = 500});
    });
    start();
    ASSERT_TRUE(process.waitForFinished(patienceMilliseconds));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 3);
    EXPECT_TRUE(process.readAllStandardError().endsWith("The machine has lost its power.\n"));
    EXPECT_FALSE(saved()->machine().isOn());
}

TEST_F(Program, ReportsWhatKeepsItFromStarting) {
    const struct {
        QStringList arguments;
        int exitCode;
        const char* text;
    } cases[] = {{{}, 2, "machine"}, {{"nowhere/machine"}, 1, "nowhere/machine"}};
    for (const auto& each : cases) {
        process.start(UPDATER_PROGRAM, each.arguments);
        ASSERT_TRUE(process.waitForFinished(patienceMilliseconds));
        EXPECT_EQ(process.exitCode(), each.exitCode);
        EXPECT_TRUE(process.readAllStandardError().contains(each.text));
    }
}

}  // namespace
