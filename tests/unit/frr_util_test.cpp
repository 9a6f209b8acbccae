// SPDX-License-Identifier: Apache-2.0
// The vty exchange against fake daemons that behave and misbehave.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "ospf/frr_ospf.h"
#include "rip/frr_rip.h"
#include "tests/support/interruptions.h"
#include "tests/support/stage.h"
#include "vty/frr_util.h"

namespace {

using Clock = std::chrono::steady_clock;

/// Receives on one descriptor that bring nothing are counted until a given time; then the end
/// marker with code 9 comes.
struct {
    int fd = -1;
    Clock::time_point until;
    std::atomic<int> empty = 0;
} watched;

void watch(int fd, Clock::time_point until) {
    watched.fd = fd;
    watched.until = until;
    watched.empty = 0;
}

/// The lines that reached a handler, with the show kind and argument, "rip" lines without.
std::vector<std::string> *handled = nullptr;

/// Bytes after the text of the last line that were not zero, up to the 257 that handlers may copy.
bool zeroedBehind = true;

void checkZeroedBehind(const char *line) {
    for (std::size_t i = strlen(line); i < 257; ++i) {
        zeroedBehind = zeroedBehind && line[i] == '\0';
    }
}

} // namespace

// Takes the C library's place.
extern "C" ssize_t recv(int fd, void *bytes, std::size_t size, int flags) {
    if (fd == watched.fd && Clock::now() >= watched.until) {
        memcpy(bytes, "\0\0\0\x9", 4);
        return 4;
    }
    const ssize_t received = syscall(SYS_recvfrom, fd, bytes, size, flags, nullptr, nullptr);
    watched.empty += fd == watched.fd && received <= 0 ? 1 : 0;
    return received;
}

// These take the place of the library's own line handlers.
void handle_rip_show_interface(char *line) {
    checkZeroedBehind(line);
    handled->push_back(std::string("rip ") + line);
}

void handle_ospf_show(char *line, uint32_t kind, uint32_t arg) {
    checkZeroedBehind(line);
    handled->push_back("ospf " + std::to_string(kind) + " " + std::to_string(arg) + " " + line);
}

namespace {

constexpr const char *kOspfd = "/var/ospfd.vty";

std::string withMarker(const std::string &output, char code) {
    return output + std::string(3, '\0') + code;
}

stage::Answer raw(const std::string &bytes) {
    return {.rawBytes = bytes.data(), .rawSize = static_cast<int>(bytes.size())};
}

class Exchange : public testing::Test {
protected:
    void SetUp() override {
        handled = &lines_;
        zeroedBehind = true;
        ASSERT_EQ(frrVtyConnect(kOspfd, &fd_), 0);
    }
    void TearDown() override { (void)frrVtyDisconnect(fd_); } // some tests have closed it already

    int32_t run(const char *command) {
        return frrVtyRun(fd_, command, &code_, reply_, sizeof reply_);
    }
    int32_t show(const char *command, uint32_t kind = 2, uint32_t arg = 1, int32_t mode = 1) {
        return frrVtyPrint(fd_, command, &code_, kind, arg, mode);
    }

