// Starting up with layouts that are not as they should be.

#include <gtest/gtest.h>

#include <QDialog>
#include <QLabel>
#include <fstream>
#include <iterator>

#include "framework/widgets/LApplication.h"
#include "simulator/DefaultMachine.h"
#include "tests/whole/UpdaterSession.h"

namespace {

class StartUp : public testing::Test {
  protected:
    // Replaces text in the main window's layout.
    void editLayout(const std::string& from, const std::string& to) {
        const auto file = bundle.resource("window-128.ui");
        std::ifstream in(file);
        std::string layout{std::istreambuf_iterator<char>(in), {}};
        const auto at = layout.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        std::ofstream(file) << layout.replace(at, from.size(), to);
    }

    simulator::Machine machine;
    TestBundle bundle;
};

TEST_F(StartUp, AboutTellsTheVersionAndStopsNothing) {
    simulator::addDefaultCards(machine);
    machine.powerOn();
    UpdaterSession session(machine, bundle);
    session.run([&] {
        LApplication::Current()->ObeyCommand(kCommandAbout);
        const auto* const about = session.window()->findChild<QDialog*>();
        ASSERT_NE(about, nullptr);
        EXPECT_TRUE(about->isVisible());
        EXPECT_FALSE(about->isModal());
        EXPECT_FALSE(about->findChild<QLabel*>("VERS")->text().isEmpty());
    });
}

TEST_F(StartUp, LayoutWithoutAPaneIsReportedAndEndsTheUpdater) {
    simulator::addDefaultCards(machine);
    machine.powerOn();
    for (const char* paneID : {"CRDS", "POWR", "PTX1", "FTX2"}) {
        TestBundle fresh;
        std::filesystem::copy(fresh.resource("window-128.ui"), bundle.resource("window-128.ui"),
                              std::filesystem::copy_options::overwrite_existing);
        editLayout(std::string("name=\"") + paneID + '"', "name=\"GONE\"");
        UpdaterSession session(machine, bundle);
        session.run();
        EXPECT_NE(session.standardError.find("nilP"), std::string::npos) << paneID;
        ASSERT_EQ(session.alerts.size(), 1u) << paneID;
        EXPECT_NE((session.alerts[0].title + session.alerts[0].message).find("nilP"), std::string::npos);
    }
}

TEST_F(StartUp, MissingLayoutIsReportedAndEndsTheUpdater) {
    simulator::addDefaultCards(machine);
    machine.powerOn();
    std::filesystem::remove(bundle.resource("window-128.ui"));
    UpdaterSession session(machine, bundle);
    session.run([] { FAIL() << "there is no window to sit in front of"; });
    EXPECT_NE(session.standardError.find("nilP"), std::string::npos);
    EXPECT_EQ(session.alerts.size(), 1u);
}

}  // namespace
