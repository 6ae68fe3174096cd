// Cards that break while the updater works on them: what it says, what is in the PROM afterwards, and that
// the next attempt succeeds.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "framework/widgets/LApplication.h"
#include "hw/PromPrograms.h"
#include "simulator/DefaultMachine.h"
#include "simulator/Files.h"
#include "tests/whole/ExpectedAccesses.h"
#include "tests/whole/UpdaterSession.h"
#include "xsvf/Assembler.h"

namespace {

using simulator::Fault;
using simulator::FaultKind;
using simulator::Misuse;
using simulator::Prom;
using simulator::PromCells;
using Alert = UpdaterSession::Alert;
using Alerts = std::vector<Alert>;
using When = Fault::When;

constexpr const char* imageName = "VMBM12A.xsv";
constexpr const char* idlePanes = "ITX0 ITX1 ITX2 CLOS UPDT";
constexpr const char* finishedPanes = "FTX0 FTX1 FTX2 POWR";
constexpr uint32_t identity = 0x21307015;
constexpr uint32_t blank = 0xFFFFFFFF;

const Alert confirmation = {"Firmware Update Confirmation",
                            "About to program your VornMX-B with Firmware Version 12"};
const Alert mismatch = {"TDO Mismatch Error after max retries", "EEPROM Programming Failure!"};
const Alert identityNotRead = {"Error 2", "Unable to read Serial Number from VornMX/K40!"};
const Alert identityDiffers = {"Error", "Serial Number readback does not match!"};
const Alert failure = {
    "EEPROM Programming Failure",
    "Updating the Firmware on the VornMX/K40/DX8 FAILED!\nDo NOT turn off the power to your "
    "computer before successfully updating the VornMX/K40/DX8 Firmware!"};

struct Recipe {
    uint32_t eraseMicroseconds = 15'000'000;
    uint32_t programMicroseconds = 14'000;
    bool erases = true;
};

// Does to two pages what a whole image does to all: page n comes to hold pageByte(n) and zeros after it.
constexpr uint8_t pageByte(uint32_t page) {
    return static_cast<uint8_t>(0x5A + page);
}

std::vector<uint8_t> twoPageImage(const Recipe& recipe = {}) {
    std::vector<uint8_t> image;
    XsvfAssembler<std::vector<uint8_t>> xsvf(image);
    const auto select = [&](Prom::Instruction instruction, uint32_t wait = 0) {
        xsvf.XRUNTEST(wait);
        xsvf.XSIR(13, uint32_t{instruction} << 5 | simulator::Fpga::kBypass);
        xsvf.XRUNTEST(0);
    };
    const auto atPage = [&](uint32_t page, Prom::Instruction instruction) {
        select(Prom::addressInstruction);
        xsvf.XSDRSIZE(17);
        xsvf.XSDRE(page * Prom::kPageAddressStep << 1);
        select(instruction);
        xsvf.XSDRSIZE(4097);
    };
    std::array<uint8_t, 513> everyBit;
    everyBit.fill(0xFF);
    xsvf.XREPEAT(3);
    xsvf.XSTATE(kTapRunTestIdle);
    select(Prom::identificationInstruction);
    xsvf.XSDRSIZE(33);
    xsvf.XTDOMASK(0x1FFFFFFFF);
    xsvf.XSDRTDO(0, uint64_t{Prom::kIdentificationCode} << 1);
    select(Prom::enterProgrammingInstruction);
    xsvf.XSDRSIZE(7);
    xsvf.XSDRE(0x34 << 1);
    if (recipe.erases) {
        select(Prom::eraseInstruction, recipe.eraseMicroseconds);
    }
    for (const uint32_t page : {0, 1}) {
        atPage(page, Prom::pageDataInstruction);
        xsvf.XTDOMASK(1);
        xsvf.XSDRTDO(pageByte(page) << 1, 0);
        select(Prom::programInstruction, recipe.programMicroseconds);
    }
    for (const uint32_t page : {0, 1}) {
        atPage(page, Prom::readPageInstruction);
        xsvf.XTDOMASK(everyBit);
        xsvf.XSDRTDO(0, pageByte(page) << 1);
    }
    xsvf.XCOMPLETE();
    return image;
}

std::vector<uint8_t> wantedPage(uint32_t page) {
    std::vector<uint8_t> content(512);
    content[0] = pageByte(page);
    return content;
}

class Faults : public testing::Test {
  protected:
    Faults() {
        simulator::addDefaultCards(machine);
        machine.powerOn();
        bundle.addImage(imageName, twoPageImage());
    }

    void TearDown() override { EXPECT_TRUE(machine.ledger().empty()); }

    simulator::Card& card() { return machine.card(0); }
    bool holds(uint32_t page) {
        const auto bytes = card().cells().bytesOf(PromCells::page(page));
        return std::ranges::equal(bytes, wantedPage(page));
    }

    simulator::Machine machine;
    TestBundle bundle;
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
                 {{.kind = FaultKind::cardVanished, .when = When::atAccess, .count = 1}, "Byte Swap ID"},
                 {{.kind = FaultKind::powerLost, .when = When::atAccess, .count = 1}, "Byte Swap ID"}};
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
        EXPECT_EQ(machine.isOn(), c.fault.kind != FaultKind::powerLost);
        machine.powerOn();
        card().clearFaults();
        UpdaterSession session(machine, bundle);
        session.run([&] { EXPECT_EQ(session.text("SRNO"), "2103070021"); });
    }
}