    stage::Stage stage_;
    std::vector<std::string> lines_;
    int32_t fd_ = -1;
    uint8_t code_ = 77;
    char reply_[512] = {};
};

TEST_F(Exchange, ConnectRefusesNullAndMissingSockets) {
    EXPECT_EQ(frrVtyConnect(kOspfd, nullptr), 1);
    EXPECT_EQ(frrVtyConnect(nullptr, &fd_), 1);
    int32_t untouched = 4711;
    stage_.absent("ripd");
    EXPECT_EQ(frrVtyConnect("/var/ripd.vty", &untouched), -1);
    stage_.deaf("zebra");
    EXPECT_EQ(frrVtyConnect("/var/zebra.vty", &untouched), -1);
    EXPECT_EQ(frrVtyConnect("", &untouched), -1);
    const std::string tooLong = "/var/" + std::string(300, 'x');
    EXPECT_EQ(frrVtyConnect(tooLong.c_str(), &untouched), -1);
    EXPECT_EQ(untouched, 4711);
}

TEST_F(Exchange, AFailedConnectLeavesItsDescriptorOpen) {
    stage_.absent("ripd");
    const int before = stage::Stage::openDescriptors();
    int32_t fd = -1;
    EXPECT_EQ(frrVtyConnect("/var/ripd.vty", &fd), -1);
    EXPECT_EQ(stage::Stage::openDescriptors(), before + 1);
}

TEST_F(Exchange, APathOfAllCharactersThatFitConnects) {
    const std::string path = "/tmp/" + std::string(102, 's'); // 107 characters
    stage::writeFile("/tmp/link-target", "");
    ASSERT_EQ(symlink("/var/ospfd.vty", path.c_str()), 0);
    int32_t fd = -1;
    EXPECT_EQ(frrVtyConnect(path.c_str(), &fd), 0);
    EXPECT_EQ(frrVtyDisconnect(fd), 0);
}

TEST_F(Exchange, DaemonsThatAreStartedDoNotInheritASession) {
    const int flags = fcntl(fd_, F_GETFD);
    ASSERT_GE(flags, 0);
    EXPECT_NE(flags & FD_CLOEXEC, 0);
}

TEST_F(Exchange, DisconnectRefusesNoSession) {
    EXPECT_EQ(frrVtyDisconnect(0), 1);
    EXPECT_EQ(frrVtyDisconnect(-1), 1);
    const int before = stage::Stage::openDescriptors();
    EXPECT_EQ(frrVtyDisconnect(fd_), 0);
    EXPECT_EQ(stage::Stage::openDescriptors(), before - 1);
    EXPECT_STREQ(stage_.trace(), "ospfd:\n");
    fd_ = -1;
}

TEST_F(Exchange, ACommandWithoutOutputPrintsNothing) {
    EXPECT_EQ(run("en"), 0);
    EXPECT_EQ(code_, 0);
    EXPECT_STREQ(stage_.output(), "");
    EXPECT_STREQ(stage_.trace(), "ospfd: en | (left open)\n");
}

TEST_F(Exchange, EveryCommandIsLoggedEvenARefusedOne) {
    EXPECT_EQ(run("configure"), 0);
    EXPECT_EQ(frrVtyRun(0, "other", &code_, reply_, sizeof reply_), 1);
    const std::string log = stage_.log();
    EXPECT_NE(log.find(": frrVtyRun: configure\n"), std::string::npos) << log;
    EXPECT_NE(log.find(": frrVtyRun: other\n"), std::string::npos) << log;
    EXPECT_EQ(log.rfind("frr_util:", 0), 0U) << log;
}

TEST_F(Exchange, AWarningIsPrintedAndReturned) {
    stage_.answer("ospfd", "x", {.code = 1, .text = "% careful\n"});
    EXPECT_EQ(run("x"), 1);
    EXPECT_EQ(code_, 1);
    EXPECT_STREQ(stage_.output(), "% careful\n");
}

TEST_F(Exchange, UnknownAndAmbiguousCommandsFailTheExchange) {
    for (const uint8_t code : {uint8_t{2}, uint8_t{3}}) {
        stage_.answer("ospfd", "x", {.code = code, .text = "% no\n"});
        EXPECT_EQ(run("x"), -1);
        EXPECT_EQ(code_, code);
        EXPECT_STREQ(stage_.output(), "");
        memset(reply_, 0, sizeof reply_);
    }
}

TEST_F(Exchange, EveryOtherCodeIsPassedThrough) {
    for (int code = 0; code < 256; ++code) {
        if (code == 2 || code == 3) {
            continue;
        }
        stage_.answer("ospfd", "x", {.code = static_cast<uint8_t>(code), .times = 1});
        ASSERT_EQ(run("x"), code);
        ASSERT_EQ(code_, code);
    }
}

TEST_F(Exchange, BadArgumentsSendNothing) {
    EXPECT_EQ(frrVtyRun(0, "x", &code_, reply_, sizeof reply_), 1);
    EXPECT_EQ(frrVtyRun(-1, "x", &code_, reply_, sizeof reply_), 1);
    EXPECT_EQ(frrVtyRun(fd_, "x", nullptr, reply_, sizeof reply_), 1);
    EXPECT_EQ(frrVtyRun(fd_, "x", &code_, nullptr, sizeof reply_), 1);
    EXPECT_EQ(frrVtyRun(fd_, "x", &code_, reply_, 3), 1);
    EXPECT_EQ(frrVtyRun(fd_, "x", &code_, reply_, -5), 1);
    EXPECT_EQ(frrVtyRun(fd_, nullptr, &code_, reply_, sizeof reply_), 1);
    EXPECT_EQ(code_, 77);
    EXPECT_STREQ(stage_.trace(), "ospfd: | (left open)\n");
}

TEST_F(Exchange, AnswersOfFewerThanFourBytesFail) {
    for (int bytes = 0; bytes < 4; ++bytes) {
        int32_t fd = -1;
        ASSERT_EQ(frrVtyConnect(kOspfd, &fd), 0);
        stage_.answer("ospfd", "x", {.truncateTo = bytes});
        EXPECT_EQ(frrVtyRun(fd, "x", &code_, reply_, sizeof reply_), -1) << bytes;
        EXPECT_EQ(code_, 77);
        EXPECT_EQ(frrVtyDisconnect(fd), 0);
    }
}

TEST_F(Exchange, ADaemonThatClosesFailsTheExchangeAndTheNextSend) {
    stage_.answer("ospfd", "x", {.closeEarly = true});
    EXPECT_EQ(run("x"), -1);
    EXPECT_EQ(run("y"), -1); // the peer is gone; no signal may end the process
}

TEST_F(Exchange, ABufferOfFourBytesIsEnoughForAnAnswerWithoutOutput) {
    stage_.answer("ospfd", "x", {.code = 9});
    EXPECT_EQ(frrVtyRun(fd_, "x", &code_, reply_, 4), 9);
}

TEST_F(Exchange, ACodeBeyondTheBufferFails) {
    stage_.answer("ospfd", "x", {.code = 0, .text = "1234567"}); // code at position 10
    EXPECT_EQ(frrVtyRun(fd_, "x", &code_, reply_, 10), -1);
    EXPECT_EQ(code_, 77);
}

TEST_F(Exchange, TheLastByteOfTheBufferMayHoldTheCode) {
    stage_.answer("ospfd", "x", {.code = 5, .text = "1234567"});
    EXPECT_EQ(frrVtyRun(fd_, "x", &code_, reply_, 11), 5);
}

TEST_F(Exchange, OutputThatFillsTheBufferFails) {
    const std::string output(600, 'o');
    stage_.answer("ospfd", "x", {.text = output.c_str()});
    EXPECT_EQ(run("x"), -1);
    EXPECT_EQ(code_, 77);
}

TEST_F(Exchange, AMarkerInALaterSegmentReadsAsCodeZeroInAZeroedBuffer) {
    stage_.answer("ospfd", "x", {.code = 2, .text = "output", .splitAt = 6});
    EXPECT_EQ(run("x"), 0);
    EXPECT_STREQ(stage_.output(), "output");
}

TEST_F(Exchange, TheReplyBufferIsNotCleared) {
    stage_.answer("ospfd", "long", {.text = "a longer output"});
    EXPECT_EQ(run("long"), 0);
    EXPECT_EQ(run("en"), 0);
    EXPECT_STREQ(reply_ + 4, "nger output");
}

TEST_F(Exchange, AnswersSplitAtEveryByteNeverHarm) {
    for (int split = 1; split < 10; ++split) {
        int32_t fd = -1;
        ASSERT_EQ(frrVtyConnect(kOspfd, &fd), 0);
        char reply[512] = {};
        stage_.answer("ospfd", "x", {.code = 1, .text = "abcdef", .splitAt = split});
        const int32_t result = frrVtyRun(fd, "x", &code_, reply, sizeof reply);
        // Three bytes are too few; from four bytes on the code reads as the zero after the text.
        EXPECT_EQ(result, split < 4 ? -1 : 0) << split;
        EXPECT_EQ(frrVtyDisconnect(fd), 0);
    }
}

TEST_F(Exchange, FourBytesOfOutputAloneAreNotPrinted) {
    stage_.answer("ospfd", "x", {.code = 1, .text = "abcdef", .splitAt = 4});
    EXPECT_EQ(run("x"), 0);
    EXPECT_STREQ(stage_.output(), ""); // an answer of four bytes counts as one without output
}

TEST_F(Exchange, ASlowAnswerIsWaitedFor) {
    stage_.answer("ospfd", "x", {.code = 1, .delayMs = 50});
    EXPECT_EQ(run("x"), 1);
}

TEST_F(Exchange, ShowHandsOutLinesWithTheirLineEnds) {
    stage_.answer("ospfd", "show x", {.text = "a\nb\n"});
    EXPECT_EQ(show("show x", 3, 1), 0);
    EXPECT_EQ(lines_, (std::vector<std::string>{"ospf 3 1 a\r\n", "ospf 3 1 b\r\n"}));
    EXPECT_STREQ(stage_.output(), "a\r\n\nb\r\n\n");
    EXPECT_TRUE(zeroedBehind);
}

TEST_F(Exchange, ShowChoosesTheHandlerByMode) {
    stage_.answer("ospfd", "show x", {.text = "a\n"});
    EXPECT_EQ(show("show x", 1, 0, 0), 0);
    EXPECT_EQ(show("show x", 2, 0, 1), 0);
    EXPECT_EQ(show("show x", 2, 0, 2), 0);
    EXPECT_EQ(show("show x", 2, 0, -1), 0);
    EXPECT_EQ(lines_, (std::vector<std::string>{"rip a\r\n", "ospf 2 0 a\r\n"}));
}

TEST_F(Exchange, ShowDropsAFinalFragment) {
    stage_.answer("ospfd", "show x", {.text = "whole\nfragment"});
    EXPECT_EQ(show("show x"), 0);
    EXPECT_EQ(lines_, std::vector<std::string>{"ospf 2 1 whole\r\n"});
    EXPECT_STREQ(stage_.output(), "whole\r\n\n");
}

TEST_F(Exchange, ShowFindsAMarkerSplitAtAnyByte) {
    for (int split = 1; split < 7; ++split) {
        stage_.answer("ospfd", "show x", {.code = 7, .text = "ab\n", .splitAt = split});
        EXPECT_EQ(show("show x"), 7) << split;
        EXPECT_EQ(code_, 7);
    }
    EXPECT_EQ(lines_.size(), 6U);
    EXPECT_EQ(std::count(lines_.begin(), lines_.end(), "ospf 2 1 ab\r\n"), 6);
}

TEST_F(Exchange, ShowReadsTheCodeBehindAMarkerThatEndsAChunk) {
    const std::string output = std::string(252, 'x') + "\n"; // 253 bytes and the marker: 256
    const std::string bytes = withMarker(output, 5);
    stage_.answer("ospfd", "show x", raw(bytes));
    EXPECT_EQ(show("show x"), 5);
    EXPECT_EQ(run("en"), 0); // nothing of the answer is left in the session
}

TEST_F(Exchange, ShowEndsAtThreeNulsInARowOnly) {
    const std::string bytes = withMarker(std::string("a\0b\0\0c\n", 7), 5);
    stage_.answer("ospfd", "show x", raw(bytes));
    EXPECT_EQ(show("show x"), 5);
    EXPECT_EQ(run("en"), 0); // nothing of the answer is left in the session
}

TEST_F(Exchange, ShowTakesACodeThatCannotBeReadForZero) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    const std::string answer = std::string(253, 'x') + std::string(3, '\0'); // one whole chunk
    ASSERT_EQ(send(ends[1], answer.data(), answer.size(), 0), 256);
    const timeval soon = {.tv_sec = 0, .tv_usec = 20000};
    ASSERT_EQ(setsockopt(ends[0], SOL_SOCKET, SO_RCVTIMEO, &soon, sizeof soon), 0);
    EXPECT_EQ(frrVtyPrint(ends[0], "show x", &code_, 0, 0, 2), 0);
    EXPECT_EQ(code_, 0);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(Exchange, ShowFailsWhenTheCodeNeverComes) {
    const std::string bytes = std::string(253, 'x') + std::string(3, '\0');
    stage_.answer("ospfd", "show x", {.truncateTo = 256, .rawBytes = bytes.data(), .rawSize = 256});
    EXPECT_EQ(show("show x"), 1);
    EXPECT_EQ(code_, 77);
}

TEST_F(Exchange, ShowStoresARefusalAndFails) {
    for (const uint8_t code : {uint8_t{2}, uint8_t{3}}) {
        stage_.answer("ospfd", "show x", {.code = code, .text = "% no\n"});
        EXPECT_EQ(show("show x"), 1);
        EXPECT_EQ(code_, code);
    }
}

TEST_F(Exchange, ShowRefusesBadArguments) {
    EXPECT_EQ(frrVtyPrint(0, "x", &code_, 0, 0, 1), 1);
    EXPECT_EQ(frrVtyPrint(fd_, "x", nullptr, 0, 0, 1), 1);
    EXPECT_EQ(frrVtyPrint(fd_, nullptr, &code_, 0, 0, 1), 1);
    EXPECT_STREQ(stage_.trace(), "ospfd: | (left open)\n");
}

TEST_F(Exchange, ShowFailsWhenTheSendFails) {
    stage_.answer("ospfd", "x", {.closeEarly = true});
    EXPECT_EQ(run("x"), -1);
    EXPECT_EQ(show("show x"), 1);
}

TEST_F(Exchange, ShowHandsOutTheLongestLineWhole) {
    const std::string longest(256, 'l');
    const std::string text = longest + "\nnext\n";
    stage_.answer("ospfd", "show x", {.text = text.c_str()});
    EXPECT_EQ(show("show x"), 0);
    EXPECT_EQ(lines_,
              (std::vector<std::string>{"ospf 2 1 " + longest + "\r\n", "ospf 2 1 next\r\n"}));
    EXPECT_TRUE(zeroedBehind);
}

std::size_t countOf(const std::string &needle, const std::string &text) {
    std::size_t count = 0;
    for (std::size_t at = text.find(needle); at != std::string::npos;
         at = text.find(needle, at + 1)) {
        ++count;
    }
    return count;
}

TEST_F(Exchange, ATooLongLineEndsTheLinesButNotTheCommand) {
    // 257 stored bytes fill the line; the rest of this chunk and two further chunks are dropped.
    const std::string text =
        "first\n" + std::string(257, 'w') + "\nlost\n" + std::string(600, 'z') + "\n";
    stage_.answer("ospfd", "show x", {.code = 4, .text = text.c_str()});
    EXPECT_EQ(show("show x"), 4);
    EXPECT_EQ(lines_, std::vector<std::string>{"ospf 2 1 first\r\n"});
    const std::string log = stage_.log();
    const std::size_t chunks = (text.size() + 4 + 255) / 256;
    EXPECT_EQ(countOf(": got something wrong!!!!!!!!!!!!!!!!!!!!!!!!\n", log), chunks - 1) << log;
}

TEST_F(Exchange, ATooLongLineIsLoggedOnceForEachChunkOf256Bytes) {
    const std::string text(1020, 'w'); // with the marker four chunks, the first of them stored
    stage_.answer("ospfd", "show x", {.text = text.c_str()});
    EXPECT_EQ(show("show x"), 0);
    EXPECT_EQ(countOf(": got something wrong!", stage_.log()), 3U);
}

TEST_F(Exchange, FiveThousandLinesArriveInOrder) {
    std::string text;
    for (int i = 0; i < 5000; ++i) {
        text += "line " + std::to_string(i) + "\n";
    }
    stage_.answer("ospfd", "show x", {.text = text.c_str()});
    EXPECT_EQ(show("show x"), 0);
    ASSERT_EQ(lines_.size(), 5000U);
    EXPECT_EQ(lines_.front(), "ospf 2 1 line 0\r\n");
    EXPECT_EQ(lines_.back(), "ospf 2 1 line 4999\r\n");
}

TEST_F(Exchange, ShowKeepsReadingPastAnEndOfStream) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    ASSERT_EQ(shutdown(ends[1], SHUT_WR), 0); // a stream that has ended, its sending side intact
    int life[2];                              // ends with the child
    ASSERT_EQ(pipe(life), 0);
    const pid_t child = fork();
    if (child == 0) {
        uint8_t code = 0;
        (void)frrVtyPrint(ends[0], "show x", &code, 0, 0, 2);
        _exit(0);
    }
    close(life[1]);
    pollfd end = {life[0], POLLIN, 0};
    EXPECT_EQ(poll(&end, 1, 1000), 0) << "the show has ended";
    ASSERT_EQ(syscall(SYS_kill, child, SIGKILL), 0); // the stage has kill
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    close(life[0]);
    close(ends[0]);
    close(ends[1]);
}

