/* SPDX-License-Identifier: Apache-2.0 */
/* The vty sockets of the daemons. */
#ifndef FRRUCI_VTY_DAEMONS_H
#define FRRUCI_VTY_DAEMONS_H

namespace frruci::vty {

inline constexpr const char *kZebraSocket = "/var/zebra.vty";
inline constexpr const char *kOspfdSocket = "/var/ospfd.vty";
inline constexpr const char *kRipdSocket = "/var/ripd.vty";
inline constexpr const char *kNhrpdSocket = "/var/nhrpd.vty";
inline constexpr const char *kMgmtdSocket = "/var/mgmtd.vty"; // since FRRouting 10

} // namespace frruci::vty

#endif
