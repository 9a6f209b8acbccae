// SPDX-License-Identifier: Apache-2.0
// RIP displays.

#include <cstdio>

#include "common/status.h"
#include "rip/sw_rip.h"

namespace {

using frruci::common::kFailed;
using frruci::common::kSuccess;

constexpr const char *kWanLine =
    "********************************WAN************************************";
constexpr const char *kLanLine =
    "********************************LAN************************************";
constexpr uint32_t kWan = 1;
constexpr uint32_t kLan = 0;

uint32_t showUnder(const char *heading, const char *command, uint32_t side) {
    (void)puts(heading); // nobody to tell
    return ripVtyPrint(command, side) == kSuccess ? kSuccess : kFailed;
}

} // namespace

uint32_t swRipShowIpRip() {
    constexpr const char *kCommand = "show ip rip";
    if (showUnder(kWanLine, kCommand, kWan) != kSuccess) {
        return kFailed;
    }
    (void)puts(""); // nobody to tell
    return showUnder(kLanLine, kCommand, kLan);
}

uint32_t swRipShowIpRipStatus() {
    return showUnder(kWanLine, "show ip rip status", kWan);
}

uint32_t swRip_setGlobal() {
    return ucRip_setGlobal();
}

uint32_t swRip_setIfVlan() {
    return ucRip_setIfVlan();
}
