/* SPDX-License-Identifier: Apache-2.0 */
/* The protocols that frruci keeps the same, each with its store and its daemons. */
#ifndef FRRUCI_APPLY_PROTOCOLS_H
#define FRRUCI_APPLY_PROTOCOLS_H

#include <span>

#include "apply/kinds.h"

namespace frruci::apply {

struct Protocol {
    const char *name;
    const char *package; ///< of the store
    const char *daemon;  ///< that stands or falls with the protocol
    Target targets[2];
    int targetCount;
};

std::span<const Protocol> protocols();

/// Null for a name that is none.
const Protocol *findProtocol(const char *name);

/// The daemon of this name answers for the target when mgmtd does not.
const char *daemonOf(Target target);

/// Who holds the target's configuration now: its daemon, or mgmtd where both are there.
const char *holderOf(Target target);

} // namespace frruci::apply

#endif
