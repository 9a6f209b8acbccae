/* SPDX-License-Identifier: Apache-2.0 */
/* The replay of the store, without anything that leaves: what its commands would be. */
#ifndef FRRUCI_APPLY_REHEARSAL_H
#define FRRUCI_APPLY_REHEARSAL_H

#include "apply/protocols.h"

namespace frruci::apply {

/// What a rehearsal tells, in its order.
enum class Told : char {
    Session = 'S', ///< a session on the socket in text begins
    Command = 'C', ///< a command of it
    Absent = 'A',  ///< an option that is not stored: text is the replay's line for it in where
    Added = 'L',   ///< one more line in where
    Off = 'O',     ///< the store switches off what begins like text in where, of nhrpd or zebra
    End = 'E',     ///< all was told
};

struct Word {
    Told told;
    Target target; ///< of Added, Absent and Off
    const char *where;
    const char *text;
};

/// What the store says of a protocol.
enum class Switch { On, Off, Unsaid };

Switch storedSwitch(const Protocol &protocol);

/// Replays the protocol's store in a child process, when the store has the protocol on, and hands
/// on what the replay tells; texts live until the function returns. False when the child did not
/// come to its end.
bool rehearse(const Protocol &protocol, Switch &stored,
              void (*hear)(const Word &word, void *context), void *context);

} // namespace frruci::apply

#endif
