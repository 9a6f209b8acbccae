// SPDX-License-Identifier: Apache-2.0
// One line of a delta file: its text and what it does to a package.
#ifndef FRRUCI_COMPAT_UCI_DELTA_LINE_H
#define FRRUCI_COMPAT_UCI_DELTA_LINE_H

#include "delta.h"
#include "text.h"

namespace frruci::uci {

struct DeltaLine {
    Change change;
    const char *package;
    const char *section;
    const char *option; ///< null: the section itself
    const char *value;  ///< null: none
};

void appendDeltaLine(Text &out, const DeltaLine &line);

} // namespace frruci::uci

#endif
