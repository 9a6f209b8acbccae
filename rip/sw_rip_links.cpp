// SPDX-License-Identifier: Apache-2.0
// RIP on the two internal links of the router.

#include <cstdio>

#include "common/front_end.h"
#include "common/status.h"
#include "common/text.h"
#include "rip/sw_rip.h"
#include "rip/vty_rip.h"
#include "vty/daemons.h"
#include "vty/session.h"

namespace {

using namespace frruci::rip;
using frruci::common::format;
using frruci::common::kFailed;
using frruci::common::kSuccess;
using frruci::vty::deliver;
using frruci::vty::kRipdSocket;
using frruci::vty::ReplyPolicy;

constexpr std::size_t kContextBytes = 64;

struct Link { // texts, not pointers, which would take more flash
    char name[8];
    char address[16];
    uint32_t selector;
};
constexpr Link kLinks[] = {
    {"br-lan", "169.254.11.21", 1},
    {"veth1",  "169.254.11.22", 0},
};
constexpr const char *kLinkMask = "255.255.255.252";

struct LinkCommand {
    char command[28];
    char name[8]; // in the failure text; "recive": Fixed by the interface
};
constexpr LinkCommand kLinkCommands[] = {
    {"ip rip send version 2",      "send"  },
    {"ip rip receive version 1 2", "recive"},
};

uint32_t makeInstance() {
    const uint32_t result = swRipRouterRipSet(kInstance, 1);
    if (result != kSuccess) {
        // The line number and the words of the second text: Fixed by the interface.
        (void)record_log_act("sw_rip:%d:  ret=%d, swRipRouterRipSet\n", 1206,
                             static_cast<int32_t>(result));
        (void)puts("Enable rip network br-lan failed."); // nobody to tell
    }
    return result;
}

uint32_t announceLink(const Link &link) {
    const uint32_t result = swRipNetworkSet(kInstance, link.address, kLinkMask, 1, link.selector);
    if (result != kSuccess) {
        (void)printf("Init RIP network %s failed.\n", link.name); // nobody to tell
    }
    return result;
}

uint32_t setLinkVersions(const Link &link) {
    for (const LinkCommand &each : kLinkCommands) {
        const uint32_t result = sw_rip_if_cmd(link.name, each.command, kRipdSocket);
        if (result != kSuccess) {
            (void)printf("Set %s rip %s version failed.\n", link.name, each.name); // nobody to tell
            return result;
        }
    }
    return kSuccess;
}

} // namespace

uint32_t sw_rip_if_cmd(const char *ifname, const char *command, const char *socketPath) {
    if (ifname == nullptr || command == nullptr || socketPath == nullptr) {
        return kFailed;
    }
    char context[kContextBytes];
    format(context, "interface %s", ifname);
    return deliver(socketPath, {"en", "config", context, command}, ReplyPolicy::kFresh);
}

uint32_t init_rip_interface() {
    uint32_t result = makeInstance();
    for (const Link &link : kLinks) {
        result = result == kSuccess ? announceLink(link) : result;
    }
    for (const Link &link : kLinks) {
        result = result == kSuccess ? setLinkVersions(link) : result;
    }
    return result;
}
