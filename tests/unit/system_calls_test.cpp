// SPDX-License-Identifier: Apache-2.0
// What is asked of the kernel where no result shows it: what a command must not inherit, what must
// have reached the disk before the next step, and what a lock is good for.

#include <cstdarg>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <functional>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "ospf/sw_ospf.h"
#include "tests/unit/store_world.h"

namespace {

constexpr const char *kPipe = "/tmp/tmp/ospf_pipe_c2lua";
constexpr const char *kFile = "/etc/config/ospf";
constexpr const char *kBeside = "/etc/config/.ospf.frruci";
constexpr const char *kText = "\nconfig global 'global'\n\toption enable 'dis'\n\n";

/// What was asked while somebody looks.
struct Asked {
    std::vector<std::pair<std::string, int>> opened; ///< with its flags
    std::string disk;                                ///< what reaches the store's folder
    std::function<void()> beforeLock;                ///< of the package's file, once
};
Asked *asked = nullptr;

std::string pathOf(int descriptor) {
    char path[256] = {};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    return readlink(link.c_str(), path, sizeof path - 1) < 0 ? "" : path;
}

template <class Function> Function *next(const char *name, Function * /*type*/) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

#pragma GCC visibility push(default)
extern "C" {

int open(const char *path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (asked != nullptr) {
        asked->opened.emplace_back(path, flags);
    }
    return next("open", &::open)(path, flags, mode);
}

int fsync(int descriptor) {
    const std::string path = pathOf(descriptor);
    if (asked != nullptr && path.rfind(store::kConfigFolder, 0) == 0) {
        asked->disk += "sync " + path + "\n";
    }
    return next("fsync", &::fsync)(descriptor);
}

int rename(const char *from, const char *to) noexcept(noexcept(::rename("", ""))) {
    if (asked != nullptr && std::string(to).rfind(store::kConfigFolder, 0) == 0) {
        asked->disk += std::string("rename ") + from + " " + to + "\n";
    }
    return next("rename", &::rename)(from, to);
}

int flock(int descriptor, int operation) noexcept(noexcept(::flock(0, 0))) {
    if (asked != nullptr && operation == LOCK_EX && pathOf(descriptor) == kFile) {
        const auto hook = std::exchange(asked->beforeLock, nullptr);
        if (hook) {
            hook();
        }
    }
    return next("flock", &::flock)(descriptor, operation);
}
}
#pragma GCC visibility pop

namespace {

class SystemCalls : public store::World {
protected:
    SystemCalls() {
        store::write(kFile, kText);
        asked = &asked_;
    }
    ~SystemCalls() override { asked = nullptr; }

    /// The path was opened, and nothing that a command would inherit.
    void expectClosedOnExec(const std::string &path) const {
        bool found = false;
        for (const auto &[opened, flags] : asked_.opened) {
            found = found || opened == path;
            EXPECT_NE(flags & O_CLOEXEC, 0) << opened;
        }
        EXPECT_TRUE(found) << path << " was not opened";
    }

    Asked asked_;
};

// ---- What a command must not inherit, although most of it is closed at once ----

TEST_F(SystemCalls, TheLogIsClosedOnExec) {
    EXPECT_EQ(record_log_act("line\n"), 0);
    expectClosedOnExec(store::kLog);
}

TEST_F(SystemCalls, AnAnswerFileIsClosedOnExec) {
    (void)sw_is_lan_vid(2);
    expectClosedOnExec("/tmp/cli_vid");
}

TEST_F(SystemCalls, AReplyPipeIsClosedOnExec) {
    ASSERT_EQ(mkfifo(kPipe, 0600), 0);
    const int reader = open(kPipe, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    EXPECT_EQ(write_pipe_to_lua("ok", kPipe), 0);
    expectClosedOnExec(kPipe);
    EXPECT_EQ(close(reader), 0);
}

// ---- The store ----

TEST_F(SystemCalls, AChangeIsOnTheDiskBeforeItTakesTheOldFilesPlaceAndThenTheFolderIs) {
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), 0);
    EXPECT_EQ(asked_.disk, std::string("sync ") + kBeside + "\nrename " + kBeside + " " + kFile +
                               "\nsync /etc/config\n");
}

TEST_F(SystemCalls, AFileThatWasReplacedBeforeItsLockWasGrantedIsNotTheOneToChange) {
    asked_.beforeLock = [] {
        store::write("/etc/config/.new", std::string(kText) + "config other 'kept'\n");
        ASSERT_EQ(rename("/etc/config/.new", kFile), 0);
    };
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), 0);
    const std::string text = store::read(kFile);
    EXPECT_NE(text.find("option enable 'en'"), std::string::npos) << text;
    EXPECT_NE(text.find("config other 'kept'"), std::string::npos) << text;
}

TEST_F(SystemCalls, ALinkInTheNewFilesPlaceIsNotFollowed) {
    store::write("/tmp/tmp/victim", "victim");
    ASSERT_EQ(symlink("/tmp/tmp/victim", kBeside), 0);
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), UCI_ERR_IO);
    EXPECT_EQ(store::read("/tmp/tmp/victim"), "victim");
    EXPECT_EQ(store::read(kFile), kText);
}

// ---- A daemon that is started where mgmtd runs, and would keep the caller's output open ----

TEST_F(SystemCalls, ADaemonGetsNeitherOutputOfTheCaller) {
    const int manager = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {AF_UNIX, "/var/mgmtd.vty"};
    ASSERT_EQ(bind(manager, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    ASSERT_EQ(listen(manager, 8), 0);
    store::write("/tmp/tmp/ospfd", "#!/bin/sh\noutputs=$(readlink /proc/$$/fd/1 /proc/$$/fd/2)\n"
                                   "echo \"$outputs\" > /tmp/tmp/outputs\n");
    ASSERT_EQ(chmod("/tmp/tmp/ospfd", 0700), 0);
    const std::string path = getenv("PATH");
    ASSERT_EQ(setenv("PATH", ("/tmp/tmp:" + path).c_str(), 1), 0);
    EXPECT_EQ(swOspfProcessCreateById(1, 1), 0U);
    EXPECT_EQ(setenv("PATH", path.c_str(), 1), 0);
    EXPECT_EQ(store::read("/tmp/tmp/outputs"), "/dev/null\n/dev/null\n");
    EXPECT_EQ(close(manager), 0);
    EXPECT_EQ(unlink("/var/mgmtd.vty"), 0);
}

} // namespace
