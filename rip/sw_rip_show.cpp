// SPDX-License-Identifier: Apache-2.0
// RIP displays, and RIP on the router's internal links.

#include "rip/sw_rip.h"

#include <cstdio>

#include "common/front_end.h"
#include "common/text.h"
#include "rip/rip_internal.h"

namespace {

using namespace frruci::rip;
using frruci::common::format;

constexpr std::size_t kLinkContextBytes = 64;

constexpr const char *kWanLine =
    "********************************WAN************************************";
constexpr const char *kLanLine =
    "********************************LAN************************************";
constexpr uint32_t kWan = 1;
constexpr uint32_t kLan = 0;

constexpr const char *kLinkMask = "255.255.255.252";

// One step each, in this order. The failure texts, "recive" included: Fixed by the interface.
struct LinkNetwork {
    const char *ip;
    uint32_t selector;
    const char *failure;
};
constexpr LinkNetwork kLinkNetworks[] = {
    {"169.254.11.21", 1, "Init RIP network br-lan failed."},
    {"169.254.11.22", 0, "Init RIP network veth1 failed." },
};

struct LinkCommand {
    const char *ifname;
    const char *command;
    const char *failure;
};
constexpr LinkCommand kLinkCommands[] = {
    {"br-lan", "ip rip send version 2",      "Set br-lan rip send version failed."  },
    {"br-lan", "ip rip receive version 1 2", "Set br-lan rip recive version failed."},
    {"veth1",  "ip rip send version 2",      "Set veth1 rip send version failed."   },
    {"veth1",  "ip rip receive version 1 2", "Set veth1 rip recive version failed." },
};

/// Passes a step's result on, its failure told on standard output.
uint32_t told(uint32_t result, const char *failure) {
    if (result != kOk) {
        (void)puts(failure); // nobody to tell
    }
    return result;
}

uint32_t show(const char *heading, const char *command, uint32_t side) {
    (void)puts(heading); // nobody to tell
    return ripVtyPrint(command, side) == kOk ? kOk : kFailed;
}

} // namespace

uint32_t swRipShowIpRip() {
    constexpr const char *kCommand = "show ip rip";
    if (show(kWanLine, kCommand, kWan) != kOk) {
        return kFailed;
    }
    (void)puts(""); // nobody to tell
    return show(kLanLine, kCommand, kLan);
}

uint32_t swRipShowIpRipStatus() {
    return show(kWanLine, "show ip rip status", kWan);
}

uint32_t swRip_setGlobal() {
    return ucRip_setGlobal();
}

uint32_t swRip_setIfVlan() {
    return ucRip_setIfVlan();
}

uint32_t sw_rip_if_cmd(const char *ifname, const char *command, const char *socketPath) {
    if (ifname == nullptr || command == nullptr || socketPath == nullptr) {
        return kFailed;
    }
    char context[kLinkContextBytes];
    format(context, "interface %s", ifname);
    return deliver(socketPath, {"en", "config", context, command});
}

uint32_t init_rip_interface() {
    uint32_t result = swRipRouterRipSet(kInstance, 1);
    if (result != kOk) {
        // The line number: Fixed by the interface.
        (void)record_log_act("sw_rip:%d:  ret=%d, swRipRouterRipSet\n", 1206,
                             static_cast<int32_t>(result));
        return told(result, "Enable rip network br-lan failed.");
    }
    for (const LinkNetwork &network : kLinkNetworks) {
        result = swRipNetworkSet(kInstance, network.ip, kLinkMask, 1, network.selector);
        if (told(result, network.failure) != kOk) {
            return result;
        }
    }
    for (const LinkCommand &link : kLinkCommands) {
        result = sw_rip_if_cmd(link.ifname, link.command, kRipSocket);
        if (told(result, link.failure) != kOk) {
            return result;
        }
    }
    return kOk;
}
