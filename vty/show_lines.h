/* SPDX-License-Identifier: Apache-2.0 */
/* The one place where show output leaves the vty room: line handlers by mode. */
#ifndef FRRUCI_VTY_SHOW_LINES_H
#define FRRUCI_VTY_SHOW_LINES_H

#include <cstdint>

namespace frruci::vty {

/// Text of a line, CR LF, and zeros after it: handlers copy 257 bytes whatever the text's length.
inline constexpr int kLineBytes = 257 + 2;

/// Hands one line to the handler of mode; unknown modes have none.
void handleLine(char *line, uint32_t kind, uint32_t argument, int32_t mode);

} // namespace frruci::vty

#endif
