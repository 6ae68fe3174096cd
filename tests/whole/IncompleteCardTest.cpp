// A card whose update has failed, while another card is used.

#include <gtest/gtest.h>

#include "app/hosts/WriteListener.h"
#include "framework/widgets/LApplication.h"
#include "images/ListingReader.h"
#include "tests/whole/FirstCardUpdate.h"
#include "tests/whole/UpdaterTest.h"

namespace {

const UpdaterSession::Alert incomplete = {
    "Firmware is incomplete",
    "An update failed. Do not switch the computer off until you have started VUpdater again and updated: "
    "VornMX-B in PCI slot 1"};

class IncompleteCardTest : public UpdaterTest {
  protected:
    IncompleteCardTest() {
        bundle_.addImage(imageName, images::assemble("XREPEAT 0"));
        bundle_.addImage("K40W08B.xsv", images::assemble("XCOMPLETE"));
        session_.setup.windowStateListener = &listener_;
    }

    void failOnTheFirstCard() {
        session_.click("UPDT");
        EXPECT_EQ(session_.alerts.back(), failure);
        EXPECT_TRUE(mustStayOn_);
    }

    bool mustStayOn_ = false;
    WriteListener listener_{[this] { mustStayOn_ = true; }, [this] { mustStayOn_ = false; }};
    UpdaterSession session_{machine_, bundle_};
};

TEST_F(IncompleteCardTest, IsToldWhenAnotherIsUpdated) {
    session_.run([&] {
        failOnTheFirstCard();
        session_.pickCard(2);
        session_.click("UPDT");
        EXPECT_EQ(session_.shownStatePanes(), finishedPanes);
        EXPECT_EQ(session_.alerts.back(), incomplete);
        EXPECT_NE(session_.text("FTX2").find("Do not shut down yet"), std::string::npos);
        EXPECT_NE(session_.window()->focusWidget(), session_.pane("POWR"));
        EXPECT_TRUE(mustStayOn_);
    });
}

TEST_F(IncompleteCardTest, IsToldWhenAnotherEndsTheProgram) {
    session_.run([&] {
        failOnTheFirstCard();
        machine_.card(1).inject({.kind = simulator::FaultKind::tdoStuckLow});
        session_.pickCard(2);
        EXPECT_EQ(session_.alerts.back(), incomplete);
        EXPECT_TRUE(LApplication::Current()->IsQuitting());
    });
}

}  // namespace
