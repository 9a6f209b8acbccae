// SPDX-License-Identifier: Apache-2.0
// Finding, killing and starting daemon processes: the shell commands, what is logged, who is
// killed.

#include <cstdint>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <utility>

#include "ospf/frr_ospf_enable.h"
#include "ospf/frr_ospf_process.h"
#include "tests/support/stage.h"

namespace {

class Processes : public testing::Test {
protected:
    stage::Stage stage_;
};

TEST_F(Processes, AreCountedByLine) {
    stage_.shell("grep zebra", {.text = " 1234 root zebra -d\n77 root  /usr/sbin/zebra"});
    EXPECT_EQ(process_exist("zebra", 0), 2);
    EXPECT_STREQ(stage_.trace(), "popen: ps -w | grep -v grep | grep zebra\n");
    EXPECT_STREQ(stage_.log(), "frr_ospf:213: popen\n"
                               "frr_ospf:215: popen  1234 root zebra -d\n\n"
                               "frr_ospf:215: popen 77 root  /usr/sbin/zebra\n");
    EXPECT_STREQ(stage_.output(), "");
}

TEST_F(Processes, OfNoLineAreNone) {
    EXPECT_EQ(process_exist("ospfd", 1), 0);
    EXPECT_STREQ(stage_.trace(), "popen: ps -w | grep -v grep | grep ospfd\n");
    EXPECT_STREQ(stage_.log(), "frr_ospf:213: popen\n");
}

TEST_F(Processes, WithoutAListingAreNone) {
    stage_.shell("ps -w", {.text = "1 root zebra\n", .fails = true});
    EXPECT_EQ(process_exist("zebra", 1), 0);
    EXPECT_STREQ(stage_.trace(), "popen: ps -w | grep -v grep | grep zebra\n");
    EXPECT_STREQ(stage_.log(), "");
}

TEST_F(Processes, OfAnUnsafeNameAreNotLookedFor) {
    for (const char *name : {"zebra;reboot", "a|b", "$(x)", "a\"b", "a'b", "a&", "a<b", "a>b",
                             "a[b", "a\\b", "a`b", "(", ")"}) {
        EXPECT_EQ(process_exist(name, 1), 0) << name;
        EXPECT_STREQ(stage_.output(), "process_exist 225: check safe string failed!\n");
    }
    EXPECT_EQ(process_exist(nullptr, 1), 0);
    EXPECT_STREQ(stage_.trace(), "");
    EXPECT_STREQ(stage_.log(), "");
}

TEST_F(Processes, NamesAreCutWithTheCommand) {
    const std::string name(300, 'n');
    EXPECT_EQ(process_exist(name.c_str(), 0), 0);
    const std::string command = "ps -w | grep -v grep | grep " + name;
    EXPECT_EQ(stage_.trace(), "popen: " + command.substr(0, 127) + "\n");
}

TEST_F(Processes, AreKilledOneByOne) {
    stage_.shell("grep zebra", {.text = "  12 root zebra -d\n34 root zebra\nno number zebra\n"});
    EXPECT_EQ(process_exist("zebra", 1), 3);
    EXPECT_STREQ(stage_.trace(),
                 "popen: ps -w | grep -v grep | grep zebra\nkill: 12 9\nkill: 34 9\n");
    EXPECT_STREQ(stage_.log(), "frr_ospf:213: popen\n"
                               "frr_ospf:215: popen   12 root zebra -d\n\n"
                               "frr_ospf:192: strtok ret 12\n"
                               "frr_ospf:195: pid = 12\n"
                               "frr_ospf:215: popen 34 root zebra\n\n"
                               "frr_ospf:192: strtok ret 34\n"
                               "frr_ospf:195: pid = 34\n"
                               "frr_ospf:215: popen no number zebra\n\n"
                               "frr_ospf:192: strtok ret no\n"
                               "frr_ospf:195: pid = 0\n");
}

TEST_F(Processes, AnyFlagButZeroKills) {
    stage_.shell("grep ripd", {.text = "5 root ripd\n"});
    EXPECT_EQ(process_exist("ripd", -1), 1);
    EXPECT_STREQ(stage_.trace(), "popen: ps -w | grep -v grep | grep ripd\nkill: 5 9\n");
}

TEST_F(Processes, TheRestOfALongLineIsNoLine) {
    // Were the rest a line of its own, its first word would be taken for a process id.
    const std::string line = "12 " + std::string(508, 'x') + "66 zebra\n34 zebra\n";
    stage_.shell("grep zebra", {.text = line.c_str()});
    EXPECT_EQ(process_exist("zebra", 1), 2);
    EXPECT_STREQ(stage_.trace(),
                 "popen: ps -w | grep -v grep | grep zebra\nkill: 12 9\nkill: 34 9\n");
    // A line of 511 characters just fits, also without a newline; of a longer one the end is lost.
    for (const auto &[blanks, killed] : {std::pair(508, "123"), std::pair(509, "12")}) {
        const std::string late = std::string(static_cast<std::size_t>(blanks), ' ') + "123";
        stage_.shell("grep zebra", {.text = late.c_str()});
        EXPECT_EQ(process_exist("zebra", 1), 1);
        EXPECT_EQ(stage_.trace(), std::string("popen: ps -w | grep -v grep | grep zebra\nkill: ") +
                                      killed + " 9\n");
    }
}

TEST_F(Processes, TheListingIsClosed) {
    const int before = stage::Stage::openDescriptors();
    stage_.shell("grep zebra", {.text = "12 root zebra -d\n"});
    EXPECT_EQ(process_exist("zebra", 1), 1);
    EXPECT_EQ(process_exist("ospfd", 1), 0);
    EXPECT_EQ(stage::Stage::openDescriptors(), before);
}

TEST_F(Processes, KillTakesTheFirstField) {
    char line[] = "   4711 root 0 S zebra -d\n";
    (void)kill_process(line);
    EXPECT_STREQ(stage_.trace(), "kill: 4711 9\n");
    EXPECT_STREQ(stage_.log(), "frr_ospf:192: strtok ret 4711\nfrr_ospf:195: pid = 4711\n");
    EXPECT_STREQ(line, "   4711"); // the line is changed
}

TEST_F(Processes, KillRefusesWhatIsNoProcess) {
    const auto killed = [this](const char *text) {
        char line[64] = {};
        (void)snprintf(line, sizeof line, "%s", text);
        (void)kill_process(line);
        EXPECT_STREQ(stage_.trace(), "") << text;
        return std::string(stage_.log());
    };
    EXPECT_EQ(killed("0 root"), "frr_ospf:192: strtok ret 0\nfrr_ospf:195: pid = 0\n");
    EXPECT_EQ(killed("-1 root"), "frr_ospf:192: strtok ret -1\nfrr_ospf:195: pid = -1\n");
    EXPECT_EQ(killed("PID USER"), "frr_ospf:192: strtok ret PID\nfrr_ospf:195: pid = 0\n");
    EXPECT_EQ(killed("\n"), "frr_ospf:192: strtok ret \n\nfrr_ospf:195: pid = 0\n");
    EXPECT_EQ(killed(""), "frr_ospf:192: strtok ret (null)\n");
    EXPECT_EQ(killed("    "), "frr_ospf:192: strtok ret (null)\n");
    (void)kill_process(nullptr);
    EXPECT_STREQ(stage_.log(), "frr_ospf:192: strtok ret (null)\n");
    EXPECT_STREQ(stage_.trace(), "");
}

TEST_F(Processes, ZebraIsStartedAndWaitedFor) {
    (void)zebra_enable();
    EXPECT_STREQ(stage_.trace(),
                 "popen: ps -w | grep -v grep | grep zebra\nsystem: \"zebra -d \"\nsleep: 1\n");
    EXPECT_STREQ(stage_.log(), "frr_ospf:213: popen\nfrr_ospf:185: zebra_enable\n");
}

TEST_F(Processes, ZebraIsStartedOnce) {
    stage_.shell("grep zebra", {.text = "12 root zebra -d\n"});
    (void)zebra_enable();
    EXPECT_STREQ(stage_.trace(), "popen: ps -w | grep -v grep | grep zebra\n");
    EXPECT_STREQ(stage_.log(), "frr_ospf:213: popen\n"
                               "frr_ospf:215: popen 12 root zebra -d\n\n"
                               "frr_ospf:180: zebra process exist\n");
}

TEST_F(Processes, AZebraThatFailsToStartIsNotNoticed) {
    stage_.shell("zebra -d", {.status = 256});
    (void)zebra_enable();
    EXPECT_STREQ(stage_.trace(),
                 "popen: ps -w | grep -v grep | grep zebra\nsystem: \"zebra -d \"\nsleep: 1\n");
    EXPECT_STREQ(stage_.log(), "frr_ospf:213: popen\nfrr_ospf:185: zebra_enable\n");
}

constexpr const char *kRouterIdSessions =
    "ospfd: en | configure | router ospf | ospf router-id 1.1.1.1\n"
    "ospfd: en | clear ip ospf process\n"
    "ospfd: en | configure | router ospf | ospf router-id 1.1.1.1\n"
    "ospfd: en | clear ip ospf process\n";

/// The lines of the log that come from this source.
std::string ownLines(const char *log) {
    std::string own;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("frr_ospf:", 0) == 0) {
            own += line + "\n";
        }
    }
    return own;
}

