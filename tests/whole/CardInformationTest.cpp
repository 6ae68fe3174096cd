// Choosing a card: what the window shows, what ends the updater, and what the popup lists.

#include <gtest/gtest.h>

#include "framework/widgets/LApplication.h"
#include "tests/whole/UpdaterTest.h"

namespace {

using Alert = UpdaterSession::Alert;
using Alerts = std::vector<Alert>;

class CardInformation : public UpdaterTest {
  protected:
    CardInformation() {
        for (const char* image : {"VMBM12A.xsv", "K40W07B.xsv", "DX8M05NC.xsv"}) {
            bundle.addShippedResource(image);
        }
    }
};

std::vector<std::string> informationOf(const UpdaterSession& session) {
    std::vector<std::string> texts;
    for (const char* pane : {"MODL", "PCBR", "FWVR", "FWDT", "SRNO", "MFDT", "NFWR", "FWST"}) {
        texts.push_back(session.text(pane));
    }
    return texts;
}

TEST_F(CardInformation, ShowsEachCardsDetails) {
    using Texts = std::vector<std::string>;
    UpdaterSession session(machine, bundle);
    std::vector<uint32_t> registersRead;
    // The version register's upper bytes, in either byte order, say nothing.
    session.host.falsifyLoad = [&](uint32_t offset, uint32_t word) {
        if (offset < 0x100) {
            registersRead.push_back(offset);
        }
        return offset == 0x10 ? word | 0x00ABAB00 : word;
    };
    session.run([&] {
        EXPECT_EQ(session.cardItems().size(), 4u);
        Texts first = informationOf(session);
        EXPECT_EQ(first[0], "VornMX-B");
        EXPECT_EQ(first[1], "A");
        EXPECT_EQ(first[2], "M10");
        EXPECT_EQ(first[4], "2103070021");
        EXPECT_EQ(first[5], "Feb 12, 2003");
        EXPECT_EQ(first[6], "M12");
        EXPECT_EQ(first[7], "Newer firmware is available");
        EXPECT_EQ(session.text("TIME"), "Writing takes about a minute and a half.");

        registersRead.clear();
        session.pickCard(2);
        EXPECT_EQ(registersRead, (std::vector<uint32_t>{0x00, 0x08, 0x0C, 0x10, 0x14, 0x18}));
        Texts second = informationOf(session);
        EXPECT_EQ(second[0], "Vorn K40");
        EXPECT_EQ(second[1], "B");
        EXPECT_EQ(second[2], "W7");
        EXPECT_EQ(second[6], "W7");
        EXPECT_EQ(second[7], "This card has the newest firmware");

        // Choosing the open card again reads nothing, and forgets that its firmware is the newest.
        const uint64_t accesses = machine.accesses();
        session.pickOpenCardAgain();
        EXPECT_EQ(machine.accesses(), accesses);
        session.cancelled = {"Firmware Update Confirmation"};
        session.click("UPDT");

        session.pickCard(3);
        Texts third = informationOf(session);
        EXPECT_EQ(third[0], "Vorn DX8");
        EXPECT_EQ(third[1], "NC");
        EXPECT_EQ(third[2], "W7");
        EXPECT_EQ(third[6], "M5");
        EXPECT_EQ(third[7], "Other firmware is available");
        // The letters differ, so the older image is offered and not called up to date.
        session.click("UPDT");

        // Without an image for the card the text of the one before stays.
        session.typed = {"2506110042"};
        session.pickCard(4);
        EXPECT_EQ(session.text("NFWR"), "M5");
        EXPECT_EQ(session.text("FWST"), "No firmware for this card");
    });
    EXPECT_EQ(
        session.alerts,
        (Alerts{{"Firmware Update Confirmation", "About to program your Vorn K40 with Firmware Version 7"},
                {"Firmware Update Confirmation", "About to program your Vorn DX8 with Firmware Version 5"},
                {"Error", "Unable to determine New Firmware Version!"}}));
}

// Whatever is found wrong with a card ends the updater, after an alert or a line on standard error that says
// why.
TEST_F(CardInformation, QuitsOnAFatalFinding) {
    struct Case {
        const char* what;
        std::function<void(UpdaterSession&)> prepare;
        Alerts alerts;
        const char* standardError;
    };
    const auto falsify = [](uint32_t at, uint32_t value) {
        return [at, value](UpdaterSession& session) {
            session.host.falsifyLoad = [at, value](uint32_t offset, uint32_t word) {
                return offset == at ? value : word;
            };
        };
    };
    const auto setIdentity = [this](uint32_t identity) {
        return [this, identity](UpdaterSession&) { machine.card(0).cells().setUserCode(identity); };
    };
    const char* const cancelledEntry = "GetSerialNumberDialog returned false\n";
    const Case cases[] = {
        {"no byte order reads right",
         falsify(0x000, 0xFFFFFFFF),
         {{"Byte Swap Error", "Unable to properly read the Byte Swap ID!"}},
         ""},
        {"no such model",
         falsify(0x008, 0x26),
         {{"Error", "Unable to properly read the VornMX/K40/DX8 Device ID!"}},
         ""},
        {"TDO stuck low, so the identity cannot be read", falsify(0x108, 0), {}, cancelledEntry},
        {"blank identity", setIdentity(0xFFFFFFFF), {}, cancelledEntry},
        {"identity of no model",
         setIdentity(0x11307015),
         {{"Error", "Unable to properly determine the Serial Number of the VornMX/K40/DX8!"}},
         cancelledEntry},
        {"identity of another model",
         setIdentity(0x23307015),
         {{"Error", "VornMX/K40/DX8 Serial Number does not match Device ID!"}},
         ""}};
    for (const Case& c : cases) {
        UpdaterSession session(machine, bundle);
        c.prepare(session);
        bool quitByItself = false;
        session.run([&] { quitByItself = LApplication::Current()->IsQuitting(); });
        EXPECT_TRUE(quitByItself) << c.what;
        EXPECT_EQ(session.alerts, c.alerts) << c.what;
        EXPECT_EQ(session.standardError, c.standardError) << c.what;
        machine.card(0).cells().setUserCode(0x21307015);
    }
}

TEST_F(CardInformation, AsksForABlankIdentityAndWritesIt) {
    using Texts = std::vector<std::string>;
    const Alert invalid = {"Error", "Invalid Serial Number!"};
    const std::deque<std::string> rejected = {"", "2603070021"};
    machine.card(0).cells().setUserCode(0xFFFFFFFF);
    {
        UpdaterSession session(machine, bundle);
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
    EXPECT_EQ(machine.card(0).identity(), 0x21307015u);

    // A serial number of another model is accepted as such, and then found not to belong to this card.
    machine.card(2).cells().setUserCode(0);
    UpdaterSession session(machine, bundle);
    session.typed = {"2303070021"};
    session.run([&] { session.pickCard(3); });
    EXPECT_EQ(session.alerts, (Alerts{{"Error", "VornMX/K40/DX8 Serial Number does not match Device ID!"}}));
    EXPECT_EQ(machine.card(2).identity(), 0x23307015u);
    // Which is why the dialog tells how this model's begin, and nothing of another card stands behind it.
    EXPECT_NE(session.identityQuestion.find("every Vorn DX8 begins with 24"), std::string::npos);
    EXPECT_EQ(session.identityQuestion.find('^'), std::string::npos);
    EXPECT_EQ(session.behindIdentityDialog, "Vorn DX8 – –");
}

}  // namespace
