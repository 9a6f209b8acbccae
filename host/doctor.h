/* SPDX-License-Identifier: Apache-2.0 */
/* Looks for what keeps settings from working on this router. */
#ifndef FRRUCI_HOST_DOCTOR_H
#define FRRUCI_HOST_DOCTOR_H

#include "host/status.h"
#include "host/text.h"

namespace frruci::host {

enum class Level { kOk, kWarning, kFault };

/// One thing looked at.
struct Finding {
    Level level;
    const char *what;
    char *text; ///< what was found, and what to do about it
};

using Findings = List<Finding>;

[[gnu::format(printf, 4, 5)]] void add(Findings &findings, Level level, const char *what,
                                       const char *format, ...);

/// The daemons, their sockets and versions, and who else deals with them.
void examineDaemons(Findings &findings);

/// Programs, folders, files and settings of the router.
void examineRouter(Findings &findings);

const char *nameOf(Level level);

/// Everything that is looked at, for release.
void examine(Findings &findings);
void release(Findings &findings);

/// One line for each thing looked at. kAccepted without faults, else kNotUsable.
Status doctor(int count, char **words);

} // namespace frruci::host

#endif
