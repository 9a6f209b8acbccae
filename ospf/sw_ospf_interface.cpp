// SPDX-License-Identifier: Apache-2.0
// Interface commands: the settings of one VLAN interface.

#include "common/text.h"
#include "ospf/command.h"
#include "ospf/sw_ospf.h"

namespace {

using frruci::common::format;
using namespace frruci::ospf;

constexpr uint32_t kDone = 0;

constexpr OspfInfParaKey kHelloInterval = 0;
constexpr OspfInfParaKey kDeadInterval = 1;
constexpr OspfInfParaKey kRetransmitInterval = 2;
constexpr OspfInfParaKey kTransmitDelay = 3;
constexpr OspfInfParaKey kCost = 4;
constexpr OspfInfParaKey kPriority = 5;

struct InterfaceSetting {
    OspfInfParaKey key;
    const char *set;
    const char *unset;
};

constexpr InterfaceSetting kInterfaceSettings[] = {
    {kHelloInterval,      "ip ospf hello-interval %d",      "no ip ospf hello-interval"     },
    {kDeadInterval,       "ip ospf dead-interval %d",       "no ip ospf dead-interval"      },
    {kRetransmitInterval, "ip ospf retransmit-interval %d", "no ip ospf retransmit-interval"},
    {kTransmitDelay,      "ip ospf transmit-delay %d",      "no ip ospf transmit-delay"     },
    {kCost,               "ip ospf cost %d",                "no ip ospf cost"               },
    {kPriority,           "ip ospf priority %d",            "no ip ospf priority"           },
};
static_assert(isInKeyOrder(kInterfaceSettings, kHelloInterval));

/// By OspfNetworkType, the model's own numbers: front-end and store number the types differently.
/// Fixed by the interface: type 0 has a label too, which the daemon refuses.
constexpr const char *kNetworkLabels[] = {"Not Configure", "broadcast", "non-broadcast",
                                          "point-to-multipoint", "point-to-point"};
constexpr uint32_t kNetworkTypes = sizeof kNetworkLabels / sizeof *kNetworkLabels;

/// By OspfAuthType; any other type is an empty command. A virtual link's types differ.
constexpr const char *kAuthTexts[] = {"ip ospf authentication null", "ip ospf authentication",
                                      "ip ospf authentication message-digest"};
constexpr uint32_t kAuthTypes = sizeof kAuthTexts / sizeof *kAuthTexts;

uint32_t apply(OspfInfParaKey key, uint32_t vlanId, uint32_t set, int32_t value) {
    const InterfaceSetting &setting = kInterfaceSettings[key];
    CommandText command;
    format(command, set != 0 ? setting.set : setting.unset, value);
    const uint32_t result = vtyOspfConfigInterface(0, vlanId, command);
    return result != kDone ? result : ucIpOpsfInfSetParaByKey(vlanId, set, &value, key);
}

} // namespace

uint32_t swIpOspfHelloInterval(uint32_t /*unused*/, uint32_t vlanId, uint32_t set,
                               int32_t seconds) {
    return apply(kHelloInterval, vlanId, set, seconds);
}

uint32_t swIpOspfDeadInterval(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, int32_t seconds) {
    return apply(kDeadInterval, vlanId, set, seconds);
}

uint32_t swIpOspfRetransmitInterval(uint32_t /*unused*/, uint32_t vlanId, uint32_t set,
                                    int32_t seconds) {
    return apply(kRetransmitInterval, vlanId, set, seconds);
}

uint32_t swIpOspfTransmitDelay(uint32_t /*unused*/, uint32_t vlanId, uint32_t set,
                               int32_t seconds) {
    return apply(kTransmitDelay, vlanId, set, seconds);
}

uint32_t swIpOpsfCost(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, int32_t cost) {
    return apply(kCost, vlanId, set, cost);
}

uint32_t swIpOspfPriority(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, int32_t priority) {
    return apply(kPriority, vlanId, set, priority);
}

uint32_t swIpOspfMtuIgnore(uint32_t /*unused*/, uint32_t vlanId, uint32_t set) {
    const char *command = set != 0 ? "ip ospf mtu-ignore" : "no ip ospf mtu-ignore";
    const uint32_t result = vtyOspfConfigInterface(0, vlanId, command);
    return result != kDone ? result : ucIpOspfMtuIgnore(vlanId, set);
}

uint32_t swIpOspfNetwork(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, uint32_t networkType) {
    CommandText command;
    if (set != 0) {
        format(command, "ip ospf network %s",
               networkType < kNetworkTypes ? kNetworkLabels[networkType] : "");
    } else {
        format(command, "no ip ospf network");
    }
    const uint32_t result = vtyOspfConfigInterface(0, vlanId, command);
    return result != kDone ? result : ucIpOspfNetwork(vlanId, set, networkType);
}

uint32_t swIpOspfAuth(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, uint32_t authType) {
    CommandText command = {};
    if (authType < kAuthTypes) {
        format(command, "%s%s", set != 0 ? "" : "no ", kAuthTexts[authType]);
    }
    const uint32_t result = vtyOspfConfigInterface(0, vlanId, command);
    return result != kDone ? result : ucIpOspfAuth(vlanId, set, authType);
}

uint32_t swIpOspfAuthKey(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, const char *key) {
    CommandText command;
    if (set != 0) {
        format(command, "ip ospf authentication-key %s", orEmpty(key));
    } else {
        format(command, "no ip ospf authentication-key");
    }
    const uint32_t result = vtyOspfConfigInterface(0, vlanId, command);
    return result != kDone ? result : ucIpOspfAuthKey(vlanId, set, key);
}

uint32_t swIpOspfAuthM5dKey(uint32_t /*unused*/, uint32_t vlanId, uint32_t set, uint32_t keyId,
                            const char *key) {
    CommandText command;
    const auto id = static_cast<int32_t>(keyId);
    if (set != 0) {
        format(command, "ip ospf message-digest-key %d md5 %s", id, orEmpty(key));
    } else {
        format(command, "no ip ospf message-digest-key %d", id);
    }
    const uint32_t result = vtyOspfConfigInterface(0, vlanId, command);
    return result != kDone ? result : ucIpOspfAuthM5dKey(vlanId, set, keyId, key);
}
