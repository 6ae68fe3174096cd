#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>

#include <fstream>

#include "platform/LiveObjects.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

TEST(CFBundleTest, ListsResourcesOfATypeByName) {
    const TemporaryDirectory directory;
    FakeHost host;
    EXPECT_EQ(CFBundleGetMainBundle(), nullptr);

    host.bundle = directory.path() / "Some.app";
    const auto resources = host.bundle / "Contents/Resources";
    EXPECT_EQ(CFBundleCopyResourceURLsOfType(CFBundleGetMainBundle(), CFSTR("xsv"), nullptr), nullptr);
    std::filesystem::create_directories(resources);
    for (const char* name : {"b.xsv", "a.xsv", "c.txt", "xsv"}) {
        std::ofstream(resources / name) << "content";
    }

    const CFArrayRef urls = CFBundleCopyResourceURLsOfType(CFBundleGetMainBundle(), CFSTR("xsv"), nullptr);
    ASSERT_EQ(CFArrayGetCount(urls), 2);
    const auto first = static_cast<CFURLRef>(CFArrayGetValueAtIndex(urls, 0));
    const std::string expected = resources / "a.xsv";
    std::string buffer(expected.size() + 1, '?');
    auto* const bytes = reinterpret_cast<uint8_t*>(buffer.data());
    const auto size = static_cast<CFIndex>(buffer.size());
    EXPECT_FALSE(CFURLGetFileSystemRepresentation(first, 1, bytes, size - 1));
    EXPECT_EQ(buffer[0], '?');
    EXPECT_TRUE(CFURLGetFileSystemRepresentation(first, 1, bytes, size));
    EXPECT_EQ(buffer.c_str(), expected);

    // Releasing the array releases its URLs.
    EXPECT_EQ(CountLiveObjects().coreFoundationObjects, 3U);
    CFRelease(urls);
    EXPECT_EQ(CountLiveObjects(), LiveObjects());
}

}  // namespace
