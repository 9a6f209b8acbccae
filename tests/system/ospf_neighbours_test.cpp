// SPDX-License-Identifier: Apache-2.0
// Two routers meet over OSPF: what the handlers set lets them become Full, and their rows and
// interface state reach the front-end and the store.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "common/frr_uci.h"
#include "ospf/frr_ospf.h"
#include "ospf/sw_ospf.h"
#include "tests/support/real_daemons.h"
#include "tests/system/handler_call.h"

namespace {

using routers::call;
using routers::ReplyPipe;
using routers::Router;
using routers::waitFor;

using Lines = std::vector<std::string>;

constexpr auto kSilence = std::chrono::seconds(4); // several hello intervals

class OspfNeighbours : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(swOspfInit(), 0u); }

    void TearDown() override {
        for (const char *daemon : {"ospfd", "ripd", "zebra"}) {
            EXPECT_TRUE(near_.stop(daemon) && far_.stop(daemon)) << daemon;
        }
    }

    void set(const std::string &setting) {
        call(process_ospf_interface, "eth1.2 wan " + setting);
        EXPECT_EQ(reply_.take(), "ok") << setting;
    }

    /// Switches OSPF on through the handlers; settings go before the network. Without a designated
    /// router there is no wait for its election, and the dead interval may outlast a busy machine.
    void switchOn(const Lines &settings) {
        call(process_ospf_global, "on 1.1.1.1");
        ASSERT_EQ(reply_.take(), "ok");
        set("hello 1");
        set("dead 20");
        set("network_type 1");
        for (const std::string &setting : settings) {
            set(setting);
        }
        call(process_ospf_network, "add 10.1.2.0 255.255.255.0 0");
        ASSERT_EQ(reply_.take(), "ok");
    }

    void switchFarOn(const Lines &interfaceLines) const {
        ASSERT_TRUE(far_.start("zebra") && far_.start("ospfd"));
        Lines lines = {"interface eth1.2", "ip ospf hello-interval 1", "ip ospf dead-interval 20",
                       "ip ospf network point-to-point"};
        lines.insert(lines.end(), interfaceLines.begin(), interfaceLines.end());
        for (const char *line :
             {"exit", "router ospf", "ospf router-id 2.2.2.2", "network 10.1.2.0/24 area 0"}) {
            lines.emplace_back(line);
        }
        ASSERT_EQ(far_.configure("ospfd", lines).code, 0);
    }

    bool seesFar() const {
        return near_.vty("ospfd", "show ip ospf neighbor").text.find("2.2.2.2") !=
               std::string::npos;
    }

    bool isFull() const {
        const std::string text = near_.vty("ospfd", "show ip ospf neighbor").text;
        return text.find("2.2.2.2") != std::string::npos && text.find("Full/") != std::string::npos;
    }

    Router near_ = Router::first();
    Router far_ = Router::second();
    ReplyPipe reply_{"/tmp/tmp/ospf_pipe_c2lua"};
    ReplyPipe neighbours_{"/tmp/tmp/ospf_pipe_c2lua_neighbor"};
    ReplyPipe database_{"/tmp/tmp/ospf_pipe_c2lua_database"};
};

TEST_F(OspfNeighbours, BecomeFullAndTheirRowsArrive) {
    switchOn({});
    switchFarOn({});
    ASSERT_TRUE(waitFor([&] { return isFull(); }))
        << near_.vty("ospfd", "show ip ospf neighbor").text;

    process_ospf_neighbor();
    const std::string rows = neighbours_.take();
    EXPECT_EQ(rows.compare(0, 7, "2.2.2.2"), 0) << rows;
    EXPECT_NE(rows.find("Full/"), std::string::npos) << rows;
    EXPECT_NE(rows.find("eth1.2:10.1.2.1"), std::string::npos) << rows;
    EXPECT_EQ(routers::occurrences(rows, "\r\n"), 1u) << rows;
    EXPECT_EQ(rows.substr(rows.size() - 4), "\r\nok");

    process_ospf_lsdb();
    const std::string links = database_.take();
    EXPECT_NE(links.find("1.1.1.1"), std::string::npos) << links;
    EXPECT_NE(links.find("\r\n2.2.2.2"), std::string::npos) << links;
    EXPECT_EQ(links.find("Link ID"), std::string::npos) << links;
    EXPECT_EQ(links.substr(links.size() - 4), "\r\nok");
    EXPECT_EQ(reply_.take(), "");
}

