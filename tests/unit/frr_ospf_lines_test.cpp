// SPDX-License-Identifier: Apache-2.0
// The number in a failure's log line is that of the call or table row that failed: it is looked up
// in the source, and no two failing settings share one.

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_recovery.h"
#include "tests/support/stage.h"

namespace {

std::string sourceLine(const std::string &file, std::size_t number) {
    std::ifstream source(FRRUCI_SOURCE "/ospf/" + file);
    std::string line;
    for (std::size_t i = 0; i < number && std::getline(source, line); ++i) {
    }
    return source ? line : "";
}

/// One log line of a failure: what stands in the source at its number.
struct Failure {
    const char *file;
    const char *inSource;
    const char *message; ///< after "SOURCE:NUMBER: "
};

class Lines : public testing::Test {
protected:
    /// The daemon refuses everything.
    Lines() { stage_.answerAll("ospfd", {.code = 2}); }

    using Handler = void (*)(int32_t, char **);

    static void call(Handler handler, std::vector<std::string> words) {
        std::vector<char *> vector;
        for (std::string &word : words) {
            vector.push_back(word.data());
        }
        vector.push_back(nullptr);
        handler(static_cast<int32_t>(words.size()), vector.data());
    }

    /// The log lines of that source which begin with one of a failure's words.
    std::vector<std::pair<std::size_t, std::string>> failures(const std::string &source) {
        std::vector<std::pair<std::size_t, std::string>> found;
        std::istringstream log(stage_.log());
        for (std::string line; std::getline(log, line);) {
            const std::string head = source + ":";
            if (line.rfind(head, 0) != 0) {
                continue;
            }
            std::size_t digits = 0;
            const std::size_t number = std::stoul(line.substr(head.size()), &digits);
            const std::string message = line.substr(head.size() + digits + 2);
            if (message.find("ret=") != std::string::npos || message == "ip_ospf_cost, failed") {
                found.emplace_back(number, message);
            }
        }
        (void)stage_.trace();
        return found;
    }

    void expectFailures(const char *source, const std::vector<Failure> &wanted) {
        const auto found = failures(source);
        ASSERT_EQ(found.size(), wanted.size());
        std::set<std::string> places;
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            EXPECT_EQ(found[i].second, wanted[i].message);
            const std::string line = sourceLine(wanted[i].file, found[i].first);
            EXPECT_NE(line.find(wanted[i].inSource), std::string::npos)
                << wanted[i].file << ":" << found[i].first << ": " << line;
            places.insert(wanted[i].file + std::to_string(found[i].first));
        }
        EXPECT_EQ(places.size(), wanted.size()) << "two failures share a number";
    }

    stage::Stage stage_;
};

TEST_F(Lines, TellTheProcessOptionsApart) {
    call(process_ospf_ospf_cfg, {"120", "enable", "1", "2", "3", "4", "enable"});
    const char *file = "frr_ospf_settings.cpp";
    expectFailures("frr_ospf",
                   {
                       {file, "swOspfdistance(",         " ret=1, swOspfdistance"        },
                       {file, "swOspfRfc1583Compa(",     " ret=1, rfc1583_compatile"     },
                       {file, "swOspfTimerThrottleSpf",  " ret=1, swOspfTimerThrottleSpf"},
                       {file, "swOspfMaxPaths(",         " ret=1, swOspfMaxPaths"        },
                       {file, "swOspfPassiveInterface(", " ret=1, swOspfPassiveInterface"},
    });
}

constexpr const char *kKeywords[] = {"cost", "retransmit",   "transmit",   "priority", "hello",
                                     "dead", "network_type", "mtu_ignore", "passive"};

TEST_F(Lines, TellTheKeywordsOfAnInterfaceApart) {
    std::vector<std::string> rows;
    std::vector<Failure> wanted;
    for (const char *keyword : kKeywords) {
        call(process_ospf_interface, {"eth1.2", "wan", keyword, "1"});
        rows.push_back(std::string("{\"") + keyword + "\",");
    }
    for (const std::string &row : rows) {
        wanted.push_back({"frr_ospf_settings.cpp", row.c_str(), " ret=1, ip_ospf_cost, failed"});
    }
    expectFailures("frr_ospf", wanted);
}

