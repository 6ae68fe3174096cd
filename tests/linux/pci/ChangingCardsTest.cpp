#include <gtest/gtest.h>

#include <optional>

#include "linux/pci/Cards.h"
#include "tests/support/MadeUpBus.h"

namespace {

using namespace pci;

const std::string kCard = "0000:05:01.0";
const std::string kOther = "0000:05:02.0";

// Devices that change while a card is claimed or opened: a file that this writes is also one of those that
// describe a device.
class ChangingCardsTest : public testing::Test {
  protected:
    ChangingCardsTest() {
        parseCardRules("1af4:1110 \"Card\"\n1af4:1130 simulated \"Guest's card\"\n", "cards.conf", rules_);
    }
    void makeConfigurationOf(const std::string& address, const std::filesystem::path& file) const {
        std::filesystem::remove(bus_.device(address) / "config");
        std::filesystem::create_hard_link(file, bus_.device(address) / "config");
    }
    static std::string refusal(const Cards& cards) {
        const auto listed = cards.list("client");
        return listed.empty() ? "no card" : listed[0].refusal;
    }
    static std::string failure(const Cards& cards, const std::string& address) {
        try {
            static_cast<void>(cards.openRange("client", address, 0));
            return "";
        } catch (const files::UserError& error) {
            return error.what();
        }
    }

    MadeUpBus bus_;
    CardRules rules_;
};

TEST_F(ChangingCardsTest, AreLookedAtAgainWhenARangeIsOpened) {
    bus_.add(kCard, {MadeUpBus::range(0xF1000000, 0x200)});
    Cards cards(bus_.path(), rules_);
    cards.claim("client");
    bus_.setCommand(kCard, 0x0006);
    EXPECT_EQ(failure(cards, kCard), "");
    EXPECT_EQ(bus_.command(kCard), 0x0002);
    bus_.add(kOther, {MadeUpBus::range(0xF1000800, 0x200)});
    EXPECT_NE(failure(cards, kCard).find(kOther), std::string::npos);
    bus_.remove(kOther);
    const std::filesystem::path devices = bus_.device(kCard).parent_path();
    std::filesystem::rename(devices, bus_.path() / "away");
    EXPECT_EQ(failure(cards, kCard),
              "It is unknown whether another device has registers in the same page of memory. Try again.");
    std::filesystem::rename(bus_.path() / "away", devices);
    EXPECT_EQ(failure(cards, kCard), "");
    std::optional<OpenedRange> opened = cards.openRange("client", kCard, 0);
    std::filesystem::remove(bus_.device(kCard) / "resource0");
    EXPECT_EQ(refusal(cards), "The card's registers cannot be reached: No such file or directory.");
    EXPECT_EQ(failure(cards, kCard), refusal(cards));

    // Another card in the place of the first: the claim was not for that one, whose mappings stay.
    bus_.remove(kCard);
    EXPECT_TRUE(cards.use("client").isGoingOn);
    opened.reset();
    EXPECT_FALSE(cards.use("client").isGoingOn);
    bus_.add(kCard, {MadeUpBus::range(0xF1000000, 0x200)});
    EXPECT_NE(failure(cards, kCard), "");
    cards.claim("client");
    EXPECT_EQ(failure(cards, kCard), "");
    bus_.setAttribute(kCard, "device", "0x1111\n");
    EXPECT_NE(failure(cards, kCard), "");
    bus_.remove(kCard);
    EXPECT_NE(failure(cards, kCard), "");
    cards.release("client");
    EXPECT_EQ(refusal(cards), "no card");
}

TEST_F(ChangingCardsTest, AreNotOpenedIfTheirRangesMoveMeanwhile) {
    // The command register is in the first digits of the ports' address: 6 with bus mastering on, else 2.
    bus_.add(kCard,
             {MadeUpBus::range(0x0060000000000000, 0x100, 0x101), MadeUpBus::range(0xF1000000, 0x200)});
    makeConfigurationOf(kCard, bus_.device(kCard) / "resource");
    const std::string before = bus_.attribute(kCard, "config");
    Cards cards(bus_.path(), rules_);
    EXPECT_TRUE(cards.claim("client").empty());
    EXPECT_EQ(failure(cards, kCard), "");
    bus_.setAttribute(kCard, "config", before);
    EXPECT_EQ(failure(cards, kCard),
              "The card could not be read. Check that it is still in the computer, then try again.");
    EXPECT_EQ(failure(cards, kCard), "");
}

TEST_F(ChangingCardsTest, AreNotClaimedIfTheyBecomeSimulatedBesideARealOne) {
    bus_.add(kCard, {MadeUpBus::range(0xF1000000, 0x200)});
    bus_.add(kOther, {MadeUpBus::range(0xF2000000, 0x200)});
    // The command register is in the identifier: 0x1130 with memory decoding on.
    makeConfigurationOf(kCard, bus_.device(kOther) / "device");
    Cards cards(bus_.path(), rules_);
    EXPECT_TRUE(cards.claim("client").empty());
    EXPECT_EQ(bus_.attribute(kOther, "device"), "0x1130\n");
    EXPECT_EQ(failure(cards, kCard), "");
    EXPECT_EQ(failure(cards, kOther), "The card was not claimed. Quit the program, then start it again.");
}

}  // namespace