TEST_F(OspfNeighbours, InterfaceStateReachesTheStore) {
    ASSERT_EQ(near_.run("printf \"config interface 'eth1_2'\\n\" > /etc/config/ospf"), 0);
    switchOn({"cost 33"});
    // The daemon hears of the interface's state from zebra.
    ASSERT_TRUE(waitFor([&] {
        return near_.vty("ospfd", "show ip ospf interface").text.find("POINTOPOINT") !=
               std::string::npos;
    }));
    call(process_ospf_interface, "show");
    EXPECT_EQ(reply_.take(), "ok");
    char value[64];
    ASSERT_EQ(frr_uci_get("ospf", "eth1_2", "working", value, sizeof value), 0);
    EXPECT_STREQ(value, "on");
    ASSERT_EQ(frr_uci_get("ospf", "eth1_2", "network_type", value, sizeof value), 0);
    EXPECT_STREQ(value, "1");
    ASSERT_EQ(frr_uci_get("ospf", "eth1_2", "cost", value, sizeof value), 0);
    EXPECT_STREQ(value, "33\r\n");
}

TEST_F(OspfNeighbours, TheSameDigestKeyLetsThemMeet) {
    switchOn({"auto_type 2 5 common"});
    switchFarOn(
        {"ip ospf authentication message-digest", "ip ospf message-digest-key 5 md5 common"});
    EXPECT_TRUE(waitFor([&] { return isFull(); }))
        << near_.vty("ospfd", "show ip ospf neighbor").text;
}

TEST_F(OspfNeighbours, AWrongDigestKeyKeepsThemApartUntilItIsRight) {
    switchOn({"auto_type 2 5 common"});
    switchFarOn(
        {"ip ospf authentication message-digest", "ip ospf message-digest-key 5 md5 wrong"});
    EXPECT_FALSE(waitFor([&] { return seesFar(); }, kSilence));
    ASSERT_EQ(far_.configure("ospfd", {"interface eth1.2", "no ip ospf message-digest-key 5",
                                       "ip ospf message-digest-key 5 md5 common"})
                  .code,
              0);
    EXPECT_TRUE(waitFor([&] { return isFull(); }))
        << near_.vty("ospfd", "show ip ospf neighbor").text;
}

TEST_F(OspfNeighbours, ASimplePasswordLetsThemMeet) {
    switchOn({"auto_type 1 secret"});
    switchFarOn({"ip ospf authentication", "ip ospf authentication-key secret"});
    EXPECT_TRUE(waitFor([&] { return isFull(); }))
        << near_.vty("ospfd", "show ip ospf neighbor").text;
}

TEST_F(OspfNeighbours, SwitchingOffEndsOspfdAndZebraWithIt) {
    switchOn({});
    ASSERT_EQ(near_.processCount("ospfd"), 1);
    call(process_ospf_global, "off x");
    EXPECT_EQ(reply_.take(), "ok");
    EXPECT_TRUE(waitFor([&] { return near_.processCount("ospfd") == 0; }));
    EXPECT_TRUE(waitFor([&] { return near_.processCount("zebra") == 0; }));
}

TEST_F(OspfNeighbours, SwitchingOffKeepsZebraForRipd) {
    switchOn({});
    ASSERT_TRUE(near_.start("ripd"));
    call(process_ospf_global, "off x");
    EXPECT_EQ(reply_.take(), "ok");
    EXPECT_TRUE(waitFor([&] { return near_.processCount("ospfd") == 0; }));
    EXPECT_EQ(near_.processCount("zebra"), 1);
    EXPECT_TRUE(near_.answers("zebra"));
}

} // namespace
