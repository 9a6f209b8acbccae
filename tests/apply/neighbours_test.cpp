// SPDX-License-Identifier: Apache-2.0
// Two routers with an adjacency on a broadcast link and one on a point-to-point link: what apply
// changes around them does not disturb them.

#include <chrono>

#include "tests/apply/pings.h"
#include "tests/apply/program.h"

namespace {

using namespace program;

constexpr const char *kLinks[] = {"eth1.2", "eth1.3"};

/// One version of the store. The adjacencies need the two links, their networks and their timers.
struct Version {
    std::string cost;
    std::string distance;
    std::string originate;
    std::string metric;
    std::string further; ///< more sections
};

std::string interface(const std::string &name, const std::string &type, const Version &version) {
    return "config interface\n\toption interface '" + name + "'\n\toption cost '" + version.cost +
           "'\n\toption hello '1'\n\toption dead '3'\n\toption network_type '" + type +
           "'\n\toption auto_type '0'\n\toption priority '1'\n\toption passive '0'\n";
}

std::string network(const std::string &address, const std::string &mask) {
    return "config network\n\toption ip '" + address + "'\n\toption wildcard_mask '" + mask +
           "'\n\toption area_id '0'\n";
}

std::string passive(const std::string &name) {
    return "config interface\n\toption interface '" + name + "'\n\toption passive '1'\n";
}

std::string store(const Version &version, const std::string &networks) {
    return "config global 'global'\n\toption status 'on'\n\toption router_id '1.1.1.1'\n"
           "config advertise_cfg 'advertise_cfg'\n\toption originate '" +
           version.originate + "'\n\toption metric '" + version.metric +
           "'\n\toption metric_type '2'\nconfig ospf_cfg 'ospf_cfg'\n\toption distance '" +
           version.distance + "'\n" + networks + interface("eth1.2", "0", version) +
           interface("eth1.3", "1", version) + version.further;
}

const std::string kNarrow =
    network("10.1.2.0", "255.255.255.0") + network("10.1.3.0", "255.255.255.0");
const std::string kWide = network("10.1.0.0", "255.255.0.0");

class Neighbours : public testing::Test {
protected:
    void SetUp() override {
        start({"zebra", "ospfd"});
        ASSERT_TRUE(far_.startManagement() && far_.start("zebra") && far_.start("ospfd"));
        ASSERT_EQ(far_.configure("ospfd", {"interface eth1.2", "ip ospf hello-interval 1",
                                           "ip ospf dead-interval 3", "exit", "interface eth1.3",
                                           "ip ospf hello-interval 1", "ip ospf dead-interval 3",
                                           "ip ospf network point-to-point", "exit", "router ospf",
                                           "ospf router-id 2.2.2.2", "network 10.1.2.0/24 area 0",
                                           "network 10.1.3.0/24 area 0"})
                      .code,
                  0);
    }

    void TearDown() override {
        stopAll();
        for (const char *daemon : kDaemons) {
            EXPECT_TRUE(far_.stop(daemon)) << daemon;
        }
    }

    static void apply(const std::string &text) {
        write("ospf", text);
        const Outcome run = frruci("apply ospf");
        ASSERT_EQ(run.status, 0) << run.text;
        ASSERT_NE(run.text, "") << "nothing was sent";
    }

    /// Changes of state of the neighbour at the far end of a link, as either router counts them; ""
    /// unless both have it in Full.
    std::string changes(const std::string &link) const {
        std::string counts;
        for (const Router *side : {&router(), &far_}) {
            const std::string text =
                side->vty("ospfd", "show ip ospf neighbor " + link + " detail").text;
            const std::size_t state = text.find("State is Full");
            const std::size_t count = text.find(" state changes", state);
            if (state == std::string::npos || count == std::string::npos) {
                return "";
            }
            counts +=
                text.substr(text.rfind(' ', count - 1), count - text.rfind(' ', count - 1)) + ",";
        }
        return counts;
    }

    bool areFull() const { return !changes(kLinks[0]).empty() && !changes(kLinks[1]).empty(); }

