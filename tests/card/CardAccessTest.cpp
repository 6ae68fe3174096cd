#include "card/CardAccess.h"

#include <gtest/gtest.h>

#include "platform/LiveObjects.h"
#include "tests/support/FakeHost.h"

namespace {

// After each test everything from the registry has been released.
class CardAccessTest : public testing::Test {
  protected:
    void TearDown() override { EXPECT_EQ(CountLiveObjects(), LiveObjects()); }

    FakeHost host_;
};

TEST_F(CardAccessTest, OpensTheCardAtItsIndexAmongAllServices) {
    host_.cards = {{}, {.opens = false}, {.name = "Third"}};
    EXPECT_EQ(OpenCard(1, nullptr, nullptr, nullptr, nullptr), 0u);
    EXPECT_EQ(OpenCard(3, nullptr, nullptr, nullptr, nullptr), 0u);
    EXPECT_EQ(OpenCard(-1, nullptr, nullptr, nullptr, nullptr), 0u);
    const uint32_t connection = OpenCard(2, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(host_.openConnections.at(connection), 2u);
    CloseCard(connection);
    EXPECT_TRUE(host_.openConnections.empty());
}

TEST_F(CardAccessTest, MapsTheRequestedRangesAndClosesIfOneFails) {
    struct Case {
        std::set<uint32_t> mappable;
        bool wantsRange1;
        bool opens;
    };
    for (const Case& c :
         {Case{{0, 1}, true, true}, Case{{0}, false, true}, Case{{0}, true, false}, Case{{1}, true, false}}) {
        host_.cards = {{.mappableRanges = c.mappable}};
        void* base0 = nullptr;
        void* base1 = nullptr;
        uint32_t size0 = 0;
        uint32_t size1 = 0;
        const uint32_t connection = OpenCard(0, &base0, &size0, c.wantsRange1 ? &base1 : nullptr, &size1);
        EXPECT_EQ(connection != 0, c.opens);
        EXPECT_EQ(host_.openConnections.size(), c.opens ? 1u : 0u);
        // If range 0 fails, range 1 is not tried. If range 1 fails, range 0 keeps its stale address.
        EXPECT_EQ(base0 != nullptr, c.mappable.contains(0));
        EXPECT_EQ(base1 != nullptr, c.opens && c.wantsRange1);
        EXPECT_EQ(size0, base0 != nullptr ? sizeof host_.window : 0u);
        EXPECT_EQ(size1, base1 != nullptr ? FakeHost::range1Bytes : 0u);
        CloseCard(connection);
    }
}

TEST_F(CardAccessTest, CopiesBothTextsOrNeither) {
    host_.cards = {{.name = std::string(256, 'n'), .location = std::string(256, 'l')}, {.answers = false}};
    char name[256] = "old";
    char location[256] = "old";
    EXPECT_EQ(GetCardInformation(OpenCard(1, nullptr, nullptr, nullptr, nullptr), name, location), 0);
    EXPECT_STREQ(name, "old");
    EXPECT_STREQ(location, "old");
    // Texts that fill their half of the reply without a terminator do not overflow the callers' buffers.
    EXPECT_EQ(GetCardInformation(OpenCard(0, nullptr, nullptr, nullptr, nullptr), name, location), 1);
    EXPECT_EQ(name, std::string(255, 'n'));
    EXPECT_EQ(location, std::string(255, 'l'));
}

}  // namespace
