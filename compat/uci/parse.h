// SPDX-License-Identifier: Apache-2.0
// Reads the text of a configuration file into a package.
#ifndef FRRUCI_COMPAT_UCI_PARSE_H
#define FRRUCI_COMPAT_UCI_PARSE_H

#include <cstddef>

#include "uci.h"

namespace frruci::uci {

/// Appends the sections of text to package. UCI_ERR_PARSE or UCI_ERR_MEM leave it half filled.
int parsePackage(uci_package *package, const char *text, std::size_t length);

} // namespace frruci::uci

#endif
