// SPDX-License-Identifier: Apache-2.0
// What handlers, shows and replay ask of the functions below them, and in which order replies, log
// lines and pauses come. The functions of the library are defined here, in the program, so that it
// finds these first; they record and answer what they are told to.

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_recovery.h"
#include "ospf/sw_ospf.h"
#include "ospf/vty_ospf.h"

namespace {

std::string calls;             // a line each
std::vector<uint32_t> results; // of the next calls, the first at the end; 0 when there are none
constexpr uint32_t kRefused = 1;
constexpr uint32_t kNoConnection = 0xFFFFFFFF;

uint32_t nextResult() {
    if (results.empty()) {
        return 0;
    }
    const uint32_t result = results.back();
    results.pop_back();
    return result;
}

[[gnu::format(printf, 1, 2)]] void record(const char *format, ...) {
    char call[512];
    va_list arguments;
    va_start(arguments, format);
    (void)vsnprintf(call, sizeof call, format, arguments);
    va_end(arguments);
    calls += std::string(call) + "\n";
}

std::string take() {
    std::string taken;
    taken.swap(calls);
    return taken;
}

} // namespace

uint32_t swOspfNetwork(uint32_t unused, const char *address, const char *mask, uint32_t areaId,
                       uint32_t set, uint32_t selector) {
    record("network %u %s %s area %u set %u selector %u", unused, address, mask, areaId, set,
           selector);
    return nextResult();
}

uint32_t vtyPrint(const char *command, const char *socketPath, uint32_t kind, uint32_t selector,
                  int32_t extra) {
    record("print '%s' on %s kind %u selector %u mode %d", command, socketPath, kind, selector,
           extra);
    return nextResult();
}

uint32_t ip_ospf_auth_key(uint16_t /*vrf*/, const char *ifname, int32_t /*wan*/, int32_t /*enable*/,
                          const char *password) {
    record("password %s of %s", password, ifname);
    return nextResult();
}

uint32_t ip_ospf_auth_md5key(uint16_t /*vrf*/, const char *ifname, int32_t /*wan*/,
                             int32_t /*enable*/, int32_t key_id, const char *key) {
    record("digest key %d %s of %s", key_id, key, ifname);
    return nextResult();
}

int32_t write_pipe_to_lua(const char *text, const char *path) {
    record("reply %s: %s", path, text);
    return 0;
}

int32_t record_log_act(const char *format, ...) {
    char line[512];
    va_list arguments;
    va_start(arguments, format);
    (void)vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    std::string text = line;
    const std::size_t number = text.find(':') + 1;
    text.replace(number, text.find(':', number) - number, "*");
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at)) {
        text.replace(at, 1, "\\n");
    }
    record("log %s", text.c_str());
    return 0;
}

extern "C" int usleep(unsigned microseconds) {
    record("usleep %u", microseconds);
    return 0;
}

namespace {

class Calls : public testing::Test {
protected:
    Calls() {
        calls.clear();
        results.clear();
    }

    using Handler = void (*)(int32_t, char **);

