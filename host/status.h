/* SPDX-License-Identifier: Apache-2.0 */
/* What the program tells by its exit status. */
#ifndef FRRUCI_HOST_STATUS_H
#define FRRUCI_HOST_STATUS_H

namespace frruci::host {

/// The greater one is the worse one, and the one that a run of several requests ends with.
enum Status : int {
    kAccepted = 0,
    kRefused = 1,
    kWrongUsage = 2,
    kNoAnswer = 3,
    kNotUsable = 4,
};

inline Status worse(Status a, Status b) {
    return a > b ? a : b;
}

} // namespace frruci::host

#endif
