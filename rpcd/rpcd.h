/* SPDX-License-Identifier: Apache-2.0 */
/* The program as a plugin of rpcd, which makes the ubus object frruci of it. */
#ifndef FRRUCI_RPCD_RPCD_H
#define FRRUCI_RPCD_RPCD_H

#include "host/status.h"

namespace frruci::rpcd {

/// "list" prints the methods with their arguments; "call METHOD" takes an object of arguments from
/// standard input and prints an object. rpcd answers "invalid argument" for anything that is no
/// object, whatever the exit status: that is how a request is refused, with kWrongUsage. Without a
/// lock nothing is printed.
host::Status rpcdVerb(int count, char **words);

} // namespace frruci::rpcd

#endif
