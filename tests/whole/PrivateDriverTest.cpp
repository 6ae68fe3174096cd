// A machine without a resident driver: the updater asks, loads its own driver, and removes it at the end.

#include <gtest/gtest.h>

#include <fstream>

#include "simulator/machine/DefaultMachine.h"
#include "tests/support/SystemTmp.h"
#include "tests/whole/UpdaterSession.h"

namespace {

using simulator::PrivateDriverFault;
using Runs = std::vector<std::string>;

const std::string promptTitle = "Simulated machine";
const std::string prompt = "VUpdater wants to load a driver";
const std::string unreachable = "The card could not be reached";
const std::string noCard = "No card was found";

const std::string deletion = "/bin/rm -rf /tmp/VUpdater.kext";
const std::string owning = "/usr/sbin/chown -R root:wheel /tmp/VUpdater.kext";
const std::string loading = "/sbin/kextload /tmp/VUpdater.kext";
const std::string attaching = "sleep 4";
const std::string unloading = "/sbin/kextunload -b com.VornLabs.driver.VornMx";
const std::string detaching = "sleep 2";

class PrivateDriverTest : public testing::Test {
  protected:
    PrivateDriverTest() {
        simulator::addDefaultCards(machine_);
        machine_.drivers().resident = false;
        machine_.powerOn();
        bundle_.emplace().addShippedResource("vupdaterkext.pax");
        bundle_->addShippedResource("VMBM12A.xsv");
    }

    void TearDown() override { EXPECT_TRUE(machine_.ledger().empty()); }

    // Starts the updater, which must end without a window: after dialogs whose texts begin as given, with
    // this last line on standard error, these tools and sleeps, no loaded driver, and nothing left in /tmp.
    void expectFailure(
        const std::vector<std::string>& texts, const std::string& lastLine, const Runs& runs,
        const std::function<void(UpdaterSession&)>& prepare = [](UpdaterSession&) {}) {
        SCOPED_TRACE(lastLine);
        UpdaterSession session(machine_, *bundle_);
        prepare(session);
        session.run([] { ADD_FAILURE() << "a window opened"; });
        ASSERT_EQ(session.alerts.size(), texts.size());
        for (std::size_t i = 0; i < texts.size(); ++i) {
            EXPECT_TRUE(session.alerts[i].message.starts_with(texts[i])) << session.alerts[i];
        }
        EXPECT_TRUE(session.standardError.ends_with(lastLine)) << session.standardError;
        EXPECT_EQ(session.standardError.empty(), lastLine.empty()) << session.standardError;
        EXPECT_EQ(session.host.privileged, runs);
        EXPECT_TRUE(SystemTmp::isClean());
        EXPECT_TRUE(machine_.drivers().loaded.empty());
    }

    SystemTmp tmp_;
    simulator::Machine machine_;
    std::optional<TestBundle> bundle_;
};

TEST_F(PrivateDriverTest, ShowsTheCardsUntilTheUpdaterQuits) {
    UpdaterSession session(machine_, *bundle_);
    bool wasShown = false;
    std::vector<std::size_t> open;
    session.run([&] {
        wasShown = true;
        EXPECT_EQ(session.cardItems().size(), 4u);
        EXPECT_EQ(session.text("FWVR"), "M10");
        EXPECT_TRUE(std::filesystem::exists(SystemTmp::driver));
        session.host.beforeTool = [&] { open.push_back(session.host.openConnections.size()); };
        session.click("CLOS");
    });
    EXPECT_TRUE(wasShown);
    EXPECT_EQ(open, (std::vector<std::size_t>{4, 4}))
        << "the open card must be closed before its driver is unloaded";
    ASSERT_EQ(session.alerts.size(), 1u);
    EXPECT_EQ(session.alerts[0].title, promptTitle);
    EXPECT_EQ(session.host.privileged,
              (Runs{deletion, owning, loading, attaching, unloading, detaching, deletion}));
    EXPECT_TRUE(SystemTmp::isClean());
    EXPECT_TRUE(machine_.drivers().loaded.empty());
}

TEST_F(PrivateDriverTest, IsRemovedIfItShowsNoCard) {
    const Runs all = {deletion, owning, loading, attaching, unloading, detaching, deletion};
    machine_.drivers().privateDriverFault = PrivateDriverFault::publishesNothing;
    expectFailure({prompt, noCard}, "", all);
    machine_.drivers().privateDriverFault = PrivateDriverFault::doesNotLoad;
    expectFailure({prompt, noCard}, "kextunload: com.VornLabs.driver.VornMx: is not loaded.\n", all);
    machine_.drivers().privateDriverFault = PrivateDriverFault::none;
    machine_.powerOff();
    while (machine_.cardCount() > 0) {
        machine_.removeCard(0);
    }
    machine_.powerOn();
    expectFailure({prompt, noCard}, "", all);
}

TEST_F(PrivateDriverTest, ReportsAndCleansUpAfterEachFailingStep) {
    const std::vector<std::string> alerts = {prompt, unreachable};
    const auto without = [](const std::string& tool) {
        return [tool](UpdaterSession& session) { session.host.toolsThatDoNotStart = {tool}; };
    };
    const auto losing = [](int bundleFinds) {
        return [bundleFinds](UpdaterSession& session) { session.host.bundleFinds = bundleFinds; };
    };
    expectFailure(alerts, "kExtLoadUnload: Could not kextload\n",
                  {deletion, owning, loading, attaching, deletion}, without("/sbin/kextload"));
    expectFailure(alerts, "Could not chown\n", {deletion, owning, deletion}, without("/usr/sbin/chown"));
    const auto archive = bundle_->resource("vupdaterkext.pax");
    std::ofstream(archive) << std::string(2000, 'x');
    expectFailure(alerts, "Could not unpax\n", {deletion});
    std::filesystem::remove(archive);
    std::filesystem::create_directory(archive);
    expectFailure(alerts, "Could not copy to tmp\n", {});
    std::filesystem::remove(archive);
    expectFailure(alerts, "Could not find pax in resource.\n", {});
    // The layouts and the list of images find the bundle first.
    expectFailure(alerts, "Could not get main bundle\n", {}, losing(2));
    expectFailure(alerts, "Could not Authenticate\n", {},
                  [](UpdaterSession& session) { session.cancelled = {promptTitle}; });
    machine_.drivers().refusesAdministrator = true;
    expectFailure({unreachable}, "Could not Authenticate\n", {});
    machine_.drivers().refusesAdministrator = false;
    std::filesystem::remove(bundle_->resource("dialog-200.ui"));
    expectFailure({unreachable}, "Could not Authenticate\n", {});
    // A path that is too long is not reported on standard error.
    bundle_.emplace(std::string(200, 'x')).addShippedResource("vupdaterkext.pax");
    expectFailure(alerts, "", {});
}

TEST_F(PrivateDriverTest, StaysLoadedWhenTheComputerShutsDown) {
    {
        UpdaterSession session(machine_, *bundle_);
        session.run([&] {
            session.click("UPDT");
            session.click("POWR");
        });
        EXPECT_FALSE(machine_.isOn());
        EXPECT_TRUE(std::filesystem::exists(SystemTmp::driver));
        EXPECT_EQ(session.host.privileged, (Runs{deletion, owning, loading, attaching}));
    }
    machine_.powerOn();
    UpdaterSession session(machine_, *bundle_);
    session.run([&] { EXPECT_EQ(session.text("FWVR"), "M12"); });
    EXPECT_EQ(session.alerts.size(), 1u) << "loaded again, over the bundle that was left";
    EXPECT_TRUE(SystemTmp::isClean());
}

}  // namespace
