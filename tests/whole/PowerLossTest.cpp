// The power goes somewhere in the write of a whole image, and comes back.

#include <gtest/gtest.h>

#include <array>

#include "simulator/Files.h"
#include "tests/whole/FirstCardUpdate.h"
#include "tests/whole/IdentityAccesses.h"

namespace {

using simulator::FaultKind;
using Alerts = std::vector<UpdaterSession::Alert>;
using When = simulator::Fault::When;

// Where the power goes, and what is left.
enum class From { start, imageEnd, end };

struct PowerCut {
    From from;
    int64_t accesses;  // counted from there
    Alerts alerts;     // between the confirmation and the failure
    int version;       // of the firmware that the card has at the next power-up; 0 for none
    bool keepsIdentity;

    friend std::ostream& operator<<(std::ostream& out, const PowerCut& cut) {
        return out << std::array{"start", "image end", "end"}[static_cast<std::size_t>(cut.from)] << ' '
                   << std::showpos << cut.accesses;
    }
};

const Alerts imageFails = {mismatch, identityNotRead};
const Alerts readingFails = {identityNotRead};

const PowerCut powerCuts[] = {
    {From::start, 3'000, imageFails, 10, true},             // before anything was erased
    {From::start, 50'000, imageFails, 0, false},            // erase
    {From::start, 20'000'000, imageFails, 0, false},        //
    {From::start, 44'900'000, imageFails, 0, false},        //
    {From::start, 46'000'000, imageFails, 0, false},        // programming
    {From::start, 100'000'000, imageFails, 0, false},       //
    {From::start, 167'000'000, imageFails, 0, false},       //
    {From::imageEnd, -100'000'000, imageFails, 12, false},  // reading back
    {From::imageEnd, -50'000'000, imageFails, 12, false},   //
    {From::imageEnd, -200'000, imageFails, 12, false},      //
    {From::imageEnd, 30'000, readingFails, 12, false},      // the identity, written for the first time
    {From::imageEnd, 90'000, readingFails, 12, false},      // again
    {From::imageEnd, 175'000, readingFails, 12, true},      // verified
    {From::end, -600'000, readingFails, 12, true},          // protection
    {From::end, -900, {identityDiffers}, 12, true}};        // the last reading

class PowerLoss : public testing::TestWithParam<PowerCut> {};

TEST_P(PowerLoss, LeavesACardThatComesBackOrIsMissed) {
    const PowerCut& cut = GetParam();
    simulator::Machine machine;
    simulator::Card& card =
        machine.addCard({"VornMX-B", "PCI slot 1", 0x21, 1},
                        {simulator::encodeConfiguration({0x21, 1, 'M', 10, 0x4511}), identity, 3});
    machine.powerOn();
    TestBundle bundle;
    bundle.addShippedImage(imageName);
    {
        UpdaterSession session(machine, bundle);
        session.run([&] {
            uint64_t count = machine.accesses() + static_cast<uint64_t>(cut.accesses);
            if (cut.from != From::start) {
                const auto image = simulator::readFile(bundle.resource(imageName));
                count += tools::accessesOf(image).value().count();
            }
            if (cut.from == From::end) {
                count += identityAccesses().count();
            }
            card.inject({.kind = FaultKind::powerLost, .when = When::atAccess, .count = count});
            session.click("UPDT");
            EXPECT_EQ(session.shownStatePanes(), idlePanes);
        });
        Alerts expected = cut.alerts;
        expected.insert(expected.begin(), confirmation);
        expected.push_back(failure);
        EXPECT_EQ(session.alerts, expected);
    }
    EXPECT_FALSE(machine.isOn());
    machine.powerOn();
    EXPECT_EQ(card.running() ? card.running()->version : 0, cut.version);
    EXPECT_EQ(card.identity() == identity, cut.keepsIdentity);

    UpdaterSession session(machine, bundle);
    bool hasWindow = false;
    session.run([&] {
        hasWindow = true;
        EXPECT_EQ(session.text("FWVR"), (std::string("M") += std::to_string(cut.version)));
    });
    EXPECT_EQ(hasWindow, cut.version != 0);
    if (!hasWindow) {
        // After the attempt to reach it through a private driver.
        ASSERT_FALSE(session.alerts.empty());
        EXPECT_NE(session.alerts.back().message.find("The card could not be reached"), std::string::npos);
    }
    EXPECT_TRUE(machine.ledger().empty());
}

INSTANTIATE_TEST_SUITE_P(, PowerLoss, testing::ValuesIn(powerCuts));

}  // namespace
