// SPDX-License-Identifier: Apache-2.0
// Line handlers by show mode.

#include "vty/show_lines.h"

#include "ospf/frr_ospf.h"
#include "rip/frr_rip.h"

namespace frruci::vty {

namespace {

using LineHandler = void (*)(char *line, uint32_t kind, uint32_t argument);

void ripLine(char *line, uint32_t, uint32_t) {
    handle_rip_show_interface(line);
}

constexpr LineHandler kLineHandlers[] = {ripLine, handle_ospf_show}; // by mode

} // namespace

void handleLine(char *line, uint32_t kind, uint32_t argument, int32_t mode) {
    if (mode >= 0 && mode < static_cast<int32_t>(sizeof kLineHandlers / sizeof *kLineHandlers)) {
        kLineHandlers[mode](line, kind, argument);
    }
}

} // namespace frruci::vty
