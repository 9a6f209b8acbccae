/* SPDX-License-Identifier: Apache-2.0 */
/* Names of interfaces, as the library reads them. */
#ifndef FRRUCI_HOST_INTERFACES_H
#define FRRUCI_HOST_INTERFACES_H

namespace frruci::host {

/// "eth0.2": a VLAN of a port, which is how the library tells LAN from WAN.
bool isVlanOfPort(const char *name);

} // namespace frruci::host

#endif
