// SPDX-License-Identifier: Apache-2.0
// What the OSPF handlers are given arrives in a real ospfd's running configuration.

#include <gtest/gtest.h>
#include <string>

#include "ospf/frr_ospf.h"
#include "ospf/sw_ospf.h"
#include "tests/support/real_daemons.h"
#include "tests/system/handler_call.h"
#include "tests/system/wording.h"

namespace {

using routers::asWritten;
using routers::call;
using routers::logText;
using routers::ReplyPipe;
using routers::Router;

constexpr const char *kInterface = "interface eth1.2";
constexpr const char *kProcess = "router ospf";

class OspfSettings : public testing::Test {
protected:
    void SetUp() override {
        (void)remove("/tmp/tmp/data");
        ASSERT_TRUE(router_.start("zebra") && router_.start("ospfd"));
        ASSERT_EQ(swOspfInit(), 0u);
    }

    void TearDown() override { EXPECT_TRUE(router_.stop("ospfd") && router_.stop("zebra")); }

    /// One setting of eth1.2, which must be answered.
    void set(const std::string &setting) {
        call(process_ospf_interface, "eth1.2 wan " + setting);
        EXPECT_EQ(reply_.take(), "ok");
    }

    bool holds(const char *line) const {
        return ("\n" + interfaceBlock()).find("\n" + std::string(asWritten(line)) + "\n") !=
               std::string::npos;
    }
    std::string interfaceBlock() const { return router_.block("ospfd", kInterface); }
    std::string processBlock() const { return router_.block("ospfd", kProcess); }

