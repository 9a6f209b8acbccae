// SPDX-License-Identifier: Apache-2.0
// The log line, the reply pipe, the shell-safety check and the questions to the Lua side.

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "common/front_end.h"
#include "tests/support/stage.h"

namespace {

constexpr const char *kPipe = "/tmp/tmp/ospf_pipe_c2lua";
constexpr const char *kOwnAddresses =
    "popen: ifconfig | awk '/inet/{print $2}' | awk -F: '{print $2}'\n";

std::string wanQuestion(const std::string &address) {
    return "system: lua -e 'require \"luci.controller.admin.interface_wan\".is_wan_ip_addr(\"" +
           address + "\")'\n";
}

std::string lanQuestion(const std::string &address) {
    return "system: lua -e 'require \"luci.controller.admin.lan\".is_vlan_ipaddr(\"" + address +
           "\")'\n";
}

class FrontEnd : public testing::Test {
protected:
    /// The two answers that make an address usable.
    void makeUsable() {
        stage_.shell("is_wan_ip_addr", {.text = "none\n", .writeTo = "/tmp/cli_ipaddr"});
        stage_.shell("is_vlan_ipaddr", {.text = "2\n", .writeTo = "/tmp/cli_vid"});
    }

    stage::Stage stage_;
};

TEST_F(FrontEnd, LogLinesAreAppendedAsTheyAre) {
    record_log_act("frr_util:%d: %s\n", 12, "first");
    record_log_act("no newline");
    record_log_act("%s", "");
    EXPECT_STREQ(stage_.log(), "frr_util:12: first\nno newline");
}

TEST_F(FrontEnd, ALongMessageIsCutAt511Characters) {
    const std::string text(600, 'm');
    record_log_act("%s", text.c_str());
    EXPECT_EQ(stage_.log(), std::string(511, 'm'));
}

TEST_F(FrontEnd, TheLogMayBeRotatedBetweenTwoLines) {
    record_log_act("one\n");
    EXPECT_STREQ(stage_.log(), "one\n");
    ASSERT_EQ(rename("/tmp/tmp/data", "/tmp/tmp/data.1"), 0);
    record_log_act("a second, longer line\n");
    struct stat file = {};
    ASSERT_EQ(stat("/tmp/tmp/data", &file), 0);
    EXPECT_EQ(file.st_size, 22);
}

TEST_F(FrontEnd, WithoutTheLogFolderTheLineIsDropped) {
    ASSERT_EQ(rename("/tmp/tmp", "/tmp/away"), 0);
    record_log_act("lost\n");
    EXPECT_NE(access("/tmp/tmp", F_OK), 0);
    ASSERT_EQ(rename("/tmp/away", "/tmp/tmp"), 0);
    EXPECT_STREQ(stage_.log(), "");
}

TEST_F(FrontEnd, ReplyTextsArriveWhole) {
    const std::string text(3000, 't');
    EXPECT_EQ(write_pipe_to_lua(text.c_str(), kPipe), 0);
    EXPECT_EQ(stage_.trace(), "reply ospf_pipe_c2lua: " + text + "\n");
    EXPECT_EQ(write_pipe_to_lua("", kPipe), 0);
    EXPECT_STREQ(stage_.trace(), "");
}

TEST_F(FrontEnd, AMissingPipeIsNotCreated) {
    stage_.noPipe("ospf_pipe_c2lua");
    EXPECT_LT(write_pipe_to_lua("ok", kPipe), 0);
    EXPECT_NE(access(kPipe, F_OK), 0);
}

TEST_F(FrontEnd, AFileInThePipesPlaceIsNotTruncated) {
    stage_.noPipe("ospf_pipe_c2lua");
    stage::writeFile(kPipe, "long text");
    EXPECT_EQ(write_pipe_to_lua("ok", kPipe), 0);
    char text[32] = {};
    FILE *file = fopen(kPipe, "r");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(fread(text, 1, sizeof text, file), 9U);
    fclose(file);
    EXPECT_STREQ(text, "okng text");
}

TEST_F(FrontEnd, TheReplyWaitsForItsReader) {
    stage_.noPipe("ospf_pipe_c2lua");
    ASSERT_EQ(mkfifo(kPipe, 0600), 0);
    char text[8] = {};
    std::thread reader([&text] {
        const int fd = open(kPipe, O_RDONLY); // both opens wait for one another
        EXPECT_EQ(read(fd, text, sizeof text), 2);
        close(fd);
    });
    EXPECT_EQ(write_pipe_to_lua("ok", kPipe), 0);
    reader.join();
    EXPECT_STREQ(text, "ok");
}

TEST_F(FrontEnd, AReaderThatLeavesDoesNotEndTheProcess) {
    stage_.noPipe("ospf_pipe_c2lua");
    ASSERT_EQ(mkfifo(kPipe, 0600), 0);
    std::thread reader([] { close(open(kPipe, O_RDONLY)); });
    const std::string text(1 << 20, 't'); // more than a pipe holds: the write meets the closed end
    EXPECT_EQ(write_pipe_to_lua(text.c_str(), kPipe), 0);
    reader.join();
    sigset_t pending;
    ASSERT_EQ(sigpending(&pending), 0);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST_F(FrontEnd, ASignalThatTheHostHoldsBackStaysPending) {
    sigset_t held;
    sigset_t before;
    ASSERT_EQ(sigemptyset(&held), 0);
    ASSERT_EQ(sigaddset(&held, SIGPIPE), 0);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &held, &before), 0);
    ASSERT_EQ(raise(SIGPIPE), 0);
    EXPECT_EQ(write_pipe_to_lua("ok", kPipe), 0);
    const timespec none = {};
    EXPECT_EQ(sigtimedwait(&held, nullptr, &none), SIGPIPE);
    ASSERT_EQ(pthread_sigmask(SIG_SETMASK, &before, nullptr), 0);
}

