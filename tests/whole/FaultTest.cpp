// Cards that break while the updater works on them: what it says, what is in the PROM afterwards, and that
// the next attempt succeeds.

#include <gtest/gtest.h>

#include <algorithm>

#include "framework/widgets/LApplication.h"
#include "tests/whole/FirstCardUpdate.h"
#include "tests/whole/TwoPageImage.h"
#include "tests/whole/UpdaterTest.h"

namespace {

using simulator::Fault;
using simulator::FaultKind;
using simulator::Misuse;
using simulator::PromCells;
using Alerts = std::vector<UpdaterSession::Alert>;
using When = Fault::When;

constexpr uint32_t blank = 0xFFFFFFFF;

class Faults : public UpdaterTest {
  protected:
    Faults() { bundle.addImage(imageName, twoPageImage()); }

    bool holds(uint32_t page) {
        const auto bytes = card().cells().bytesOf(PromCells::page(page));
        return std::ranges::equal(bytes, wantedPage(page));
    }
};

// One fault that strikes when Update is clicked, or so many JTAG clocks or accesses later.
struct Attempt {
    Fault fault;
    Alerts alerts;
    uint32_t identityAfter;
    uint8_t firstByteAfter;  // of the first page
    bool holdsSecondPage;

    bool succeeds() const { return alerts.size() == 1; }
    friend std::ostream& operator<<(std::ostream& out, const Attempt& attempt) {
        return out << describe(attempt.fault.kind).name << " at " << attempt.fault.count;
    }
};

constexpr uint64_t inErase = 20'000'000;  // accesses
constexpr uint64_t inSecondPage = 6'000;  // clocks
constexpr uint8_t untouched = 'V';        // of the configuration's signature
constexpr uint8_t erased = 0xFF;
constexpr uint32_t foreignCode = 0x01424093;

const Alerts writesBlindly = {confirmation, mismatch, identityNotRead, failure};
const Alerts pageFails = {confirmation, mismatch, failure};

const Attempt attempts[] = {
    {{.kind = FaultKind::tdoStuckLow},
     {confirmation, mismatch, {"Error", "Error writing Serial Number!"}, failure},
     identity,
     untouched,
     false},
    {{.kind = FaultKind::tdoStuckHigh}, writesBlindly, identity, untouched, false},
    {{.kind = FaultKind::tdoStuckHigh, .when = When::atClock, .count = inSecondPage},
     writesBlindly,
     identity,
     pageByte(0),
     true},
    {{.kind = FaultKind::chainBroken}, writesBlindly, identity, untouched, false},
    {{.kind = FaultKind::chainBroken, .when = When::atClock, .count = inSecondPage},
     writesBlindly,
     blank,
     pageByte(0),
     false},
    {{.kind = FaultKind::foreignIdentification, .code = foreignCode},
     writesBlindly,
     identity,
     untouched,
     false},
    {{.kind = FaultKind::pageNotTaken, .page = 0}, pageFails, identity, erased, true},
    {{.kind = FaultKind::pageNotTaken, .page = 1}, pageFails, identity, pageByte(0), false},
    {{.kind = FaultKind::pageMisread, .page = 1, .times = 4}, pageFails, identity, pageByte(0), true},
    {{.kind = FaultKind::pageMisread, .page = 1, .times = 3}, {confirmation}, identity, pageByte(0), true},
    {{.kind = FaultKind::userCodeNotTaken},
     {confirmation, identityDiffers, failure},
     blank,
     pageByte(0),
     true},
    {{.kind = FaultKind::cardVanished, .when = When::atAccess, .count = inErase},
     writesBlindly,
     blank,
     erased,
     false}};

class FaultyAttempt : public Faults, public testing::WithParamInterface<Attempt> {};

TEST_P(FaultyAttempt, IsToldAndTheNextOneSucceeds) {
    const Attempt& attempt = GetParam();
    UpdaterSession session(machine, bundle);
    session.run([&] {
        Fault fault = attempt.fault;
        fault.count += fault.when == When::atClock ? card().chain().state().clocks : machine.accesses();
        card().inject(fault);
        session.click("UPDT");
        EXPECT_EQ(session.alerts, attempt.alerts);
        EXPECT_EQ(session.shownStatePanes(), attempt.succeeds() ? finishedPanes : idlePanes);
        EXPECT_EQ(card().identity(), attempt.identityAfter);
        EXPECT_EQ(card().cells().pages()[0], attempt.firstByteAfter);
        EXPECT_EQ(holds(1), attempt.holdsSecondPage);
        EXPECT_EQ(card().clearFaults(), 1u);
        if (attempt.succeeds()) {
            return;
        }
        session.alerts.clear();
        session.click("UPDT");
        EXPECT_EQ(session.alerts, Alerts{confirmation});
        EXPECT_EQ(session.shownStatePanes(), finishedPanes);
        EXPECT_EQ(card().identity(), identity);
        EXPECT_TRUE(holds(0) && holds(1));
    });
}

INSTANTIATE_TEST_SUITE_P(, FaultyAttempt, testing::ValuesIn(attempts));

// Rows that are damaged and yet no misuse: the PROM is slower than it may be.
TEST_F(Faults, SlowPromFailsWithoutMisuse) {
    UpdaterSession session(machine, bundle);
    session.run([&] {
        card().inject({.kind = FaultKind::slowProgramming, .factor = 2});
        session.click("UPDT");
        EXPECT_EQ(session.alerts, (Alerts{confirmation, mismatch, identityDiffers, failure}));
        EXPECT_FALSE(holds(0) || holds(1));
        EXPECT_NE(card().identity(), identity);
        card().clearFaults();
        session.click("UPDT");
        EXPECT_TRUE(holds(0) && holds(1));
        EXPECT_EQ(card().identity(), identity);
    });
}

// Faults that are there, or strike, when a card is chosen.
TEST_F(Faults, CardsThatAreFoundBrokenEndTheUpdater) {
    const struct {
        Fault fault;
        const char* alert;  // part of the only one; null for none
    } cases[] = {{{.kind = FaultKind::tdoStuckLow}, nullptr},
                 {{.kind = FaultKind::chainBroken}, nullptr},
                 {{.kind = FaultKind::foreignIdentification, .code = foreignCode}, nullptr},
                 {{.kind = FaultKind::serviceNotMapped}, "could not be reached"},
                 {{.kind = FaultKind::cardVanished, .when = When::atAccess, .count = 1}, "Byte Swap ID"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(describe(c.fault.kind).name);
        Fault fault = c.fault;
        fault.count += machine.accesses();
        card().inject(fault);
        {
            UpdaterSession session(machine, bundle);
            bool quitByItself = false;
            session.run([&] { quitByItself = LApplication::Current()->IsQuitting(); });
            EXPECT_TRUE(quitByItself);
            ASSERT_EQ(session.alerts.size(), c.alert != nullptr ? 1u : 0u);
            if (c.alert != nullptr) {
                EXPECT_NE(session.alerts[0].message.find(c.alert), std::string::npos);
            }
        }
        card().clearFaults();
        UpdaterSession session(machine, bundle);
        session.run([&] { EXPECT_EQ(session.text("SRNO"), "2103070021"); });
    }
}

// The typed identity counts as the card's until the updater ends; the next one asks again.
TEST_F(Faults, IdentityThatIsTypedAndNotTaken) {
    const struct {
        FaultKind kind;
        UpdaterSession::Alert alert;
    } cases[] = {{FaultKind::userCodeNotTaken, identityDiffers},
                 {FaultKind::tdoStuckLow, {"Error", "Error writing Serial Number!"}}};
    card().cells().setUserCode(blank);
    for (const auto& each : cases) {
        card().inject({.kind = each.kind});
        UpdaterSession session(machine, bundle);
        session.typed = {"2103070021"};
        session.run([&] { EXPECT_EQ(session.text("SRNO"), "2103070021"); });
        EXPECT_EQ(session.alerts, Alerts{each.alert});
        EXPECT_EQ(session.identityDialogs.size(), 1u);
        card().clearFaults();
        // TDO does not keep the PROM from taking what it is given.
        EXPECT_EQ(card().identity(), each.kind == FaultKind::tdoStuckLow ? identity : blank);
    }
}

// The same image without one of the things that a PROM needs.
TEST_F(Faults, SkippedStepsShowInTheLedger) {
    const struct {
        TwoPageRecipe recipe;
        std::vector<Misuse> misuses;
    } cases[] = {{{.erases = false}, {Misuse::programmedTwice, Misuse::programmedTwice}},
                 {{.eraseMicroseconds = 14'999'900},
                  {Misuse::shortWait, Misuse::programmedTwice, Misuse::programmedTwice}},
                 {{.programMicroseconds = 13'900}, {Misuse::shortWait, Misuse::shortWait}}};
    for (const auto& c : cases) {
        bundle.addImage(imageName, twoPageImage(c.recipe));
        UpdaterSession session(machine, bundle);
        session.run([&] { session.click("UPDT"); });
        std::vector<Misuse> misuses;
        for (const auto& entry : machine.ledger().entries()) {
            misuses.insert(misuses.end(), entry.times, entry.misuse);
        }
        EXPECT_EQ(misuses, c.misuses);
        machine.ledger().clear();
    }
}

}  // namespace
