// SPDX-License-Identifier: Apache-2.0
// The OSPF line handlers, fed line by line, and long answers through the whole display.

#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "common/frr_uci.h"
#include "ospf/frr_ospf.h"
#include "tests/support/stage.h"

namespace {

constexpr uint32_t kInterface = 1;
constexpr uint32_t kNeighbor = 2;
constexpr uint32_t kDatabase = 3;
constexpr uint32_t kWan = 1;
constexpr uint32_t kLan = 0;

/// A line as the vty layer hands it out: CR LF after it, then zeroes.
class Line {
public:
    explicit Line(const std::string &text) {
        EXPECT_LE(text.size(), 256u);
        (text + "\r\n").copy(bytes_, sizeof bytes_ - 1);
    }

    operator char *() { return bytes_; }

private:
    char bytes_[260] = {};
};

class ShowLines : public testing::Test {
protected:
    static void store(const char *text) { stage::writeFile("/etc/config/ospf", text); }

    static std::string stored(const char *section, const char *option) {
        char value[64];
        return frr_uci_get("ospf", section, option, value, sizeof value) == 0 ? value : "(none)";
    }

    std::string trace() { return stage_.trace(); }

    stage::Stage stage_;
};

class InterfaceLines : public ShowLines {
protected:
    InterfaceLines() {
        store("config interface 'eth1_2'\nconfig interface 'eth0_3'\n"
              "config interface 'abcdefghijklmno'\n");
    }

