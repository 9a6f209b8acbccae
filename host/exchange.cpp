// SPDX-License-Identifier: Apache-2.0
// One command and its whole answer.

#include "host/exchange.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace frruci::host {

namespace {

constexpr std::size_t kEndingBytes = 4; // three NULs and the completion code

int64_t nowMs() {
    timespec now = {};
    (void)clock_gettime(CLOCK_MONOTONIC, &now); // every Linux has this clock
    return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

/// The ending's place in the bytes, or count while it is not complete.
std::size_t findEnding(const char *bytes, std::size_t count) {
    static constexpr char kMarker[] = {'\0', '\0', '\0'};
    if (count < kEndingBytes) {
        return count;
    }
    const void *found = memmem(bytes, count - 1, kMarker, sizeof kMarker);
    return found == nullptr ? count
                            : static_cast<std::size_t>(static_cast<const char *>(found) - bytes);
}

Reach reachOf(int error) {
    switch (error) {
    case 0:
        return Reach::kAnswered;
    case ECONNREFUSED:
        return Reach::kStale;
    case EAGAIN:
        return Reach::kSilent;
    default:
        return Reach::kMissing;
    }
}

} // namespace

Exchange::Exchange(const char *daemon, unsigned timeoutSeconds)
    : fd_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)), timeoutSeconds_(timeoutSeconds) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    (void)snprintf(address.sun_path, sizeof address.sun_path, "/var/%s.vty", daemon);
    // A daemon's queue is short: others are waited for.
    const timeval patience = {static_cast<time_t>(timeoutSeconds), 0};
    (void)setsockopt(fd_, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience); // else it waits on
    int result = -1;
    do {
        result = connect(fd_, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    } while (result != 0 && errno == EINTR);
    reach_ = reachOf(result == 0 ? 0 : errno);
    (void)fcntl(fd_, F_SETFL, O_NONBLOCK); // from here on it is polled
}

Exchange::~Exchange() {
    if (fd_ >= 0) {
        (void)close(fd_);
    }
}

int Exchange::fail() {
    reach_ = Reach::kSilent;
    return -1;
}

bool Exchange::waitFor(short events) const {
    const int64_t deadline = nowMs() + timeoutSeconds_ * INT64_C(1000);
    for (;;) {
        const int64_t left = deadline - nowMs();
        pollfd watched = {fd_, events, 0};
        const int ready = left <= 0 ? 0 : poll(&watched, 1, static_cast<int>(left));
        if (ready >= 0 || errno != EINTR) {
            return ready > 0;
        }
    }
}

bool Exchange::sendPosted() {
    for (std::size_t sent = 0; sent < posted_.size();) {
        const ssize_t count = send(fd_, posted_.get() + sent, posted_.size() - sent, MSG_NOSIGNAL);
        const bool mayGoOn = count >= 0 || errno == EINTR || (errno == EAGAIN && waitFor(POLLOUT));
        if (!mayGoOn) {
            return false;
        }
        sent += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    posted_.clear();
    return true;
}

bool Exchange::receive() {
    char chunk[4096];
    ssize_t received = -1;
    do {
        if (!waitFor(POLLIN)) {
            return false;
        }
        received = recv(fd_, chunk, sizeof chunk, 0);
    } while (received < 0 && (errno == EINTR || errno == EAGAIN));
    if (received > 0) {
        received_.add(chunk, static_cast<std::size_t>(received));
    }
    return received > 0;
}

int Exchange::ask(const char *command, Text &answer) {
    post(command);
    return take(answer);
}

int Exchange::take(Text &answer) {
    answer.clear();
    if (reach_ != Reach::kAnswered) {
        return -1;
    }
    if (!sendPosted()) {
        return fail();
    }
    std::size_t looked = taken_;
    for (;;) {
        const std::size_t rest = received_.size() - looked;
        const std::size_t ending = looked + findEnding(received_.get() + looked, rest);
        if (ending < received_.size()) {
            return takeUntil(ending, answer);
        }
        // A marker may have begun in what came before.
        looked += rest < kEndingBytes ? 0 : rest - kEndingBytes;
        if (!receive()) {
            return fail();
        }
    }
}

int Exchange::takeUntil(std::size_t ending, Text &answer) {
    answer.add(received_.get() + taken_, ending - taken_);
    taken_ = ending + kEndingBytes;
    const int code = static_cast<uint8_t>(received_.get()[taken_ - 1]);
    if (taken_ == received_.size()) {
        received_.clear();
        taken_ = 0;
    }
    return code;
}

} // namespace frruci::host
