/* SPDX-License-Identifier: Apache-2.0 */
/* The program's own input and outputs. Descriptors 0 to 2 lead nowhere, so that no daemon that a
 * request starts can keep somebody's terminal or pipe open, and what the library prints does not
 * mix with answers. */
#ifndef FRRUCI_HOST_STREAMS_H
#define FRRUCI_HOST_STREAMS_H

#include <cstdio>

#include "host/status.h"

namespace frruci::host {

extern FILE *in;
extern FILE *out;
extern FILE *err;

/// First thing in main; false when there are no descriptors to be had.
bool takeStreams();

/// "frruci: ", the message, and a line end on err.
[[gnu::format(printf, 1, 2)]] void complain(const char *format, ...);

/// The same, and the status of wrong usage.
[[gnu::format(printf, 1, 2)]] Status wrongUsage(const char *format, ...);

/// A file in memory, without a name, that no program inherits; null when there is no room.
FILE *scratchFile();

/// While it lives, what the library prints goes to a descriptor.
class LibraryPrints {
public:
    explicit LibraryPrints(int descriptor);
    ~LibraryPrints();
    LibraryPrints(const LibraryPrints &) = delete;
    LibraryPrints &operator=(const LibraryPrints &) = delete;

private:
    int nowhere_;
};

} // namespace frruci::host

#endif
