// The power-down button: which processes are asked to shut the computer down.

#include <gtest/gtest.h>

#include "simulator/machine/DefaultMachine.h"
#include "tests/whole/FirstCardUpdate.h"

namespace {

constexpr uint64_t loginProcess = 0x80001;  // of the simulated machine

TEST(ShutDownTest, AsksEveryLoginProcess) {
    const struct {
        std::vector<Host::Process> processes;
        std::vector<uint64_t> asked;
    } cases[] = {
        {{}, {}},
        {{{1, "kernel"}, {2, "Loginwindow"}, {3, "loginwindow2"}}, {}},
        {{{1, "Finder"}, {loginProcess, "loginwindow"}, {2, "Dock"}}, {loginProcess}},
        {{{1, "loginwindow"}, {2, "Finder"}, {loginProcess, "loginwindow"}, {3, "Dock"}}, {1, loginProcess}},
        // After the last process the walk examines "no process", whose name is still the last one's.
        {{{1, "Finder"}, {loginProcess, "loginwindow"}}, {loginProcess, 0}}};
    for (const auto& each : cases) {
        simulator::Machine machine;
        simulator::addDefaultCards(machine);
        machine.powerOn();
        TestBundle bundle;
        bundle.addImage(imageName, {0x00});
        UpdaterSession session(machine, bundle);
        session.host.processList = each.processes;
        session.run([&] {
            session.click("UPDT");
            session.click("POWR");
        });
        EXPECT_EQ(session.host.shutDownEvents, each.asked);
        EXPECT_EQ(machine.isOn(), each.asked.empty());
    }
}

}  // namespace
