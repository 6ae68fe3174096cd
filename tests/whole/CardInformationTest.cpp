// Choosing a card: what the window shows and what ends the updater.

#include <gtest/gtest.h>

#include "framework/widgets/LApplication.h"
#include "tests/whole/FirstCardUpdate.h"
#include "tests/whole/UpdaterTest.h"

namespace {

using Alert = UpdaterSession::Alert;
using Alerts = std::vector<Alert>;
using Texts = std::vector<std::string>;

class CardInformationTest : public UpdaterTest {
  protected:
    CardInformationTest() {
        for (const char* image : {"VMBM12A.xsv", "K40W07B.xsv", "DX8M05NC.xsv"}) {
            bundle_.addShippedResource(image);
        }
    }
};

Texts informationOf(const UpdaterSession& session) {
    Texts texts;
    for (const char* pane : {"MODL", "PCBR", "FWVR", "FWDT", "SRNO", "MFDT", "NFWR", "FWST"}) {
        texts.push_back(session.text(pane));
    }
    return texts;
}

TEST_F(CardInformationTest, ShowsEachCardsDetails) {
    UpdaterSession session(machine_, bundle_);
    // The upper bytes of the version register mean nothing, in either byte order.
    session.host.falsifyLoad = [](uint32_t offset, uint32_t word) {
        return offset == 0x10 ? word | 0x00ABAB00 : word;
    };
    session.run([&] {
        EXPECT_EQ(session.cardItems().size(), 4u);
        EXPECT_EQ(informationOf(session), (Texts{"VornMX-B", "A", "M10", "May 17, 2004", "2103070021",
                                                 "Feb 12, 2003", "M12", "Newer firmware is available"}));
        EXPECT_EQ(session.text("TIME"), "Writing takes about a minute and a half.");
        session.pickCard(2);
        EXPECT_EQ(informationOf(session), (Texts{"Vorn K40", "B", "W7", "Mar 09, 2005", "2304190204",
                                                 "May 07, 2004", "W7", "This card has the newest firmware"}));
        session.pickCard(3);
        EXPECT_EQ(informationOf(session), (Texts{"Vorn DX8", "NC", "W7", "Nov 23, 2004", "2405411337",
                                                 "Oct 08, 2005", "M5", "Other firmware is available"}));
        session.cancelled = {confirmation.title};
        session.click("UPDT");

        // Without an image for the card, the text for the card before stays.
        session.typed = {"2506110042"};
        session.pickCard(4);
        EXPECT_EQ(session.text("NFWR"), "M5");
        EXPECT_EQ(session.text("FWST"), "No firmware for this card");
    });
    // The DX8's letters differ, so its older image is offered without an alert that it is up to date.
    EXPECT_EQ(session.alerts,
              (Alerts{{confirmation.title, "About to program your Vorn DX8 with Firmware Version 5"},
                      noNewFirmware}));
}

TEST_F(CardInformationTest, ReadsACardOnceWhenItIsPicked) {
    UpdaterSession session(machine_, bundle_);
    std::vector<uint32_t> registersRead;
    session.host.falsifyLoad = [&](uint32_t offset, uint32_t word) {
        if (offset < 0x100) {
            registersRead.push_back(offset);
        }
        return word;
    };
    session.run([&] {
        registersRead.clear();
        session.pickCard(2);
        EXPECT_EQ(registersRead, (std::vector<uint32_t>{0x00, 0x08, 0x0C, 0x10, 0x14, 0x18}));
        // Picking the open card again reads nothing, and forgets that its firmware is the newest.
        const uint64_t accesses = machine_.accesses();
        session.pickOpenCardAgain();
        EXPECT_EQ(machine_.accesses(), accesses);
        session.cancelled = {confirmation.title};
        session.click("UPDT");
    });
    EXPECT_EQ(session.alerts,
              (Alerts{{confirmation.title, "About to program your Vorn K40 with Firmware Version 7"}}));
}

constexpr uint32_t noOffset = 1;  // of a register
constexpr const char* cancelledEntry = "GetSerialNumberDialog returned false\n";

// What is read from a register, the card's identity, and the alerts and standard error before the updater
// ends.
const struct {
    const char* what;
    uint32_t offset, word;
    uint32_t identity;
    Alerts alerts;
    const char* standardError;
} fatalFindings[] = {
    {"no byte order reads right",
     0x000,
     0xFFFFFFFF,
     identity,
     {{"Byte Swap Error", "Unable to properly read the Byte Swap ID!"}},
     ""},
    {"no such model",
     0x008,
     0x26,
     identity,
     {{"Error", "Unable to properly read the VornMX/K40/DX8 Device ID!"}},
     ""},
    {"TDO stuck low, so the identity cannot be read", 0x108, 0, identity, {}, cancelledEntry},
    {"blank identity", noOffset, 0, 0xFFFFFFFF, {}, cancelledEntry},
    {"identity of no model",
     noOffset,
     0,
     0x11307015,
     {{"Error", "Unable to properly determine the Serial Number of the VornMX/K40/DX8!"}},
     cancelledEntry},
    {"identity of another model",
     noOffset,
     0,
     0x23307015,
     {{"Error", "VornMX/K40/DX8 Serial Number does not match Device ID!"}},
     ""}};

TEST_F(CardInformationTest, QuitsOnAFatalFinding) {
    for (const auto& each : fatalFindings) {
        SCOPED_TRACE(each.what);
        card().cells().setUserCode(each.identity);
        UpdaterSession session(machine_, bundle_);
        session.host.falsifyLoad = [&](uint32_t offset, uint32_t word) {
            return offset == each.offset ? each.word : word;
        };
        bool quitByItself = false;
        session.run([&] { quitByItself = LApplication::Current()->IsQuitting(); });
        EXPECT_TRUE(quitByItself);
        EXPECT_EQ(session.alerts, each.alerts);
        EXPECT_EQ(session.standardError, each.standardError);
    }
}

TEST_F(CardInformationTest, AsksForABlankIdentityAndWritesIt) {
    const Alert invalid = {"Error", "Invalid Serial Number!"};
    const std::deque<std::string> rejected = {"", "2603070021"};
    machine_.card(0).cells().setUserCode(0xFFFFFFFF);
    {
        UpdaterSession session(machine_, bundle_);
        session.typed = rejected;
        session.typed.push_back("2103070021");
        session.run([&] {
            EXPECT_EQ(session.text("SRNO"), "2103070021");
            EXPECT_EQ(session.text("MFDT"), "Feb 12, 2003");
        });
        // The rejected text stays for correction.
        Texts shown{""};
        shown.insert(shown.end(), rejected.begin(), rejected.end());
        EXPECT_EQ(session.identityDialogs, shown);
        EXPECT_EQ(session.alerts, Alerts(rejected.size(), invalid));
    }
    EXPECT_EQ(machine_.card(0).identity(), 0x21307015u);

    // The serial number of another model is accepted and written, and then does not match the card.
    machine_.card(2).cells().setUserCode(0);
    UpdaterSession session(machine_, bundle_);
    session.typed = {"2303070021"};
    session.run([&] { session.pickCard(3); });
    EXPECT_EQ(session.alerts, (Alerts{{"Error", "VornMX/K40/DX8 Serial Number does not match Device ID!"}}));
    EXPECT_EQ(machine_.card(2).identity(), 0x23307015u);
    // So the dialog says how this model's serial numbers begin, and the window behind it shows no other
    // card's.
    EXPECT_NE(session.identityQuestion.find("every Vorn DX8 begins with 24"), std::string::npos);
    EXPECT_EQ(session.identityQuestion.find('^'), std::string::npos);
    EXPECT_EQ(session.behindIdentityDialog, "Vorn DX8 – –");
}

}  // namespace
