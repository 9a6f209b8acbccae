// SPDX-License-Identifier: Apache-2.0
// In which order the OSPF commands send and record, for which instance, and with which arguments.
// The functions below them are defined here, in the program, so that the library finds these first.

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "ospf/sw_ospf.h"
#include "ospf/vty_ospf.h"

namespace {

std::string calls; // a line each

constexpr uint16_t kNoSlotId = 9;
constexpr uint32_t kNone = 0xFFFFFFFF;
constexpr uint32_t kSlotOfIdZero = 10;
constexpr int kReplyBytes = 512;

[[gnu::format(printf, 1, 2)]] uint32_t record(const char *format, ...) {
    char call[512];
    va_list arguments;
    va_start(arguments, format);
    (void)vsnprintf(call, sizeof call, format, arguments);
    va_end(arguments);
    calls += std::string(call) + "\n";
    return 0;
}

std::string take() {
    std::string taken;
    taken.swap(calls);
    return taken;
}

} // namespace

uint32_t vtyOspfConfigOspf(uint32_t /*unused*/, const char *command, uint32_t selector) {
    return record("send '%s' selector %u", command, selector);
}

uint32_t vtyOspfShowOspf(uint32_t /*unused*/, const char *command, char *reply, uint32_t selector) {
    memset(reply, 'x', kReplyBytes); // all that a daemon's answer may fill
    return record("exec '%s' selector %u", command, selector);
}

uint32_t ucOspfHasProcessId(uint16_t processId) {
    return processId == kNoSlotId ? kNone : kSlotOfIdZero + processId;
}

uint32_t ucOspfDefaultProcessByNum(uint32_t slot) {
    return record("reset slot %u", slot);
}

uint32_t ucOspfGetCfg(uint32_t slot, OspfProcessCfg *out) {
    *out = {};
    return record("get slot %u", slot);
}

uint32_t ucOspfSetCfg(uint32_t slot, const OspfProcessCfg * /*in*/) {
    return record("set slot %u", slot);
}

uint32_t ucIpOpsfBasicSetParaByKey(uint16_t processId, uint32_t set, const void *value,
                                   OspfBasicParaKey key) {
    if (key == 0) {
        return record("record id %u set %u key 0 '%s'", processId, set,
                      static_cast<const char *>(value));
    }
    if (key == 8) {
        const auto *timers = static_cast<const uint16_t *>(value);
        return record("record id %u set %u key 8 %u %u %u", processId, set, timers[0], timers[1],
                      timers[2]);
    }
    return record("record id %u set %u key %u %d", processId, set, key,
                  *static_cast<const int32_t *>(value));
}

uint32_t ucOspfRedistribute(uint32_t slot, uint32_t set, uint32_t source, uint32_t metric,
                            uint32_t hasMetric, uint32_t metricType, uint32_t hasMetricType,
                            uint32_t sourceProcessId) {
    return record("redistribute slot %u set %u source %u metric %u given %u type %u given %u id %u",
                  slot, set, source, metric, hasMetric, metricType, hasMetricType, sourceProcessId);
}

void srand(unsigned /*seed*/) noexcept {
    (void)record("srand");
}

int rand() noexcept {
    (void)record("rand");
    return 4;
}

namespace {

class Calls : public testing::Test {
protected:
    Calls() { calls.clear(); }

    /// Sent and recorded for the WAN, then for the LAN.
    static std::string oneAfterTheOther(const std::string &text, const std::string &recorded) {
        return "send '" + text + "' selector 1\nrecord id 1 " + recorded + "\n" + "send '" + text +
               "' selector 0\nrecord id 2 " + recorded + "\n";
    }