/// A stream whose receives bring nothing: how often they are made while it lasts.
class EmptyReceives : public Exchange {
protected:
    void SetUp() override {
        Exchange::SetUp();
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends_), 0);
    }
    void TearDown() override {
        watch(-1, {});
        close(ends_[0]);
        close(ends_[1]);
        Exchange::TearDown();
    }

    /// Shows for a second; the marker then comes from nowhere.
    void showForASecond() {
        watch(ends_[0], Clock::now() + std::chrono::seconds(1));
        EXPECT_EQ(frrVtyPrint(ends_[0], "show x", &code_, 0, 0, 2), 9);
        EXPECT_GT(watched.empty, 10);
        EXPECT_LE(watched.empty, 110);
    }

    int ends_[2] = {-1, -1};
};

TEST_F(EmptyReceives, AreFewAtTheEndOfAStream) {
    ASSERT_EQ(shutdown(ends_[1], SHUT_WR), 0);
    showForASecond();
}

TEST_F(EmptyReceives, AreFewWhileSignalsCome) {
    ASSERT_EQ(shutdown(ends_[1], SHUT_WR), 0);
    const interruptions::Timer timer;
    showForASecond();
    EXPECT_GT(interruptions::count, 50); // those that come in one pause are one
}

TEST_F(EmptyReceives, AreFewOnAStreamThatDoesNotWait) {
    showForASecond();
}

TEST_F(EmptyReceives, DelayNothingThatComes) {
    // Each piece comes when the stream has just been found empty.
    constexpr int kPieces = 300;
    watch(ends_[0], Clock::time_point::max());
    std::thread daemon([this] {
        for (int piece = 0, seen = 0; piece < kPieces; ++piece) {
            const auto begun = Clock::now();
            while (watched.empty == seen && Clock::now() - begun < std::chrono::seconds(5)) {
                std::this_thread::yield();
            }
            seen = watched.empty;
            EXPECT_EQ(send(ends_[1], "x\n", 2, 0), 2);
        }
        EXPECT_EQ(send(ends_[1], "\0\0\0\4", 4, 0), 4);
    });
    const auto begun = Clock::now();
    EXPECT_EQ(frrVtyPrint(ends_[0], "show x", &code_, 2, 1, 1), 4);
    const auto took = Clock::now() - begun;
    daemon.join();
    EXPECT_EQ(lines_.size(), static_cast<std::size_t>(kPieces));
    EXPECT_LT(took,
              std::chrono::milliseconds(10) * kPieces / 2); // a pause each would take twice that
}

} // namespace