    static std::string of(Handler handler, std::vector<std::string> words) {
        std::vector<char *> vector;
        for (std::string &word : words) {
            vector.push_back(word.data());
        }
        vector.push_back(nullptr);
        handler(static_cast<int32_t>(words.size()), vector.data());
        return take();
    }
};

TEST_F(Calls, ANetworkGoesToTheLanInstanceAndThenToTheWan) {
    EXPECT_EQ(of(process_ospf_network, {"add", "10.1.0.0", "255.255.0.0", "5"}),
              "log frr_ospf:*: process_ospf_network add 10.1.0.0 255.255.0.0 5\\n\n"
              "network 1 10.1.0.0 255.255.0.0 area 5 set 1 selector 0\n"
              "network 1 10.1.0.0 255.255.0.0 area 5 set 1 selector 1\n"
              "reply /tmp/tmp/ospf_pipe_c2lua: ok\n");
}

TEST_F(Calls, AFailedNetworkIsLoggedAtOnceWithAnEmptyLine) {
    results = {kRefused, kRefused};
    EXPECT_EQ(of(process_ospf_network, {"add", "10.1.0.0", "255.255.0.0", "5"}),
              "log frr_ospf:*: process_ospf_network add 10.1.0.0 255.255.0.0 5\\n\n"
              "network 1 10.1.0.0 255.255.0.0 area 5 set 1 selector 0\n"
              "log frr_ospf:*: process_ospf_network failed.\\n\\n\n"
              "network 1 10.1.0.0 255.255.0.0 area 5 set 1 selector 1\n"
              "log frr_ospf:*: process_ospf_network failed.\\n\\n\n"
              "reply /tmp/tmp/ospf_pipe_c2lua: ok\n");
}

TEST_F(Calls, AnyWordButAddDeletesANetwork) {
    for (const std::string word : {"del", "remove", "Add", "adds", ""}) {
        EXPECT_EQ(of(process_ospf_network, {word, "10.1.0.0", "255.255.0.0", "5"}),
                  "log frr_ospf:*: process_ospf_network " + word +
                      " 10.1.0.0 255.255.0.0 5\\n\n"
                      "network 1 10.1.0.0 255.255.0.0 area 5 set 0 selector 0\n"
                      "network 1 10.1.0.0 255.255.0.0 area 5 set 0 selector 1\n"
                      "reply /tmp/tmp/ospf_pipe_c2lua: ok\n");
    }
}

TEST_F(Calls, RowsComeBeforeThePauseTheEndMarkAndTheFailure) {
    results = {kRefused};
    process_ospf_neighbor();
    EXPECT_EQ(take(), "print 'show ip ospf neighbor' on /var/ospfd.vty kind 2 selector 1 mode 1\n"
                      "usleep 10000\n"
                      "reply /tmp/tmp/ospf_pipe_c2lua_neighbor: ok\n"
                      "log frr_ospf:*:  ret=1, swOspfShowOspf, failed\\n\n");
    results = {kNoConnection};
    process_ospf_lsdb();
    EXPECT_EQ(take(), "print 'show ip ospf database' on /var/ospfd.vty kind 3 selector 1 mode 1\n"
                      "usleep 10000\n"
                      "reply /tmp/tmp/ospf_pipe_c2lua_database: ok\n"
                      "log frr_ospf:*:  ret=1, swOspfShowOspf, failed\\n\n");
}

TEST_F(Calls, AnInterfaceShowIsAnsweredBeforeItsFailureIsLogged) {
    results = {kRefused};
    EXPECT_EQ(of(process_ospf_interface, {"show"}),
              "log frr_ospf:*: swOspfShowOspf\\n\n"
              "print 'show ip ospf interface' on /var/ospfd.vty kind 1 selector 1 mode 1\n"
              "reply /tmp/tmp/ospf_pipe_c2lua: ok\n"
              "log frr_ospf:*:  ret=1, swOspfShowOspf, failed\\n\n");
}

TEST_F(Calls, OtherShowsHaveNoKindAndKeepTheirMode) {
    EXPECT_EQ(swOspfShowOspf(7, "route", 0), 0);
    EXPECT_EQ(take(), "print 'show ip ospf route' on /var/ospfd.vty kind 0 selector 1 mode 0\n");
}

TEST_F(Calls, ADatabaseRequestIsAWanAndALanPassInTheModeOfRip) {
    OspfDatabaseRequest request = {};
    EXPECT_EQ(swOspfShowOspfDatabase(0, &request), 0);
    EXPECT_EQ(take(),
              "print 'show ip ospf database   ' on /var/ospfd.vty kind 3 selector 1 mode 0\n"
              "print 'show ip ospf database   ' on /var/ospfd.vty kind 3 selector 0 mode 0\n");
    results = {kNoConnection};
    EXPECT_EQ(swOspfShowOspfDatabase(0, &request), 1);
    EXPECT_EQ(take(),
              "print 'show ip ospf database   ' on /var/ospfd.vty kind 3 selector 1 mode 0\n");
}

/// Replays the one interface of the store; the walk itself drops what comes back.
int32_t replayResult = 0;
int32_t replay(uci_context *context, uci_section *section) {
    replayResult = ospf_recovery_interface_from_section(context, section);
    return 0;
}

TEST_F(Calls, AReplayedInterfaceGivesBackTheStatusOfItsKeyAndDoesNotLogIt) {
    struct {
        const char *type;
        const char *call;
    } const cases[] = {
        {"1", "password secret of eth1.2\n" },
        {"2", "digest key 5 abc of eth1.2\n"},
    };
    for (const auto &row : cases) {
        std::ofstream("/etc/config/ospf")
            << "config interface\n\toption interface 'eth1.2'\n\toption auto_type '" << row.type
            << "'\n\toption simple_key 'secret'\n\toption md5_key_id '5'\n"
               "\toption md5_key 'abc'\n";
        for (const uint32_t status : {0u, kRefused, kNoConnection}) {
            results = {status};
            frr_uci_foreach_section("ospf", "interface", replay);
            EXPECT_EQ(replayResult, static_cast<int32_t>(status));
            const std::string seen = take();
            EXPECT_EQ(seen.substr(seen.size() - strlen(row.call)), row.call); // nothing after it
        }
    }
}

TEST_F(Calls, TheReplayAddsANetworkToTheLanInstanceAndThenToTheWan) {
    std::ofstream("/etc/config/ospf") << "config network\n\toption ip '10.1.0.0'\n"
                                         "\toption wildcard_mask '0.0.255.255'\n"
                                         "\toption area_id '5'\n";
    results = {0, kRefused};
    ospf_recovery_network();
    EXPECT_EQ(take(), "network 0 10.1.0.0 0.0.255.255 area 5 set 1 selector 0\n"
                      "network 0 10.1.0.0 0.0.255.255 area 5 set 1 selector 1\n");
}

} // namespace
