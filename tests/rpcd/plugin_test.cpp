// SPDX-License-Identifier: Apache-2.0
// What holds for all methods: the list, refused requests, rights, and that reading changes nothing.

#include <algorithm>
#include <iterator>
#include <sys/file.h>
#include <sys/stat.h>

#include "tests/rpcd/many.h"
#include "tests/rpcd/plugin.h"

namespace {

using plugin::has;
using plugin::kReading;
using plugin::kWriting;
using plugin::leastFor;
using program::frruci;
using program::Outcome;

class PluginRules : public plugin::Plugin {};

TEST_F(PluginRules, TheListHasAnExampleOfEachType) {
    const Outcome outcome = frruci({"rpcd", "list"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(jsontext::compact(outcome.output),
              R"({"status":{},"neighbors":{},"database":{},"interfaces":{},"rip":{},)"
              R"("nhrp_cache":{},"diff":{"protocols":[]},"apply":{"protocols":[]},"doctor":{},)"
              R"("call":{"handler":"","words":[]}})");
}

/// A request that is refused.
struct Refused {
    const char *method;
    const char *arguments;
    const char *message;
};

constexpr const char *kNoObject = "the arguments are no JSON object";

constexpr Refused kRefused[] = {
    {"status", "",                                                      kNoObject                                      },
    {"status", "{",                                                     kNoObject                                      },
    {"status", "{} {}",                                                 kNoObject                                      },
    {"status", "[]",                                                    kNoObject                                      },
    {"status", "null",                                                  kNoObject                                      },
    {"status", R"({"a":1})",                                            "the argument a is not known"                  },
    {"apply",  R"({"protocol":["ospf"]})",                              "the argument protocol is not known"           },
    {"apply",  R"({"protocols":"ospf"})",                               "the argument protocols is not as it should be"},
    {"apply",  R"({"protocols":["ospf",1]})",                           "the argument protocols is not as it should be"},
    {"apply",  R"({"protocols":["bgp"]})",                              "the argument protocols is not as it should be"},
    {"apply",  R"({"protocols":["ospf","--dry-run"]})",
     "the argument protocols is not as it should be"                                                                   },
    {"diff",   R"({"protocols":[]})",                                   "the argument protocols is not as it should be"},
    {"diff",   R"({"protocols":null})",                                 "the argument protocols is not as it should be"},
    {"call",   "{}",                                                    "the argument handler is missing"              },
    {"call",   R"({"handler":["x"]})",                                  "the argument handler is not as it should be"  },
    {"call",   R"({"handler":"process_ospf_neighbor","words":"x"})",
     "the argument words is not as it should be"                                                                       },
    {"call",   R"({"handler":"process_ospf_neighbor","words":[true]})",
     "the argument words is not as it should be"                                                                       },
};

/// rpcd takes what is no object for an invalid argument.
TEST_F(PluginRules, ARequestThatIsWrongIsRefusedAndSendsNothing) {
    (void)stage_.trace();
    for (const Refused &row : kRefused) {
        const Outcome outcome = call(row.method, row.arguments);
        EXPECT_EQ(outcome.status, 2) << row.arguments;
        EXPECT_EQ(jsontext::compact(outcome.output), "[]") << row.arguments;
        EXPECT_EQ(outcome.errors, std::string("frruci: ") + row.method + ": " + row.message + "\n");
    }
    const Outcome unknown = call("reboot");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(jsontext::compact(unknown.output), "[]");
    EXPECT_EQ(unknown.errors, "frruci: unknown method reboot\n");
    EXPECT_STREQ(stage_.trace(), "");
}

TEST_F(PluginRules, ARequestWithoutItsEndIsRefused) {
    const std::string nul("{}\0{}", 5);
    EXPECT_EQ(call("status", nul).status, 2);
    EXPECT_EQ(call("status", "{\"a\":\"" + std::string(60000, 'x')).status, 2);
}

TEST_F(PluginRules, WordsBesideTheTwoAreRefused) {
    using Words = std::vector<std::string>;
    for (const Words &words : {Words({"rpcd"}), Words({"rpcd", "list", "x"}),
                               Words({"rpcd", "call"}), Words({"rpcd", "call", "status", "x"})}) {
        const Outcome outcome = frruci(words, "{}");
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "frruci: rpcd what? list, or call METHOD\n");
    }
    EXPECT_EQ(frruci({"--show-keys", "rpcd", "call", "diff"}, "{}").errors,
              "frruci: rpcd never shows keys\n");
}

/// uhttpd adds the session to every call that comes over HTTP.
TEST_F(PluginRules, ACallOverHttpHasItsSession) {
    EXPECT_EQ(call("nhrp_cache", R"({"ubus_rpc_session":"0123456789abcdef"})").status, 0);
}

// ---- rights ----

std::string quotedList(const std::vector<std::string> &names) {
    std::string list;
    for (const std::string &name : names) {
        list += (list.empty() ? "\"" : ",\"") + name + "\"";
    }
    return list;
}

/// The file has both lists, and together they are the table's methods.
TEST_F(PluginRules, EachMethodIsEitherForReadingOrForWriting) {
    const std::string rights = jsontext::compact(program::readFile(
        TREE "/luci/luci-app-frruci/root/usr/share/rpcd/acl.d/luci-app-frruci.json"));
    const std::string reading = quotedList({std::begin(kReading), std::end(kReading)});
    const std::string writing = quotedList({std::begin(kWriting), std::end(kWriting)});
    EXPECT_TRUE(has(rights, R"("read":{"ubus":{"frruci":[)" + reading +
                                R"(]},"uci":["ospf","rip","nhrp","network"]})"))
        << rights;
    EXPECT_TRUE(
        has(rights, R"("write":{"ubus":{"frruci":[)" + writing + R"(]},"uci":["ospf","rip"]})"))
        << rights;
    const std::string list = jsontext::compact(frruci({"rpcd", "list"}).output);
    std::size_t count = 0;
    for (const char *name : {"status", "neighbors", "database", "interfaces", "rip", "nhrp_cache",
                             "diff", "doctor", "apply", "call"}) {
        count += has(list, std::string("\"") + name + "\":{") ? 1 : 0;
    }
    EXPECT_EQ(count, std::size(kReading) + std::size(kWriting));
    EXPECT_EQ(static_cast<std::size_t>(std::count(list.begin(), list.end(), '{')), count + 1);
}

/// A heading with its arguments for each method, and none for another.
TEST_F(PluginRules, ThePageHasEachMethodWithItsArguments) {
    const std::string page = program::readFile(TREE "/docs/luci.md");
    const std::string list = jsontext::compact(frruci({"rpcd", "list"}).output);
    std::size_t headings = 0;
    for (std::size_t at = 0; (at = page.find("\n### `", at)) != std::string::npos; ++at) {
        ++headings;
        const std::string line = page.substr(at + 5, page.find('\n', at + 1) - at - 5);
        const std::string name = line.substr(1, line.find('`', 1) - 1);
        const std::size_t begin = list.find("\"" + name + "\":{");
        ASSERT_NE(begin, std::string::npos) << name;
        const std::string arguments = list.substr(begin, list.find('}', begin) - begin);
        for (const char *argument : {"\"protocols\":", "\"handler\":", "\"words\":"}) {
            EXPECT_EQ(has(line, argument), has(arguments, argument)) << name << argument;
        }
    }
    EXPECT_EQ(headings, std::size(kReading) + std::size(kWriting));
}

/// What changes something takes its turn; what reads does not wait for it, nor for who talks to
/// mgmtd.
TEST_F(PluginRules, OnlyWritingMethodsTakeTheLock) {
    store("rip", "config global 'global'\n\toption status 'on'\n");
    stage_.present("mgmtd");
    const std::string difference = answer("diff");
    const int folder = open("/var", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(flock(folder, LOCK_EX), 0);
    const int lock = open("/tmp/tmp/frruci.lock", O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    for (const char *method : kReading) {
        EXPECT_EQ(call(method).status, 0) << method;
    }
    EXPECT_EQ(answer("diff"), difference);
    close(folder);
    for (const char *method : kWriting) {
        const Outcome outcome = call(method, leastFor(method));
        EXPECT_EQ(outcome.status, 3) << method;
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "frruci: another request did not end in time\n");
    }
    close(lock);
}

// ---- nothing changes ----

/// Names, sizes, times and contents.
std::string filesBelow(const char *folders) {
    const std::string command = std::string("for f in $(find ") + folders +
                                " -type f | sort); do stat -c '%n %s %y' $f; cat $f; done"
                                " > /run/files 2>&1";
    EXPECT_EQ(program::shell(command.c_str()), 0);
    return program::readFile("/run/files");
}

TEST_F(PluginRules, ReadingChangesNothing) {
    store("ospf", "config global 'global'\n\toption status 'on'\n\toption router_id '1.1.1.1'\n"
                  "config interface 'eth1_2'\n\toption interface 'eth1.2'\n\toption cost '7'\n");
    store("rip", "config global 'global'\n\toption status 'on'\n");
    store("nhrp", "config nhrp 'sdwan'\n\toption interface 'tun0'\n\toption redirect '1'\n");
    const std::string before = filesBelow("/etc/config /tmp");
    (void)stage_.trace();
    for (const char *method : kReading) {
        (void)answer(method);
    }
    EXPECT_EQ(filesBelow("/etc/config /tmp"), before);
    const std::string trace = stage_.trace();
    EXPECT_TRUE(has(trace, "show ip ospf neighbor json")) << trace;
    EXPECT_TRUE(has(trace, "show running-config")) << trace;
    EXPECT_FALSE(has(trace, "conf") && has(trace, "| configure")) << trace;
    EXPECT_STREQ(stage_.log(), "");
}

// ---- many at once ----

TEST_F(PluginRules, FiftyAtOnceAreAnsweredRight) {
    const std::string shown = program::readFile(TREE "/tests/rpcd/shown/8.4/neighbor");
    stage_.answer("ospfd", "show ip ospf neighbor json", {.text = shown.c_str()});
    const std::string expected = answer("neighbors");
    ASSERT_TRUE(has(expected, R"("state":"Full")"));
    EXPECT_EQ(many::answers("neighbors", 50), std::vector<std::string>(50, expected));
}

} // namespace
