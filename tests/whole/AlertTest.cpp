// Every failure of an update has its own alert, and leaves the window and the card as they were.

#include <gtest/gtest.h>
#include <unistd.h>

#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <QWidget>
#include <fstream>
#include <utility>

#include "framework/widgets/LApplication.h"
#include "hw/ApplicationHooks.h"
#include "images/ListingReader.h"
#include "tests/whole/FirstCardUpdate.h"
#include "tests/whole/UpdaterTest.h"

namespace {

namespace fs = std::filesystem;
using Alert = UpdaterSession::Alert;
using Alerts = std::vector<Alert>;

const Alert upToDate = {"Error", "The firmware on your card is already up to date!"};

const std::vector<uint8_t> emptyProgram = {0x00};

using UpdateAlertsTest = UpdaterTest;

TEST_F(UpdateAlertsTest, UpToDateCardIsWrittenOnlyAfterCancelAndConfirmation) {
    bundle_.addImage("VMBM10A.xsv", emptyProgram);
    const Alert confirmTen = {"Firmware Update Confirmation",
                              "About to program your VornMX-B with Firmware Version 10"};
    UpdaterSession session(machine_, bundle_);
    session.run([&] {
        session.click("UPDT");
        EXPECT_EQ(session.alerts, Alerts{upToDate});
        session.alerts.clear();
        session.cancelled = {upToDate.message, confirmTen.title};
        const uint64_t accesses = machine_.accesses();
        session.click("UPDT");
        EXPECT_EQ(session.alerts, (Alerts{upToDate, confirmTen}));
        EXPECT_EQ(machine_.accesses(), accesses);
        session.alerts.clear();
        session.cancelled = {upToDate.message};
        session.click("UPDT");
        EXPECT_EQ(session.alerts, (Alerts{upToDate, confirmTen}));
        EXPECT_GT(machine_.accesses(), accesses);
        EXPECT_EQ(session.shownStatePanes(), "FTX0 FTX1 FTX2 POWR");
    });
}

// The event loop's pass that answers the confirmation can also accept a quit.
TEST_F(UpdateAlertsTest, NothingIsWrittenOnceAQuitHasBeenAccepted) {
    bundle_.addImage(imageName, emptyProgram);
    UpdaterSession session(machine_, bundle_);
    session.run([&] {
        QTimer::singleShot(0, session.window(), [] {
            auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            QObject::connect(dialog, &QDialog::accepted, [] { LApplication::Current()->DoQuit(); });
        });
        const uint64_t accesses = machine_.accesses();
        session.click("UPDT");
        EXPECT_TRUE(LApplication::Current()->IsQuitting());
        EXPECT_EQ(machine_.accesses(), accesses);
    });
    EXPECT_EQ(session.alerts, Alerts{confirmation});
}

// Each case replaces the image while the updater runs.
TEST_F(UpdateAlertsTest, ReportsAnImageThatCannotBeLoaded) {
    struct Case {
        const char* message;
        const char* title;
        std::function<void(const fs::path&)> spoil;
    };
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    const fs::path pipeFile = "/proc/self/fd/" + std::to_string(pipeEnds[0]);
    const fs::path shortFile = "/sys/devices/system/cpu/online";  // reports 4096 bytes and has a few
    std::vector<Case> cases = {
        {"Could not open the firmware file.", "Error", [](const fs::path&) {}},
        {"Could not determine the size of the firmware file.", "Error",
         [&](const fs::path& image) { fs::create_symlink(pipeFile, image); }},
        {"Unable to get Firmware file size!", "Error", [](const fs::path& image) { std::ofstream{image}; }},
        {"Unable to allocate enough RAM to load the Firmware!", "Out of Memory",
         [](const fs::path& image) {
             std::ofstream{image};
             fs::resize_file(image, uint64_t{5} << 30);
         }},
        {"Unable to read the firmware file!", "Error",
         [&](const fs::path& image) { fs::create_symlink(shortFile, image); }}};
    for (const Case& c : cases) {
        bundle_.addImage(imageName, emptyProgram);
        UpdaterSession session(machine_, bundle_);
        session.run([&] {
            fs::remove(bundle_.resource(imageName));
            c.spoil(bundle_.resource(imageName));
            session.click("UPDT");
            EXPECT_EQ(session.shownStatePanes(), "ITX0 ITX1 ITX2 CLOS UPDT");
        });
        EXPECT_EQ(session.alerts, (Alerts{{c.title, c.message}}));
        fs::remove(bundle_.resource(imageName));
    }
    close(pipeEnds[0]);
    close(pipeEnds[1]);
}

// The player refuses each image with another error. Afterwards the card has its identity, and a good image
// can be written.
TEST_F(UpdateAlertsTest, ReportsAFailedImageAndAllowsAnotherTry) {
    const std::string compareIdentification =
        "XSTATE Run-Test/Idle\nXSIR 13 0x1FDF\nXSDRSIZE 33\nXTDOMASK 0x01FFFFFFFF\nXSDRTDO 0x0 ";
    const std::pair<const char*, std::string> cases[] = {
        {"TDO Mismatch Error", compareIdentification + "0x01EA06A128\nXCOMPLETE"},
        {"TDO Mismatch Error after max retries", "XREPEAT 3\n" + compareIdentification + "0x0\nXCOMPLETE"},
        {"Illegal Command Error", "XREPEAT 0"},
        {"Illegal State Error", "XSTATE Pause-DR"},
        {"Data Overflow Error", "XSDRSIZE 8001"}};
    for (const auto& [title, listing] : cases) {
        bundle_.addImage(imageName, images::assemble(listing));
        UpdaterSession session(machine_, bundle_);
        session.run([&, title = title] {
            session.click("UPDT");
            const Alert refusal = {title, "EEPROM Programming Failure!"};
            EXPECT_EQ(session.alerts, (Alerts{confirmation, refusal, failure}));
            EXPECT_EQ(session.shownStatePanes(), "ITX0 ITX1 ITX2 CLOS UPDT");
            EXPECT_EQ(machine_.card(0).identity(), 0x21307015u);

            // A click during a write does not reach a button that appears afterwards.
            bundle_.addImage(imageName, emptyProgram);
            bool isClicked = false;
            session.host.falsifyLoad = [&](uint32_t, uint32_t word) {
                if (!std::exchange(isClicked, true)) {
                    QTimer::singleShot(0, session.window(), [&] {
                        session.window()->close();
                        QTimer::singleShot(0, session.window(), [&] { session.click("POWR"); });
                    });
                }
                return word;
            };
            session.click("UPDT");
            EXPECT_FALSE(LApplication::Current()->IsQuitting());
            EXPECT_EQ(session.shownStatePanes(), "FTX0 FTX1 FTX2 POWR");
        });
    }
}

// The identity is known when the update button appears. If it is lost before the click, an alert warns of it.
TEST_F(UpdateAlertsTest, WarnsOfALostIdentity) {
    bundle_.addImage(imageName, emptyProgram);
    for (const uint32_t lost : {0U, 0x7FFFFFFFU}) {
        UpdaterSession session(machine_, bundle_);
        session.run([&] {
            gSerialNumber = lost;
            session.click("UPDT");
        });
        EXPECT_EQ(session.alerts, (Alerts{confirmation, {"Error", "Serial Number is blank!"}}));
        EXPECT_EQ(machine_.card(0).identity(), lost);
        machine_.card(0).cells().setUserCode(identity);
    }
}

}  // namespace
