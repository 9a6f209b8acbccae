// SPDX-License-Identifier: Apache-2.0
// Switches OSPF on, and moves the network statement of the router's inner link. Line numbers in
// messages are fixed by the interface.

#include "ospf/frr_ospf_enable.h"

#include <cstdio>

#include "common/front_end.h"
#include "common/outside.h"
#include "ospf/command.h"
#include "ospf/frr_ospf_process.h"
#include "ospf/sw_ospf.h"

namespace {

using namespace frruci::ospf;

constexpr unsigned kStartPauseSeconds = 1;
constexpr uint32_t kUnusedWord = 2;

/// One end of the router's inner link.
struct LinkEnd {
    const char *address;
    const char *interface;
    uint32_t announcedArea; ///< the last one; stored nowhere, so 0 after a start
};

constexpr const char *kLinkMask = "255.255.255.252";

/// By selector.
LinkEnd linkEnds[] = {
    {"169.254.11.22", "veth1",  0},
    {"169.254.11.21", "br-lan", 0},
};

int32_t sendRouterId(const char *routerId) {
    return static_cast<int32_t>(swOspfRouterId(kUnusedWord, kSet, routerId));
}

/// Sends one form of the network statement; says so on standard output when it fails.
int32_t sendLink(uint16_t processId, const LinkEnd &end, uint32_t areaId, uint32_t set,
                 int32_t selector) {
    const auto result = static_cast<int32_t>(swOspfNetwork(
        processId, end.address, kLinkMask, areaId, set, static_cast<uint32_t>(selector)));
    if (result != 0) {
        (void)printf("%s ospf network %s failed.\n", set == kSet ? "Set" : "Reset",
                     end.interface); // for whoever reads it
    }
    return result;
}

} // namespace

int32_t ospf_enable(const char *router_id_text) {
    (void)zebra_enable(); // has no result
    if (process_exist("ospfd", 0) != 0) {
        (void)record_log_act("frr_ospf:%d: ospf process exist\n", 235);
        return sendRouterId(router_id_text);
    }
    frruci::outside::runShell("conntrack -D -p ospf");
    (void)record_log_act("frr_ospf:%d: ospf_enable router_id %s\n", 241, orEmpty(router_id_text));
    (void)swOspfEnableProcess(kWan.processId, kWan.selector); // the exchange below tells
    frruci::outside::pauseFor(kStartPauseSeconds);
    const int32_t result = sendRouterId(router_id_text);
    frruci::outside::pauseFor(kStartPauseSeconds);
    return result;
}

int32_t sysn_network(uint16_t process_id, uint32_t area_id, int32_t instance_selector) {
    LinkEnd &end = linkEnds[instance_selector != 0 ? kWan.selector : kLan.selector];
    int32_t result = sendLink(process_id, end, end.announcedArea, kUnset, instance_selector);
    if (result != 0) {
        return result;
    }
    result = sendLink(process_id, end, area_id, kSet, instance_selector);
    if (result == 0) {
        end.announcedArea = area_id;
    }
    return result;
}
