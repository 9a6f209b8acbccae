/* SPDX-License-Identifier: Apache-2.0 */
/* A session with whoever holds a configuration. */
#ifndef FRRUCI_APPLY_SESSION_H
#define FRRUCI_APPLY_SESSION_H

#include "host/exchange.h"

namespace frruci::apply {

inline constexpr int kNoReply = -1;

/// Open from construction to the end of its scope. A session with mgmtd holds the lock that keeps
/// two of frruci's processes from committing at once.
class Session {
public:
    /// A daemon by its name, for example "ospfd".
    explicit Session(const char *daemon);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    /// Sends a command and waits for the end of its answer. The completion code, 0 for success, or
    /// kNoReply, which ends the session.
    int run(const char *command);

    /// True when the daemon takes commands without being waited for. Mgmtd does not: it would lose
    /// what comes while it works on a change.
    bool takesMany() const { return !isManaged_; }
    /// The two halves of run, where the daemon takes many: answers come in the order of the
    /// commands, one for each.
    void post(const char *command) { exchange_.post(command); }
    int take() { return exchange_.take(answer_); }

    /// The text of the last answer.
    const char *text() const { return answer_.get(); }

private:
    bool isManaged_;
    int lock_; ///< taken before the session begins
    host::Exchange exchange_;
    host::Text answer_;
};

/// A connection whose end shows the daemon's, to be closed with closeConnection; negative when the
/// daemon accepts none.
int openConnection(const char *daemon);
void closeConnection(int fd);

/// True when the daemon accepts a connection.
bool accepts(const char *daemon);

/// Milliseconds of a clock that nobody sets.
long long milliseconds();

} // namespace frruci::apply

#endif
