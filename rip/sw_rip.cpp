// SPDX-License-Identifier: Apache-2.0
// RIP commands of an instance, and the start of RIP in the library.
// The line numbers in the messages: Fixed by the interface.

#include "rip/sw_rip.h"

#include "common/address.h"
#include "common/front_end.h"
#include "common/text.h"
#include "rip/rip_internal.h"
#include "vty/session.h"
#include "vty/views.h"

namespace {

using namespace frruci::rip;
using frruci::common::format;
using frruci::vty::kCommandBytes;

constexpr std::size_t kNetworkBytes = 32;
// A longer route is cut, and ripd takes what is left: 100.100.100.100/24 arrives as
// 100.100.100.100/2, and ripd then holds the wrong route 64.0.0.0/2. Fixed by the interface.
constexpr std::size_t kRouteBytes = 18;

// The two sides that an instance command is meant for. One ripd serves both and gets the command
// twice. Fixed by the interface.
constexpr uint32_t kSides[] = {1, 0};

uint32_t send(const char *vrf, const char *command, uint32_t side) {
    char reply[kReplyBytes] = {};
    return swRipAutoRun(vrf, command, kAnnouncedReplyBytes, side, reply);
}

/// Sends for both sides; a result above tolerated ends it.
uint32_t sendForBoth(const char *vrf, const char *command, uint32_t tolerated) {
    for (const uint32_t side : kSides) {
        const uint32_t result = send(vrf, command, side);
        if (result > tolerated) {
            return result;
        }
    }
    return kOk;
}

/// Sends for both sides; only the second sending counts.
uint32_t sendForBothLastCounts(const char *vrf, const char *command) {
    (void)send(vrf, command, kSides[0]); // Fixed by the interface
    return send(vrf, command, kSides[1]);
}

uint32_t asStatus(uint32_t modelResult) {
    return modelResult == kOk ? kOk : kFailed;
}

// ---- settings with a value ----

struct ValueSetting {
    Range range; // accepted when enabling
    const char *enableText;
    const char *disableText;
    uint32_t disabled; // stored when disabling
    uint32_t (*store)(const char *vrf, uint32_t value);
};

constexpr ValueSetting kVersionSetting = {
    {1, 2},
    "version %d", "no version", 0, ucRipDefaultVersionSet
};
constexpr ValueSetting kDistanceSetting = {kDistance, "distance %d", "no distance",
                                           kInitialDistance, ucRipDistanceSet};
constexpr ValueSetting kMetricSetting = {kMetric, "default-metric %d", "no default-metric",
                                         kInitialMetric, ucRipDefaultMetricSet};

uint32_t setValue(const ValueSetting &setting, const char *vrf, uint32_t value, uint32_t enable) {
    if (!kSwitch.holds(enable) || (enable == 1 && !setting.range.holds(value))) {
        return kFailed;
    }
    char command[kCommandBytes];
    format(command, enable == 1 ? setting.enableText : setting.disableText, value);
    const uint32_t sent = sendForBoth(vrf, command, kOk);
    return sent != kOk ? sent
                       : asStatus(setting.store(vrf, enable == 1 ? value : setting.disabled));
}

// ---- timers ----

struct Timer {
    Range range;
    uint32_t initial;
    uint32_t (*load)(const char *vrf, uint32_t *out);
    uint32_t (*store)(const char *vrf, uint32_t value);
};

constexpr Timer kTimers[] = {
    {kUpdateTimer,  kInitialUpdateTimer,  ucRipTimerUpdateGet,  ucRipTimerUpdateSet },
    {kTimeoutTimer, kInitialTimeoutTimer, ucRipTimerTimeoutGet, ucRipTimerTimeoutSet},
    {kGarbageTimer, kInitialGarbageTimer, ucRipTimerGarbageGet, ucRipTimerGarbageSet},
};
constexpr std::size_t kTimerCount = sizeof kTimers / sizeof *kTimers;
constexpr uint32_t kAllTimers = 0; // otherwise the timer's row, counted from 1

bool loadTimers(const char *vrf, uint32_t (&seconds)[kTimerCount]) {
    for (std::size_t i = 0; i < kTimerCount; ++i) {
        if (kTimers[i].load(vrf, &seconds[i]) != kOk) {
            return false;
        }
    }
    return true;
}

void sendTimers(const char *vrf, const uint32_t (&seconds)[kTimerCount]) {
    char command[kCommandBytes];
    format(command, "timers basic %u %u %u", seconds[0], seconds[1], seconds[2]);
    (void)sendForBothLastCounts(vrf, command); // Fixed by the interface
}

uint32_t setOneTimer(const char *vrf, std::size_t row, uint32_t value, uint32_t enable,
                     uint32_t (&seconds)[kTimerCount]) {
    const Timer &timer = kTimers[row];
    if (enable == 1 && !timer.range.holds(value)) {
        return kFailed;
    }
    seconds[row] = enable == 1 ? value : timer.initial;
    sendTimers(vrf, seconds);
    (void)timer.store(vrf, seconds[row]); // checked above
    return kOk;
}

uint32_t setAllTimers(const char *vrf, uint32_t enable, const uint32_t (&seconds)[kTimerCount]) {
    if (enable == 1) {
        sendTimers(vrf, seconds);
    } else {
        (void)sendForBothLastCounts(vrf, "no timers basic"); // Fixed by the interface
    }
    // The initial values, also when enabling. Fixed by the interface.
    for (const Timer &timer : kTimers) {
        (void)timer.store(vrf, timer.initial); // in range
    }
    return kOk;
}

// ---- networks and routes ----

/// Builds "<ip>/<prefix length>"; false when either text is refused.
template <std::size_t N> bool buildPrefix(char (&prefix)[N], const char *ip, const char *mask) {
    uint32_t length = 0;
    if (ipStrCheck(ip) != 0 || maskStr2len(mask, &length) != 0) {
        return false;
    }
    format(prefix, "%s/%u", ip, length);
    return true;
}

} // namespace

