/* SPDX-License-Identifier: Apache-2.0 */
/* The handlers that the host knows, with their words and the pipe that each answers on. */
#ifndef FRRUCI_HOST_HANDLERS_H
#define FRRUCI_HOST_HANDLERS_H

#include <cstdio>

#include "host/answer.h"

namespace frruci::host {

struct Handler {
    const char *name;
    const char *words; ///< for people
    const char *pipe;  ///< below /tmp/tmp
    Ending ending;
    bool takesWords;
};

/// Null for a name that the host does not know.
const Handler *findHandler(const char *name);
void listHandlers(FILE *out);

} // namespace frruci::host

#endif
