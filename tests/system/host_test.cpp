// SPDX-License-Identifier: Apache-2.0
// The host program on real daemons.

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "tests/host/program.h"
#include "tests/support/real_daemons.h"

namespace {

using program::frruci;
using program::has;
using program::Outcome;
using routers::Router;
using Words = std::vector<std::string>;

void writeFile(const char *path, const std::string &text) {
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    ASSERT_EQ(write(file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    close(file);
}

class HostOnDaemons : public testing::Test {
protected:
    void SetUp() override {
        setenv("FRRUCI_LIBRARY", LIBRARY, 1);
        ASSERT_TRUE(router_.startManagement());
        ASSERT_TRUE(router_.start("zebra"));
    }
    void TearDown() override {
        for (const char *daemon : {"nhrpd", "ripd", "ospfd", "zebra", "mgmtd"}) {
            EXPECT_TRUE(router_.stop(daemon));
        }
        for (const char *store : {"/etc/config/ospf", "/etc/config/rip", "/etc/config/nhrp"}) {
            unlink(store);
        }
    }

    const Router router_ = Router::first();
};

void expectAccepted(const Words &words) {
    Words all = {"call"};
    all.insert(all.end(), words.begin(), words.end());
    const Outcome outcome = frruci(all);
    EXPECT_EQ(outcome.status, 0) << testing::PrintToString(words) << outcome.errors;
}

/// The ends of every range that the table of words has.
TEST_F(HostOnDaemons, OspfAcceptsTheEndsOfEveryRange) {
    ASSERT_TRUE(router_.start("ospfd"));
    const std::string interface = "process_ospf_interface";
    for (const char *seconds : {"retransmit", "transmit", "hello", "dead", "cost"}) {
        expectAccepted({interface, "eth1.2", "wan", seconds, "1"});
        expectAccepted({interface, "eth1.2", "wan", seconds, "65535"});
    }
    for (const char *priority : {"0", "255"}) {
        expectAccepted({interface, "eth1.2", "wan", "priority", priority});
    }
    for (const char *type : {"0", "1", "2"}) {
        expectAccepted({interface, "eth1.2", "wan", "network_type", type});
    }
    for (const char *flag : {"1", "0"}) {
        expectAccepted({interface, "eth1.2", "wan", "mtu_ignore", flag});
        expectAccepted({interface, "eth1.2", "wan", "passive", flag});
    }
    expectAccepted({interface, "eth1.2", "wan", "auto_type", "0"});
    expectAccepted({interface, "eth1.2", "wan", "auto_type", "1", "12345678"});
    expectAccepted({interface, "eth1.2", "wan", "auto_type", "2", "1", "1234567890123456"});
    expectAccepted({interface, "eth1.2", "wan", "auto_type", "2", "255", "k"});
    expectAccepted({"process_ospf_ospf_cfg", "1", "enable", "0", "0", "0", "1", "enable"});
    expectAccepted(
        {"process_ospf_ospf_cfg", "255", "disable", "600000", "600000", "600000", "64", "disable"});
    expectAccepted({"process_ospf_advertise_cfg", "enable", "enable", "0", "1"});
    expectAccepted({"process_ospf_advertise_cfg", "disable", "disable", "16777214", "2"});
    expectAccepted({"process_ospf_network", "add", "10.1.2.0", "0.0.0.255", "4294967295"});
    expectAccepted({"process_ospf_network", "del", "10.1.2.0", "0.0.0.255", "4294967295"});
    expectAccepted({interface, "show"});
    expectAccepted({"process_ospf_neighbor"});
    expectAccepted({"process_ospf_lsdb"});
}

TEST_F(HostOnDaemons, RipAcceptsTheEndsOfEveryRange) {
    expectAccepted({"process_rip_global", "on"});
    const std::string config = "process_rip_config";
    for (const char *version : {"ripv1", "ripv2", "default"}) {
        expectAccepted({config, "rip_version", version});
    }
    for (const Words &ends :
         {Words({"rip_distance", "1", "255"}), Words({"default_metric", "1", "16"}),
          Words({"update_timer", "5", "100"}), Words({"timeout_timer", "5", "300"}),
          Words({"garbage_timer", "5", "500"})}) {
        expectAccepted({config, ends[0], ends[1]});
        expectAccepted({config, ends[0], ends[2]});
    }
    for (const char *flag : {"enable", "disable"}) {
        expectAccepted({config, "auto_summary", flag});
        expectAccepted({config, "redistribute_static", flag, "0"});
        expectAccepted({config, "redistribute_ospf", flag, "16"});
    }
    const std::string interface = "process_rip_interface";
    for (const char *mode : {"none", "split_horizon", "poison_reverse"}) {
        expectAccepted({interface, "split_horizon_mode", "eth1.2", mode});
    }
    for (const char *version : {"ripv1", "ripv2"}) {
        expectAccepted({interface, "send_version", "eth1.2", version});
        expectAccepted({interface, "receive_version", "eth1.2", version});
    }
    expectAccepted({interface, "receive_version", "eth1.2", "both"});
    expectAccepted({interface, "authen_mode", "eth1.2", "simple", "1", "1234567890123456"});
    expectAccepted({interface, "authen_mode", "eth1.2", "md5", "1", "1234567890123456"});
    expectAccepted({interface, "authen_mode", "eth1.2", "md5", "255", "k"});
    expectAccepted({interface, "authen_mode", "eth1.2", "none"});
    expectAccepted({interface, "show", "x"});
    expectAccepted({"process_rip_network", "add", "10.0.0.0", "255.0.0.0"});
    expectAccepted({"process_rip_network", "del", "10.0.0.0", "255.0.0.0"});
}

TEST_F(HostOnDaemons, ARefusalIsToldInTheDaemonsWords) {
    ASSERT_TRUE(router_.start("ospfd"));
    const Outcome outcome =
        frruci({"call", "process_ospf_network", "del", "10.1.2.0", "255.255.255.0", "0"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "ok\n");
    EXPECT_EQ(outcome.errors.find(
                  "frruci: ospfd refused \"router ospf: no network 10.1.2.0/24 area 0\": "),
              0U)
        << outcome.errors;
    EXPECT_TRUE(has(outcome.errors, "find")) << outcome.errors; // its own words
}

/// program::frruci and the shell read to the end of a pipe that a daemon could hold.
TEST_F(HostOnDaemons, NobodysOutputIsKeptOpen) {
    ASSERT_TRUE(router_.stop("zebra"));
    EXPECT_EQ(router_.output("out=$(" HOST_PROGRAM " call process_ospf_global on 1.1.1.1 2>&1); "
                             "echo \"$out\""),
              "ok\n");
    EXPECT_TRUE(router_.answers("ospfd"));
    expectAccepted({"process_ospf_global", "off", "x"});
    writeFile("/etc/config/ospf",
              "config global 'global'\n\toption status 'on'\n\toption router_id "
              "'1.1.1.1'\n");
    writeFile("/etc/config/rip", "config global 'global'\n\toption status 'on'\n");
    writeFile("/etc/config/nhrp", "config nhrp 'sdwan'\n\toption interface 'tun0'\n\toption "
                                  "redirect '1'\n");
    const std::string summary = router_.output(HOST_PROGRAM " start 2>&1 | cat");
    for (const char *protocol : {"ospf: ", "rip: ", "nhrp: "}) {
        EXPECT_TRUE(has(summary, protocol)) << summary;
    }
    for (const char *daemon : {"zebra", "ospfd", "ripd", "nhrpd"}) {
        EXPECT_TRUE(router_.answers(daemon)) << daemon;
    }
}

TEST_F(HostOnDaemons, TwentyAtOnceEachGetTheirAnswer) {
    ASSERT_TRUE(router_.start("ospfd"));
    std::vector<std::pair<pid_t, int>> callers;
    for (int i = 1; i <= 20; ++i) {
        int out[2];
        ASSERT_EQ(pipe2(out, O_CLOEXEC), 0);
        callers.emplace_back(program::start({"call", "process_ospf_interface", "eth1.2", "wan",
                                             "cost", std::to_string(i)},
                                            STDIN_FILENO, out[1], STDERR_FILENO),
                             out[0]);
        close(out[1]);
    }
    for (const auto &[process, output] : callers) {
        EXPECT_EQ(program::readAll(output), "ok\n");
        EXPECT_EQ(program::wait(process), 0);
        close(output);
    }
}

/// A pipe without room: who writes into it stays.
class FullPipe {
public:
    FullPipe() {
        if (pipe2(ends_, O_CLOEXEC | O_NONBLOCK) != 0) {
            abort();
        }
        while (write(ends_[1], "x", 1) == 1) {
        }
        (void)fcntl(ends_[1], F_SETFL, 0); // writers wait from here on
    }
    ~FullPipe() { close(ends_[0]); }
    FullPipe(const FullPipe &) = delete;
    FullPipe &operator=(const FullPipe &) = delete;

    int input() const { return ends_[1]; }
    void drain() {
        close(ends_[1]);
        (void)fcntl(ends_[0], F_SETFL, 0);
        (void)program::readAll(ends_[0]);
    }

private:
    int ends_[2] = {-1, -1};
};

/// Processes are counted and killed by parts of their ps lines.
TEST_F(HostOnDaemons, SwitchingOffEndsNoVerb) {
    ASSERT_TRUE(router_.start("ospfd"));
    ASSERT_TRUE(router_.start("ripd"));
    FullPipe full;
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    std::vector<pid_t> verbs;
    for (const Words &words :
         {Words({"plan", "process_ospf_interface", "eth1.2", "wan", "hello", "9"}),
          Words({"plan", "recover", "ospf"}), Words({"handlers"}), Words({"help"}),
          Words({"show", "ospf"}), Words({"show", "rip"}), Words({"doctor"}), Words({"nonsense"}),
          Words({"run"}), Words({"show", "zebra", "ospfd", "ripd", "nhrpd"})}) {
        verbs.push_back(program::start(words, nothing, full.input(), full.input()));
    }
    // Each that is a verb of its own waits for its turn or for room; all have hidden their words.
    const Words off[] = {
        {"process_ospf_global", "off", "x"},
        {"process_rip_global",                     "off"      }
    };
    for (const pid_t verb : verbs) {
        const std::string path = "/proc/" + std::to_string(verb) + "/cmdline";
        EXPECT_TRUE(routers::waitFor([&] {
            const std::string line = program::readFile(path.c_str());
            return !has(line, "zebra") && !has(line, "process_ospf");
        }));
    }
    for (const Words &words : off) {
        expectAccepted(words);
    }
    EXPECT_EQ(router_.processCount("ospfd") + router_.processCount("ripd"), 0);
    full.drain();
    close(nothing);
    for (const pid_t verb : verbs) {
        EXPECT_GE(program::wait(verb), 0) << "killed";
    }
}

TEST_F(HostOnDaemons, NhrpIsReplayedAndReplayedAgain) {
    writeFile("/etc/config/nhrp", "config nhrp 'sdwan'\n\toption interface 'tun0'\n"
                                  "\toption network_id '7'\n\toption nhs_nbma '10.9.0.1'\n"
                                  "\toption map_multicast '10.9.0.2'\n\toption redirect '1'\n"
                                  "\toption nflog_group '3'\n");
    for (int i = 0; i < 2; ++i) {
        const Outcome outcome = frruci({"recover", "nhrp"});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(outcome.output, "nhrp: 5 sent, 5 accepted, 0 noted, 0 refused\n");
    }
    const std::string block = router_.block("nhrpd", "interface tun0");
    for (const char *line : {"ip nhrp network-id 7", "ip nhrp nhs dynamic nbma 10.9.0.1",
                             "ip nhrp map multicast 10.9.0.2", "ip nhrp redirect"}) {
        EXPECT_TRUE(has(block, line)) << block;
    }
    EXPECT_TRUE(has(router_.runningConfig("nhrpd"), "nhrp nflog-group 3"));
}

TEST_F(HostOnDaemons, APlanChangesNothing) {
    ASSERT_TRUE(router_.start("ospfd"));
    expectAccepted({"process_ospf_network", "add", "10.1.2.0", "255.255.255.0", "0"});
    const std::string before = router_.runningConfig("ospfd");
    EXPECT_EQ(
        frruci({"plan", "process_ospf_network", "del", "10.1.2.0", "255.255.255.0", "0"}).status,
        0);
    const Outcome off = frruci({"plan", "process_ospf_global", "off", "x"});
    EXPECT_TRUE(has(off.output, "kill    process ")) << off.output;
    EXPECT_EQ(router_.runningConfig("ospfd"), before);
}

TEST_F(HostOnDaemons, ShowsAskTheDaemons) {
    ASSERT_TRUE(router_.start("ospfd"));
    ASSERT_TRUE(router_.start("ripd"));
    expectAccepted({"process_ospf_global", "on", "1.2.3.4"});
    EXPECT_TRUE(has(frruci({"show", "ospf"}).output, "Router ID: 1.2.3.4"));
    EXPECT_TRUE(has(frruci({"show", "ospf", "--json"}).output, "\"routerId\":\"1.2.3.4\""));
    for (const char *part : {"neighbors", "database", "interfaces"}) {
        EXPECT_EQ(frruci({"show", "ospf", part}).status, 0) << part;
        EXPECT_EQ(frruci({"show", "ospf", part, "--json"}).status, 0) << part;
    }
    EXPECT_EQ(frruci({"show", "rip"}).status, 0);
    EXPECT_EQ(frruci({"show", "rip", "--json"}).status, 0);
    EXPECT_EQ(frruci({"show", "nhrp"}).status, 4);
}

} // namespace