uint32_t swRipInit() {
    if (ucRipInit() != kOk) {
        return kFailed;
    }
    return frrVtyViewReg(kInstanceView, "enable\nconfigure\nrouter rip vrf <vrf>") == 0 ? kOk
                                                                                        : kFailed;
}

uint32_t swRipIsRunning(const char *vrf, uint32_t *running) {
    if (running == nullptr) {
        return kFailed;
    }
    *running = 0;
    if (vrf == nullptr) {
        return kFailed;
    }
    *running = ucRipVrfFindByName(vrf, nullptr) == kOk ? 1 : 0;
    return kOk;
}

uint32_t swRipRouterRipSet(const char *vrf, uint32_t enable) {
    (void)record_log_act("sw_rip:%d: swRipRouterRipSet\n", 107);
    if (vrf == nullptr || !kSwitch.holds(enable)) {
        return kFailed;
    }
    // The model's word counts, not ripd's: a restarted ripd gets its instance with the first
    // command inside it.
    uint32_t running = 0;
    const uint32_t status = swRipIsRunning(vrf, &running);
    (void)record_log_act("sw_rip:%d: swRipRouterRipSet %u, %u, %u\n", 117, status, running, enable);
    if (status != kOk || running == enable) {
        return status;
    }
    char command[kCommandBytes];
    format(command, enable == 1 ? "router rip vrf %s" : "no router rip vrf %s", vrf);
    char reply[kReplyBytes] = {};
    (void)record_log_act("sw_rip:%d: abcccc\n", 122);
    const int32_t sent =
        frrVtyAutoRun(kConfigureView, kRipSocket, command, nullptr, kAnnouncedReplyBytes, reply);
    (void)record_log_act("sw_rip:%d: abcccc\n", 124);
    if (sent != 0) {
        return static_cast<uint32_t>(sent);
    }
    (void)record_log_act("sw_rip:%d: swRipRouterRipSet\n", 127);
    return asStatus(enable == 1 ? ucRipVrfAppend(vrf, nullptr) : ucRipVrfRemoveByName(vrf));
}

