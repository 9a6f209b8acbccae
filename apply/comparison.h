/* SPDX-License-Identifier: Apache-2.0 */
/* Stored against running, for one protocol. */
#ifndef FRRUCI_APPLY_COMPARISON_H
#define FRRUCI_APPLY_COMPARISON_H

#include "apply/difference.h"
#include "apply/protocols.h"
#include "apply/rehearsal.h"
#include "apply/wanted.h"

namespace frruci::apply {

inline constexpr std::size_t kMaxUnwanted = 16;

/// What "show ip ospf" tells of what is in use.
void readOspf(const char *text, Surroundings &surroundings);

/// One daemon's part of a protocol.
class Part {
public:
    explicit Part(Target part) : target(part) {}
    Part(const Part &) = delete;
    Part &operator=(const Part &) = delete;

    const Target target;
    const char *holder = nullptr; ///< who was asked
    bool answered = false;
    Arena arena;
    Settings running{arena};
    Settings wanted{arena};
    Replay replay{target, wanted};
    Surroundings surroundings;
    Unwanted unwanted[kMaxUnwanted] = {};
    std::size_t unwantedCount = 0;
    Changes changes;

    /// Reads what the daemon has; without an answer it has nothing.
    void ask();
    /// After ask and the rehearsal.
    void compare();
    /// True when the router id in use is another one than the stored one, which full neighbours
    /// keep in use until the process is cleared.
    bool needsClear() const;
};

class Comparison {
public:
    explicit Comparison(const Protocol &of) : protocol(of) {}

    const Protocol &protocol;
    Part first{protocol.targets[0]};
    Part second{protocol.targets[1]};

    /// The parts that the protocol has.
    Part *parts[2] = {&first, &second};
    Switch stored = Switch::Unsaid;

    /// Asks the daemons, then reads the store: whoever stores before setting is never undone.
    /// Compares nothing when the store does not have the protocol on. False when the store could
    /// not be rehearsed.
    bool run();
    std::size_t changeCount() const;
    /// Prints lines that no daemon takes; how many.
    int reportImpossible() const;
};

} // namespace frruci::apply

#endif
