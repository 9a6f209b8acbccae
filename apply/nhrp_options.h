/* SPDX-License-Identifier: Apache-2.0 */
/* What /etc/config/nhrp can say of the recorded tunnel, and the line of each option. */
#ifndef FRRUCI_APPLY_NHRP_OPTIONS_H
#define FRRUCI_APPLY_NHRP_OPTIONS_H

#include <span>

#include "apply/kinds.h"

namespace frruci::apply {

inline constexpr const char *kNhrpSection = "sdwan";
inline constexpr const char *kNhrpOff = "0";

struct NhrpOption {
    const char *name;
    const char *words; ///< of the line
    Target target;
    bool hasValue; ///< behind the words
    bool isGlobal;
};

std::span<const NhrpOption> nhrpOptions();

/// The line with the value, or its first words without one.
void formatNhrpLine(const NhrpOption &option, const char *value, char (&line)[kLineBytes]);

} // namespace frruci::apply

#endif
