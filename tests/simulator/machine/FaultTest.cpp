#include "simulator/base/Faults.h"

#include <gtest/gtest.h>

#include "platform/CardDriver.h"
#include "tests/simulator/Probe.h"

namespace simulator {

class FaultTest : public ProbedMachineTest {
  protected:
    static std::vector<uint8_t> content(uint8_t byte) { return std::vector<uint8_t>(kPageBytes, byte); }
    std::size_t services(Host& host) { return host.servicesOfClass(card_driver::kServiceClass).size(); }
};

// Waiting for the data sheet's time is no misuse, but does not program the row.
TEST_F(FaultTest, SlowProgrammingOutlastsTheDataSheetTime) {
    card().inject({.kind = FaultKind::slowProgramming, .factor = 3});
    probe_->enterProgramming();
    for (const uint64_t microseconds : {14000U, 41980U, 42000U}) {
        probe_->programUserCode(0x12345678, microseconds);
        EXPECT_EQ(card().identity() == 0x12345678, microseconds == 42000) << microseconds;
    }
    EXPECT_EQ(misuses(), std::vector<Misuse>{});
    probe_->programUserCode(0x12345678, 13000);
    EXPECT_EQ(misuses(), std::vector<Misuse>{Misuse::shortWait});
}

TEST_F(FaultTest, StrikesAtTheChosenMoment) {
    const auto inject = [&](Fault::When when, uint64_t count) {
        card().clearFaults();
        card().inject({.kind = FaultKind::tdoStuckLow, .when = when, .count = count});
    };
    inject(Fault::When::atAccess, machine_.accesses() + 3);
    for (const bool high : {true, true, false, false}) {
        EXPECT_EQ(probe_->tdo(), high);
    }
    inject(Fault::When::atClock, chain().state().clocks + 2);
    for (const bool high : {true, false, false}) {
        probe_->clock(false);
        EXPECT_EQ(probe_->tdo(), high);
    }
    for (const Fault::When passed : {Fault::When::atOnce, Fault::When::atAccess, Fault::When::atClock}) {
        inject(passed, 1);
        EXPECT_FALSE(probe_->tdo());
    }
    // A waiting fault is kept when another strikes, and a power cycle resets the clock count.
    inject(Fault::When::atClock, chain().state().clocks + 10);
    card().inject({.kind = FaultKind::userCodeNotTaken, .when = Fault::When::atAccess, .count = 1});
    machine_.powerOff();
    machine_.powerOn();
    probe_->reset();
    EXPECT_TRUE(probe_->tdo());
    for (uint64_t clocks = chain().state().clocks; clocks < card().faults().all()[0].count; ++clocks) {
        probe_->clock(false);
    }
    EXPECT_FALSE(probe_->tdo());
}

TEST_F(FaultTest, PowerLossDamagesTheRowBeingWrittenAndStrikesOnce) {
    card().cells().erase();
    probe_->enterProgramming();
    probe_->programPage(3, content(0));
    probe_->address(4 * 0x20);
    probe_->scanPage(Prom::pageDataInstruction, content(0));
    probe_->instruction(Prom::programInstruction);
    machine_.card(2).inject(
        {.kind = FaultKind::powerLost, .when = Fault::When::atAccess, .count = machine_.accesses() + 30000});
    probe_->wait(14000);
    EXPECT_FALSE(machine_.isOn());
    EXPECT_EQ(probe_->read(0x10), 0xFFFFFFFFU);
    EXPECT_EQ(services(host_), 0U);
    EXPECT_EQ(cellsOf(3), content(0));
    EXPECT_NE(cellsOf(4), content(0));
    EXPECT_NE(cellsOf(4), content(0xFF));
    EXPECT_EQ(misuses(), std::vector<Misuse>{});
    for (int time = 0; time < 2; ++time) {
        machine_.powerOff();
        machine_.powerOn();
        EXPECT_TRUE(machine_.isOn());
    }
    EXPECT_EQ(services(host_), 3U) << "the first card's PROM holds no configuration";
}

// Sleep takes the power away from every card, which is asked of the machine by one of them.
TEST_F(FaultTest, SleepInterruptsEveryCardUnlessItIsPrevented) {
    for (const bool isPrevented : {true, false}) {
        card().clearFaults();
        card().cells().erase();
        isPrevented ? machine_.preventSleep() : machine_.allowSleep();
        probe_->reset();
        probe_->enterProgramming();
        probe_->address(4 * 0x20);
        probe_->scanPage(Prom::pageDataInstruction, content(0));
        probe_->instruction(Prom::programInstruction);
        const uint64_t moment = machine_.accesses() + 30000;
        machine_.card(2).inject(
            {.kind = FaultKind::machineSleeps, .when = Fault::When::atAccess, .count = moment});
        card().inject(
            {.kind = FaultKind::userCodeNotTaken, .when = Fault::When::atAccess, .count = moment + 1});
        probe_->wait(14000);
        EXPECT_EQ(cellsOf(4) == content(0), isPrevented);
        EXPECT_EQ(chain().prom().state().programmingMode, isPrevented);
        EXPECT_EQ(probe_->read(0x10), isPrevented ? 10U : 0xFFFFFFFFU);
        EXPECT_TRUE(machine_.isOn());
        EXPECT_EQ(services(host_), isPrevented ? 4U : 3U) << "the first card's PROM holds no configuration";
        EXPECT_EQ(machine_.card(2).faults().all().at(0).prevented, isPrevented);
        EXPECT_TRUE(card().faults().hasStruck(FaultKind::userCodeNotTaken));
        EXPECT_EQ(misuses(), std::vector<Misuse>{});
        machine_.allowSleep();
        probe_->wait(1);
        EXPECT_EQ(machine_.card(2).faults().all().at(0).prevented, isPrevented) << "it does not ask again";
        machine_.card(2).clearFaults();
    }
}

// A program that has opened a card keeps its service when the card vanishes.
TEST_F(FaultTest, VanishedCardKeepsItsPower) {
    probe_->enterProgramming();
    probe_->address(0x8000);
    probe_->userCode(0x12345678);
    probe_->instruction(Prom::programInstruction);
    card().inject({.kind = FaultKind::cardVanished});
    EXPECT_EQ(probe_->read(0x108), 0xFFFFFFFFU);
    EXPECT_EQ(services(host_), 4U);
    probe_->wait(14000);
    EXPECT_EQ(card().identity(), 0x12345678U);
    SimulatedHost next(machine_, {});
    EXPECT_EQ(services(next), 3U);
    machine_.powerOff();
    machine_.powerOn();
    EXPECT_EQ(services(next), 3U);
    EXPECT_EQ(probe_->read(0x10), 0xFFFFFFFFU);
    card().clearFaults();
    EXPECT_EQ(services(next), 4U);
    EXPECT_EQ(probe_->read(0x10), 10U);
}

}  // namespace simulator
