// SPDX-License-Identifier: Apache-2.0
// Process commands: what they record, for which instance, and when. Their texts are in
// golden/ospf/process_commands.golden.

#include <cstdlib>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <string>

#include "tests/unit/ospf_commands.h"

namespace {

using commands::Commands;

class Process : public Commands {};

/// A setting of both instances and what it changes in a slot, "field: value" a line.
struct Setting {
    const char *name;
    std::function<uint32_t(uint32_t set)> call;
    std::vector<const char *> set;
    std::vector<const char *> unset;
    bool sentTwiceFirst; ///< both sends come before the first record
};

std::string inSlot(int slot, const std::vector<const char *> &fields) {
    std::string lines;
    for (const char *field : fields) {
        lines += "slot " + std::to_string(slot) + " " + field + "\n";
    }
    return lines;
}

// Aligned columns would tear the calls apart.
// clang-format off
const Setting kSettings[] = {
    {"graceful restart", [](uint32_t set) { return swOspfGracefulRestart(0, set); },
     {"gracefulRestart: 1"}, {"gracefulRestart: 0"}, false},
    {"RFC 1583", [](uint32_t set) { return swOspfRfc1583Compa(0, set); },
     {"rfc1583Compatibility: 1"}, {"rfc1583Compatibility: 0"}, false},
    {"default metric", [](uint32_t set) { return swOspfDefaultMetric(0, set, 20); },
     {"defaultMetric: 20"}, {"defaultMetric: -1"}, false},
    {"distance", [](uint32_t set) { return swOspfdistance(0, set, 376); },
     {"adminDistance: 120"}, {"adminDistance: 110"}, false},
    {"maximum paths", [](uint32_t set) { return swOspfMaxPaths(0, set, 264); },
     {"maximumPaths: 8"}, {"maximumPaths: 16"}, false},
    {"reference bandwidth", [](uint32_t set) { return swOspfAutoCostRef(0, set, 1000); },
     {"referenceBandwidth: 1000"}, {"referenceBandwidth: 100000"}, false},
    {"passive default", [](uint32_t set) { return swOspfPassiveInterface(0, set); },
     {"passiveDefault: 1"}, {"passiveDefault: 0"}, false},
    {"SPF timers", [](uint32_t set) { return swOspfTimerThrottleSpf(0, set, 70000, 100, 65535); },
     {"spfDelay: 4464", "spfInitialHold: 100", "spfMaximumHold: 65535"},
     {"spfDelay: 0", "spfInitialHold: 50", "spfMaximumHold: 5000"}, true},
    {"router id", [](uint32_t set) { return swOspfRouterId(0, set, "10.0.0.1"); },
     {"routerId: 10.0.0.1", "routerIdSet: 1"}, {"routerIdSet: 0"}, false},
    {"default route", [](uint32_t set) { return swOspfOrignate(0, 1, 20, 1, 1, 1, set); },
     {"always: 1", "defaultRouteAdvertise: 1", "metricType: 1", "originateMetric: 20"},
     {"always: 0", "defaultRouteAdvertise: 0", "metricType: 2", "originateMetric: 1"}, true},
    {"redistribution", [](uint32_t set) { return swOspfRedistribute(7, set, 2, 20, 1, 1, 1); },
     {"redistributions: source 2 set 1 metric 20 type 1 process 7"}, {"redistributions: "}, true},
};
// clang-format on

TEST_F(Process, SettingsAreRecordedForBothInstances) {
    for (const Setting &setting : kSettings) {
        SCOPED_TRACE(setting.name);
        EXPECT_EQ(changed(0, [&] { return setting.call(1); }),
                  inSlot(0, setting.set) + inSlot(1, setting.set));
        EXPECT_EQ(changed(0, [&] { return setting.call(0); }),
                  inSlot(0, setting.unset) + inSlot(1, setting.unset));
    }
    (void)stage_.trace();
}

TEST_F(Process, ARefusalForTheWanRecordsNothing) {
    refuseFromSend(1);
    for (const Setting &setting : kSettings) {
        SCOPED_TRACE(setting.name);
        EXPECT_EQ(changed(1, [&] { return setting.call(1); }), "");
    }
    (void)stage_.trace();
}

TEST_F(Process, ARefusalForTheLanLeavesTheWanRecordedWhereThatComesFirst) {
    for (const Setting &setting : kSettings) {
        SCOPED_TRACE(setting.name);
        refuseFromSend(2);
        EXPECT_EQ(changed(1, [&] { return setting.call(1); }),
                  setting.sentTwiceFirst ? "" : inSlot(0, setting.set));
    }
    (void)stage_.trace();
}

TEST_F(Process, SettingsAreRecordedOnlyWhereThereIsASlot) {
    ASSERT_EQ(ucOspfDefaultProcessByNum(1), 0u);
    for (const Setting &setting : kSettings) {
        SCOPED_TRACE(setting.name);
        EXPECT_EQ(changed(0, [&] { return setting.call(1); }), inSlot(0, setting.set));
    }
    ASSERT_EQ(ucOspfInit(), 0u);
    for (const Setting &setting : kSettings) {
        SCOPED_TRACE(setting.name);
        EXPECT_EQ(changed(0, [&] { return setting.call(1); }), "");
    }
    ASSERT_EQ(ucOspfEnableProcess(2), 0u);
    for (const Setting &setting : kSettings) {
        SCOPED_TRACE(setting.name);
        EXPECT_EQ(changed(0, [&] { return setting.call(1); }), inSlot(0, setting.set));
    }
    (void)stage_.trace();
}

TEST_F(Process, ARouterIdIsRecordedAfterItsClear) {
    stage_.answer("ospfd", "clear ip ospf process", {.code = 2});
    EXPECT_EQ(changed(1, [] { return swOspfRouterId(0, 1, "10.0.0.1"); }), "");
    stage_.answer("ospfd", "clear ip ospf process", {.times = 1});
    EXPECT_EQ(changed(1, [] { return swOspfRouterId(0, 1, "10.0.0.1"); }),
              "slot 0 routerId: 10.0.0.1\nslot 0 routerIdSet: 1\n");
    (void)stage_.trace();
}

TEST_F(Process, ARouterIdSeedsTheRandomNumbersOfTheHost) {
    srand(1);
    const int first = rand();
    srand(1);
    ASSERT_EQ(swOspfRouterId(0, 1, "10.0.0.1"), 0u);
    const int afterwards = rand();
    // The second number of a generator seeded with a present time.
    bool seeded = false;
    const time_t now = time(nullptr);
    for (time_t then = now - 60; then <= now; ++then) {
        srand(static_cast<unsigned>(then));
        (void)rand();
        seeded = seeded || rand() == afterwards;
    }
    EXPECT_TRUE(seeded);
    EXPECT_NE(first, afterwards);
    (void)stage_.trace();
}

// ---- the default route ----

TEST_F(Process, SettingADefaultRouteNeverClearsItsAlways) {
    ASSERT_EQ(swOspfOrignate(0, 1, 20, 1, 1, 1, 1), 0u);
    EXPECT_EQ(changed(0, [] { return swOspfOrignate(0, 0, 0, 0, 0, 0, 1); }), "");
    EXPECT_EQ(pucOspf->process[0].always, 1u);
    (void)stage_.trace();
}

TEST_F(Process, ADefaultRouteStoresWhatItsFlagsSay) {
    EXPECT_EQ(changed(0, [] { return swOspfOrignate(0, 0, 20, 0, 1, 0, 1); }),
              "slot 0 defaultRouteAdvertise: 1\nslot 1 defaultRouteAdvertise: 1\n");
    EXPECT_EQ(changed(0, [] { return swOspfOrignate(0, 0, 20, 5, 1, 0, 1); }),
              "slot 0 originateMetric: 20\nslot 1 originateMetric: 20\n");
    EXPECT_EQ(changed(0, [] { return swOspfOrignate(0, 0, 99, 0, 257, 5, 1); }),
              "slot 0 metricType: 1\nslot 1 metricType: 1\n");
    EXPECT_EQ(changed(0, [] { return swOspfOrignate(0, 7, -1, 1, 1, 0, 1); }),
              "slot 0 always: 1\nslot 0 originateMetric: 4294967295\n"
              "slot 1 always: 1\nslot 1 originateMetric: 4294967295\n");
    (void)stage_.trace();
}

// ---- redistributions ----

TEST_F(Process, ARedistributionOfAnUnknownSourceIsRecorded) {
    EXPECT_EQ(changed(0, [] { return swOspfRedistribute(7, 1, 9, 20, 1, 1, 0); }),
              "slot 0 redistributions: source 9 set 1 metric 20 type 2 process 0\n"
              "slot 1 redistributions: source 9 set 1 metric 20 type 2 process 0\n");
    (void)stage_.trace();
}

TEST_F(Process, RemovingAnUnknownRedistributionEndsAtTheWan) {
    ASSERT_EQ(ucOspfRedistribute(1, 1, 3, 0, 0, 0, 0, 0), 0u);
    EXPECT_EQ(changed(1, [] { return swOspfRedistribute(0, 0, 3, 0, 0, 0, 0); }), "");
    ASSERT_EQ(ucOspfRedistribute(0, 1, 3, 0, 0, 0, 0, 0), 0u);
    ASSERT_EQ(ucOspfRedistribute(1, 0, 3, 0, 0, 0, 0, 0), 0u);
    EXPECT_EQ(changed(1, [] { return swOspfRedistribute(0, 0, 3, 0, 0, 0, 0); }),
              "slot 0 redistributions: \n");
    (void)stage_.trace();
}

// ---- networks ----

TEST_F(Process, ANetworkIsRecordedForTheSelectorsInstance) {
    EXPECT_EQ(changed(0, [] { return swOspfNetwork(0, "10.1.0.0", "255.255.0.0", 5, 1, 1); }),
              "slot 0 networks: 10.1.0.0/255.255.0.0 area 5\n");
    EXPECT_EQ(changed(0, [] { return swOspfNetwork(0, "10.1.0.0", "255.255.0.0", 6, 1, 0); }),
              "slot 1 networks: 10.1.0.0/255.255.0.0 area 6\n");
    EXPECT_EQ(changed(0, [] { return swOspfNetwork(0, "10.2.0.0", "255.255.0.0", 7, 1, 9); }),
              "slot 0 networks: 10.2.0.0/255.255.0.0 area 7; 10.1.0.0/255.255.0.0 area 5\n");
    (void)stage_.trace();
}

TEST_F(Process, ANetworkThatIsHeldMovesToAnotherArea) {
    ASSERT_EQ(swOspfNetwork(0, "10.1.0.0", "255.255.0.0", 5, 1, 1), 0u);
    EXPECT_EQ(changed(0, [] { return swOspfNetwork(0, "10.1.0.0", "255.255.0.0", 8, 1, 1); }),
              "slot 0 networks: 10.1.0.0/255.255.0.0 area 8\n");
    EXPECT_EQ(changed(0, [] { return swOspfNetwork(0, "10.1.0.0", "255.0.0.0", 8, 1, 1); }),
              "slot 0 networks: 10.1.0.0/255.0.0.0 area 8; 10.1.0.0/255.255.0.0 area 8\n");
    EXPECT_EQ(changed(0, [] { return swOspfNetwork(0, "10.1.0.0", "255.255.0.0", 99, 0, 1); }),
              "slot 0 networks: 10.1.0.0/255.0.0.0 area 8\n");
    EXPECT_EQ(changed(0, [] { return swOspfNetwork(0, "10.1.0.0", "255.255.0.0", 99, 0, 1); }), "");
    (void)stage_.trace();
}

TEST_F(Process, ARefusedNetworkIsNotRecorded) {
    refuseFromSend(1);
    EXPECT_EQ(changed(1, [] { return swOspfNetwork(0, "10.1.0.0", "255.255.0.0", 5, 1, 1); }), "");
    (void)stage_.trace();
}

// ---- starting and stopping ----

TEST_F(Process, EnablingTakesASlotAndDisablingResetsIt) {
    EXPECT_EQ(changed(0, [] { return swOspfEnableProcess(9, 1); }),
              "slot 2 enabled: 1\nslot 2 processId: 9\n");
    ASSERT_EQ(ucOspfRedistribute(2, 1, 3, 0, 0, 0, 0, 0), 0u);
    EXPECT_EQ(changed(0, [] { return swOspfDisableProcess(9); }),
              "slot 2 enabled: 0\nslot 2 processId: 0\nslot 2 redistributions: \n");
    refuseFromSend(1);
    EXPECT_EQ(changed(1, [] { return swOspfDisableProcess(1); }), "");
    (void)stage_.trace();
}

TEST_F(Process, AFailedStartStillTakesASlot) {
    stage_.shell("ospfd", {.status = 256});
    EXPECT_EQ(changed(0, [] { return swOspfEnableProcess(9, 1); }),
              "slot 2 enabled: 1\nslot 2 processId: 9\n");
    (void)stage_.trace();
}

TEST_F(Process, TheModelsFunctionsArePassedThrough) {
    OspfProcessCfg record;
    OspfInterfaceEntry entries[64];
    EXPECT_EQ(swOspfHasProcessId(2), 1u);
    EXPECT_EQ(swOspfHasProcessId(9), 0xFFFFFFFFu);
    EXPECT_EQ(swOspfProcessIsEnable(1), 1u);
    EXPECT_EQ(swOspfProcessIsEnable(2), 0u);
    EXPECT_EQ(swOspfGetCfg(1, &record), 0u);
    EXPECT_EQ(record.processId, 2);
    EXPECT_EQ(swOspfGetCfg(16, &record), 1u);
    ASSERT_EQ(ucIpOspfMtuIgnore(7, 1), 0u);
    EXPECT_EQ(swOspfGetInEntry(entries), 0u);
    EXPECT_EQ(entries[0].vlanId, 7u);
    EXPECT_EQ(entries[63].priority, 1);
    EXPECT_EQ(swOspfInit(), 0u);
    EXPECT_EQ(swOspfHasProcessId(2), 0xFFFFFFFFu);
}

TEST(VlanRecord, OfKindOneHasTheVlanZero) {
    OspfVlanRecord record;
    memset(&record, 0xee, sizeof record);
    uint32_t vlan = 0x12345678;
    EXPECT_EQ(swOspfGetVlanIdByInf(2, &record, &vlan), 0x12345678u);
    EXPECT_EQ(vlan, 0x12345678u);
    EXPECT_EQ(swOspfGetVlanIdByInf(1, &record, &vlan), 0u);
    EXPECT_EQ(vlan, 0u);
    EXPECT_EQ(swOspfGetVlanIdByUp(&record), 0u);
    EXPECT_EQ(record.bytes[0], 0xee);
}

} // namespace
