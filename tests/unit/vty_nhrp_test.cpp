// SPDX-License-Identifier: Apache-2.0
// Delivery to nhrpd and zebra step by step, and the cache stream chunk by chunk.

#include <chrono>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <mutex>
#include <regex>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include "nhrp/vty_nhrp.h"
#include "tests/support/stage.h"

namespace {

constexpr const char *kCachePipe = "/tmp/tmp/nhrp_pipe_c2lua_cache";
constexpr std::size_t kChunk = 256;

using Texts = std::vector<std::string>;

/// Every write into the cache pipe, as one text each; null while nobody watches.
Texts *written = nullptr;
std::mutex writtenMutex;

bool isCachePipe(int fd) {
    struct stat open = {};
    struct stat named = {};
    return fstat(fd, &open) == 0 && S_ISFIFO(open.st_mode) && stat(kCachePipe, &named) == 0 &&
           open.st_ino == named.st_ino && open.st_dev == named.st_dev;
}

} // namespace

// Takes the C library's place, to see where one write ends and the next begins.
extern "C" ssize_t write(int fd, const void *bytes, size_t count) {
    if (written != nullptr && isCachePipe(fd)) {
        const std::lock_guard lock(writtenMutex);
        written->emplace_back(static_cast<const char *>(bytes), count);
    }
    return syscall(SYS_write, fd, bytes, count);
}

