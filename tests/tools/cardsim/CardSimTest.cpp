#include "tools/cardsim/CardSim.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "simulator/MachineDirectory.h"
#include "tests/support/TemporaryDirectory.h"

namespace cardsim {

namespace fs = std::filesystem;
using simulator::MachineDirectory;

class CardSimTest : public testing::Test {
  protected:
    int runWith(const std::vector<std::string>& arguments) {
        out_.str("");
        err_.str("");
        return run(arguments, out_, err_);
    }
    [[nodiscard]] bool says(const std::string& text) const {
        return out_.str().find(text) != std::string::npos;
    }

    const TemporaryDirectory directory_;
    const fs::path& folder_ = directory_.path();
    std::ostringstream out_, err_;
};

TEST_F(CardSimTest, MakesShowsAndPowerCycles) {
    ASSERT_EQ(runWith({"make", folder_}), kDone) << err_.str();
    ASSERT_EQ(runWith({"show", folder_}), kDone);
    EXPECT_TRUE(says("Power       off")) << out_.str();
    EXPECT_TRUE(says("Identity    2103070021 (0x21307015)"));
    EXPECT_TRUE(says("Vorn K40, board B, firmware W 7 of 9 Mar 2005; 512 pages programmed, 0 erased"));
    ASSERT_EQ(runWith({"power-cycle", folder_}), kDone);
    {
        const auto directory = MachineDirectory::open(folder_, MachineDirectory::OnOpening::leaveAsItIs);
        directory->machine().card(2).cells().erase();
        directory->machine().ledger().record(simulator::Misuse::shortWait, "Vorn DX8", "Too short.", 42);
        directory->save();
    }
    ASSERT_EQ(runWith({"show", folder_}), kDone);
    EXPECT_TRUE(says("Running     Vorn DX8, board without revision, firmware W 7 of 23 Nov 2004"));
    EXPECT_TRUE(says("PROM        no configuration; 0 pages programmed, 512 erased")) << out_.str();
    EXPECT_TRUE(says("Identity    blank (0xFFFFFFFF)"));
    EXPECT_TRUE(says("1 x short wait, first at access 42, Vorn DX8: Too short."));
    ASSERT_EQ(runWith({"power-cycle", folder_}), kDone);
    EXPECT_TRUE(says("Vorn DX8 in PCI slot 3: no configuration"));
}

TEST_F(CardSimTest, ComplaintsAndExitCodes) {
    EXPECT_EQ(runWith({"--help"}), kDone);
    for (const std::vector<std::string>& wrong :
         {std::vector<std::string>{}, {"show"}, {"dance", folder_}, {"show", folder_, "more"}}) {
        EXPECT_EQ(runWith(wrong), kWrongUsage);
        EXPECT_FALSE(err_.str().empty());
    }
    EXPECT_EQ(runWith({"show", folder_ / "none"}), kFailed);
    EXPECT_EQ(err_.str().find("cardsim: " + (folder_ / "none").string() + ": "), 0U) << err_.str();
    ASSERT_EQ(runWith({"make", folder_}), kDone);
    EXPECT_EQ(runWith({"make", folder_}), kFailed) << "an existing machine is not overwritten";
}

}  // namespace cardsim
