// SPDX-License-Identifier: Apache-2.0
// What the OSPF commands do to a real ospfd: what it takes, what it refuses, and what stays.

#include <cstdlib>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <string>

#include "ospf/sw_ospf.h"
#include "ospf/vty_ospf.h"
#include "tests/support/real_daemons.h"
#include "tests/system/wording.h"

namespace {

using routers::Router;

constexpr const char *kLink = " area 0.0.0.1 virtual-link 10.0.0.2";

struct Row {
    const char *name;
    std::function<uint32_t(uint32_t set)> call;
    uint32_t set;     ///< result of setting
    const char *line; ///< what the running configuration of 8.4 then holds; null: nothing new
    uint32_t unset;   ///< result of unsetting
    bool stays;       ///< whether the line is still there afterwards
};

uint32_t area(uint32_t set, uint32_t type) {
    return swOspfArea(1, "0.0.0.7", set, type, 1);
}

uint32_t summary(uint32_t set, uint32_t type) {
    return swOspfAreaSummary(1, "0.0.0.7", set, type, 1);
}

uint32_t range(uint32_t set, uint32_t mode, uint32_t hasCost) {
    return swOspfAreaRange(1, "0.0.0.9", "10.2.0.0", "255.255.0.0", mode, hasCost, 7, set, 1);
}

uint32_t linkWith(uint32_t set, uint32_t hasHello, uint32_t hasDead) {
    return swOspfVirtualLink(1, "0.0.0.1", "10.0.0.2", 11, hasHello, 44, hasDead, 0, 0, 0, 0, set,
                             1);
}

uint32_t linkAuth(uint32_t set, uint32_t type) {
    return swOspfVirtualLinkAuth(1, "0.0.0.1", "10.0.0.2", type, set);
}

uint32_t linkMd5Key(uint32_t set) {
    return swOspfVirtualLinkMd5Key(1, "0.0.0.1", "10.0.0.2", 5, "0123456789abcdef", set);
}

uint32_t linkSimpleKey(uint32_t set) {
    return swOspfVirtualLinkAuthKey(1, "0.0.0.1", "10.0.0.2", "secret77", set);
}

// Aligned columns would tear the calls apart.
// clang-format off
const Row kRouterRows[] = {
    {"graceful restart", [](uint32_t set) { return swOspfGracefulRestart(0, set); },
     0, " graceful-restart", 0, false},
    {"RFC 1583", [](uint32_t set) { return swOspfRfc1583Compa(0, set); },
     0, " compatible rfc1583", 0, false},
    {"default metric", [](uint32_t set) { return swOspfDefaultMetric(0, set, 20); },
     0, " default-metric 20", 0, false},
    {"maximum paths", [](uint32_t set) { return swOspfMaxPaths(0, set, 8); },
     0, " maximum-paths 8", 0, false},
    {"bandwidth", [](uint32_t set) { return swOspfAutoCostRef(0, set, 1000); },
     0, " auto-cost reference-bandwidth 1000", 0, false},
    {"passive", [](uint32_t set) { return swOspfPassiveInterface(0, set); },
     0, " passive-interface default", 0, false},
    {"SPF timers", [](uint32_t set) { return swOspfTimerThrottleSpf(0, set, 10, 100, 2000); },
     0, " timers throttle spf 10 100 2000", 0, false},
    {"router id", [](uint32_t set) { return swOspfRouterId(0, set, "10.0.0.9"); },
     0, " ospf router-id 10.0.0.9", 0, false},
    {"default route", [](uint32_t set) { return swOspfOrignate(0, 1, 20, 1, 1, 1, set); },
     0, " default-information originate always metric 20 metric-type 1", 0, false},
    {"network",
     [](uint32_t set) { return swOspfNetwork(0, "10.1.2.0", "255.255.255.0", 5, set, 1); },
     0, " network 10.1.2.0/24 area 5", 0, false},
    {"connected", [](uint32_t set) { return swOspfRedistribute(7, set, 1, 20, 1, 1, 1); },
     0, " redistribute connected metric 20 metric-type 1", 0, false},
    // Only for an ospfd with instances.
    {"ospf", [](uint32_t set) { return swOspfRedistribute(7, set, 2, 20, 0, 1, 0); },
     1, nullptr, 1, false},
    {"rip", [](uint32_t set) { return swOspfRedistribute(7, set, 3, 20, 0, 1, 0); },
     0, " redistribute rip", 0, false},
    {"static", [](uint32_t set) { return swOspfRedistribute(7, set, 4, 20, 1, 1, 0); },
     0, " redistribute static metric 20", 0, false},
    {"no source", [](uint32_t set) { return swOspfRedistribute(7, set, 0, 20, 1, 1, 0); },
     1, nullptr, 1, false},
    // The text that unsets it only concerns the distances by kind of route.
    {"distance", [](uint32_t set) { return swOspfdistance(0, set, 120); },
     0, " distance 120", 0, true},
};

const Row kAreaRows[] = {
    {"normal", [](uint32_t set) { return area(set, 0); },
     1, nullptr, 1, false},
    {"stub", [](uint32_t set) { return area(set, 1); },
     0, " area 0.0.0.7 stub", 0, false},
    {"nssa", [](uint32_t set) { return area(set, 2); },
     0, " area 0.0.0.7 nssa ", 0, false},
    {"no-summary of a normal one", [](uint32_t set) { return summary(set, 0); },
     1, nullptr, 1, false},
    {"no-summary of a stub", [](uint32_t set) { return summary(set, 1); },
     0, " area 0.0.0.7 stub no-summary", 0, false},
    // The text that unsets it names no area.
    {"default cost", [](uint32_t set) { return swOspfAreaDefaultCost(1, "0.0.0.7", 30, set, 1); },
     0, " area 0.0.0.7 default-cost 30", 1, true},
    {"range with cost", [](uint32_t set) { return range(set, 0, 1); },
     1, nullptr, 0, false},
    {"range not advertised", [](uint32_t set) { return range(set, 1, 0); },
     0, " area 0.0.0.9 range 10.2.0.0/16 not-advertise", 0, false},
    {"range of another mode", [](uint32_t set) { return range(set, 2, 0); },
     0, " area 0.0.0.9 range 10.2.0.0/16", 0, false},
};

// The daemon removes a link at the first send, and so refuses the second.
const Row kLinkRows[] = {
    {"link", [](uint32_t set) { return linkWith(set, 0, 0); },
     0, kLink, 1, false},
    {"link with hello", [](uint32_t set) { return linkWith(set, 1, 0); },
     0,
     " area 0.0.0.1 virtual-link 10.0.0.2 hello-interval 11"
     " retransmit-interval 5 transmit-delay 1 dead-interval 40",
     1, false},
    {"joined timers", [](uint32_t set) { return linkWith(set, 1, 1); },
     1, nullptr, 1, false},
    {"authentication", [](uint32_t set) { return linkAuth(set, 0); },
     0, " area 0.0.0.1 virtual-link 10.0.0.2 authentication", 1, false},
    {"null", [](uint32_t set) { return linkAuth(set, 1); },
     0, " area 0.0.0.1 virtual-link 10.0.0.2 authentication null", 1, false},
    {"message-digest", [](uint32_t set) { return linkAuth(set, 2); },
     0, " area 0.0.0.1 virtual-link 10.0.0.2 authentication message-digest", 1, false},
    // A key id is taken, and given back, only once.
    {"MD5 key", linkMd5Key,
     1, " area 0.0.0.1 virtual-link 10.0.0.2 message-digest-key 5 md5 0123456789abcdef", 1, false},
    {"simple key", linkSimpleKey,
     0, " area 0.0.0.1 virtual-link 10.0.0.2 authentication-key secret77", 0, true},
};

const Row kInterfaceRows[] = {
    {"hello", [](uint32_t set) { return swIpOspfHelloInterval(0, 2, set, 15); },
     0, " ip ospf hello-interval 15", 0, false},
    {"dead", [](uint32_t set) { return swIpOspfDeadInterval(0, 2, set, 60); },
     0, " ip ospf dead-interval 60", 0, false},
    {"retransmit", [](uint32_t set) { return swIpOspfRetransmitInterval(0, 2, set, 7); },
     0, " ip ospf retransmit-interval 7", 0, false},
    {"delay", [](uint32_t set) { return swIpOspfTransmitDelay(0, 2, set, 3); },
     0, " ip ospf transmit-delay 3", 0, false},
    {"cost", [](uint32_t set) { return swIpOpsfCost(0, 2, set, 65535); },
     0, " ip ospf cost 65535", 0, false},
    {"priority", [](uint32_t set) { return swIpOspfPriority(0, 2, set, 9); },
     0, " ip ospf priority 9", 0, false},
    {"mtu-ignore", [](uint32_t set) { return swIpOspfMtuIgnore(0, 2, set); },
     0, " ip ospf mtu-ignore", 0, false},
    {"no type", [](uint32_t set) { return swIpOspfNetwork(0, 2, set, 0); },
     1, nullptr, 0, false},
    {"non-broadcast", [](uint32_t set) { return swIpOspfNetwork(0, 2, set, 2); },
     0, " ip ospf network non-broadcast", 0, false},
    {"multipoint", [](uint32_t set) { return swIpOspfNetwork(0, 2, set, 3); },
     0, " ip ospf network point-to-multipoint", 0, false},
    {"point-to-point", [](uint32_t set) { return swIpOspfNetwork(0, 2, set, 4); },
     0, " ip ospf network point-to-point", 0, false},
    {"null", [](uint32_t set) { return swIpOspfAuth(0, 2, set, 0); },
     0, " ip ospf authentication null", 0, false},
    {"simple", [](uint32_t set) { return swIpOspfAuth(0, 2, set, 1); },
     0, " ip ospf authentication", 0, false},
    {"message-digest", [](uint32_t set) { return swIpOspfAuth(0, 2, set, 2); },
     0, " ip ospf authentication message-digest", 0, false},
    {"another type", [](uint32_t set) { return swIpOspfAuth(0, 2, set, 3); },
     0, nullptr, 0, false},
    {"simple key", [](uint32_t set) { return swIpOspfAuthKey(0, 2, set, "secret77"); },
     0, " ip ospf authentication-key secret77", 0, false},
    {"MD5 key", [](uint32_t set) { return swIpOspfAuthM5dKey(0, 2, set, 5, "0123456789abcdef"); },
     0, " ip ospf message-digest-key 5 md5 0123456789abcdef", 0, false},
};

// clang-format on

class OspfCommands : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(router_.start("zebra") && router_.start("ospfd"));
        ASSERT_EQ(swOspfInit(), 0u);
        ASSERT_EQ(vtyOspfConfigOspf(0, nullptr, 1), 0u); // from here on the router is there
    }
    void TearDown() override { EXPECT_TRUE(router_.stop("ospfd") && router_.stop("zebra")); }

    bool holds(const char *heading, const char *line) const {
        const std::string block = "\n" + router_.block("ospfd", heading);
        return block.find("\n" + std::string(routers::asWritten(line)) + "\n") != std::string::npos;
    }

    template <std::size_t N> void play(const Row (&rows)[N], const char *heading) {
        for (const Row &row : rows) {
            SCOPED_TRACE(row.name);
            const std::string before = router_.block("ospfd", heading);
            EXPECT_EQ(row.call(1), row.set);
            if (row.line == nullptr) {
                EXPECT_EQ(router_.block("ospfd", heading), before);
            } else {
                EXPECT_TRUE(holds(heading, row.line)) << router_.block("ospfd", heading);
            }
            EXPECT_EQ(row.call(0), row.unset);
            if (row.line != nullptr) {
                EXPECT_EQ(holds(heading, row.line), row.stays) << router_.block("ospfd", heading);
            }
        }
    }

    Router router_ = Router::first();
};

