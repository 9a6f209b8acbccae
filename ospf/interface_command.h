/* SPDX-License-Identifier: Apache-2.0 */
/* The texts of ospfd's interface settings, which are addressed by name (ip_ospf_*) or by VLAN
 * (swIpOspf*). */
#ifndef FRRUCI_OSPF_INTERFACE_COMMAND_H
#define FRRUCI_OSPF_INTERFACE_COMMAND_H

#include "ospf/command.h"
#include "ospf/numbers.h"

namespace frruci::ospf {

/// The first ones have the numbers of the model's keys.
enum InterfaceSetting : uint8_t {
    kHello = kHelloKey,
    kDead = kDeadKey,
    kRetransmit = kRetransmitKey,
    kTransmit = kTransmitKey,
    kCost = kCostKey,
    kPriority = kPriorityKey,
    kNetworkType = kInterfaceKeys,
    kMtuIgnore,
    kPassive,
    kAuthNull,
    kAuthSimple,
    kAuthDigest,
    kAuthKey,
    kAuthMd5Key,
    kInterfaceSettings,
};

/// Writes the setting's command (set not 0) or its "no" form. number and text are its value, as far
/// as it has one; of the "no" forms only that of a digest key looks at its number, the key's id.
void composeInterface(CommandText &command, InterfaceSetting setting, uint32_t set,
                      int32_t number = 0, const char *text = "");

/// Writes the command of an authentication type: 0 null, 1 simple, 2 digest. Fixed by the
/// interface: any other type is an empty command.
void composeAuthentication(CommandText &command, uint32_t type, uint32_t set);

} // namespace frruci::ospf

#endif
