// SPDX-License-Identifier: Apache-2.0
// The plugin on real daemons of both routers.

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "tests/host/program.h"
#include "tests/rpcd/json_text.h"
#include "tests/rpcd/many.h"
#include "tests/support/real_daemons.h"

namespace {

using program::has;
using program::Outcome;
using routers::Router;
using routers::waitFor;
using Lines = std::vector<std::string>;

void store(const std::string &package, const std::string &text) {
    std::ofstream("/etc/config/" + package) << text;
}

/// The answer without spaces.
std::string answer(const std::string &method, const std::string &arguments = "{}") {
    const Outcome outcome = program::frruci({"rpcd", "call", method}, arguments);
    EXPECT_EQ(outcome.status, 0) << method << outcome.errors;
    return jsontext::compact(outcome.output);
}

bool comesToSay(const std::string &method, const std::string &text) {
    return waitFor([&] { return has(answer(method), text); });
}

class PluginOnDaemons : public testing::Test {
protected:
    void SetUp() override {
        setenv("FRRUCI_LIBRARY", LIBRARY, 1);
        for (const char *package : {"ospf", "rip", "nhrp"}) {
            store(package, "");
        }
        ASSERT_TRUE(near_.startManagement() && far_.startManagement());
        ASSERT_TRUE(near_.start("zebra") && far_.start("zebra"));
    }

    void TearDown() override {
        for (const char *daemon : {"ospfd", "ripd", "nhrpd", "zebra", "mgmtd"}) {
            EXPECT_TRUE(near_.stop(daemon)) << daemon;
            EXPECT_TRUE(far_.stop(daemon)) << daemon;
        }
    }

