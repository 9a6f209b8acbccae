// SPDX-License-Identifier: Apache-2.0
// What ripd says of its interfaces, mirrored into the store.

#include "rip/frr_rip.h"

#include <cstring>

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "common/text.h"

namespace {

using frruci::common::equals;

/// The name of the interface's section: store names have no dots.
void toSectionName(char *interface) {
    for (char *at = strchr(interface, '.'); at != nullptr; at = strchr(at, '.')) {
        *at = '_';
    }
}

} // namespace

void handle_rip_show_interface(char *line) {
    if (line == nullptr) {
        return;
    }
    char *rest = nullptr;
    char *interface = strtok_r(line, " ", &rest);
    const char *sendVersion = strtok_r(nullptr, " ", &rest);
    (void)strtok_r(nullptr, " ", &rest); // cut off and not read
    if (sendVersion == nullptr || (!equals(sendVersion, "1") && !equals(sendVersion, "2"))) {
        return;
    }
    toSectionName(interface);
    const int32_t stored = frr_uci_set("rip", interface, "status", "up");
    if (stored != 0) {
        // The line number: Fixed by the interface.
        (void)record_log_act("frr_rip:%d:  ret=%d, frr_uci_set\n", 366, stored);
    }
}
