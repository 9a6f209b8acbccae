// SPDX-License-Identifier: Apache-2.0
// RIP on real daemons: settings reach ripd, routers exchange routes, the store is replayed, and
// switching leaves nothing behind.
#include "rip/sw_rip.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "common/frr_uci.h"
#include "rip/frr_rip.h"
#include "rip/frr_rip_recovery.h"
#include "tests/support/real_daemons.h"
#include "vty/frr_util.h"

namespace {

using routers::ReplyPipe;
using routers::Router;
using routers::waitFor;

using Words = std::vector<std::string>;
using Handler = void (*)(int32_t, char **);

constexpr const char *kVrf = "default";
constexpr RipNetIf kKey = {1, 2};

Words split(const std::string &text) {
    std::istringstream stream(text);
    Words words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

void call(Handler handler, Words words) {
    std::vector<char *> vector;
    for (std::string &word : words) {
        vector.push_back(word.data());
    }
    vector.push_back(nullptr);
    handler(static_cast<int32_t>(words.size()), vector.data());
}

void writeFile(const std::string &path, const std::string &text) {
    std::ofstream file(path);
    file << text;
    ASSERT_TRUE(file.flush()) << path;
}

std::string readFile(const std::string &path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// The front-end's answers: VLANs 2 to 4 are WAN VLANs, none is a LAN VLAN.
void makeFrontEnd(const Router &router) {
    const std::string folder = "/tmp/lua/luci/controller/admin/";
    ASSERT_EQ(router.run("mkdir -p " + folder), 0);
    const std::string answer = "(v) local f = io.open('/tmp/cli_vid', 'w') f:write(";
    const std::string end = ", '\\n') f:close() end\n";
    const std::string loaded = "package.loaded['luci.controller.admin.";
    writeFile(folder + "lan.lua", "local m = {}\nfunction m.is_vlan_id" + answer + "0" + end +
                                      loaded + "lan'] = m\nreturn m\n");
    writeFile(folder + "interface_wan.lua",
              "local m = {}\nfunction m.is_wan_vlan_id" + answer +
                  "(tonumber(v) >= 2 and tonumber(v) <= 4) and 1 or 0" + end + loaded +
                  "interface_wan'] = m\nreturn m\n");
    (void)setenv("LUA_PATH", "/tmp/lua/?.lua", 1);
}

/// Where the kernel has no filter table, a command in its place keeps the rules and their calls.
void makeFirewall(const Router &router) {
    if (router.run("iptables -t filter -nvL INPUT >/dev/null 2>&1") == 0) {
        return;
    }
    ASSERT_EQ(router.run("mkdir -p /tmp/bin"), 0);
    writeFile("/tmp/bin/iptables",
              "#!/bin/sh\n"
              "case \"$*\" in\n"
              "'-t filter -nvL INPUT') cat /tmp/rules 2>/dev/null ;;\n"
              "'-w -t filter -I INPUT -p udp --dport 520 -j ACCEPT')\n"
              "    echo 'ACCEPT udp dpt:520' >>/tmp/rules ;;\n"
              "'-w -t filter -D INPUT -p udp --dport 520 -j ACCEPT') sed -i 1d /tmp/rules ;;\n"
              "'-F INPUT') rm -f /tmp/rules ;;\n"
              "*) exit 2 ;;\n"
              "esac\n");
    ASSERT_EQ(router.run("chmod 755 /tmp/bin/iptables"), 0);
    (void)setenv("PATH", (std::string("/tmp/bin:") + getenv("PATH")).c_str(), 1);
}

bool hasLine(const std::string &block, const std::string &line) {
    std::istringstream lines(block);
    for (std::string each; std::getline(lines, each);) {
        if (each == " " + line) {
            return true;
        }
    }
    return false;
}

class Rip : public testing::Test {
protected:
    static void SetUpTestSuite() {
        makeFrontEnd(Router::first());
        makeFirewall(Router::first());
    }

    void SetUp() override {
        restartLibrary();
        (void)near.run("rm -f /tmp/tmp/data /etc/config/rip");
        ASSERT_TRUE(near.startManagement());
    }

    void TearDown() override {
        for (const char *daemon : {"ripd", "ospfd", "zebra", "mgmtd"}) {
            EXPECT_TRUE(near.stop(daemon)) << daemon;
            EXPECT_TRUE(far.stop(daemon)) << daemon;
        }
        EXPECT_EQ(near.run("iptables -F INPUT"), 0);
    }

    /// As after a restart of the host: the model is empty.
    static void restartLibrary() {
        ASSERT_EQ(frrVtyInit(), 0);
        ASSERT_EQ(swRipInit(), 0U);
    }

    void handle(Handler handler, const std::string &words) {
        call(handler, split(words));
        EXPECT_EQ(pipe.take(), "ok") << words;
    }

    void switchOn() {
        handle(process_rip_global, "on");
        ASSERT_TRUE(near.answers("ripd"));
    }

    int rules() const {
        return std::stoi(near.output("iptables -t filter -nvL INPUT | grep -c dpt:520"));
    }

    /// The key is the only one of its chain.
    void expectKey(int id, const std::string &key) const {
        const std::string chain = near.block("ripd", "key chain app_rip_" + std::to_string(id));
        const std::string lines = " key " + std::to_string(id) + "\n  key-string " + key + "\n";
        EXPECT_EQ(chain.substr(0, lines.size()), lines);
        EXPECT_EQ(chain.rfind(" key "), 0U) << chain;
    }

    std::string log() const { return readFile("/tmp/tmp/data"); }

    Router near = Router::first();
    Router far = Router::second();
    ReplyPipe pipe{"/tmp/tmp/ospf_pipe_c2lua"};
};

// ---- settings ----

/// What a page sets, and the line that ripd then has in its configuration or, with a "-" in front,
/// no longer has.
struct Setting {
    Handler handler;
    const char *words;
    const char *line;
};

constexpr const char *kNetwork = "network 10.1.2.0/24";

const Setting kInstanceSettings[] = {
    {process_rip_config,  "rip_version ripv1",             "version 1"                    },
    {process_rip_config,  "rip_version ripv2",             "version 2"                    },
    {process_rip_config,  "rip_version default",           "-version 2"                   },
    {process_rip_config,  "rip_distance 77",               "distance 77"                  },
    {process_rip_config,  "default_metric 16",             "default-metric 16"            },
    {process_rip_config,  "redistribute_static enable 0",  "redistribute static"          },
    {process_rip_config,  "redistribute_static enable 4",  "redistribute static metric 4" },
    {process_rip_config,  "redistribute_static disable 4", "-redistribute static metric 4"},
    {process_rip_config,  "redistribute_ospf enable 0",    "redistribute ospf"            },
    {process_rip_config,  "redistribute_ospf enable 16",   "redistribute ospf metric 16"  },
    {process_rip_config,  "redistribute_ospf disable 0",   "-redistribute ospf metric 16" },
    {process_rip_config,  "update_timer 5",                "timers basic 5 180 120"       },
    {process_rip_config,  "timeout_timer 300",             "timers basic 5 300 120"       },
    {process_rip_config,  "garbage_timer 500",             "timers basic 5 300 500"       },
    {process_rip_network, "add 10.1.2.0 255.255.255.0",    kNetwork                       },
    {process_rip_network, "delete 10.1.2.0 255.255.255.0", "-network 10.1.2.0/24"         },
};

const Setting kInterfaceSettings[] = {
    {process_rip_interface, "split_horizon_mode eth1.2 poison_reverse",
     "ip rip split-horizon poisoned-reverse"                                                                 },
    {process_rip_interface, "split_horizon_mode eth1.2 none",              "no ip rip split-horizon"         },
    {process_rip_interface, "split_horizon_mode eth1.2 split_horizon",     "-no ip rip split-horizon"        },
    {process_rip_interface, "send_version eth1.2 ripv1",                   "ip rip send version 1"           },
    {process_rip_interface, "send_version eth1.2 ripv2",                   "ip rip send version 2"           },
    {process_rip_interface, "receive_version eth1.2 ripv1",                "ip rip receive version 1"        },
    {process_rip_interface, "receive_version eth1.2 ripv2",                "ip rip receive version 2"        },
    {process_rip_interface, "receive_version eth1.2 both",                 "ip rip receive version 1 2"      },
    {process_rip_interface, "authen_mode eth1.2 simple 1 0123456789abcde",
     "ip rip authentication string 0123456789abcde"                                                          },
    {process_rip_interface, "authen_mode eth1.2 md5 3 secret",
     "ip rip authentication key-chain app_rip_3"                                                             },
    {process_rip_interface, "authen_mode eth1.2 simple 1 plain",
     "-ip rip authentication key-chain app_rip_3"                                                            },
    {process_rip_interface, "authen_mode eth1.2 none",                     "-ip rip authentication mode text"},
};

void expectLine(const std::string &block, const Setting &setting) {
    const bool gone = setting.line[0] == '-';
    EXPECT_EQ(hasLine(block, setting.line + (gone ? 1 : 0)), !gone) << setting.words << "\n"
                                                                    << block;
}

TEST_F(Rip, InstanceSettingsReachTheConfiguration) {
    switchOn();
    for (const Setting &setting : kInstanceSettings) {
        handle(setting.handler, setting.words);
        expectLine(near.block("ripd", "router rip"), setting);
    }
}

TEST_F(Rip, InterfaceSettingsReachTheConfiguration) {
    switchOn();
    for (const Setting &setting : kInterfaceSettings) {
        handle(setting.handler, setting.words);
        expectLine(near.block("ripd", "interface eth1.2"), setting);
    }
}

TEST_F(Rip, TheKeyChainHoldsTheKey) {
    switchOn();
    handle(process_rip_interface, "authen_mode eth1.2 md5 3 secret");
    expectKey(3, "secret");
    handle(process_rip_interface, "authen_mode eth1.2 md5 3 other");
    expectKey(3, "other");
}

/// Commands that no page asks for.
TEST_F(Rip, FurtherCommandsReachTheConfiguration) {
    switchOn();
    struct Command {
        uint32_t status;
        const char *line;
        bool there;
    };
    const auto check = [&](const std::string &heading, const Command &command) {
        EXPECT_EQ(command.status, 0U) << command.line;
        EXPECT_EQ(hasLine(near.block("ripd", heading), command.line), command.there)
            << command.line << "\n"
            << near.runningConfig("ripd");
    };
    check("router rip", {swRipNeighborSet(kVrf, "10.1.2.2", 1, 0), "neighbor 10.1.2.2", true});
    check("router rip", {swRipNeighborSet(kVrf, "10.1.2.2", 0, 0), "neighbor 10.1.2.2", false});
    check("router rip",
          {swRipDefaultInformationSet(kVrf, 1), "default-information originate", true});
    check("router rip",
          {swRipDefaultInformationSet(kVrf, 0), "default-information originate", false});
    check("router rip",
          {swRipRouteStaticSet(kVrf, "10.9.0.0", "255.255.0.0", 1), "route 10.9.0.0/16", true});
    check("router rip",
          {swRipRouteStaticSet(kVrf, "10.9.0.0", "255.255.0.0", 0), "route 10.9.0.0/16", false});
    // Cut to "route 100.100.100.100/2".
    check("router rip", {swRipRouteStaticSet(kVrf, "100.100.100.100", "255.255.255.0", 1),
                         "route 64.0.0.0/2", true});
    // Since 10.7 a prefix with host bits takes nothing away.
    check("router rip", {swRipRouteStaticSet(kVrf, "100.100.100.100", "255.255.255.0", 0),
                         "route 64.0.0.0/2", routers::frrVersion() >= 1007});
    check("router rip",
          {swRipIfPassiveInterfaceVlanSet(kKey, 1), "passive-interface eth1.2", true});
    check("router rip",
          {swRipIfPassiveInterfaceVlanSet(kKey, 0), "passive-interface eth1.2", false});
    check("router rip", {swRipDistanceSet(kVrf, 9, 1), "distance 9", true});
    check("router rip", {swRipDistanceSet(kVrf, 9, 0), "distance 9", false});
    check("router rip", {swRipDefaultMetricSet(kVrf, 3, 1), "default-metric 3", true});
    check("router rip", {swRipDefaultMetricSet(kVrf, 3, 0), "default-metric 3", false});
    check("router rip", {swRipTimerSet(kVrf, 1, 10, 1), "timers basic 10 180 120", true});
    check("router rip", {swRipTimerSet(kVrf, 0, 0, 0), "timers basic 10 180 120", false});
    check("interface eth1.2",
          {swRipIfV2BroadcastSet("eth1.2", kKey, 1), "ip rip v2-broadcast", true});
    check("interface eth1.2",
          {swRipIfV2BroadcastSet("eth1.2", kKey, 0), "ip rip v2-broadcast", false});
    check("interface eth1.2",
          {swRipIfSendVersionSet("eth1.2", kKey, 1, 1), "ip rip send version 1", true});
    check("interface eth1.2",
          {swRipIfSendVersionSet("eth1.2", kKey, 1, 0), "ip rip send version 1", false});
    check("interface eth1.2",
          {swRipIfReceiveVersionSet("eth1.2", kKey, 1, 1), "ip rip receive version 1", true});
    check("interface eth1.2",
          {swRipIfReceiveVersionSet("eth1.2", kKey, 1, 0), "ip rip receive version 1", false});
}

TEST_F(Rip, PassiveInterfaceOfNoVlanIsNotSent) {
    switchOn();
    EXPECT_EQ(swRipIfPassiveInterfaceVlanSet({1, 77}, 1), 1U);
    EXPECT_EQ(near.runningConfig("ripd").find("passive"), std::string::npos);
}

TEST_F(Rip, WhatRipdRefusesIsNotStored) {
    switchOn();
    const std::string before = near.runningConfig("ripd");
    uint32_t value = 7;
    EXPECT_EQ(swRipAutoSummSet(kVrf, 1), 0xFFFFFFFFU);
    EXPECT_EQ(ucRipAutosummGet(kVrf, &value), 0U);
    EXPECT_EQ(value, 0U);
    EXPECT_EQ(swRipAutoSummSet(kVrf, 0), 0xFFFFFFFFU);
    EXPECT_EQ(swRipDefaultMetricSet(kVrf, 0, 1), 0xFFFFFFFFU); // ripd begins with 1
    EXPECT_EQ(ucRipDefaultMetricGet(kVrf, &value), 0U);
    EXPECT_EQ(value, 1U);
    EXPECT_EQ(near.runningConfig("ripd"), before);
}

TEST_F(Rip, KeysOf16And17And300Characters) {
    switchOn();
    RipInterfaceNode *interface = nullptr;
    const std::string k16 = "0123456789abcdef";
    const std::string k17 = k16 + "g";
    const std::string k300(300, 'k');
    const auto set = [](uint32_t mode, uint32_t keyid, const std::string &key) {
        return swRipIfAuthenticationSet("eth1.2", kKey, mode, keyid, key.c_str(), 1);
    };
    // ripd refuses a longer text than 16 characters, so nothing of it is stored.
    for (const std::string &key : {k17, k300}) {
        EXPECT_EQ(set(1, 1, key), 1U);
        EXPECT_EQ(ucRipIfFindByNetIf(kKey, &interface), 1U);
    }
    EXPECT_EQ(set(1, 1, k16), 0U);
    EXPECT_TRUE(
        hasLine(near.block("ripd", "interface eth1.2"), "ip rip authentication string " + k16));
    ASSERT_EQ(ucRipIfFindByNetIf(kKey, &interface), 0U);
    EXPECT_EQ(interface->auth_str, k16);
    // A key chain takes longer ones; the model does not, and keeps the key id only.
    EXPECT_EQ(set(2, 2, k17), 1U);
    expectKey(2, k17);
    EXPECT_EQ(interface->auth_keyid, 2);
    EXPECT_EQ(interface->auth_type, 1U);
    EXPECT_EQ(set(2, 3, k300), 1U);
    expectKey(3, k300.substr(0, 255 - std::string("key-string ").size()));
    EXPECT_EQ(interface->auth_keyid, 3);
    EXPECT_EQ(interface->auth_str, k16);
    EXPECT_EQ(set(2, 4, k16), 0U);
    expectKey(4, k16);
    EXPECT_EQ(interface->auth_type, 2U);
}

TEST_F(Rip, OddInterfaceNames) {
    switchOn();
    for (const std::string &name : {std::string("eth1"), std::string("eth1.2.3"),
                                    std::string("eth1.abc"), std::string(".")}) {
        handle(process_rip_interface, "send_version " + name + " ripv1");
        EXPECT_TRUE(hasLine(near.block("ripd", "interface " + name), "ip rip send version 1"))
            << name << "\n"
            << near.runningConfig("ripd");
    }
    const std::string before = near.runningConfig("ripd");
    handle(process_rip_interface, "send_version " + std::string(300, 'e') + " ripv1");
    EXPECT_EQ(near.runningConfig("ripd"), before)
        << near.processCount("mgmtd") << " mgmtd, " << near.processCount("ripd") << " ripd";
}

TEST_F(Rip, InternalLinks) {
    ASSERT_TRUE(near.start("zebra"));
    ASSERT_TRUE(near.start("ripd"));
    EXPECT_EQ(init_rip_interface(), 0U);
    EXPECT_TRUE(hasLine(near.block("ripd", "router rip"), "network 169.254.11.20/30"))
        << near.runningConfig("ripd");
    for (const char *link : {"br-lan", "veth1"}) {
        const std::string block = near.block("ripd", std::string("interface ") + link);
        EXPECT_TRUE(hasLine(block, "ip rip send version 2")) << block;
        EXPECT_TRUE(hasLine(block, "ip rip receive version 1 2")) << block;
    }
}

// ---- two routers ----

class TwoRouters : public Rip {
protected:
    void SetUp() override {
        Rip::SetUp();
        ASSERT_EQ(near.run("ip address delete 192.168.3.1/24 dev eth0.3"), 0);
    }
    void TearDown() override {
        EXPECT_EQ(near.run("ip address add 192.168.3.1/24 broadcast + dev eth0.3"), 0);
        Rip::TearDown();
    }

    /// Both sides authenticate with MD5; the far side announces 192.168.3.0/24.
    void meet(const std::string &nearKey, const std::string &farKey) {
        switchOn();
        handle(process_rip_config, "update_timer 5");
        handle(process_rip_interface, "authen_mode eth1.2 md5 7 " + nearKey);
        handle(process_rip_network, "add 10.1.2.0 255.255.255.0");
        ASSERT_TRUE(far.startManagement());
        ASSERT_TRUE(far.start("zebra"));
        ASSERT_TRUE(far.start("ripd"));
        const Words chain = {"key chain k", "key 7", "key-string " + farKey};
        const Words interface = {"interface eth1.2", "ip rip authentication mode md5",
                                 "ip rip authentication key-chain k"};
        const Words process = {"router rip", "timers basic 5 15 10", "network eth1.2",
                               "network 192.168.3.0/24"};
        for (const Words &lines : {chain, interface, process}) {
            const routers::Reply reply = far.configure("ripd", lines);
            ASSERT_EQ(reply.code, 0) << reply.text;
        }
    }

    bool hasRoute() const {
        return near.output("ip route show 192.168.3.0/24").find("via 10.1.2.2") !=
               std::string::npos;
    }

    /// Packets of the far router that ripd threw away.
    int badPackets() const {
        std::istringstream lines(near.vty("ripd", "show ip rip status").text);
        for (std::string line; std::getline(lines, line);) {
            const Words words = split(line);
            if (words.size() > 1 && words[0] == "10.1.2.2") {
                return std::stoi(words[1]);
            }
        }
        return 0;
    }
};

TEST_F(TwoRouters, ARouteArrivesUnderTheSameKey) {
    meet("secret", "secret");
    EXPECT_TRUE(waitFor([&] { return hasRoute(); })) << near.vty("ripd", "show ip rip status").text;
}

TEST_F(TwoRouters, AnotherKeyKeepsTheRouteAway) {
    meet("secret", "other");
    EXPECT_TRUE(waitFor([&] { return badPackets() >= 2; }))
        << near.vty("ripd", "show ip rip status").text;
    EXPECT_FALSE(hasRoute());
    handle(process_rip_interface, "authen_mode eth1.2 md5 7 other");
    EXPECT_TRUE(waitFor([&] { return hasRoute(); })) << near.vty("ripd", "show ip rip status").text;
}

// ---- status ----

TEST_F(Rip, StatusUpGoesIntoTheStore) {
    writeFile("/etc/config/rip", "config interface 'eth1_2'\n\toption interface 'eth1.2'\n\n"
                                 "config interface 'eth1_3'\n\toption interface 'eth1.3'\n\n"
                                 "config interface 'eth1_4'\n\toption interface 'eth1.4'\n");
    switchOn();
    handle(process_rip_network, "add 10.1.2.0 255.255.255.0");
    handle(process_rip_network, "add 10.1.3.0 255.255.255.0");
    handle(process_rip_interface, "send_version eth1.3 ripv1");
    ASSERT_TRUE(waitFor([&] {
        const std::string status = near.vty("ripd", "show ip rip status").text;
        return status.find("eth1.2 ") != std::string::npos &&
               status.find("eth1.3 ") != std::string::npos;
    }));
    handle(process_rip_interface, "show now");
    char status[64];
    for (const char *section : {"eth1_2", "eth1_3"}) {
        EXPECT_EQ(frr_uci_get("rip", section, "status", status, sizeof status), 0) << section;
        EXPECT_STREQ(status, "up") << section;
    }
    EXPECT_EQ(frr_uci_get("rip", "eth1_4", "status", status, sizeof status), 3);
}

// ---- recovery ----

const std::string kStore = "config global 'global'\n\toption status 'on'\n\n"
                           "config config 'config'\n"
                           "\toption rip_version 'ripv2'\n"
                           "\toption rip_distance '77'\n"
                           "\toption auto_summary 'enable'\n"
                           "\toption default_metric '5'\n"
                           "\toption redistribute_static 'enable'\n"
                           "\toption redistribute_static_metric '4'\n"
                           "\toption redistribute_ospf 'enable'\n"
                           "\toption redistribute_ospf_metric '0'\n"
                           "\toption update_timer '10'\n"
                           "\toption timeout_timer '60'\n"
                           "\toption garbage_timer '40'\n\n"
                           "config network\n"
                           "\toption ipaddress '10.1.2.0'\n"
                           "\toption mask '255.255.255.0'\n\n"
                           "config interface 'eth1_2'\n"
                           "\toption interface 'eth1.2'\n"
                           "\toption split_horizon_mode 'poison_reverse'\n"
                           "\toption send_version 'ripv2'\n"
                           "\toption receive_version 'both'\n"
                           "\toption authen_mode 'md5'\n"
                           "\toption key_id '9'\n"
                           "\toption key 'secret'\n\n"
                           "config interface 'eth1_3'\n"
                           "\toption interface 'eth1.3'\n"
                           "\toption authen_mode 'simple'\n"
                           "\toption key 'plain'\n";

TEST_F(Rip, RecoveryGivesWhatThePagesGave) {
    switchOn();
    for (const char *words :
         {"rip_version ripv2", "rip_distance 77", "auto_summary enable", "default_metric 5",
          "redistribute_static enable 4", "redistribute_ospf enable 0", "update_timer 10",
          "timeout_timer 60", "garbage_timer 40"}) {
        handle(process_rip_config, words);
    }
    handle(process_rip_network, "add 10.1.2.0 255.255.255.0");
    for (const char *words :
         {"split_horizon_mode eth1.2 poison_reverse", "send_version eth1.2 ripv2",
          "receive_version eth1.2 both", "authen_mode eth1.2 md5 9 secret",
          "authen_mode eth1.3 simple 1 plain"}) {
        handle(process_rip_interface, words);
    }
    const std::string wanted = near.runningConfig("ripd");
    for (const char *line : {"version 2", "distance 77", "timers basic 10 60 40"}) {
        EXPECT_TRUE(hasLine(near.block("ripd", "router rip"), line)) << line << "\n" << wanted;
    }
    writeFile("/etc/config/rip", kStore);
    for (int restart = 0; restart < 2; ++restart) {
        ASSERT_TRUE(near.stop("ripd"));
        restartLibrary();
        rip_cfg_recovery();
        EXPECT_EQ(near.runningConfig("ripd"), wanted);
    }
    EXPECT_EQ(pipe.take(), "");
}

TEST_F(Rip, RecoveryOfARouterWithRipOffStartsNothing) {
    writeFile("/etc/config/rip", "config global 'global'\n\toption status 'off'\n");
    rip_cfg_recovery();
    EXPECT_EQ(near.processCount("ripd"), 0);
    EXPECT_EQ(near.processCount("zebra"), 0);
    EXPECT_EQ(rules(), 0);
}

TEST_F(Rip, RipdKilledWhileRecoveryRuns) {
    std::string store = kStore;
    for (int i = 0; i < 60; ++i) {
        store += "\nconfig network\n\toption ipaddress '10.50." + std::to_string(i) +
                 ".0'\n\toption mask '255.255.255.0'\n";
    }
    writeFile("/etc/config/rip", store);
    bool killed = false;
    std::thread killer([&] {
        killed = waitFor([&] {
                     return readFile("/tmp/tmp/data").find("frrVtyRun: network 10.50.1.0/24") !=
                            std::string::npos;
                 }) &&
                 near.run("killall -KILL ripd") == 0;
    });
    rip_cfg_recovery();
    killer.join();
    ASSERT_TRUE(killed);
    EXPECT_NE(log().find("recover rip dnete network failed"), std::string::npos);
    EXPECT_NE(log().find("rip_cfg_recovery end"), std::string::npos);
    EXPECT_FALSE(near.answers("ripd"));

    restartLibrary();
    ASSERT_TRUE(near.stop("ripd"));
    // One that loses ripd in the middle of a change may keep its lock.
    ASSERT_TRUE(near.stop("mgmtd") && near.startManagement());
    rip_cfg_recovery();
    const std::string block = near.block("ripd", "router rip");
    for (int i = 0; i < 60; ++i) {
        EXPECT_TRUE(hasLine(block, "network 10.50." + std::to_string(i) + ".0/24")) << i;
    }
}

// ---- switching ----

TEST_F(Rip, SwitchingOnIsIdempotent) {
    EXPECT_EQ(rules(), 0);
    switchOn();
    EXPECT_EQ(rules(), 1);
    EXPECT_EQ(near.processCount("ripd"), 1);
    EXPECT_EQ(near.processCount("zebra"), 1);
    handle(process_rip_config, "rip_distance 77");
    switchOn();
    EXPECT_EQ(rules(), 1);
    EXPECT_EQ(near.processCount("ripd"), 1);
    EXPECT_EQ(near.processCount("zebra"), 1);
    EXPECT_TRUE(hasLine(near.block("ripd", "router rip"), "distance 77"));
}

TEST_F(Rip, SwitchingOffEndsEverything) {
    switchOn();
    handle(process_rip_global, "off");
    EXPECT_TRUE(waitFor([&] { return near.processCount("ripd") == 0; }));
    EXPECT_TRUE(waitFor([&] { return near.processCount("zebra") == 0; }));
    EXPECT_EQ(rules(), 0);
    handle(process_rip_global, "off");
    EXPECT_EQ(rules(), 0);
}

TEST_F(Rip, SwitchingOffLeavesZebraToOspf) {
    switchOn();
    ASSERT_TRUE(near.start("ospfd"));
    handle(process_rip_global, "off");
    EXPECT_TRUE(waitFor([&] { return near.processCount("ripd") == 0; }));
    EXPECT_EQ(near.processCount("zebra"), 1);
    EXPECT_TRUE(near.answers("zebra"));
    EXPECT_EQ(rules(), 0);
}

} // namespace