TEST_F(OspfCommands, RouterSettings) {
    play(kRouterRows, "router ospf");
}

TEST_F(OspfCommands, AnUnsetDistanceStaysInTheDaemonAndNotInTheModel) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    ASSERT_EQ(swOspfdistance(0, 1, 99), 0u);
    ASSERT_EQ(swOspfdistance(0, 0, 99), 0u);
    EXPECT_TRUE(holds("router ospf", " distance 99")) << router_.block("ospfd", "router ospf");
    OspfProcessCfg record;
    ASSERT_EQ(swOspfGetCfg(swOspfHasProcessId(1), &record), 0u);
    EXPECT_EQ(record.adminDistance, 110);
}

TEST_F(OspfCommands, Areas) {
    play(kAreaRows, "router ospf");
}

TEST_F(OspfCommands, VirtualLinks) {
    // Since 10.7 only a router in two areas takes them.
    ASSERT_EQ(router_
                  .configure("ospfd", {"router ospf", "network 10.1.2.0/24 area 0",
                                       "network 10.1.3.0/24 area 0.0.0.1"})
                  .code,
              0);
    ASSERT_TRUE(routers::waitFor([this] {
        return router_.vty("ospfd", "show ip ospf").text.find("This router is an ABR") !=
               std::string::npos;
    }));
    play(kLinkRows, "router ospf");
}

