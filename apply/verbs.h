/* SPDX-License-Identifier: Apache-2.0 */
/* The program's verbs of this room. */
#ifndef FRRUCI_APPLY_VERBS_H
#define FRRUCI_APPLY_VERBS_H

#include "host/status.h"

namespace frruci::apply {

/// What differs between the store and the daemons: [ospf|rip|nhrp...]. kAccepted when nothing does,
/// kRefused when something does.
host::Status diffVerb(int count, char **words);

/// Sends what differs: [--dry-run] [ospf|rip|nhrp...]. kRefused when something was refused,
/// kNoAnswer when a daemon went away, kNotUsable when one cannot be started or the store not be
/// replayed.
host::Status applyVerb(int count, char **words);

} // namespace frruci::apply

#endif
