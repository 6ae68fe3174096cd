// What the administrator's tools do to a simulated machine.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <fstream>

#include "platform/CardDriver.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/machine/DefaultMachine.h"
#include "tests/support/TemporaryDirectory.h"

namespace simulator {
namespace {

namespace fs = std::filesystem;

class PrivilegedToolsTest : public testing::Test {
  protected:
    PrivilegedToolsTest() {
        addDefaultCards(machine_);
        machine_.drivers().resident = false;
        machine_.powerOn();
        writeBundle(card_driver::kServiceClass);
    }

    void writeBundle(std::string_view serviceClass) {
        fs::create_directories(bundle_ / "Contents");
        std::ofstream(bundle_ / "Contents/Info.plist")
            << "<plist><dict><key>CFBundlePackageType</key><string>KEXT</string>"
            << "<key>CFBundleIdentifier</key><string>com.example.driver</string>"
            << "<key>IOKitPersonalities</key><dict><key>One</key><dict><key>IOClass</key><string>"
            << serviceClass << "</string></dict></dict></dict></plist>";
    }

    // Runs a tool and returns its exit status, or -1 if it does not exist. It must write to standard error
    // only if it fails.
    int run(const std::string& tool, const std::vector<std::string>& arguments) {
        testing::internal::CaptureStderr();
        int status = -1;
        if (host_.runPrivilegedTool(tool, arguments)) {
            status = ::wait(&status) > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -2;
        }
        EXPECT_EQ(status <= 0, testing::internal::GetCapturedStderr().empty());
        return status;
    }
    int chown(const std::string& owner) { return run("/usr/sbin/chown", {"-R", owner, bundle_}); }
    int load() { return run("/sbin/kextload", {bundle_}); }
    int unload() { return run("/sbin/kextunload", {"-b", "com.example.driver"}); }
    // The number of cards that a driver shows after it had time to attach.
    std::size_t cards() {
        host_.sleepSeconds(Drivers::kSecondsToAttach);
        return host_.servicesOfClass(card_driver::kServiceClass).size();
    }

    TemporaryDirectory directory_;
    fs::path bundle_ = directory_.path() / "Some.kext";
    Machine machine_;
    SimulatedHost host_{machine_, {}};
};

TEST_F(PrivilegedToolsTest, DriverShowsTheCardsWhileLoaded) {
    EXPECT_EQ(cards(), 0U);
    EXPECT_EQ(chown("root:wheel"), 0);
    EXPECT_EQ(load(), 0);
    host_.sleepSeconds(Drivers::kSecondsToAttach - 1);
    EXPECT_TRUE(host_.servicesOfClass(card_driver::kServiceClass).empty()) << "not attached yet";
    EXPECT_EQ(cards(), 4U);
    const auto range =
        host_.mapMemory(*host_.openService(host_.servicesOfClass(card_driver::kServiceClass)[0]), 0).value();
    EXPECT_EQ(unload(), 0);
    EXPECT_EQ(cards(), 0U);
    EXPECT_EQ(host_.loadWord(static_cast<uint32_t*>(range.base)), 0xFFFFFFFFU)
        << "its mappings end with the driver";
    EXPECT_EQ(unload(), 1);
    EXPECT_EQ(load(), 0);
    machine_.powerOff();
    machine_.powerOn();
    EXPECT_EQ(cards(), 0U) << "a loaded driver does not survive a power cycle";
}

TEST_F(PrivilegedToolsTest, LoadsOnlyAWellFormedBundleOwnedByRoot) {
    EXPECT_EQ(chown("user:staff"), 0);
    EXPECT_EQ(load(), 1);
    EXPECT_EQ(chown("root:wheel"), 0);
    std::ofstream(bundle_ / "Contents/added") << "later";
    EXPECT_EQ(load(), 1) << "one file belongs to the user";
    EXPECT_EQ(chown("root:wheel"), 0);
    EXPECT_EQ(run("/bin/rm", {"-rf", bundle_}), 0);
    EXPECT_EQ(chown("root:wheel"), 1) << "it is gone";
    writeBundle(card_driver::kServiceClass);
    EXPECT_EQ(load(), 1) << "the new files belong to the user";
    EXPECT_EQ(chown("root:wheel"), 0);
    writeBundle("");
    EXPECT_EQ(load(), 1);
    std::string deep;
    for (int level = 0; level < 1'000'000; ++level) {
        deep += "<dict>";
    }
    for (const std::string& text : {std::string("<plist><dict>"), std::string("<plist/>"), deep}) {
        std::ofstream(bundle_ / "Contents/Info.plist") << text;
        EXPECT_EQ(load(), 1);
    }
    writeBundle("com_example_other");
    EXPECT_EQ(load(), 0);
    EXPECT_EQ(cards(), 0U) << "a driver of another class";
    EXPECT_EQ(run("/sbin/reboot", {}), -1);
}

}  // namespace
}  // namespace simulator