TEST_F(OspfCommands, AnInstanceIsNotRemovedByItsIdWhereThereIsOneOnly) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    ASSERT_EQ(swOspfdistance(0, 1, 120), 0u);
    EXPECT_EQ(swOspfDisableProcess(1), 1u);
    EXPECT_TRUE(holds("router ospf", " distance 120"));
    EXPECT_EQ(swOspfHasProcessId(1), 0u);
}

/// The front-end's answer to both VLAN questions, asked of a real Lua.
void makeFrontEnd(const Router &router, int isLan, int isWan) {
    const std::string folder = "/tmp/web/luci/controller/admin/";
    ASSERT_EQ(router.run("mkdir -p " + folder), 0);
    const auto write = [&folder](const char *module, const char *question, int answer) {
        std::ofstream file(folder + module + ".lua");
        file << "local m = {}\nfunction m." << question
             << "(vid) local f = io.open('/tmp/cli_vid', 'w') f:write(" << answer
             << ") f:close() end\npackage.loaded['luci.controller.admin." << module
             << "'] = m\nreturn m\n";
        ASSERT_TRUE(file.flush());
    };
    write("lan", "is_vlan_id", isLan);
    write("interface_wan", "is_wan_vlan_id", isWan);
    ASSERT_EQ(setenv("LUA_PATH", "/tmp/web/?.lua", 1), 0);
}

TEST_F(OspfCommands, LanInterfaces) {
    makeFrontEnd(router_, 1, 1);
    play(kInterfaceRows, "interface eth0.2");
    EXPECT_EQ(router_.block("ospfd", "interface eth1.2"), "");
}

TEST_F(OspfCommands, WanInterfaces) {
    makeFrontEnd(router_, 0, 1);
    play(kInterfaceRows, "interface eth1.2");
    EXPECT_EQ(router_.block("ospfd", "interface eth0.2"), "");
}

TEST_F(OspfCommands, OtherVlansAreLeftAlone) {
    makeFrontEnd(router_, 0, 0);
    const std::string before = router_.runningConfig("ospfd");
    for (const Row &row : kInterfaceRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.call(1), 1u);
    }
    EXPECT_EQ(router_.runningConfig("ospfd"), before);
}

} // namespace
