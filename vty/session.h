/* SPDX-License-Identifier: Apache-2.0 */
/* A vty session that closes itself, and the walk into a context that every delivery makes. */
#ifndef FRRUCI_VTY_SESSION_H
#define FRRUCI_VTY_SESSION_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>

namespace frruci::vty {

inline constexpr int kReplyBytes = 512;
inline constexpr int kCommandBytes = 256;

/// What a step's answer finds in the reply buffer. It matters for an answer that comes in pieces:
/// only its first piece is received, and the rest is taken as the buffer has it.
enum class ReplyPolicy : uint8_t {
    kKept,  ///< what the steps before it have left there
    kFresh, ///< zeros
};

/// The buffer that answers are received into, which the caller has zeroed.
struct Reply {
    char *text;
    int32_t bytes;
    ReplyPolicy policy = ReplyPolicy::kKept;
};

/// An open session on a daemon's socket; closed at the end of its scope.
class Session {
public:
    explicit Session(const char *path);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    /// Connected. A descriptor of 0 is one too, which every exchange then refuses.
    bool isOpen() const { return fd_ >= 0; }
    int32_t fd() const { return fd_; }

    /// The socket that it was opened on.
    const char *path() const { return path_; }

    /// Goes on over another descriptor, which it takes; closes the one before.
    void moveTo(int32_t fd);

    /// Gives the descriptor up without closing it.
    void leaveOpen() { fd_ = -1; }

private:
    const char *path_;
    int32_t fd_ = -1;
};

/// The one walk into a context: sends the steps in order, each only after the one before it
/// succeeded; a null step ends it. Sends and logs nothing without an open session. Where mgmtd
/// takes the daemon's configuration, a walk into it goes there instead, and the session with it.
/// Result: 0; 1 without an open session; else the first result of frrVtyRun that is not 0.
int32_t walk(Session &session, std::span<const char *const> steps, const Reply &reply);

inline int32_t walk(Session &session, std::initializer_list<const char *> steps,
                    const Reply &reply) {
    return walk(session, std::span(steps.begin(), steps.size()), reply);
}

/// The walk in a session of its own.
/// Result: 0, or 1 when the connection or a step failed.
uint32_t deliver(const char *path, std::initializer_list<const char *> steps,
                 ReplyPolicy policy = ReplyPolicy::kKept);

} // namespace frruci::vty

#endif
