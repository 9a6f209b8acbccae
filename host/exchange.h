/* SPDX-License-Identifier: Apache-2.0 */
/* The host's own exchange with a daemon: answers of any length, read to their end marker, with a
 * deadline and without a log line. It uses nothing of the library. */
#ifndef FRRUCI_HOST_EXCHANGE_H
#define FRRUCI_HOST_EXCHANGE_H

#include "host/text.h"

namespace frruci::host {

inline constexpr const char *kDaemons[] = {"zebra", "ospfd", "ripd", "nhrpd", "mgmtd"};

enum class Reach {
    kAnswered,
    kMissing, ///< no socket
    kStale,   ///< a socket that nobody listens on
    kSilent,  ///< no whole answer in time, or a session that ended early
};

/// A session on /var/DAEMON.vty; closed at the end of its scope.
class Exchange {
public:
    /// Gives up after so many seconds without a byte.
    Exchange(const char *daemon, unsigned timeoutSeconds);
    ~Exchange();
    Exchange(const Exchange &) = delete;
    Exchange &operator=(const Exchange &) = delete;

    /// kAnswered while the session is good, else why it is not.
    Reach reach() const { return reach_; }

    /// Sends one command; answer gets its text. The completion code, or -1 without a whole answer.
    int ask(const char *command, Text &answer);

private:
    bool waitFor(short events) const;
    bool receive(char *bytes, std::size_t room, std::size_t &count);
    int fail();

    int fd_;
    unsigned timeoutSeconds_;
    Reach reach_;
};

} // namespace frruci::host

#endif
