/* SPDX-License-Identifier: Apache-2.0 */
/* What a daemon has: the lines of "show running-config" that are frruci's own. */
#ifndef FRRUCI_APPLY_RUNNING_H
#define FRRUCI_APPLY_RUNNING_H

#include "apply/settings.h"

namespace frruci::apply {

/// Adds the target's own lines of a configuration text. Call settle() after the last text.
void readRunning(Target target, const char *text, Settings &running);

/// The first number of "frr version 8.4.4"; 0 when the text has none.
int majorVersion(const char *text);

} // namespace frruci::apply

#endif
