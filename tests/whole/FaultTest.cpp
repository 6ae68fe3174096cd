// Cards that break during an update: the alerts, the PROM's content afterwards, and the success of the next
// attempt.

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "app/hosts/WriteListener.h"
#include "framework/widgets/LApplication.h"
#include "images/Listing.h"
#include "images/ListingReader.h"
#include "images/prom/FirmwareImage.h"
#include "tests/whole/ExpectedAccesses.h"
#include "tests/whole/FirstCardUpdate.h"
#include "tests/whole/UpdaterTest.h"

namespace {

using simulator::Fault;
using simulator::FaultKind;
using simulator::Misuse;
using simulator::PromCells;
using Alerts = std::vector<UpdaterSession::Alert>;
using When = Fault::When;

constexpr uint32_t blank = 0xFFFFFFFF;

constexpr uint8_t firstByte = 0x5A;

// A firmware image for the first two pages only.
std::vector<uint8_t> twoPageImage() {
    std::vector<uint8_t> content(std::size_t{2} * simulator::kPageBytes);
    content[0] = firstByte;
    return images::makeFirmwareImage(content);
}

class FaultyUpdateTest : public UpdaterTest {
  protected:
    FaultyUpdateTest() { bundle_.addImage(imageName, twoPageImage()); }

    // Lets the machine go to sleep if it may.
    bool isPrevented() {
        card().inject(
            {.kind = FaultKind::machineSleeps, .when = When::atAccess, .count = machine_.accesses()});
        const bool wasPrevented = card().faults().all().at(0).prevented;
        card().clearFaults();
        return wasPrevented;
    }

    bool holdsSecondPage() {
        const auto bytes = card().cells().bytesOf(PromCells::page(1));
        return std::ranges::count(bytes, 0) == std::ssize(bytes);
    }
};

// A fault that strikes after a count of JTAG clocks or accesses from the click on Update, and its effects.
struct Attempt {
    Fault fault;
    Alerts alerts;
    uint32_t identityAfter;
    uint8_t firstByteAfter;  // of the first page
    bool holdsSecondPage;