namespace {

/// What must reach the pipe when the answer comes in these segments, each on its own.
Texts expectedWrites(const Texts &segments) {
    Texts writes;
    for (const std::string &segment : segments) {
        for (std::size_t at = 0; at < segment.size(); at += kChunk) {
            const std::string read = segment.substr(at, kChunk);
            std::string kept;
            for (const char byte : std::string(read.c_str())) { // up to the first NUL
                if (std::string(" \b\t\n").find(byte) == std::string::npos) {
                    kept += byte;
                }
            }
            writes.push_back(kept);
            if (read.size() != kChunk) {
                return writes;
            }
        }
    }
    writes.emplace_back(); // the read that finds the session closed
    return writes;
}

std::string textOf(std::size_t length, bool blanks) {
    static constexpr char kWith[] = "{\n \"peer\":\t\"10.0.0.1 \b\",\r\n}";
    static constexpr char kWithout[] = "{\"peer\":\"10.0.0.1\",\r}";
    const std::string pattern = blanks ? kWith : kWithout;
    std::string text;
    while (text.size() < length) {
        text += pattern;
    }
    return text.substr(0, length);
}

std::string answerOf(std::size_t length, bool blanks) {
    return textOf(length, blanks) + std::string(4, '\0');
}

std::string joined(const Texts &texts) {
    std::string all;
    for (const std::string &text : texts) {
        all += text;
    }
    return all;
}

constexpr std::size_t kLengths[] = {0, 1, 255, 256, 257, 512, 10000};

// ---------------------------------------------------------------- delivery

struct Delivery {
    const char *name;
    uint32_t (*send)();
    const char *daemon;
    Texts steps;
};

const std::vector<Delivery> &deliveries() {
    static const std::vector<Delivery> kAll = {
        {"doVtyNhrpEnable",
         [] { return doVtyNhrpEnable(7, "COMMAND"); },
         "nhrpd", {"enable", "COMMAND"}                               },
        {"doVtyNhrpConfig",
         [] { return doVtyNhrpConfig(7, "COMMAND"); },
         "nhrpd", {"enable", "configure", "COMMAND"}                  },
        {"doVtyNhrpConfigInterface",
         [] { return doVtyNhrpConfigInterface(7, "tun0", "COMMAND"); },
         "nhrpd", {"enable", "configure", "interface tun0", "COMMAND"}},
        {"doVtyZebraConfigInterface",
         [] { return doVtyZebraConfigInterface(7, "tun0", "COMMAND"); },
         "zebra", {"enable", "configure", "interface tun0", "COMMAND"}},
    };
    return kAll;
}

/// The trace of a session that got as far as its first count steps.
std::string sessionOf(const Delivery &delivery, std::size_t count) {
    std::string line = std::string(delivery.daemon) + ": ";
    for (std::size_t i = 0; i < count; ++i) {
        line += (i == 0 ? "" : " | ") + delivery.steps[i];
    }
    return line + "\n";
}

TEST(Deliver, AnAcceptedCommandHasWalkedEveryStep) {
    for (const Delivery &delivery : deliveries()) {
        SCOPED_TRACE(delivery.name);
        stage::Stage stage;
        const int open = stage::Stage::openDescriptors();
        EXPECT_EQ(delivery.send(), 0U);
        EXPECT_EQ(sessionOf(delivery, delivery.steps.size()), stage.trace());
        EXPECT_EQ(stage::Stage::openDescriptors(), open);
    }
}

TEST(Deliver, EveryStepCanFailAndEndsTheSessionThere) {
    const stage::Answer faults[] = {
        {.code = 1, .text = "% warned\n"},
        {.code = 2        },
        {.code = 3},
        {.code = 4        },
        {.code = 255},
        {.truncateTo = 3        },
        {.closeEarly = true},
    };
    for (const Delivery &delivery : deliveries()) {
        for (std::size_t step = 0; step < delivery.steps.size(); ++step) {
            for (const stage::Answer &fault : faults) {
                SCOPED_TRACE(delivery.name + (" at " + delivery.steps[step]));
                stage::Stage stage;
                const int open = stage::Stage::openDescriptors();
                stage.answer(delivery.daemon, delivery.steps[step].c_str(), fault);
                EXPECT_EQ(delivery.send(), 1U);
                EXPECT_EQ(sessionOf(delivery, step + 1), stage.trace());
                EXPECT_EQ(stage::Stage::openDescriptors(), open);
            }
        }
    }
}

TEST(Deliver, ADaemonThatDoesNotListenIsAFailure) {
    for (const Delivery &delivery : deliveries()) {
        SCOPED_TRACE(delivery.name);
        stage::Stage stage;
        stage.absent(delivery.daemon);
        EXPECT_EQ(delivery.send(), 1U);
        EXPECT_STREQ(stage.trace(), "");
        EXPECT_STREQ(stage.log(), "");
    }
}

TEST(Deliver, EnableAloneIsEnoughWithoutACommand) {
    stage::Stage stage;
    EXPECT_EQ(doVtyNhrpEnable(0, nullptr), 0U);
    EXPECT_STREQ(stage.trace(), "nhrpd: enable\n");
    stage.answer("nhrpd", "enable", {.code = 2});
    EXPECT_EQ(doVtyNhrpEnable(0, nullptr), 1U);
    EXPECT_STREQ(stage.trace(), "nhrpd: enable\n");
}

TEST(Deliver, OtherDeliveriesRefuseNullTexts) {
    stage::Stage stage;
    EXPECT_EQ(doVtyNhrpConfig(0, nullptr), 1U);
    EXPECT_EQ(doVtyNhrpConfigInterface(0, nullptr, "command"), 1U);
    EXPECT_EQ(doVtyNhrpConfigInterface(0, "tun0", nullptr), 1U);
    EXPECT_EQ(doVtyZebraConfigInterface(0, nullptr, "command"), 1U);
    EXPECT_EQ(doVtyZebraConfigInterface(0, "tun0", nullptr), 1U);
    EXPECT_STREQ(stage.trace(), "");
}

TEST(Deliver, TheInterfaceLineCarries255Characters) {
    const std::string name(300, 'n');
    stage::Stage stage;
    EXPECT_EQ(doVtyNhrpConfigInterface(0, name.c_str(), "command"), 0U);
    EXPECT_EQ(doVtyZebraConfigInterface(0, name.c_str(), "command"), 0U);
    const std::string line = "interface " + std::string(245, 'n');
    ASSERT_EQ(line.size(), 255U);
    const std::string walk = ": enable | configure | " + line + " | command\n";
    EXPECT_EQ("nhrpd" + walk + "zebra" + walk, stage.trace());
}

TEST(Deliver, OutputOfAnAcceptedCommandIsPrinted) {
    stage::Stage stage;
    stage.answer("nhrpd", "command", {.text = "note"});
    EXPECT_EQ(doVtyNhrpConfig(0, "command"), 0U);
    EXPECT_STREQ(stage.output(), "note");
    (void)stage.trace(); // looked at elsewhere
}

// ---------------------------------------------------------------- the cache stream

/// Sends a segment as the reads that take it.
void putReads(int fd, const std::string &segment) {
    for (std::size_t at = 0; at < segment.size(); at += kChunk) {
        const std::string read = segment.substr(at, kChunk);
        ASSERT_EQ(send(fd, read.data(), read.size(), 0), static_cast<ssize_t>(read.size()));
    }
}

/// A session whose reads are exactly the messages put in: each read takes one.
class Stream : public testing::Test {
protected:
    void SetUp() override {
        written = &writes_;
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends_), 0);
    }
    void TearDown() override {
        written = nullptr;
        close(ends_[0]);
        close(ends_[1]);
    }

    void put(const std::string &segment) { putReads(ends_[1], segment); }
    std::size_t writeCount() {
        const std::lock_guard lock(writtenMutex);
        return writes_.size();
    }

    stage::Stage stage_;
    Texts writes_;
    int ends_[2] = {-1, -1};
};

