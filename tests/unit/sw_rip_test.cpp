// SPDX-License-Identifier: Apache-2.0
// What RIP commands leave in the model, and what only a program can see of them.

#include <algorithm>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "rip/frr_rip.h"
#include "rip/sw_rip.h"
#include "tests/support/stage.h"
#include "vty/frr_util.h"

namespace {

constexpr const char *kVrf = "default";
constexpr const char *kIf = "eth1.10";
constexpr RipNetIf kKey = {1, 10};

class Commands : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(frrVtyInit(), 0);
        ASSERT_EQ(swRipInit(), 0U);
        ASSERT_EQ(ucRipVrfAppend(kVrf, &vrf), 0U);
        (void)stage.trace();
    }

    const RipInterfaceNode &interface() {
        RipInterfaceNode *found = nullptr;
        EXPECT_EQ(ucRipIfFindByNetIf(kKey, &found), 0U);
        static const RipInterfaceNode kNone = {};
        return found == nullptr ? kNone : *found;
    }

    stage::Stage stage;
    RipVrfNode *vrf = nullptr;
};

TEST_F(Commands, RunningIsTheModelsWord) {
    uint32_t running = 7;
    EXPECT_EQ(swRipIsRunning(kVrf, &running), 0U);
    EXPECT_EQ(running, 1U);
    EXPECT_EQ(swRipIsRunning("other", &running), 0U);
    EXPECT_EQ(running, 0U);
    running = 7;
    EXPECT_EQ(swRipIsRunning(nullptr, &running), 1U);
    EXPECT_EQ(running, 0U);
    EXPECT_STREQ(stage.trace(), "");
}

TEST_F(Commands, SendVersionStored) {
    for (const uint32_t version : {1U, 2U}) {
        EXPECT_EQ(swRipIfSendVersionSet(kIf, kKey, version, 1), 0U);
        EXPECT_EQ(interface().send_version, version);
    }
    EXPECT_EQ(swRipIfSendVersionSet(kIf, kKey, 2, 0), 0U);
    EXPECT_EQ(interface().send_version, 0U);
}

TEST_F(Commands, ReceiveVersionStored) {
    for (const uint32_t version : {1U, 2U, 3U}) {
        EXPECT_EQ(swRipIfReceiveVersionSet(kIf, kKey, version, 1), 0U);
        EXPECT_EQ(interface().recv_version, version);
    }
    EXPECT_EQ(swRipIfReceiveVersionSet(kIf, kKey, 3, 0), 0U);
    EXPECT_EQ(interface().recv_version, 0U);
}

TEST_F(Commands, ARefusedVersionKeepsTheStoredOne) {
    EXPECT_EQ(swRipIfSendVersionSet(kIf, kKey, 1, 1), 0U);
    stage.answer("ripd", "ip rip send version 2", {.code = 2});
    EXPECT_EQ(swRipIfSendVersionSet(kIf, kKey, 2, 1), 1U);
    EXPECT_EQ(interface().send_version, 1U);
}

TEST_F(Commands, BroadcastStored) {
    EXPECT_EQ(swRipIfV2BroadcastSet(kIf, kKey, 1), 0U);
    EXPECT_EQ(interface().v2_broadcast, 1);
    EXPECT_EQ(swRipIfV2BroadcastSet(kIf, kKey, 0), 0U);
    EXPECT_EQ(interface().v2_broadcast, 0);
}

TEST_F(Commands, SplitHorizonStoredPoisonedReverseNot) {
    EXPECT_EQ(swRipIfSplitHorizonSet(kIf, kKey, 0, 0), 0U);
    EXPECT_EQ(interface().split_horizon, 0);
    EXPECT_EQ(swRipIfSplitHorizonSet(kIf, kKey, 1, 1), 0U);
    EXPECT_EQ(interface().split_horizon, 1);
    EXPECT_EQ(interface().poison_reverse, 0);
    EXPECT_EQ(swRipIfSplitHorizonSet(kIf, kKey, 1, 0), 0U);
    EXPECT_EQ(interface().split_horizon, 0);
    EXPECT_EQ(swRipIfSplitHorizonSet(kIf, kKey, 0, 1), 0U);
    EXPECT_EQ(interface().split_horizon, 1);
}

TEST_F(Commands, PassiveStored) {
    stage.shell("is_vlan_id", {.text = "1\n", .writeTo = "/tmp/cli_vid"});
    EXPECT_EQ(swRipIfPassiveInterfaceVlanSet(kKey, 1), 0U);
    EXPECT_EQ(interface().passive, 1);
    EXPECT_EQ(swRipIfPassiveInterfaceVlanSet(kKey, 0), 0U);
    EXPECT_EQ(interface().passive, 0);
    stage.answer("ripd", "passive-interface eth1.10", {.code = 2});
    EXPECT_EQ(swRipIfPassiveInterfaceVlanSet(kKey, 1), 0xFFFFFFFFU);
    EXPECT_EQ(interface().passive, 0);
}

