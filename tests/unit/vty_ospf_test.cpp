// SPDX-License-Identifier: Apache-2.0
// Deliveries of a host with standard input closed, whose session gets the descriptor 0: the
// connection counts as made, and the exchange on it is refused.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "ospf/vty_ospf.h"
#include "tests/support/stage.h"

namespace {

constexpr uint32_t kFailed = 1;
constexpr uint32_t kNoConnection = 0xFFFFFFFF;

class OnDescriptorZero : public testing::Test {
protected:
    OnDescriptorZero() : input_(dup(STDIN_FILENO)) { (void)close(STDIN_FILENO); }
    ~OnDescriptorZero() override {
        (void)dup2(input_, STDIN_FILENO);
        (void)close(input_);
    }

    stage::Stage stage_;
    int input_;
};

TEST_F(OnDescriptorZero, ADeliveryLogsItsFirstCommandAndFails) {
    EXPECT_EQ(vtyOspfConfigOspf(0, "maximum-paths 2", 1), kFailed);
    EXPECT_NE(strstr(stage_.log(), "frrVtyRun: en\n"), nullptr);
}

TEST_F(OnDescriptorZero, AnInterfaceDeliveryLogsItsFirstCommandAndFails) {
    stage_.shell("is_vlan_id", {.text = "1\n", .writeTo = "/tmp/cli_vid"});
    EXPECT_EQ(vtyOspfConfigInterface(0, 2, "ip ospf cost 2"), kFailed);
    EXPECT_NE(strstr(stage_.log(), "frrVtyRun: en\n"), nullptr);
}

TEST_F(OnDescriptorZero, AnExecDeliveryLogsItsFirstCommandAndFails) {
    char reply[512] = {};
    EXPECT_EQ(vtyOspfShowOspf(0, "clear ip ospf process", reply, 1), kFailed);
    EXPECT_NE(strstr(stage_.log(), "frrVtyRun: en\n"), nullptr);
}

TEST_F(OnDescriptorZero, AShowIsRefusedAndNotUnconnected) {
    EXPECT_EQ(vtyPrint("show ip ospf neighbor", "/var/ospfd.vty", 2, 1, 1), kFailed);
}

TEST_F(OnDescriptorZero, AShowWithoutADaemonIsStillUnconnected) {
    stage_.absent("ospfd");
    EXPECT_EQ(vtyPrint("show ip ospf neighbor", "/var/ospfd.vty", 2, 1, 1), kNoConnection);
}

} // namespace
