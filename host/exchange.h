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

    /// The two halves of ask. Commands that are posted leave together when the next answer is
    /// taken; answers are taken in the order of the commands, one for each.
    void post(const char *command) { posted_.add(command, strlen(command) + 1); }
    int take(Text &answer);

private:
    bool waitFor(short events) const;
    bool sendPosted();
    bool receive();
    int takeUntil(std::size_t ending, Text &answer);
    int fail();

    int fd_;
    unsigned timeoutSeconds_;
    Reach reach_;
    Text posted_;
    Text received_;
    std::size_t taken_ = 0; ///< bytes of what was received
};

} // namespace frruci::host

#endif
