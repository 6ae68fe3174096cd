#include "simulator/guest/plugin/GuestBus.h"

#include <gtest/gtest.h>

#include "simulator/machine/DefaultMachine.h"
#include "tests/simulator/Probe.h"
#include "tests/support/ForwardingHost.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/TracingHost.h"

namespace simulator {

constexpr uint64_t kPlace = 0xFEBF4000;

// A guest's processor, which accesses the first card's memory and then has the bus told.
class GuestProcessor {
  public:
    GuestProcessor(GuestBus& bus, const std::filesystem::path& file) : bus_(bus), memory_(file) {}

    uint32_t load(uint32_t offset, uint64_t place = kPlace) {
        const uint32_t word = memory_.at(offset);
        tell(place, offset, 4, GuestAccess::load);
        return word;
    }
    // Whether it was a card's.
    bool store(uint32_t offset, uint32_t word, uint32_t bytes = 4, uint64_t place = kPlace) {
        memory_.put(offset, word);
        return tell(place, offset, bytes, GuestAccess::store);
    }
    bool finds(uint64_t place) { return bus_.cardAt(place, GuestAccess::load) != nullptr; }

  private:
    bool tell(uint64_t place, uint32_t offset, uint32_t bytes, GuestAccess access) {
        GuestCard* const card = bus_.cardAt(place + offset, access);
        if (card != nullptr) {
            bus_.accessed(*card, offset, bytes, access);
        }
        return card != nullptr;
    }

    GuestBus& bus_;
    CardMemory memory_;
};

// Does in the guest, too, what is done on a host, and expects the same words there.
class BothHost : public TracingHost {
  public:
    BothHost(Host& host, GuestProcessor& guest) : TracingHost(host), guest_(guest) {}

    uint32_t loadWord(const uint32_t* address) override {
        const uint32_t word = TracingHost::loadWord(address);
        EXPECT_EQ(guest_.load(offsetOf(address)), word) << "at " << offsetOf(address);
        return word;
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        TracingHost::storeWord(address, word);
        EXPECT_TRUE(guest_.store(offsetOf(address), word));
    }

  private:
    GuestProcessor& guest_;
};

class GuestBusTest : public testing::Test {
  protected:
    GuestBusTest() {
        const auto made = MachineDirectory::create(machineFolder_);
        addDefaultCards(made->machine());
        made->save();
    }
    void inject(const Fault& fault) {
        const auto machine = MachineDirectory::open(machineFolder_, MachineDirectory::OnOpening::leaveAsItIs);
        machine->machine().card(0).inject(fault);
        machine->save();
    }
    void switchOn() {
        bus_ = std::make_unique<GuestBus>(machineFolder_, folder_.path());
        guest_ = std::make_unique<GuestProcessor>(*bus_, folder_.path() / "card-1");
    }
    std::string firstCardsReport() const { return bus_->report().substr(0, bus_->report().find('\n')); }

    TemporaryDirectory folder_;
    std::filesystem::path machineFolder_ = folder_.path() / "machine";
    std::unique_ptr<GuestBus> bus_;
    std::unique_ptr<GuestProcessor> guest_;
};

TEST_F(GuestBusTest, AnswersEveryAccessAsTheMachineDoes) {
    switchOn();
    Machine machine;
    addDefaultCards(machine);
    machine.powerOn();
    SimulatedHost simulated(machine, {});
    BothHost both(simulated, *guest_);
    EXPECT_TRUE(guest_->store(GuestBus::kMark, 1));
    EXPECT_EQ(guest_->load(GuestBus::kMark), 0U);
    Probe probe(both);
    probe.reset();
    probe.enter(Probe::Scan::data);
    for (int bit = 0; bit < 64; ++bit) {
        probe.clock(false, bit % 3 == 0);
        probe.tdo();
    }
    EXPECT_EQ(firstCardsReport(), "Card 1: " + both.summary() + ", 1 stray");
}

TEST_F(GuestBusTest, LearnsFromAStoreWhereACardIs) {
    switchOn();
    EXPECT_FALSE(guest_->finds(kPlace));
    EXPECT_FALSE(guest_->store(0x100, 0));  // what is there already; it may be anywhere
    EXPECT_TRUE(guest_->store(0x100, 0x40));
    EXPECT_EQ(guest_->load(0x100), 0x40U);
    EXPECT_FALSE(guest_->store(0x100, 0x40, 4, kPlace + 0x1000));
    EXPECT_TRUE(guest_->store(0x100, 0, 4, kPlace + 0x1000));
    EXPECT_FALSE(guest_->finds(kPlace));
    EXPECT_TRUE(guest_->finds(kPlace + 0x1000));
}

TEST_F(GuestBusTest, UndoesStrayAccessesAndNotesThem) {
    switchOn();
    guest_->store(GuestBus::kMark, 1);
    const uint32_t identification = guest_->load(0);
    guest_->store(0x000, 0x12345678, 2);
    guest_->store(0x000, 0x12345678);
    guest_->store(0x200, 0x12345678);
    EXPECT_EQ(guest_->load(0x000), identification);
    EXPECT_EQ(guest_->load(0x200), 0U);
    bus_->switchOff();
    const auto machine = MachineDirectory::view(machineFolder_);
    EXPECT_FALSE(machine->machine().isOn());
    EXPECT_EQ(machine->machine().accesses(), 3U);
    ASSERT_EQ(machine->machine().ledger().entries().size(), 2U);
    EXPECT_EQ(machine->machine().ledger().entries()[1].times, 2U);
}

TEST_F(GuestBusTest, ShowsFromTheNextAccessOnWhatTimeBrings) {
    inject({.kind = FaultKind::cardVanished, .when = Fault::When::atAccess, .count = 3});
    switchOn();
    guest_->store(GuestBus::kMark, 1);
    for (int access = 1; access <= 3; ++access) {
        EXPECT_EQ(guest_->load(0x008), 0x21U) << access;
    }
    EXPECT_EQ(guest_->load(0x008), 0xFFFFFFFFU);
}

}  // namespace simulator
