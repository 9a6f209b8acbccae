// SPDX-License-Identifier: Apache-2.0
// Removes the settings of RIP from mgmtd.

#include "rip/rip_leftovers.h"

#include <cstdint>
#include <net/if.h>

#include "common/status.h"
#include "common/text.h"
#include "vty/daemons.h"
#include "vty/manager.h"
#include "vty/session.h"

namespace {

using frruci::vty::kCommandBytes;

/// To mgmtd it is no error when nothing is there.
bool removePath(const char *path) {
    char command[kCommandBytes];
    frruci::common::format(command, "mgmt edit remove %s lock commit", path);
    return frruci::vty::deliver(frruci::vty::kMgmtdSocket, {"enable", "configure", command}) ==
           frruci::common::kSuccess;
}

bool removeFromInterface(const char *name) {
    char path[kCommandBytes];
    frruci::common::format(path, "/frr-interface:lib/interface[name='%s']/frr-ripd:rip", name);
    return removePath(path);
}

} // namespace

void frruci::rip::dropLeftovers() {
    if (!vty::hasManager() || !removePath("/frr-ripd:ripd")) {
        return;
    }
    struct if_nameindex *interfaces = if_nameindex();
    if (interfaces == nullptr) {
        return;
    }
    const struct if_nameindex *each = interfaces;
    while (each->if_name != nullptr && removeFromInterface(each->if_name)) {
        ++each;
    }
    if_freenameindex(interfaces);
}
