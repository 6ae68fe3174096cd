#include "catalogue/ImageName.h"

#include <gtest/gtest.h>

#include "catalogue/BoardRevision.h"
#include "catalogue/CardModels.h"
#include "catalogue/FirmwareVersion.h"

namespace catalogue {
namespace {

TEST(CardModelsTest, HaveCodesNamesAndTags) {
    const std::tuple<uint16_t, const char*, const char*, const char*> models[] = {
        {0x20, "VornMX-A", "VornMX-A", "VMAM12NC.xsv"}, {0x21, "VornMX-B", "VornMX-B", "VMBM12NC.xsv"},
        {0x22, "VornMX-C", "VornMX-C", "VMCM12NC.xsv"}, {0x23, "Vorn K40", "K40", "K40M12NC.xsv"},
        {0x24, "Vorn DX8", "DX8", "DX8M12NC.xsv"},      {0x25, "Vorn DX8-XS", "DX8-XS", "DSXM12NC.xsv"}};
    EXPECT_EQ(std::size(models), kCardModels.size());
    for (const auto& [code, name, shortName, imageName] : models) {
        EXPECT_EQ(modelName(code), name);
        EXPECT_EQ(modelByName(name), modelByCode(code));
        EXPECT_EQ(modelByName(shortName), modelByCode(code));
        EXPECT_EQ(imageFileName({code, 'M', 12, 0}), imageName);
        EXPECT_EQ(readImageName(imageName).modelCode, code);
    }
    EXPECT_FALSE(isModelCode(0x1F) || isModelCode(0x26) || modelByName("K4") || modelByName(""));
}

TEST(ImageNameTest, DecodesTagsByCharacterArithmetic) {
    const std::pair<const char*, int> tags[] = {{"VMD", 0x23}, {"VME", 0x24}, {"VMF", 0x25},
                                                {"DXA", 0x24}, {"DAA", 0x20}, {"XX0", 0x23}};
    for (const auto& [tag, code] : tags) {
        EXPECT_EQ(readImageName(tag).modelCode, code) << tag;
    }
}

TEST(ImageNameTest, HasOneSpelling) {
    EXPECT_EQ(imageFileName({0x21, 'W', 0, 1}), "VMBW00A.xsv");
    EXPECT_EQ(imageFileName({0x22, 'M', 99, 26}), "VMCM99Z.xsv");
    EXPECT_FALSE(imageFileName({0x26, 'M', 1, 1}) || imageFileName({0x21, 'X', 1, 1}));
    EXPECT_FALSE(imageFileName({0x21, 'M', 100, 1}) || imageFileName({0x21, 'M', 1, 27}));
    EXPECT_TRUE(isImageFileName("K40W07B.xsv"));
    for (const char* name : {"", "K40W07B", "K40W7B.xsv", "K40W007B.xsv", "K40X07B.xsv", "K40W07BC.xsv",
                             "K40W07b.xsv", "VMDW07B.xsv", "VMAM1xNC.xsv"}) {
        EXPECT_FALSE(isImageFileName(name)) << name;
    }
}

TEST(BoardRevisionTest, IsALetterOrNone) {
    EXPECT_EQ(boardRevisionText(0), "NC");
    EXPECT_EQ(boardRevisionText(2), "B");
    EXPECT_EQ(parseBoardRevision("Z"), 26);
    EXPECT_FALSE(parseBoardRevision("") || parseBoardRevision("a") || parseBoardRevision("AB"));
}

}  // namespace
}  // namespace catalogue
