/* SPDX-License-Identifier: Apache-2.0 */
/* The vty sockets of the daemons that NHRP settings go to. */
#ifndef FRRUCI_NHRP_SOCKETS_H
#define FRRUCI_NHRP_SOCKETS_H

namespace frruci::nhrp {

inline constexpr const char *kNhrpdSocket = "/var/nhrpd.vty";
inline constexpr const char *kZebraSocket = "/var/zebra.vty";

} // namespace frruci::nhrp

#endif
