// The program as a process: its command line, its machine's folder, and a termination signal.

#include <gtest/gtest.h>

#include <QProcess>
#include <QStringList>
#include <csignal>

#include "simulator/DefaultMachine.h"
#include "simulator/MachineDirectory.h"
#include "tests/support/TemporaryDirectory.h"

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
    process.setReadChannel(QProcess::StandardError);
    start(machineFolder);
    std::string line = readErrorLine();
    while (!line.empty() && line.find("VMBM12A.xsv for firmware") == std::string::npos) {
        line = readErrorLine();
    }
    ASSERT_FALSE(line.empty()) << "the first card was not shown";

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
