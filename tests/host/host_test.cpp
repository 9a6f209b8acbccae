// SPDX-License-Identifier: Apache-2.0
// The host program from outside: exit statuses, what it prints where, and that it never hangs.

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "tests/host/program.h"

namespace {

using program::frruci;
using program::has;
using program::Outcome;
using program::readFile;
using Words = std::vector<std::string>;

/// The words of a line; none is empty.
Words split(const std::string &line) {
    Words words;
    std::istringstream stream(line);
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

/// A request whose only free word says what the fake library does.
Words request(const std::string &what) {
    return {"call", "process_rip_interface", "show", what};
}

class Host : public testing::Test {
protected:
    void SetUp() override {
        setenv("FRRUCI_LIBRARY", FAKE_LIBRARY, 1);
        unlink("/tmp/words");
    }
};

TEST_F(Host, PrintsTheAnswerAndTellsItByItsStatus) {
    const Outcome ok = frruci(request("ok"));
    EXPECT_EQ(ok.status, 0);
    EXPECT_EQ(ok.output, "ok\n");
    EXPECT_EQ(ok.errors, "");
    const Outcome fail = frruci(request("fail"));
    EXPECT_EQ(fail.status, 1);
    EXPECT_EQ(fail.output, "fail\n");
}

TEST_F(Host, HandsOverExactlyTheWordsGiven) {
    for (const char *word : {"", "two words", "--timeout", "--json", "-x"}) {
        EXPECT_EQ(frruci(request(word)).status, 0) << word;
        EXPECT_EQ(readFile("/tmp/words"), "<show><" + std::string(word) + ">");
    }
}

TEST_F(Host, TakesWordsFromStandardInput) {
    EXPECT_EQ(frruci({"call", "process_rip_interface", "-"}, "show\ntwo words\n").status, 0);
    EXPECT_EQ(readFile("/tmp/words"), "<show><two words>");
    EXPECT_EQ(frruci({"call", "process_rip_interface", "show", "-"}, "x").status, 0);
    EXPECT_EQ(readFile("/tmp/words"), "<show><x>");
    EXPECT_EQ(frruci({"call", "-"}, "process_rip_interface\nshow\n\n").status, 0);
    EXPECT_EQ(readFile("/tmp/words"), "<show><>");
}

TEST_F(Host, AHandlerWithoutAnswerIsTold) {
    const Outcome outcome = frruci(request("none"));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "frruci: process_rip_interface wrote no answer\n");
}

TEST_F(Host, AHandlerThatHangsIsGivenUpAndItsShellCommandNamed) {
    for (const char *front : {"--timeout 1 call", "call --timeout 1"}) {
        Words words = split(front);
        words.insert(words.end(), {"process_rip_interface", "show", "hang"});
        const Outcome outcome = frruci(words);
        EXPECT_EQ(outcome.status, 3);
        EXPECT_EQ(outcome.errors, "frruci: sleeper -d did not end in time\n");
    }
}

TEST_F(Host, AHandlerThatCrashesLeavesNobodyWaiting) {
    const Outcome outcome = frruci(request("crash"));
    EXPECT_NE(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
}

/// program::frruci reads to the end of its pipe: it would wait for the sleeper.
TEST_F(Host, WhatARequestStartsKeepsNobodysOutputOpen) {
    EXPECT_EQ(frruci(request("daemon")).output, "ok\n");
    EXPECT_EQ(system("killall -q sleep"), 0) << "the sleeper ran on";
}

TEST_F(Host, MakesTheReplyPipeAndUsesAnExistingOne) {
    unlink("/tmp/tmp/ospf_pipe_c2lua");
    EXPECT_EQ(frruci(request("ok")).status, 0);
    struct stat made = {};
    ASSERT_EQ(stat("/tmp/tmp/ospf_pipe_c2lua", &made), 0);
    EXPECT_TRUE(S_ISFIFO(made.st_mode));
    EXPECT_EQ(frruci(request("ok")).status, 0);
    struct stat again = {};
    ASSERT_EQ(stat("/tmp/tmp/ospf_pipe_c2lua", &again), 0);
    EXPECT_EQ(again.st_ino, made.st_ino);
}

TEST_F(Host, AReplyPipeThatIsALinkIsNotUsed) {
    unlink("/tmp/tmp/ospf_pipe_c2lua");
    ASSERT_EQ(symlink("/tmp/elsewhere", "/tmp/tmp/ospf_pipe_c2lua"), 0);
    EXPECT_EQ(frruci(request("ok")).status, 4);
    unlink("/tmp/tmp/ospf_pipe_c2lua");
}

TEST_F(Host, TheFolderIsRootsAlone) {
    ASSERT_EQ(system("rm -rf /tmp/tmp && mkdir -m 777 /tmp/tmp && chown 7:7 /tmp/tmp"), 0);
    EXPECT_EQ(frruci(request("ok")).status, 0);
    struct stat folder = {};
    ASSERT_EQ(stat("/tmp/tmp", &folder), 0);
    EXPECT_EQ(folder.st_mode & 07777, 0755U);
    EXPECT_EQ(folder.st_uid, 0U);
    EXPECT_EQ(folder.st_gid, 0U);
    ASSERT_EQ(system("umask 077; rm -rf /tmp/tmp; " HOST_PROGRAM
                     " call process_ospf_neighbor >/dev/null"),
              0);
    ASSERT_EQ(stat("/tmp/tmp", &folder), 0);
    EXPECT_EQ(folder.st_mode & 07777, 0755U);
    ASSERT_EQ(system("rm -rf /tmp/tmp && mkdir /tmp/elsewhere && ln -s elsewhere /tmp/tmp"), 0);
    const Outcome linked = frruci(request("ok"));
    EXPECT_EQ(linked.status, 4);
    EXPECT_TRUE(has(linked.errors, "/tmp/tmp cannot be used"));
    ASSERT_EQ(system("rm -rf /tmp/tmp /tmp/elsewhere && mkdir /tmp/tmp"), 0);
}

TEST_F(Host, EveryVerbMovesALongLog) {
    for (const char *line :
         {"call process_ospf_neighbor", "handlers", "help", "show rip",
          "plan process_ospf_neighbor", "report", "doctor", "run", "start", "recover nhrp"}) {
        unlink("/tmp/tmp/data.1");
        ASSERT_EQ(system("truncate -s 524288 /tmp/tmp/data"), 0);
        (void)frruci(split(line));
        EXPECT_NE(access("/tmp/tmp/data.1", F_OK), 0) << line;
        ASSERT_EQ(system("truncate -s 524289 /tmp/tmp/data"), 0);
        (void)frruci(split(line));
        struct stat moved = {};
        EXPECT_EQ(stat("/tmp/tmp/data.1", &moved), 0) << line;
        EXPECT_EQ(moved.st_size, 524289) << line;
        EXPECT_NE(access("/tmp/tmp/data", F_OK), 0) << line;
    }
}

TEST_F(Host, ALogThatIsNoFileIsLeftAlone) {
    ASSERT_EQ(system("rm -f /tmp/tmp/data; mkfifo /tmp/tmp/data"), 0);
    EXPECT_EQ(frruci({"handlers"}).status, 0);
    struct stat pipe = {};
    ASSERT_EQ(stat("/tmp/tmp/data", &pipe), 0);
    EXPECT_TRUE(S_ISFIFO(pipe.st_mode));
    unlink("/tmp/tmp/data");
}

TEST_F(Host, WrongUsageSaysWhatIsKnown) {
    const Outcome unknown = frruci({"call", "process_ospf_nothing"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.errors,
              "frruci: unknown handler process_ospf_nothing; \"frruci handlers\" lists them\n");
    for (const char *line :
         {"", "call", "plan", "nonsense", "--timeout", "--timeout x call process_ospf_lsdb",
          "--timeout 0 call process_ospf_lsdb", "--timeout 86401 call process_ospf_lsdb", "recover",
          "recover bgp", "recover ospf rip", "plan recover", "show", "show bgp",
          "show rip neighbors", "run /tmp/no-such-file", "help nonsense"}) {
        const Outcome outcome = frruci(split(line));
        EXPECT_EQ(outcome.status, 2) << line;
        EXPECT_EQ(outcome.output, "") << line;
        EXPECT_NE(outcome.errors, "") << line;
    }
}

void expectRefused(Words words, const std::string &message) {
    words.insert(words.begin(), "");
    for (const char *verb : {"call", "plan"}) {
        words[0] = verb;
        const Outcome outcome = frruci(words);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "frruci: " + words[1] + ": " + message + "\n");
    }
}

TEST_F(Host, AWordThatIsWrongIsNamedWithWhatIsAllowed) {
    const std::string interface = "process_ospf_interface";
    expectRefused({interface, "eth1.2", "wan", "hello", "999999"},
                  "word 4 is \"999999\"; allowed: 1..65535");
    expectRefused({interface, "eth1.2", "wan", "hello", "abc"},
                  "word 4 is \"abc\"; allowed: 1..65535");
    expectRefused({interface, "eth1.2", "wan", "helo", "15"},
                  "word 3 is \"helo\"; allowed: cost, retransmit, transmit, priority, hello, dead, "
                  "network_type, mtu_ignore, passive, auto_type");
    expectRefused({interface, "eth1.2", "wan", "mtu_ignore", "maybe"},
                  "word 4 is \"maybe\"; allowed: 0, 1");
    expectRefused({interface, "eth1.2", "wan", "auto_type", "1", "123456789"},
                  "word 5 is \"***\"; allowed: a key of at most 8 characters, without spaces");
    expectRefused({interface, "eth1.2", "wan", "hello"}, "word 4 is missing; allowed: 1..65535");
    expectRefused({interface, "eth1.2", "wan", "hello", "5", "6"}, "word 5 is one too many");
    expectRefused({"process_ospf_network", "ad", "10.1.2.0", "255.255.255.0", "0"},
                  "word 1 is \"ad\"; allowed: add, del");
    expectRefused({"process_ospf_network", "add", "10.1.2.999", "255.255.255.0", "0"},
                  "word 2 is \"10.1.2.999\"; allowed: an address like 10.1.2.0");
    expectRefused({"process_ospf_global", "maybe", "1.1.1.1"},
                  "word 1 is \"maybe\"; allowed: on, off");
    expectRefused({"process_rip_config", "nonsense", "1"},
                  "word 1 is \"nonsense\"; allowed: rip_version, rip_distance, auto_summary, "
                  "default_metric, redistribute_static, redistribute_ospf, update_timer, "
                  "timeout_timer, garbage_timer");
}

TEST_F(Host, ALibraryThatCannotBeUsedIsNamed) {
    const Outcome missing = frruci({"call", "process_ospf_lsdb"});
    EXPECT_EQ(missing.status, 4);
    EXPECT_TRUE(has(missing.errors, "the library has no process_ospf_lsdb"));
    setenv("FRRUCI_LIBRARY", "/tmp/none.so", 1);
    EXPECT_EQ(frruci(request("ok")).status, 4);
    EXPECT_EQ(frruci({"start"}).status, 4);
    EXPECT_EQ(frruci({"recover", "ospf"}).status, 4);
    EXPECT_EQ(frruci({"report"}).status, 4);
    EXPECT_EQ(frruci({"plan", "recover", "ospf"}).status, 4);
}

TEST_F(Host, HelpVersionAndHandlersAnswerWithoutALibrary) {
    setenv("FRRUCI_LIBRARY", "/tmp/none.so", 1);
    EXPECT_TRUE(has(frruci({"--help"}).output, "usage: frruci"));
    EXPECT_EQ(frruci({"help"}).output, frruci({"--help"}).output);
    EXPECT_EQ(frruci({"--version"}).output, "frruci " FRRUCI_VERSION "\n");
    const Outcome handlers = frruci({"handlers"});
    EXPECT_EQ(handlers.status, 0);
    EXPECT_TRUE(
        has(handlers.output, "  process_ospf_interface IFNAME wan|lan hello SECONDS=1..65535\n"));
    for (const char *name :
         {"process_ospf_global", "process_ospf_network", "process_ospf_interface",
          "process_ospf_advertise_cfg", "process_ospf_ospf_cfg", "process_ospf_neighbor",
          "process_ospf_lsdb", "process_rip_global", "process_rip_config", "process_rip_interface",
          "process_rip_network", "process_nhrp_interface", "process_nhrp_global",
          "process_nhrp_show"}) {
        EXPECT_TRUE(has(handlers.output, std::string("  ") + name)) << name;
        EXPECT_TRUE(has(frruci({"help", name}).output, std::string("  ") + name)) << name;
    }
}

TEST_F(Host, EveryVerbHasItsHelp) {
    for (const char *verb : {"call", "plan", "handlers", "start", "recover", "show", "report",
                             "run", "doctor", "help"}) {
        const Outcome outcome = frruci({"help", verb});
        EXPECT_EQ(outcome.status, 0) << verb;
        EXPECT_EQ(outcome.output.find(std::string("usage: frruci [OPTION...] ") + verb), 0U);
        EXPECT_TRUE(has(frruci({"help"}).output, std::string("\n  ") + verb + " ")) << verb;
    }
}

TEST_F(Host, TheManualPageIsThatOfTheTables) {
    EXPECT_EQ(frruci({"help", "--man"}).output, readFile(MANUAL_PAGE))
        << "make it anew: frruci help --man > host/frruci.8";
}

TEST_F(Host, DisplayRowsComeWithoutTheirEndMark) {
    const Outcome outcome = frruci({"call", "process_ospf_neighbor"});
    EXPECT_EQ(outcome.status, 0);
    std::size_t rows = 0;
    for (const char byte : outcome.output) {
        rows += byte == '\n' ? 1 : 0;
    }
    EXPECT_EQ(rows, 5000U);
    EXPECT_EQ(outcome.output.substr(0, 14), "10.0.0.0 row\r\n");
    EXPECT_EQ(outcome.output.substr(outcome.output.size() - 17), "10.0.19.249 row\r\n");
}

TEST_F(Host, AStreamIsPrintedAsItCame) {
    EXPECT_EQ(frruci({"call", "process_nhrp_show", "x", "ip", "nhrp", "cache"}).output,
              "{\"a\":[1,2]}\n");
}

TEST_F(Host, APlanCallsTheHandlerAndChangesNothing) {
    unlink("/tmp/tmp/ospf_pipe_c2lua");
    const Outcome outcome = frruci({"plan", "process_rip_interface", "show", "hang"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "shell   true\nshell   sleeper -d\n");
    EXPECT_NE(access("/tmp/tmp/ospf_pipe_c2lua", F_OK), 0);
    const Outcome crashed = frruci({"plan", "process_rip_interface", "show", "crash"});
    EXPECT_EQ(crashed.status, 4);
}

TEST_F(Host, RequestsTakeTurnsAndShowsAndPlansDoNot) {
    ASSERT_EQ(frruci(request("ok")).status, 0);
    const int lock = open("/tmp/tmp/frruci.lock", O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(lock, LOCK_SH), 0); // a turn is nobody else's
    for (const char *line : {"call process_rip_interface show x", "start", "recover ospf"}) {
        const Outcome outcome = frruci(split(std::string("--timeout 1 ") + line));
        EXPECT_EQ(outcome.status, 3);
        EXPECT_EQ(outcome.errors, "frruci: another request did not end in time\n");
    }
    for (const char *line : {"plan process_rip_interface show x", "help", "handlers", "report"}) {
        EXPECT_EQ(frruci(split(line)).status, 0) << line;
    }
    EXPECT_EQ(frruci({"show", "rip"}).status, 4); // nobody is there
    EXPECT_NE(frruci({"doctor"}).status, 3);
    // Without a limit of the user's it waits as long as it takes.
    int out[2];
    ASSERT_EQ(pipe2(out, O_CLOEXEC), 0);
    const pid_t waiting = program::start(request("ok"), STDIN_FILENO, out[1], STDERR_FILENO);
    close(out[1]);
    close(lock);
    EXPECT_EQ(program::readAll(out[0]), "ok\n");
    EXPECT_EQ(program::wait(waiting), 0);
}

TEST_F(Host, RunKeepsOneModelForAllItsLines) {
    const std::string script = "# comment\n\ncall process_rip_interface show a\n"
                               "call process_rip_interface show b\nreport\n";
    const Outcome outcome = frruci({"run"}, script);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "ok\nok\nreport after 2 calls\n");
    FILE *file = fopen("/tmp/script", "w");
    ASSERT_NE(file, nullptr);
    fputs(script.c_str(), file);
    fclose(file);
    EXPECT_EQ(frruci({"run", "/tmp/script"}).output, outcome.output);
}

TEST_F(Host, EveryVerbAnswersInJson) {
    EXPECT_EQ(frruci({"report", "--json"}).output,
              "{\n  \"report\":[\n    \"report after 0 calls\"\n  ]\n}\n");
    for (const char *line :
         {"call --json process_rip_interface show x", "plan --json process_rip_interface show x",
          "handlers --json", "help --json", "help call --json", "doctor --json"}) {
        const std::string output = frruci(split(line)).output;
        EXPECT_TRUE(output.find('{') == 0 || output.find('[') == 0) << line << output;
    }
}

TEST_F(Host, RunGoesOnAfterAFailureAndTellsTheWorst) {
    const Outcome outcome = frruci({"run"}, "call process_rip_interface show fail\nnonsense\n"
                                            "call process_rip_interface show ok");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "fail\nok\n");
}

TEST_F(Host, AnOutputThatIsFullIsNoSuccess) {
    EXPECT_EQ(WEXITSTATUS(system(HOST_PROGRAM " handlers > /dev/full")), 4);
    EXPECT_EQ(WEXITSTATUS(system(HOST_PROGRAM " handlers >&-")), 0); // nobody wants it
}

TEST_F(Host, TheProcessListShowsNoWordsOfARequest) {
    int out[2];
    ASSERT_EQ(pipe2(out, O_CLOEXEC), 0);
    const pid_t child =
        program::start({"--timeout", "20", "call", "process_rip_interface", "show", "hang"},
                       STDIN_FILENO, out[1], STDERR_FILENO);
    close(out[1]);
    const std::string path = "/proc/" + std::to_string(child) + "/cmdline";
    std::string words;
    for (int i = 0; i < 2000 && !has(words, "call"); ++i) {
        usleep(1000);
        words = readFile(path.c_str());
    }
    while (!has(readFile("/tmp/words"), "hang")) {
        usleep(1000); // the handler has its words, so the others are gone by now
    }
    words = readFile(path.c_str());
    EXPECT_TRUE(has(words, "call"));
    EXPECT_FALSE(has(words, "hang"));
    EXPECT_FALSE(has(words, "process_rip_interface"));
    kill(child, SIGKILL);
    program::wait(child);
    close(out[0]);
}

} // namespace
