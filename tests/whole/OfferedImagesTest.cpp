// Real cards are not offered what is made for simulated ones, nor the other way round.

#include "app/hosts/OfferedImages.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "app/logic/FirmwareFiles.h"
#include "images/prom/FirmwareImage.h"
#include "tests/whole/FirstCardUpdate.h"
#include "tests/whole/UpdaterTest.h"

namespace {

namespace fs = std::filesystem;

class OfferedImagesTest : public UpdaterTest {};

TEST_F(OfferedImagesTest, AreThoseForTheComputersCards) {
    int shipped = 0;
    for (const auto& entry : fs::directory_iterator(BUNDLE_RESOURCES)) {
        if (entry.path().extension() == ".xsv") {
            bundle_.addShippedResource(entry.path().filename());
            ++shipped;
        }
    }
    EXPECT_EQ(shipped, 4);
    const auto other = images::makeFirmwareImage(std::vector<uint8_t>(512, 0x5A));
    bundle_.addImage("VMBM13A.xsv", other);
    bundle_.addImage("VMBM14A.xsv", {other.begin(), other.end() - 1});
    fs::create_symlink("VMBM13A.xsv", bundle_.resource("VMBM15A.xsv"));
    fs::create_symlink("nothing", bundle_.resource("VMBM16A.xsv"));

    const auto offeredFor = [this, &other](CardsOfComputer cards) {
        UpdaterSession session(machine_, bundle_);
        session.setup.mayBeOffered = ::OfferedImages(cards);
        session.setup.mayBeWritten = [&](const std::string& path, std::span<const uint8_t> image) {
            bundle_.addImage("VMBM13A.xsv", other);  // too late
            return ::WrittenImages(cards)(path, image);
        };
        std::string offered;
        session.run([&] {
            offered = FirmwareOverview();
            if (session.text("NFWR") == "M13") {
                bundle_.addShippedResource("VMBM12A.xsv");
                fs::rename(bundle_.resource("VMBM12A.xsv"), bundle_.resource("VMBM13A.xsv"));
                session.click("UPDT");
                EXPECT_EQ(session.alerts, std::vector{noSuitableFirmware});
            }
        });
        return offered + "\n" + session.standardError;
    };
    const std::string simulated = offeredFor(CardsOfComputer::kSimulated);
    EXPECT_EQ(simulated.find("VMBM13A.xsv)"), std::string::npos);
    for (const char* const name : {"DSXW03NC.xsv)", "DX8M05NC.xsv)", "K40W07B.xsv)", "VMBM12A.xsv)"}) {
        EXPECT_NE(simulated.find(name), std::string::npos) << name;
    }
    EXPECT_NE(simulated.find("VMBM13A.xsv is not firmware for simulated cards, and this computer's cards are "
                             "simulated. It is not offered.\n"),
              std::string::npos)
        << simulated;
    const std::string real = offeredFor(CardsOfComputer::kReal);
    EXPECT_TRUE(real.starts_with(
        "VornMX-B, board A: M13 (VMBM13A.xsv)\nVornMX-B, board A: M15 (VMBM15A.xsv)\nvupdater: "))
        << real;
    for (const std::string line :
         {"DSXW03NC.xsv is firmware for simulated cards and would ruin a real one. It is not offered.\n",
          "VMBM13A.xsv is firmware for simulated cards and would ruin a real one. It was not written.\n",
          "VMBM14A.xsv is damaged: it is not an image, or it is incomplete. It is not offered.\n",
          "VMBM16A.xsv: could not be opened (No such file or directory). It is not offered.\n"}) {
        EXPECT_NE(real.find(line), std::string::npos) << line << real;
    }
}

}  // namespace
