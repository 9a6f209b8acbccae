/* SPDX-License-Identifier: Apache-2.0 */
/* One call of a handler, with the host in the front-end's place at the other end of the pipe. */
#ifndef FRRUCI_HOST_CALL_H
#define FRRUCI_HOST_CALL_H

#include "host/handlers.h"

namespace frruci::host {

/// Calls the handler with exactly these words and prints its answer on standard output. What the
/// library itself prints goes to standard error. Ends the process with kNoAnswer when the handler
/// has not returned after the given seconds.
Status callHandler(const Handler &handler, int count, char **words, unsigned timeoutSeconds);

} // namespace frruci::host

#endif
