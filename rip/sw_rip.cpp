// SPDX-License-Identifier: Apache-2.0
// RIP commands of an instance, and the start of RIP in the library.
// The line numbers in the messages: Fixed by the interface.

#include "rip/sw_rip.h"

#include <iterator>

#include "common/address.h"
#include "common/front_end.h"
#include "common/status.h"
#include "common/text.h"
#include "rip/uc_rip_values.h"
#include "rip/vty_rip.h"
#include "vty/session.h"
#include "vty/views.h"

namespace {

using namespace frruci::rip;
using frruci::common::format;
using frruci::common::kFailed;
using frruci::common::kSuccess;
using frruci::vty::kCommandBytes;

constexpr std::size_t kNetworkBytes = 32;
// A longer route is cut, and ripd takes what is left: 100.100.100.100/24 arrives as
// 100.100.100.100/2, and ripd then holds the wrong route 64.0.0.0/2. Fixed by the interface.
constexpr std::size_t kRouteBytes = 18;

// The two sides that an instance command is meant for. One ripd serves both and gets the command
// twice. Fixed by the interface.
constexpr uint32_t kSides[] = {1, 0};

/// Sends for both sides; a result above tolerated ends it.
uint32_t sendForBoth(const char *vrf, const char *command, uint32_t tolerated) {
    for (const uint32_t side : kSides) {
        const uint32_t result = sendToInstance(vrf, command, side);
        if (result > tolerated) {
            return result;
        }
    }
    return kSuccess;
}

/// Sends for both sides; only the second sending counts.
uint32_t sendForBothLastCounts(const char *vrf, const char *command) {
    (void)sendToInstance(vrf, command, kSides[0]); // Fixed by the interface
    return sendToInstance(vrf, command, kSides[1]);
}

uint32_t asStatus(uint32_t modelResult) {
    return modelResult == kSuccess ? kSuccess : kFailed;
}

// ---- settings with a value ----

struct ValueSetting {
    Range range;      // accepted when enabling
    char keyword[16]; // a text, not a pointer, which would take more flash
    uint32_t initial; // stored when disabling
    uint32_t (*store)(const char *vrf, uint32_t value);
};

constexpr ValueSetting kVersion = {kOneVersionRange, "version", 0, ucRipDefaultVersionSet};
constexpr ValueSetting kDistance = {kDistanceRange, "distance", kInitialDistance, ucRipDistanceSet};
constexpr ValueSetting kMetric = {kMetricRange, "default-metric", kInitialMetric,
                                  ucRipDefaultMetricSet};

uint32_t setValue(const ValueSetting &setting, const char *vrf, uint32_t value, uint32_t enable) {
    if (!kSwitchRange.holds(enable) || (enable == 1 && !setting.range.holds(value))) {
        return kFailed;
    }
    char command[kCommandBytes];
    if (enable == 1) {
        format(command, "%s %u", setting.keyword, value);
    } else {
        format(command, "no %s", setting.keyword);
    }
    const uint32_t sent = sendForBoth(vrf, command, kSuccess);
    return sent != kSuccess ? sent
                            : asStatus(setting.store(vrf, enable == 1 ? value : setting.initial));
}

// ---- timers ----

struct Timer {
    Range range;
    uint32_t initial;
    uint32_t (*load)(const char *vrf, uint32_t *out);
    uint32_t (*store)(const char *vrf, uint32_t value);
};

constexpr Timer kTimers[] = {
    {kUpdateRange,  kInitialUpdate,  ucRipTimerUpdateGet,  ucRipTimerUpdateSet },
    {kTimeoutRange, kInitialTimeout, ucRipTimerTimeoutGet, ucRipTimerTimeoutSet},
    {kGarbageRange, kInitialGarbage, ucRipTimerGarbageGet, ucRipTimerGarbageSet},
};
constexpr std::size_t kTimerCount = std::size(kTimers);
constexpr uint32_t kAllTimers = 0; // otherwise the timer's row, counted from 1

bool loadTimers(const char *vrf, uint32_t (&seconds)[kTimerCount]) {
    for (std::size_t i = 0; i < kTimerCount; ++i) {
        if (kTimers[i].load(vrf, &seconds[i]) != kSuccess) {
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
    return kSuccess;
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
    return kSuccess;
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

/// Sends "[no] <keyword> <value>".
uint32_t sendChange(const char *vrf, uint32_t add, const char *keyword, const char *value,
                    uint32_t side) {
    char command[kCommandBytes];
    format(command, "%s%s %s", add != 0 ? "" : "no ", keyword, value);
    return sendToInstance(vrf, command, side);
}

} // namespace

uint32_t swRipInit() {
    if (ucRipInit() != kSuccess) {
        return kFailed;
    }
    return frrVtyViewReg(kInstanceView, "enable\nconfigure\nrouter rip vrf <vrf>") == 0 ? kSuccess
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
    *running = ucRipVrfFindByName(vrf, nullptr) == kSuccess ? 1 : 0;
    return kSuccess;
}

uint32_t swRipRouterRipSet(const char *vrf, uint32_t enable) {
    (void)record_log_act("sw_rip:%d: swRipRouterRipSet\n", 107);
    if (vrf == nullptr || !kSwitchRange.holds(enable)) {
        return kFailed;
    }
    // The model's word counts, not ripd's: a restarted ripd gets its instance with the first
    // command inside it.
    uint32_t running = 0;
    const uint32_t status = swRipIsRunning(vrf, &running);
    (void)record_log_act("sw_rip:%d: swRipRouterRipSet %u, %u, %u\n", 117, status, running, enable);
    if (status != kSuccess || running == enable) {
        return status;
    }
    char command[kCommandBytes];
    format(command, enable == 1 ? "router rip vrf %s" : "no router rip vrf %s", vrf);
    (void)record_log_act("sw_rip:%d: abcccc\n", 122);
    const uint32_t sent = sendInView(kConfigureView, command);
    (void)record_log_act("sw_rip:%d: abcccc\n", 124);
    if (sent != kSuccess) {
        return sent;
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
    const uint32_t sent = sendChange(vrf, add, "network", prefix, selector);
    if (sent != kSuccess) {
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
    const uint32_t sent = sendChange(vrf, add, "neighbor", addr, selector);
    if (sent != kSuccess) {
        return sent;
    }
    RipNeighborNode *neighbor = nullptr;
    return asStatus(add != 0 ? ucRipNeighborAppend(vrf, addr, &neighbor)
                             : ucRipNeighborRemoveByName(vrf, addr));
}

uint32_t swRipVersionSet(const char *vrf, uint32_t version, uint32_t enable) {
    return setValue(kVersion, vrf, version, enable);
}

uint32_t swRipDistanceSet(const char *vrf, uint32_t distance, uint32_t enable) {
    return setValue(kDistance, vrf, distance, enable);
}

uint32_t swRipDefaultMetricSet(const char *vrf, uint32_t metric, uint32_t enable) {
    return setValue(kMetric, vrf, metric, enable);
}

uint32_t swRipAutoSummSet(const char *vrf, uint32_t enable) {
    if (vrf == nullptr || !kSwitchRange.holds(enable)) {
        return kFailed;
    }
    // 1, no connection or a warning, counts as success here. Fixed by the interface.
    const uint32_t sent = sendForBoth(vrf, enable == 1 ? "autosummary" : "no autosummary", kFailed);
    return sent != kSuccess ? sent : asStatus(ucRipAutosummSet(vrf, enable));
}

uint32_t swRipDefaultInformationSet(const char *vrf, uint32_t enable) {
    if (vrf == nullptr || !kSwitchRange.holds(enable)) {
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
    if (!kKinds.holds(kind) || !kSwitchRange.holds(enable) ||
        (enable == 1 && !kMetricRange.holds(metric))) {
        return kFailed;
    }
    char command[kCommandBytes];
    format(command, "%sredistribute %s", enable == 1 ? "" : "no ", kSources[kind - 1]);
    if (enable == 1 && metric != 0) {
        format(command, "redistribute %s metric %u", kSources[kind - 1], metric);
    }
    return sendToInstance(vrf, command, selector);
}

uint32_t swRipTimerSet(const char *vrf, uint32_t which, uint32_t value, uint32_t enable) {
    uint32_t seconds[kTimerCount];
    if (which > kTimerCount || !kSwitchRange.holds(enable) || !loadTimers(vrf, seconds)) {
        return kFailed;
    }
    return which == kAllTimers ? setAllTimers(vrf, enable, seconds)
                               : setOneTimer(vrf, which - 1, value, enable, seconds);
}
