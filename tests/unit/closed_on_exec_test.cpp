// SPDX-License-Identifier: Apache-2.0
// What the library opens, no command that a host's other thread starts meanwhile inherits. Most of
// it is closed at once, so the calls that open are looked at here.

#include <cstdarg>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "common/front_end.h"

namespace {

constexpr const char *kPipe = "/tmp/tmp/ospf_pipe_c2lua";

/// What was opened while somebody looks.
struct Opened {
    std::string path;
    bool isClosedOnExec;
};
std::vector<Opened> *seen = nullptr;

} // namespace

#pragma GCC visibility push(default)
extern "C" int open(const char *path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (seen != nullptr) {
        seen->push_back({path, (flags & O_CLOEXEC) != 0});
    }
    static const auto real = reinterpret_cast<decltype(&::open)>(dlsym(RTLD_NEXT, "open"));
    return real(path, flags, mode);
}
#pragma GCC visibility pop

namespace {

class ClosedOnExec : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(getenv("FRRUCI_SANDBOX"), nullptr); }
    void TearDown() override { seen = nullptr; }

    /// The call opens the path, and nothing that stays open in a command.
    template <typename Call> void expectFor(const std::string &path, Call call) {
        std::vector<Opened> opened;
        seen = &opened;
        call();
        seen = nullptr;
        bool found = false;
        for (const Opened &each : opened) {
            found = found || each.path == path;
            EXPECT_TRUE(each.isClosedOnExec) << each.path;
        }
        EXPECT_TRUE(found) << path << " was not opened";
    }
};

TEST_F(ClosedOnExec, TheLog) {
    expectFor("/tmp/tmp/data", [] { EXPECT_EQ(record_log_act("line\n"), 0); });
}

TEST_F(ClosedOnExec, AnAnswerFile) {
    expectFor("/tmp/cli_vid", [] { (void)sw_is_lan_vid(2); });
}

TEST_F(ClosedOnExec, AReplyPipe) {
    ASSERT_EQ(mkfifo(kPipe, 0600), 0);
    const int reader = open(kPipe, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    expectFor(kPipe, [] { EXPECT_EQ(write_pipe_to_lua("ok", kPipe), 0); });
    EXPECT_EQ(close(reader), 0);
    EXPECT_EQ(unlink(kPipe), 0);
}

} // namespace
