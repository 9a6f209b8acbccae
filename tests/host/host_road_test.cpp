// SPDX-License-Identifier: Apache-2.0
// The host program with the real library, against fake daemons: the whole road of a request.

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "tests/host/program.h"
#include "tests/support/stage.h"

namespace {

using program::frruci;
using program::has;
using program::Outcome;
using Words = std::vector<std::string>;

Words interface(const std::string &keyword, const Words &values) {
    Words words = {"call", "process_ospf_interface", "eth1.2", "lan", keyword};
    words.insert(words.end(), values.begin(), values.end());
    return words;
}

class Road : public testing::Test {
protected:
    void SetUp() override {
        for (const char *pipe : {"ospf_pipe_c2lua", "nhrp_pipe_c2lua", "nhrp_pipe_c2lua_cache",
                                 "ospf_pipe_c2lua_neighbor"}) {
            stage_.noPipe(pipe); // the program makes its own
        }
        // Sanitizers load libraries in the program's name, without its run path.
        setenv("FRRUCI_LIBRARY", LIBRARY, 1);
    }

    /// Without them the real daemons would be started, and take the fake ones' places.
    const program::Daemons processes_{
        {"zebra", "ospfd", "ripd", "nhrpd"}
    };
    stage::Stage stage_;
};

/// Nobody runs.
class EmptyRoad : public testing::Test {
protected:
    void SetUp() override { setenv("FRRUCI_LIBRARY", LIBRARY, 1); }

    stage::Stage stage_;
};

TEST_F(Road, ASettingGoesToTheDaemonAndItsReplyComesBack) {
    const Outcome outcome = frruci(interface("hello", {"15"}));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "ok\n");
    EXPECT_EQ(outcome.errors, "");
    // Sessions without a command only ask which daemons run.
    EXPECT_TRUE(has(stage_.trace(),
                    "ospfd: en | configure | interface eth1.2 | ip ospf hello-interval 15\n"));
}

TEST_F(Road, ACallLogsNothingButTheRequest) {
    ASSERT_EQ(frruci(interface("hello", {"15"})).status, 0);
    const std::string log = stage_.log();
    std::string texts; // without the source lines
    for (std::size_t at = 0; at < log.size(); at = log.find('\n', at) + 1) {
        const std::size_t colon = log.find(": ", at);
        texts += log.substr(colon + 2, log.find('\n', at) - colon - 1);
    }
    EXPECT_EQ(texts, "process_ospf_interface 4\n"
                     "process_ospf_interface eth1.2 lan hello 15\n"
                     "frrVtyRun: en\n"
                     "frrVtyRun: configure\n"
                     "frrVtyRun: interface eth1.2\n"
                     "frrVtyRun: ip ospf hello-interval 15\n");
}

TEST_F(Road, ARefusedSettingIsToldInTheDaemonsWords) {
    stage_.answer("ospfd", "ip ospf cost 7", {.code = 13, .text = "% No.\r\n  Not today.\r\n"});
    const Outcome outcome = frruci(interface("cost", {"7"}));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "ok\n");
    EXPECT_EQ(outcome.errors,
              "frruci: ospfd refused \"interface eth1.2: ip ospf cost 7\": % No. Not today.\n");
    stage_.answer("ospfd", "ip ospf cost 7", {.code = 2});
    EXPECT_EQ(frruci(interface("cost", {"7"})).errors,
              "frruci: ospfd refused \"interface eth1.2: ip ospf cost 7\": code 2\n");
    stage_.answer("ospfd", "interface eth1.2", {.code = 4});
    EXPECT_EQ(frruci(interface("cost", {"7"})).errors,
              "frruci: ospfd refused \"interface eth1.2\": code 4\n");
}

TEST_F(Road, ASettingThatIsSentTwiceIsAcceptedWhenOneSendingWas) {
    const Words remove = {"call", "process_ospf_network", "del", "10.1.2.0", "255.255.255.0", "0"};
    stage_.answer("ospfd", "no network 10.1.2.0/24 area 0", {.code = 13, .text = "% Gone.\n"});
    stage_.answer("ospfd", "no network 10.1.2.0/24 area 0", {.times = 1});
    const Outcome one = frruci(remove);
    EXPECT_EQ(one.status, 0);
    EXPECT_EQ(one.errors, "");
    const Outcome none = frruci(remove);
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.errors,
              "frruci: ospfd refused \"router ospf: no network 10.1.2.0/24 area 0\": % Gone.\n");
}

