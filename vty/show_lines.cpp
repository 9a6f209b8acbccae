// SPDX-License-Identifier: Apache-2.0
// Line handlers by show mode.

#include "vty/show_lines.h"

#include <iterator>

#include "ospf/frr_ospf.h"
#include "rip/frr_rip.h"

namespace frruci::vty {

namespace {

using LineHandler = void (*)(char *line, uint32_t kind, uint32_t argument);

void ripLine(char *line, uint32_t /*kind*/, uint32_t /*argument*/) {
    handle_rip_show_interface(line);
}

constexpr LineHandler kLineHandlers[] = {ripLine, handle_ospf_show}; // by mode

} // namespace

void handleLine(char *line, uint32_t kind, uint32_t argument, int32_t mode) {
    if (mode >= 0 && mode < std::ssize(kLineHandlers)) {
        kLineHandlers[mode](line, kind, argument);
    }
}

} // namespace frruci::vty