    static void take(const std::string &text) {
        Line line(text);
        handle_ospf_show_interface(line);
    }
};

TEST_F(InterfaceLines, UpOpensTheSectionAndSetsWorking) {
    take("eth1.2 is up");
    EXPECT_EQ(stored("eth1_2", "working"), "on");
    EXPECT_EQ(stored("eth0_3", "working"), "(none)");
    EXPECT_STREQ(stage_.log(), "");
}

TEST_F(InterfaceLines, TypeAndCostGoToTheCurrentSection) {
    take("eth1.2 is up");
    take("  Router ID 1.1.1.1, Network Type POINTOPOINT, Cost: 20");
    EXPECT_EQ(stored("eth1_2", "network_type"), "1");
    EXPECT_EQ(stored("eth1_2", "cost"), "20\r\n");
    take("eth0.3 is up");
    take("  Router ID 1.1.1.1, Network Type BROADCAST, Cost: 100");
    EXPECT_EQ(stored("eth0_3", "network_type"), "0");
    EXPECT_EQ(stored("eth0_3", "cost"), "100\r\n");
    EXPECT_EQ(stored("eth1_2", "network_type"), "1");
}

TEST_F(InterfaceLines, AnotherTypeChangesNothingButTheCost) {
    take("eth1.2 is up");
    take("  Router ID 1.1.1.1, Network Type NBMA, Cost: 20");
    EXPECT_EQ(stored("eth1_2", "network_type"), "(none)");
    EXPECT_EQ(stored("eth1_2", "cost"), "20\r\n");
}

TEST_F(InterfaceLines, WordsAreTestedByTheirBeginning) {
    take("eth1.2 island upper");
    EXPECT_EQ(stored("eth1_2", "working"), "on");
    take("a b c Networks Types BROADCASTING Costs 5");
    EXPECT_EQ(stored("eth1_2", "network_type"), "0");
    EXPECT_EQ(stored("eth1_2", "cost"), "5\r\n");
}

TEST_F(InterfaceLines, ACostWithFurtherWordsIsTakenWithoutThem) {
    take("eth1.2 is up");
    take("  Router ID 1.1.1.1, Network Type BROADCAST, Cost: 20 more");
    EXPECT_EQ(stored("eth1_2", "cost"), "20");
}

TEST_F(InterfaceLines, DownLeavesTheCurrentSection) {
    take("eth1.2 is up");
    take("eth0.3 is down");
    take("a b c Network Type BROADCAST, Cost: 9");
    EXPECT_EQ(stored("eth1_2", "cost"), "9\r\n");
    EXPECT_EQ(stored("eth0_3", "cost"), "(none)");
}

TEST_F(InterfaceLines, ANameOf16CharactersIsIgnoredAnd15AreNot) {
    take("eth1.2 is up");
    take("abcdefghijklmnop is up");
    take("a b c Network Type BROADCAST, Cost: 9");
    EXPECT_EQ(stored("eth1_2", "cost"), "9\r\n");
    take("abcdefghijklmno is up");
    EXPECT_EQ(stored("abcdefghijklmno", "working"), "on");
    EXPECT_STREQ(stage_.log(), "");
}

TEST_F(InterfaceLines, EveryDotOfANameIsReplaced) {
    store("config interface 'a_b_c_'\n");
    take("a.b.c. is up");
    EXPECT_EQ(stored("a_b_c_", "working"), "on");
}

TEST_F(InterfaceLines, TheSectionSurvivesBetweenShows) {
    take("eth1.2 is up");
    stage_.answer("ospfd", "show ip ospf interface",
                  {.text = "a b c Network Type BROADCAST, Cost: 9\n"});
    EXPECT_EQ(swOspfShowOspf(0, "interface", 1), 0);
    EXPECT_EQ(stored("eth1_2", "cost"), "9\r\n");
    (void)trace();
}

TEST_F(InterfaceLines, LinesWithTooFewWordsDoNothing) {
    take("eth1.2 is up");
    const std::string before = stored("eth1_2", "working");
    for (const char *text : {"", " ", "eth0.3", "eth0.3 is", "a b c Network Type BROADCAST, Cost:",
                             "a b c Network BROADCAST, Type Cost: 5", "  eth0.3  is  downup x"}) {
        take(text);
    }
    EXPECT_EQ(stored("eth1_2", "cost"), "(none)");
    EXPECT_EQ(stored("eth1_2", "network_type"), "(none)");
    EXPECT_EQ(stored("eth0_3", "working"), "(none)");
    EXPECT_EQ(before, "on");
}

TEST_F(InterfaceLines, EveryKeywordMustStandAtItsPlace) {
    take("eth1.2 is up");
    for (const char *text : {"eth0.3 was up and running", "a b c Metric Type BROADCAST, Cost: 5",
                             "a b c Network Kind BROADCAST, Cost: 5"}) {
        take(text);
    }
    EXPECT_EQ(stored("eth0_3", "working"), "(none)");
    EXPECT_EQ(stored("eth1_2", "network_type"), "(none)");
    EXPECT_EQ(stored("eth1_2", "cost"), "(none)");
    take("a b c Network Type BROADCAST, Metric: 5");
    EXPECT_EQ(stored("eth1_2", "network_type"), "0");
    EXPECT_EQ(stored("eth1_2", "cost"), "(none)");
}

TEST_F(InterfaceLines, OnlyBlanksSeparateAndRunsOfThemMakeNoWords) {
    take("   eth1.2    is   up   ");
    EXPECT_EQ(stored("eth1_2", "working"), "on");
    take("eth0.3\tis up");
    EXPECT_EQ(stored("eth0_3", "working"), "(none)");
}

TEST_F(InterfaceLines, WordsBehindThe16thAreIgnored) {
    take("eth1.2 is up");
    std::string line = "a b c Network Type BROADCAST, Cost: 9";
    while (line.size() < 250) {
        line += " x";
    }
    take(line);
    EXPECT_EQ(stored("eth1_2", "cost"), "9");
}

TEST_F(InterfaceLines, AFailedWriteIsLoggedAndTheWalkGoesOn) {
    take("lo is up");
    take("a b c Network Type BROADCAST, Cost: 9");
    const std::string log = stage_.log();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 3);
    EXPECT_NE(log.find(":  ret=2, frr_uci_set failed, section name is lo\n"), std::string::npos);
}

class RowLines : public ShowLines {
protected:
    std::string neighbor(const std::string &text) {
        Line line(text);
        handle_ospf_show_neighbor(line);
        return trace();
    }
};

TEST_F(RowLines, AnAddressInAnyFormOpensARow) {
    for (const char *text : {"10.0.0.2 Full", "10.2 short", "167772162 number", "0x0a000002 hex",
                             "010.0.0.2 octal", "   10.0.0.2 indented"}) {
        EXPECT_EQ(neighbor(text),
                  std::string("reply ospf_pipe_c2lua_neighbor: \"") + text + "\\r\\n\"\n");
    }
}

TEST_F(RowLines, AnythingElseIsDropped) {
    for (const char *text :
         {"", "   ", "Neighbor ID     Pri State", "10.0.0.2: colon", "10.0.0.256 x", "1.2.3.4.5 x",
          "\t10.0.0.2 tab", "% 10.0.0.2", "-1 x", "4294967296 x"}) {
        EXPECT_EQ(neighbor(text), "") << text;
    }
}