    Router far_ = Router::second();
};

TEST_F(Neighbours, OfABroadcastLinkAreFullSoon) {
    apply(store({"10", "110", "disable", "1", ""}, kNarrow));
    // In the order of the replay the link would wait 40 seconds for its designated router.
    EXPECT_TRUE(routers::waitFor([&] { return areFull(); }, std::chrono::seconds(12)))
        << router().vty("ospfd", "show ip ospf neighbor eth1.2 detail").text;
}

TEST_F(Neighbours, AreNotLost) {
    apply(store({"10", "110", "disable", "1", ""}, kNarrow));
    ASSERT_TRUE(routers::waitFor([&] { return areFull(); }));
    const std::string before = changes("eth1.2") + changes("eth1.3");
    pings::Pings link("10.1.2.2");

    const std::string others = passive("eth1.4") + passive("eth0.2") + passive("tun0");
    const std::pair<Version, std::string> kSteps[] = {
        {{"20", "110", "disable", "1", ""},   kNarrow                       },
        {{"20", "99", "disable", "1", ""},    kNarrow                       },
        {{"20", "99", "enable", "7", ""},     kNarrow                       },
        {{"20", "99", "enable", "8", ""},     kNarrow                       },
        {{"20", "99", "enable", "8", others}, kNarrow                       },
        {{"20", "99", "enable", "8", others}, kNarrow + network("172.30.0.0", "255.255.0.0")},
        {{"30", "98", "enable", "8", ""},                                   kNarrow                                  },
        {{"30", "98", "disable", "8", ""},                                   kWide},
        {{"30", "98", "disable", "8", others},                                   kNarrow                              },
        {{"30", "98", "disable", "8", others},                                   kNarrow + kWide},
        {{"10", "110", "disable", "1", ""},                                   kWide                                 },
    };
    for (const auto &[version, networks] : kSteps) {
        apply(store(version, networks));
        // Long enough for a neighbour that was disturbed to be missed.
        const auto quiet = std::chrono::steady_clock::now() + std::chrono::seconds(4);
        EXPECT_FALSE(
            routers::waitFor([&] { return changes("eth1.2") + changes("eth1.3") != before; },
                             std::chrono::duration_cast<routers::milliseconds>(
                                 quiet - std::chrono::steady_clock::now())))
            << store(version, networks) << before << "became " << changes("eth1.2")
            << changes("eth1.3");
        ASSERT_FALSE(HasFailure());
    }
    link.stop();
    EXPECT_GT(link.sent(), 100);
    EXPECT_EQ(link.lost(), 0) << "of " << link.sent();
}

TEST_F(Neighbours, AreClearedOnlyForANewRouterId) {
    std::string text = store({"10", "110", "disable", "1", ""}, kNarrow);
    apply(text);
    ASSERT_TRUE(routers::waitFor([&] { return areFull(); }));
    text.replace(text.find("1.1.1.1"), 7, "1.1.1.3");
    write("ospf", text);
    EXPECT_NE(frruci("apply --dry-run ospf").text.find("  end\n  clear ip ospf process\n"),
              std::string::npos);
    const Outcome run = frruci("apply ospf");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.text.find("OSPF process cleared"), std::string::npos) << run.text;
    EXPECT_TRUE(routers::waitFor([&] {
        return far_.vty("ospfd", "show ip ospf neighbor").text.find("1.1.1.3") != std::string::npos;
    }));
    ASSERT_TRUE(routers::waitFor([&] { return areFull(); }));
    const std::string before = changes("eth1.2") + changes("eth1.3");
    EXPECT_EQ(frruci("apply ospf").text, "");
    EXPECT_EQ(changes("eth1.2") + changes("eth1.3"), before);
}

TEST_F(Neighbours, ANewRouterIdThatIsNotUsedYetIsNotForgotten) {
    std::string text = store({"10", "110", "disable", "1", ""}, kNarrow);
    apply(text);
    ASSERT_TRUE(routers::waitFor([&] { return areFull(); }));
    // As after an apply that was killed before its end.
    ASSERT_EQ(router().configure("ospfd", {"router ospf", "ospf router-id 1.1.1.3"}).code, 0);
    text.replace(text.find("1.1.1.1"), 7, "1.1.1.3");
    apply(text);
    EXPECT_TRUE(routers::waitFor([&] {
        return far_.vty("ospfd", "show ip ospf neighbor").text.find("1.1.1.3") != std::string::npos;
    }));
}

} // namespace