    const Router near_ = Router::first();
    const Router far_ = Router::second();
};

Lines ospfLines(const std::string &routerId, const std::string &last) {
    return {"interface eth1.2",
            "ip ospf hello-interval 1",
            "ip ospf dead-interval 3",
            "exit",
            "interface eth1.3",
            "ip ospf network point-to-point",
            "ip ospf hello-interval 1",
            "ip ospf dead-interval 3",
            "ip ospf cost 33",
            "exit",
            "interface eth1.4",
            "ip ospf passive",
            "exit",
            "router ospf",
            "ospf router-id " + routerId,
            "network 10.1.2.0/24 area 0",
            "network 10.1.3.0/24 area 0",
            "network 10.1.4.0/24 area 7",
            "area 7 stub",
            last};
}

TEST_F(PluginOnDaemons, TwoRoutersThatAreNeighbours) {
    ASSERT_TRUE(near_.start("ospfd") && far_.start("ospfd"));
    EXPECT_EQ(answer("neighbors"), R"({"running":true,"neighbors":[]})");
    EXPECT_EQ(answer("database"), R"({"running":true,"areas":[],"external":[]})");
    ASSERT_EQ(near_.configure("ospfd", ospfLines("1.1.1.1", "timers throttle spf 0 50 100")).code,
              0);
    ASSERT_EQ(far_.configure("ospfd",
                             ospfLines("2.2.2.2", "default-information originate always metric 5 "
                                                  "metric-type 1"))
                  .code,
              0);
    EXPECT_TRUE(comesToSay("neighbors", R"({"id":"2.2.2.2","address":"10.1.2.2","interface":)"
                                        R"("eth1.2","state":"Full","role":")"))
        << answer("neighbors");
    EXPECT_TRUE(comesToSay("neighbors", R"({"id":"2.2.2.2","address":"10.1.3.2","interface":)"
                                        R"("eth1.3","state":"Full","role":"DROther","priority":1,)"
                                        R"("uptime":)"));
    EXPECT_EQ(answer("neighbors").find(R"({"running":true,"router_id":"1.1.1.1","neighbors":[)"),
              0U);

    EXPECT_TRUE(
        comesToSay("database", R"({"id":"2.2.2.2","links":[{"type":"transit","id":"10.1.2.)"));
    EXPECT_TRUE(comesToSay("database", R"({"type":"point-to-point","id":"2.2.2.2",)"
                                       R"("data":"10.1.3.1","metric":33})"));
    EXPECT_TRUE(comesToSay("database", R"("mask":24,"routers":["1.1.1.1","2.2.2.2"])"));
    EXPECT_TRUE(comesToSay("database", R"({"id":"0.0.0.7","routers":[)"));
    EXPECT_TRUE(comesToSay("database",
                           R"("external":[{"network":"0.0.0.0/0","router":"2.2.2.2","metric":5,)"
                           R"("metric_type":1}]})"))
        << answer("database");

    const std::string interfaces = answer("interfaces");
    EXPECT_TRUE(has(interfaces, R"({"name":"eth1.2","up":true,"address":"10.1.2.1/24",)"
                                R"("area":"0.0.0.0","type":"broadcast","state":")"))
        << interfaces;
    EXPECT_TRUE(has(interfaces,
                    R"("type":"point-to-point","state":"Point-To-Point","cost":33,"hello":1,)"
                    R"("dead":3,"priority":1,"passive":false,"neighbors":1,"adjacent":1})"))
        << interfaces;
    EXPECT_TRUE(has(interfaces, R"({"name":"eth1.4","up":true,"address":"10.1.4.1/24",)"
                                R"("area":"0.0.0.7","type":"broadcast",)"))
        << interfaces;
    EXPECT_TRUE(has(interfaces, R"("hello":10,"dead":40,"priority":1,"passive":true,)"
                                R"("neighbors":0,"adjacent":0})"))
        << interfaces;
    for (const char *vid : {"2", "3", "4"}) {
        for (const char *side : {"lan", "wan"}) {
            const bool isWan = side == std::string("wan");
            const std::string port = isWan ? "1" : "0";
            EXPECT_TRUE(has(interfaces, R"({"name":"eth)" + port + "." + vid +
                                            R"(","section":"eth)" + port + "_" + vid +
                                            R"(","ns":")" + side + R"(","up":true,"address":")" +
                                            (isWan ? "10.1." : "192.168.") + vid + R"(.1/24"})"))
                << interfaces;
        }
    }
    EXPECT_FALSE(has(interfaces, "tun0"));
    EXPECT_FALSE(has(interfaces, "br-lan"));
}

TEST_F(PluginOnDaemons, Rip) {
    ASSERT_TRUE(near_.start("ripd") && far_.start("ripd"));
    const Lines common = {"interface eth1.2", "ip rip receive version 1 2", "exit",
                          "router rip",       "timers basic 5 15 10",       "network eth1.2"};
    Lines near = {"key chain app_rip_1",
                  "key 1",
                  "key-string geheim",
                  "exit",
                  "exit",
                  "interface eth1.3",
                  "ip rip authentication mode md5",
                  "ip rip authentication key-chain app_rip_1",
                  "exit"};
    near.insert(near.end(), common.begin(), common.end());
    for (const char *line :
         {"network 10.1.3.0/24", "version 2", "distance 99", "redistribute static metric 3"}) {
        near.emplace_back(line);
    }
    Lines far = common;
    far.emplace_back("network 192.168.3.0/24");
    EXPECT_EQ(near_.configure("ripd", near).code, 0);
    EXPECT_EQ(far_.configure("ripd", far).code, 0);
    EXPECT_TRUE(comesToSay("rip", R"({"network":"192.168.3.0/24","next_hop":"10.1.2.2",)"
                                  R"("metric":2,"from":"10.1.2.2"})"))
        << answer("rip");
    const std::string rip = answer("rip");
    EXPECT_TRUE(has(rip, R"("update":5,"timeout":15,"garbage":10,"default_metric":1,)"
                         R"("version":"2","distance":99,"redistribute":["static"],)"
                         R"("networks":["10.1.3.0/24","eth1.2"],"interfaces":[)"
                         R"({"name":"eth1.2","send":"2","receive":"1 2"},)"
                         R"({"name":"eth1.3","send":"2","receive":"2","key_chain":"app_rip_1"}],)"
                         R"("sources":[{"gateway":"10.1.2.2","bad_packets":)"))
        << rip;
    EXPECT_FALSE(has(rip, "geheim"));
}

TEST_F(PluginOnDaemons, NhrpsCache) {
    ASSERT_TRUE(near_.start("nhrpd"));
    EXPECT_EQ(answer("nhrp_cache"), R"({"running":true,"entries":[]})");
    const std::string show = R"({"handler":"process_nhrp_show","words":["x","ip","nhrp","cache"]})";
    EXPECT_EQ(
        answer("call", show),
        R"({"reply":"{\"attr\":{\"entriesCount\":0},\"table\":[]}","status":0,"refused":[]})");
    ASSERT_EQ(near_
                  .configure("nhrpd", {"interface tun0", "ip nhrp network-id 1",
                                       "ip nhrp map 172.16.0.9 10.1.2.2"})
                  .code,
              0);
    EXPECT_TRUE(comesToSay("nhrp_cache",
                           R"({"running":true,"entries":[{"interface":"tun0","type":"static",)"
                           R"("protocol":"172.16.0.9","nbma":"10.1.2.2"}]})"))
        << answer("nhrp_cache");
}

TEST_F(PluginOnDaemons, StatusWithAStoppedAndASilentDaemon) {
    ASSERT_TRUE(near_.start("ospfd") && near_.start("nhrpd"));
    store("ospf", "config global 'global'\n\toption status 'on'\n");
    std::string status = answer("status");
    const std::string major = routers::frrVersion() < 1000 ? "8." : "10.";
    EXPECT_TRUE(has(status, R"({"name":"zebra","state":"running","version":")" + major)) << status;
    EXPECT_TRUE(has(status, R"({"name":"ripd","state":"stopped"})")) << status;
    EXPECT_TRUE(has(status, R"("ospf":{"stored":"on","running":true})")) << status;
    EXPECT_EQ(routers::frrVersion() >= 1000, has(status, R"("name":"mgmtd","state":"running")"));
    EXPECT_EQ(near_.run("killall -STOP nhrpd"), 0);
    status = answer("status");
    EXPECT_TRUE(has(status, R"({"name":"nhrpd","state":"silent"})")) << status;
    EXPECT_EQ(answer("nhrp_cache"), R"({"running":false,"entries":[]})");
    EXPECT_EQ(near_.run("killall -CONT nhrpd"), 0);
    EXPECT_TRUE(comesToSay("status", R"({"name":"nhrpd","state":"running")"));
    // A router in a container of this one has an ospfd of its own.
    ASSERT_TRUE(far_.start("ospfd"));
    ASSERT_TRUE(near_.stop("ospfd"));
    status = answer("status");
    EXPECT_TRUE(has(status, R"("ospf":{"stored":"on","running":false})")) << status;
    EXPECT_TRUE(has(status, R"({"name":"ospfd","state":"stopped"})")) << status;
}

TEST_F(PluginOnDaemons, AnApplyWithARefusedLine) {
    ASSERT_TRUE(near_.start("ospfd"));
    const auto storeCost = [](const std::string &cost) {
        store("ospf", "config global 'global'\n\toption status 'on'\n"
                      "\toption router_id '1.1.1.1'\nconfig interface 'eth1_2'\n"
                      "\toption interface 'eth1.2'\n\toption ns 'wan'\n\toption priority '1'\n"
                      "\toption network_type '0'\n\toption auto_type '2'\n"
                      "\toption md5_key_id '5'\n\toption md5_key 'geheim'\n\toption cost '" +
                          cost + "'\n");
    };
    storeCost("70000");
    const std::string diff = answer("diff");
    EXPECT_TRUE(has(diff, R"({"sign":"+","daemon":"ospfd","text":" ip ospf cost 70000"})")) << diff;
    const std::string refused = R"("refused":[{"protocol":"ospf","daemon":"ospfd",)"
                                R"("context":"interface eth1.2","command":"ip ospf cost 70000",)"
                                R"("answer":"% )";
    const std::string applied = answer("apply");
    EXPECT_TRUE(has(applied, refused)) << applied;
    EXPECT_TRUE(has(applied, R"(,"status":1})")) << applied;
    EXPECT_TRUE(has(answer("status"), refused)) << answer("status");
    storeCost("77");
    EXPECT_TRUE(has(answer("apply"), R"({"changes":1,"refused":[],"status":0})"));
    EXPECT_TRUE(has(answer("status"), R"(,"changes":1,"refused":[]}})")) << answer("status");
    EXPECT_TRUE(has(near_.block("ospfd", "interface eth1.2"), "ip ospf cost 77\n"));
    EXPECT_EQ(answer("diff"), R"({"differences":0,"lines":[],"status":0})");
    EXPECT_FALSE(has(diff + applied + answer("status"), "geheim"));
}

/// A daemon lets five wait.
TEST_F(PluginOnDaemons, FiftyAtOnceAreAnsweredRight) {
    ASSERT_TRUE(near_.start("ospfd"));
    ASSERT_EQ(near_
                  .configure("ospfd", {"router ospf", "ospf router-id 1.1.1.1",
                                       "network 10.1.2.0/24 area 0"})
                  .code,
              0);
    const std::string expected = R"({"running":true,"router_id":"1.1.1.1","neighbors":[]})";
    EXPECT_EQ(many::answers("neighbors", 50), std::vector<std::string>(50, expected));
}

/// The watch keeps what was refused, as the verb does.
TEST_F(PluginOnDaemons, AWatchThatIsRefusedALine) {
    ASSERT_TRUE(near_.start("ospfd"));
    unlink("/tmp/tmp/applied");
    store("ospf", "config global 'global'\n\toption status 'on'\n\toption router_id '1.1.1.1'\n"
                  "config interface 'eth1_2'\n\toption interface 'eth1.2'\n"
                  "\toption cost '70000'\n");
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    const pid_t watch = program::start({"watch"}, nowhere, nowhere, nowhere);
    EXPECT_TRUE(comesToSay("status", R"("watch":{"running":true})"));
    EXPECT_TRUE(comesToSay("status", R"("command":"ip ospf cost 70000","answer":"% )"));
    store("ospf", "config global 'global'\n\toption status 'on'\n\toption router_id '1.1.1.1'\n"
                  "config interface 'eth1_2'\n\toption interface 'eth1.2'\n"
                  "\toption cost '70'\n");
    kill(watch, SIGHUP);
    EXPECT_TRUE(comesToSay("status", R"("changes":1,"refused":[]})")) << answer("status");
    kill(watch, SIGTERM);
    EXPECT_EQ(program::wait(watch), 0);
    EXPECT_TRUE(comesToSay("status", R"("watch":{"running":false})"));
    close(nowhere);
}

/// What FRR 10's mgmtd holds differs too, and reading it waits for nobody.
TEST_F(PluginOnDaemons, ADifferenceOfRip) {
    ASSERT_TRUE(near_.start("ripd"));
    store("rip", "config global 'global'\n\toption status 'on'\n"
                 "config config 'config'\n\toption rip_distance '77'\n");
    EXPECT_TRUE(has(answer("diff"), R"("text":" distance 77"})")) << answer("diff");
    EXPECT_TRUE(has(answer("apply", R"({"protocols":["rip"]})"), R"("refused":[],"status":0})"));
    EXPECT_EQ(answer("diff", R"({"protocols":["rip"]})"),
              R"({"differences":0,"lines":[],"status":0})");
}

} // namespace
