#include "catalogue/ImageName.h"

#include <gtest/gtest.h>

namespace catalogue {
namespace {

TEST(ImageName, TagIsReadByCharacterArithmetic) {
    const std::pair<const char*, int> tags[] = {{"VMD", 0x23}, {"VME", 0x24}, {"VMF", 0x25},
                                                {"DXA", 0x24}, {"DAA", 0x20}, {"XX0", 0x23}};
    for (const auto& [tag, code] : tags) {
        EXPECT_EQ(readImageName(tag).modelCode, code) << tag;
    }
}

TEST(ImageName, SaysWhatTheImageIsFor) {
    EXPECT_EQ(imageFileName({0x21, 'W', 0, 1}), "VMBW00A.xsv");
    EXPECT_EQ(imageFileName({0x22, 'M', 99, 26}), "VMCM99Z.xsv");
    for (const ImageName& name : {ImageName{0x26, 'M', 1, 1}, ImageName{0x21, 'X', 1, 1},
                                  ImageName{0x21, 'M', 100, 1}, ImageName{0x21, 'M', 1, 27}}) {
        EXPECT_FALSE(imageFileName(name));
    }
    EXPECT_TRUE(isImageFileName("K40W07B.xsv"));
    for (const char* name : {"", "K40W07B", "K40W07B.xsvf", "K40W7B.xsv", "K40W007B.xsv", "K40X07B.xsv",
                             "K40W07BC.xsv", "K40W07b.xsv", "VMDW07B.xsv", "VMAM1xNC.xsv"}) {
        EXPECT_FALSE(isImageFileName(name)) << name;
    }
}

}  // namespace
}  // namespace catalogue
