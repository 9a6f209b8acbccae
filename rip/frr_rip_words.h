/* SPDX-License-Identifier: Apache-2.0 */
/* The words of the RIP pages, for the handlers. */
#ifndef FRRUCI_RIP_FRR_RIP_WORDS_H
#define FRRUCI_RIP_FRR_RIP_WORDS_H

#include <cstdint>

#include "common/text.h"

namespace frruci::rip {

/// What a keyword handler returns when its words mean nothing to it.
inline constexpr int32_t kNothingDone = 1;

/// True when at least count words are there.
inline bool hasWords(int32_t argc, char **argv, int32_t count) {
    if (argv == nullptr || argc < count) {
        return false;
    }
    for (int32_t i = 0; i < count; ++i) {
        if (argv[i] == nullptr) {
            return false;
        }
    }
    return true;
}

inline uint32_t isEnable(const char *word) {
    return common::equals(word, "enable") ? 1 : 0;
}

inline constexpr uint32_t kNoVersion = 0;

inline uint32_t versionOf(const char *word) {
    if (common::equals(word, "ripv1")) {
        return 1;
    }
    return common::equals(word, "ripv2") ? 2 : kNoVersion;
}

/// A command's status as a handler's result.
inline int32_t result(uint32_t status) {
    return static_cast<int32_t>(status);
}

} // namespace frruci::rip

#endif
