// A card's firmware is updated from the window, down to the PROM's cells, and shows after the power cycle.

#include <gtest/gtest.h>

#include <QComboBox>
#include <QTimer>
#include <QWidget>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "app/ApplicationHooks.h"
#include "app/WindowState.h"
#include "framework/core/LListener.h"
#include "framework/widgets/LApplication.h"
#include "hw/ApplicationHooks.h"
#include "tests/whole/ExpectedAccesses.h"
#include "tests/whole/FirstCardUpdate.h"
#include "tests/whole/UpdaterTest.h"

namespace {

using Alerts = std::vector<UpdaterSession::Alert>;
using images::Accesses;

std::vector<uint8_t> bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class UpdateTest : public UpdaterTest {
  protected:
    UpdateTest() { bundle_.addShippedResource("VMBM12A.xsv"); }
};

TEST_F(UpdateTest, WritesTheFirmwareAndShowsItAfterThePowerCycle) {
    {
        UpdaterSession session(machine_, bundle_);
        session.run([&] {
            EXPECT_EQ(session.shownStatePanes(), idlePanes);
            EXPECT_EQ(session.text("FWVR"), "M10");
            EXPECT_EQ(session.text("NFWR"), "M12");
            session.click("UPDT");
            EXPECT_EQ(session.shownStatePanes(), finishedPanes);
            EXPECT_EQ(session.window()->focusWidget(), session.pane("POWR"));
            EXPECT_FALSE(session.isEnabled("CRDS"));
            EXPECT_EQ(card().running()->version, 10) << "until the power has been off";
            session.click("POWR");
        });
        EXPECT_EQ(session.alerts, Alerts{confirmation});
        EXPECT_NE(session.standardError.find("/VMBM12A.xsv for firmware\n"), std::string::npos);
    }
    EXPECT_FALSE(machine_.isOn());
    EXPECT_EQ(card().identity(), identity);
    machine_.powerOn();
    UpdaterSession session(machine_, bundle_);
    session.run([&] {
        EXPECT_EQ(session.text("FWVR"), "M12");
        EXPECT_EQ(session.text("FWDT"), "Mar 17, 2006");
        EXPECT_EQ(session.text("SRNO"), "2103070021");
        session.click("UPDT");
    });
    EXPECT_EQ(session.alerts, (Alerts{{"Error", "The firmware on your card is already up to date!"}}));
}

TEST_F(UpdateTest, InputDuringAWriteChangesNothing) {
    UpdaterSession session(machine_, bundle_);
    int passes = 0;  // of the event loop during the write
    QTimer timer;
    timer.callOnTimeout([&] { passes += session.isShown("PTX0") ? 1 : 0; });
    std::vector<int> progress;
    session.onProgress = [&](int value) {
        if (progress.empty()) {
            EXPECT_EQ(passes, 50 + 3) << "50 to show the new state, then one per 1000 bytes";
            timer.stop();
        }
        if (value >= 500 && (progress.empty() || progress.back() < 500)) {
            EXPECT_EQ(session.shownStatePanes(), "PTX0 PTX1 PGRS");
            EXPECT_FALSE(session.isEnabled("CRDS"));
            EXPECT_FALSE(session.isEmphasised("NOQU"));
            session.meddle();
            EXPECT_TRUE(session.isEmphasised("NOQU")) << "a quit was refused";
            EXPECT_EQ(dynamic_cast<QComboBox&>(*session.pane("CRDS")).currentIndex(), 0);
        }
        progress.push_back(value);
    };
    Accesses made;
    session.run([&] {
        const Accesses before = {session.host.stores, session.host.loads};
        timer.start();
        session.click("UPDT");
        made = {session.host.stores - before.stores, session.host.loads - before.loads};
        EXPECT_EQ(session.shownStatePanes(), finishedPanes);
    });
    EXPECT_EQ(session.alerts, Alerts{confirmation});

    // The image, then the identity written, protected and read back.
    Accesses expected = identityAccesses();
    expected += accessesOf(bytesOf(bundle_.resource(imageName)));
    EXPECT_EQ(made, expected);

    // One step per 3000 bytes, never backwards.
    ASSERT_FALSE(progress.empty());
    EXPECT_TRUE(std::is_sorted(progress.begin() + 1, progress.end()));
    EXPECT_GT(progress.back(), 995);
}

TEST_F(UpdateTest, FailedWriteKeepsTheIdentityAndCanBeRetried) {
    std::vector<uint8_t> image = bytesOf(bundle_.resource("VMBM12A.xsv"));
    // Cut off in the middle of the pages.
    const std::vector<uint8_t> truncated(image.begin(), image.begin() + 300000);
    bundle_.addImage(imageName, truncated);

    UpdaterSession session(machine_, bundle_);
    std::vector<int> progress;
    session.onProgress = [&](int value) { progress.push_back(value); };
    session.run([&] {
        session.click("UPDT");
        EXPECT_EQ(session.shownStatePanes(), "ITX0 ITX1 ITX2 CLOS UPDT");
        EXPECT_TRUE(session.isEnabled("CRDS"));
        // The card still runs firmware that is no longer in its PROM.
        session.pickCard(2);
        session.pickCard(1);
        EXPECT_EQ(session.text("FWST"), "The last update failed");
        progress.clear();
        EXPECT_EQ(card().identity(), identity);
        EXPECT_FALSE(card().acceptableConfiguration());

        bundle_.addImage(imageName, image);
        session.click("UPDT");
        EXPECT_EQ(progress.at(0), 0) << "the next attempt starts at 0";
        EXPECT_EQ(session.shownStatePanes(), "FTX0 FTX1 FTX2 POWR");
        gProgressMax = 8'000'000;
        UpdateProgressBar(4'294'968);
        EXPECT_EQ(progress.back(), 0) << "the bar counts in 32 bits";
        gProgressMax = 1;
        UpdateProgressBar(2);
        EXPECT_EQ(progress.back(), 1000) << "no value is past the end";
    });
    EXPECT_EQ(session.alerts, (Alerts{confirmation,
                                      {"Illegal Command Error", "EEPROM Programming Failure!"},
                                      failure,
                                      {"Error", "Unable to determine New Firmware Version!"},
                                      confirmation}));
    // Quitting without the power-down leaves the machine on.
    EXPECT_TRUE(machine_.isOn());
    ASSERT_TRUE(card().acceptableConfiguration());
    EXPECT_EQ(card().acceptableConfiguration()->version, 12);
    EXPECT_EQ(card().identity(), identity);
}

// Hears the window's states, and fails each time.
struct FailingListener : LListener {
    explicit FailingListener(const MeddlingHost& meddling) : host(meddling) {}
    void ListenToMessage(MessageT message, void* parameter) override {
        if (message != kWindowStateMessage) {
            return;
        }
        states.push_back(*static_cast<const int32_t*>(parameter));
        stores.push_back(host.stores);
        throw std::runtime_error("from the listener");
    }
    const MeddlingHost& host;
    std::vector<int32_t> states;
    std::vector<uint64_t> stores;  // that the updater had made by then
};

// After an exception in a write, the user is warned, the card keeps its identity if it can be reached, and
// the program can be used and quit again. A listener hears of each write before it begins and after it ends.
TEST_F(UpdateTest, WriteAbortedByAnExceptionCanBeRetried) {
    UpdaterSession session(machine_, bundle_);
    FailingListener listener(session.host);
    session.setup.windowStateListener = &listener;
    std::vector<uint64_t> storesAround;
    const auto update = [&] {
        storesAround.push_back(session.host.stores);
        session.click("UPDT");
        storesAround.push_back(session.host.stores);
    };
    session.run([&] {
        for (const bool isReached : {true, false}) {
            SCOPED_TRACE(isReached ? "the card can be reached again at once"
                                   : "the card can no longer be reached");
            uint64_t from = session.host.loads + 1000000;
            session.host.falsifyLoad = [&](uint32_t, uint32_t word) {
                if (session.host.loads <= from) {
                    return word;
                }
                from = isReached ? UINT64_MAX : from;
                throw std::bad_alloc();
            };
            session.alerts.clear();
            update();
            session.host.falsifyLoad = nullptr;
            EXPECT_EQ(session.alerts, (Alerts{confirmation, failure}));
            EXPECT_EQ(card().identity() == identity, isReached);
            EXPECT_EQ(session.shownStatePanes(), idlePanes);
            EXPECT_TRUE(LApplication::Current()->AttemptQuit(kSaveOptionAsk));
        }
        update();
        EXPECT_EQ(session.shownStatePanes(), finishedPanes);
    });
    EXPECT_EQ(card().identity(), identity);
    EXPECT_EQ(listener.states, (std::vector<int32_t>{1, 0, 1, 0, 1, 2}));
    EXPECT_EQ(listener.stores, storesAround);
    EXPECT_NE(session.standardError.find("Unexpected error: from the listener"), std::string::npos);
    machine_.ledger().restore({});  // of the interrupted erase
}

}  // namespace
