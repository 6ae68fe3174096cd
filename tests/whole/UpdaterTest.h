#pragma once

// The start of most tests of the whole program: the default machine, switched on, and a bundle without
// images. At the end, no card may have been misused.

#include <gtest/gtest.h>

#include "simulator/machine/DefaultMachine.h"
#include "tests/whole/UpdaterSession.h"

class UpdaterTest : public testing::Test {
  protected:
    UpdaterTest() {
        simulator::addDefaultCards(machine_);
        machine_.powerOn();
    }
    void TearDown() override { EXPECT_TRUE(machine_.ledger().empty()); }

    simulator::Card& card() { return machine_.card(0); }

    simulator::Machine machine_;
    TestBundle bundle_;
};
