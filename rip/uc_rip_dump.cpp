// SPDX-License-Identifier: Apache-2.0
// The RIP model as text on standard output.

#include <cstdarg>
#include <cstdio>

#include "common/lock.h"
#include "common/status.h"
#include "rip/uc_rip.h"
#include "rip/uc_rip_values.h"

namespace {

using namespace frruci::rip;
using frruci::common::kFailed;
using frruci::common::kSuccess;
using frruci::common::Locked;

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
    printChanged(" timer basic update %d", vrf.update_timer, kInitialUpdate);
    printChanged(" timer basic timeout %d", vrf.timeout_timer, kInitialTimeout);
    printChanged("  timer basic garbage-collect %d", vrf.garbage_timer, kInitialGarbage);
    printChanged("  version %d", vrf.version, 0);
    printChanged("  default-metric %d", vrf.default_metric, kInitialMetric);
    printChanged("  distance %d", vrf.distance, kInitialDistance);
}

template <typename Record> const Record *recordOf(const dlist_node *entry) {
    return entry == nullptr ? nullptr : static_cast<const Record *>(entry->data);
}

const dlist_node *headOf(const dlist *list) {
    return list == nullptr ? nullptr : list->head;
}

/// Shows every record from the head; an entry without a record ends the walk.
template <typename Record, typename Show> void walk(const dlist *list, Show show) {
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
    return kSuccess;
}

uint32_t ucRip_setIfVlan() {
    // Always the all-zero key. Fixed by the interface.
    RipInterfaceNode *record = nullptr;
    if (ucRipIfFindByNetIf({}, &record) != kSuccess) {
        return kFailed;
    }
    const Locked locked(ucRipIfListMu);
    printInterface(*record);
    return kSuccess;
}
