/* SPDX-License-Identifier: Apache-2.0 */
/* Stays, and keeps the daemons as the store says. */
#ifndef FRRUCI_APPLY_WATCH_H
#define FRRUCI_APPLY_WATCH_H

#include "host/status.h"

namespace frruci::apply {

/// No words. Applies a protocol when a daemon of it was started anew and on SIGHUP, and starts a
/// daemon that stays gone, unless watchfrr does that. Says in the system's log what it did. Ends on
/// SIGTERM and SIGINT.
host::Status watchVerb(int count, char **words);

} // namespace frruci::apply

#endif
