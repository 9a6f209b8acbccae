// SPDX-License-Identifier: Apache-2.0
// The vty exchange: connect, one command and its answer, streamed show output, disconnect.

#include "vty/frr_util.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "common/front_end.h"
#include "common/outside.h"
#include "common/status.h"
#include "vty/show_lines.h"

namespace {

using frruci::common::kFailed;
using frruci::common::kRefused;
using frruci::common::kSuccess;

constexpr uint8_t kNoSuchCommand = 2;
constexpr uint8_t kAmbiguousCommand = 3;

constexpr int kMarkerNuls = 3;
constexpr ssize_t kShortestAnswer = kMarkerNuls + 1;
constexpr std::size_t kChunkBytes = 256;
constexpr std::size_t kLastLinePosition = 256;

bool isRefusal(uint8_t code) {
    return code == kNoSuchCommand || code == kAmbiguousCommand;
}

bool sendCommand(int32_t fd, const char *cmd) {
    return frruci::outside::sendCommand(fd, cmd) >= 0;
}

/// The pause after a receive that brought nothing, so that an ended stream takes no processor: at
/// most a hundred of them a second. It ends early when something comes.
void pauseAfterNothing(int32_t fd, bool mayBringMore) {
    constexpr timespec kPause = {.tv_sec = 0, .tv_nsec = 10000000};
    sigset_t all;
    (void)sigfillset(&all);
    pollfd source = {fd, POLLIN, 0};
    // Signals wait as well, or a host's timer would end the pause. An ended stream is not watched:
    // it is ready all the time.
    (void)ppoll(&source, mayBringMore ? 1 : 0, &kPause, &all);
}

/// Splits received bytes into lines.
class LineSplitter {
public:
    LineSplitter(uint32_t kind, uint32_t argument, int32_t mode)
        : kind_(kind), argument_(argument), mode_(mode) {}

    void take(const char *bytes, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            if (position_ > kLastLinePosition) {
                // Fixed by the interface: the position stays, so no later chunk yields a line.
                (void)record_log_act("frr_util:%d: got something wrong!!!!!!!!!!!!!!!!!!!!!!!!\n",
                                     __LINE__);
                return;
            }
            if (bytes[i] == '\n') {
                finishLine();
            } else {
                line_[position_++] = bytes[i];
            }
        }
    }

private:
    void finishLine() {
        line_[position_] = '\r';
        line_[position_ + 1] = '\n';
        (void)puts(line_);
        frruci::vty::handleLine(line_, kind_, argument_, mode_);
        memset(line_, 0, sizeof line_);
        position_ = 0;
    }

    // One byte more than a line needs, so that even the longest is terminated.
    char line_[frruci::vty::kLineBytes + 1] = {};
    std::size_t position_ = 0;
    uint32_t kind_;
    uint32_t argument_;
    int32_t mode_;
};

/// Finds the end marker across chunks.
class MarkerScan {
public:
    /// The position after the marker, or 0 while it has not been seen.
    std::size_t find(const char *bytes, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            nuls_ = bytes[i] == '\0' ? nuls_ + 1 : 0;
            if (nuls_ == kMarkerNuls) {
                return i + 1;
            }
        }
        return 0;
    }

private:
    int nuls_ = 0;
};

} // namespace

int32_t frrVtyConnect(const char *path, int32_t *out_fd) {
    if (out_fd == nullptr || path == nullptr) {
        return kFailed;
    }
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const std::size_t length = strnlen(path, sizeof address.sun_path - 1);
    memcpy(address.sun_path, path, length);
    const int fd = frruci::outside::openSession(
        address, static_cast<unsigned>(offsetof(sockaddr_un, sun_path) + length));
    if (fd < 0) {
        return kRefused;
    }
    *out_fd = fd;
    return kSuccess;
}

int32_t frrVtyDisconnect(int32_t fd) {
    if (fd < 1) {
        return kFailed;
    }
    (void)close(fd); // nothing unsent is left in a session
    return kSuccess;
}

int32_t frrVtyRun(int32_t fd, const char *cmd, uint8_t *out_code, char *reply, int32_t reply_size) {
    (void)record_log_act("frr_util:%d: frrVtyRun: %s\n", __LINE__, cmd == nullptr ? "" : cmd);
    if (fd < 1 || cmd == nullptr || out_code == nullptr || reply == nullptr ||
        reply_size < kShortestAnswer) {
        return kFailed;
    }
    if (!sendCommand(fd, cmd)) {
        return kRefused;
    }
    const auto size = static_cast<std::size_t>(reply_size);
    const ssize_t received = frruci::outside::receive(fd, reply, size);
    if (received < kShortestAnswer) {
        return kRefused;
    }
    const std::size_t codePosition = strnlen(reply, size) + kMarkerNuls;
    if (size <= codePosition) {
        return kRefused;
    }
    const auto code = static_cast<uint8_t>(reply[codePosition]);
    *out_code = code;
    if (isRefusal(code)) {
        return kRefused;
    }
    if (received > kShortestAnswer) {
        (void)printf("%s", reply);
    }
    return code;
}

int32_t frrVtyPrint(int32_t fd, const char *cmd, uint8_t *out_code, uint32_t show_kind,
                    uint32_t show_arg, int32_t mode) {
    if (fd < 1 || cmd == nullptr || out_code == nullptr || !sendCommand(fd, cmd)) {
        return kFailed;
    }
    LineSplitter lines(show_kind, show_arg, mode);
    MarkerScan marker;
    // Fixed by the interface: reads on past an end of stream until the marker comes.
    for (;;) {
        char chunk[kChunkBytes] = {};
        const ssize_t received = frruci::outside::receive(fd, chunk, sizeof chunk);
        if (received <= 0) {
            pauseAfterNothing(fd, received < 0 && errno == EAGAIN);
            continue;
        }
        const auto count = static_cast<std::size_t>(received);
        lines.take(chunk, count);
        const std::size_t after = marker.find(chunk, count);
        if (after == 0) {
            continue;
        }
        char code = '\0';
        if (after < count) {
            code = chunk[after];
        } else if (frruci::outside::receive(fd, &code, 1) == 0) {
            return kFailed;
        }
        *out_code = static_cast<uint8_t>(code);
        return isRefusal(*out_code) ? kFailed : *out_code;
    }
}
