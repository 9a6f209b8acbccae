// SPDX-License-Identifier: Apache-2.0
// Interface commands: the settings of one VLAN interface.

#include "ospf/interface_command.h"
#include "ospf/sw_ospf.h"

namespace {

using namespace frruci::ospf;

/// By OspfNetworkType, the model's own numbers: front-end and store number the types differently.
/// Fixed by the interface: type 0 has a label too, which the daemon refuses.
constexpr const char *kNetworkLabels[] = {"Not Configure", "broadcast", "non-broadcast",
                                          "point-to-multipoint", "point-to-point"};

/// Sends the command in the context of the VLAN's interface, and records it once it was accepted.
template <typename Record>
uint32_t sendInterface(uint32_t vlanId, const CommandText &command, Record record) {
    return onceAccepted(vtyOspfConfigInterface(0, vlanId, command), record);
}

uint32_t applyKey(InterfaceKey key, uint32_t vlanId, uint32_t set, int32_t value) {
    CommandText command;
    composeInterface(command, static_cast<InterfaceSetting>(key), set, value);
    return sendInterface(vlanId, command,
                         [&] { return ucIpOpsfInfSetParaByKey(vlanId, set, &value, key); });
}

} // namespace

uint32_t swIpOspfHelloInterval(uint32_t /*unused*/, uint32_t vlanId, uint32_t set,
                               int32_t seconds) {
    return applyKey(kHelloKey, vlanId, set, seconds);
}

uint32_t swIpOspfDeadInterval(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, int32_t seconds) {
    return applyKey(kDeadKey, vlanId, set, seconds);
}

uint32_t swIpOspfRetransmitInterval(uint32_t /*unused*/, uint32_t vlanId, uint32_t set,
                                    int32_t seconds) {
    return applyKey(kRetransmitKey, vlanId, set, seconds);
}

uint32_t swIpOspfTransmitDelay(uint32_t /*unused*/, uint32_t vlanId, uint32_t set,
                               int32_t seconds) {
    return applyKey(kTransmitKey, vlanId, set, seconds);
}

uint32_t swIpOpsfCost(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, int32_t cost) {
    return applyKey(kCostKey, vlanId, set, cost);
}

uint32_t swIpOspfPriority(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, int32_t priority) {
    return applyKey(kPriorityKey, vlanId, set, priority);
}

uint32_t swIpOspfMtuIgnore(uint32_t /*unused*/, uint32_t vlanId, uint32_t set) {
    CommandText command;
    composeInterface(command, kMtuIgnore, set);
    return sendInterface(vlanId, command, [=] { return ucIpOspfMtuIgnore(vlanId, set); });
}

uint32_t swIpOspfNetwork(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, uint32_t networkType) {
    CommandText command;
    composeInterface(command, kNetworkType, set, 0, textAt(kNetworkLabels, networkType));
    return sendInterface(vlanId, command,
                         [=] { return ucIpOspfNetwork(vlanId, set, networkType); });
}

uint32_t swIpOspfAuth(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, uint32_t authType) {
    CommandText command;
    composeAuthentication(command, authType, set);
    return sendInterface(vlanId, command, [=] { return ucIpOspfAuth(vlanId, set, authType); });
}

uint32_t swIpOspfAuthKey(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, const char *key) {
    CommandText command;
    composeInterface(command, kAuthKey, set, 0, key);
    return sendInterface(vlanId, command, [=] { return ucIpOspfAuthKey(vlanId, set, key); });
}

uint32_t swIpOspfAuthM5dKey(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, uint32_t keyId,
                            const char *key) {
    CommandText command;
    composeInterface(command, kAuthMd5Key, set, static_cast<int32_t>(keyId), key);
    return sendInterface(vlanId, command,
                         [=] { return ucIpOspfAuthM5dKey(vlanId, set, keyId, key); });
}