uint32_t swRipNetworkSet(const char *vrf, const char *ip, const char *mask, uint32_t add,
                         uint32_t selector) {
    char prefix[kNetworkBytes];
    if (vrf == nullptr || !buildPrefix(prefix, ip, mask)) {
        return kFailed;
    }
    char command[kCommandBytes];
    format(command, add != 0 ? "network %s" : "no network %s", prefix);
    const uint32_t sent = send(vrf, command, selector);
    if (sent != kOk) {
        return sent;
    }
    RipNetworkNode *network = nullptr;
    return asStatus(add != 0 ? ucRipNetworkNodeAppend(vrf, ip, mask, &network)
                             : ucRipNetworkNodeRemoveByName(vrf, ip, mask));
}

uint32_t swRipNeighborSet(const char *vrf, const char *addr, uint32_t add, uint32_t selector) {
    if (vrf == nullptr || ipStrCheck(addr) != 0) {
        return kFailed;
    }
    char command[kCommandBytes];
    format(command, add != 0 ? "neighbor %s" : "no neighbor %s", addr);
    const uint32_t sent = send(vrf, command, selector);
    if (sent != kOk) {
        return sent;
    }
    RipNeighborNode *neighbor = nullptr;
    return asStatus(add != 0 ? ucRipNeighborAppend(vrf, addr, &neighbor)
                             : ucRipNeighborRemoveByName(vrf, addr));
}

uint32_t swRipVersionSet(const char *vrf, uint32_t version, uint32_t enable) {
    return setValue(kVersionSetting, vrf, version, enable);
}

uint32_t swRipDistanceSet(const char *vrf, uint32_t distance, uint32_t enable) {
    return setValue(kDistanceSetting, vrf, distance, enable);
}

uint32_t swRipDefaultMetricSet(const char *vrf, uint32_t metric, uint32_t enable) {
    return setValue(kMetricSetting, vrf, metric, enable);
}

uint32_t swRipAutoSummSet(const char *vrf, uint32_t enable) {
    if (vrf == nullptr || !kSwitch.holds(enable)) {
        return kFailed;
    }
    // 1, no connection or a warning, counts as success here. Fixed by the interface.
    const uint32_t sent = sendForBoth(vrf, enable == 1 ? "autosummary" : "no autosummary", kFailed);
    return sent != kOk ? sent : asStatus(ucRipAutosummSet(vrf, enable));
}

uint32_t swRipDefaultInformationSet(const char *vrf, uint32_t enable) {
    if (vrf == nullptr || !kSwitch.holds(enable)) {
        return kFailed;
    }
    return sendForBothLastCounts(vrf, enable == 1 ? "default-information originate"
                                                  : "no default-information originate");
}

uint32_t swRipRouteStaticSet(const char *vrf, const char *ip, const char *mask, uint32_t add) {
    char prefix[kRouteBytes];
    if (vrf == nullptr || !buildPrefix(prefix, ip, mask)) {
        return kFailed;
    }
    char command[kCommandBytes];
    format(command, add != 0 ? "route %s" : "no route %s", prefix);
    return sendForBothLastCounts(vrf, command);
}

uint32_t swRipRedistributeSet(const char *vrf, uint32_t kind, uint32_t metric, uint32_t enable,
                              uint32_t selector) {
    static constexpr const char *kSources[] = {"static", "ospf"}; // by kind, counted from 1
    constexpr Range kKinds = {1, 2};
    if (!kKinds.holds(kind) || !kSwitch.holds(enable) || (enable == 1 && !kMetric.holds(metric))) {
        return kFailed;
    }
    char command[kCommandBytes];
    format(command, "%sredistribute %s", enable == 1 ? "" : "no ", kSources[kind - 1]);
    if (enable == 1 && metric != 0) {
        format(command, "redistribute %s metric %u", kSources[kind - 1], metric);
    }
    return send(vrf, command, selector);
}

uint32_t swRipTimerSet(const char *vrf, uint32_t which, uint32_t value, uint32_t enable) {
    uint32_t seconds[kTimerCount];
    if (which > kTimerCount || !kSwitch.holds(enable) || !loadTimers(vrf, seconds)) {
        return kFailed;
    }
    return which == kAllTimers ? setAllTimers(vrf, enable, seconds)
                               : setOneTimer(vrf, which - 1, value, enable, seconds);
}
