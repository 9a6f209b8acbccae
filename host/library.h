/* SPDX-License-Identifier: Apache-2.0 */
/* The library, loaded at run time as a router's front-end host loads it. */
#ifndef FRRUCI_HOST_LIBRARY_H
#define FRRUCI_HOST_LIBRARY_H

#include "frruci/observe.h"
#include "host/timeout.h"

namespace frruci::host {

/// Loads libfrruci.so (or the file named by FRRUCI_LIBRARY); says why on err when it fails.
bool loadLibrary();

/// The address of an exported function, or null with a message when the library lacks it.
void *find(const char *name);

template <typename Function> Function *find(const char *name) {
    return reinterpret_cast<Function *>(find(name));
}

/// Loads the library and readies the registries and models that handlers rely on: once a process,
/// nothing is sent or logged. A protocol whose daemon answers counts as switched on.
bool prepare();

/// Called at every event of the library, for who shows that something goes on; null for none.
extern void (*onEvent)();

/// Commands and pauses of the program's own, while a Watched lives: they are recorded, and happen
/// unless it rehearses.
void runShell(const char *command);
void pauseSeconds(unsigned seconds);

/// While it lives, everything that leaves the library is recorded (see traffic.h), and the program
/// gives up when there is no progress. In a rehearsal nothing leaves.
class Watched {
public:
    enum How { kEarnest, kRehearsal };
    explicit Watched(How how);
    ~Watched();
    Watched(const Watched &) = delete;
    Watched &operator=(const Watched &) = delete;

private:
    Waiting waiting_;
};

} // namespace frruci::host

#endif
