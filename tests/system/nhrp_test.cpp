// SPDX-License-Identifier: Apache-2.0
// NHRP on a real nhrpd and zebra: what reaches their running configuration, what they refuse, the
// cache, and daemons that are not there.

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "nhrp/frr_nhrp.h"
#include "nhrp/sw_nhrp.h"
#include "tests/support/real_daemons.h"
#include "tests/system/wording.h"

namespace {

/// Called before each connection that the library makes; empty most of the time.
std::function<void()> beforeConnect;

} // namespace

// Takes the C library's place, to let something happen between store write and delivery.
extern "C" int connect(int fd, const sockaddr *address, socklen_t length) {
    if (beforeConnect) {
        std::exchange(beforeConnect, nullptr)();
    }
    const long result = syscall(SYS_connect, fd, address, length);
    return static_cast<int>(result);
}

namespace {

using routers::Reply;
using routers::ReplyPipe;
using routers::Router;
using routers::waitFor;

using Words = std::vector<std::string>;

constexpr const char *kStore = "/etc/config/nhrp";
constexpr const char *kHeading = "interface tun0";
constexpr routers::Wording kEnteredBlock = {"", "interface tun0\nexit\n", "interface tun0\nexit\n"};

void call(void (*handler)(int32_t, char **), Words words) {
    std::vector<char *> vector;
    for (std::string &word : words) {
        vector.push_back(word.data());
    }
    vector.push_back(nullptr);
    handler(static_cast<int32_t>(words.size()), vector.data());
}

std::string storeText() {
    std::ifstream file(kStore);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool storeHas(const std::string &option, const std::string &value) {
    return storeText().find("\toption " + option + " '" + value + "'\n") != std::string::npos;
}

bool hasLine(const std::string &text, const std::string &line) {
    return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
}

/// A phrase of tun0 that the daemons know, the line that it leaves in a running configuration, and
/// the option in the store.
struct Known {
    Words words;
    std::string daemon;
    std::string line;
    std::string option;
    std::string value;
};

const std::vector<Known> &knownPhrases() {
    static const std::vector<Known> kAll = {
        {{"ip", "address", "10.9.0.1/24"},
         "zebra",                                                         "ip address 10.9.0.1/24",
         "zebra_address",                                                                                                             "10.9.0.1/24"},
        {{"ip", "nhrp", "network-id", "5"},                      "nhrpd", "ip nhrp network-id 5",                   "network_id",     "5"          },
        {{"ip", "nhrp", "redirect"},                             "nhrpd", "ip nhrp redirect",                       "redirect",       "1"          },
        {{"ip", "nhrp", "shortcut"},                             "nhrpd", "ip nhrp shortcut",                       "shortcut",       "1"          },
        {{"ip", "nhrp", "registration", "no-unique"},
         "nhrpd",                                                         "ip nhrp registration no-unique",
         "registration_nounique",                                                                                                     "1"          },
        {{"ip", "nhrp", "nhs", "dynamic", "nbma", "10.1.2.3"},
         "nhrpd",                                                         "ip nhrp nhs dynamic nbma 10.1.2.3",
         "nhs_nbma",                                                                                                                  "10.1.2.3"   },
        {{"ip", "nhrp", "map", "multicast", "10.1.2.4"},
         "nhrpd",                                                         "ip nhrp map multicast 10.1.2.4",
         "map_multicast",                                                                                                             "10.1.2.4"   },
        {{"tunnel", "protection", "vici", "profile", "overlay"},
         "nhrpd",                                                         "tunnel protection vici profile overlay",
         "ipsec_profile",                                                                                                             "overlay"    },
        {{"tunnel", "source", "eth0.2"},                         "nhrpd", "tunnel source eth0.2",                   "ipsec_source",   "eth0.2"     },
        {{"no", "link-detect"},                                  "zebra", "no link-detect",                         "no_link_detect", "1"          },
    };
    return kAll;
}

/// The phrases that take one of those away.
const std::vector<Known> &negatedPhrases() {
    static const std::vector<Known> kAll = {
        {{"no", "ip", "address", "10.9.0.1/24"},
         "zebra",                                                             "ip address 10.9.0.1/24",
         "zebra_address",                                                                                                      "0"},
        {{"no", "ip", "nhrp", "shortcut"},                           "nhrpd", "ip nhrp shortcut",                  "shortcut", "0"},
        {{"no", "ip", "nhrp", "nhs", "dynamic", "nbma", "10.1.2.3"},
         "nhrpd",                                                             "ip nhrp nhs dynamic nbma 10.1.2.3",
         "nhs_nbma",                                                                                                           "0"},
        {{"no", "ip", "nhrp", "map", "multicast", "10.1.2.4"},
         "nhrpd",                                                             "ip nhrp map multicast 10.1.2.4",
         "map_multicast",                                                                                                      "0"},
    };
    return kAll;
}

/// A shell command of the test's own, before the router's, for a scope.
class OwnCommand {
public:
    OwnCommand(const std::string &name, const std::string &script)
        : file_("/tmp/own-commands/" + name), path_(getenv("PATH")) {
        (void)mkdir("/tmp/own-commands", 0755); // may be there from another
        std::ofstream(file_) << "#!/bin/sh\n" << script << "\n";
        EXPECT_EQ(0, chmod(file_.c_str(), 0755));
        EXPECT_EQ(0, setenv("PATH", ("/tmp/own-commands:" + path_).c_str(), 1));
    }
    ~OwnCommand() {
        EXPECT_EQ(0, setenv("PATH", path_.c_str(), 1));
        EXPECT_EQ(0, unlink(file_.c_str()));
    }
    OwnCommand(const OwnCommand &) = delete;
    OwnCommand &operator=(const OwnCommand &) = delete;

private:
    std::string file_;
    std::string path_;
};

class Nhrp : public testing::Test {
protected:
    void SetUp() override {
        std::ofstream(kStore) << "config nhrp 'sdwan'\n";
        ASSERT_TRUE(router_.startManagement() && router_.start("zebra") && router_.start("nhrpd"));
    }
    void TearDown() override {
        EXPECT_TRUE(router_.stop("nhrpd") && router_.stop("zebra") && router_.stop("mgmtd"));
    }

    /// What the handler replied to a phrase of tun0.
    std::string set(const Words &phrase) {
        Words words = {"x", "tun0"};
        words.insert(words.end(), phrase.begin(), phrase.end());
        call(process_nhrp_interface, words);
        return reply_.take();
    }
    std::string setGlobal(const std::string &keyword, const std::string &value) {
        call(process_nhrp_global, {"x", keyword, value});
        return reply_.take();
    }
    std::string showCache() {
        call(process_nhrp_show, {"x", "ip", "nhrp", "cache"});
        return cache_.take();
    }
    /// Waits until so many lines of the process list have the name, those of dead processes that
    /// nobody has waited for included, as the library counts them.
    bool comesToCount(const std::string &name, int count) const {
        const std::string list = "ps -w | grep -v grep | grep -c " + name;
        return waitFor([&] { return router_.output(list) == std::to_string(count) + "\n"; });
    }
    bool isConfigured(const Known &known) const {
        return hasLine(router_.block(known.daemon, kHeading), " " + known.line);
    }

    /// A static cache entry, which needs no peer.
    void map(int entry) const {
        const std::string host = std::to_string(entry);
        ASSERT_EQ(0, router_
                         .configure("nhrpd",
                                    {kHeading, "ip nhrp map 172.16.0." + host + " 10.1.2." + host})
                         .code);
    }

    Router router_ = Router::first();
    ReplyPipe reply_{"/tmp/tmp/nhrp_pipe_c2lua"};
    ReplyPipe cache_{"/tmp/tmp/nhrp_pipe_c2lua_cache"};
};

// ---------------------------------------------------------------- settings

TEST_F(Nhrp, KnownPhrasesShowInTheRunningConfigurationOfTheirDaemon) {
    for (const Known &known : knownPhrases()) {
        SCOPED_TRACE(known.line);
        ASSERT_FALSE(isConfigured(known));
        EXPECT_EQ("ok", set(known.words));
        EXPECT_TRUE(isConfigured(known));
        EXPECT_TRUE(storeHas(known.option, known.value));
        const std::string other = known.daemon == "zebra" ? "nhrpd" : "zebra";
        EXPECT_FALSE(hasLine(router_.block(other, kHeading), " " + known.line));
    }
    EXPECT_TRUE(storeHas("interface", "tun0"));
    EXPECT_NE(router_.output("ip -o address show tun0").find("10.9.0.1/24"), std::string::npos);
}

TEST_F(Nhrp, NegatedPhrasesTakeThemAway) {
    for (const Known &known : knownPhrases()) {
        ASSERT_EQ("ok", set(known.words));
    }
    for (const Known &negated : negatedPhrases()) {
        SCOPED_TRACE(negated.line);
        ASSERT_TRUE(isConfigured(negated));
        EXPECT_EQ("ok", set(negated.words));
        EXPECT_FALSE(isConfigured(negated));
        EXPECT_TRUE(storeHas(negated.option, negated.value));
    }
}

TEST_F(Nhrp, RedirectStaysWhateverIsAsked) {
    ASSERT_EQ("ok", set({"ip", "nhrp", "redirect"}));
    EXPECT_EQ("ok", set({"no", "ip", "nhrp", "redirect"}));
    EXPECT_TRUE(hasLine(router_.block("nhrpd", kHeading), " ip nhrp redirect"));
    EXPECT_TRUE(storeHas("redirect", "1"));
}

TEST_F(Nhrp, TunnelLinksAreUnknownToThisDaemon) {
    const std::string before = router_.runningConfig("nhrpd");
    for (const char *verb : {"add", "connect", "del"}) {
        EXPECT_EQ("fail", set({"tunnel", verb, "hub", "spoke"})) << verb;
    }
    EXPECT_EQ(before, router_.runningConfig("nhrpd"));
    EXPECT_EQ("config nhrp 'sdwan'\n", storeText());
}

TEST_F(Nhrp, RefusedValuesAreStoredAndReplyFail) {
    const std::vector<Known> refused = {
        {{"ip", "address", "10.9.0.999/24"},                "zebra", "", "zebra_address", "10.9.0.999/24"},
        {{"ip", "nhrp", "network-id", "none"},              "nhrpd", "", "network_id",    "none"         },
        {{"ip", "nhrp", "nhs", "dynamic", "nbma", "a b c"}, "nhrpd", "", "nhs_nbma",      "a b c"        },
        {{"ip", "nhrp", "map", "multicast", "everyone"},    "nhrpd", "", "map_multicast", "everyone"     },
        {{"tunnel", "source", "eth0.2 twice"},              "nhrpd", "", "ipsec_source",  "eth0.2 twice" },
    };
    for (const Known &phrase : refused) {
        SCOPED_TRACE(phrase.option);
        const std::string before = router_.runningConfig(phrase.daemon);
        EXPECT_EQ("fail", set(phrase.words));
        EXPECT_TRUE(storeHas(phrase.option, phrase.value));
        // mgmtd keeps the block of an interface that was entered, though it is empty.
        const std::string entered = phrase.daemon == "zebra" ? inVersion(kEnteredBlock) : "";
        EXPECT_EQ(before + entered, router_.runningConfig(phrase.daemon));
    }
}

TEST_F(Nhrp, WordsOf300CharactersAreCutAndDoNoHarm) {
    const std::string word(300, 'w');
    EXPECT_EQ("fail", set({"ip", "nhrp", "network-id", word}));
    EXPECT_EQ("fail", set({"tunnel", "add", word, word}));
    EXPECT_EQ("ok", set({"tunnel", word, "a", "b"}));
    EXPECT_EQ("ok", set({"tunnel", "protection", "vici", "profile", word}));
    const std::string line = "tunnel protection vici profile " + word;
    EXPECT_TRUE(hasLine(router_.block("nhrpd", kHeading), " " + line.substr(0, 255)));
    EXPECT_TRUE(storeHas("ipsec_profile", word));
    EXPECT_TRUE(router_.answers("nhrpd"));
}

TEST_F(Nhrp, GlobalGroupsShowInTheRunningConfiguration) {
    EXPECT_EQ("ok", setGlobal("nflog-group", "3"));
    EXPECT_EQ("ok", setGlobal("multicast-nflog-group", "224"));
    const std::string config = router_.runningConfig("nhrpd");
    EXPECT_TRUE(hasLine(config, "nhrp nflog-group 3"));
    EXPECT_TRUE(hasLine(config, "nhrp multicast-nflog-group 224"));
    EXPECT_TRUE(storeHas("nflog_group", "3") && storeHas("multicast_nflog_group", "224"));
    EXPECT_EQ("fail", setGlobal("nflog-group", "70000"));
    EXPECT_TRUE(hasLine(router_.runningConfig("nhrpd"), "nhrp nflog-group 3"));
    EXPECT_TRUE(storeHas("nflog_group", "70000"));
    EXPECT_FALSE(storeHas("interface", "tun0"));
}

TEST_F(Nhrp, TheNameAloneRestartsTheDaemon) {
    // The restart itself does not wait, and a new daemon ends when the old one still runs.
    const OwnCommand patient("killall", "exec /usr/bin/killall -w \"$@\"");
    ASSERT_EQ("ok", setGlobal("nflog-group", "3"));
    const std::string before = router_.output("cat /var/nhrpd.pid");
    call(process_nhrp_global, {"nhrp"});
    EXPECT_EQ("ok", reply_.take());
    ASSERT_TRUE(waitFor([&] {
        const std::string now = router_.output("cat /var/nhrpd.pid");
        return router_.answers("nhrpd") && now != before && router_.processCount("nhrpd") == 1;
    }));
    EXPECT_FALSE(hasLine(router_.runningConfig("nhrpd"), "nhrp nflog-group 3"));
}

// ---------------------------------------------------------------- the cache

std::string withoutBlanks(std::string text) {
    std::erase_if(text, [](char byte) { return byte == ' ' || byte == '\n'; });
    return text;
}

TEST_F(Nhrp, TheCacheArrivesWholeAndIsJson) {
    ASSERT_EQ(0, router_.run("ip link set tun0 up"));
    ASSERT_EQ("ok", set({"ip", "nhrp", "network-id", "5"}));
    int several = 0;
    for (int entries = 0; entries <= 20; ++entries) {
        SCOPED_TRACE(entries);
        if (entries > 0) {
            map(entries + 1);
        }
        const std::string wanted = "\"entriesCount\":" + std::to_string(entries) + "\n";
        std::string text;
        ASSERT_TRUE(waitFor([&] {
            text = router_.vty("nhrpd", "show ip nhrp cache json").text;
            return text.find(wanted) != std::string::npos;
        }));
        const std::size_t answer = text.size() + 4; // the marker and the code
        if (answer % 256 == 0) {
            continue; // the stream of such an answer waits for more, on purpose
        }
        const std::string streamed = showCache();
        EXPECT_EQ(withoutBlanks(text), streamed);
        several += answer > 256 ? 1 : 0;
    }
    EXPECT_GE(several, 10); // most of them came in several chunks
}

TEST_F(Nhrp, TheHostProgramPrintsTheCache) {
    ASSERT_EQ(0, router_.run("ip link set tun0 up"));
    ASSERT_EQ("ok", set({"ip", "nhrp", "network-id", "5"}));
    map(9);
    const std::string host = "FRRUCI_LIBRARY='" FRRUCI_LIBRARY "' '" FRRUCI_HOST "' show nhrp";
    const std::string table = router_.output(host);
    EXPECT_EQ(router_.vty("nhrpd", "show ip nhrp cache").text, table);
    EXPECT_NE(std::string::npos, table.find("172.16.0.9"));
    EXPECT_NE(std::string::npos, router_.output(host + " --json").find("\"nbma\":\"10.1.2.9\""));
}

TEST_F(Nhrp, AnythingButTheCacheIsAnEmptyLine) {
    EXPECT_EQ(0U, swNhrpShow(0, "nhs"));
    EXPECT_EQ("", cache_.take()); // a daemon answers an empty line with nothing
}

// ---------------------------------------------------------------- daemons that are not there

TEST_F(Nhrp, WithoutNhrpdTheSettingIsStoredAndTheReplyIsFail) {
    ASSERT_TRUE(router_.stop("nhrpd"));
    EXPECT_EQ("fail", set({"ip", "nhrp", "network-id", "5"}));
    EXPECT_TRUE(storeHas("network_id", "5") && storeHas("interface", "tun0"));
    EXPECT_EQ("fail", setGlobal("nflog-group", "3"));
    EXPECT_TRUE(storeHas("nflog_group", "3"));
    EXPECT_EQ("", showCache());
    EXPECT_EQ(1U, swNhrpShow(0, "cache"));
    EXPECT_EQ("ok", set({"ip", "address", "10.9.0.1/24"})); // zebra's
}

TEST_F(Nhrp, KilledBetweenStoreAndDeliveryTheReplyIsFail) {
    bool storedBefore = false;
    beforeConnect = [&] {
        storedBefore = storeHas("network_id", "5");
        EXPECT_TRUE(router_.stop("nhrpd"));
    };
    EXPECT_EQ("fail", set({"ip", "nhrp", "network-id", "5"}));
    EXPECT_FALSE(beforeConnect) << "nothing was connected";
    EXPECT_TRUE(storedBefore);
    EXPECT_TRUE(storeHas("network_id", "5"));
    ASSERT_TRUE(router_.start("nhrpd"));
    EXPECT_EQ("ok", set({"ip", "nhrp", "network-id", "6"}));
    EXPECT_TRUE(storeHas("network_id", "6"));
}

TEST_F(Nhrp, ARunningDaemonIsCountedAndNotStarted) {
    ASSERT_TRUE(comesToCount("nhrpd", 1));
    const std::string before = router_.output("cat /var/nhrpd.pid");
    EXPECT_EQ(1, nhrp_enable());
    EXPECT_EQ(before, router_.output("cat /var/nhrpd.pid"));
}

constexpr int kNoSuchCommand = 127 << 8; // the shell's status

TEST_F(Nhrp, AStartBringsUpZebraAndThenTheLauncher) {
    ASSERT_TRUE(router_.stop("nhrpd") && router_.stop("zebra"));
    ASSERT_TRUE(comesToCount("nhrpd", 0) && comesToCount("zebra", 0));
    EXPECT_EQ(kNoSuchCommand, nhrp_enable()); // no launcher "nhrp" on this router
    EXPECT_TRUE(waitFor([&] { return router_.answers("zebra"); }));
    EXPECT_EQ(0, router_.processCount("nhrpd"));

    const OwnCommand launcher("nhrp", "exec nhrpd \"$@\"");
    EXPECT_EQ(0, nhrp_enable());
    EXPECT_TRUE(waitFor([&] { return router_.answers("nhrpd"); }) && comesToCount("nhrpd", 1));
    EXPECT_EQ(1, nhrp_enable());
}

} // namespace
