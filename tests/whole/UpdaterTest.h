#pragma once

// What most of the whole program's tests begin with: the default machine, switched on, and a bundle without
// images. Nobody may have misused a card when they end.

#include <gtest/gtest.h>

#include "simulator/machine/DefaultMachine.h"
#include "tests/whole/UpdaterSession.h"

class UpdaterTest : public testing::Test {
  protected:
    UpdaterTest() {
        simulator::addDefaultCards(machine);
        machine.powerOn();
    }
    void TearDown() override { EXPECT_TRUE(machine.ledger().empty()); }

    simulator::Card& card() { return machine.card(0); }

    simulator::Machine machine;
    TestBundle bundle;
};
