// SPDX-License-Identifier: Apache-2.0
// Writes a package as the text of a configuration file.
#ifndef FRRUCI_COMPAT_UCI_WRITE_H
#define FRRUCI_COMPAT_UCI_WRITE_H

#include "text.h"
#include "uci.h"

namespace frruci::uci {

/// Appends the package's text to out; with the made-up names of anonymous sections if asked to.
void writePackage(Text &out, uci_package *package, bool madeUpNames);

} // namespace frruci::uci

#endif