TEST_F(Processes, OspfIsStartedAfterZebra) {
    EXPECT_EQ(ospf_enable("1.1.1.1"), 0);
    EXPECT_EQ(stage_.trace(), std::string("popen: ps -w | grep -v grep | grep zebra\n"
                                          "system: \"zebra -d \"\n"
                                          "sleep: 1\n"
                                          "popen: ps -w | grep -v grep | grep ospfd\n"
                                          "system: conntrack -D -p ospf\n"
                                          "system: ospfd -d\n"
                                          "sleep: 1\n") +
                                  kRouterIdSessions + "sleep: 1\n");
    EXPECT_EQ(ownLines(stage_.log()), "frr_ospf:213: popen\nfrr_ospf:185: zebra_enable\n"
                                      "frr_ospf:213: popen\n"
                                      "frr_ospf:241: ospf_enable router_id 1.1.1.1\n");
}

TEST_F(Processes, ARunningOspfOnlyGetsTheRouterId) {
    stage_.shell("grep zebra", {.text = "1 root zebra -d\n"});
    stage_.shell("grep ospfd", {.text = "2 root ospfd -d\n"});
    EXPECT_EQ(ospf_enable("1.1.1.1"), 0);
    EXPECT_EQ(stage_.trace(), std::string("popen: ps -w | grep -v grep | grep zebra\n"
                                          "popen: ps -w | grep -v grep | grep ospfd\n") +
                                  kRouterIdSessions);
    EXPECT_EQ(ownLines(stage_.log()), "frr_ospf:213: popen\n"
                                      "frr_ospf:215: popen 1 root zebra -d\n"
                                      "frr_ospf:180: zebra process exist\n"
                                      "frr_ospf:213: popen\n"
                                      "frr_ospf:215: popen 2 root ospfd -d\n"
                                      "frr_ospf:235: ospf process exist\n");
}

