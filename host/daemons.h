/* SPDX-License-Identifier: Apache-2.0 */
/* Which programs are there and run. Versions are asked for over the vty sockets: a command line
 * with a daemon's name would be counted as that daemon. */
#ifndef FRRUCI_HOST_DAEMONS_H
#define FRRUCI_HOST_DAEMONS_H

#include <span>

#include "host/exchange.h"

namespace frruci::host {

/// True when a program of this name lies in PATH.
bool isInstalled(const char *program);

/// Daemons of FRR that also live on zebra, and that the library knows nothing of.
std::span<const char *const> othersOnZebra();

/// All processes, as they were when this was made.
class Processes {
public:
    Processes();
    ~Processes();
    Processes(const Processes &) = delete;
    Processes &operator=(const Processes &) = delete;

    bool has(const char *name) const;
    /// True when a "frruci watch" is among them.
    bool hasWatch() const { return hasWatch_; }

private:
    List<char *> names_;
    bool hasWatch_ = false;
};

/// What a daemon said to "show version".
struct Greeting {
    Reach reach;
    Text version; ///< "8.4.4"; empty when it does not tell
};

/// Waits a short time for a daemon that does not answer.
void greet(const char *daemon, Greeting &greeting);

/// Seconds for an answer that somebody waits for: the given ones, and not more than a few.
unsigned shortPatience();

} // namespace frruci::host

#endif
