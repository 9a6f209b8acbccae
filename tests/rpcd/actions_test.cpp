// SPDX-License-Identifier: Apache-2.0
// diff, apply, doctor and call, what is kept of an apply, and keys.

#include <chrono>
#include <csignal>
#include <cstdio>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/rpcd/plugin.h"

namespace {

using plugin::has;
using plugin::kApplied;
using program::frruci;
using program::Outcome;

constexpr const char *kKey = "geheim";

const std::string kOspf = "config global 'global'\n\toption status 'on'\n"
                          "config ospf_cfg 'ospf_cfg'\n\toption spf_delay '0'\n"
                          "\toption spf_hold_init '50'\n\toption spf_hold_max '5000'\n"
                          "config interface 'eth1_2'\n\toption interface 'eth1.2'\n"
                          "\toption priority '1'\n\toption network_type '0'\n";

const std::string kSecrets = kOspf + "\toption auto_type '2'\n\toption md5_key_id '5'\n"
                                     "\toption md5_key 'geheim'\n";

const std::string kOnlyCost = kOspf + "\toption auto_type '0'\n\toption cost '7'\n";

class Actions : public plugin::Plugin {
protected:
    void SetUp() override {
        Plugin::SetUp();
        for (const char *pipe : {"ospf_pipe_c2lua", "nhrp_pipe_c2lua", "nhrp_pipe_c2lua_cache",
                                 "ospf_pipe_c2lua_neighbor"}) {
            stage_.noPipe(pipe); // the program makes its own
        }
        // What every replay sends is there already, so that each test has its own difference.
        running("");
    }