    static std::string both(const std::string &text) {
        return "send '" + text + "' selector 1\nsend '" + text + "' selector 0\n";
    }
};

TEST_F(Calls, ASimpleSettingIsRecordedForTheWanBeforeTheLanIsTold) {
    EXPECT_EQ(swOspfGracefulRestart(0, 1), 0u);
    EXPECT_EQ(take(), oneAfterTheOther("graceful-restart", "set 1 key 1 0"));
    EXPECT_EQ(swOspfAutoCostRef(0, 1, 7), 0u);
    EXPECT_EQ(take(), oneAfterTheOther("auto-cost reference-bandwidth 7", "set 1 key 2 7"));
    EXPECT_EQ(swOspfRfc1583Compa(0, 1), 0u);
    EXPECT_EQ(take(), oneAfterTheOther("compatible rfc1583", "set 1 key 3 0"));
    EXPECT_EQ(swOspfDefaultMetric(0, 0, 7), 0u);
    EXPECT_EQ(take(), oneAfterTheOther("no default-metric", "set 0 key 4 7"));
    EXPECT_EQ(swOspfdistance(0, 0, 7), 0u);
    EXPECT_EQ(take(), oneAfterTheOther("no distance ospf", "set 0 key 5 7"));
    EXPECT_EQ(swOspfPassiveInterface(0, 0), 0u);
    EXPECT_EQ(take(), oneAfterTheOther("no passive-interface default", "set 0 key 6 0"));
    EXPECT_EQ(swOspfMaxPaths(0, 1, 7), 0u);
    EXPECT_EQ(take(), oneAfterTheOther("maximum-paths 7", "set 1 key 7 7"));
}

TEST_F(Calls, ARouterIdIsDrawnBetweenTheInstances) {
    EXPECT_EQ(swOspfRouterId(0, 1, "1.2.3.4"), 0u);
    EXPECT_EQ(take(), "send 'ospf router-id 1.2.3.4' selector 1\n"
                      "exec 'clear ip ospf process' selector 1\n"
                      "record id 1 set 1 key 0 '1.2.3.4'\n"
                      "srand\nrand\n"
                      "send 'ospf router-id 1.2.3.4' selector 0\n"
                      "exec 'clear ip ospf process' selector 0\n"
                      "record id 2 set 1 key 0 '1.2.3.4'\n");
}

TEST_F(Calls, SpfTimersAreRecordedAfterBothSendsAsShortNumbers) {
    EXPECT_EQ(swOspfTimerThrottleSpf(0, 1, 70000, 5, 6), 0u);
    EXPECT_EQ(take(), both("timers throttle spf 70000 5 6") +
                          "record id 1 set 1 key 8 4464 5 6\nrecord id 2 set 1 key 8 4464 5 6\n");
}

TEST_F(Calls, ADefaultRouteIsRecordedAfterBothSends) {
    EXPECT_EQ(swOspfOrignate(0, 0, 0, 0, 0, 0, 0), 0u);
    EXPECT_EQ(take(), both("no default-information originate") +
                          "get slot 11\nset slot 11\nget slot 12\nset slot 12\n");
}

TEST_F(Calls, ARedistributionHandsItsFlagsToTheModel) {
    EXPECT_EQ(swOspfRedistribute(7, 1, 3, 20, 0, 1, 5), 0u);
    EXPECT_EQ(take(),
              both("redistribute rip metric-type 1 ") +
                  "redistribute slot 11 set 1 source 3 metric 20 given 0 type 1 given 5 id 7\n"
                  "redistribute slot 12 set 1 source 3 metric 20 given 0 type 1 given 5 id 7\n");
    EXPECT_EQ(swOspfRedistribute(7, 0, 2, 20, 5, 1, 0), 0u);
    EXPECT_EQ(take(),
              both("no redistribute ospf 7 metric 20 ") +
                  "redistribute slot 11 set 0 source 2 metric 20 given 5 type 1 given 0 id 7\n"
                  "redistribute slot 12 set 0 source 2 metric 20 given 5 type 1 given 0 id 7\n");
}

TEST_F(Calls, DisablingIsSentToTheLanInstance) {
    EXPECT_EQ(swOspfDisableProcess(1), 0u);
    EXPECT_EQ(take(), "send 'no router ospf 1' selector 0\nreset slot 11\n");
    EXPECT_EQ(swOspfDisableProcess(kNoSlotId), 0u);
    EXPECT_EQ(take(), "send 'no router ospf 9' selector 0\n");
}

TEST_F(Calls, OneInstanceIsReachedByTheCallersSelector) {
    EXPECT_EQ(swOspfArea(kNoSlotId, "0.0.0.1", 1, 1, 7), 0u);
    EXPECT_EQ(take(), "send 'area 0.0.0.1 stub ' selector 7\n");
    EXPECT_EQ(swOspfAreaSummary(kNoSlotId, "0.0.0.1", 0, 2, 7), 0u);
    EXPECT_EQ(take(), "send 'no area 0.0.0.1 nssa no-summary' selector 7\n");
    EXPECT_EQ(swOspfAreaDefaultCost(kNoSlotId, "0.0.0.1", 5, 1, 7), 0u);
    EXPECT_EQ(take(), "send 'area 0.0.0.1 default-cost 5' selector 7\n");
    EXPECT_EQ(swOspfAreaRange(kNoSlotId, "0.0.0.1", "10.0.0.0", "255.0.0.0", 0, 0, 0, 0, 7), 0u);
    EXPECT_EQ(take(), "send 'no area 0.0.0.1 range 10.0.0.0/8' selector 7\n");
}

TEST_F(Calls, AVirtualLinkIsSentTwiceByTheCallersSelectorAndItsKeysToEachInstance) {
    const std::string link = "area 0.0.0.1 virtual-link 2.2.2.2";
    EXPECT_EQ(swOspfVirtualLink(kNoSlotId, "0.0.0.1", "2.2.2.2", 0, 0, 0, 0, 0, 0, 0, 0, 0, 7), 0u);
    EXPECT_EQ(take(), "send 'no " + link + "' selector 7\nsend 'no " + link + "' selector 7\n");
    EXPECT_EQ(swOspfVirtualLinkAuth(kNoSlotId, "0.0.0.1", "2.2.2.2", 2, 1), 0u);
    EXPECT_EQ(take(), both(link + " authentication message-digest"));
    EXPECT_EQ(swOspfVirtualLinkAuthKey(kNoSlotId, "0.0.0.1", "2.2.2.2", "1234567", 0), 0u);
    EXPECT_EQ(take(), both(link + " authentication-key 1234567"));
    EXPECT_EQ(swOspfVirtualLinkMd5Key(kNoSlotId, "0.0.0.1", "2.2.2.2", 5, "123456789012345", 0),
              0u);
    EXPECT_EQ(take(), both("no " + link + " message-digest-key 5 md5 1"));
}

} // namespace
