// Simulated cards on this computer's bus, as far as the host can tell: a made-up /sys, the agent's own search
// in it, and a trap at every load and store.

#include <gtest/gtest.h>
#include <regex>
#include <sstream>

#include "card/CardAccess.h"
#include "card/Registers.h"
#include "hw/ApplicationHooks.h"
#include "hw/PromOperations.h"
#include "images/Listing.h"
#include "images/ListingReader.h"
#include "images/prom/FirmwareImage.h"
#include "linux/host/LinuxHost.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/machine/DefaultMachine.h"
#include "tests/linux/host/TrappedRegisters.h"
#include "tests/support/LocalAgent.h"
#include "tests/support/MadeUpBus.h"
#include "tests/support/TracingHost.h"

uint32_t gSerialNumber = 0;
void AllowNextEvent() {}
void UpdateProgressBar(uint32_t /*bytes*/) {}
bool ShowAlert(const char* title, const char* message) {
    ADD_FAILURE() << title << ": " << message;
    return true;
}

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
// The trap takes the signal.
extern "C" const char* __asan_default_options() {
    return "handle_segv=0";
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace {

constexpr uint32_t kWindowBytes = 0x200;
constexpr uint32_t kPageBytes = 0x1000;

struct BusCard {
    const char* address;
    uint32_t window;         // where its registers begin in the computer's memory
    const char* identifier;  // as in the rules
};
constexpr std::size_t kPlaceCharacters = 10;  // of an address, without the function

// Windows at the beginning, within and at the end of a page.
constexpr BusCard kCards[] = {{"0000:05:01.0", 0xFEBF0000, "0001"},
                              {"0000:05:02.0", 0xFEBF1200, "0002"},
                              {"0000:05:03.0", 0xFEBF2E00, "0003"},
                              {"0000:06:01.0", 0xFEBF3200, "0004"}};
constexpr char kRules[] =
    "1af4:0001 simulated \"VornMX-B\"\n1af4:0002 simulated \"Vorn K40\"\n"
    "1af4:0003 simulated \"Vorn DX8\"\n1af4:0004 simulated \"Vorn DX8-XS\"\n";
constexpr std::size_t kCardToWrite = 1;  // in a window that begins within a page, and of flavour W

pci::CardRules rules() {
    pci::CardRules rules;
    pci::parseCardRules(kRules, "test.conf", rules);
    return rules;
}

// Replaces the pages that the host maps with the trap, which answers where the card's window is in them.
class TrappingHost final : public ForwardingHost {
  public:
    TrappingHost(Host& host, Host& bus) : ForwardingHost(host), bus_(bus), trap_(bus) {}

    std::optional<uint32_t> openService(uint64_t service) override {
        const auto services = servicesOfClass(card_driver::kServiceClass);
        card_ = static_cast<std::size_t>(std::ranges::find(services, service) - services.begin());
        onBus_ = bus_.openService(bus_.servicesOfClass(card_driver::kServiceClass).at(card_)).value();
        return ForwardingHost::openService(service);
    }
    std::optional<MappedRange> mapMemory(uint32_t connection, uint32_t memoryType) override {
        const auto range = ForwardingHost::mapMemory(connection, memoryType);
        if (range) {
            auto* const base = static_cast<uint8_t*>(range->base);
            trap_.watch(base - reinterpret_cast<uintptr_t>(base) % kPageBytes,
                        kCards[card_].window % kPageBytes, kWindowBytes,
                        bus_.mapMemory(onBus_, memoryType).value().base);
        }
        return range;
    }
    bool closeConnection(uint32_t connection) override {
        trap_.forget();
        bus_.closeConnection(onBus_);
        return ForwardingHost::closeConnection(connection);
    }
    const TrappedRegisters& trap() const { return trap_; }

  private:
    Host& bus_;
    TrappedRegisters trap_;
    std::size_t card_ = 0;
    uint32_t onBus_ = 0;
};

// Erasing takes 45 million reads, which a trap would make last for minutes, so the cells are erased already.
std::vector<uint8_t> twoPageImage() {
    std::vector<uint8_t> content(std::size_t{2} * simulator::kPageBytes);
    content[0] = 0x5A;
    const std::string listing = images::listingOf(images::makeFirmwareImage(content));
    return images::assemble(
        std::regex_replace(listing, std::regex("XRUNTEST 15000000\n.*XSIR.*"), "XRUNTEST 0"));
}

struct Work {
    simulator::Machine machine;

    Work() {
        simulator::addDefaultCards(machine);
        machine.powerOn();
        auto& cells = machine.card(kCardToWrite).cells();
        const uint32_t identity = cells.userCode();
        cells.erase();
        cells.setUserCode(identity);
    }

    // Reads every card of the installed host, writes to one of them, and tells what came of it.
    std::string run() {
        std::ostringstream seen;
        seen << std::hex;
        const auto cards = static_cast<int>(GetNumberOfCardsInstalled());
        for (int card = 0; card < cards; ++card) {
            void* base = nullptr;
            uint32_t bytes = 0;
            const uint32_t connection = OpenCard(card, &base, &bytes, nullptr, nullptr);
            char name[kCardTextBytes] = "";
            char location[kCardTextBytes] = "";
            EXPECT_NE(GetCardInformation(connection, name, location), 0);
            gpRegisters = static_cast<uint32_t*>(base);
            gbSwap = 0;
            gbSwap = (MacReadULONG(RegisterAt(kByteSwapIDRegister)) & 0xFFFF) == kByteSwapID ? 0 : 1;
            seen << name << ", " << location << ", " << bytes << (gbSwap == 0 ? ", M, " : ", W, ")
                 << MacReadULONG(RegisterAt(kDeviceIDRegister)) << ", " << GetSerialNumber(&gSerialNumber)
                 << ", " << gSerialNumber << '\n';
            if (card == kCardToWrite) {
                auto image = twoPageImage();
                seen << ProgramConfigProm(image.data(), static_cast<uint32_t>(image.size())) << '\n';
            }
            CloseCard(connection);
        }
        gpRegisters = nullptr;
        return seen.str();
    }
};

class TrappedCardsTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!TrappedRegisters::kIsPossible) {
            GTEST_SKIP() << "The trap cannot decode this processor's instructions.";
        }
        for (const BusCard& card : kCards) {
            sys_.add(card.address, {MadeUpBus::range(card.window, kWindowBytes)}, "1af4", card.identifier);
            sys_.addSlot(std::to_string(&card - kCards + 1), std::string(card.address, kPlaceCharacters));
        }
    }

    MadeUpBus sys_;
    LocalAgent agent_{sys_.path(), rules()};
};

