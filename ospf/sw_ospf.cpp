// SPDX-License-Identifier: Apache-2.0
// Process commands: what concerns the OSPF router as a whole.

#include "ospf/sw_ospf.h"

#include <cstdlib>
#include <ctime>
#include <iterator>

#include "common/address.h"
#include "common/front_end.h"
#include "common/table.h"
#include "common/text.h"
#include "ospf/command.h"
#include "ospf/numbers.h"
#include "ospf/uc_ospf_defaults.h"
#include "vty/manager.h"

namespace {

using frruci::common::format;
using namespace frruci::ospf;

constexpr uint32_t kKindUp = 1;
constexpr uint32_t kVlanIdMask = 0xffff;

/// A setting of the router, with at most one number.
struct RouterSetting {
    RouterKey key;
    const char *words;
    const char *number;   ///< follows them when set
    const char *unsetEnd; ///< follows "no" and the words
};

// Fixed by the interface: the distance is unset with a text of another form. ospfd accepts it and
// keeps its distance, so that the model's 110 is no longer the daemon's.
constexpr RouterSetting kRouterSettings[] = {
    {kGracefulRestartKey,    "graceful-restart",              "",    ""     },
    {kReferenceBandwidthKey, "auto-cost reference-bandwidth", " %d", ""     },
    {kRfc1583Key,            "compatible rfc1583",            "",    ""     },
    {kDefaultMetricKey,      "default-metric",                " %d", ""     },
    {kDistanceKey,           "distance",                      " %d", " ospf"},
    {kPassiveDefaultKey,     "passive-interface default",     "",    ""     },
    {kMaximumPathsKey,       "maximum-paths",                 " %d", ""     },
};
static_assert(frruci::common::isInOrder<&RouterSetting::key>(kRouterSettings, kGracefulRestartKey));

/// One row's setting, told to and recorded for one instance after the other.
uint32_t applySetting(RouterKey key, uint32_t set, int32_t value = 0) {
    const RouterSetting &setting = kRouterSettings[key - kGracefulRestartKey];
    CommandText command;
    format(command, "%s%s", set != 0 ? "" : "no ", setting.words);
    append(command, set != 0 ? setting.number : setting.unsetEnd, value);
    return forBoth([&](const Instance &instance) {
        return onceAccepted(vtyOspfConfigOspf(0, command, instance.selector), [&] {
            return ucIpOpsfBasicSetParaByKey(instance.processId, set, &value, key);
        });
    });
}

uint32_t applyRouterId(const Instance &instance, uint32_t set, const char *routerId) {
    CommandText command;
    if (set != 0) {
        format(command, "ospf router-id %s", orEmpty(routerId));
    } else {
        format(command, "no ospf router-id");
    }
    uint32_t result = vtyOspfConfigOspf(0, command, instance.selector);
    if (result == kSuccess) {
        char reply[frruci::vty::kReplyBytes] = {};
        result = vtyOspfShowOspf(0, "clear ip ospf process", reply, instance.selector);
    }
    return onceAccepted(result, [&] {
        return ucIpOpsfBasicSetParaByKey(instance.processId, set, routerId, kRouterIdKey);
    });
}

/// Fixed by the interface: seeds the host's random numbers and draws one. The address drawn is not
/// used.
void drawRouterId() {
    srand(static_cast<unsigned>(time(nullptr)));
    const uint32_t drawn = static_cast<uint32_t>(rand()) % 2147483647U + 1;
    char address[16];
    format(address, "%d.%d.%d.%d", static_cast<uint8_t>(drawn >> 24),
           static_cast<uint8_t>(drawn >> 16), static_cast<uint8_t>(drawn >> 8),
           static_cast<uint8_t>(drawn));
}

/// The default route of a set or unset "default-information originate".
struct DefaultRoute {
    bool set;
    bool always;
    bool hasMetric;
    bool hasMetricType;
    int32_t metric;
    int32_t metricType;
};

void storeRoute(OspfProcessCfg &record, const DefaultRoute &route) {
    record.defaultRouteAdvertise = route.set ? 1 : 0;
    if (!route.set) {
        record.always = kProcessDefaults.always;
        record.originateMetric = kProcessDefaults.originateMetric;
        record.metricType = kProcessDefaults.metricType;
        return;
    }
    if (route.always) {
        record.always = 1; // Fixed by the interface: a set never clears it.
    }
    if (route.hasMetric) {
        record.originateMetric = static_cast<uint32_t>(route.metric);
    }
    if (route.hasMetricType) {
        record.metricType = static_cast<OspfMetricType>(route.metricType);
    }
}

void composeRoute(CommandText &command, const DefaultRoute &route) {
    if (!route.set) {
        format(command, "no default-information originate");
        return;
    }
    format(command, "default-information originate ");
    if (route.always) {
        append(command, "always ");
    }
    if (route.hasMetric) {
        append(command, "metric %d ", route.metric);
    }
    if (route.hasMetricType) {
        append(command, "metric-type %d", route.metricType);
    }
}

uint32_t recordRoute(uint32_t slot, const DefaultRoute &route) {
    OspfProcessCfg record;
    const uint32_t result = ucOspfGetCfg(slot, &record);
    if (result != kSuccess) {
        return result;
    }
    storeRoute(record, route);
    return ucOspfSetCfg(slot, &record);
}

/// By OspfRedistSource. Source 0 has no word: its command is sent bare.
constexpr const char *kSourceWords[] = {"", "connect ", "ospf %d ", "rip ", "static "};

uint32_t recordNetwork(uint32_t slot, uint32_t set, const char *address, const char *mask,
                       uint32_t areaId) {
    OspfNetworkCfg record = {
        .address = sw_ospf_inet_aton(address), .mask = sw_ospf_inet_aton(mask), .areaId = areaId};
    const uint64_t key = wordPair(record.address, record.mask);
    if (set == 0) {
        const uint32_t result = ucOspfNetworkDelete(slot, key);
        return result == kFailed ? kSuccess : result; // there was none
    }
    OspfNetworkCfg held;
    if (ucOspfNetworkGetCfg(slot, key, &held) == kSuccess) {
        held.areaId = areaId;
        return ucOspfNetworkSetCfg(slot, key, &held);
    }
    return ucOspfNetworkInsert(slot, &record);
}

} // namespace