TEST_F(Road, ARefusalThatLeavesNothingMissingIsANote) {
    stage_.answer("ripd", "no key chain app_rip_9", {.code = 13, .text = "% Can't find.\n"});
    const Outcome chain =
        frruci({"call", "process_rip_interface", "authen_mode", "eth1.2", "md5", "9", "geheim"});
    EXPECT_EQ(chain.status, 0);
    EXPECT_EQ(chain.errors, "frruci: note: ripd refused \"no key chain app_rip_9\": % Can't find. "
                            "(there was no such key chain)\n");
    // A daemon that does not even know the command has not cleaned up.
    stage_.answer("ripd", "no key chain app_rip_9", {.code = 2});
    EXPECT_EQ(
        frruci({"call", "process_rip_interface", "authen_mode", "eth1.2", "md5", "9", "geheim"})
            .status,
        1);
    for (const char *word : {"enable", "disable"}) {
        const std::string command =
            word == std::string("enable") ? "autosummary" : "no autosummary";
        stage_.answer("ripd", command.c_str(), {.code = 2});
        const Outcome outcome = frruci({"call", "process_rip_config", "auto_summary", word});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.errors, "frruci: note: ripd refused \"router rip vrf default: " +
                                      command + "\": code 2 (ripd does not know it)\n");
    }
}

TEST_F(Road, AZeroIsHarmlessOnlyWhereTheStoreHasNoValue) {
    stage::writeFile("/etc/config/ospf",
                     "config global 'global'\n\toption status 'on'\n\toption router_id '1.1.1.1'\n"
                     "config interface\n\toption interface 'eth1.2'\n\toption cost '9'\n");
    for (const char *command :
         {"ip ospf retransmit-interval 0", "ip ospf transmit-delay 0", "ip ospf hello-interval 0",
          "ip ospf dead-interval 0", "distance 0", "maximum-paths 0"}) {
        stage_.answer("ospfd", command, {.code = 2});
    }
    const Outcome outcome = frruci({"recover", "ospf"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(has(outcome.output, " 6 noted, 0 refused\n")) << outcome.output << outcome.errors;
    EXPECT_TRUE(has(outcome.errors, "note: ospfd refused \"interface eth1.2: ip ospf "
                                    "hello-interval 0\": code 2 (the store has no value for it)"));
    stage_.answer("ospfd", "ip ospf cost 9", {.code = 2});
    EXPECT_EQ(frruci({"recover", "ospf"}).status, 1);
}

TEST_F(Road, AHandlerThatAnswersNothingIsJudgedByItsCommands) {
    const Words originate = {"call", "process_ospf_advertise_cfg", "enable", "disable", "5", "1"};
    EXPECT_EQ(frruci(originate).status, 0);
    stage_.answerAll("ospfd", {.code = 13});
    const Outcome refused = frruci(originate);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.output, "");
    EXPECT_TRUE(has(refused.errors, "ospfd refused \""));
}

TEST_F(Road, WithoutADaemonNothingIsDone) {
    stage_.absent("ospfd");
    const Outcome outcome = frruci(interface("cost", {"7"}));
    EXPECT_EQ(outcome.status, 4);
    EXPECT_EQ(outcome.output, "ok\n");
    EXPECT_EQ(outcome.errors, "frruci: ospfd cannot be reached\n");
    stage_.deaf("ripd");
    EXPECT_EQ(frruci({"call", "process_rip_config", "rip_distance", "9"}).status, 4);
}

TEST_F(Road, ASettingThatIsNotEvenSentIsNotDone) {
    stage_.absent("ripd"); // so the library knows of no RIP, and leaves its timers alone
    const Outcome outcome = frruci({"call", "process_rip_config", "update_timer", "10"});
    EXPECT_EQ(outcome.status, 4);
    EXPECT_EQ(outcome.errors,
              "frruci: process_rip_config: nothing is sent while the protocol is off\n");
}

TEST_F(Road, ASettingThatIsNotStoredIsTold) {
    const Outcome outcome =
        frruci({"call", "process_nhrp_interface", "x", "tun0", "ip", "nhrp", "network-id", "5"});
    EXPECT_EQ(outcome.status, 4);
    EXPECT_EQ(outcome.output, "ok\n");
    EXPECT_TRUE(has(outcome.errors, "/etc/config/nhrp.sdwan.network_id=5 is not stored"));
}

/// Who did not answer is named, in every verb.
TEST_F(Road, ASilentDaemonDoesNotHangTheProgram) {
    stage_.answer("ospfd", "configure", {.silent = true});
    stage_.answerAll("ripd", {.silent = true});
    stage_.answerAll("nhrpd", {.silent = true});
    stage::writeFile("/etc/config/ospf", "config global 'global'\n\toption status 'on'\n");
    stage::writeFile("/etc/config/nhrp",
                     "config nhrp 'sdwan'\n\toption interface 'tun0'\n\toption redirect '1'\n");
    for (const Words &words :
         {interface("cost", {"7"}), Words({"recover", "ospf"}), Words({"start"})}) {
        Words all = {"--timeout", "1"};
        all.insert(all.end(), words.begin(), words.end());
        const Outcome outcome = frruci(all);
        EXPECT_EQ(outcome.status, 3) << words[0];
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "frruci: ospfd did not answer in time\n");
    }
    const Outcome rip = frruci({"show", "rip", "--timeout", "1"});
    EXPECT_EQ(rip.status, 3);
    EXPECT_EQ(rip.errors, "frruci: ripd did not answer \"show ip rip status\" in time\n");
    EXPECT_EQ(frruci({"--timeout", "1", "recover", "nhrp"}).errors,
              "frruci: nhrpd did not answer in time\n");
}

