#include "catalogue/CardModels.h"

#include <gtest/gtest.h>

#include "catalogue/ImageName.h"

namespace catalogue {
namespace {

TEST(CardModels, EachHasItsCodeItsNamesAndItsTag) {
    const struct {
        uint16_t code;
        const char* name;
        const char* shortName;
        const char* imageName;
    } kModels[] = {
        {0x20, "VornMX-A", "VornMX-A", "VMAM12NC.xsv"}, {0x21, "VornMX-B", "VornMX-B", "VMBM12NC.xsv"},
        {0x22, "VornMX-C", "VornMX-C", "VMCM12NC.xsv"}, {0x23, "Vorn K40", "K40", "K40M12NC.xsv"},
        {0x24, "Vorn DX8", "DX8", "DX8M12NC.xsv"},      {0x25, "Vorn DX8-XS", "DX8-XS", "DSXM12NC.xsv"}};
    EXPECT_EQ(std::size(kModels), kCardModels.size());
    for (const auto& model : kModels) {
        EXPECT_EQ(modelName(model.code), model.name);
        EXPECT_EQ(modelByName(model.name), modelByCode(model.code));
        EXPECT_EQ(modelByName(model.shortName), modelByCode(model.code));
        EXPECT_EQ(imageFileName({model.code, 'M', 12, 0}), model.imageName);
        EXPECT_EQ(readImageName(model.imageName).modelCode, model.code);
    }
    EXPECT_FALSE(isModelCode(0x1F) || isModelCode(0x26) || modelByName("K4") || modelByName(""));
}

}  // namespace
}  // namespace catalogue
