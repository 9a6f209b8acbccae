/* SPDX-License-Identifier: Apache-2.0 */
/* Options of a store section that libuci has loaded. */
#ifndef FRRUCI_COMMON_UCI_OPTION_H
#define FRRUCI_COMMON_UCI_OPTION_H

struct uci_context; // libuci's own records
struct uci_section;

namespace frruci::common {

/// The text of a section's option, valid while the section is; null when an argument is null, there
/// is no such option, or it is a list.
const char *optionText(uci_context *context, uci_section *section, const char *option);

} // namespace frruci::common

#endif
