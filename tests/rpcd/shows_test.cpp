// SPDX-License-Identifier: Apache-2.0
// What the daemons show, as both versions show it, becomes the same answers.

#include <ctime>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/rpcd/plugin.h"

namespace {

using plugin::has;

struct Show {
    const char *daemon;
    const char *command;
    const char *file;
};

constexpr Show kShows[] = {
    {"ospfd", "show ip ospf json",                   "ospf"      },
    {"ospfd", "show ip ospf neighbor json",          "neighbor"  },
    {"ospfd", "show ip ospf database router json",   "router"    },
    {"ospfd", "show ip ospf database network json",  "network"   },
    {"ospfd", "show ip ospf database external json", "external"  },
    {"ospfd", "show ip ospf interface json",         "interface" },
    {"ripd",  "show ip rip status",                  "rip_status"},
    {"ripd",  "show ip rip",                         "rip"       },
    {"nhrpd", "show ip nhrp cache json",             "cache"     },
};

constexpr const char *kMethods[] = {"neighbors", "database", "interfaces", "rip", "nhrp_cache"};

/// What a method answers without a daemon.
struct Empty {
    const char *method;
    const char *daemon;
    const char *lists;
};

constexpr Empty kEmpty[] = {
    {"neighbors",  "ospfd", R"("neighbors":[])"                                                          },
    {"database",   "ospfd", R"("areas":[],"external":[])"                                                },
    {"interfaces", "ospfd", R"("interfaces":[],"addressable":[])"                                        },
    {"rip",        "ripd",  R"("redistribute":[],"networks":[],"interfaces":[],"sources":[],"routes":[])"},
    {"nhrp_cache", "nhrpd", R"("entries":[])"                                                            },
};

class Shows : public plugin::Plugin {
protected:
    /// Asks for the status until it has the text, for a few seconds.
    static bool comesToSay(const std::string &text) {
        const time_t end = time(nullptr) + 10;
        std::string status;
        while (!has(status, text) && time(nullptr) < end) {
            status = answer("status");
        }
        return has(status, text);
    }