TEST_F(RowLines, ALongRowIsCutAt257Bytes) {
    const std::string text = "10.0.0.2 " + std::string(256 - 9, 'r');
    EXPECT_EQ(neighbor(text), "reply ospf_pipe_c2lua_neighbor: \"" + text + "\\r\"\n");
    const std::string shorter = text.substr(0, 255);
    EXPECT_EQ(neighbor(shorter), "reply ospf_pipe_c2lua_neighbor: \"" + shorter + "\\r\\n\"\n");
}

TEST_F(RowLines, AFirstWordThatFillsTheLineIsNoAddress) {
    EXPECT_EQ(neighbor(std::string(256, '1')), "");
}

TEST_F(RowLines, TheDatabaseRowsNeedTheWanPass) {
    Line lan("1.1.1.1 2.2.2.2 12");
    handle_ospf_show_database(lan, kLan);
    EXPECT_EQ(trace(), "");
    Line wan("1.1.1.1 2.2.2.2 12");
    handle_ospf_show_database(wan, kWan);
    EXPECT_EQ(trace(), "reply ospf_pipe_c2lua_database: \"1.1.1.1 2.2.2.2 12\\r\\n\"\n");
    Line other("1.1.1.1 2.2.2.2 12");
    handle_ospf_show_database(other, 0x80000000);
    EXPECT_EQ(trace(), "reply ospf_pipe_c2lua_database: \"1.1.1.1 2.2.2.2 12\\r\\n\"\n");
}

TEST_F(RowLines, HeadingsOfTheDatabaseAreDropped) {
    for (const char *text : {"       OSPF Router with ID (1.1.1.1)",
                             "                Router Link States (Area 0.0.0.0)",
                             "Link ID         ADV Router      Age  Seq#       CkSum  Link count"}) {
        Line line(text);
        handle_ospf_show_database(line, kWan);
        EXPECT_EQ(trace(), "") << text;
    }
}

TEST_F(ShowLines, TheKindChoosesTheHandler) {
    store("config interface 'eth1_2'\n");
    Line up("eth1.2 is up");
    handle_ospf_show(up, kInterface, kWan);
    EXPECT_EQ(stored("eth1_2", "working"), "on");
    for (const uint32_t arg : {kLan, kWan}) {
        Line row("10.0.0.2 Full");
        handle_ospf_show(row, kNeighbor, arg);
        EXPECT_EQ(trace(), "reply ospf_pipe_c2lua_neighbor: \"10.0.0.2 Full\\r\\n\"\n");
    }
    Line lan("10.0.0.2 Full");
    handle_ospf_show(lan, kDatabase, kLan);
    Line other("10.0.0.2 Full");
    handle_ospf_show(other, 0, kWan);
    handle_ospf_show(other, 4, kWan);
    handle_ospf_show(other, 0xFFFFFFFF, kWan);
    EXPECT_EQ(trace(), "");
    Line wan("10.0.0.2 Full");
    handle_ospf_show(wan, kDatabase, kWan);
    EXPECT_EQ(trace(), "reply ospf_pipe_c2lua_database: \"10.0.0.2 Full\\r\\n\"\n");
}

TEST_F(ShowLines, ANullLineIsIgnored) {
    for (uint32_t kind = 0; kind < 5; ++kind) {
        handle_ospf_show(nullptr, kind, kWan);
    }
    EXPECT_EQ(trace(), "");
    EXPECT_STREQ(stage_.log(), "");
}

TEST_F(ShowLines, ADatabaseRequestHasThreeBlanksWhateverIsGiven) {
    OspfDatabaseRequest request = {};
    request.lsa_type = "router";
    strcpy(request.link_state_id, "1.1.1.1");
    strcpy(request.adv_router, "2.2.2.2");
    struct {
        uint32_t id, router, self;
        const char *type, *command;
    } const cases[] = {
        {0, 0, 0, nullptr,  "\"show ip ospf database   \""                           },
        {0, 0, 0, "router", "\"show ip ospf database router  \""                     },
        {1, 0, 0, "router", "\"show ip ospf database router 1.1.1.1 \""              },
        {7, 9, 0, "router", "show ip ospf database router 1.1.1.1 adv-router 2.2.2.2"},
        {0, 1, 0, "router", "show ip ospf database router  adv-router 2.2.2.2"       },
        {0, 1, 1, "router", "show ip ospf database router  self-originate"           },
        {1, 0, 2, nullptr,  "show ip ospf database  1.1.1.1 self-originate"          },
    };
    for (const auto &row : cases) {
        request.has_link_state_id = row.id;
        request.has_adv_router = row.router;
        request.self_originate = row.self;
        request.lsa_type = row.type;
        EXPECT_EQ(swOspfShowOspfDatabase(0, &request), 0);
        const std::string line = std::string("ospfd: ") + row.command + "\n";
        EXPECT_EQ(trace(), line + line);
    }
}