    Router router_ = Router::first();
    ReplyPipe reply_{"/tmp/tmp/ospf_pipe_c2lua"};
};

TEST_F(OspfSettings, EveryKeywordOfAnInterface) {
    struct {
        const char *setting;
        const char *line;
    } const cases[] = {
        {"cost 20",            " ip ospf cost 20"                      },
        {"retransmit 6",       " ip ospf retransmit-interval 6"        },
        {"transmit 2",         " ip ospf transmit-delay 2"             },
        {"priority 9",         " ip ospf priority 9"                   },
        {"hello 15",           " ip ospf hello-interval 15"            },
        {"dead 60",            " ip ospf dead-interval 60"             },
        {"network_type 1",     " ip ospf network point-to-point"       },
        {"network_type 2",     " ip ospf network point-to-multipoint"  },
        {"mtu_ignore 1",       " ip ospf mtu-ignore"                   },
        {"passive 1",          " ip ospf passive"                      },
        {"auto_type 0",        " ip ospf authentication null"          },
        {"auto_type 1 secret", " ip ospf authentication"               },
        {"auto_type 1 secret", " ip ospf authentication-key secret"    },
        {"auto_type 2 5 abc",  " ip ospf authentication message-digest"},
        {"auto_type 2 5 abc",  " ip ospf message-digest-key 5 md5 abc" },
    };
    for (const auto &row : cases) {
        set(row.setting);
        EXPECT_TRUE(holds(row.line)) << row.setting << "\n" << interfaceBlock();
    }
    EXPECT_EQ(logText().find("failed"), std::string::npos) << logText();
}

TEST_F(OspfSettings, ABroadcastNetworkIsTheDaemonsDefault) {
    set("cost 7");
    set("network_type 2");
    const std::string cost = " ip ospf cost 7\n";
    ASSERT_EQ(interfaceBlock(), " ip ospf network point-to-multipoint\n" + cost);
    set("network_type 0");
    EXPECT_EQ(interfaceBlock(), inVersion(routers::kOwnNetworkType) + cost);
}

TEST_F(OspfSettings, TheTwoSwitchesOfAnInterfaceGoOffAgain) {
    set("mtu_ignore 1");
    set("passive 1");
    set("cost 7");
    set("mtu_ignore 0");
    set("passive 0");
    EXPECT_EQ(interfaceBlock(), " ip ospf cost 7\n");
}

TEST_F(OspfSettings, ARefusedValueIsLoggedAndChangesNothing) {
    set("cost 20");
    const std::string before = router_.runningConfig("ospfd");
    set("cost 0");
    set("hello 0");
    set("dead 70000");
    set("priority 256");
    set("network_type 3");
    EXPECT_EQ(router_.runningConfig("ospfd"), before);
    EXPECT_EQ(routers::occurrences(logText(), "ip_ospf_cost, failed"), 5u) << logText();
}

TEST_F(OspfSettings, SettingsOfAnInterfaceStandTogether) {
    for (const char *setting :
         {"cost 20", "retransmit 6", "transmit 2", "priority 9", "hello 15", "dead 60",
          "network_type 1", "mtu_ignore 1", "auto_type 1 secret"}) {
        set(setting);
    }
    for (const char *line :
         {" ip ospf cost 20", " ip ospf retransmit-interval 6", " ip ospf transmit-delay 2",
          " ip ospf priority 9", " ip ospf hello-interval 15", " ip ospf dead-interval 60",
          " ip ospf network point-to-point", " ip ospf mtu-ignore", " ip ospf authentication",
          " ip ospf authentication-key secret"}) {
        EXPECT_TRUE(holds(line)) << line << "\n" << interfaceBlock();
    }
}

TEST_F(OspfSettings, TheBuildersTakeEverySettingBack) {
    set("cost 20");
    set("retransmit 6");
    set("transmit 2");
    set("priority 9");
    set("hello 15");
    set("dead 60");
    set("network_type 1");
    set("auto_type 1 secret");
    set("auto_type 2 5 abc");
    const char *name = "eth1.2";
    EXPECT_EQ(ip_ospf_cost(0, name, 1, 0, 0), 0u);
    EXPECT_EQ(ip_ospf_retransmit(0, name, 1, 0, 0), 0u);
    EXPECT_EQ(ip_ospf_transmit(0, name, 1, 0, 0), 0u);
    EXPECT_EQ(ip_ospf_priority(0, name, 1, 0, 0), 0u);
    EXPECT_EQ(ip_ospf_hello(0, name, 1, 0, 0), 0u);
    EXPECT_EQ(ip_ospf_dead(0, name, 1, 0, 0), 0u);
    EXPECT_EQ(ip_ospf_network_type(0, name, 1, 0, 0), 0u);
    EXPECT_EQ(ip_ospf_auth(0, name, 1, 0, 2), 0u);
    EXPECT_EQ(ip_ospf_auth_key(0, name, 1, 0, ""), 0u);
    EXPECT_EQ(ip_ospf_auth_md5key(0, name, 1, 0, 5, ""), 0u);
    EXPECT_EQ(interfaceBlock(), "");
}

TEST_F(OspfSettings, NetworksComeAndGo) {
    call(process_ospf_network, "add 10.1.2.0 255.255.255.0 0");
    call(process_ospf_network, "add 10.1.3.0 0.0.0.255 5");
    EXPECT_EQ(reply_.take(), "okok");
    EXPECT_NE(processBlock().find(" network 10.1.2.0/24 area 0\n"), std::string::npos)
        << processBlock();
    EXPECT_NE(processBlock().find(" network 10.1.3.0/24 area 5\n"), std::string::npos);
    call(process_ospf_network, "del 10.1.3.0 255.255.255.0 5");
    EXPECT_EQ(reply_.take(), "ok");
    EXPECT_EQ(processBlock().find("10.1.3.0"), std::string::npos) << processBlock();
}

TEST_F(OspfSettings, TheProcessWideOptions) {
    call(process_ospf_ospf_cfg, "120 enable 10 100 2000 8 enable");
    EXPECT_EQ(reply_.take(), "ok");
    const std::string set = processBlock();
    for (const char *line :
         {" distance 120\n", " compatible rfc1583\n", " timers throttle spf 10 100 2000\n",
          " maximum-paths 8\n", " passive-interface default\n"}) {
        EXPECT_NE(set.find(line), std::string::npos) << line << set;
    }
    call(process_ospf_ospf_cfg, "110 no 0 50 5000 64 no");
    EXPECT_EQ(reply_.take(), "ok");
    const std::string unset = processBlock();
    EXPECT_EQ(unset.find("rfc1583"), std::string::npos) << unset;
    EXPECT_EQ(unset.find("passive-interface default"), std::string::npos) << unset;
}

TEST_F(OspfSettings, TheDefaultRouteComesAndGoesWithoutAReply) {
    call(process_ospf_advertise_cfg, "enable enable 20 1");
    EXPECT_NE(processBlock().find(" default-information originate always metric 20 metric-type 1"),
              std::string::npos)
        << processBlock();
    call(process_ospf_advertise_cfg, "disable enable 20 1");
    EXPECT_EQ(processBlock().find("default-information"), std::string::npos) << processBlock();
    EXPECT_EQ(reply_.take(), "");
}

TEST_F(OspfSettings, SwitchingOnSetsTheRouterIdOfARunningDaemon) {
    call(process_ospf_global, "on 9.8.7.6");
    EXPECT_EQ(reply_.take(), "ok");
    EXPECT_NE(processBlock().find(" ospf router-id 9.8.7.6\n"), std::string::npos)
        << processBlock();
    EXPECT_EQ(router_.processCount("ospfd"), 1);
}

} // namespace