    void showAs(const std::string &version) {
        for (const Show &show : kShows) {
            const std::string path = TREE "/tests/rpcd/shown/" + version + "/" + show.file;
            const std::string text = program::readFile(path.c_str());
            ASSERT_NE(text, "") << path;
            stage_.answer(show.daemon, show.command, {.text = text.c_str()});
        }
    }
};

TEST_F(Shows, BothVersionsGiveTheSameAnswers) {
    for (const char *version : {"8.4", "10.3"}) {
        showAs(version);
        for (const std::string method : kMethods) {
            const std::string path = TREE "/tests/rpcd/answers/" + method + ".json";
            EXPECT_EQ(answer(method), jsontext::compact(program::readFile(path.c_str())))
                << version << " " << method;
        }
    }
}

TEST_F(Shows, ADaemonThatIsNotThereHasEmptyLists) {
    for (const Empty &row : kEmpty) {
        const std::string expected = std::string(R"({"running":false,)") + row.lists + "}";
        stage_.deaf(row.daemon);
        EXPECT_EQ(answer(row.method), expected);
        stage_.absent(row.daemon);
        EXPECT_EQ(answer(row.method), expected);
    }
}

TEST_F(Shows, ADaemonThatDoesNotAnswerHasEmptyLists) {
    for (const Empty &row : kEmpty) {
        stage_.answerAll(row.daemon, {.silent = true});
        EXPECT_EQ(answer(row.method), std::string(R"({"running":false,)") + row.lists + "}");
    }
}

TEST_F(Shows, ADaemonWithoutItsProcessHasEmptyLists) {
    for (const Empty &row : kEmpty) {
        stage_.answerAll(row.daemon, {.text = "% OSPF is not enabled\n"});
        EXPECT_EQ(answer(row.method), std::string(R"({"running":true,)") + row.lists + "}");
    }
}

TEST_F(Shows, RipWithoutAVersionOfItsOwn) {
    stage_.answer("ripd", "show ip rip status",
                  {.text = "  Default version control: send version 2, receive any version \n"});
    EXPECT_FALSE(has(answer("rip"), "\"version\""));
}

TEST_F(Shows, RipInAsLongAsItTakes) {
    const char *sources = "  Routing Information Sources:\n"
                          "    Gateway          BadPackets BadRoutes  Distance Last Update\n"
                          "    10.1.2.2                 1         2       120   1d02h03m\n"
                          "    10.1.2.3                 1         2       120   never\n";
    stage_.answer("ripd", "show ip rip status", {.text = sources});
    const std::string rip = answer("rip");
    EXPECT_TRUE(has(rip, R"("sources":[{"gateway":"10.1.2.2","bad_packets":1,"bad_routes":2,)"
                         R"("distance":120,"last_update":93780},{"gateway":"10.1.2.3",)"
                         R"("bad_packets":1,"bad_routes":2,"distance":120}])"))
        << rip;
}

/// nhrpd has a code of its own for a cache without entries.
TEST_F(Shows, AnEmptyCacheIsNoFault) {
    stage_.answer("nhrpd", "show ip nhrp cache json",
                  {.code = 1, .text = "{ \"attr\":{ \"entriesCount\":0 }, \"table\":[ ] }\n"});
    EXPECT_EQ(answer("nhrp_cache"), R"({"running":true,"entries":[]})");
}

/// The stage's network has no interfaces but lo, so the test makes some.
TEST_F(Shows, OnlyInterfacesThatTheLibraryCanAddressAreOffered) {
    const auto ip = [](const std::string &words) {
        return program::shell(("ip " + words + " >/dev/null 2>&1").c_str()) == 0;
    };
    ASSERT_TRUE(ip("link add eth0.12 type veth peer name eth1.2"));
    ASSERT_TRUE(ip("link add br-lan type veth peer name eth2.7"));
    ASSERT_TRUE(ip("address add 192.168.12.1/20 dev eth0.12") && ip("link set eth0.12 up") &&
                ip("address add 10.0.0.1/8 dev br-lan"));
    stage_.absent("ospfd");
    EXPECT_EQ(answer("interfaces"), R"({"running":false,"interfaces":[],"addressable":[)"
                                    R"({"name":"eth1.2","section":"eth1_2","ns":"wan","up":false},)"
                                    R"({"name":"eth0.12","section":"eth0_12","ns":"lan","up":true,)"
                                    R"("address":"192.168.12.1/20"},)"
                                    R"({"name":"eth2.7","section":"eth2_7","up":false}]})");
    EXPECT_TRUE(ip("link del eth0.12") && ip("link del br-lan"));
}

// ---- status ----

TEST_F(Shows, StatusTellsOfDaemonsAndProtocols) {
    store("ospf", "config global 'global'\n\toption status 'on'\n");
    store("rip", "config global 'global'\n\toption status 'off'\n");
    stage_.answer("ospfd", "show version", {.text = "FRRouting 8.4.4 (router) on Linux.\n"});
    stage_.deaf("nhrpd");
    const std::string version = "\"version\":\"" FRRUCI_VERSION "\"";
    const std::string status = answer("status");
    EXPECT_EQ(status.find("{" + version + ",\"daemons\":["), 0U) << status;
    EXPECT_TRUE(has(status, R"({"name":"zebra","state":"running"},)"
                            R"({"name":"ospfd","state":"running","version":"8.4.4"},)"
                            R"({"name":"ripd","state":"running"},)"))
        << status;
    EXPECT_TRUE(has(status, R"("protocols":{"ospf":{"stored":"on","running":true},)"
                            R"("rip":{"stored":"off","running":true},)"
                            R"("nhrp":{"stored":"unset","running":false}},)"
                            R"("watch":{"running":false},"others":[]})"))
        << status;
    store("nhrp", "config nhrp 'sdwan'\n\toption interface 'tun0'\n");
    EXPECT_TRUE(has(answer("status"), R"("nhrp":{"stored":"on","running":false})"));
}

TEST_F(Shows, StatusTellsSilentFromStopped) {
    stage_.answerAll("ripd", {.silent = true});
    stage_.absent("zebra");
    stage_.deaf("ospfd");
    const std::string status = answer("status");
    EXPECT_TRUE(has(status, R"({"name":"ripd","state":"silent"})")) << status;
    // The processes are called sleep here, whatever their command lines say.
    EXPECT_TRUE(has(status, R"({"name":"zebra","state":"stopped"})")) << status;
    EXPECT_TRUE(has(status, R"({"name":"ospfd","state":"stopped"})")) << status;
    const program::Running ospfd("ospfd");
    EXPECT_TRUE(has(answer("status"), R"({"name":"ospfd","state":"silent"})"));
}

TEST_F(Shows, StatusTellsOfMgmtdWhereItIsInstalledOrRuns) {
    const std::string path = getenv("PATH");
    setenv("PATH", "/bin", 1);
    EXPECT_FALSE(has(answer("status"), "mgmtd"));
    stage::writeFile("/tmp/tools/mgmtd", "#!/bin/sh\n");
    chmod("/tmp/tools/mgmtd", 0755);
    setenv("PATH", "/bin:/tmp/tools", 1);
    EXPECT_TRUE(has(answer("status"), R"("daemons":[{"name":"mgmtd","state":"stopped"},)"));
    setenv("PATH", "/bin", 1);
    stage_.present("mgmtd");
    EXPECT_TRUE(has(answer("status"), R"("daemons":[{"name":"mgmtd","state":"running"},)"));
    setenv("PATH", path.c_str(), 1);
}

TEST_F(Shows, StatusTellsOfOthersOnZebraAndOfTheWatch) {
    const program::Running bgpd("bgpd");
    EXPECT_TRUE(has(answer("status"), R"("watch":{"running":false},"others":["bgpd"])"));
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    const pid_t watch = program::start({"--timeout", "9", "watch"}, nowhere, nowhere, nowhere);
    EXPECT_TRUE(comesToSay(R"("watch":{"running":true})"));
    ::syscall(SYS_kill, watch, SIGKILL); // in this program kill is a stand-in
    EXPECT_EQ(program::wait(watch), -1);
    EXPECT_TRUE(comesToSay(R"("watch":{"running":false})")); // once its children have ended, too
    close(nowhere);
}

} // namespace
