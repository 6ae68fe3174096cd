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

const fs::path unpacked = fs::path(SystemTmp::driver) / "Info.plist";

class ExtractedDriver : public testing::Test {
  protected:
    ExtractedDriver() { useBundle(directory.path() / "Some.app"); }

    void useBundle(const fs::path& bundle) {
        host.bundle = bundle;
        archive = bundle / "Contents/Resources/vupdaterkext.pax";
        fs::create_directories(archive.parent_path());
        fs::create_directories(directory.path() / "VUpdater.kext");
        std::ofstream(directory.path() / "VUpdater.kext/Info.plist") << "driver";
        const std::string pack = "cd " + directory.path().string() + " && pax -w -f packed VUpdater.kext";
        ASSERT_EQ(std::system(pack.c_str()), 0);
        fs::copy_file(directory.path() / "packed", archive);
    }

    SystemTmp tmp;
    TemporaryDirectory directory;
    FakeHost host;
    fs::path archive;
    AuthorizationRef ref = nullptr;
};

TEST_F(ExtractedDriver, BundlePathIsNeverACommand) {
    useBundle(directory.path() / R"(a"b$(touch pwned)`touch pwned`\"'; touch pwned;')" / "Some.app");
    const fs::path before = fs::current_path();
    fs::current_path(directory.path());
    EXPECT_EQ(ExtractAndLoadKext(&ref), 1);
    fs::current_path(before);
    EXPECT_TRUE(fs::exists(unpacked));
    EXPECT_FALSE(fs::exists(directory.path() / "pwned"));
    UnloadAndDeleteKext(&ref);
}

}  // namespace
