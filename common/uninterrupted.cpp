// SPDX-License-Identifier: Apache-2.0
// Sending, writing, pausing and reading that signals do not cut short; opening that never waits.

#include "common/uninterrupted.h"

#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace frruci::common {

namespace {

/// Gives all bytes away in as few calls as it takes: a signal may end one in the middle.
bool giveAll(ssize_t (*give)(int, const void *, std::size_t), int fd, const char *bytes,
             std::size_t count) {
    do {
        const ssize_t given = uninterrupted([=] { return give(fd, bytes, count); });
        if (given < 0) {
            return false;
        }
        bytes += given;
        count -= static_cast<std::size_t>(given);
    } while (count > 0);
    return true;
}

ssize_t sendQuietly(int socket, const void *bytes, std::size_t count) {
    return send(socket, bytes, count, MSG_NOSIGNAL);
}

/// The time that far from now, by the clock that is never set.
timespec after(unsigned seconds, unsigned microseconds) {
    constexpr long kNanoseconds = 1000000000;
    timespec time = {};
    (void)clock_gettime(CLOCK_MONOTONIC, &time); // cannot fail: Linux always has this clock
    time.tv_nsec += microseconds * 1000L;
    time.tv_sec += seconds + time.tv_nsec / kNanoseconds;
    time.tv_nsec %= kNanoseconds;
    return time;
}

} // namespace

bool sendAll(int socket, const char *bytes, std::size_t count) {
    return giveAll(sendQuietly, socket, bytes, count);
}

bool writeAll(int fd, const char *bytes, std::size_t count) {
    return giveAll(write, fd, bytes, count);
}

void pauseFor(unsigned seconds, unsigned microseconds) {
    const timespec end = after(seconds, microseconds);
    errno = 0;
    if (seconds != 0) {
        (void)sleep(seconds);
    } else {
        (void)usleep(microseconds);
    }
    // The clock tells what a signal has cut off: sleep counts its rest in whole seconds only.
    for (int error = errno; error == EINTR;) {
        error = clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr);
    }
}

int openPlainFile(const char *path, int flags) {
    constexpr mode_t kOwnerOnly = 0600;
    const int file = uninterrupted(
        [=] { return open(path, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kOwnerOnly); });
    struct stat status;
    if (file >= 0 && (fstat(file, &status) != 0 || !S_ISREG(status.st_mode))) {
        (void)close(file);
        return -1;
    }
    return file;
}

bool readStart(FILE *from, char *line, std::size_t size) {
    // Byte by byte and past the stream's buffer, which loses what it has when a read is
    // interrupted.
    std::size_t length = 0;
    while (length + 1 < size && (length == 0 || line[length - 1] != '\n') &&
           uninterrupted([&] { return read(fileno(from), line + length, 1); }) == 1) {
        ++length;
    }
    line[length] = '\0';
    return length > 0;
}

bool readLine(FILE *from, char *line, std::size_t size) {
    const bool found = readStart(from, line, size);
    char rest[64];
    const char *last = line;
    for (bool more = found; more && strchr(last, '\n') == nullptr; last = rest) {
        more = readStart(from, rest, sizeof rest);
    }
    return found;
}

} // namespace frruci::common