TEST_F(Lines, TellAnAuthenticationFromItsMissingKeys) {
    call(process_ospf_interface, {"eth1.2", "wan", "auto_type", "0"});
    expectFailures("frr_ospf",
                   {
                       {"frr_ospf.cpp", "ip_ospf_auth(", " ret=1, ip_ospf_cost, failed"}
    });
    stage_.answerAll("ospfd", {});
    call(process_ospf_interface, {"eth1.2", "wan", "auto_type", "1"});
    const auto password = failures("frr_ospf");
    call(process_ospf_interface, {"eth1.2", "wan", "auto_type", "2", "5"});
    const auto digest = failures("frr_ospf");
    ASSERT_EQ(password.size(), 1u);
    ASSERT_EQ(digest.size(), 1u);
    EXPECT_NE(password[0].first, digest[0].first);
    for (const auto &failure : {password[0], digest[0]}) {
        EXPECT_NE(sourceLine("frr_ospf.cpp", failure.first).find("leaveUnanswered()"),
                  std::string::npos);
    }
}

TEST_F(Lines, TellTheDefaultRouteAndTheShowsApart) {
    call(process_ospf_advertise_cfg, {"enable", "enable", "1", "2"});
    call(process_ospf_interface, {"show"});
    process_ospf_neighbor();
    process_ospf_lsdb();
    const char *show = " ret=1, swOspfShowOspf, failed";
    expectFailures("frr_ospf", {
                                   {"frr_ospf.cpp",      "swOspfOrignate(",     " ret=1, swOspfOrignate"},
                                   {"frr_ospf.cpp",      "showInterfaces()",    show                    },
                                   {"frr_ospf_show.cpp", "showRows(kNeighbor)", show                    },
                                   {"frr_ospf_show.cpp", "showRows(kDatabase)", show                    },
    });
}

TEST_F(Lines, TellTheStoreWritesOfAShowApart) {
    stage::writeFile("/etc/config/ospf", "config interface 'eth1_2'\n");
    char up[260] = "lo is up\r\n";
    handle_ospf_show_interface(up);
    char facts[260] = "a b c Network Type BROADCAST, Cost: 9\r\n";
    handle_ospf_show_interface(facts);
    const char *file = "frr_ospf_show_interface.cpp";
    const char *message = " ret=2, frr_uci_set failed, section name is lo";
    expectFailures("frr_ospf", {
                                   {file, "\"working\"",      message},
                                   {file, "\"network_type\"", message},
                                   {file, "\"cost\"",         message},
    });
}

TEST_F(Lines, TellTheUnreadOptionsOfTheReplayApart) {
    stage_.answerAll("ospfd", {});
    stage_.shell("grep", {.text = "1 root zebra ospfd\n"});
    stage::writeFile("/etc/config/ospf", "config global 'global'\n");
    (void)ospf_cfg_recovery();
    ospf_recovery_process();
    ospf_recovery_adv_cfg();
    ospf_recovery_ospf_cfg();
    std::vector<std::string> rows;
    std::vector<Failure> wanted;
    for (const char *option : {"status", "router_id", "originate", "always", "metric",
                               "metric_type", "distance", "rfc_compatible", "spf_delay",
                               "spf_hold_init", "spf_hold_max", "max_path", "passive_def"}) {
        rows.push_back(std::string("\"") + option + "\"");
    }
    const auto found = failures("frr_ospf_recovery");
    ASSERT_EQ(found.size(), rows.size());
    std::set<std::size_t> numbers;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_NE(found[i].second.find(", frr_uci_get"), std::string::npos);
        EXPECT_NE(sourceLine("frr_ospf_recovery.cpp", found[i].first).find(rows[i]),
                  std::string::npos)
            << rows[i] << " at " << found[i].first;
        numbers.insert(found[i].first);
    }
    EXPECT_EQ(numbers.size(), rows.size()) << "two options share a number";
}

TEST_F(Lines, TellTheReplayedSettingsApart) {
    stage::writeFile("/etc/config/ospf",
                     "config interface\n\toption interface 'eth1.2'\n\toption passive '1'\n");
    ospf_recovery_ospf_cfg();
    std::vector<Failure> wanted;
    const auto options = failures("frr_ospf_recovery");
    ASSERT_EQ(options.size(), 7u + 5u);
    const char *const calls[] = {"swOspfdistance(", "swOspfRfc1583Compa(", "swOspfTimerThrottleSpf",
                                 "swOspfMaxPaths(", "swOspfPassiveInterface("};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_NE(sourceLine("frr_ospf_settings.cpp", options[7 + i].first).find(calls[i]),
                  std::string::npos);
    }
    ospf_recovery_interface();
    std::vector<std::string> rows;
    for (const char *keyword : kKeywords) {
        rows.push_back(std::string("{\"") + keyword + "\",");
    }
    const char *message = " ret=1, ip_ospf_cost, failed";
    for (const std::string &row : rows) {
        wanted.push_back({"frr_ospf_settings.cpp", row.c_str(), message});
    }
    wanted.push_back({"frr_ospf_recovery.cpp", "ip_ospf_auth(", message});
    expectFailures("frr_ospf_recovery", wanted);
}

} // namespace
