#include "linux/host/LinuxHost.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <set>

#include "card/Registers.h"
#include "platform/CardDriver.h"
#include "tests/linux/host/FakeAgent.h"
#include "xsvf/JtagPort.h"

namespace {

using std::chrono::nanoseconds;
using std::chrono::steady_clock;
using Calls = std::vector<std::string>;

std::string saidBy(const std::function<void()>& action) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

class LinuxHostTest : public testing::Test {
  protected:
    std::vector<uint64_t> services() { return host_.servicesOfClass("com_VornLabs_driver_VornMxDevice"); }
    uint32_t open(std::size_t index = 0) { return host_.openService(services().at(index)).value(); }
    // Adds two cards that may be used without asking.
    void addCards() {
        agent_.add("0000:05:01.0", "VornMX-B");
        agent_.add("0000:05:02.0", "Vorn K40");
        agent_.answerWithoutAsking = Host::RightAnswer::granted;
    }
    uint32_t* map(uint32_t connection) {
        return static_cast<uint32_t*>(host_.mapMemory(connection, 0).value().base);
    }
    bool run(const char* tool) {
        const bool started = host_.runPrivilegedTool(tool, {"-rf", "/nothing/here"});
        int status = -1;
        EXPECT_EQ(::wait(&status) > 0, started) << tool << " is a child that the caller waits for";
        EXPECT_TRUE(!started || status == 0) << tool;
        return started;
    }

