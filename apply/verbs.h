/* SPDX-License-Identifier: Apache-2.0 */
/* The program's verbs of this room. */
#ifndef FRRUCI_APPLY_VERBS_H
#define FRRUCI_APPLY_VERBS_H

#include <cstddef>

#include "host/status.h"

namespace frruci::apply {

/// Hears of a line as diff prints it: its sign, and its text as deep as it stands.
using HearLine = void (*)(const char *daemon, const char *line, void *context);

/// What differs from the store, of the protocols of these names or of all without any; how many
/// settings and daemons that is. The status of diff.
host::Status diffLines(int count, char **names, HearLine hear, void *context,
                       std::size_t &differences);

/// Applies the stores of these protocols, or of all. The status of apply; refusals.h has the rest.
host::Status applyStores(int count, char **names);

/// What differs between the store and the daemons: [ospf|rip|nhrp...]. kAccepted when nothing does,
/// kRefused when something does.
host::Status diffVerb(int count, char **words);

/// Sends what differs: [--dry-run] [ospf|rip|nhrp...]. kRefused when something was refused,
/// kNoAnswer when a daemon went away, kNotUsable when one cannot be started or the store not be
/// replayed.
host::Status applyVerb(int count, char **words);

} // namespace frruci::apply

#endif
