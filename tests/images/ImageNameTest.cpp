#include "images/ImageName.h"

#include <gtest/gtest.h>

#include "images/BoardRevision.h"

namespace {

TEST(ImageName, SaysWhatTheImageIsFor) {
    const std::tuple<const char*, char, uint8_t, const char*, uint8_t, const char*> cases[] = {
        {"VornMX-A", 'M', 12, "NC", 0x20, "VMAM12NC.xsv"}, {"VornMX-B", 'W', 0, "A", 0x21, "VMBW00A.xsv"},
        {"VornMX-C", 'M', 99, "Z", 0x22, "VMCM99Z.xsv"},   {"Vorn K40", 'W', 7, "B", 0x23, "K40W07B.xsv"},
        {"DX8", 'M', 1, "NC", 0x24, "DX8M01NC.xsv"},       {"DX8-XS", 'M', 10, "C", 0x25, "DSXM10C.xsv"}};
    for (const auto& [name, flavour, version, board, code, fileName] : cases) {
        const auto* model = images::modelNamed(name);
        ASSERT_NE(model, nullptr);
        EXPECT_EQ(images::modelCoded(code), model);
        const uint8_t revision = images::boardRevisionNamed(board).value();
        EXPECT_EQ(images::imageFileName(*model, flavour, version, revision), fileName);
        EXPECT_TRUE(images::isImageFileName(fileName));
    }
    EXPECT_EQ(images::modelNamed("K40"), images::modelNamed("Vorn K40"));
    EXPECT_FALSE(images::isImageFileName("VMAM1xNC.xsv") || images::isImageFileName("VMAMx1NC.xsv"));
    EXPECT_FALSE(images::modelNamed("K4") || images::modelNamed("") || images::modelCoded(0x26));
    EXPECT_FALSE(images::boardRevisionNamed("") || images::boardRevisionNamed("a") ||
                 images::boardRevisionNamed("AB"));
}

}  // namespace
