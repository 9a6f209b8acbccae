/* SPDX-License-Identifier: Apache-2.0 */
/* The help, and the manual page, from the tables. */
#ifndef FRRUCI_HOST_HELP_H
#define FRRUCI_HOST_HELP_H

#include <cstdio>

#include "host/status.h"

namespace frruci::host {

/// "help", "help VERB", "help HANDLER", and "help --man" for the manual page.
Status help(int count, char **words);

void printUsage(FILE *to);

} // namespace frruci::host

#endif