    FakeAgent agent_;
    int moments_ = 0;
    host::LinuxHost host_{agent_, "/bundle", [this] { ++moments_; }};
};

TEST_F(LinuxHostTest, ShowsCardsThatNobodyMustBeAskedFor) {
    addCards();
    agent_.add("0000:06:00.0", "Vorn DX8", "Another program uses it.");
    EXPECT_EQ(saidBy([&] { EXPECT_EQ(services().size(), 2U); }),
              "Vorn DX8 (PCI slot 1): Another program uses it.\n");
    EXPECT_EQ(services().size(), 2U);
    EXPECT_EQ(agent_.calls, Calls{"claim"});
    EXPECT_TRUE(host_.servicesOfClass("com_VornLabs_driver_Other").empty());
}

TEST_F(LinuxHostTest, ClaimsAndLetsGoAsThePrivateDriverComesAndGoes) {
    addCards();
    agent_.answerWithoutAsking = Host::RightAnswer::denied;
    EXPECT_TRUE(services().empty());
    EXPECT_TRUE(services().empty());
    EXPECT_FALSE(run("/sbin/kextload"));
    agent_.answer = Host::RightAnswer::cancelled;
    EXPECT_EQ(host_.askForAdministratorRight(), Host::RightAnswer::cancelled);
    EXPECT_FALSE(run("/sbin/kextload"));
    agent_.answer = Host::RightAnswer::granted;
    EXPECT_EQ(host_.askForAdministratorRight(), Host::RightAnswer::granted);
    EXPECT_TRUE(run("/bin/rm") && run("/usr/sbin/chown") && run("/sbin/kextload"));
    EXPECT_FALSE(run("/bin/sh"));
    const auto claimed = services();
    EXPECT_EQ(claimed.size(), 2U);
    const uint32_t connection = open();
    EXPECT_TRUE(run("/sbin/kextunload"));
    EXPECT_TRUE(services().empty());
    EXPECT_FALSE(host_.openService(claimed[0])) << "nor is it claimed again";
    EXPECT_FALSE(host_.closeConnection(connection));
    EXPECT_FALSE(run("/sbin/kextload"));
    EXPECT_EQ(agent_.calls, (Calls{"claim", "claim, asking", "claim, asking", "let go"}));
}

TEST_F(LinuxHostTest, SaysWhoseFolderIsInTheWay) {
    const uid_t user = ::geteuid();
    ASSERT_TRUE(user != 0 || ::seteuid(1) == 0);
    // Nobody can remove it, and its contents are not asked for.
    const std::string said = saidBy([&] {
        EXPECT_TRUE(host_.runPrivilegedTool("/bin/rm", {"-f", "/sys"})) << "all the same";
    });
    ASSERT_EQ(::seteuid(user), 0);
    ::wait(nullptr);
    EXPECT_TRUE(said.starts_with(
        "/sys belongs to another user. Have it removed by that user or an administrator, then try again.\n"))
        << said;
    EXPECT_EQ(saidBy([&] { run("/bin/rm"); }), "");
}

TEST_F(LinuxHostTest, AsksNobodyIfThereIsNothingToUse) {
    EXPECT_TRUE(services().empty());
    const auto ask = [&] { EXPECT_EQ(host_.askForAdministratorRight(), Host::RightAnswer::granted); };
    EXPECT_EQ(saidBy(ask),
              "No card is named in /etc/vupdater/cards.d, or none of those named is in this "
              "computer. To check the configuration, run as root: /usr/libexec/vupdater/vupdater-agent "
              "--check\n");
    agent_.add("0000:05:01.0", "VornMX-B", "Its driver is loaded.");
    EXPECT_EQ(saidBy(ask), "VornMX-B (PCI slot 1): Its driver is loaded.\n");
    EXPECT_TRUE(run("/sbin/kextload")) << "it comes, and shows no card";
    EXPECT_TRUE(services().empty());
    EXPECT_TRUE(agent_.calls.empty());
    agent_.list = std::nullopt;
    agent_.answer = Host::RightAnswer::denied;
    EXPECT_EQ(host_.askForAdministratorRight(), Host::RightAnswer::denied) << "nobody knows the cards";
}

TEST_F(LinuxHostTest, MapsWholePagesAndRefusesWhatItCannotMap) {
    addCards();
    std::set<uint32_t> connections;
    std::set<void*> bases;
    agent_.offsetInPage = 0xE00;
    for (int time = 0; time < 3; ++time) {
        const uint32_t connection = open(1);
        EXPECT_TRUE(connection > 0xFFFF && connections.insert(connection).second);
        for (const uint32_t memoryType : {0U, 1U}) {
            const auto range = host_.mapMemory(connection, memoryType).value();
            EXPECT_EQ(range.bytes, 0x200U);
            EXPECT_TRUE(bases.insert(range.base).second);
            EXPECT_EQ(host_.mapMemory(connection, memoryType).value().base, range.base);
        }
        EXPECT_FALSE(host_.mapMemory(connection, 2));
        EXPECT_FALSE(host_.mapMemory(connection + 1, 0));
        EXPECT_TRUE(host_.closeConnection(connection));
        EXPECT_FALSE(host_.closeConnection(connection));
    }
    EXPECT_EXIT(host_.loadWord(static_cast<uint32_t*>(*bases.begin())), testing::KilledBySignal(SIGSEGV), "");

    const std::string card = "VornMX-B (PCI slot 1): ";
    const auto refuse = [&, connection = open()] { EXPECT_FALSE(host_.mapMemory(connection, 0)); };
    agent_.bytes = 0x1FF;
    EXPECT_EQ(saidBy(refuse), card +
                                  "The card's memory range is missing or smaller than 512 bytes. Check the "
                                  "line that names the card in the configuration.\n");
    agent_.bytes = 0x200;
    agent_.access = O_RDONLY;
    EXPECT_EQ(saidBy(refuse), card + "The card's registers cannot be reached: Permission denied.\n");
    agent_.isSealed = true;
    EXPECT_EQ(saidBy(refuse), card +
                                  "The kernel is locked down, so programs cannot reach the card's registers. "
                                  "Switch Secure Boot off in the computer's firmware settings until the card "
                                  "has been updated.\n");
}

TEST_F(LinuxHostTest, DescribesCardsInTextsThatFit) {
    addCards();
    agent_.list->front().name = std::string(300, 'n');
    std::array<uint8_t, 512> reply{};
    const uint32_t connection = open();
    EXPECT_FALSE(host_.callMethod(connection, 1, reply));
    EXPECT_FALSE(host_.callMethod(connection + 1, 0, reply));
    EXPECT_FALSE(host_.callMethod(connection, 0, std::span(reply).first(511)));
    EXPECT_EQ(host_.callMethod(connection, 0, reply), 512U);
    EXPECT_EQ(reinterpret_cast<const char*>(reply.data()), std::string(255, 'n'));
    EXPECT_STREQ(reinterpret_cast<const char*>(reply.data() + 256), "PCI slot 1");
}

TEST_F(LinuxHostTest, MovesWordsWithTheFirstByteMostSignificant) {
    addCards();
    agent_.offsetInPage = 0x200;
    uint32_t* const base = map(open());
    std::fstream file(agent_.file("0000:05:01.0", 0), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(0x308).write("\x12\x34\x56\x78", 4).flush();
    EXPECT_EQ(host_.loadWord(base + 0x108 / 4), 0x12345678U);
    host_.storeWord(base + 0x100 / 4, 0x9ABCDEF0);
    std::array<char, 4> bytes{};
    file.seekg(0x300).read(bytes.data(), bytes.size());
    EXPECT_EQ(std::string(bytes.data(), bytes.size()), "\x9A\xBC\xDE\xF0");
}

TEST_F(LinuxHostTest, MakesLoadsLastAndLetsTheProgramDraw) {
    addCards();
    uint32_t* const word = map(open());
    EXPECT_EQ(host_.loadTime(), nanoseconds(334));
    nanoseconds shortest = nanoseconds::max();
    for (int load = 0; load < 10000; ++load) {
        const auto start = steady_clock::now();
        host_.loadWord(word);
        shortest = std::min(shortest, nanoseconds(steady_clock::now() - start));
    }
    EXPECT_GE(shortest.count() * 3, 1000) << "nanoseconds";

    InstallHost(&host_);
    openPort(nullptr, 0, word, word);
    moments_ = 0;
    const auto start = steady_clock::now();
    waitTime(250'000);
    const auto lasted = steady_clock::now() - start;
    InstallHost(nullptr);
    EXPECT_GE(lasted, std::chrono::milliseconds(250));
    EXPECT_GE(moments_, 1);
    EXPECT_LE(moments_, lasted / std::chrono::milliseconds(100) + 1);
}

// The second range is never timed, as if the bus had seemed slow.
TEST_F(LinuxHostTest, MakesLoadsLastThatTurnOutToBeFast) {
    addCards();
    const auto* const word =
        static_cast<const uint32_t*>(static_cast<void*>(host_.mapMemory(open(), 1).value().base));
    const auto start = steady_clock::now();
    for (int load = 0; load < 30'000; ++load) {
        host_.loadWord(word);
        // The clock is looked at for the first time before the first load, then after a thousand.
        EXPECT_TRUE(load != 1000 || steady_clock::now() - start >= 1000 * nanoseconds(334)) << "not made up";
    }
    EXPECT_GE(steady_clock::now() - start, std::chrono::milliseconds(10));
}

TEST_F(LinuxHostTest, DoesNotSlowASimulatedCard) {
    addCards();
    agent_.list->front().isSimulated = true;
    uint32_t* const word = map(open());
    nanoseconds shortest = nanoseconds::max();
    for (int batch = 0; batch < 1000; ++batch) {
        const auto start = steady_clock::now();
        for (int load = 0; load < 100; ++load) {
            host_.loadWord(word);
        }
        shortest = std::min(shortest, nanoseconds(steady_clock::now() - start));
    }
    EXPECT_LT(shortest.count() * 3, 100'000) << "nanoseconds for 100 loads";
}

TEST_F(LinuxHostTest, SwitchesTheComputerOffThroughItsLoginProcess) {
    ASSERT_EQ(host_.processes().size(), 1U);
    EXPECT_EQ(host_.processes()[0].name, "loginwindow");
    EXPECT_FALSE(host_.deliverShutDownEvent(0));
    EXPECT_TRUE(agent_.calls.empty());
    EXPECT_TRUE(host_.deliverShutDownEvent(host_.processes()[0].serialNumber));
    EXPECT_EQ(agent_.calls, Calls{"power off"});
    agent_.powersOff = false;
    EXPECT_FALSE(host_.deliverShutDownEvent(host_.processes()[0].serialNumber));
}

}  // namespace
