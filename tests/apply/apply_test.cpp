// SPDX-License-Identifier: Apache-2.0
// What apply does on real daemons beside making them the same: what it says of refusals, what it
// leaves alone, and what becomes of it when it is killed.

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/apply/program.h"
#include "tests/apply/stores.h"

namespace {

using namespace program;

constexpr unsigned kSeed = 41000;
constexpr int kForeignRounds = 100;

int kills() {
    const char *wanted = std::getenv("FRRUCI_APPLY_KILLS");
    return wanted == nullptr ? 20 : std::atoi(wanted);
}

std::string ospfHead() {
    return "config global 'global'\n\toption status 'on'\n\toption router_id '1.1.1.1'\n";
}

std::string ospfInterface(const std::string &name, const std::string &cost) {
    return "config interface\n\toption interface '" + name + "'\n\toption cost '" + cost + "'\n";
}

std::string ospfNetwork(const std::string &address) {
    return "config network\n\toption ip '" + address +
           "'\n\toption wildcard_mask '255.255.255.0'\n\toption area_id '0'\n";
}

class Apply : public testing::Test {
protected:
    void TearDown() override { stopAll(); }
};

bool has(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

TEST_F(Apply, ARefusedLineIsNamedAndTheRestIsApplied) {
    start({"zebra", "ospfd"});
    write("ospf", ospfHead() + ospfInterface("eth1.2", "20") + ospfInterface("eth1.3", "70000") +
                      ospfInterface("eth1.4", "40") + ospfNetwork("10.1.2.0"));
    const Outcome run = frruci("apply ospf");
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(
        has(run.text,
            "frruci: ospfd refuses: interface eth1.3: ip ospf cost 70000: [OSPF] Unknown command"))
        << run.text;
    const auto got = running("ospfd");
    EXPECT_EQ(got.count("interface eth1.2 / ip ospf cost 20"), 1u);
    EXPECT_EQ(got.count("interface eth1.4 / ip ospf cost 40"), 1u);
    EXPECT_EQ(got.count("router ospf / network 10.1.2.0/24 area 0"), 1u);
    EXPECT_EQ(frruci("diff ospf").text, " interface eth1.3\n+ ip ospf cost 70000\n");
}

TEST_F(Apply, SettingsOfARefusedContextAreNotSent) {
    start({"zebra", "ospfd"});
    write("ospf", ospfHead() + ospfInterface("averyveryverylongname", "20") +
                      ospfInterface("eth1.4", "40"));
    const Outcome run = frruci("apply ospf");
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(has(run.text, "frruci: ospfd refuses: interface averyveryverylongname: "
                              "Configuration failed. Error type: validation"))
        << run.text;
    EXPECT_TRUE(has(run.text, "2 refused")) << run.text;
    EXPECT_FALSE(has(run.text, "ip ospf cost 20")) << run.text;
    EXPECT_EQ(running("ospfd").count("interface eth1.4 / ip ospf cost 40"), 1u);
}

TEST_F(Apply, ARefusalDoesNotShowTheKey) {
    start({"zebra", "ospfd"});
    write("ospf", ospfHead() + "config interface\n\toption interface 'eth1.2'\n"
                               "\toption auto_type '2'\n\toption md5_key_id '999'\n"
                               "\toption md5_key 'secret'\n");
    const Outcome run = frruci("apply ospf");
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(has(run.text, "message-digest-key 999 md5 ***: [OSPF] Unknown command: "
                              "ip ospf message-digest-key 999 md5 ***\n"))
        << run.text;
    EXPECT_FALSE(has(run.text, "secret")) << run.text;
}

TEST_F(Apply, KeysAreShownOnlyWhenAskedFor) {
    start({"zebra", "ospfd"});
    write("ospf", ospfHead() +
                      "config interface\n\toption interface 'eth1.2'\n\toption auto_type '1'\n"
                      "\toption simple_key 'secret'\n");
    for (const char *words : {"diff ospf", "apply --dry-run ospf"}) {
        EXPECT_FALSE(has(frruci(words).text, "secret")) << words;
        EXPECT_TRUE(has(frruci(words).text, "ip ospf authentication-key ***")) << words;
        EXPECT_TRUE(
            has(frruci(std::string(words) + " --show-keys").text, "authentication-key secret"))
            << words;
    }
}

TEST_F(Apply, ADryRunSendsNothing) {
    start({"zebra", "ospfd"});
    write("ospf", ospfHead() + ospfInterface("eth1.2", "20"));
    const auto before = running("ospfd");
    const Outcome run = frruci("apply --dry-run ospf");
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(has(run.text, "  interface eth1.2\n  ip ospf cost 20\n")) << run.text;
    expectSame(before, running("ospfd"));
}

TEST_F(Apply, ProgramsGetJson) {
    start({"zebra", "ospfd"});
    write("ospf", ospfHead() + ospfInterface("eth1.2", "20"));
    ASSERT_EQ(frruci("apply ospf").status, 0);
    write("ospf", ospfHead() + ospfInterface("eth1.2", "30"));
    const auto compact = [](std::string text) {
        std::erase_if(text, [](char byte) { return byte == ' ' || byte == '\n'; });
        return text;
    };
    EXPECT_EQ(compact(frruci("diff --json ospf").text),
              R"([{"daemon":"ospfd","context":"interfaceeth1.2","removed":"ipospfcost20",)"
              R"("added":"ipospfcost30"}])");
    EXPECT_EQ(compact(frruci("apply --json --dry-run ospf").text),
              R"([{"daemon":"ospfd","commands":["interfaceeth1.2","ipospfcost30"]}])");
    EXPECT_EQ(compact(frruci("apply --json ospf").text),
              R"([{"daemon":"ospfd","changes":1,"refused":0,"cleared":0}])");
    EXPECT_EQ(compact(frruci("diff --json ospf").text), "[]");
}

TEST_F(Apply, WrongWordsAreNamed) {
    const Outcome run = frruci("apply bgp");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.text, "frruci: bgp is none of ospf, rip, nhrp, --dry-run\n");
    EXPECT_EQ(frruci("diff --dry-run").status, 2);
}

TEST_F(Apply, StartsAndStopsDaemonsAsTheStoreSays) {
    write("ospf", ospfHead() + ospfNetwork("10.1.2.0"));
    EXPECT_EQ(frruci("diff ospf").status, 1);
    EXPECT_EQ(frruci("apply ospf").status, 0);
    EXPECT_TRUE(router().answers("ospfd") && router().answers("zebra"));
    EXPECT_EQ(running("ospfd").count("router ospf / network 10.1.2.0/24 area 0"), 1u);
    write("ospf", "config global 'global'\n\toption status 'off'\n");
    EXPECT_EQ(frruci("diff ospf").status, 1);
    EXPECT_EQ(frruci("apply ospf").status, 0);
    // A killed process is listed until its parent has heard of it.
    for (const char *daemon : {"ospfd", "zebra"}) {
        EXPECT_TRUE(routers::waitFor([&] { return router().processCount(daemon) == 0; })) << daemon;
    }
    EXPECT_EQ(frruci("diff ospf").status, 0);
}

TEST_F(Apply, AStoreThatSaysNothingLeavesADaemonAlone) {
    start({"zebra", "ospfd", "ripd", "nhrpd"});
    ASSERT_EQ(router().configure("ospfd", {"interface eth1.2", "ip ospf cost 7"}).code, 0);
    write("ospf", "");
    ASSERT_EQ(router().run("rm -f /etc/config/rip /etc/config/nhrp"), 0);
    EXPECT_EQ(frruci("apply").status, 0);
    EXPECT_EQ(running("ospfd").count("interface eth1.2 / ip ospf cost 7"), 1u);
    EXPECT_TRUE(router().answers("ripd") && router().answers("nhrpd"));
}

using Commands = std::vector<std::string>;

const Commands kForeignOspf = {"router ospf",
                               "auto-cost reference-bandwidth 1000",
                               "redistribute connected metric 5",
                               "redistribute static",
                               "area 7 stub no-summary",
                               "area 7 default-cost 3",
                               "area 1 range 10.9.0.0/16 cost 3",
                               "area 1 virtual-link 9.9.9.9",
                               "default-metric 7",
                               "network 169.254.11.20/30 area 0",
                               "exit",
                               "interface br-lan",
                               "ip ospf cost 5",
                               "exit",
                               "interface veth1",
                               "ip ospf priority 7",
                               "exit",
                               "interface eth1.2",
                               "ip ospf cost 30 10.1.2.1",
                               "exit",
                               "access-list 7 permit any",
                               "route-map distance permit 10",
                               "exit",
                               "interface eth1.3",
                               "description ip ospf cost 9"};

const Commands kForeignRip = {"key chain mine",
                              "key 1",
                              "key-string mine",
                              "exit",
                              "exit",
                              "router rip",
                              "neighbor 10.1.2.2",
                              "passive-interface eth1.3",
                              "network eth1.4",
                              "route 10.77.0.0/16",
                              "default-information originate",
                              "redistribute connected metric 3",
                              "exit",
                              "interface br-lan",
                              "ip rip split-horizon poisoned-reverse",
                              "exit",
                              "interface eth1.2",
                              "ip rip v2-broadcast",
                              "exit",
                              "access-list 7 permit any"};

const Commands kForeignNhrp = {"interface tun1", "ip nhrp network-id 9", "ip nhrp redirect",
                               "exit",           "interface tun0",       "ip nhrp holdtime 600"};

void foreignSurvives(const std::string &daemon, const Commands &foreign,
                     const std::function<void(unsigned)> &store, const std::string &protocol) {
    const auto base = running(daemon);
    ASSERT_EQ(router().configure(daemon, foreign).code, 0);
    auto kept = running(daemon);
    ASSERT_GT(kept.size(), base.size() + 2);
    for (unsigned i = 0; i < kForeignRounds; ++i) {
        store(kSeed + i);
        const Outcome run = frruci("apply " + protocol);
        ASSERT_EQ(run.status, 0) << run.text;
        ASSERT_EQ(missing(running(daemon), kept), "") << "after store " << i;
    }
}

TEST_F(Apply, ForeignLinesSurvive) {
    start({"zebra", "ospfd", "ripd", "nhrpd"});
    foreignSurvives(
        "ospfd", kForeignOspf, [](unsigned seed) { write("ospf", stores::ospf(seed)); }, "ospf");
    foreignSurvives(
        "ripd", kForeignRip, [](unsigned seed) { write("rip", stores::rip(seed)); }, "rip");
    foreignSurvives(
        "nhrpd", kForeignNhrp,
        [](unsigned seed) { write("nhrp", stores::nhrp(stores::nhrpValues(seed))); }, "nhrp");
}

/// Starts an apply of OSPF and kills it when the condition holds, unless it ends before.
void killedApply(const std::function<bool()> &condition) {
    const pid_t child = fork();
    if (child == 0) {
        const int nowhere = open("/dev/null", O_WRONLY);
        (void)dup2(nowhere, STDOUT_FILENO);
        (void)setenv("FRRUCI_LIBRARY", FRRUCI_LIBRARY, 1);
        (void)execl(FRRUCI_HOST, FRRUCI_HOST, "apply", "ospf", nullptr);
        _exit(127);
    }
    bool ended = false;
    while (!ended && !condition()) {
        ended = waitpid(child, nullptr, WNOHANG) != 0;
    }
    if (!ended) {
        (void)kill(child, SIGKILL);
        (void)waitpid(child, nullptr, 0);
    }
}

/// After so long since now.
std::function<bool()> timeIsUp(std::chrono::microseconds after) {
    const auto end = std::chrono::steady_clock::now() + after;
    return [end] { return std::chrono::steady_clock::now() >= end; };
}

/// Once the daemon has so many networks.
std::function<bool()> networksArrived(std::size_t count) {
    return [count] { return running("ospfd").size() > count + 4; };
}

TEST_F(Apply, TheNextOneFinishesWhatAKilledOneBegan) {
    start({"zebra", "ospfd"});
    std::string large = ospfHead();
    for (int i = 0; i < 400; ++i) {
        large += ospfNetwork("10." + std::to_string(100 + i / 200) + "." + std::to_string(i % 200) +
                             ".0");
    }
    write("ospf", large);
    const auto begun = std::chrono::steady_clock::now();
    ASSERT_EQ(frruci("apply ospf").status, 0);
    const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - begun);
    const auto complete = running("ospfd");
    std::mt19937 random(kSeed);
    int halves = 0;
    for (int i = 0; i < kills(); ++i) {
        write("ospf", ospfHead());
        ASSERT_EQ(frruci("apply ospf").status, 0);
        const auto empty = running("ospfd");
        write("ospf", large);
        killedApply(i % 2 == 0 ? networksArrived(random() % 100)
                               : timeIsUp(std::chrono::microseconds(static_cast<long>(random()) %
                                                                    whole.count())));
        const auto left = running("ospfd");
        halves += left != empty && left != complete ? 1 : 0;
        const Outcome run = frruci("apply ospf");
        ASSERT_EQ(run.status, 0) << run.text;
        expectSame(complete, running("ospfd"));
        EXPECT_EQ(frruci("diff ospf").text, "");
    }
    EXPECT_GT(halves, 0) << "no kill came in the middle";
}

} // namespace
