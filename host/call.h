/* SPDX-License-Identifier: Apache-2.0 */
/* One call of a handler, with the host in the front-end's place at the other end of the pipe. */
#ifndef FRRUCI_HOST_CALL_H
#define FRRUCI_HOST_CALL_H

#include "host/handlers.h"

namespace frruci::host {

/// Calls the handler with exactly these words, prints its answer on out and what went wrong on err.
/// The words fit the handler.
Status callHandler(const Handler &handler, int count, char **words);

/// Prints what the call would let leave the library, and lets nothing leave.
Status planHandler(const Handler &handler, int count, char **words);

} // namespace frruci::host

#endif
