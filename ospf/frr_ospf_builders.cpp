// SPDX-License-Identifier: Apache-2.0
// The interface-command builders.

#include <iterator>

#include "ospf/frr_ospf.h"
#include "ospf/interface_command.h"

namespace {

using namespace frruci::ospf;

/// By the front-end's network-type code. The model and the store number the types differently.
constexpr const char *kNetworkTypeWords[] = {"broadcast", "point-to-point", "point-to-multipoint"};

struct Target {
    uint16_t vrf;
    const char *name;
    int32_t wan;
    int32_t enable;
};

uint32_t sendTo(const Target &target, const CommandText &command) {
    return doVtyOspfConfigInterface(target.vrf, orEmpty(target.name),
                                    static_cast<uint32_t>(target.wan), command);
}

uint32_t sendSetting(InterfaceSetting setting, const Target &target, int32_t number = 0,
                     const char *text = "") {
    CommandText command;
    composeInterface(command, setting, static_cast<uint32_t>(target.enable), number, text);
    return sendTo(target, command);
}

} // namespace

uint32_t ip_ospf_cost(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable, int32_t cost) {
    return sendSetting(kCost, {vrf, ifname, wan, enable}, cost);
}

uint32_t ip_ospf_retransmit(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                            int32_t seconds) {
    return sendSetting(kRetransmit, {vrf, ifname, wan, enable}, seconds);
}

uint32_t ip_ospf_transmit(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          int32_t seconds) {
    return sendSetting(kTransmit, {vrf, ifname, wan, enable}, seconds);
}

uint32_t ip_ospf_priority(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          int32_t priority) {
    return sendSetting(kPriority, {vrf, ifname, wan, enable}, priority);
}

uint32_t ip_ospf_hello(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                       int32_t seconds) {
    return sendSetting(kHello, {vrf, ifname, wan, enable}, seconds);
}

uint32_t ip_ospf_dead(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                      int32_t seconds) {
    return sendSetting(kDead, {vrf, ifname, wan, enable}, seconds);
}

uint32_t ip_ospf_network_type(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                              uint32_t code) {
    // Fixed by the interface: a code is refused for the "no" form too, which has no code in it.
    if (code >= std::size(kNetworkTypeWords)) {
        return kNoSuchCode;
    }
    return sendSetting(kNetworkType, {vrf, ifname, wan, enable}, 0, kNetworkTypeWords[code]);
}

uint32_t ip_ospf_mtu_ignore(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable) {
    return sendSetting(kMtuIgnore, {vrf, ifname, wan, enable});
}

uint32_t ip_ospf_passive(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable) {
    return sendSetting(kPassive, {vrf, ifname, wan, enable});
}

uint32_t ip_ospf_auth(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable, int32_t type) {
    CommandText command;
    composeAuthentication(command, static_cast<uint32_t>(type), static_cast<uint32_t>(enable));
    return sendTo({vrf, ifname, wan, enable}, command);
}

uint32_t ip_ospf_auth_key(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          const char *password) {
    return sendSetting(kAuthKey, {vrf, ifname, wan, enable}, 0, password);
}

uint32_t ip_ospf_auth_md5key(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                             int32_t key_id, const char *key) {
    return sendSetting(kAuthMd5Key, {vrf, ifname, wan, enable}, key_id, key);
}
