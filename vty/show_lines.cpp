// SPDX-License-Identifier: Apache-2.0
// Line handlers by show mode.

#include "vty/show_lines.h"

namespace frruci::vty {

namespace {

using LineHandler = void (*)(char *line, uint32_t kind, uint32_t argument);

void ripLine(char *, uint32_t, uint32_t) {}
void ospfLine(char *, uint32_t, uint32_t) {}

constexpr LineHandler kLineHandlers[] = {ripLine, ospfLine}; // by mode

} // namespace

void handleLine(char *line, uint32_t kind, uint32_t argument, int32_t mode) {
    if (mode >= 0 && mode < static_cast<int32_t>(sizeof kLineHandlers / sizeof *kLineHandlers)) {
        kLineHandlers[mode](line, kind, argument);
    }
}

} // namespace frruci::vty
