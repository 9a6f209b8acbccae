/* SPDX-License-Identifier: Apache-2.0 */
/* Shell commands whose outcome shows elsewhere. */
#ifndef FRRUCI_COMMON_SHELL_H
#define FRRUCI_COMMON_SHELL_H

#include "common/outside.h"

namespace frruci::common {

/// Runs a command through the shell. Its status is not looked at: what went wrong shows in the
/// answer file or in the next exchange with the daemon.
inline void runShell(const char *command) {
    (void)outside::run(command); // as said above
}

} // namespace frruci::common

#endif