    void running(const std::string &lines) {
        const std::string config =
            "frr version 8.4.4\ninterface eth1.2\n ip ospf authentication null\n" + lines +
            "exit\n!\nrouter ospf\nexit\n!\nend\n";
        stage_.answer("ospfd", "show running-config", {.text = config.c_str()});
    }
};

// ---- diff ----

TEST_F(Actions, ADifferenceComesLineByLine) {
    store("ospf", kOnlyCost);
    running(" ip ospf hello-interval 5\n");
    EXPECT_EQ(answer("diff"),
              R"({"differences":2,"lines":[)"
              R"({"sign":" ","daemon":"ospfd","text":"interface eth1.2"},)"
              R"({"sign":"+","daemon":"ospfd","text":" ip ospf cost 7"},)"
              R"({"sign":"-","daemon":"ospfd","text":" ip ospf hello-interval 5"}],"status":1})");
    running(" ip ospf cost 7\n");
    EXPECT_EQ(answer("diff"), R"({"differences":0,"lines":[],"status":0})");
    EXPECT_EQ(answer("diff", R"({"protocols":["rip"]})"),
              R"({"differences":0,"lines":[],"status":0})");
}

TEST_F(Actions, ADaemonThatShouldNotRunIsADifference) {
    store("rip", "config global 'global'\n\toption status 'off'\n");
    EXPECT_EQ(answer("diff"), R"({"differences":1,"lines":[{"sign":"-","daemon":"ripd",)"
                              R"("text":"ripd runs, and rip is off in the store"}],"status":1})");
    store("rip", "config global 'global'\n\toption status 'on'\n");
    stage_.absent("ripd");
    EXPECT_TRUE(has(answer("diff"),
                    R"({"sign":"+","daemon":"ripd",)"
                    R"("text":"ripd does not answer, and rip is on in the store"})"));
}

// ---- apply ----

constexpr const char *kRefusedCost =
    R"([{"protocol":"ospf","daemon":"ospfd","context":"interface eth1.2",)"
    R"("command":"ip ospf cost 7","answer":"% No. Not today."}])";

TEST_F(Actions, WhatADaemonRefusesStandsUntilItIsAccepted) {
    store("ospf", kOnlyCost);
    EXPECT_FALSE(has(answer("status"), "\"applied\""));
    stage_.answer("ospfd", "ip ospf cost 7", {.code = 13, .text = "% No.\r\n  Not today.\r\n"});
    EXPECT_EQ(answer("apply"),
              std::string(R"({"changes":1,"refused":)") + kRefusedCost + R"(,"status":1})");
    struct stat file = {};
    ASSERT_EQ(lstat(kApplied, &file), 0);
    EXPECT_EQ(file.st_mode, S_IFREG | 0600U);
    EXPECT_NE(access("/tmp/tmp/applied.new", F_OK), 0);
    const std::string status = answer("status");
    EXPECT_TRUE(has(status, std::string(R"(,"changes":1,"refused":)") + kRefusedCost + "}}"))
        << status;
    EXPECT_NEAR(static_cast<double>(std::stoll(status.substr(status.find("\"time\":") + 7))),
                static_cast<double>(time(nullptr)), 10);
    // That of another protocol says nothing about it.
    EXPECT_EQ(answer("apply", R"({"protocols":["rip"]})"),
              R"({"changes":0,"refused":[],"status":0})");
    EXPECT_TRUE(has(answer("status"), kRefusedCost));
    stage_.answer("ospfd", "ip ospf cost 7", {});
    EXPECT_EQ(answer("apply"), R"({"changes":1,"refused":[],"status":0})");
    EXPECT_TRUE(has(answer("status"), R"(,"changes":1,"refused":[]}})"));
}

TEST_F(Actions, ARefusalEndsWhenNothingDiffersAnyMore) {
    store("ospf", kOnlyCost);
    stage_.answer("ospfd", "ip ospf cost 7", {.code = 13, .text = "% No.\n"});
    EXPECT_EQ(frruci({"apply"}).status, 1); // the verb keeps it as well
    EXPECT_TRUE(has(answer("status"), "% No."));
    store("ospf", kOspf + "\toption auto_type '0'\n");
    EXPECT_EQ(answer("apply"), R"({"changes":0,"refused":[],"status":0})");
    EXPECT_TRUE(has(answer("status"), R"("changes":1,"refused":[]})"));
}

TEST_F(Actions, ARefusalEndsWhenItsProtocolGoesOff) {
    store("ospf", kOnlyCost);
    stage_.answer("ospfd", "ip ospf cost 7", {.code = 13, .text = "% No.\n"});
    EXPECT_EQ(call("apply").status, 0);
    EXPECT_EQ(frruci({"apply", "--dry-run"}).status, 0);
    EXPECT_TRUE(has(answer("status"), "% No.")) << "a dry run keeps nothing";
    store("ospf", "config global 'global'\n\toption status 'off'\n");
    stage_.absent("ospfd");
    EXPECT_EQ(answer("apply"), R"({"changes":0,"refused":[],"status":0})");
    EXPECT_TRUE(has(answer("status"), R"("refused":[]})"));
}

TEST_F(Actions, ADryRunSaysNothingOfAProtocolThatIsNotInTheStore) {
    const Outcome planned = frruci({"--json", "apply", "--dry-run"});
    EXPECT_EQ(planned.status, 0) << planned.errors;
    EXPECT_EQ(jsontext::compact(planned.output), "[]");
}

TEST_F(Actions, ALineThatNoDaemonTakesIsRefusedToo) {
    store("rip", "config global 'global'\n\toption status 'on'\n"
                 "config interface\n\toption interface 'eth1.2'\n\toption authen_mode 'md5'\n"
                 "\toption key_id '5'\n\toption key 'two words'\n");
    const std::string applied = answer("apply", R"({"protocols":["rip"]})");
    EXPECT_TRUE(has(applied, R"("protocol":"rip","daemon":"ripd",)")) << applied;
    EXPECT_TRUE(has(applied, R"("answer":"no daemon takes it")")) << applied;
    EXPECT_FALSE(has(applied, "two words"));
    EXPECT_TRUE(has(answer("status"), "no daemon takes it"));
}

/// While mgmtd meets a daemon: what one try is refused, a later one brings in.
TEST_F(Actions, WhatALaterTryBringsInIsNotRefused) {
    store("rip", "config global 'global'\n\toption status 'on'\n"
                 "config interface\n\toption interface 'eth1.2'\n"
                 "\toption send_version 'ripv2'\n");
    stage_.present("mgmtd");
    stage_.answer("mgmtd", "show running-config",
                  {.text = "frr version 10.3\ninterface eth1.2\n ip rip send version 2\nexit\n!\n"
                           "router rip\nexit\n!\nend\n"});
    stage_.answer("mgmtd", "show running-config", {.text = "frr version 10.3\nend\n", .times = 2});
    stage_.answer("mgmtd", "ip rip send version 2", {.code = 13, .text = "% No.\n", .times = 1});
    stage_.answer("mgmtd", "router rip",
                  {.code = 13, .text = "% object was deleted by another process\n", .times = 1});
    EXPECT_EQ(answer("apply", R"({"protocols":["rip"]})"),
              R"({"changes":2,"refused":[],"status":0})");
    EXPECT_TRUE(has(answer("status"), R"("changes":2,"refused":[]})"));
}

TEST_F(Actions, AnApplyThatFailsSaysWhy) {
    store("ospf", kOnlyCost);
    stage_.answer("ospfd", "ip ospf cost 7", {.closeEarly = true});
    const std::string applied = answer("apply");
    EXPECT_EQ(applied, R"({"changes":1,"refused":[],"status":3,"messages":["ospfd went away"]})");
}

/// Others may write in /tmp: a link is not followed, and what is no file of ours says nothing.
TEST_F(Actions, AFileThatIsNotOursIsNotRead) {
    ASSERT_EQ(symlink("/etc/passwd", kApplied), 0);
    EXPECT_FALSE(has(answer("status"), "\"applied\""));
    unlink(kApplied);
    stage::writeFile(kApplied, "something else\n");
    EXPECT_FALSE(has(answer("status"), "\"applied\""));
    stage::writeFile(kApplied, "1732200000\t3\nospf\tospfd\tonly three\n");
    EXPECT_TRUE(has(answer("status"), R"("applied":{"time":1732200000,"changes":3,"refused":[]})"));
    unlink(kApplied);
    ASSERT_EQ(mkfifo(kApplied, 0600), 0);
    EXPECT_FALSE(has(answer("status"), "\"applied\""));
    unlink(kApplied);
}

// ---- watch ----

template <typename Condition> bool waitFor(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        poll(nullptr, 0, 1);
    }
    return true;
}

