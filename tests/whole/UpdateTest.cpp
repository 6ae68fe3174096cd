// A card's firmware is updated from the window, down to the PROM's cells, and shows after the power cycle.

#include <gtest/gtest.h>

#include <QComboBox>
#include <QTimer>
#include <QWidget>
#include <fstream>
#include <iterator>

#include "app/ApplicationHooks.h"
#include "framework/widgets/LApplication.h"
#include "hw/ApplicationHooks.h"
#include "tests/whole/FirstCardUpdate.h"
#include "tests/whole/IdentityAccesses.h"
#include "tests/whole/UpdaterTest.h"

namespace {

using Alerts = std::vector<UpdaterSession::Alert>;
using images::Accesses;

std::vector<uint8_t> bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class Update : public UpdaterTest {
  protected:
    Update() { bundle.addShippedResource("VMBM12A.xsv"); }
};

TEST_F(Update, WritesTheFirmwareAndShowsItAfterThePowerCycle) {
    Accesses made;
    std::vector<int> progress;
    {
        UpdaterSession session(machine, bundle);
        // Beats once in every pass of the event loop.
        int beats = 0;
        QTimer heart;
        heart.callOnTimeout([&] { beats += session.isShown("PTX0") ? 1 : 0; });
        session.onProgress = [&](int value) {
            if (progress.empty()) {
                EXPECT_EQ(beats, 50 + 3) << "the window settles, and is kept alive every 1000 bytes";
                heart.stop();
            }
            // The window's look and its ways out, halfway through the write.
            if (value >= 500 && (progress.empty() || progress.back() < 500)) {
                EXPECT_EQ(session.shownStatePanes(), "PTX0 PTX1 PGRS");
                EXPECT_FALSE(session.isEnabled("CRDS"));
                EXPECT_FALSE(session.isEmphasised("NOQU"));
                session.meddle();
                EXPECT_TRUE(session.isEmphasised("NOQU")) << "a refused quit is told";
                EXPECT_EQ(dynamic_cast<QComboBox&>(*session.pane("CRDS")).currentIndex(), 0);
            }
            progress.push_back(value);
        };
        session.run([&] {
            EXPECT_EQ(session.shownStatePanes(), "ITX0 ITX1 ITX2 CLOS UPDT");
            EXPECT_EQ(session.text("FWVR"), "M10");
            EXPECT_EQ(session.text("NFWR"), "M12");
            const Accesses before = {session.host.stores, session.host.loads};
            heart.start();
            session.click("UPDT");
            made = {session.host.stores - before.stores, session.host.loads - before.loads};
            EXPECT_EQ(session.shownStatePanes(), "FTX0 FTX1 FTX2 POWR");
            EXPECT_EQ(session.window()->focusWidget(), session.pane("POWR"));
            EXPECT_FALSE(session.isEnabled("CRDS"));
            // The card runs what it loaded at power-up until the power has been off.
            EXPECT_EQ(card().running()->version, 10);
            session.click("POWR");
        });
        EXPECT_EQ(session.alerts, Alerts{confirmation});
        EXPECT_NE(session.standardError.find("/VMBM12A.xsv for firmware\n"), std::string::npos);
    }
    EXPECT_FALSE(machine.isOn());
    EXPECT_TRUE(machine.ledger().empty());
    EXPECT_EQ(card().identity(), identity);

    // The image, then the identity written, protected and read back.
    const std::vector<uint8_t> image = bytesOf(bundle.resource("VMBM12A.xsv"));
    Accesses expected = identityAccesses();
    expected += images::accessesOf(image).value();
    EXPECT_EQ(made.stores, expected.stores);
    EXPECT_EQ(made.loads, expected.loads);

    // One step per 3000 bytes, never backwards.
    EXPECT_TRUE(std::is_sorted(progress.begin() + 1, progress.end()));
    EXPECT_GT(progress.back(), 995);

    machine.powerOn();
    UpdaterSession session(machine, bundle);
    session.run([&] {
        EXPECT_EQ(session.text("FWVR"), "M12");
        EXPECT_EQ(session.text("FWDT"), "Mar 17, 2006");
        EXPECT_EQ(session.text("SRNO"), "2103070021");
        session.click("UPDT");
    });
    EXPECT_EQ(session.alerts, (Alerts{{"Error", "The firmware on your card is already up to date!"}}));
}

TEST_F(Update, FailedWriteKeepsTheIdentityAndCanBeRetried) {
    std::vector<uint8_t> image = bytesOf(bundle.resource("VMBM12A.xsv"));
    // Cut off while pages are being programmed.
    const std::vector<uint8_t> truncated(image.begin(), image.begin() + 300000);
    bundle.addImage(imageName, truncated);

    UpdaterSession session(machine, bundle);
    std::vector<int> progress;
    session.onProgress = [&](int value) { progress.push_back(value); };
    session.run([&] {
        session.click("UPDT");
        EXPECT_EQ(session.shownStatePanes(), "ITX0 ITX1 ITX2 CLOS UPDT");
        EXPECT_TRUE(session.isEnabled("CRDS"));
        // What the card still runs is not what it would load.
        session.pickCard(2);
        session.pickCard(1);
        EXPECT_EQ(session.text("FWST"), "The last update failed");
        progress.clear();
        EXPECT_EQ(card().identity(), identity);
        EXPECT_FALSE(card().acceptableConfiguration());

        bundle.addImage(imageName, image);
        session.click("UPDT");
        EXPECT_EQ(progress.at(0), 0) << "another attempt begins at the beginning";
        EXPECT_EQ(session.shownStatePanes(), "FTX0 FTX1 FTX2 POWR");
        gProgressMax = 8'000'000;
        UpdateProgressBar(4'294'968);
        EXPECT_EQ(progress.back(), 0) << "the bar counts in 32 bits";
        gProgressMax = 1;
        UpdateProgressBar(2);
        EXPECT_EQ(progress.back(), 1000) << "it ends at its end";
    });
    EXPECT_EQ(session.alerts, (Alerts{confirmation,
                                      {"Illegal Command Error", "EEPROM Programming Failure!"},
                                      failure,
                                      {"Error", "Unable to determine New Firmware Version!"},
                                      confirmation}));
    // Quitting without the power-down leaves the machine on.
    EXPECT_TRUE(machine.isOn());
    ASSERT_TRUE(card().acceptableConfiguration());
    EXPECT_EQ(card().acceptableConfiguration()->version, 12);
    EXPECT_EQ(card().identity(), identity);
}

// Whatever goes wrong in a write, the card is warned of and, as long as it can be reached, keeps its
// identity; and the program can be used and quit again.
TEST_F(Update, WriteAbortedByAnExceptionCanBeRetried) {
    UpdaterSession session(machine, bundle);
    session.run([&] {
        for (const bool isReached : {true, false}) {
            SCOPED_TRACE(isReached ? "the card is reached again at once"
                                   : "the card is not reached any more");
            uint64_t from = session.host.loads + 1000000;
            session.host.falsifyLoad = [&](uint32_t, uint32_t word) {
                if (session.host.loads <= from) {
                    return word;
                }
                from = isReached ? UINT64_MAX : from;
                throw std::bad_alloc();
            };
            session.alerts.clear();
            session.click("UPDT");
            session.host.falsifyLoad = nullptr;
            EXPECT_EQ(session.alerts, (Alerts{confirmation, failure}));
            EXPECT_EQ(card().identity() == identity, isReached);
            EXPECT_EQ(session.shownStatePanes(), idlePanes);
            EXPECT_TRUE(LApplication::Current()->AttemptQuit(kSaveOptionAsk));
        }
        session.click("UPDT");
        EXPECT_EQ(session.shownStatePanes(), finishedPanes);
    });
    EXPECT_EQ(card().identity(), identity);
    machine.ledger().clear();  // of the erase that was broken off
}

}  // namespace
