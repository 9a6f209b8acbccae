/* SPDX-License-Identifier: Apache-2.0 */
/* One call of a handler, with the host in the front-end's place at the other end of the pipe. */
#ifndef FRRUCI_HOST_CALL_H
#define FRRUCI_HOST_CALL_H

#include "host/handlers.h"
#include "host/judge.h"

namespace frruci::host {

/// What came of a call.
struct Called {
    const Handler &handler;
    int count;
    char **words;
    const Text &reply;
    const Judgement &judgement;
    Status status;
};

/// Calls the handler with exactly these words, which fit it, and has hear tell what came of it;
/// what is wrong beside the daemons' answers is on err.
Status callHandler(const Handler &handler, int count, char **words,
                   void (*hear)(const Called &called, void *context), void *context);

/// Prints the answer on out and what went wrong on err.
void printCalled(const Called &called, void *context);

/// Prints what the call would let leave the library, and lets nothing leave.
Status planHandler(const Handler &handler, int count, char **words);

} // namespace frruci::host

#endif
