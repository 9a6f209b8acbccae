/* SPDX-License-Identifier: Apache-2.0 */
/* What the handlers of an instance and of an interface read and answer alike. */
#ifndef FRRUCI_RIP_FRR_RIP_WORDS_H
#define FRRUCI_RIP_FRR_RIP_WORDS_H

#include <cstdint>

#include "common/words.h"

namespace frruci::rip {

inline constexpr uint32_t kNoVersion = 0;

/// The version that a word names; kNoVersion for any other and for none.
inline uint32_t versionIn(const common::Words &words, int32_t index) {
    if (words.is(index, "ripv1")) {
        return 1;
    }
    return words.is(index, "ripv2") ? 2 : kNoVersion;
}

/// The status of a command as a handler's result.
inline int32_t asResult(uint32_t status) {
    return static_cast<int32_t>(status);
}

} // namespace frruci::rip

#endif
