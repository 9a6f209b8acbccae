// SPDX-License-Identifier: Apache-2.0
// The routers that the other system tests stand on: daemons start, answer and stop, and two routers
// meet.
#include "tests/support/real_daemons.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using routers::Reply;
using routers::Router;
using routers::waitFor;

using Lines = std::vector<std::string>;

/// Interface settings come first: the wait for a designated router starts with the network
/// statement.
Lines ospfLines(const std::string &routerId, const Lines &interfaceLines) {
    Lines lines{"interface eth1.2", "ip ospf hello-interval 1", "ip ospf dead-interval 2"};
    lines.insert(lines.end(), interfaceLines.begin(), interfaceLines.end());
    const Lines process{"exit", "router ospf", "ospf router-id " + routerId,
                        "network 10.1.2.0/24 area 0"};
    lines.insert(lines.end(), process.begin(), process.end());
    return lines;
}

class Routers : public testing::Test {
protected:
    void startManagement() const { ASSERT_TRUE(near.startManagement() && far.startManagement()); }

    void startBoth(const Lines &daemons) const {
        for (const std::string &daemon : daemons) {
            ASSERT_TRUE(near.start(daemon)) << daemon;
            ASSERT_TRUE(far.start(daemon)) << daemon;
        }
    }

    void meetOverOspf(const Lines &nearLines, const Lines &farLines) const {
        startBoth({"zebra", "ospfd"});
        ASSERT_EQ(0, near.configure("ospfd", ospfLines("1.1.1.1", nearLines)).code);
        ASSERT_EQ(0, far.configure("ospfd", ospfLines("2.2.2.2", farLines)).code);
    }

    bool nearIsFull() const {
        const Reply reply = near.vty("ospfd", "show ip ospf neighbor");
        return reply.text.find("2.2.2.2") != std::string::npos &&
               reply.text.find("Full/") != std::string::npos;
    }

    void TearDown() override {
        for (const char *daemon : {"ospfd", "ripd", "nhrpd", "zebra", "mgmtd"}) {
            EXPECT_TRUE(near.stop(daemon)) << daemon;
            EXPECT_TRUE(far.stop(daemon)) << daemon;
        }
    }

    Router near = Router::first();
    Router far = Router::second();
};

TEST_F(Routers, StartsEveryDaemonOnceAndStopsIt) {
    for (const char *daemon : {"zebra", "ospfd", "ripd", "nhrpd"}) {
        EXPECT_FALSE(near.answers(daemon));
        EXPECT_TRUE(near.start(daemon));
        // nhrpd forks once more for a moment, to run a command.
        EXPECT_TRUE(waitFor([&] { return near.processCount(daemon) == 1; })) << daemon;
        EXPECT_EQ(0, far.processCount(daemon));
        EXPECT_TRUE(near.stop(daemon));
        EXPECT_EQ(0, near.processCount(daemon));
        EXPECT_FALSE(near.answers(daemon));
    }
}

TEST_F(Routers, KillingByNameSparesTheOtherRouter) {
    startBoth({"zebra"});
    EXPECT_TRUE(near.stop("zebra"));
    EXPECT_EQ(1, far.processCount("zebra"));
    EXPECT_TRUE(far.answers("zebra"));
}

TEST_F(Routers, CommandsAndTheirRefusalsComeBack) {
    ASSERT_TRUE(near.start("zebra") && near.start("ospfd"));
    EXPECT_EQ(0, near.configure("ospfd", {"interface eth1.2", "ip ospf cost 7"}).code);
    EXPECT_EQ(" ip ospf cost 7\n", near.block("ospfd", "interface eth1.2"));
    EXPECT_EQ("", near.block("ospfd", "interface eth1.3"));
    EXPECT_EQ(2, near.configure("ospfd", {"interface eth1.2", "ip ospf cost 0"}).code);
    EXPECT_EQ(" ip ospf cost 7\n", near.block("ospfd", "interface eth1.2"));
    EXPECT_EQ(-1, near.vty("ripd", "show version").code);
}

TEST_F(Routers, OspfNeighboursBecomeFull) {
    meetOverOspf({}, {});
    EXPECT_TRUE(waitFor([&] { return nearIsFull(); }))
        << near.vty("ospfd", "show ip ospf neighbor").text;
}

TEST_F(Routers, OspfNeighboursWithDigestsBecomeFull) {
    const Lines digest{"ip ospf authentication message-digest",
                       "ip ospf message-digest-key 1 md5 key"};
    meetOverOspf(digest, digest);
    EXPECT_TRUE(waitFor([&] { return nearIsFull(); }))
        << near.vty("ospfd", "show ip ospf neighbor").text;
}

TEST_F(Routers, OspfNeighboursWithDifferentKeysDoNotMeet) {
    meetOverOspf({"ip ospf authentication message-digest", "ip ospf message-digest-key 1 md5 one"},
                 {"ip ospf authentication message-digest", "ip ospf message-digest-key 1 md5 two"});
    EXPECT_FALSE(waitFor(
        [&] {
            return near.vty("ospfd", "show ip ospf neighbor").text.find("2.2.2.2") !=
                   std::string::npos;
        },
        std::chrono::seconds(3)));
}

TEST_F(Routers, RipRouteArrives) {
    startManagement();
    startBoth({"zebra", "ripd"});
    const Lines common{"router rip", "timers basic 5 15 10", "network eth1.2"};
    ASSERT_EQ(0, near.configure("ripd", common).code);
    Lines lines = common;
    lines.emplace_back("network 192.168.3.0/24");
    ASSERT_EQ(0, far.configure("ripd", lines).code);
    ASSERT_EQ(0, near.run("ip address delete 192.168.3.1/24 dev eth0.3"));
    EXPECT_TRUE(waitFor([&] {
        return near.output("ip route show 192.168.3.0/24").find("via 10.1.2.2") !=
               std::string::npos;
    })) << near.vty("ripd", "show ip rip").text;
    EXPECT_EQ(0, near.run("ip address add 192.168.3.1/24 dev eth0.3"));
}

} // namespace
