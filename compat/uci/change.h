// SPDX-License-Identifier: Apache-2.0
// Changes one value of a package in memory; used for new changes and for saved ones.
#ifndef FRRUCI_COMPAT_UCI_CHANGE_H
#define FRRUCI_COMPAT_UCI_CHANGE_H

#include "uci.h"

namespace frruci::uci {

/// What a change is about; section and option are null where they do not exist yet.
struct Target {
    uci_package *package;
    uci_section *section;
    uci_option *option;
    const char *sectionName;
    const char *optionName; ///< null: the section itself
};

/// Sets the option's value, or the section's type; an empty value removes. Makes what is missing,
/// but no section for an option: UCI_ERR_INVAL. changed tells whether anything was done.
int setValue(Target &target, const char *value, bool &changed);

/// Removes the option, or the section without an option name.
void removeTarget(Target &target);

} // namespace frruci::uci

#endif