uint32_t swOspfInit(void) {
    return ucOspfInit();
}

uint32_t swOspfHasProcessId(uint16_t processId) {
    return ucOspfHasProcessId(processId);
}

uint32_t swOspfGetCfg(uint32_t slot, OspfProcessCfg *out) {
    return ucOspfGetCfg(slot, out);
}

uint32_t swOspfGetInEntry(OspfInterfaceEntry *out) {
    return ucOspfGetInEntry(out);
}

uint32_t swOspfProcessIsEnable(uint32_t slot) {
    return ucOspfProcessIsEnable(slot);
}

uint32_t swOspfProcessCreateById(uint16_t /*processId*/, uint32_t selector) {
    (void)frruci::vty::startDaemon(selector != 0 ? "ospfd -d"
                                                 : "vnete ospfd -d -i /var/ospfdv.pid -N vtyv");
    return kSuccess; // Fixed by the interface: whatever the shell says.
}

uint32_t swOspfEnableProcess(uint16_t processId, uint32_t selector) {
    if (swOspfProcessCreateById(processId, selector) != kSuccess ||
        ucOspfEnableProcess(processId) != kSuccess) {
        return kNoFreeSlot;
    }
    return kSuccess;
}

uint32_t swOspfDisableProcess(uint16_t processId) {
    CommandText command;
    format(command, "no router ospf %d", processId);
    return onceAccepted(vtyOspfConfigOspf(0, command, 0),
                        [processId] { return inSlotOf(processId, ucOspfDefaultProcessByNum); });
}

uint32_t swOspfGetVlanIdByUp(const OspfVlanRecord * /*record*/) {
    return 0;
}

uint32_t swOspfGetVlanIdByInf(uint32_t kind, const OspfVlanRecord *record, uint32_t *vlanId) {
    if (vlanId == nullptr) {
        return 0;
    }
    if (kind == kKindUp) {
        *vlanId = swOspfGetVlanIdByUp(record) & kVlanIdMask;
    }
    return *vlanId;
}

uint32_t swOspfRouterId(uint32_t /*unused*/, uint32_t set, const char *routerId) {
    return onceAccepted(applyRouterId(kWan, set, routerId), [=] {
        drawRouterId();
        return applyRouterId(kLan, set, routerId);
    });
}

uint32_t swOspfGracefulRestart(uint32_t /*unused*/, uint32_t set) {
    return applySetting(kGracefulRestartKey, set);
}

