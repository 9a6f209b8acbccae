/* SPDX-License-Identifier: Apache-2.0 */
/* Sends the commands of a part's changes to its daemon. */
#ifndef FRRUCI_APPLY_SEND_H
#define FRRUCI_APPLY_SEND_H

#include "apply/comparison.h"

namespace frruci::apply {

/// Behind a summary.
inline constexpr const char *kClearedText = ", OSPF process cleared for its new router id";

struct Sent {
    int accepted = 0;
    int refused = 0;
    bool answered = true; ///< false when the daemon went away
    bool early = false;   ///< mgmtd did not know its daemon yet
    bool cleared = false; ///< the OSPF process, so that its new router id is used
};

/// One session. What is refused is said on standard error with the daemon's own text, and the rest
/// goes on.
Sent send(Part &part, bool showKeys);

/// How it went, from good to bad.
enum class Outcome : std::uint8_t {
    Same,    ///< nothing to send
    Off,     ///< the store has the protocol off
    Applied, ///<
    Refused, ///< a part of it
    Lost,    ///< a daemon went away
    NoStore, ///< the store cannot be replayed
};

/// Compares the protocol's store with its daemons and sends what differs; hears of each part that
/// something was sent to.
Outcome applyStored(const Protocol &protocol, bool showKeys,
                    void (*hear)(const Part &part, const Sent &sent, void *context), void *context);

/// Prints what send would send.
void printSteps(FILE *out, Part &part, bool showKeys);

} // namespace frruci::apply

#endif
