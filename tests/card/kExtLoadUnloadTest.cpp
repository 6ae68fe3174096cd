// Installing and removing the private driver, with a real archive and the real /tmp, but nothing privileged.

#include "card/kExtLoadUnload.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "platform/LiveObjects.h"
#include "tests/support/FakeHost.h"
#include "tests/support/SystemTmp.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using Runs = std::vector<std::string>;

const Runs installation = {"/bin/rm -rf /tmp/VUpdater.kext",
                           "/usr/sbin/chown -R root:wheel /tmp/VUpdater.kext",
                           "/sbin/kextload /tmp/VUpdater.kext", "sleep 4"};
const char* const deletion = "/bin/rm -rf /tmp/VUpdater.kext";

class PrivateDriver : public testing::Test {
  protected:
    PrivateDriver() { useBundle(directory.path() / "Some.app"); }

    void useBundle(const fs::path& bundle) {
        host.bundle = bundle;
        archive = bundle / "Contents/Resources/vupdaterkext.pax";
        fs::create_directories(archive.parent_path());
        const fs::path source = directory.path() / "VUpdater.kext";
        fs::create_directories(source);
        std::ofstream(source / "Info.plist") << "driver";
        const std::string pack = "cd " + directory.path().string() + " && pax -w -f packed VUpdater.kext";
        ASSERT_EQ(std::system(pack.c_str()), 0);
        fs::copy_file(directory.path() / "packed", archive);
    }

    // Installs and returns what came out on standard error.
    std::string install() {
        testing::internal::CaptureStderr();
        result = ExtractAndLoadKext(&ref);
        return testing::internal::GetCapturedStderr();
    }

    // Says it and cleans up: no reference, nothing leaked, no copy of the archive.
    void expectFailure(const std::string& message, const Runs& runs) {
        EXPECT_EQ(install(), message);
        EXPECT_EQ(result, 0);
        EXPECT_EQ(ref, nullptr);
        EXPECT_EQ(CountLiveObjects(), LiveObjects());
        EXPECT_EQ(host.privileged, runs);
        EXPECT_FALSE(fs::exists(SystemTmp::archive));
    }

    SystemTmp tmp;
    TemporaryDirectory directory;
    FakeHost host;
    fs::path archive;
    int32_t result = -1;
    // Whatever was there before is no reference.
    AuthorizationRef ref = reinterpret_cast<AuthorizationRef>(this);
};

TEST_F(PrivateDriver, IsUnpackedOwnedLoadedAndRemovedAgain) {
    fs::create_directories(fs::path(SystemTmp::driver) / "stale");
    host.onPrivilegedRun = [](const std::string& run) {
        if (run == deletion) {
            fs::remove_all(SystemTmp::driver);
        } else if (run.starts_with("/usr/sbin/chown")) {
            EXPECT_TRUE(fs::exists(fs::path(SystemTmp::driver) / "Info.plist")) << "unpacked by now";
            EXPECT_FALSE(fs::exists(fs::path(SystemTmp::driver) / "stale"));
            EXPECT_FALSE(fs::exists(SystemTmp::archive));
        }
    };
    EXPECT_EQ(install(), "");
    EXPECT_EQ(result, 1);
    EXPECT_EQ(host.privileged, installation);
    EXPECT_EQ(CountLiveObjects(), LiveObjects{.authorizations = 1});
    EXPECT_TRUE(host.rightAskedFor);

    host.privileged.clear();
    EXPECT_EQ(UnloadAndDeleteKext(&ref), 1);
    EXPECT_EQ(host.privileged, (Runs{"/sbin/kextunload -b com.VornLabs.driver.VornMx", "sleep 2", deletion}));
    EXPECT_EQ(ref, nullptr);
    EXPECT_EQ(CountLiveObjects(), LiveObjects());
    EXPECT_TRUE(SystemTmp::isClean());
    EXPECT_EQ(UnloadAndDeleteKext(&ref), 0) << "there is none any more";
    EXPECT_EQ(host.privileged.size(), 3u);
}

TEST_F(PrivateDriver, RefusedRightLeavesEverythingAlone) {
    for (const auto answer : {Host::RightAnswer::cancelled, Host::RightAnswer::denied}) {
        host.rightAnswer = answer;
        expectFailure("Could not Authenticate\n", {});
        EXPECT_FALSE(fs::exists(SystemTmp::driver));
    }
    EXPECT_EQ(Authenticate(&ref), 0);
    ASSERT_NE(ref, nullptr) << "the caller's to free";
    EXPECT_EQ(AuthorizationFree(ref, kAuthorizationFlagDefaults), errAuthorizationSuccess);
}

TEST_F(PrivateDriver, MissingArchiveIsSaid) {
    fs::remove(archive);
    expectFailure("Could not find pax in resource.\n", {});
    host.bundle.clear();
    expectFailure("Could not get main bundle\n", {});
}

TEST_F(PrivateDriver, PathThatIsTooLongEndsItInSilence) {
    useBundle(directory.path() / std::string(200, 'x') / "Some.app");
    ASSERT_GE(archive.string().size(), 256u);
    expectFailure("", {});
}

TEST_F(PrivateDriver, ArchiveThatCannotBeCopiedOrUnpackedIsSaid) {
    fs::remove(archive);
    fs::create_directory(archive);
    testing::internal::CaptureStderr();
    EXPECT_EQ(ExtractAndLoadKext(&ref), 0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Could not copy to tmp\n"), std::string::npos);
    EXPECT_TRUE(host.privileged.empty());

    fs::remove(archive);
    std::ofstream(archive) << std::string(2000, 'x');
    EXPECT_NE(install().find("Could not unpax\n"), std::string::npos);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(ref, nullptr);
    EXPECT_EQ(host.privileged, Runs{deletion});
    EXPECT_EQ(CountLiveObjects(), LiveObjects());
    EXPECT_TRUE(SystemTmp::isClean());
}

TEST_F(PrivateDriver, ToolThatCannotBeRunIsSaidAndTheBundleDeleted) {
    host.toolsThatDoNotStart = {"/usr/sbin/chown"};
    expectFailure("Could not chown\n", {installation[0], installation[1], deletion});

    host.privileged.clear();
    host.toolsThatDoNotStart = {"/sbin/kextload"};
    Runs runs = installation;
    runs.emplace_back(deletion);
    expectFailure("kExtLoadUnload: Could not kextload\n", runs);
}

TEST_F(PrivateDriver, BundlePathIsNeverACommand) {
    useBundle(directory.path() / R"(a"b$(touch pwned)`touch pwned`\"'; touch pwned;')" / "Some.app");
    const fs::path before = fs::current_path();
    fs::current_path(directory.path());
    EXPECT_EQ(install(), "");
    fs::current_path(before);
    EXPECT_EQ(result, 1);
    EXPECT_TRUE(fs::exists(fs::path(SystemTmp::driver) / "Info.plist"));
    EXPECT_FALSE(fs::exists(directory.path() / "pwned"));
    UnloadAndDeleteKext(&ref);
}

}  // namespace
