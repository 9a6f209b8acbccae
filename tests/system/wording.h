/* SPDX-License-Identifier: Apache-2.0 */
/* How the versions of the daemons write the same setting in their running configuration. */
#ifndef FRRUCI_TESTS_SYSTEM_WORDING_H
#define FRRUCI_TESTS_SYSTEM_WORDING_H

#include <cstring>

#include "tests/support/real_daemons.h"

namespace routers {

struct Wording {
    const char *v8_4;
    const char *v10_3;
    const char *v10_7;
};

inline const char *inVersion(const Wording &wording) {
    if (frrVersion() >= 1007) {
        return wording.v10_7;
    }
    return frrVersion() >= 1000 ? wording.v10_3 : wording.v8_4;
}

/// The network type that a broadcast interface has by itself, once it was named.
inline constexpr Wording kOwnNetworkType = {"", " ip ospf network broadcast\n",
                                            " ip ospf network broadcast\n"};

// Aligned columns would hide the spaces at the ends.
// clang-format off
inline constexpr Wording kWordings[] = {
    {" ip ospf authentication",
     " ip ospf authentication ",
     " ip ospf authentication"},
    {" area 0.0.0.7 nssa ",
     " area 0.0.0.7 nssa",
     " area 0.0.0.7 nssa"},
    {" area 0.0.0.1 virtual-link 10.0.0.2 authentication",
     " area 0.0.0.1 virtual-link 10.0.0.2 authentication ",
     " area 0.0.0.1 virtual-link 10.0.0.2 authentication"},
    {" area 0.0.0.1 virtual-link 10.0.0.2 hello-interval 11"
     " retransmit-interval 5 transmit-delay 1 dead-interval 40",
     " area 0.0.0.1 virtual-link 10.0.0.2 hello-interval 11"
     " retransmit-interval 5 retransmit-window 50 transmit-delay 1 dead-interval 40",
     " area 0.0.0.1 virtual-link 10.0.0.2 hello-interval 11"
     " retransmit-interval 5 retransmit-window 50 transmit-delay 1 dead-interval 40"},
};
// clang-format on

/// A line that is known as 8.4 writes it, as these daemons write it.
inline const char *asWritten(const char *line) {
    for (const Wording &wording : kWordings) {
        if (strcmp(wording.v8_4, line) == 0) {
            return inVersion(wording);
        }
    }
    return line;
}

} // namespace routers

#endif