TEST_F(FrontEnd, ANullReplyIsAnEmptyOne) {
    EXPECT_EQ(write_pipe_to_lua(nullptr, kPipe), 0);
    EXPECT_LT(write_pipe_to_lua("ok", nullptr), 0);
    EXPECT_STREQ(stage_.trace(), "");
}

TEST(SafeString, EveryByte) {
    const std::string refused = "|\"$&'();<>[\\`";
    ASSERT_EQ(refused.size(), 13U);
    for (int byte = 1; byte < 256; ++byte) {
        const std::string text = std::string("a") + static_cast<char>(byte) + "b";
        const bool safe = refused.find(static_cast<char>(byte)) == std::string::npos;
        EXPECT_EQ(check_safe_string(text.c_str()), safe ? 1 : 0) << byte;
    }
}

TEST(SafeString, WholeTexts) {
    EXPECT_EQ(check_safe_string("eth1.10"), 1);
    EXPECT_EQ(check_safe_string(""), 1);
    EXPECT_EQ(check_safe_string(nullptr), 1);
    EXPECT_EQ(check_safe_string("two words\nand a line"), 1);
    EXPECT_EQ(check_safe_string("a;b"), 0);
    EXPECT_EQ(check_safe_string("a|b"), 0);
    EXPECT_EQ(check_safe_string("$(reboot)"), 0);
    EXPECT_EQ(check_safe_string("`reboot`"), 0);
    EXPECT_EQ(check_safe_string("back\\slash"), 0);
}

TEST_F(FrontEnd, OnlyTheFirst31CharactersOfAVlanAnswerCount) {
    const std::string answer = std::string(30, ' ') + "17";
    stage_.shell("is_vlan_id", {.text = answer.c_str(), .writeTo = "/tmp/cli_vid"});
    EXPECT_EQ(sw_is_lan_vid(2), 1);
}

TEST_F(FrontEnd, AnEmptyVlanAnswerIsNo) {
    stage::writeFile("/tmp/cli_vid", "");
    EXPECT_EQ(sw_is_lan_vid(2), 0);
    EXPECT_EQ(sw_is_wan_vid(2), 0);
}