TEST_F(TrappedCardsTest, AnswerAndTakeFirmwareAsOnTheSimulatedBus) {
    Work direct;
    simulator::SimulatedHost directHost(direct.machine, {});
    std::string expected;
    std::string digest;
    {
        TracingHost traced(directHost);
        expected = direct.run();
        digest = traced.summary();
    }
    EXPECT_EQ(expected,
              "VornMX-B, PCI slot 1, 200, M, 21, 0, 21307015\n"
              "Vorn K40, PCI slot 2, 200, W, 23, 0, 234130cc\n0\n"
              "Vorn DX8, PCI slot 3, 200, W, 24, 0, 24529539\n"
              "Vorn DX8-XS, PCI slot 4, 200, W, 25, 0, 7fffffff\n");

    Work trapped;
    simulator::SimulatedHost simulated(trapped.machine, {});
    TracingHost bus(simulated);
    int moments = 0;
    host::LinuxHost computer(agent_, {}, [&] { ++moments; });
    {
        TrappingHost host(computer, bus);
        EXPECT_EQ(trapped.run(), expected);
        EXPECT_EQ(host.trap().strayAccesses(), 0U);
    }
    EXPECT_EQ(bus.summary(), digest);
    EXPECT_GT(moments, 0) << "the program could draw meanwhile, and that cost no access";
    EXPECT_TRUE(trapped.machine.ledger().empty());
    const auto& cells = trapped.machine.card(kCardToWrite).cells();
    EXPECT_EQ(cells.pages()[0], 0x5A);
    EXPECT_TRUE(std::ranges::equal(cells.bytes(), direct.machine.card(kCardToWrite).cells().bytes()));
}

}  // namespace