/// "frruci watch" for as long as this lives.
class Watching {
public:
    Watching() : child_(program::start({"watch"}, said_, said_, said_)) {}
    ~Watching() {
        send(SIGTERM);
        program::wait(child_);
        close(said_);
    }
    Watching(const Watching &) = delete;
    Watching &operator=(const Watching &) = delete;

    /// Before, a hang-up ends it.
    bool isReady() const {
        return waitFor([this] {
            char text[256] = "";
            return pread(said_, text, sizeof text - 1, 0) > 0 && has(text, "watching");
        });
    }

    void reload() const { send(SIGHUP); }

    long residentPages() const {
        long all = 0;
        long resident = 0;
        const std::string text =
            program::readFile(("/proc/" + std::to_string(child_) + "/statm").c_str());
        EXPECT_EQ(sscanf(text.c_str(), "%ld %ld", &all, &resident), 2);
        return resident;
    }

private:
    /// By hand: kill is a stand-in.
    void send(int signal) const { syscall(SYS_kill, child_, signal); }

    int said_ = open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    pid_t child_;
};

TEST_F(Actions, AWatchGivesBackWhatItReads) {
    std::string others = "1732200000\t3\n";
    for (int i = 0; i < 5000; ++i) {
        others += "other\tdaemon\tinterface eth1.2\tcommand " + std::to_string(i) + "\tno\n";
    }
    const char *options = getenv("ASAN_OPTIONS"); // a sanitizer keeps what is released
    setenv("ASAN_OPTIONS",
           (std::string(options == nullptr ? "" : options) + ":quarantine_size_mb=1").c_str(), 1);
    const Watching watch;
    ASSERT_TRUE(watch.isReady());
    const auto reload = [&] {
        stage::writeFile(kApplied, (others + "ospf\tospfd\t\told\tno\n").c_str());
        watch.reload();
        ASSERT_TRUE(waitFor([&] { return program::readFile(kApplied) == others; }));
    };
    reload();
    const long before = watch.residentPages();
    for (int i = 0; i < 10; ++i) {
        reload();
    }
    EXPECT_LT(watch.residentPages() - before, 3000);
}

// ---- doctor ----

TEST_F(Actions, TheDoctorsFindings) {
    stage_.answerAll("nhrpd", {.silent = true});
    const std::string findings = answer("doctor");
    EXPECT_EQ(findings.find(R"({"findings":[{"state":"ok","subject":"zebra","text":")"), 0U)
        << findings;
    EXPECT_TRUE(has(findings, R"({"state":"fault","subject":"nhrpd",)"
                              R"("text":"does not answer on /var/nhrpd.vty: restart it"})"));
}

// ---- call ----

std::string cost(const std::string &value) {
    return R"({"handler":"process_ospf_interface","words":["eth1.2","wan","cost",")" + value +
           R"("]})";
}

TEST_F(Actions, ACallTellsTheReplyAndWhatCameOfIt) {
    EXPECT_EQ(answer("call", cost("7")), R"({"reply":"ok","status":0,"refused":[]})");
    EXPECT_TRUE(has(stage_.trace(), "interface eth1.2 | ip ospf cost 7\n"));
    stage_.answer("ospfd", "ip ospf cost 7", {.code = 13, .text = "% No.\r\n  Not today.\r\n"});
    EXPECT_EQ(answer("call", cost("7")),
              R"({"reply":"ok","status":1,"refused":[{"daemon":"ospfd",)"
              R"("context":"interface eth1.2","command":"ip ospf cost 7",)"
              R"("answer":"% No. Not today."}]})");
    stage_.answer("ospfd", "interface eth1.2", {.code = 4});
    EXPECT_EQ(answer("call", cost("7")), R"({"reply":"ok","status":1,"refused":[{"daemon":"ospfd",)"
                                         R"("command":"interface eth1.2","answer":"code 4"}]})");
}

