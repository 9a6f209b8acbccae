/* SPDX-License-Identifier: Apache-2.0 */
/* mgmtd, which since FRRouting 10 takes the configuration that ripd and zebra took themselves.
 * Nothing here changes anything where mgmtd does not run, nor in a rehearsal. */
#ifndef FRRUCI_VTY_MANAGER_H
#define FRRUCI_VTY_MANAGER_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace frruci::vty {

class Session;

/// True where mgmtd accepts a connection.
bool hasManager();

/// mgmtd's part in one walk into a context. It locks its settings while it applies them, and walks
/// that meet there disturb each other: they take turns, by a lock that is held until the end of
/// this scope.
class Manager {
public:
    Manager() = default;
    ~Manager();
    Manager(const Manager &) = delete;
    Manager &operator=(const Manager &) = delete;

    /// Before the steps: where they lead into the configuration of a daemon for which mgmtd takes
    /// it, the session becomes one with mgmtd. False, and the session is closed, when it was not
    /// this walk's turn for 5 seconds.
    bool takeOver(Session &session, std::span<const char *const> steps);

    /// After a step that failed: true, after a pause, when mgmtd was busy with a daemon that has
    /// just started. Then step is the one to go on with: the same, or the first context where mgmtd
    /// has taken the context away. For 1 second in a walk.
    bool goesOn(int32_t result, const char *reply, std::size_t &step);

private:
    int lock_ = -1;
    std::size_t firstContext_ = 0; ///< the step after the entry into the configuration
    int64_t patienceEndMs_ = 0;
};

/// Starts a daemon with a shell command; the status is that of system(). The daemons of FRRouting
/// 10 keep standard output and error of their starter open: where mgmtd runs they get /dev/null, so
/// that nobody who reads the starter's output waits for the end of a daemon.
int startDaemon(const char *command);

} // namespace frruci::vty

#endif