TEST_F(Commands, AuthenticationStored) {
    EXPECT_EQ(swRipIfAuthenticationSet(kIf, kKey, 2, 3, "0123456789abcdef", 1), 0U);
    EXPECT_EQ(interface().auth_type, 2U);
    EXPECT_EQ(interface().auth_keyid, 3);
    EXPECT_STREQ(interface().auth_str, "0123456789abcdef");
    EXPECT_EQ(swRipIfAuthenticationSet(kIf, kKey, 1, 255, "s", 1), 0U);
    EXPECT_EQ(interface().auth_type, 1U);
    EXPECT_EQ(interface().auth_keyid, 255);
    EXPECT_STREQ(interface().auth_str, "s");
    EXPECT_EQ(swRipIfAuthenticationSet(kIf, kKey, 0, 9, "t", 0), 0U);
    EXPECT_EQ(interface().auth_type, 0U);
    EXPECT_EQ(interface().auth_keyid, 255);
    EXPECT_STREQ(interface().auth_str, "s");
}

TEST_F(Commands, ALongKeyStoresItsKeyIdOnly) {
    EXPECT_EQ(swRipIfAuthenticationSet(kIf, kKey, 2, 3, "short", 1), 0U);
    for (const std::size_t length : {17U, 300U}) {
        const uint32_t keyid = 4 + static_cast<uint32_t>(length) % 100;
        const std::string key(length, 'k');
        EXPECT_EQ(swRipIfAuthenticationSet(kIf, kKey, 1, keyid, key.c_str(), 1), 1U);
        EXPECT_EQ(interface().auth_keyid, keyid);
        EXPECT_STREQ(interface().auth_str, "short");
        EXPECT_EQ(interface().auth_type, 2U);
    }
}

TEST_F(Commands, ARefusedAuthenticationStoresNothing) {
    EXPECT_EQ(swRipIfAuthenticationSet(kIf, kKey, 2, 3, "short", 1), 0U);
    stage.answer("ripd", "ip rip authentication mode text", {.code = 2});
    EXPECT_EQ(swRipIfAuthenticationSet(kIf, kKey, 1, 4, "other", 1), 1U);
    EXPECT_EQ(interface().auth_keyid, 3);
    EXPECT_STREQ(interface().auth_str, "short");
    EXPECT_EQ(interface().auth_type, 2U);
}

TEST_F(Commands, SessionsEndExceptAfterAFailedView) {
    const int before = stage::Stage::openDescriptors();
    EXPECT_EQ(swRipIfV2BroadcastSet(kIf, kKey, 1), 0U);
    EXPECT_EQ(swRipDistanceSet(kVrf, 7, 1), 0U);
    EXPECT_EQ(ripVtyPrint("show ip rip", 0), 0U);
    stage.answer("ripd", "ip rip v2-broadcast", {.code = 2});
    EXPECT_EQ(swRipIfV2BroadcastSet(kIf, kKey, 1), 1U);
    stage.answer("ripd", "show ip rip", {.code = 2});
    EXPECT_EQ(ripVtyPrint("show ip rip", 0), 0xFFFFFFFFU);
    EXPECT_EQ(stage::Stage::openDescriptors(), before);
    stage.answer("ripd", "distance 7", {.code = 2});
    EXPECT_EQ(swRipDistanceSet(kVrf, 7, 1), 0xFFFFFFFFU);
    EXPECT_EQ(stage::Stage::openDescriptors(), before + 1);
    (void)stage.trace();
}

TEST_F(Commands, MissingDeliveryArguments) {
    char reply[512] = {};
    EXPECT_EQ(swRipAutoRun(nullptr, "x", 512, 0, reply), 1U);
    EXPECT_EQ(swRipAutoRun(kVrf, nullptr, 512, 0, reply), 1U);
    EXPECT_EQ(swRipAutoRun(kVrf, "x", 512, 0, nullptr), 1U);
    EXPECT_EQ(doVtyRipConfigInterface(nullptr, 0, "x"), 1U);
    EXPECT_EQ(doVtyRipConfigInterface(kIf, 0, nullptr), 1U);
    EXPECT_STREQ(stage.trace(), "");
}

TEST_F(Commands, EachFaultOfRipdIsAFailure) {
    const stage::Answer faults[] = {{.code = 1},   {.code = 2},       {.code = 3},
                                    {.code = 200}, {.truncateTo = 3}, {.closeEarly = true}};
    for (const stage::Answer &fault : faults) {
        stage.answer("ripd", "ip rip v2-broadcast", fault);
        EXPECT_EQ(swRipIfV2BroadcastSet(kIf, kKey, 1), 1U);
        stage.answer("ripd", "distance 7", fault);
        EXPECT_NE(swRipDistanceSet(kVrf, 7, 1), 0U);
    }
    EXPECT_EQ(vrf->distance, 120);
    (void)stage.trace();
}