TEST_F(Actions, ACallThatIsRefusedForBothInstancesIsToldOnce) {
    stage_.answer("ospfd", "network 10.1.2.0/24 area 0", {.code = 13, .text = "% No.\n"});
    EXPECT_EQ(answer("call", R"({"handler":"process_ospf_network",)"
                             R"("words":["add","10.1.2.0","255.255.255.0","0"]})"),
              R"({"reply":"ok","status":1,"refused":[{"daemon":"ospfd","context":"router ospf",)"
              R"("command":"network 10.1.2.0/24 area 0","answer":"% No."}]})");
}

TEST_F(Actions, NotesOfACallAreMessages) {
    stage_.answer("ripd", "autosummary", {.code = 2});
    EXPECT_EQ(
        answer("call", R"({"handler":"process_rip_config","words":["auto_summary","enable"]})"),
        R"-({"reply":"ok","status":0,"refused":[],"messages":["note: ripd refused \"router rip vrf )-"
        R"-(default: autosummary\": code 2 (ripd does not know it)"]})-");
    stage_.absent("ospfd");
    EXPECT_EQ(answer("call", cost("7")), R"({"reply":"ok","status":4,"refused":[],)"
                                         R"("messages":["ospfd cannot be reached"]})");
}

TEST_F(Actions, WordsThatDoNotFitSendNothing) {
    (void)stage_.trace();
    EXPECT_EQ(answer("call", cost("70000")),
              R"({"reply":"","status":2,"refused":[],"messages":["process_ospf_interface: word 4 )"
              R"(is \"70000\"; allowed: 1..65535"]})");
    EXPECT_EQ(answer("call", R"({"handler":"system","words":["reboot"]})"),
              R"({"reply":"","status":2,"refused":[],"messages":["unknown handler system"]})");
    EXPECT_STREQ(stage_.trace(), "");
}

TEST_F(Actions, ACallOfASilentDaemonIsAnsweredAllTheSame) {
    stage_.answer("ospfd", "ip ospf cost 7", {.silent = true});
    EXPECT_EQ(answer("call", cost("7")), R"({"reply":"","status":3,"refused":[],)"
                                         R"("messages":["ospfd did not answer in time"]})");
}

// ---- keys ----

TEST_F(Actions, KeysNeverLeave) {
    store("ospf", kSecrets);
    store("rip", "config global 'global'\n\toption status 'on'\nconfig interface\n"
                 "\toption interface 'eth1.2'\n\toption authen_mode 'md5'\n\toption key_id '5'\n"
                 "\toption key 'geheim'\n");
    running(" ip ospf authentication-key geheim\n ip ospf message-digest-key 9 md5 geheim\n");
    const std::string refusal = "% Unknown command: ip ospf message-digest-key 5 md5 geheim\n";
    stage_.answer("ospfd", "ip ospf message-digest-key 5 md5 geheim",
                  {.code = 2, .text = refusal.c_str()});
    stage_.answer("ripd", "key-string geheim", {.code = 13, .text = "% geheim is too short\n"});
    // A member that no method passes on.
    stage_.answer("ospfd", "show ip ospf interface json",
                  {.text = R"({"interfaces":{"eth1.2":{"ospfEnabled":true,"key":"geheim"}}})"});
    const std::string set = R"({"handler":"process_ospf_interface",)"
                            R"("words":["eth1.2","wan","auto_type","2","5","geheim"]})";
    const std::string tooLong = R"({"handler":"process_ospf_interface",)"
                                R"("words":["eth1.2","wan","auto_type","1","geheimgeheim"]})";
    std::string all;
    for (const char *method : {"diff", "apply", "status", "doctor", "neighbors", "database",
                               "interfaces", "rip", "nhrp_cache"}) {
        const Outcome outcome = call(method);
        EXPECT_FALSE(has(outcome.output, kKey)) << method << outcome.output;
        EXPECT_FALSE(has(outcome.errors, kKey)) << method << outcome.errors;
        all += outcome.output;
    }
    for (const std::string &arguments : {set, tooLong, set + "x"}) {
        const Outcome outcome = call("call", arguments);
        EXPECT_FALSE(has(outcome.output, kKey)) << outcome.output;
        EXPECT_FALSE(has(outcome.errors, kKey)) << outcome.errors;
    }
    EXPECT_TRUE(has(all, "ip ospf message-digest-key 5 md5 ***")) << all;
    EXPECT_TRUE(has(all, "\"name\":\"eth1.2\"")) << all;
    EXPECT_TRUE(has(all, "% *** is too short")) << all;
    const std::string kept = program::readFile(kApplied);
    EXPECT_TRUE(has(kept, "***"));
    EXPECT_FALSE(has(kept, kKey)) << kept;
    EXPECT_TRUE(has(frruci({"apply", "--show-keys"}).errors, kKey));
    EXPECT_FALSE(has(program::readFile(kApplied), kKey)) << "--show-keys is for who reads along";
}

} // namespace
