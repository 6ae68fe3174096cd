#include "app/logic/PowerDown.h"

#include <gtest/gtest.h>

#include "platform/LiveObjects.h"
#include "tests/support/FakeHost.h"

namespace {

TEST(PowerDown, EveryLoginProcessReceivesTheEvent) {
    struct Case {
        std::vector<Host::Process> processes;
        std::vector<uint64_t> events;
    };
    for (const Case& c :
         {Case{{}, {}}, Case{{{1, "kernel"}, {2, "Loginwindow"}, {3, "loginwindow2"}}, {}},
          Case{{{1, "loginwindow"}, {2, "Finder"}, {3, "loginwindow"}, {4, "Dock"}}, {1, 3}},
          // After the last process the walk examines "no process", whose name is still the last one's.
          Case{{{1, "Finder"}, {2, "loginwindow"}}, {2, 0}}}) {
        FakeHost host;
        host.processList = c.processes;
        PowerDown();
        EXPECT_EQ(host.shutDownEvents, c.events);
        EXPECT_EQ(CountLiveObjects(), LiveObjects());
    }
}

}  // namespace