uint32_t swOspfRfc1583Compa(uint32_t /*unused*/, uint32_t set) {
    return applySetting(kRfc1583Key, set);
}

uint32_t swOspfDefaultMetric(uint32_t /*unused*/, uint32_t set, int32_t metric) {
    return applySetting(kDefaultMetricKey, set, metric);
}

uint32_t swOspfdistance(uint32_t /*unused*/, uint32_t set, int32_t distance) {
    return applySetting(kDistanceKey, set, distance);
}

uint32_t swOspfMaxPaths(uint32_t /*unused*/, uint32_t set, int32_t paths) {
    return applySetting(kMaximumPathsKey, set, paths);
}

uint32_t swOspfAutoCostRef(uint32_t /*unused*/, uint32_t set, int32_t bandwidth) {
    return applySetting(kReferenceBandwidthKey, set, bandwidth);
}

uint32_t swOspfPassiveInterface(uint32_t /*unused*/, uint32_t set) {
    return applySetting(kPassiveDefaultKey, set);
}

uint32_t swOspfTimerThrottleSpf(uint32_t /*unused*/, uint32_t set, int32_t delay,
                                int32_t initialHold, int32_t maximumHold) {
    CommandText command;
    if (set != 0) {
        format(command, "timers throttle spf %d %d %d", delay, initialHold, maximumHold);
    } else {
        format(command, "no timers throttle spf");
    }
    const uint16_t timers[] = {static_cast<uint16_t>(delay), static_cast<uint16_t>(initialHold),
                               static_cast<uint16_t>(maximumHold)};
    return onceAccepted(sendToBoth(command), [&] {
        return forBoth([&](const Instance &instance) {
            return ucIpOpsfBasicSetParaByKey(instance.processId, set, timers, kSpfTimersKey);
        });
    });
}

uint32_t swOspfOrignate(uint32_t /*unused*/, uint32_t always, int32_t metric, uint32_t hasMetric,
                        int32_t metricType, uint32_t hasMetricType, uint32_t set) {
    const DefaultRoute route = {.set = set != 0,
                                .always = always != 0,
                                .hasMetric = hasMetric != 0,
                                .hasMetricType = hasMetricType != 0,
                                .metric = metric,
                                .metricType = metricType};
    CommandText command;
    composeRoute(command, route);
    return onceAccepted(sendToBoth(command), [&] {
        return inBothSlots([&](uint32_t slot) { return recordRoute(slot, route); });
    });
}

uint32_t swOspfNetwork(uint32_t /*unused*/, const char *address, const char *mask, uint32_t areaId,
                       uint32_t set, uint32_t selector) {
    const int32_t length = mask_to_masklen(sw_ospf_inet_aton(mask));
    CommandText command;
    format(command, "%snetwork %s/%d area %u", set != 0 ? "" : "no ", orEmpty(address), length,
           areaId);
    // The number is fixed by the interface.
    (void)record_log_act("sw_ospf:%d: swOspfNetwork cmd = %s\n", 1025, command);
    return onceAccepted(vtyOspfConfigOspf(0, command, selector), [=] {
        const Instance &instance = selector != 0 ? kWan : kLan;
        return inSlotOf(instance.processId, [=](uint32_t slot) {
            return recordNetwork(slot, set, address, mask, areaId);
        });
    });
}

uint32_t swOspfRedistribute(uint32_t sourceProcessId, uint32_t set, uint32_t source, int32_t metric,
                            uint32_t hasMetric, int32_t metricType, uint32_t hasMetricType) {
    CommandText command;
    format(command, "%s", set != 0 ? "redistribute " : "no redistribute ");
    if (source > 0 && source < std::size(kSourceWords)) {
        append(command, kSourceWords[source], static_cast<int32_t>(sourceProcessId));
        if (hasMetric != 0) {
            append(command, "metric %d ", metric);
        }
        if (hasMetricType != 0) {
            append(command, "metric-type %d ", metricType);
        }
    }
    return onceAccepted(sendToBoth(command), [=] {
        return inBothSlots([=](uint32_t slot) {
            return ucOspfRedistribute(slot, set, source, static_cast<uint32_t>(metric), hasMetric,
                                      static_cast<uint32_t>(metricType), hasMetricType,
                                      sourceProcessId);
        });
    });
}