/// The whole stream for an answer in segments, over a session of its own.
Texts stream(const Texts &segments) {
    Texts writes;
    int ends[2];
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
    for (const std::string &segment : segments) {
        putReads(ends[1], segment);
    }
    EXPECT_EQ(shutdown(ends[1], SHUT_WR), 0);
    written = &writes;
    EXPECT_EQ(frrVtyNhrpPrint(ends[0], "show"), 0U);
    written = nullptr;
    char command[16] = {};
    EXPECT_EQ(recv(ends[1], command, sizeof command, 0), 5); // with its NUL
    EXPECT_STREQ(command, "show");
    close(ends[0]);
    close(ends[1]);
    return writes;
}

TEST_F(Stream, AReadThatFailsIsAnEmptyOne) {
    ASSERT_EQ(fcntl(ends_[0], F_SETFL, O_NONBLOCK), 0); // nothing is there to read
    EXPECT_EQ(frrVtyNhrpPrint(ends_[0], "show"), 0U);
    EXPECT_EQ(writes_, Texts{""});
    EXPECT_STREQ(stage_.log(), "");
}

TEST_F(Stream, AnswersOfEveryLengthAreWrittenReadByRead) {
    for (const std::size_t length : kLengths) {
        for (const bool blanks : {false, true}) {
            SCOPED_TRACE(std::to_string(length) + (blanks ? " with blanks" : ""));
            const std::string answer = answerOf(length, blanks);
            EXPECT_EQ(stream({answer}), expectedWrites({answer}));
        }
    }
}

/// Every length with and without spaces, but the longest, which takes long, with spaces only.
std::vector<std::pair<std::size_t, bool>> splitAnswers() {
    std::vector<std::pair<std::size_t, bool>> answers;
    for (const std::size_t length : kLengths) {
        if (length <= 512) {
            answers.emplace_back(length, false);
        }
        answers.emplace_back(length, true);
    }
    return answers;
}

TEST_F(Stream, AnswersSplitAtAnyByteEndAtTheFirstShortRead) {
    for (const auto &[length, blanks] : splitAnswers()) {
        const std::string answer = answerOf(length, blanks);
        for (std::size_t split = 1; split < answer.size(); ++split) {
            const Texts segments = {answer.substr(0, split), answer.substr(split)};
            ASSERT_EQ(stream(segments), expectedWrites(segments))
                << length << " split at " << split;
            (void)stage_.trace(); // the pipe's content again, without its boundaries
        }
    }
}

