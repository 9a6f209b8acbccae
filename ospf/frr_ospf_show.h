/* SPDX-License-Identifier: Apache-2.0 */
/* What a handler uses of the display. */
#ifndef FRRUCI_OSPF_FRR_OSPF_SHOW_H
#define FRRUCI_OSPF_FRR_OSPF_SHOW_H

namespace frruci::ospf {

/// Brings the daemon's state into the store's interface sections, and replies.
void showInterfaces(int line = __builtin_LINE());

} // namespace frruci::ospf

#endif