/// Seconds without progress: many short waits are longer than the limit together.
TEST_F(Road, ALongReplayIsNotCut) {
    stage_.answerAll("ospfd", {.delayMs = 300});
    EXPECT_EQ(frruci({"--timeout", "1", "call", "process_ospf_ospf_cfg", "1", "enable", "0", "50",
                      "500", "4", "disable"})
                  .status,
              0);
}

TEST_F(Road, ADaemonThatGoesAwayDidNotAnswer) {
    stage_.answer("ospfd", "ip ospf cost 7", {.closeEarly = true});
    const Outcome outcome = frruci(interface("cost", {"7"}));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.errors,
              "frruci: ospfd did not answer \"interface eth1.2: ip ospf cost 7\"\n");
}

TEST_F(Road, AShowWithoutItsEndMarkerDoesNotHangTheProgram) {
    stage_.answer("ospfd", "show ip ospf neighbor", {.text = "10.0.0.2 row\n", .truncateTo = 14});
    EXPECT_EQ(frruci({"call", "--timeout", "1", "process_ospf_neighbor"}).status, 3);
    EXPECT_EQ(frruci({"show", "ospf", "neighbors", "--timeout", "1"}).status, 3);
}

TEST_F(Road, NeighbourRowsComeAsTheWebPageGetsThem) {
    stage_.answer(
        "ospfd", "show ip ospf neighbor",
        {.text = "\nNeighbor ID     Pri State\n10.0.0.2  1 Full/-\n10.0.0.3  1 Init/-\n"});
    const Outcome outcome = frruci({"call", "process_ospf_neighbor"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "10.0.0.2  1 Full/-\r\n10.0.0.3  1 Init/-\r\n");
}

TEST_F(Road, NhrpAnswersFailWhenTheDaemonRefuses) {
    stage::writeFile("/etc/config/nhrp", "config nhrp 'sdwan'\n");
    stage_.answer("nhrpd", "nhrp nflog-group 3", {.code = 2});
    const Outcome outcome = frruci({"call", "process_nhrp_global", "x", "nflog-group", "3"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "fail\n");
}

/// For a cache without entries nhrpd has a code of its own.
TEST_F(Road, AnEmptyNhrpCacheIsNoRefusal) {
    const Words show = {"call", "process_nhrp_show", "x", "ip", "nhrp", "cache"};
    stage_.answer("nhrpd", "show ip nhrp cache json",
                  {.code = 1, .text = "{ \"attr\":{ \"entriesCount\":0 }, \"table\":[ ] }\n"});
    const Outcome empty = frruci(show);
    EXPECT_EQ(empty.status, 0);
    EXPECT_EQ(empty.output, "{\"attr\":{\"entriesCount\":0},\"table\":[]}\n");
    EXPECT_EQ(empty.errors, "");
    stage_.answer("nhrpd", "show ip nhrp cache json", {.code = 2, .text = "% Unknown command\n"});
    const Outcome refused = frruci(show);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.errors,
              "frruci: nhrpd refused \"show ip nhrp cache json\": % Unknown command\n");
}

// ---- plan ----

TEST_F(Road, APlanShowsTheSessionsAndSendsNothing) {
    stage::writeFile("/etc/config/nhrp", "config nhrp 'sdwan'\n");
    (void)stage_.log();
    const Outcome outcome =
        frruci({"plan", "process_nhrp_interface", "x", "tun0", "ip", "nhrp", "shortcut"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "store   /etc/config/nhrp.sdwan.interface=tun0\n"
                              "store   /etc/config/nhrp.sdwan.shortcut=1\n"
                              "nhrpd   enable\n"
                              "        configure\n"
                              "        interface tun0\n"
                              "        ip nhrp shortcut\n"
                              "reply   ok\n");
    EXPECT_FALSE(has(stage_.trace(), "enable"));
    EXPECT_STREQ(stage_.log(), "");
    EXPECT_EQ(program::readFile("/etc/config/nhrp"), "config nhrp 'sdwan'\n");
}

TEST_F(EmptyRoad, APlanKnowsWhatRunsByThen) {
    stage::writeFile("/etc/config/ospf", "config global 'global'\n\toption status 'on'\n\toption "
                                         "router_id '9.9.9.9'\n");
    const Outcome outcome = frruci({"plan", "recover", "ospf"});
    EXPECT_EQ(outcome.status, 0);
    // Nobody runs here, so both are started; the sessions go to what was started.
    EXPECT_EQ(outcome.output.find("shell   zebra -d \npause   1 s\nshell   conntrack -D -p ospf\n"
                                  "shell   ospfd -d\npause   1 s\nospfd   en\n        configure\n"
                                  "        router ospf\n        ospf router-id 9.9.9.9\n"),
              0U)
        << outcome.output;
    EXPECT_FALSE(has(stage_.trace(), "router ospf"));
}

/// The front-end's own modules answer, but not into the files that requests in earnest share.
TEST_F(Road, APlanAsksVlanQuestionsApart) {
    stage::writeFile("/tmp/lua/luci/controller/admin/lan.lua",
                     "return { is_vlan_id = function(id)\n"
                     "  io.open('/tmp/asked', 'w'):write(id)\n"
                     "  local file = io.open('/tmp/cli_vid', 'w')\n"
                     "  file:write('1\\n')\n  file:close()\nend }\n");
    setenv("LUA_PATH", "/tmp/lua/?.lua", 1);
    const Outcome outcome =
        frruci({"plan", "process_rip_interface", "send_version", "eth1.2", "ripv2"});
    unsetenv("LUA_PATH");
    EXPECT_TRUE(has(outcome.output, "shell   lua -e 'require \"luci.controller.admin.lan\""))
        << outcome.output;
    EXPECT_EQ(program::readFile("/tmp/asked"), "2");
    EXPECT_NE(access("/tmp/cli_vid", F_OK), 0);
    EXPECT_NE(WEXITSTATUS(program::shell("ls -d /tmp/frruci.*")), 0) << "a folder is left";
}

// ---- keys ----

TEST_F(Road, KeysNeverShow) {
    const std::string key = "geheim";
    const std::string refusal = "% Unknown command: ip ospf message-digest-key 5 md5 geheim\n";
    stage_.answer("ospfd", "ip ospf message-digest-key 5 md5 geheim",
                  {.code = 2, .text = refusal.c_str()});
    stage_.answer("ospfd", "show ip ospf",
                  {.text = "interface eth1.2\n ip ospf authentication-key geheim\n key-string "
                           "geheim\n ip rip authentication string geheim\n"});
    const Words set = {"process_ospf_interface", "eth1.2", "wan", "auto_type", "2", "5", key};
    for (const char *verb : {"call", "plan"}) {
        for (const Words &front : {Words({verb}), Words({verb, "--json"})}) {
            Words words = front;
            words.insert(words.end(), set.begin(), set.end());
            const Outcome outcome = frruci(words);
            EXPECT_FALSE(has(outcome.output, key)) << outcome.output;
            EXPECT_FALSE(has(outcome.errors, key)) << outcome.errors;
            EXPECT_TRUE(has(outcome.output + outcome.errors, "***"));
            words.insert(words.begin(), "--show-keys");
            const Outcome shown = frruci(words);
            EXPECT_TRUE(has(shown.output + shown.errors, key));
        }
    }
    const Outcome show = frruci({"show", "ospf"});
    EXPECT_EQ(show.output, "interface eth1.2\n ip ospf authentication-key ***\n key-string ***\n"
                           " ip rip authentication string ***\n");
    EXPECT_TRUE(has(frruci({"show", "ospf", "--show-keys"}).output, key));
}

// ---- replays ----

TEST_F(Road, AReplayEndsWithItsSummary) {
    stage::writeFile("/etc/config/rip", "config global 'global'\n\toption status 'off'\n");
    EXPECT_EQ(frruci({"recover", "rip"}).output, "rip: nothing to replay\n");
    EXPECT_EQ(frruci({"start"}).output,
              "ospf: nothing to replay\nrip: nothing to replay\nnhrp: nothing to replay\n");
    stage::writeFile("/etc/config/ospf", "config global 'global'\n\toption status 'on'\n\toption "
                                         "router_id '9.9.9.9'\nconfig network\n\toption ip "
                                         "'10.1.2.0'\n\toption wildcard_mask '255.255.255.0'\n"
                                         "\toption area_id '0'\n");
    stage_.answer("ospfd", "network 10.1.2.0/24 area 0", {.code = 13, .text = "% No.\n"});
    const Outcome outcome = frruci({"recover", "ospf"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "ospf: 18 sent, 16 accepted, 0 noted, 2 refused\n");
    EXPECT_EQ(outcome.errors, // once, though both instances were refused
              "frruci: ospfd refused \"router ospf: network 10.1.2.0/24 area 0\": % No.\n");
    stage_.absent("ospfd");
    EXPECT_EQ(frruci({"recover", "ospf"}).status, 4);
    EXPECT_EQ(frruci({"start"}).status, 4);
}

TEST_F(Road, NhrpIsReplayedAsFarAsTheStoreCanExpressIt) {
    for (const char *store : {"config nhrp 'sdwan'\n\toption redirect '1'\n",
                              "config nhrp 'sdwan'\n\toption interface '0'\n\toption redirect "
                              "'1'\n",
                              "config nhrp 'sdwan'\n\toption interface 'tun0'\n\toption redirect "
                              "'0'\n"}) {
        stage::writeFile("/etc/config/nhrp", store);
        EXPECT_EQ(frruci({"recover", "nhrp"}).output, "nhrp: nothing to replay\n");
    }
    const std::string store = "config nhrp 'sdwan'\n"
                              "\toption interface 'tun0'\n"
                              "\toption redirect '1'\n"
                              "\toption shortcut '0'\n"
                              "\toption zebra_address '10.0.0.1/24'\n"
                              "\toption network_id '5'\n"
                              "\toption registration_nounique '1'\n"
                              "\toption nhs_nbma '10.9.0.1'\n"
                              "\toption map_multicast '10.9.0.2'\n"
                              "\toption ipsec_profile 'vpn'\n"
                              "\toption ipsec_source 'eth1.2'\n"
                              "\toption no_link_detect '1'\n"
                              "\toption nflog_group '3'\n"
                              "\toption multicast_nflog_group '4'\n";
    stage::writeFile("/etc/config/nhrp", store.c_str());
    stage_.answer("nhrpd", "ip nhrp nhs dynamic nbma 10.9.0.1",
                  {.code = 13, .text = "% Entry exists already\n"});
    (void)stage_.trace();
    const Outcome outcome = frruci({"recover", "nhrp"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.output, "nhrp: 11 sent, 11 accepted, 0 noted, 0 refused\n");
    std::string sent;
    std::string line;
    for (const char byte : std::string(stage_.trace())) {
        line += byte;
        if (byte == '\n') {
            sent += has(line, "enable") ? line : "";
            line.clear();
        }
    }
    const std::string zebra = "zebra: enable | configure | interface tun0 | ";
    const std::string tunnel = "nhrpd: enable | configure | interface tun0 | ";
    EXPECT_EQ(sent, zebra + "no link-detect\n" + zebra + "ip address 10.0.0.1/24\n" + tunnel +
                        "tunnel protection vici profile vpn\n" + tunnel + "tunnel source eth1.2\n" +
                        tunnel + "ip nhrp network-id 5\n" + tunnel + "ip nhrp redirect\n" + tunnel +
                        "ip nhrp registration no-unique\n" + tunnel +
                        "ip nhrp nhs dynamic nbma 10.9.0.1\n" + tunnel +
                        "ip nhrp map multicast 10.9.0.2\n" +
                        "nhrpd: enable | configure | nhrp nflog-group 3\n"
                        "nhrpd: enable | configure | nhrp multicast-nflog-group 4\n");
    EXPECT_EQ(program::readFile("/etc/config/nhrp"), store);
}

TEST_F(EmptyRoad, NhrpdIsStartedUnderItsOwnName) {
    stage::writeFile("/etc/config/nhrp",
                     "config nhrp 'sdwan'\n\toption interface 'tun0'\n\toption redirect '1'\n");
    EXPECT_EQ(frruci({"plan", "recover", "nhrp"}).output,
              "shell   zebra -d \npause   1 s\nshell   nhrpd -d\npause   1 s\nnhrpd   enable\n"
              "        configure\n        interface tun0\n        ip nhrp redirect\n");
}

// ---- shows ----

TEST_F(Road, AShowAsksTheDaemonAndWritesNothing) {
    stage::writeFile("/etc/config/ospf", "config interface 'eth1_2'\n");
    std::string table;
    for (int i = 0; i < 3000; ++i) {
        table += "eth1.2 is up, line " + std::to_string(i) + "\n";
    }
    stage_.answer("ospfd", "show ip ospf interface", {.text = table.c_str()});
    (void)stage_.log();
    const Outcome outcome = frruci({"show", "ospf", "interfaces"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, table);
    EXPECT_STREQ(stage_.log(), "");
    EXPECT_EQ(program::readFile("/etc/config/ospf"), "config interface 'eth1_2'\n");
}

TEST_F(Road, AShowTellsWhyItHasNothing) {
    stage_.answer("ripd", "show ip rip", {.code = 2, .text = "% Unknown command\n"});
    const Outcome refused = frruci({"show", "rip"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(has(refused.errors, "ripd refused \"show ip rip\" (2): % Unknown command"));
    stage_.deaf("nhrpd");
    const Outcome stale = frruci({"show", "nhrp"});
    EXPECT_EQ(stale.status, 4);
    EXPECT_EQ(stale.errors, "frruci: nhrpd cannot be reached\n");
    stage_.answer("ospfd", "show ip ospf json", {.text = "{\"cut\": "});
    EXPECT_EQ(frruci({"show", "ospf", "--json"}).status, 3);
}

/// The answer comes in two segments, cut in its ending.
TEST_F(Road, AShowReadsToTheMarkerWhereverTheAnswerIsCut) {
    for (int cut = 1; cut < 9; ++cut) {
        stage_.answer("nhrpd", "show ip nhrp cache", {.text = "12345", .splitAt = cut, .times = 1});
        EXPECT_EQ(frruci({"show", "nhrp"}).output, "12345") << cut;
    }
}

} // namespace