TEST_F(FrontEnd, AUsableAddressIsAskedAboutInOrder) {
    makeUsable();
    EXPECT_EQ(check_network_ip("10.1.0.0"), 0);
    EXPECT_EQ(stage_.trace(), wanQuestion("10.1.0.0") + kOwnAddresses + lanQuestion("10.1.0.0"));
    EXPECT_STREQ(stage_.output(), "");
}

TEST_F(FrontEnd, AWanAddressIsTaken) {
    makeUsable();
    stage_.shell("is_wan_ip_addr", {.text = "eth1.2\n", .writeTo = "/tmp/cli_ipaddr"});
    EXPECT_EQ(check_network_ip("10.1.0.0"), 1);
    EXPECT_EQ(stage_.trace(), wanQuestion("10.1.0.0"));
}

TEST_F(FrontEnd, AnEmptyWanAnswerIsNotNone) {
    stage::writeFile("/tmp/cli_ipaddr", "");
    EXPECT_EQ(check_network_ip("10.1.0.0"), 1);
}

TEST_F(FrontEnd, WithoutAWanAnswerTheOtherQuestionsDecide) {
    stage_.shell("is_vlan_ipaddr", {.text = "2", .writeTo = "/tmp/cli_vid"});
    EXPECT_EQ(check_network_ip("10.1.0.0"), 0);
}

TEST_F(FrontEnd, OneOfTheRoutersOwnAddressesIsTaken) {
    makeUsable();
    stage_.shell("ifconfig", {.text = "\n127.0.0.1\n10.1.0.0\n"});
    EXPECT_EQ(check_network_ip("10.1.0.0"), 1);
    EXPECT_EQ(stage_.trace(), wanQuestion("10.1.0.0") + kOwnAddresses);
}

TEST_F(FrontEnd, OwnAddressesAreComparedWhole) {
    makeUsable();
    stage_.shell("ifconfig", {.text = "10.1.0.01\n10.1.0\n"});
    EXPECT_EQ(check_network_ip("10.1.0.0"), 0);
}

TEST_F(FrontEnd, WithoutAListOfOwnAddressesTheLanQuestionDecides) {
    makeUsable();
    stage_.shell("ifconfig", {.fails = true});
    EXPECT_EQ(check_network_ip("10.1.0.0"), 0);
}

TEST_F(FrontEnd, AnAddressInNoLanVlanIsRefusedAloud) {
    makeUsable();
    stage_.shell("is_vlan_ipaddr", {.text = "0\n", .writeTo = "/tmp/cli_vid"});
    EXPECT_EQ(check_network_ip("10.1.0.0"), -1);
    EXPECT_STREQ(stage_.output(), "Is not lan ip.\n");
}

TEST_F(FrontEnd, OnlyALanAnswerOfExactlyZeroRefuses) {
    for (const char *answer : {"", "\n", "00\n", "0 \n", "01\n", " 0\n", "no\n"}) {
        makeUsable();
        stage_.shell("is_vlan_ipaddr", {.text = answer, .writeTo = "/tmp/cli_vid"});
        EXPECT_EQ(check_network_ip("10.1.0.0"), 0) << answer;
    }
    EXPECT_STREQ(stage_.output(), "");
    stage_.shell("is_vlan_ipaddr", {.text = "0\n7\n", .writeTo = "/tmp/cli_vid"});
    EXPECT_EQ(check_network_ip("10.1.0.0"), -1); // the first line counts, without its newline
}

TEST_F(FrontEnd, OnlyAWanAnswerOfExactlyNonePasses) {
    for (const char *answer : {"none ", "None", "nonex\n", " none\n", "\nnone\n", "non"}) {
        makeUsable();
        stage_.shell("is_wan_ip_addr", {.text = answer, .writeTo = "/tmp/cli_ipaddr"});
        EXPECT_EQ(check_network_ip("10.1.0.0"), 1) << answer;
    }
    stage_.shell("is_wan_ip_addr", {.text = "none\neth1.2\n", .writeTo = "/tmp/cli_ipaddr"});
    EXPECT_EQ(check_network_ip("10.1.0.0"), 0);
}

