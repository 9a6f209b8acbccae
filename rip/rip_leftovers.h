/* SPDX-License-Identifier: Apache-2.0 */
/* What mgmtd keeps of RIP when ripd has ended. */
#ifndef FRRUCI_RIP_RIP_LEFTOVERS_H
#define FRRUCI_RIP_RIP_LEFTOVERS_H

namespace frruci::rip {

/// Before ripd starts: takes away the settings that mgmtd would push into it, so that it comes up
/// empty as without mgmtd. Key chains stay: a chain is cleared before it is used, and may be
/// another protocol's.
void dropLeftovers();

} // namespace frruci::rip

#endif
