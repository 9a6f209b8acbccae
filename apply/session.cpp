// SPDX-License-Identifier: Apache-2.0
// The program's exchange, with a lock and patience for mgmtd.

#include "apply/session.h"

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "host/timeout.h"

namespace frruci::apply {

namespace {

constexpr const char *kManagement = "mgmtd";
constexpr const char *kLockFolder = "/var";
constexpr const char *kBusy = "could not lock ";
constexpr long long kConnectMs = 5000;
constexpr long long kLockMs = 5000;
constexpr long long kBusyMs = 3000;
constexpr int kPollMs = 10;

/// The folder's lock; negative when somebody holds it for too long.
int takeLock() {
    const int lock = open(kLockFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const long long end = milliseconds() + kLockMs;
    while (lock >= 0 && flock(lock, LOCK_EX | LOCK_NB) != 0) {
        if (milliseconds() >= end) {
            (void)close(lock);
            return -1;
        }
        (void)poll(nullptr, 0, kPollMs);
    }
    return lock;
}

} // namespace

long long milliseconds() {
    timespec now = {};
    (void)clock_gettime(CLOCK_MONOTONIC, &now); // always there
    return static_cast<long long>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

int openConnection(const char *daemon) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    (void)snprintf(address.sun_path, sizeof address.sun_path, "/var/%s.vty", daemon);
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const long long end = milliseconds() + kConnectMs;
    while (fd >= 0 &&
           connect(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        // A busy daemon lets others wait in line, and there is no more room in it.
        if (errno != EAGAIN || milliseconds() >= end) {
            (void)close(fd);
            return -1;
        }
        (void)poll(nullptr, 0, kPollMs);
    }
    return fd;
}

void closeConnection(int fd) {
    if (fd >= 0) {
        (void)close(fd);
    }
}

bool accepts(const char *daemon) {
    const int fd = openConnection(daemon);
    closeConnection(fd);
    return fd >= 0;
}

Session::Session(const char *daemon)
    : isManaged_(host::equals(daemon, kManagement)), lock_(isManaged_ ? takeLock() : -1),
      exchange_(daemon, host::timeoutSeconds()) {}

Session::~Session() {
    closeConnection(lock_);
}

int Session::run(const char *command) {
    if (isManaged_ && lock_ < 0) {
        return kNoReply;
    }
    const long long end = milliseconds() + kBusyMs;
    for (;;) {
        const int code = exchange_.ask(command, answer_);
        // Others may commit, and a fresh mgmtd is not ready at once.
        if (!isManaged_ || code <= 0 || strstr(text(), kBusy) == nullptr || milliseconds() >= end) {
            return code;
        }
        (void)poll(nullptr, 0, kPollMs);
    }
}

} // namespace frruci::apply
