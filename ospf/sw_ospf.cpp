// SPDX-License-Identifier: Apache-2.0
// Process commands: what concerns the OSPF router as a whole.

#include "ospf/sw_ospf.h"

#include <cstdlib>
#include <ctime>

#include "common/address.h"
#include "common/front_end.h"
#include "common/shell.h"
#include "common/text.h"
#include "ospf/command.h"
#include "ospf/uc_ospf_defaults.h"

namespace {

using frruci::common::format;
using namespace frruci::ospf;

constexpr uint32_t kDone = 0;
constexpr uint32_t kNothingToRemove = 1;
constexpr uint32_t kEnableFailed = 4;

constexpr uint16_t kWanProcess = 1;
constexpr uint16_t kLanProcess = 2;

constexpr uint32_t kKindUp = 1;
constexpr uint32_t kVlanIdMask = 0xffff;

// Fixed by the interface.
constexpr int kNetworkLogLine = 1025;

constexpr OspfBasicParaKey kRouterId = 0;
constexpr OspfBasicParaKey kGracefulRestart = 1;
constexpr OspfBasicParaKey kReferenceBandwidth = 2;
constexpr OspfBasicParaKey kRfc1583 = 3;
constexpr OspfBasicParaKey kDefaultMetric = 4;
constexpr OspfBasicParaKey kDistance = 5;
constexpr OspfBasicParaKey kPassiveDefault = 6;
constexpr OspfBasicParaKey kMaximumPaths = 7;
constexpr OspfBasicParaKey kSpfTimers = 8;

struct RouterSetting {
    OspfBasicParaKey key;
    const char *set;
    const char *unset;
};

// Fixed by the interface: the distance is unset with a text of another form. ospfd accepts it and
// keeps its distance, so that the model's 110 is no longer the daemon's.
constexpr RouterSetting kRouterSettings[] = {
    {kGracefulRestart,    "graceful-restart",                 "no graceful-restart"             },
    {kReferenceBandwidth, "auto-cost reference-bandwidth %d", "no auto-cost reference-bandwidth"},
    {kRfc1583,            "compatible rfc1583",               "no compatible rfc1583"           },
    {kDefaultMetric,      "default-metric %d",                "no default-metric"               },
    {kDistance,           "distance %d",                      "no distance ospf"                },
    {kPassiveDefault,     "passive-interface default",        "no passive-interface default"    },
    {kMaximumPaths,       "maximum-paths %d",                 "no maximum-paths"                },
};
static_assert(isInKeyOrder(kRouterSettings, kGracefulRestart));

/// One row's setting, told to and recorded for one instance after the other.
uint32_t apply(OspfBasicParaKey key, uint32_t set, int32_t value = 0) {
    const RouterSetting &setting = kRouterSettings[key - kGracefulRestart];
    CommandText command;
    format(command, set != 0 ? setting.set : setting.unset, value);
    for (const Instance &instance : kInstances) {
        uint32_t result = vtyOspfConfigOspf(0, command, instance.selector);
        if (result == kDone) {
            result = ucIpOpsfBasicSetParaByKey(instance.processId, set, &value, key);
        }
        if (result != kDone) {
            return result;
        }
    }
    return kDone;
}

uint32_t applyRouterId(const Instance &instance, uint32_t set, const char *routerId) {
    CommandText command;
    if (set != 0) {
        format(command, "ospf router-id %s", orEmpty(routerId));
    } else {
        format(command, "no ospf router-id");
    }
    uint32_t result = vtyOspfConfigOspf(0, command, instance.selector);
    if (result != kDone) {
        return result;
    }
    char reply[frruci::vty::kReplyBytes] = {};
    result = vtyOspfShowOspf(0, "clear ip ospf process", reply, instance.selector);
    if (result != kDone) {
        return result;
    }
    return ucIpOpsfBasicSetParaByKey(instance.processId, set, routerId, kRouterId);
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

void store(OspfProcessCfg &record, const DefaultRoute &route) {
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

void compose(CommandText &command, const DefaultRoute &route) {
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

/// By OspfRedistSource. The row of source 0 is empty: such a command is sent bare.
constexpr const char *kSourceWords[] = {"", "connect ", "ospf %d ", "rip ", "static "};
constexpr uint32_t kSources = sizeof kSourceWords / sizeof *kSourceWords;

uint32_t recordNetwork(uint32_t slot, uint32_t set, const char *address, const char *mask,
                       uint32_t areaId) {
    OspfNetworkCfg record = {
        .address = sw_ospf_inet_aton(address), .mask = sw_ospf_inet_aton(mask), .areaId = areaId};
    const uint64_t key = wordPair(record.address, record.mask);
    if (set == 0) {
        const uint32_t result = ucOspfNetworkDelete(slot, key);
        return result == kNothingToRemove ? kDone : result;
    }
    OspfNetworkCfg held;
    if (ucOspfNetworkGetCfg(slot, key, &held) == kDone) {
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
    frruci::common::runShell(selector != 0 ? "ospfd -d"
                                           : "vnete ospfd -d -i /var/ospfdv.pid -N vtyv");
    return kDone; // Fixed by the interface: whatever the shell says.
}

uint32_t swOspfEnableProcess(uint16_t processId, uint32_t selector) {
    if (swOspfProcessCreateById(processId, selector) != kDone ||
        ucOspfEnableProcess(processId) != kDone) {
        return kEnableFailed;
    }
    return kDone;
}

uint32_t swOspfDisableProcess(uint16_t processId) {
    CommandText command;
    format(command, "no router ospf %d", processId);
    const uint32_t result = vtyOspfConfigOspf(0, command, 0);
    if (result != kDone) {
        return result;
    }
    const uint32_t slot = swOspfHasProcessId(processId);
    if (slot != kNoSlot) {
        (void)ucOspfDefaultProcessByNum(slot); // the slot is there
    }
    return kDone;
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
    const uint32_t result = applyRouterId(kInstances[0], set, routerId);
    if (result != kDone) {
        return result;
    }
    drawRouterId();
    return applyRouterId(kInstances[1], set, routerId);
}

uint32_t swOspfGracefulRestart(uint32_t /*unused*/, uint32_t set) {
    return apply(kGracefulRestart, set);
}

uint32_t swOspfRfc1583Compa(uint32_t /*unused*/, uint32_t set) {
    return apply(kRfc1583, set);
}

uint32_t swOspfDefaultMetric(uint32_t /*unused*/, uint32_t set, int32_t metric) {
    return apply(kDefaultMetric, set, metric);
}

uint32_t swOspfdistance(uint32_t /*unused*/, uint32_t set, int32_t distance) {
    return apply(kDistance, set, distance);
}

uint32_t swOspfMaxPaths(uint32_t /*unused*/, uint32_t set, int32_t paths) {
    return apply(kMaximumPaths, set, paths);
}

uint32_t swOspfAutoCostRef(uint32_t /*unused*/, uint32_t set, int32_t bandwidth) {
    return apply(kReferenceBandwidth, set, bandwidth);
}

uint32_t swOspfPassiveInterface(uint32_t /*unused*/, uint32_t set) {
    return apply(kPassiveDefault, set);
}

uint32_t swOspfTimerThrottleSpf(uint32_t /*unused*/, uint32_t set, int32_t delay,
                                int32_t initialHold, int32_t maximumHold) {
    CommandText command;
    if (set != 0) {
        format(command, "timers throttle spf %d %d %d", delay, initialHold, maximumHold);
    } else {
        format(command, "no timers throttle spf");
    }
    uint32_t result = deliverToBoth(command);
    const uint16_t timers[] = {static_cast<uint16_t>(delay), static_cast<uint16_t>(initialHold),
                               static_cast<uint16_t>(maximumHold)};
    for (const Instance &instance : kInstances) {
        if (result == kDone) {
            result = ucIpOpsfBasicSetParaByKey(instance.processId, set, timers, kSpfTimers);
        }
    }
    return result;
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
    compose(command, route);
    uint32_t result = deliverToBoth(command);
    for (const Instance &instance : kInstances) {
        const uint32_t slot = ucOspfHasProcessId(instance.processId);
        OspfProcessCfg record;
        if (result != kDone || slot == kNoSlot) {
            continue;
        }
        result = ucOspfGetCfg(slot, &record);
        if (result == kDone) {
            store(record, route);
            result = ucOspfSetCfg(slot, &record);
        }
    }
    return result;
}

uint32_t swOspfNetwork(uint32_t /*unused*/, const char *address, const char *mask, uint32_t areaId,
                       uint32_t set, uint32_t selector) {
    const int32_t length = mask_to_masklen(sw_ospf_inet_aton(mask));
    CommandText command;
    format(command, "%snetwork %s/%d area %u", set != 0 ? "" : "no ", orEmpty(address), length,
           areaId);
    (void)record_log_act("sw_ospf:%d: swOspfNetwork cmd = %s\n", kNetworkLogLine, command);
    const uint32_t result = vtyOspfConfigOspf(0, command, selector);
    if (result != kDone) {
        return result;
    }
    const uint32_t slot = ucOspfHasProcessId(selector != 0 ? kWanProcess : kLanProcess);
    return slot == kNoSlot ? kDone : recordNetwork(slot, set, address, mask, areaId);
}

uint32_t swOspfRedistribute(uint32_t sourceProcessId, uint32_t set, uint32_t source, int32_t metric,
                            uint32_t hasMetric, int32_t metricType, uint32_t hasMetricType) {
    CommandText command;
    format(command, "%s", set != 0 ? "redistribute " : "no redistribute ");
    if (source > 0 && source < kSources) {
        append(command, kSourceWords[source], static_cast<int32_t>(sourceProcessId));
        if (hasMetric != 0) {
            append(command, "metric %d ", metric);
        }
        if (hasMetricType != 0) {
            append(command, "metric-type %d ", metricType);
        }
    }
    uint32_t result = deliverToBoth(command);
    for (const Instance &instance : kInstances) {
        const uint32_t slot = ucOspfHasProcessId(instance.processId);
        if (result == kDone && slot != kNoSlot) {
            result = ucOspfRedistribute(slot, set, source, static_cast<uint32_t>(metric), hasMetric,
                                        static_cast<uint32_t>(metricType), hasMetricType,
                                        sourceProcessId);
        }
    }
    return result;
}
