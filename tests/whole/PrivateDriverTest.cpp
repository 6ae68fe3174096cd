// A machine whose cards no driver shows: the updater asks, loads its own driver, and removes it when it ends.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>

#include "platform/LiveObjects.h"
#include "simulator/DefaultMachine.h"
#include "tests/support/SystemTmp.h"
#include "tests/whole/UpdaterSession.h"

namespace {

using simulator::PrivateDriverFault;
using Texts = std::vector<std::string>;

const std::string promptTitle = "Simulated machine";
const std::string promptText = "VUpdater wants to load a driver";
const std::string unreachableText = "The card could not be reached";
const std::string noCardText = "No card was found";

class PrivateDriver : public testing::Test {
  protected:
    PrivateDriver() {
        simulator::addDefaultCards(machine);
        machine.drivers().resident = false;
        machine.powerOn();
        bundle.addShippedImage("vupdaterkext.pax");
        bundle.addShippedImage("VMBM12A.xsv");
    }
    ~PrivateDriver() override {
        EXPECT_TRUE(machine.ledger().empty());
        EXPECT_TRUE(wait(nullptr) == -1 && errno == ECHILD) << "no child is left, dead or alive";
    }

    // Expects the run to show exactly these dialogs, each by the beginning of its text, and no window.
    void expectDialogsAlone(UpdaterSession& session, const Texts& texts) {
        session.run([] { ADD_FAILURE() << "there is no window to sit in front of"; });
        const auto begins = [](const UpdaterSession::Alert& alert, const std::string& text) {
            return alert.message.starts_with(text);
        };
        EXPECT_TRUE(
            std::equal(session.alerts.begin(), session.alerts.end(), texts.begin(), texts.end(), begins))
            << testing::PrintToString(session.alerts);
        expectNothingLeft();
    }

    void expectNothingLeft() const {
        EXPECT_TRUE(SystemTmp::isClean());
        EXPECT_TRUE(machine.drivers().loaded.empty());
        EXPECT_EQ(CountLiveObjects(), atStart);
    }

    SystemTmp tmp;
    LiveObjects atStart = CountLiveObjects();
    simulator::Machine machine;
    TestBundle bundle;
};

TEST_F(PrivateDriver, ShowsTheCardsUntilTheUpdaterQuits) {
    for (int time = 0; time < 2; ++time) {
        UpdaterSession session(machine, bundle);
        bool seen = false;
        session.run([&] {
            seen = true;
            EXPECT_EQ(session.cardItems().size(), 3u);
            EXPECT_EQ(session.text("FWVR"), "M10");
            EXPECT_TRUE(std::filesystem::exists(SystemTmp::driver));
            EXPECT_FALSE(std::filesystem::exists(SystemTmp::archive));
            session.click("CLOS");
        });
        EXPECT_TRUE(seen);
        EXPECT_EQ(session.alerts.size(), 1u);
        EXPECT_EQ(session.alerts.at(0).title, promptTitle);
        EXPECT_EQ(session.host.privilegedTools.size(), 5u);
        EXPECT_EQ(session.simulatedHost.liveMappings(), 0u);
        expectNothingLeft();
    }
}

TEST_F(PrivateDriver, RefusedRightEndsTheUpdater) {
    {
        UpdaterSession session(machine, bundle);
        session.cancelled = {promptTitle};
        expectDialogsAlone(session, {promptText, unreachableText});
        EXPECT_EQ(session.standardError, "Could not Authenticate\n");
    }
    machine.drivers().refusesAdministrator = true;
    UpdaterSession session(machine, bundle);
    expectDialogsAlone(session, {unreachableText});
    EXPECT_EQ(session.standardError, "Could not Authenticate\n");
    EXPECT_TRUE(session.host.privilegedTools.empty());
}

TEST_F(PrivateDriver, MissingArchiveEndsTheUpdater) {
    std::filesystem::remove(bundle.resource("vupdaterkext.pax"));
    UpdaterSession session(machine, bundle);
    expectDialogsAlone(session, {promptText, unreachableText});
    EXPECT_EQ(session.standardError, "Could not find pax in resource.\n");
}

TEST_F(PrivateDriver, DriverThatShowsNoCardIsRemovedAgain) {
    for (const auto fault : {PrivateDriverFault::publishesNothing, PrivateDriverFault::doesNotLoad}) {
        machine.drivers().privateDriverFault = fault;
        UpdaterSession session(machine, bundle);
        expectDialogsAlone(session, {promptText, noCardText});
        EXPECT_EQ(session.host.privilegedTools.size(), 5u);
        EXPECT_EQ(session.standardError.find("kextload: ") != std::string::npos,
                  fault == PrivateDriverFault::doesNotLoad)
            << session.standardError;
    }
}

TEST_F(PrivateDriver, PowerDownLeavesItToTheMachineThatGoesDown) {
    {
        UpdaterSession session(machine, bundle);
        session.run([&] {
            session.click("UPDT");
            ASSERT_TRUE(session.isShown("POWR"));
            session.click("POWR");
        });
        EXPECT_FALSE(machine.isOn());
        EXPECT_TRUE(std::filesystem::exists(SystemTmp::driver));
        const auto& tools = session.host.privilegedTools;
        EXPECT_EQ(tools, (Texts{"/bin/rm", "/usr/sbin/chown", "/sbin/kextload"}));
        // The authorization goes with the process, like the driver with the power.
        EXPECT_EQ(CountLiveObjects().authorizations, ++atStart.authorizations);
    }
    machine.powerOn();
    UpdaterSession session(machine, bundle);
    session.run([&] { EXPECT_EQ(session.text("FWVR"), "M12"); });
    EXPECT_EQ(session.alerts.size(), 1u) << "the driver has to be loaded anew, over the bundle left behind";
    expectNothingLeft();
}

}  // namespace