    bool succeeds() const { return alerts.size() == 1; }
    friend std::ostream& operator<<(std::ostream& out, const Attempt& attempt) {
        const Fault& fault = attempt.fault;
        return out << describe(fault.kind).name << " at " << fault.count << ", page " << fault.page << ", "
                   << fault.times << " times";
    }
};

constexpr uint8_t untouched = 'V';  // of the configuration's signature
constexpr uint8_t erased = 0xFF;
constexpr uint32_t foreignCode = 0x01424093;

const UpdaterSession::Alert identityNotWritten = {"Error", "Error writing Serial Number!"};
const Alerts writesNothing = {confirmation, mismatch, identityNotWritten, failure};
const Alerts writesBlindly = {confirmation, mismatch, identityNotRead, failure};
const Alerts pageFails = {confirmation, mismatch, failure};
const Alerts identityFails = {confirmation, identityDiffers, failure};
const Alerts bothFail = {confirmation, mismatch, identityDiffers, failure};

Fault inSecondPage(FaultKind kind) {
    return {.kind = kind, .when = When::atClock, .count = 6'000};
}
constexpr Fault vanishedInErase = {
    .kind = FaultKind::cardVanished, .when = When::atAccess, .count = 20'000'000};

const Attempt attempts[] = {
    {{.kind = FaultKind::tdoStuckLow}, writesNothing, identity, untouched, false},
    {{.kind = FaultKind::tdoStuckHigh}, writesBlindly, identity, untouched, false},
    {inSecondPage(FaultKind::tdoStuckHigh), writesBlindly, identity, firstByte, true},
    {{.kind = FaultKind::chainBroken}, writesBlindly, identity, untouched, false},
    {inSecondPage(FaultKind::chainBroken), writesBlindly, blank, firstByte, false},
    {{.kind = FaultKind::foreignIdentification, .code = foreignCode},
     writesBlindly,
     identity,
     untouched,
     false},
    {{.kind = FaultKind::pageNotTaken, .page = 0}, pageFails, identity, erased, true},
    {{.kind = FaultKind::pageNotTaken, .page = 1}, pageFails, identity, firstByte, false},
    {{.kind = FaultKind::pageMisread, .page = 1, .times = 4}, pageFails, identity, firstByte, true},
    {{.kind = FaultKind::pageMisread, .page = 1, .times = 3}, {confirmation}, identity, firstByte, true},
    {{.kind = FaultKind::userCodeNotTaken}, identityFails, blank, firstByte, true},
    // Too slow for the waits, which damages rows but is not misuse.
    {{.kind = FaultKind::slowProgramming, .factor = 2}, bothFail, {}, {}, false},
    {vanishedInErase, writesBlindly, blank, erased, false}};

class FaultyAttemptTest : public FaultyUpdateTest, public testing::WithParamInterface<Attempt> {};

TEST_P(FaultyAttemptTest, IsReportedAndTheNextSucceeds) {
    const Attempt& attempt = GetParam();
    UpdaterSession session(machine_, bundle_);
    session.run([&] {
        Fault fault = attempt.fault;
        fault.count += fault.when == When::atClock ? card().chain().state().clocks : machine_.accesses();
        card().inject(fault);
        session.click("UPDT");
        EXPECT_EQ(session.alerts, attempt.alerts);
        EXPECT_EQ(session.shownStatePanes(), attempt.succeeds() ? finishedPanes : idlePanes);
        if (attempt.fault.kind == FaultKind::slowProgramming) {
            EXPECT_NE(card().identity(), identity);
            EXPECT_NE(card().cells().pages()[0], firstByte);
        } else {
            EXPECT_EQ(card().identity(), attempt.identityAfter);
            EXPECT_EQ(card().cells().pages()[0], attempt.firstByteAfter);
        }
        EXPECT_EQ(holdsSecondPage(), attempt.holdsSecondPage);
        EXPECT_EQ(card().clearFaults(), 1u);
        if (attempt.succeeds()) {
            return;
        }
        session.alerts.clear();
        session.click("UPDT");
        EXPECT_EQ(session.alerts, Alerts{confirmation});
        EXPECT_EQ(session.shownStatePanes(), finishedPanes);
        EXPECT_EQ(card().identity(), identity);
        EXPECT_TRUE(card().cells().pages()[0] == firstByte && holdsSecondPage());
    });
}

INSTANTIATE_TEST_SUITE_P(, FaultyAttemptTest, testing::ValuesIn(attempts));

// The machine wants to sleep while the second page is being programmed.
TEST_F(FaultyUpdateTest, SleepRuinsAWriteUnlessItIsPrevented) {
    for (const bool isPrevented : {true, false}) {
        UpdaterSession session(machine_, bundle_);
        WriteListener listener([&] { machine_.preventSleep(); }, [&] { machine_.allowSleep(); });
        session.setup.windowStateListener = isPrevented ? &listener : nullptr;
        session.run([&] {
            Fault fault = inSecondPage(FaultKind::machineSleeps);
            fault.count += card().chain().state().clocks;
            card().inject(fault);
            session.click("UPDT");
            EXPECT_EQ(session.alerts, isPrevented ? Alerts{confirmation} : writesBlindly);
            EXPECT_EQ(holdsSecondPage(), isPrevented);
            EXPECT_EQ(card().running().has_value(), isPrevented);
            EXPECT_EQ(card().identity(), isPrevented ? identity : blank);
        });
        EXPECT_EQ(card().faults().all().at(0).prevented, isPrevented);
    }
}

// After a failed write the card still runs, but would not come back from a sleep. The write of an identity
// needs its time, too.
TEST_F(FaultyUpdateTest, SleepIsPreventedUntilAWriteHasSucceeded) {
    UpdaterSession session(machine_, bundle_);
    WriteListener listener([&] { machine_.preventSleep(); }, [&] { machine_.allowSleep(); });
    session.setup.windowStateListener = &listener;
    session.typed = {"2503070021", "2403070021"};
    session.run([&] {
        EXPECT_FALSE(isPrevented());
        const uint64_t untilWriting =
            accessesOf(readProgramAsPlayed()).count() + accessesOf(kWriteProgram).count() / 2;
        machine_.card(3).inject({.kind = FaultKind::machineSleeps,
                                 .when = When::atAccess,
                                 .count = machine_.accesses() + untilWriting});
        session.pickCard(4);
        EXPECT_TRUE(machine_.card(3).faults().all().at(0).prevented);
        EXPECT_FALSE(isPrevented());

        session.pickCard(1);
        session.alerts.clear();
        card().inject({.kind = FaultKind::pageNotTaken, .page = 0});
        session.click("UPDT");
        EXPECT_EQ(session.alerts, pageFails);
        card().clearFaults();
        EXPECT_TRUE(isPrevented());
        machine_.card(2).cells().setUserCode(blank);
        session.pickCard(3);
        EXPECT_TRUE(isPrevented());
        session.pickCard(1);
        session.click("UPDT");
        EXPECT_FALSE(isPrevented());
    });
}

// Faults that strike before or while a card is read.
TEST_F(FaultyUpdateTest, BrokenCardEndsTheUpdater) {
    const struct {
        Fault fault;
        const char* alert;  // part of the only alert; null if there is none
    } cases[] = {{{.kind = FaultKind::tdoStuckLow}, nullptr},
                 {{.kind = FaultKind::chainBroken}, nullptr},
                 {{.kind = FaultKind::foreignIdentification, .code = foreignCode}, nullptr},
                 {{.kind = FaultKind::serviceNotMapped}, "could not be reached"},
                 {{.kind = FaultKind::cardVanished, .when = When::atAccess, .count = 1}, "Byte Swap ID"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(describe(c.fault.kind).name);
        Fault fault = c.fault;
        fault.count += machine_.accesses();
        card().inject(fault);
        {
            UpdaterSession session(machine_, bundle_);
            bool quitByItself = false;
            session.run([&] { quitByItself = LApplication::Current()->IsQuitting(); });
            EXPECT_TRUE(quitByItself);
            ASSERT_EQ(session.alerts.size(), c.alert != nullptr ? 1u : 0u);
            if (c.alert != nullptr) {
                EXPECT_NE(session.alerts[0].message.find(c.alert), std::string::npos);
            }
        }
        card().clearFaults();
        UpdaterSession session(machine_, bundle_);
        session.run([&] { EXPECT_EQ(session.text("SRNO"), "2103070021"); });
    }
}

// The updater shows the typed identity until it ends; the next run asks again.
TEST_F(FaultyUpdateTest, ReportsATypedIdentityThatTheCardDoesNotKeep) {
    const struct {
        FaultKind kind;
        UpdaterSession::Alert alert;
    } cases[] = {{FaultKind::userCodeNotTaken, identityDiffers},
                 {FaultKind::tdoStuckLow, identityNotWritten}};
    card().cells().setUserCode(blank);
    for (const auto& each : cases) {
        card().inject({.kind = each.kind});
        UpdaterSession session(machine_, bundle_);
        session.typed = {"2103070021"};
        session.run([&] { EXPECT_EQ(session.text("SRNO"), "2103070021"); });
        EXPECT_EQ(session.alerts, Alerts{each.alert});
        EXPECT_EQ(session.identityDialogs.size(), 1u);
        card().clearFaults();
        // The PROM can still be written while TDO is stuck.
        EXPECT_EQ(card().identity(), each.kind == FaultKind::tdoStuckLow ? identity : blank);
    }
}

// The same image without one of the steps that a PROM needs.
TEST_F(FaultyUpdateTest, SkippedStepsShowInTheLedger) {
    const struct {
        const char* step;
        const char* instead;
        std::vector<Misuse> misuses;
    } cases[] = {
        {"XRUNTEST 15000000\n.*XSIR.*", "XRUNTEST 0", {Misuse::programmedTwice, Misuse::programmedTwice}},
        {"XRUNTEST 15000000",
         "XRUNTEST 14999900",
         {Misuse::shortWait, Misuse::programmedTwice, Misuse::programmedTwice}},
        {"XRUNTEST 14000", "XRUNTEST 13900", {Misuse::shortWait, Misuse::shortWait}}};
    const std::string listing = images::listingOf(twoPageImage());
    for (const auto& [step, instead, expected] : cases) {
        const std::string skipping = std::regex_replace(listing, std::regex(step), instead);
        bundle_.addImage(imageName, images::assemble(skipping));
        UpdaterSession session(machine_, bundle_);
        session.run([&] { session.click("UPDT"); });
        std::vector<Misuse> misuses;
        for (const auto& entry : machine_.ledger().entries()) {
            misuses.insert(misuses.end(), entry.times, entry.misuse);
        }
        EXPECT_EQ(misuses, expected);
        machine_.ledger().restore({});
    }
}

}  // namespace
