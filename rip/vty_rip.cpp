// SPDX-License-Identifier: Apache-2.0
// Delivery of RIP commands to ripd, and the model's dumps.

#include <cstdarg>
#include <cstdio>

#include "common/front_end.h"
#include "common/text.h"
#include "rip/rip_internal.h"
#include "rip/uc_rip.h"
#include "vty/frr_util.h"
#include "vty/session.h"
#include "vty/views.h"

namespace {

using namespace frruci::rip;
using frruci::common::format;
using frruci::vty::Session;

constexpr uint32_t kShowFailed = 0xFFFFFFFF;
constexpr int32_t kParamFailed = -1;

constexpr int32_t kRipLines = 0; // mode of frrVtyPrint
constexpr uint32_t kNoArgument = 0;

constexpr uint32_t kSimpleText = 1; // RipInterfaceNode.auth_type
constexpr uint32_t kMd5 = 2;

/// Prints one item, without a line end. Fixed by the interface.
[[gnu::format(printf, 1, 2)]] void printItem(const char *text, ...) {
    va_list values;
    va_start(values, text);
    (void)vprintf(text, values); // nobody to tell
    va_end(values);
}

void printChanged(const char *text, uint32_t value, uint32_t initial) {
    if (value != initial) {
        printItem(text, value);
    }
}

void printInstance(const RipVrfNode &vrf) {
    printItem("router rip %s", vrf.name);
    if (vrf.auto_summary == 1) {
        printItem("  auto-summary");
    }
    printChanged(" timer basic update %d", vrf.update_timer, kInitialUpdateTimer);
    printChanged(" timer basic timeout %d", vrf.timeout_timer, kInitialTimeoutTimer);
    printChanged("  timer basic garbage-collect %d", vrf.garbage_timer, kInitialGarbageTimer);
    printChanged("  version %d", vrf.version, 0);
    printChanged("  default-metric %d", vrf.default_metric, kInitialMetric);
    printChanged("  distance %d", vrf.distance, kInitialDistance);
}

template <class Record> const Record *recordOf(const dlist_node *entry) {
    return entry == nullptr ? nullptr : static_cast<const Record *>(entry->data);
}

const dlist_node *headOf(const dlist *list) {
    return list == nullptr ? nullptr : list->head;
}

/// Shows every record from the head; an entry without a record ends the walk.
template <class Record, class Show> void walk(const dlist *list, Show show) {
    const dlist_node *entry = headOf(list);
    while (const Record *record = recordOf<Record>(entry)) {
        show(*record);
        entry = entry->next;
    }
}

void printSplitHorizon(const RipInterfaceNode &interface) {
    if (interface.split_horizon != 1) {
        printItem("no ip rip split-horizon");
    } else if (interface.poison_reverse != 0) {
        printItem("ip rip split-horizon poison-reverse");
    }
}

void printAuthentication(const RipInterfaceNode &interface) {
    if (interface.auth_type == kSimpleText) {
        printItem("ip rip authentication-mode simple %s", interface.auth_str);
    } else if (interface.auth_type == kMd5) {
        printItem("ip rip authentication-mode md5 %d %s", interface.auth_keyid, interface.auth_str);
    }
}

void printInterface(const RipInterfaceNode &interface) {
    printChanged("ip rip send version %d", interface.send_version, 0);
    printChanged("ip rip receive version %d", interface.recv_version, 0);
    printSplitHorizon(interface);
    if (interface.passive != 1) {
        printItem("no ip rip passive-mode ");
    }
    if (interface.v2_broadcast != 0) {
        printItem("ip rip v2-broadcast");
    }
    printAuthentication(interface);
}

} // namespace

uint32_t frruci::rip::deliver(const char *path, std::initializer_list<const char *> steps) {
    Session session(path);
    if (!session.isOpen()) {
        return kFailed;
    }
    for (const char *step : steps) {
        char reply[frruci::vty::kReplyBytes] = {};
        if (!session.run(step, reply)) {
            return kFailed;
        }
    }
    return kOk;
}

uint32_t swRipAutoRun(const char *vrf, const char *command, int32_t replyLen, uint32_t /*selector*/,
                      char *reply) {
    dlist *params = nullptr;
    if (frrVtyParamInit(&params) != 0 || frrVtyParamStrSet(&params, "vrf", vrf) == kParamFailed) {
        (void)frrVtyParamFini(&params); // nothing to do about a list that stays
        return kFailed;
    }
    return static_cast<uint32_t>(
        frrVtyAutoRun(kInstanceView, kRipSocket, command, &params, replyLen, reply));
}

uint32_t swRipIfAutoRun(const char *ifname, RipNetIf key, const char *command, int32_t /*replyLen*/,
                        char * /*reply*/) {
    const auto vid = static_cast<int32_t>(key.vid);
    return doVtyRipConfigInterface(ifname, sw_is_lan_vid(vid) == 0 ? 1 : 0, command);
}

uint32_t doVtyRipConfigInterface(const char *ifname, uint32_t /*selector*/, const char *command) {
    if (ifname == nullptr || command == nullptr) {
        return kFailed;
    }
    char context[frruci::vty::kCommandBytes];
    format(context, "interface %s", ifname);
    return deliver(kRipSocket, {"enable", "configure", context, command});
}

uint32_t ripVtyPrint(const char *command, uint32_t /*selector*/) {
    const Session session(kRipSocket);
    uint8_t code = 0;
    return session.isOpen() && frrVtyPrint(session.fd(), command, &code, kNoArgument, kNoArgument,
                                           kRipLines) == 0
               ? kOk
               : kShowFailed;
}

uint32_t ucRip_setGlobal() {
    const Locked locked(ucRipVrfListMu);
    walk<RipVrfNode>(gRipVrfList, [](const RipVrfNode &vrf) {
        printInstance(vrf);
        walk<RipNetworkNode>(vrf.networks, [](const RipNetworkNode &network) {
            printItem("  network %s %s", network.ip, network.mask);
        });
        walk<RipNeighborNode>(vrf.neighbors, [](const RipNeighborNode &neighbor) {
            printItem("  neighbor %s", neighbor.addr);
        });
    });
    return kOk;
}

uint32_t ucRip_setIfVlan() {
    // Always the all-zero key. Fixed by the interface.
    RipInterfaceNode *record = nullptr;
    if (ucRipIfFindByNetIf({}, &record) != kOk) {
        return kFailed;
    }
    const Locked locked(ucRipIfListMu);
    printInterface(*record);
    return kOk;
}
