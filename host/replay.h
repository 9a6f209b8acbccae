/* SPDX-License-Identifier: Apache-2.0 */
/* Replays of what the store holds into the daemons. */
#ifndef FRRUCI_HOST_REPLAY_H
#define FRRUCI_HOST_REPLAY_H

#include <cstddef>

#include "host/judge.h"

namespace frruci::host {

struct Replay {
    const char *protocol; ///< "ospf", "rip", "nhrp"
    Scene scene;
    bool (*run)(); ///< false when the library lacks what it takes
};

extern const Replay kReplays[];
extern const std::size_t kReplayCount;

/// Null for a protocol that is none.
const Replay *findReplay(const char *protocol);

/// Replays one protocol and tells how it went.
Status recover(const Replay &replay);

/// Prints what the replay would let leave the library, and lets nothing leave.
Status planRecovery(const Replay &replay);

/// Replays everything; how each went comes in one answer.
Status recoverAll();

/// The replay of /etc/config/nhrp.
bool replayNhrp();

} // namespace frruci::host

#endif
