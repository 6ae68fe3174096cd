// Starting up: with broken layouts, with one card and with many, and with cards and images that fail.

#include <gtest/gtest.h>

#include <QDialog>
#include <QLabel>
#include <fstream>
#include <iterator>

#include "app/logic/FirmwareFiles.h"
#include "card/Registers.h"
#include "framework/widgets/LApplication.h"
#include "tests/whole/FirstCardUpdate.h"
#include "tests/whole/UpdaterTest.h"

namespace {

using simulator::FaultKind;
using Alerts = std::vector<UpdaterSession::Alert>;

class StartUpTest : public UpdaterTest {
  protected:
    // Replaces text in the main window's layout as shipped.
    void editLayout(const std::string& from, const std::string& to) {
        const TestBundle fresh;
        std::ifstream in(fresh.resource("window-128.ui"));
        std::string layout{std::istreambuf_iterator<char>(in), {}};
        const auto at = layout.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        std::ofstream(bundle_.resource("window-128.ui")) << layout.replace(at, from.size(), to);
    }

    // Starts the updater, which must report a missing object and end without any access to a card.
    void expectNilPointer(const std::string& what) {
        UpdaterSession session(machine_, bundle_);
        session.run();
        EXPECT_NE(session.standardError.find("nilP"), std::string::npos) << what;
        ASSERT_EQ(session.alerts.size(), 1u) << what;
        EXPECT_NE((session.alerts[0].title + session.alerts[0].message).find("nilP"), std::string::npos);
        EXPECT_EQ(machine_.accesses(), 0u);
    }
};

TEST_F(StartUpTest, AboutShowsTheVersions) {
    bundle_.addImage(imageName, {0x00});
    UpdaterSession session(machine_, bundle_);
    session.run([&] {
        LApplication::Current()->ObeyCommand(kCommandAbout);
        const auto* const about = session.window()->findChild<QDialog*>();
        ASSERT_NE(about, nullptr);
        EXPECT_TRUE(about->isVisible());
        EXPECT_FALSE(about->isModal());
        EXPECT_FALSE(about->findChild<QLabel*>("VERS")->text().isEmpty());
        EXPECT_EQ(about->findChild<QLabel*>("DETL")->text(), "VornMX-B, board A: M12 (VMBM12A.xsv)");

        // Command 2 is always available, and does nothing.
        uint8_t enabled = 0;
        uint8_t marked = 0;
        uint16_t mark = 0;
        unsigned char name[256] = {0};
        LApplication::Current()->FindCommandStatus(2, enabled, marked, mark, name);
        EXPECT_EQ(enabled, 1);
        EXPECT_TRUE(LApplication::Current()->ObeyCommand(2));
    });
}

TEST_F(StartUpTest, EndsWithoutARequiredPane) {
    for (const std::string paneID : {"CRDS", "POWR", "PTX1", "FTX2"}) {
        editLayout("name=\"" + paneID + '"', "name=\"GONE\"");
        expectNilPointer(paneID);
    }
    editLayout(R"(class="LPushButton" name="CLOS")", R"(class="LStaticText" name="CLOS")");
    expectNilPointer("a button that is a text");
    editLayout(R"(class="LPopupButton" name="CRDS")", R"(class="LPushButton" name="CRDS")");
    expectNilPointer("a popup that is a button");
    std::filesystem::remove(bundle_.resource("window-128.ui"));
    expectNilPointer("no layout");
}

TEST_F(StartUpTest, WorksWithoutOptionalPanes) {
    bundle_.addImage(imageName, {0x00});
    for (const char* instead : {R"(class="LPushButton" name="MODL")", R"(class="LStaticText" name="GONE")"}) {
        editLayout(R"(class="LStaticText" name="MODL")", instead);
        UpdaterSession session(machine_, bundle_);
        session.run([&] { EXPECT_EQ(session.text("FWVR"), "M10"); });
        EXPECT_EQ(session.alerts, Alerts());
    }
    editLayout(R"(class="LProgressBar" name="PGRS")", R"(class="LStaticText" name="PGRS")");
    {
        UpdaterSession session(machine_, bundle_);
        session.run([&] {
            session.click("UPDT");
            EXPECT_EQ(session.shownStatePanes(), finishedPanes);
        });
    }
    // A control that broadcasts an unknown message.
    editLayout("<string>UPDT</string>", "<string>NONE</string>");
    UpdaterSession session(machine_, bundle_);
    session.run([&] {
        session.click("UPDT");
        EXPECT_EQ(session.shownStatePanes(), idlePanes);
    });
    EXPECT_EQ(session.alerts, Alerts());
}

TEST_F(StartUpTest, ListsAllCardsInOrder) {
    for (const std::size_t cards : {1U, 3U, 32U}) {
        simulator::Machine crowd;
        while (crowd.cardCount() < cards) {
            const auto number = static_cast<uint32_t>(crowd.cardCount() + 1);
            const simulator::Board board{"VornMX-B", "slot " + std::to_string(number), 0x21, 1};
            crowd.addCard(board, simulator::PromCells(
                                     simulator::encodeConfiguration({.modelCode = 0x21,
                                                                     .boardRevision = 1,
                                                                     .flavour = number % 2 == 0 ? 'M' : 'W',
                                                                     .version = static_cast<uint8_t>(number),
                                                                     .date = 0x4511}),
                                     identity + number, 3));
        }
        crowd.powerOn();
        bundle_.addImage(imageName, {0x00});
        UpdaterSession session(crowd, bundle_);
        session.run([&] {
            ASSERT_EQ(session.cardItems().size(), cards);
            EXPECT_EQ(session.cardItems().back(), "VornMX-B in slot " + std::to_string(cards));
            EXPECT_EQ(session.text("FWVR"), "W1");
            session.pickCard(static_cast<int>(cards));
            EXPECT_EQ(session.text("FWVR"),
                      std::string(cards % 2 == 0 ? "M" : "W").append(std::to_string(cards)));
        });
        EXPECT_EQ(session.alerts, Alerts());
        EXPECT_TRUE(crowd.ledger().empty());
    }
}

using Items = std::vector<std::string>;
const std::string mx = "VornMX-B in PCI slot 1";
const std::string k40 = "Vorn K40 in PCI slot 2";
const std::string dx8 = "Vorn DX8 in PCI slot 3";
constexpr int counted = 3;  // openings while the cards are counted

// A card that fails, the popup's items, and what picking one of them shows.
const struct {
    FaultKind kind;
    std::size_t broken;
    int openingsBefore;
    Items items;
    int picked;
    bool ends;
    const char* model;
} failingCards[] = {{FaultKind::serviceNotOpened, 0, 0, {k40}, 1, true, "–"},
                    {FaultKind::serviceNotOpened, 1, 0, {mx}, 1, false, "VornMX-B"},
                    {FaultKind::serviceNotOpened, 2, 0, {mx, k40}, 2, false, "Vorn K40"},
                    {FaultKind::serviceNotOpened, 0, counted, {k40, dx8}, 1, true, "–"},
                    {FaultKind::serviceNotOpened, 1, counted, {mx, dx8}, 2, true, "–"},
                    {FaultKind::serviceNotOpened, 2, counted, {mx, k40}, 2, false, "Vorn K40"},
                    {FaultKind::serviceSilent, 0, 0, {k40, dx8}, 1, false, "VornMX-B"},
                    {FaultKind::serviceSilent, 1, 0, {mx, dx8}, 2, false, "Vorn K40"},
                    {FaultKind::serviceSilent, 2, 0, {mx, k40}, 2, false, "Vorn K40"},
                    {FaultKind::serviceNotMapped, 0, 0, {mx, k40, dx8}, 1, true, "–"},
                    {FaultKind::serviceNotMapped, 1, 0, {mx, k40, dx8}, 2, true, "–"},
                    {FaultKind::serviceNotMapped, 2, 0, {mx, k40, dx8}, 3, true, "–"}};

// Cards that cannot be opened or described are not listed. Later cards move up, and their items open the card
// before them. A card that cannot be opened is not counted either, so the last card is missing too, unless
// the card fails after the count. A card that opens but cannot be mapped is listed, and ends the updater when
// picked.
TEST_F(StartUpTest, LaterCardsMoveUpIfOneFails) {
    machine_.powerOff();
    machine_.removeCard(3);
    machine_.powerOn();
    for (const char* image : {imageName, "K40W07B.xsv", "DX8M05NC.xsv"}) {
        bundle_.addImage(image, {0x00});
    }
    for (const auto& each : failingCards) {
        SCOPED_TRACE(std::string(simulator::describe(each.kind).name) + ' ' + std::to_string(each.broken));
        UpdaterSession session(machine_, bundle_);
        session.host.beforeOpening = [&, openings = 0]() mutable {
            if (openings++ == each.openingsBefore) {
                machine_.card(each.broken).inject({.kind = each.kind});
            }
        };
        session.run([&] {
            EXPECT_EQ(session.cardItems(), each.items);
            if (each.picked > 1) {
                session.pickCard(each.picked);
            }
            EXPECT_EQ(LApplication::Current()->IsQuitting(), each.ends);
            EXPECT_EQ(session.text("MODL"), each.model);
            EXPECT_EQ(gpRegisters == nullptr, each.ends);
        });
        ASSERT_EQ(session.alerts.size(), each.ends ? 1u : 0u);
        if (each.ends) {
            EXPECT_TRUE(session.alerts[0].message.starts_with("The card could not be reached"));
        }
        machine_.card(each.broken).clearFaults();
    }
}

TEST_F(StartUpTest, EmptyPopupAllowsOnlyQuitting) {
    for (std::size_t card = 0; card < machine_.cardCount(); ++card) {
        machine_.card(card).inject({.kind = FaultKind::serviceSilent});
    }
    UpdaterSession session(machine_, bundle_);
    session.run([&] {
        EXPECT_TRUE(session.cardItems().empty());
        session.click("UPDT");
        session.click("CLOS");
    });
    EXPECT_EQ(session.alerts, Alerts{noSuitableFirmware});
}

// A card has no new firmware if there are no images, if an image's path is too long, or if the image is the
// seventeenth.
TEST_F(StartUpTest, UncataloguedImagesAreNotOffered) {
    const Alerts none = {noNewFirmware, noSuitableFirmware};
    const auto expectNone = [&](const TestBundle& used, int bundleFinds, const char* standardError) {
        UpdaterSession session(machine_, used);
        session.host.bundleFinds = bundleFinds;
        session.run([&] { session.click("UPDT"); });
        EXPECT_EQ(session.alerts, none);
        EXPECT_EQ(gusNewFirmwareRev, 0);
        EXPECT_EQ(session.standardError, standardError);
    };
    expectNone(bundle_, 100, "");
    bundle_.addImage(imageName, {0x00});
    expectNone(bundle_, 1, "Could not get main bundle\n");  // found once, for the layouts
    TestBundle deep(std::string(200, 'x'));
    deep.addImage(imageName, {0x00});
    expectNone(deep, 100, "");
    for (char last = 'A'; last <= 'P'; ++last) {
        bundle_.addImage(std::string("DX8M05N") + last + ".xsv", {0x00});
    }
    expectNone(bundle_, 100, "");
}

}  // namespace