TEST_F(Processes, ARefusedRouterIdIsTheResult) {
    stage_.shell("grep ospfd", {.text = "2 root ospfd -d\n"});
    stage_.answer("ospfd", "ospf router-id bad", {.code = 2});
    EXPECT_NE(ospf_enable("bad"), 0);
    stage_.absent("ospfd");
    stage_.shell("grep ospfd", {});
    EXPECT_NE(ospf_enable("1.1.1.1"), 0);
    EXPECT_TRUE(std::string(stage_.trace()).ends_with("system: ospfd -d\nsleep: 1\nsleep: 1\n"));
    EXPECT_NE(ospf_enable(nullptr), 0);
}

std::string networkSession(const char *statement) {
    return std::string("ospfd: en | configure | router ospf | ") + statement + "\n";
}

// One test: the areas are remembered as long as the process lives.
TEST_F(Processes, TheInnerLinkMovesBetweenAreas) {
    const std::string wan = "network 169.254.11.21/30 area ";
    const std::string lan = "network 169.254.11.22/30 area ";
    const auto moved = [&](const std::string &network, const char *from, const char *to) {
        return networkSession(("no " + network + from).c_str()) +
               networkSession((network + to).c_str());
    };
    EXPECT_EQ(sysn_network(1, 5, 1), 0);
    EXPECT_EQ(stage_.trace(), moved(wan, "0", "5"));
    EXPECT_EQ(sysn_network(1, 7, 1), 0);
    EXPECT_EQ(stage_.trace(), moved(wan, "5", "7"));
    EXPECT_EQ(sysn_network(2, 4294967295U, 0), 0); // the sides are remembered apart
    EXPECT_EQ(stage_.trace(), moved(lan, "0", "4294967295"));
    EXPECT_EQ(sysn_network(2, 3, 0), 0);
    EXPECT_EQ(stage_.trace(), moved(lan, "4294967295", "3"));
    EXPECT_EQ(sysn_network(1, 8, -1), 0); // anything but 0 is the WAN side
    EXPECT_EQ(stage_.trace(), moved(wan, "7", "8"));
    EXPECT_STREQ(stage_.output(), "");

    stage_.answer("ospfd", (wan + "9").c_str(), {.code = 2});
    stage_.answer("ospfd", (lan + "9").c_str(), {.code = 1});
    EXPECT_EQ(sysn_network(1, 9, 1), 1);
    EXPECT_STREQ(stage_.output(), "Set ospf network br-lan failed.\n");
    EXPECT_EQ(stage_.trace(), moved(wan, "8", "9"));
    EXPECT_EQ(sysn_network(2, 9, 0), 1);
    EXPECT_STREQ(stage_.output(), "Set ospf network veth1 failed.\n");
    EXPECT_EQ(stage_.trace(), moved(lan, "3", "9"));

    stage_.answer("ospfd", ("no " + wan + "8").c_str(), {.code = 2, .times = 1});
    stage_.answer("ospfd", ("no " + lan + "3").c_str(), {.code = 2, .times = 1});
    EXPECT_EQ(sysn_network(1, 10, 1), 1);
    EXPECT_STREQ(stage_.output(), "Reset ospf network br-lan failed.\n");
    EXPECT_EQ(stage_.trace(), networkSession(("no " + wan + "8").c_str()));
    EXPECT_EQ(sysn_network(2, 10, 0), 1);
    EXPECT_STREQ(stage_.output(), "Reset ospf network veth1 failed.\n");
    EXPECT_EQ(stage_.trace(), networkSession(("no " + lan + "3").c_str()));

    EXPECT_EQ(sysn_network(1, 11, 1), 0); // the old area is still the remembered one
    EXPECT_EQ(stage_.trace(), moved(wan, "8", "11"));
    EXPECT_EQ(sysn_network(2, 11, 0), 0);
    EXPECT_EQ(stage_.trace(), moved(lan, "3", "11"));
}

} // namespace
