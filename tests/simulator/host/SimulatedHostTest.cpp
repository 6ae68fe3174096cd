#include "simulator/host/SimulatedHost.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <set>

#include "simulator/machine/DefaultMachine.h"

namespace simulator {

class SimulatedHostTest : public testing::Test {
  protected:
    SimulatedHostTest() {
        addDefaultCards(machine_);
        machine_.powerOn();
    }
    std::vector<uint64_t> services() { return host_.servicesOfClass("com_VornLabs_driver_VornMxDevice"); }
    uint32_t open(std::size_t index) { return host_.openService(services().at(index)).value(); }

    Machine machine_;
    SimulatedHost host_{machine_, {}};
};

TEST_F(SimulatedHostTest, RefusesWhatDoesNotExist) {
    std::array<uint8_t, 512> reply{};
    const uint32_t connection = open(1);
    EXPECT_TRUE(host_.servicesOfClass("com_VornLabs_driver_Other").empty());
    EXPECT_FALSE(host_.openService(0));
    EXPECT_FALSE(host_.openService(services().back() + 1));
    EXPECT_FALSE(host_.mapMemory(connection, 2));
    EXPECT_FALSE(host_.mapMemory(connection + 1, 0));
    EXPECT_FALSE(host_.callMethod(connection, 1, reply));
    EXPECT_FALSE(host_.callMethod(connection + 1, 0, reply));
    EXPECT_FALSE(host_.callMethod(connection, 0, std::span(reply).first(511)));
    EXPECT_EQ(reply, (std::array<uint8_t, 512>{}));
    EXPECT_EQ(host_.callMethod(connection, 0, reply), 512U);
    EXPECT_STREQ(reinterpret_cast<const char*>(reply.data() + 256), "PCI slot 2");
    machine_.powerOff();
    EXPECT_TRUE(services().empty());
    EXPECT_FALSE(host_.mapMemory(connection, 0));
    EXPECT_TRUE(host_.closeConnection(connection));
}

TEST_F(SimulatedHostTest, NeverReusesNumbersOrAddresses) {
    std::set<uint32_t> connections;
    std::set<void*> bases;
    for (int time = 0; time < 3; ++time) {
        const uint32_t connection = open(0);
        EXPECT_TRUE(connections.insert(connection).second);
        EXPECT_GT(connection, 0xFFFFU) << "card indices are small";
        for (const uint32_t memoryType : {0U, 1U}) {
            EXPECT_TRUE(bases.insert(host_.mapMemory(connection, memoryType).value().base).second);
        }
        EXPECT_TRUE(host_.closeConnection(connection));
        EXPECT_FALSE(host_.closeConnection(connection));
        EXPECT_FALSE(host_.closeConnection(0)) << "a card's index is not a connection";
    }
}

TEST_F(SimulatedHostTest, StrayAccessesReadOnesAndAreRecorded) {
    const uint32_t connection = open(0);
    const auto range = host_.mapMemory(connection, 0).value();
    auto* const base = static_cast<uint32_t*>(range.base);
    auto* const unaligned = reinterpret_cast<uint32_t*>(static_cast<char*>(range.base) + 2);
    for (const uint32_t* stray : {static_cast<uint32_t*>(nullptr), base + range.bytes / 4, unaligned}) {
        EXPECT_EQ(host_.loadWord(stray), 0xFFFFFFFFU);
    }
    EXPECT_EQ(host_.loadWord(base + 2), 0x21U);
    host_.closeConnection(connection);
    EXPECT_EQ(host_.loadWord(base), 0xFFFFFFFFU);
    host_.storeWord(base + 0x100 / 4, 0x40);
    EXPECT_EQ(machine_.card(0).chain().state().clocks, 0U);
    ASSERT_EQ(machine_.ledger().entries().size(), 2U);
    EXPECT_EQ(machine_.ledger().entries()[0].times, 3U);
    EXPECT_EQ(machine_.ledger().entries()[1].misuse, Misuse::strayAccess);
    EXPECT_EQ(machine_.accesses(), 1U);
}

TEST_F(SimulatedHostTest, OnlyTheLoginProcessShutsDown) {
    EXPECT_TRUE(host_.deliverShutDownEvent(0x140001));
    EXPECT_TRUE(machine_.isOn()) << "the Finder cannot shut down";
    EXPECT_TRUE(host_.deliverShutDownEvent(0x80001));
    EXPECT_FALSE(machine_.isOn());
}

TEST_F(SimulatedHostTest, RecordsWindowsAndChildrenThatAProgramLeaves) {
    const uint32_t connection = open(0);
    host_.mapMemory(connection, 0);
    host_.programEnded();
    ASSERT_EQ(machine_.ledger().entries().size(), 1U);
    EXPECT_EQ(machine_.ledger().entries()[0].detail,
              "A program ended without giving back 1 of its mapped windows.");
    machine_.ledger().restore({});
    host_.closeConnection(connection);
    host_.programEnded();
    EXPECT_TRUE(machine_.ledger().empty());
    ASSERT_TRUE(host_.runPrivilegedTool("/bin/rm", {"-f", "/nothing/here"}));
    host_.programEnded();
    int status = 0;
    EXPECT_GT(::wait(&status), 0);
    ASSERT_EQ(machine_.ledger().entries().size(), 1U);
    EXPECT_EQ(machine_.ledger().entries()[0].misuse, Misuse::leftBehind);
}

}  // namespace simulator
