// SPDX-License-Identifier: Apache-2.0
// Finds mgmtd, takes turns at it, waits while it is busy, and starts daemons where it runs.

#include "vty/manager.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include "common/outside.h"
#include "common/text.h"
#include "common/uninterrupted.h"
#include "frruci/observe.h"
#include "vty/daemons.h"
#include "vty/session.h"

extern char **environ;

namespace frruci::vty {

namespace {

using common::equals;

constexpr const char *kManagedSockets[] = {kRipdSocket, kZebraSocket, kMgmtdSocket};
constexpr const char *kEntries[] = {"configure", "config"};
constexpr const char *kLockedFolder = "/var";

/// In its refusals of a setting, and of a removal by path.
constexpr const char *kBusyTexts[] = {"could not lock ", " is locked by another session "};
/// In that of a setting whose context it has dropped since it was entered.
constexpr const char *kLostText = "object was deleted by another process";

constexpr int64_t kTurnMs = 5000;
constexpr int64_t kPatienceMs = 1000;
constexpr unsigned kTurnPauseUs = 10000;
constexpr unsigned kBusyPauseUs = 50000;

int64_t nowMs() {
    timespec now = {};
    (void)clock_gettime(CLOCK_MONOTONIC, &now); // every kernel has this clock
    return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

bool isOneOf(const char *text, std::span<const char *const> texts) {
    for (const char *each : texts) {
        if (equals(text, each)) {
            return true;
        }
    }
    return false;
}

/// How many steps lead into the configuration; 0 when none does.
std::size_t entrySteps(std::span<const char *const> steps) {
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (steps[i] != nullptr && isOneOf(steps[i], kEntries)) {
            return i + 1;
        }
    }
    return 0;
}

bool tellsOfLock(const char *reply) {
    for (const char *text : kBusyTexts) {
        if (strstr(reply, text) != nullptr) {
            return true;
        }
    }
    return false;
}

/// A session with mgmtd, or -1. Nobody sees the try, and nothing of it stays: there is one in many
/// walks where mgmtd does not run.
int connectToManager() {
    if (outside::isRehearsal()) {
        return -1;
    }
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    common::format(address.sun_path, "%s", kMgmtdSocket);
    const auto *name = reinterpret_cast<const sockaddr *>(&address);
    if (common::uninterrupted([&] { return connect(fd, name, sizeof address); }) == 0) {
        return fd;
    }
    (void)close(fd);
    return -1;
}

/// The descriptor that holds the lock, or -1 when others held it all the time.
int takeTurn() {
    const int fd = open(kLockedFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const int64_t end = nowMs() + kTurnMs;
    while (flock(fd, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK || nowMs() >= end) {
            (void)close(fd);
            return -1;
        }
        outside::pauseFor(0, kTurnPauseUs);
    }
    return fd;
}

/// The shell with standard output and error on /dev/null.
int runSilently(const char *command) {
    posix_spawn_file_actions_t actions;
    if (posix_spawn_file_actions_init(&actions) != 0) {
        return -1;
    }
    const char *words[] = {"sh", "-c", command, nullptr};
    pid_t shell = -1;
    const bool started =
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0) == 0 &&
        posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO) == 0 &&
        posix_spawn(&shell, "/bin/sh", &actions, nullptr, const_cast<char **>(words), environ) == 0;
    (void)posix_spawn_file_actions_destroy(&actions); // frees what was added
    int status = -1;
    if (started) {
        (void)common::uninterrupted([&] { return waitpid(shell, &status, 0); });
    }
    return status; // as it is where somebody else has waited
}

} // namespace

bool hasManager() {
    const int fd = connectToManager();
    if (fd < 0) {
        return false;
    }
    (void)close(fd);
    return true;
}

Manager::~Manager() {
    if (lock_ >= 0) {
        (void)close(lock_);
    }
}

bool Manager::takeOver(Session &session, std::span<const char *const> steps) {
    firstContext_ = entrySteps(steps);
    if (!isOneOf(session.path(), kManagedSockets) || firstContext_ == 0) {
        return true;
    }
    int manager = connectToManager();
    if (manager < 0) {
        return true;
    }
    lock_ = takeTurn();
    if (lock_ < 0) {
        (void)close(manager);
        manager = -1;
    } else {
        outside::opened(kMgmtdSocket, manager);
    }
    session.moveTo(manager);
    return session.isOpen();
}

bool Manager::goesOn(int32_t result, const char *reply, std::size_t &step) {
    if (lock_ < 0 || result <= 0) {
        return false;
    }
    const bool isLost = strstr(reply, kLostText) != nullptr;
    if (!isLost && !tellsOfLock(reply)) {
        return false;
    }
    if (patienceEndMs_ == 0) {
        patienceEndMs_ = nowMs() + kPatienceMs;
    }
    if (nowMs() >= patienceEndMs_) {
        return false;
    }
    outside::pauseFor(0, kBusyPauseUs);
    step = isLost ? firstContext_ : step;
    return true;
}

int startDaemon(const char *command) {
    if (!hasManager()) {
        return outside::run(command);
    }
    (void)outside::happens(FRRUCI_SHELL, nullptr, command); // which it does: this is no rehearsal
    return outside::happened(runSilently(command));
}

} // namespace frruci::vty
