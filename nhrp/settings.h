/* SPDX-License-Identifier: Apache-2.0 */
/* The NHRP settings, each a row of the builders' table: what is sent, where, and what is stored. */
#ifndef FRRUCI_NHRP_SETTINGS_H
#define FRRUCI_NHRP_SETTINGS_H

#include <cstdint>

namespace frruci::nhrp {

inline constexpr int kMaxValues = 2;

enum class Setting : uint8_t {
    kWord,
    kNoWord,
    kAddress,
    kNoAddress,
    kNetworkId,
    kNoUnique,
    kNhsNbma,
    kNoNhsNbma,
    kMap,
    kNoMap,
    kProfile,
    kSource,
    kAddLink,
    kConnectLink,
    kDeleteLink,
    kNoLinkDetect,
    kNflogGroup,
    kMcastGroup,
};

/// The values of a setting, in the command's order; those that it does not have are null.
struct Values {
    const char *at[kMaxValues] = {};
};

/// How many values the setting has: its command's last words.
int valueCount(Setting setting);

/// Stores the setting, then sends its command; ifname is for settings of an interface only. Result:
/// 0, or 1 when the daemon cannot be reached or refuses, or a text is missing (nothing is stored or
/// sent then).
uint32_t apply(Setting setting, const char *ifname, const Values &values);

} // namespace frruci::nhrp

#endif