TEST_F(Faults, CardsThatCannotBeAskedAreNotListed) {
    for (const FaultKind kind :
         {FaultKind::serviceNotOpened, FaultKind::serviceSilent, FaultKind::cardVanished}) {
        machine.card(3).inject({.kind = kind});
        UpdaterSession session(machine, bundle);
        session.run([&] {
            EXPECT_EQ(session.cardItems().size(), 3u);
            EXPECT_EQ(session.text("SRNO"), "2103070021");
        });
        EXPECT_EQ(session.alerts, Alerts());
        machine.card(3).clearFaults();
    }
}

// The same image without one of the things that a PROM needs.
TEST_F(Faults, SkippedStepsShowInTheLedger) {
    const struct {
        Recipe recipe;
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

// Where in the write of a whole image the power goes, and what is left.
enum class From { start, imageEnd, end };

struct PowerCut {
    From from;
    int64_t accesses;  // counted from there
    Alerts alerts;     // between the confirmation and the failure
    int version;       // of the firmware that the card has at the next power-up; 0 for none
    bool keepsIdentity;

    friend std::ostream& operator<<(std::ostream& out, const PowerCut& cut) {
        return out << std::array{"start", "image end", "end"}[static_cast<std::size_t>(cut.from)] << ' '
                   << std::showpos << cut.accesses;
    }
};

const Alerts imageFails = {mismatch, identityNotRead};
const Alerts readingFails = {identityNotRead};

const PowerCut powerCuts[] = {
    {From::start, 3'000, imageFails, 10, true},             // before anything was erased
    {From::start, 50'000, imageFails, 0, false},            // erase
    {From::start, 20'000'000, imageFails, 0, false},        //
    {From::start, 44'900'000, imageFails, 0, false},        //
    {From::start, 46'000'000, imageFails, 0, false},        // programming
    {From::start, 100'000'000, imageFails, 0, false},       //
    {From::start, 167'000'000, imageFails, 0, false},       //
    {From::imageEnd, -100'000'000, imageFails, 12, false},  // reading back
    {From::imageEnd, -50'000'000, imageFails, 12, false},   //
    {From::imageEnd, -200'000, imageFails, 12, false},      //
    {From::imageEnd, 30'000, readingFails, 12, false},      // the identity, written for the first time
    {From::imageEnd, 90'000, readingFails, 12, false},      // again
    {From::imageEnd, 175'000, readingFails, 12, true},      // verified
    {From::end, -600'000, readingFails, 12, true},          // protection
    {From::end, -900, {identityDiffers}, 12, true}};        // the last reading

class PowerLoss : public testing::TestWithParam<PowerCut> {};

TEST_P(PowerLoss, LeavesACardThatComesBackOrIsMissed) {
    const PowerCut& cut = GetParam();
    simulator::Machine machine;
    simulator::Card& card =
        machine.addCard({"VornMX-B", "PCI slot 1", 0x21, 1},
                        {simulator::encodeConfiguration({0x21, 1, 'M', 10, 0x4511}), identity, 3});
    machine.powerOn();
    TestBundle bundle;
    bundle.addShippedImage(imageName);
    {
        UpdaterSession session(machine, bundle);
        session.run([&] {
            const auto accessesOf = [](std::span<const uint8_t> program, int failedScans = 0) {
                const Accesses accesses = expectedAccesses(program, failedScans);
                return accesses.loads + accesses.stores;
            };
            uint64_t count = machine.accesses() + static_cast<uint64_t>(cut.accesses);
            if (cut.from != From::start) {
                count += accessesOf(simulator::readFile(bundle.resource(imageName)));
            }
            if (cut.from == From::end) {
                count +=
                    accessesOf(kWriteProgram) + accessesOf(kProtectProgram) + accessesOf(kReadProgram, 9);
            }
            card.inject({.kind = FaultKind::powerLost, .when = When::atAccess, .count = count});
            session.click("UPDT");
            EXPECT_EQ(session.shownStatePanes(), idlePanes);
        });
        Alerts expected = cut.alerts;
        expected.insert(expected.begin(), confirmation);
        expected.push_back(failure);
        EXPECT_EQ(session.alerts, expected);
    }
    EXPECT_FALSE(machine.isOn());
    machine.powerOn();
    EXPECT_EQ(card.running() ? card.running()->version : 0, cut.version);
    EXPECT_EQ(card.identity() == identity, cut.keepsIdentity);

    UpdaterSession session(machine, bundle);
    bool hasWindow = false;
    session.run([&] {
        hasWindow = true;
        EXPECT_EQ(session.text("FWVR"), std::string("M") + std::to_string(cut.version));
    });
    EXPECT_EQ(hasWindow, cut.version != 0);
    if (!hasWindow) {
        ASSERT_EQ(session.alerts.size(), 1u);
        EXPECT_NE(session.alerts[0].message.find("card"), std::string::npos);
    }
    EXPECT_TRUE(machine.ledger().empty());
}

INSTANTIATE_TEST_SUITE_P(, PowerLoss, testing::ValuesIn(powerCuts));

}  // namespace
