/* SPDX-License-Identifier: Apache-2.0 */
/* How the commands of this room reach ripd. */
#ifndef FRRUCI_RIP_VTY_RIP_H
#define FRRUCI_RIP_VTY_RIP_H

#include <cstdint>

#include "common/dlist.h"

namespace frruci::rip {

inline constexpr const char *kInstance = "default"; // the one that all handlers mean

inline constexpr const char *kInstanceView = "view_rip";
inline constexpr const char *kConfigureView = "configure_view";

/// Sends a command inside an instance.
/// Result: that of swRipAutoRun.
uint32_t sendToInstance(const char *vrf, const char *command, uint32_t side);

/// Sends a command in the context of a view, whose parameters are used up.
/// Result: that of frrVtyAutoRun as an unsigned number.
uint32_t sendInView(const char *view, const char *command, dlist **params = nullptr);

} // namespace frruci::rip

#endif