// ---- dumps ----

TEST_F(Commands, PoisonedReverseInTheDump) {
    RipInterfaceNode *zero = nullptr;
    ASSERT_EQ(ucRipInterfaceNodeAppend({0, 0}, &zero), 0U);
    zero->poison_reverse = 1; // as no setter writes it
    zero->passive = 1;
    (void)stage.output();
    EXPECT_EQ(swRip_setIfVlan(), 0U);
    EXPECT_STREQ(stage.output(), "ip rip split-horizon poison-reverse");
    zero->split_horizon = 0;
    zero->passive = 2;
    EXPECT_EQ(swRip_setIfVlan(), 0U);
    EXPECT_STREQ(stage.output(), "no ip rip split-horizonno ip rip passive-mode ");
}

TEST_F(Commands, AnEntryWithoutRecordEndsTheDump) {
    RipVrfNode *second = nullptr;
    ASSERT_EQ(ucRipVrfAppend("second", &second), 0U);
    (void)stage.output();
    dlist_node *head = gRipVrfList->head;
    head->next->data = nullptr;
    EXPECT_EQ(swRip_setGlobal(), 0U);
    EXPECT_STREQ(stage.output(), "router rip default");
    head->data = nullptr;
    EXPECT_EQ(swRip_setGlobal(), 0U);
    EXPECT_STREQ(stage.output(), "");
    head->data = vrf;
    head->next->data = second;
}

// ---- names ----

TEST(Names, VlanIds) {
    struct Case {
        const char *name;
        uint32_t vid;
    };
    const Case cases[] = {
        {"eth1.10",    10        },
        {"eth1.10.20", 10        },
        {"eth1.",      0         },
        {".7",         7         },
        {"eth1.abc",   0         },
        {"eth1.12x",   12        },
        {"eth1..3",    0         },
        {"eth1.4094",  4094      },
        {"eth1.-5",    0xFFFFFFFB}
    };
    for (const Case &each : cases) {
        RipNetIf key = {9, 9};
        EXPECT_EQ(get_vlan_id_from_interface_name(each.name, &key), 0) << each.name;
        EXPECT_EQ(key.type, 1U);
        EXPECT_EQ(key.vid, each.vid) << each.name;
    }
    RipNetIf key = {9, 9};
    EXPECT_EQ(get_vlan_id_from_interface_name("eth1", &key), -1);
    EXPECT_EQ(get_vlan_id_from_interface_name("", &key), -1);
    EXPECT_EQ(get_vlan_id_from_interface_name(nullptr, &key), -1);
    EXPECT_EQ(get_vlan_id_from_interface_name("eth1.1", nullptr), -1);
    EXPECT_EQ(key.type, 9U);
    EXPECT_EQ(get_vlan_id_from_interface_name((std::string(300, 'e') + ".8").c_str(), &key), 0);
    EXPECT_EQ(key.vid, 8U);
}

TEST_F(Commands, ANameWithoutADotHasTheZeroKey) {
    char name[] = "br-lan";
    char version[] = "ripv1";
    char *words[] = {name, version};
    EXPECT_EQ(process_rip_interface_recv_version(2, words), 0);
    RipInterfaceNode *zero = nullptr;
    ASSERT_EQ(ucRipIfFindByNetIf({0, 0}, &zero), 0U);
    EXPECT_EQ(zero->recv_version, 1U);
    (void)stage.trace();
    (void)stage.output();
    EXPECT_EQ(swRip_setIfVlan(), 0U);
    EXPECT_STREQ(stage.output(), "ip rip receive version 1no ip rip passive-mode ");
}

/// The line after it was handed on, a stroke for each NUL that has come into it.
std::string cut(std::string line) {
    handle_rip_show_interface(line.data());
    std::replace(line.begin(), line.end(), '\0', '|');
    return line;
}

TEST(StatusLines, LoseThreeWordsInPlace) {
    EXPECT_EQ(cut("    eth1.10 3 1 2\r\n"), "    eth1.10|3|1|2\r\n");
    EXPECT_EQ(cut("  eth1.10  2   1  2"), "  eth1_10| 2|  1| 2");
    EXPECT_EQ(cut("eth1.10 1 2"), "eth1_10|1|2");
    EXPECT_EQ(cut("eth1.10 2 "), "eth1_10|2|");
    EXPECT_EQ(cut("eth1.10 "), "eth1.10|");
    EXPECT_EQ(cut("  "), "  ");
    EXPECT_EQ(cut(""), "");
}

} // namespace
