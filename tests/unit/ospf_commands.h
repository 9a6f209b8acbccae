// SPDX-License-Identifier: Apache-2.0
// What the tests of the OSPF commands share: a model with both instances, and a daemon that
// refuses.
#ifndef FRRUCI_TESTS_UNIT_OSPF_COMMANDS_H
#define FRRUCI_TESTS_UNIT_OSPF_COMMANDS_H

#include <functional>
#include <gtest/gtest.h>
#include <string>

#include "ospf/sw_ospf.h"
#include "tests/support/stage.h"
#include "tests/unit/ospf_model_state.h"

namespace commands {

inline constexpr uint32_t kNotFound = 0xFFFFFFFE;

/// Slot 0 is the WAN's (process id 1), slot 1 the LAN's (process id 2).
class Commands : public testing::Test {
protected:
    Commands() {
        EXPECT_EQ(ucOspfInit(), 0u);
        EXPECT_EQ(ucOspfEnableProcess(1), 0u);
        EXPECT_EQ(ucOspfEnableProcess(2), 0u);
    }

    /// Every send is refused from the one of that number on, counted from 1. What is refused is the
    /// command "router ospf" or the interface line, so it does not matter which command follows.
    void refuseFromSend(int number) {
        for (const char *context :
             {"router ospf", "interface eth0.2", "interface eth1.2", "interface eth0.3"}) {
            stage_.answer("ospfd", context, {.code = 2});
            stage_.answer("ospfd", context, {.times = number - 1});
        }
    }

    /// What the call changes in the model; wants that result.
    static std::string changed(uint32_t wanted, const std::function<uint32_t()> &call) {
        model::Changes changes;
        EXPECT_EQ(call(), wanted);
        return changes.take();
    }

    stage::Stage stage_;
};

} // namespace commands

#endif