TEST_F(Stream, AFullReadIsFollowedByAnother) {
    std::thread reader([this] { EXPECT_EQ(frrVtyNhrpPrint(ends_[0], "show"), 0U); });
    const std::string full = answerOf(kChunk - 4, false);
    put(full);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (writeCount() < 1 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    ASSERT_EQ(writeCount(), 1U);
    put("later"); // taken only by a reader that goes on
    reader.join();
    EXPECT_EQ(writes_, (Texts{textOf(kChunk - 4, false), "later"}));
}

TEST_F(Stream, ASessionClosedAfterAFullReadYieldsAnEmptyWrite) {
    EXPECT_EQ(stream({std::string(kChunk, 'x')}), (Texts{std::string(kChunk, 'x'), ""}));
}

TEST_F(Stream, AChunkWithoutBlanksIsKeptWhole) {
    EXPECT_EQ(stream({std::string(kChunk, 'x'), "y"}), (Texts{std::string(kChunk, 'x'), "y"}));
    EXPECT_STREQ(stage_.log(), "");
}

TEST_F(Stream, AChunkOfBlanksIsAnEmptyWrite) {
    std::string blanks;
    while (blanks.size() < kChunk) {
        blanks += " \b\t\n";
    }
    EXPECT_EQ(stream({blanks, " \n\t\bz"}), (Texts{"", "z"}));
}

TEST_F(Stream, OnlyTheFourBlanksAreDropped) {
    std::string every;
    for (int byte = 1; byte < 256; ++byte) {
        every += static_cast<char>(byte);
    }
    std::string kept = every;
    std::erase_if(kept, [](char byte) { return strchr(" \b\t\n", byte) != nullptr; });
    ASSERT_EQ(kept.size(), 251U);
    EXPECT_EQ(stream({every}), Texts{kept});
}

TEST_F(Stream, NothingAfterAZeroByteReachesThePipe) {
    EXPECT_EQ(stream({std::string("a\0b", 3)}), Texts{"a"});
    std::string full(kChunk, 'x');
    full[10] = '\0';
    EXPECT_EQ(stream({full, "tail"}), (Texts{std::string(10, 'x'), "tail"}));
}

TEST_F(Stream, AnEmptyCommandIsSentAsOneZeroByte) {
    put(answerOf(0, false));
    EXPECT_EQ(frrVtyNhrpPrint(ends_[0], ""), 0U);
    char command[8];
    EXPECT_EQ(recv(ends_[1], command, sizeof command, 0), 1);
    EXPECT_EQ(command[0], '\0');
    EXPECT_EQ(writes_, Texts{""});
}

TEST_F(Stream, BadDescriptorsAndNullCommandsAreRefused) {
    EXPECT_EQ(frrVtyNhrpPrint(0, "show"), 1U);
    EXPECT_EQ(frrVtyNhrpPrint(-1, "show"), 1U);
    EXPECT_EQ(frrVtyNhrpPrint(ends_[0], nullptr), 1U);
    EXPECT_EQ(frrVtyNhrpPrint(9999, "show"), 1U); // the send fails
    EXPECT_EQ(writes_, Texts{});
}

TEST_F(Stream, APeerThatIsGoneIsAFailureWithoutASignal) {
    close(ends_[1]);
    ends_[1] = -1;
    EXPECT_EQ(frrVtyNhrpPrint(ends_[0], "show"), 1U);
    EXPECT_EQ(writes_, Texts{});
}

TEST_F(Stream, WithoutThePipeTheAnswerIsReadAllTheSame) {
    stage_.noPipe("nhrp_pipe_c2lua_cache");
    put(std::string(kChunk, 'x'));
    put("y");
    EXPECT_EQ(frrVtyNhrpPrint(ends_[0], "show"), 0U);
    char left = 0;
    EXPECT_EQ(recv(ends_[0], &left, 1, MSG_DONTWAIT), -1);
    EXPECT_EQ(writes_, Texts{});
}

// ---------------------------------------------------------------- over a daemon's session

constexpr const char *kShow = "show ip nhrp cache json";
constexpr const char *kNhrpd = "/var/nhrpd.vty";

/// The trace of a display whose writes are these.
std::string displayed(const Texts &writes) {
    std::string text = joined(writes);
    std::string trace = std::string("nhrpd: enable | ") + kShow + "\n";
    if (text.empty()) {
        return trace;
    }
    std::string quoted;
    for (const char byte : text) {
        quoted += byte == '\r' ? std::string("\\r")
                               : (byte == '"' ? std::string("\\\"") : std::string(1, byte));
    }
    const bool plain = text.find('\r') == std::string::npos && text.front() != '"';
    return trace + "reply nhrp_pipe_c2lua_cache: " + (plain ? text : '"' + quoted + '"') + "\n";
}

TEST(Display, AnAnswerReachesThePipeAsOneStream) {
    for (const std::size_t length : kLengths) {
        for (const bool blanks : {false, true}) {
            SCOPED_TRACE(std::to_string(length) + (blanks ? " with blanks" : ""));
            stage::Stage stage;
            const std::string text = textOf(length, blanks);
            stage.answer("nhrpd", kShow, {.text = text.c_str()});
            EXPECT_EQ(vtyNhrpPrint(kShow, kNhrpd), 0U);
            EXPECT_EQ(displayed(expectedWrites({answerOf(length, blanks)})), stage.trace());
        }
    }
}

TEST(Display, AnAnswerInTwoSegmentsEndsAtTheFirstShortRead) {
    for (const std::size_t length : kLengths) {
        const std::string answer = answerOf(length, true);
        const std::string text = textOf(length, true);
        for (const std::size_t split :
             {std::size_t{1}, std::size_t{255}, std::size_t{256}, std::size_t{257},
              std::size_t{512}, length, length + 1, length + 2, length + 3}) {
            if (split == 0 || split >= answer.size()) {
                continue;
            }
            SCOPED_TRACE(std::to_string(length) + " split at " + std::to_string(split));
            stage::Stage stage;
            stage.answer("nhrpd", kShow,
                         {.text = text.c_str(), .splitAt = static_cast<int>(split)});
            EXPECT_EQ(vtyNhrpPrint(kShow, kNhrpd), 0U);
            EXPECT_EQ(displayed(expectedWrites({answer.substr(0, split), answer.substr(split)})),
                      stage.trace());
        }
    }
}

TEST(Display, ADaemonThatHangsUpWithoutAnswerIsStillDisplayed) {
    stage::Stage stage;
    stage.answer("nhrpd", kShow, {.closeEarly = true});
    EXPECT_EQ(vtyNhrpPrint(kShow, kNhrpd), 0U);
    EXPECT_EQ(displayed({}), stage.trace());
}

TEST(Display, ARefusedShowIsStillDisplayed) {
    stage::Stage stage;
    stage.answer("nhrpd", kShow, {.code = 2, .text = "% Unknown command: show\n"});
    EXPECT_EQ(vtyNhrpPrint(kShow, kNhrpd), 0U);
    EXPECT_EQ(displayed({"%Unknowncommand:show"}), stage.trace());
}

TEST(Display, WithoutADaemonTheResultIsAllOnes) {
    stage::Stage stage;
    stage.absent("nhrpd");
    EXPECT_EQ(vtyNhrpPrint(kShow, kNhrpd), 0xFFFFFFFFU);
    EXPECT_EQ(vtyNhrpPrint(kShow, nullptr), 0xFFFFFFFFU);
    EXPECT_STREQ(stage.trace(), "");
}

/// Standard input closed, so that the next session has descriptor 0; put back at the end.
class NoStandardInput {
public:
    NoStandardInput() : saved_(dup(STDIN_FILENO)) { close(STDIN_FILENO); }
    ~NoStandardInput() {
        EXPECT_EQ(dup2(saved_, STDIN_FILENO), STDIN_FILENO); // ends the session that stayed open
        close(saved_);
    }
    NoStandardInput(const NoStandardInput &) = delete;
    NoStandardInput &operator=(const NoStandardInput &) = delete;

private:
    int saved_;
};

TEST(Display, ASessionWithDescriptorZeroIsConnectedAndRefused) {
    stage::Stage stage;
    {
        const NoStandardInput closed;
        EXPECT_EQ(vtyNhrpPrint(kShow, kNhrpd), 1U);
    }
    EXPECT_TRUE(std::regex_match(stage.log(), std::regex("frr_util:[0-9]+: frrVtyRun: enable\n")))
        << stage.log();
}

TEST(Deliver, ASessionWithDescriptorZeroLogsItsFirstCommandAndIsRefused) {
    for (const Delivery &delivery : deliveries()) {
        SCOPED_TRACE(delivery.name);
        stage::Stage stage;
        {
            const NoStandardInput closed;
            EXPECT_EQ(delivery.send(), 1U);
        }
        EXPECT_TRUE(
            std::regex_match(stage.log(), std::regex("frr_util:[0-9]+: frrVtyRun: enable\n")))
            << stage.log();
    }
}

TEST(Display, ARefusedEnableEndsTheSession) {
    stage::Stage stage;
    stage.answer("nhrpd", "enable", {.code = 1});
    EXPECT_EQ(vtyNhrpPrint(kShow, kNhrpd), 1U);
    EXPECT_STREQ(stage.trace(), "nhrpd: enable\n");
}

TEST(Display, ANullCommandIsAFailureAndClosesTheSession) {
    stage::Stage stage;
    const int open = stage::Stage::openDescriptors();
    EXPECT_EQ(vtyNhrpPrint(nullptr, kNhrpd), 1U);
    EXPECT_STREQ(stage.trace(), "nhrpd: enable\n");
    EXPECT_EQ(stage::Stage::openDescriptors(), open);
}

} // namespace