TEST_F(ShowLines, TheTextsOfADatabaseRequestAreCutAt64Characters) {
    const std::string type(100, 't');
    OspfDatabaseRequest request = {};
    request.lsa_type = type.c_str();
    memset(request.link_state_id, 'i', sizeof request.link_state_id);
    memset(request.adv_router, 'a', sizeof request.adv_router);
    request.has_link_state_id = 1;
    request.has_adv_router = 1;
    EXPECT_EQ(swOspfShowOspfDatabase(0, &request), 0);
    const std::string line = "ospfd: show ip ospf database " + std::string(64, 't') + " " +
                             std::string(64, 'i') + " adv-router " + std::string(64, 'a') + "\n";
    EXPECT_EQ(trace(), line + line);
}

TEST_F(ShowLines, ADatabaseRequestPrintsItsAnswersAndForwardsNone) {
    stage_.answerAll("ospfd", {.text = "1.1.1.1 row\n"});
    OspfDatabaseRequest request = {};
    EXPECT_EQ(swOspfShowOspfDatabase(0, &request), 0);
    EXPECT_EQ(trace(), "ospfd: \"show ip ospf database   \"\n"
                       "ospfd: \"show ip ospf database   \"\n");
    EXPECT_STREQ(stage_.output(),
                 "********************************WAN************************************\n"
                 "1.1.1.1 row\r\n\n"
                 "********************************LAN************************************\n"
                 "1.1.1.1 row\r\n\n");
}

TEST_F(ShowLines, AShowPrintsItsBannerAndEveryLine) {
    stage_.answer("ospfd", "show ip ospf neighbor", {.text = "\nNeighbor ID\n10.0.0.2 Full\nrest"});
    EXPECT_EQ(swOspfShowOspf(0, "neighbor", 1), 0);
    EXPECT_STREQ(stage_.output(),
                 "********************************WAN***********************************\n"
                 "\r\n\nNeighbor ID\r\n\n10.0.0.2 Full\r\n\n");
    (void)trace();
}

TEST_F(ShowLines, ALongQuestionIsCut) {
    const std::string what(400, 'w');
    EXPECT_EQ(swOspfShowOspf(0, what.c_str(), 1), 0);
    EXPECT_EQ(trace(), "ospfd: " + ("show ip ospf " + what).substr(0, 255) + "\n");
}

TEST_F(ShowLines, FiveThousandNeighboursArriveInOrder) {
    std::string answer = "\nNeighbor ID     Pri State\n";
    std::string wanted = "ospfd: show ip ospf neighbor\n";
    for (int i = 0; i < 5000; ++i) {
        const std::string row = "10.1." + std::to_string(i / 250) + "." + std::to_string(i % 250) +
                                "  1 Full/DR 38.1s 10.1.2.2 eth1.2:10.1.2.1";
        answer += row + "\n";
        wanted += "reply ospf_pipe_c2lua_neighbor: \"" + row + "\\r\\n\"\n";
    }
    stage_.answer("ospfd", "show ip ospf neighbor", {.text = answer.c_str()});
    process_ospf_neighbor();
    EXPECT_EQ(trace(), wanted + "usleep: 10000\nreply ospf_pipe_c2lua_neighbor: ok\n");
    EXPECT_STREQ(stage_.log(), "");
}

TEST_F(ShowLines, ShowsLeaveNoDescriptorBehind) {
    stage_.answerAll("ospfd", {.text = "10.0.0.2 Full\n"});
    process_ospf_neighbor();
    process_ospf_lsdb();
    (void)trace();
    const int before = stage::Stage::openDescriptors();
    for (int i = 0; i < 20; ++i) {
        process_ospf_neighbor();
        process_ospf_lsdb();
        char show[] = "show";
        char *words[] = {show, nullptr};
        process_ospf_interface(1, words);
    }
    (void)trace();
    EXPECT_EQ(stage::Stage::openDescriptors(), before);
}

} // namespace