TEST_F(FrontEnd, TheListOfOwnAddressesIsClosedAndItsEmptyLinesCountForNothing) {
    makeUsable();
    const int before = stage::Stage::openDescriptors();
    stage_.shell("ifconfig", {.text = "\n\n10.1.0.1\n10.1.0.2\n"});
    EXPECT_EQ(check_network_ip(""), 0);
    EXPECT_EQ(check_network_ip("10.1.0.1"), 1); // not read to its end
    EXPECT_EQ(check_network_ip("10.1.0.3"), 0);
    EXPECT_EQ(stage::Stage::openDescriptors(), before);
}

TEST_F(FrontEnd, WithoutALanAnswerTheAddressIsRefused) {
    stage::writeFile("/tmp/cli_ipaddr", "none\n");
    EXPECT_EQ(check_network_ip("10.1.0.0"), -1);
    EXPECT_STREQ(stage_.output(), "");
}

TEST_F(FrontEnd, AnUnsafeAddressIsNotAskedAboutAndOlderAnswersCount) {
    stage::writeFile("/tmp/cli_ipaddr", "none\n");
    stage::writeFile("/tmp/cli_vid", "3\n");
    EXPECT_EQ(check_network_ip("1.2.3.4;reboot"), 0);
    EXPECT_STREQ(stage_.trace(), kOwnAddresses);
    EXPECT_STREQ(stage_.output(), "get_wan_ip_addr 69: check safe string failed!\n"
                                  "get_vid_by_ip_addr 103: check safe string failed!\n");
}

TEST_F(FrontEnd, OddAddressesDoNoHarm) {
    EXPECT_EQ(check_network_ip(nullptr), -1);
    EXPECT_EQ(stage_.trace(), wanQuestion("") + kOwnAddresses + lanQuestion(""));
    const std::string text(300, '1'); // the command is cut at 127 characters
    EXPECT_EQ(check_network_ip(text.c_str()), -1);
    const std::string question = wanQuestion(text).substr(0, 8 + 127) + "\n";
    EXPECT_EQ(std::string(stage_.trace()).substr(0, question.size()), question);
}

// ---- what others may put in the place of a file ----

constexpr const char *kLog = "/tmp/tmp/data";
constexpr const char *kAnswers[] = {"/tmp/cli_vid", "/tmp/cli_ipaddr"};
constexpr uid_t kSomebody = 65534;

struct stat statusOf(const char *path) {
    struct stat status = {};
    EXPECT_EQ(lstat(path, &status), 0) << path;
    return status;
}

std::string textOf(const char *path) {
    char text[64] = {};
    FILE *file = fopen(path, "r");
    if (file == nullptr) {
        return "(none)";
    }
    text[fread(text, 1, sizeof text - 1, file)] = '\0';
    fclose(file);
    return text;
}

/// Something else in the place of a file, made by root and by somebody else: the kernel may be set
/// to treat the two differently.
class InAPlace : public FrontEnd, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        (void)stage_.log();
        for (const char *path : {kLog, kPipe, kAnswers[0], kAnswers[1]}) {
            (void)remove(path);
        }
        if (GetParam() && geteuid() == 0 && lchown("/tmp/tmp", kSomebody, kSomebody) != 0) {
            GTEST_SKIP() << "only root of the machine has other users here";
        }
        // A folder that everybody may write to, as a program of the front-end may have made it.
        ASSERT_EQ(chmod("/tmp/tmp", 01777), 0);
    }
    void TearDown() override {
        for (const char *path : {kLog, kPipe, kAnswers[0], kAnswers[1], "/tmp/target"}) {
            (void)remove(path);
        }
        (void)chown("/tmp/tmp", 0, 0);
        (void)chmod("/tmp/tmp", 0755);
    }

    static void own(const char *path) {
        if (GetParam()) {
            ASSERT_EQ(lchown(path, kSomebody, kSomebody), 0);
        }
    }
    static void link(const char *path, const char *text = "") {
        stage::writeFile("/tmp/target", text);
        ASSERT_EQ(symlink("/tmp/target", path), 0);
        own(path);
    }
    static void fifo(const char *path) {
        ASSERT_EQ(mkfifo(path, 0666), 0);
        ASSERT_EQ(chmod(path, 0666), 0);
        own(path);
    }
    /// Ends the process when a call waits; fifos are opened by nobody here.
    struct Deadline {
        Deadline() { alarm(10); }
        ~Deadline() { alarm(0); }
    } deadline_;
};

