/* SPDX-License-Identifier: Apache-2.0 */
/* What /etc/config/nhrp can say of the recorded tunnel, and the line of each option. */
#ifndef FRRUCI_HOST_NHRP_OPTIONS_H
#define FRRUCI_HOST_NHRP_OPTIONS_H

#include <span>

#include "host/text.h"

namespace frruci::host {

inline constexpr const char *kNhrpPackage = "/etc/config/nhrp";
inline constexpr const char *kNhrpSection = "sdwan";
inline constexpr const char *kNhrpTunnel = "interface"; ///< the option with the tunnel's name
inline constexpr const char *kNhrpOff = "0";

/// Where a line stands.
enum class NhrpContext { kTunnel, kZebra, kGlobal };

struct NhrpOption {
    const char *name;
    const char *words; ///< of the line; the value follows unless the option is a flag
    NhrpContext context;
    bool isFlag;
};

/// In the order in which they are replayed.
std::span<const NhrpOption> nhrpOptions();

/// Adds the option's line with the value; without a value only its words.
void addNhrpLine(Text &line, const NhrpOption &option, const char *value);

} // namespace frruci::host

#endif
