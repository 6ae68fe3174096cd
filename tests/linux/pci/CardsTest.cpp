#include "linux/pci/Cards.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

#include "tests/support/MadeUpBus.h"

namespace {

using namespace pci;

const std::string kCard = "0000:05:01.0";
const std::string kOther = "0000:05:02.0";
const std::string kGone =
    "The card could not be read. Check that it is still in the computer, then try again.";

CardRules rulesOf(const std::string& text) {
    CardRules rules;
    parseCardRules(text, "cards.conf", rules);
    EXPECT_TRUE(rules.complaints.empty());
    return rules;
}

class CardsTest : public testing::Test {
  protected:
    std::string refusal(const std::string& client = "client") const {
        const auto cards = cards_.list(client);
        return cards.empty() ? "no card" : cards[0].refusal;
    }
    std::string failure(uint32_t memoryRange = 0, const std::string& address = kCard,
                        const std::string& client = "client") const {
        try {
            static_cast<void>(cards_.openRange(client, address, memoryRange));
            return "";
        } catch (const files::UserError& error) {
            return error.what();
        }
    }

    MadeUpBus bus_;
    Cards cards_{bus_.path(), rulesOf("1af4:1110 \"VornMX-B\"\n1af4:2220 simulated \"Guest's card\"\n")};
};

TEST_F(CardsTest, AreListedInTheOrderOfTheirAddressesWithTheirPlaces) {
    bus_.add("10000:00:00.0", {MadeUpBus::range(0xF3000000, 0x1000)});
    bus_.add("8000:0a:00.1", {MadeUpBus::range(0xF2000000, 0x1000)});
    bus_.add(kCard, {MadeUpBus::range(0xF1000000, 0x1000)});
    bus_.add("0000:00:00.0", {MadeUpBus::range(0xF0000000, 0x1000)}, "8086");
    bus_.addSlot("7", "0000:0b:00");
    bus_.addSlot("3\xFF\n", "8000:0a:00");
    const auto cards = cards_.list("client");
    ASSERT_EQ(cards.size(), 3u);
    EXPECT_EQ(cards[0].address, kCard);
    EXPECT_EQ(cards[0].name, "VornMX-B");
    EXPECT_EQ(cards[0].location, kCard);
    EXPECT_EQ(cards[1].location, "PCI slot 3??");
    EXPECT_EQ(cards[2].address, "10000:00:00.0");
    for (const FoundCard& card : cards) {
        EXPECT_EQ(card.refusal, "");
        EXPECT_FALSE(card.isSimulated);
    }
}

TEST_F(CardsTest, AreRefusedIfTheirRangesCannotBeMappedSafely) {
    const std::string shared =
        "The card's registers are in the same page of memory as those of the device 0000:05:02.0. Put the "
        "card into another slot, or take the other device out.";
    const std::string unknown =
        "It is unknown whether another device has registers in the same page of memory. Try again.";
    const std::string noWindow =
        "The card's memory range is missing or smaller than 512 bytes. Check the line that names the card in "
        "the configuration.";
    const std::string notPlaced =
        "The computer has not assigned usable addresses to the card's registers. Put the card into another "
        "slot.";
    const std::string none = MadeUpBus::none();
    const std::string registers = MadeUpBus::range(0xF1000000, 0x200);
    const std::string second = MadeUpBus::range(0xF1000200, 0x200);
    const std::string far = MadeUpBus::range(0xF1002000, 0x200);
    struct Case {
        const char* what;
        std::vector<std::string> card;
        std::vector<std::string> other;
        std::string refusal;
    };
    const std::vector<Case> cases{
        {"nothing", {registers}, {}, ""},
        {"no memory", {MadeUpBus::range(0xC000, 0x200, 0x40101)}, {}, noWindow},
        {"little memory", {MadeUpBus::range(0xF1000000, 0x100)}, {}, noWindow},
        {"unset", {MadeUpBus::range(0xF1000000, 0x200, 0x20040200)}, {}, notPlaced},
        {"at zero", {MadeUpBus::range(0, 0x200)}, {}, notPlaced},
        {"across pages", {MadeUpBus::range(0xF1000F00, 0x200)}, {}, notPlaced},
        {"backwards", {"0x2 0x1 0x200\n"}, {}, kGone},
        {"huge", {registers + std::string(5000, '\n')}, {}, kGone},
        {"a neighbour", {registers}, {none, MadeUpBus::range(0xF1000FF0, 0x10)}, shared},
        {"a neighbour's ROM", {registers}, {none, none, none, none, none, none, second}, shared},
        {"a neighbour of the second range", {registers, far}, {MadeUpBus::range(0xF1002800, 0x10)}, shared},
        {"a neighbour in the next page", {registers}, {MadeUpBus::range(0xF1001000, 0x200)}, ""},
        {"a neighbour without a place", {registers}, {MadeUpBus::range(0xF1000800, 0x200, 0x20040200)}, ""},
        {"a neighbour that cannot be understood", {registers}, {"0xF1000200 0xF10003FF\n"}, unknown},
        {"the bridge above", {registers}, {none, none, none, none, none, none, none, registers}, ""},
        {"its own ranges in one page", {registers, second}, {}, ""},
    };
    for (const Case& each : cases) {
        bus_.add(kCard, each.card);
        bus_.add(kOther, each.other);
        EXPECT_EQ(refusal(), each.refusal) << each.what;
        // Whoever claims and opens all the same gets no further.
        cards_.claim("client");
        EXPECT_EQ(failure().empty(), each.refusal.empty()) << each.what;
        cards_.release("client");
    }
}

TEST_F(CardsTest, AreRefusedWhileTheKernelKeepsThem) {
    const std::string lockedDown =
        "The kernel is locked down, so programs cannot reach the card's registers. Switch Secure Boot off in "
        "the computer's firmware settings until the card has been updated.";
    bus_.add(kCard, {MadeUpBus::range(0xF1000000, 0x200)});
    cards_.claim("client");
    for (const std::string states :
         {"none [integrity] confidentiality\n", "none integrity [confidentiality]\n"}) {
        bus_.lockDown(states);
        EXPECT_EQ(refusal(), lockedDown);
        EXPECT_EQ(failure(), lockedDown);
    }
    bus_.lockDown("[none] integrity confidentiality\n");
    EXPECT_EQ(failure(), "");
    bus_.setAttribute(kCard, "class", "0x060400\n");
    EXPECT_EQ(refusal(),
              "This is a bridge to other devices, not a card. Correct the line that names it in the "
              "configuration.");
    EXPECT_EQ(failure(), refusal());
    bus_.setAttribute(kCard, "class", "0x068000\n");  // a bridge in name only
    EXPECT_EQ(failure(), "");
    bus_.bind(kCard, "snd_card");
    EXPECT_EQ(refusal(), "The driver \"snd_card\" uses the card. Unload that driver, then try again.");
    EXPECT_EQ(failure(), refusal());
    std::filesystem::remove(bus_.device(kCard) / "driver");
    bus_.setAttribute(kCard, "driver_override", "vfio-pci\n");
    EXPECT_EQ(
        refusal(),
        "The card is kept for the driver \"vfio-pci\". Clear the card's driver_override, then try again.");
    EXPECT_EQ(failure(), refusal());
    cards_.release("client");
    EXPECT_EQ(bus_.attribute(kCard, "driver_override"), "vfio-pci\n");
}

TEST_F(CardsTest, OpenTheRangesThatTheRuleNamesElseThoseInOrder) {
    // The second is the upper half of the first.
    bus_.add(kCard, {MadeUpBus::range(0x8F000000000, 0x100000000, 0x14220C), MadeUpBus::none(),
                     MadeUpBus::range(0xC000, 0x200, 0x40101), MadeUpBus::range(0xF1000A00, 0x200),
                     MadeUpBus::range(0xF1000C00, 0x100)});
    struct Case {
        std::string options;
        uint32_t memoryRange;
        char bar;  // '-' for none
        uint32_t offsetInPage;
        uint32_t bytes;
    };
    const std::vector<Case> cases{{"", 0, '0', 0, 0x10000000}, {"", 1, '3', 0xA00, 0x200},
                                  {"", 2, '-', 0, 0},          {"range0=3", 0, '3', 0xA00, 0x200},
                                  {"range1=4", 1, '-', 0, 0},  {"range1=2", 0, '0', 0, 0x10000000},
                                  {"range1=1", 1, '-', 0, 0},  {"range1=0", 1, '0', 0, 0x10000000}};
    for (const Case& each : cases) {
        Cards cards(bus_.path(), rulesOf("1af4:1110 " + each.options + " \"A card\"\n"));
        cards.claim("client");
        char bar = '-';
        try {
            const OpenedRange range = cards.openRange("client", kCard, each.memoryRange);
            EXPECT_EQ(pread(range.file.descriptor(), &bar, 1, 0), 1);
            EXPECT_EQ(fcntl(range.file.descriptor(), F_GETFL) & O_SYNC, O_SYNC) << "registers are not cached";
            EXPECT_EQ(range.offsetInPage, each.offsetInPage) << each.options;
            EXPECT_EQ(range.bytes, each.bytes) << each.options;
        } catch (const files::UserError&) {
        }
        EXPECT_EQ(bar, each.bar) << each.options << " range " << each.memoryRange;
    }
}

TEST_F(CardsTest, BelongToOneClientAtATimeAndAreLeftAsTheyWere) {
    const auto state = [&](const std::string& address) {
        return std::to_string(bus_.command(address)) + "\n" + bus_.attribute(address, "enable") +
               bus_.attribute(address, "power/control") + bus_.attribute(address, "driver_override");
    };
    bus_.add(kCard, {MadeUpBus::range(0xF1000000, 0x200)});
    bus_.setCommand(kCard, 0x144);
    bus_.add(kOther, {MadeUpBus::range(0xF2000000, 0x200)});
    bus_.setCommand(kOther, 0x42);
    bus_.setAttribute(kOther, "enable", "1\n");
    bus_.setAttribute(kOther, "power/control", "on\n");
    bus_.setAttribute(kOther, "driver_override", "vupdater 0040 1 on\n");  // left by a killed program
    EXPECT_EQ(failure(), "The card was not claimed. Quit the program, then start it again.");
    cards_.claim("client");
    cards_.claim("other");
    EXPECT_EQ(state(kCard), std::to_string(0x142) + "\n1\non\nvupdater 0144 0 auto\n");
    EXPECT_EQ(state(kOther), std::to_string(0x42) + "\n1\non\nvupdater 0040 1 on\n");
    EXPECT_EQ(refusal("client"), "");
    EXPECT_EQ(failure(), "");
    EXPECT_EQ(refusal("other"), "Another program is using the card. Quit that program, then try again.");
    EXPECT_NE(failure(0, kCard, "other"), "");
    EXPECT_NE(failure(0, "../../../slots"), "");
    cards_.release("other");
    EXPECT_EQ(failure(), "");

    bus_.setCommand(kCard, 0x143);  // as the kernel does for a device with ports
    cards_.release("client");
    EXPECT_NE(failure(), "");
    EXPECT_EQ(state(kCard), std::to_string(0x140) + "\n0\nauto\n\n");
    EXPECT_EQ(state(kOther), std::to_string(0x40) + "\n1\non\n\n");
    cards_.claim("other");
    EXPECT_EQ(failure(0, kCard, "other"), "");
}

TEST_F(CardsTest, AreNotClaimedIfTheirConfigurationCannotBeChanged) {
    bus_.add(kCard, {MadeUpBus::range(0xF1000000, 0x200)});
    // A device that no longer answers, and a kernel that takes no more than four bytes.
    bus_.setCommand(kCard, 0xFFFF);
    EXPECT_EQ(cards_.claim("client")[kCard], kGone);
    EXPECT_EQ(bus_.attribute(kCard, "power/control"), "auto\n");
    EXPECT_EQ(refusal(), "") << "it may only be asleep";
    bus_.setAttribute(kCard, "power/runtime_status", "active\n");
    EXPECT_EQ(refusal(), kGone);

    rlimit earlier{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &earlier), 0);
    const rlimit little{.rlim_cur = 4, .rlim_max = earlier.rlim_max};
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    bus_.setCommand(kCard, 0x0004);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &little), 0);
    auto refusals = cards_.claim("client");
    setrlimit(RLIMIT_FSIZE, &earlier);
    EXPECT_EQ(refusals[kCard],
              "Drivers cannot be kept away from the card. Switch the computer off and on, then try again.");
    EXPECT_EQ(bus_.command(kCard), 0x0004);
    EXPECT_NE(failure(), "");
    // What failed once is tried again.
    bus_.setAttribute(kCard, "driver_override", "(null)\n");
    EXPECT_EQ(refusal(), "");
    cards_.claim("client");
    EXPECT_EQ(failure(), "");
    bus_.setCommand(kCard, 0x0006);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &little), 0);
    EXPECT_EQ(
        failure(),
        "The card's bus mastering cannot be switched off. Switch the computer off and on, then try again.");
    setrlimit(RLIMIT_FSIZE, &earlier);
    signal(SIGXFSZ, handler);
    bus_.setCommand(kCard, 0xFFFF);
    EXPECT_NE(failure(), "");
}

TEST_F(CardsTest, SimulatedOnesGiveWayToRealOnes) {
    bus_.add(kCard, {MadeUpBus::range(0xF1000000, 0x200)}, "1af4", "2220");
    ASSERT_EQ(cards_.list("client").size(), 1u);
    EXPECT_TRUE(cards_.list("client")[0].isSimulated);
    cards_.claim("client");
    EXPECT_EQ(failure(), "");
    cards_.release("client");
    bus_.add(kOther, {MadeUpBus::range(0xF2000000, 0x200)});
    EXPECT_EQ(
        refusal(),
        "This card is simulated, but the computer also has a real one. Remove the line for one of them from "
        "the configuration.");
    cards_.claim("client");
    EXPECT_NE(failure(), "");
    EXPECT_EQ(failure(0, kOther), "");
}

}  // namespace
