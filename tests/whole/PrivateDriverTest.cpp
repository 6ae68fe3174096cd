// A machine whose cards no driver shows: the updater asks, loads its own driver, and removes it when it ends.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>

#include "platform/LiveObjects.h"
#include "simulator/DefaultMachine.h"
#include "tests/support/SystemTmp.h"
#include "tests/whole/UpdaterSession.h"

namespace {

using simulator::PrivateDriverFault;

const std::string promptTitle = "Simulated machine";

class PrivateDriver : public testing::Test {
  protected:
    PrivateDriver() {
        simulator::addDefaultCards(machine);
        machine.drivers().resident = false;
        machine.powerOn();
        bundle.addShippedImage("vupdaterkext.pax");
        bundle.addShippedImage("VMBM12A.xsv");
    }

    // Expects dialogs whose texts begin like these, no window, and something on standard error.
    void expectFailure(const std::vector<std::string>& texts, const std::string& said,
                       bool isRefused = false) {
        UpdaterSession session(machine, bundle);
        session.cancelled = isRefused ? std::vector{promptTitle} : std::vector<std::string>();
        session.run([] { ADD_FAILURE() << "there is no window to sit in front of"; });
        ASSERT_EQ(session.alerts.size(), texts.size()) << said;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            EXPECT_TRUE(session.alerts[i].message.starts_with(texts[i])) << session.alerts[i];
        }
        EXPECT_TRUE(session.standardError.starts_with(said)) << session.standardError;
        expectNothingLeft();
    }

    void expectNothingLeft() const {
        EXPECT_TRUE(SystemTmp::isClean());
        EXPECT_TRUE(machine.drivers().loaded.empty());
        EXPECT_EQ(CountLiveObjects(), atStart);
        EXPECT_TRUE(wait(nullptr) == -1 && errno == ECHILD) << "no child, dead or alive";
    }

    SystemTmp tmp;
    LiveObjects atStart = CountLiveObjects();
    simulator::Machine machine;
    TestBundle bundle;
};

TEST_F(PrivateDriver, ShowsTheCardsUntilTheUpdaterQuits) {
    UpdaterSession session(machine, bundle);
    bool wasShown = false;
    session.run([&] {
        wasShown = true;
        EXPECT_EQ(session.cardItems().size(), 4u);
        EXPECT_EQ(session.text("FWVR"), "M10");
        EXPECT_TRUE(std::filesystem::exists(SystemTmp::driver));
        session.click("CLOS");
    });
    EXPECT_TRUE(wasShown);
    ASSERT_EQ(session.alerts.size(), 1u);
    EXPECT_EQ(session.alerts[0].title, promptTitle);
    expectNothingLeft();
    EXPECT_TRUE(machine.ledger().empty());
}

TEST_F(PrivateDriver, ThatCannotBeHadEndsTheUpdater) {
    const std::string prompt = "VUpdater wants to load a driver";
    const std::string unreachable = "The card could not be reached";
    const std::string noCard = "No card was found";
    expectFailure({prompt, unreachable}, "Could not Authenticate\n", true);
    machine.drivers().privateDriverFault = PrivateDriverFault::publishesNothing;
    expectFailure({prompt, noCard}, "");
    machine.drivers().privateDriverFault = PrivateDriverFault::doesNotLoad;
    expectFailure({prompt, noCard}, "kextload: /tmp/VUpdater.kext: the driver did not start.\n");
    std::filesystem::remove(bundle.resource("vupdaterkext.pax"));
    expectFailure({prompt, unreachable}, "Could not find pax in resource.\n");
    machine.drivers().refusesAdministrator = true;
    expectFailure({unreachable}, "Could not Authenticate\n");
}

TEST_F(PrivateDriver, StaysLoadedWhenTheMachineGoesDown) {
    {
        UpdaterSession session(machine, bundle);
        session.run([&] {
            session.click("UPDT");
            session.click("POWR");
        });
        EXPECT_FALSE(machine.isOn());
        EXPECT_TRUE(std::filesystem::exists(SystemTmp::driver));
        EXPECT_EQ(session.host.privilegedTools.back(), "/sbin/kextload");
        // The authorization goes with the process, as the driver goes with the power.
        EXPECT_EQ(CountLiveObjects().authorizations, ++atStart.authorizations);
    }
    machine.powerOn();
    UpdaterSession session(machine, bundle);
    session.run([&] { EXPECT_EQ(session.text("FWVR"), "M12"); });
    EXPECT_EQ(session.alerts.size(), 1u) << "loaded anew, over the bundle that was left";
    expectNothingLeft();
}

}  // namespace