TEST_P(InAPlace, TheLogIsForItsOwnerAlone) {
    const mode_t before = umask(0);
    record_log_act("secret\n");
    umask(before);
    EXPECT_EQ(statusOf(kLog).st_mode, S_IFREG | mode_t{0600});
    EXPECT_EQ(textOf(kLog), "secret\n");
}

TEST_P(InAPlace, TheLogIsNotWrittenThroughALink) {
    link(kLog, "old");
    record_log_act("secret\n");
    EXPECT_EQ(textOf("/tmp/target"), "old");
    EXPECT_TRUE(S_ISLNK(statusOf(kLog).st_mode));
}

TEST_P(InAPlace, TheLogIsNotMadeThroughALink) {
    link(kLog);
    ASSERT_EQ(unlink("/tmp/target"), 0);
    record_log_act("secret\n");
    EXPECT_EQ(textOf("/tmp/target"), "(none)");
}

TEST_P(InAPlace, TheLogDoesNotWaitAtAPipe) {
    fifo(kLog);
    record_log_act("secret\n");
    EXPECT_TRUE(S_ISFIFO(statusOf(kLog).st_mode));
}

TEST_P(InAPlace, TheLogIsNotGivenToTheReaderOfAPipe) {
    fifo(kLog);
    const int reader = open(kLog, O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    const int before = stage::Stage::openDescriptors();
    record_log_act("secret\n");
    EXPECT_EQ(stage::Stage::openDescriptors(), before);
    char byte = 0;
    EXPECT_EQ(read(reader, &byte, 1), 0);
    close(reader);
}

TEST_P(InAPlace, AReplyIsNotWrittenThroughALink) {
    stage_.noPipe("ospf_pipe_c2lua");
    link(kPipe, "old");
    EXPECT_LT(write_pipe_to_lua("ok", kPipe), 0);
    EXPECT_EQ(textOf("/tmp/target"), "old");
}

TEST_P(InAPlace, ALinkIsNoAnswer) {
    link(kAnswers[0], "1\n");
    EXPECT_EQ(sw_is_lan_vid(2), 0);
    stage::writeFile("/tmp/target", "0\n");
    EXPECT_EQ(sw_is_wan_vid(2), 1);
    stage::writeFile("/tmp/target", "2\n");
    EXPECT_EQ(check_network_ip("10.1.0.0"), -1);
}

TEST_P(InAPlace, AnAddressLinkIsNoAnswer) {
    link(kAnswers[1], "eth1.2\n");
    stage::writeFile(kAnswers[0], "2\n");
    EXPECT_EQ(check_network_ip("10.1.0.0"), 0);
}

TEST_P(InAPlace, APipeIsNoAnswer) {
    for (const char *answer : kAnswers) {
        fifo(answer);
    }
    EXPECT_EQ(sw_is_lan_vid(2), 0);
    EXPECT_EQ(sw_is_wan_vid(2), 1);
    EXPECT_EQ(check_network_ip("10.1.0.0"), -1);
}

TEST_P(InAPlace, AnAddressPipeIsNoAnswer) {
    fifo(kAnswers[1]);
    stage::writeFile(kAnswers[0], "2\n");
    EXPECT_EQ(check_network_ip("10.1.0.0"), 0);
}

TEST_P(InAPlace, WhatAPipeHoldsIsNoAnswer) {
    fifo(kAnswers[0]);
    const int writer = open(kAnswers[0], O_RDWR | O_NONBLOCK);
    ASSERT_EQ(write(writer, "1\n", 2), 2);
    const int before = stage::Stage::openDescriptors();
    EXPECT_EQ(sw_is_lan_vid(2), 0);
    EXPECT_EQ(stage::Stage::openDescriptors(), before);
    close(writer);
}

INSTANTIATE_TEST_SUITE_P(Made, InAPlace, testing::Bool(),
                         [](const auto &made) { return made.param ? "BySomebody" : "ByRoot"; });

} // namespace
