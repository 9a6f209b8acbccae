/* SPDX-License-Identifier: Apache-2.0 */
/* A vty session that closes itself, and the walk into a context that every delivery makes. */
#ifndef FRRUCI_VTY_SESSION_H
#define FRRUCI_VTY_SESSION_H

#include <cstdint>
#include <initializer_list>

namespace frruci::vty {

inline constexpr int kReplyBytes = 512;
inline constexpr int kCommandBytes = 256;

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

    /// One exchange into the session's own reply buffer; true when the daemon answered 0.
    bool run(const char *command);

    /// One exchange into the caller's buffer of kReplyBytes.
    bool run(const char *command, char *reply);

private:
    int32_t fd_ = -1;
    char reply_[kReplyBytes] = {};
};

/// Sends the steps in order over one session, each only after the one before it succeeded; a null
/// step ends the walk. Result: 0, or 1 when the connection or a step failed.
uint32_t deliver(const char *path, std::initializer_list<const char *> steps);

} // namespace frruci::vty

#endif
