// SPDX-License-Identifier: Apache-2.0
// What the OSPF commands share: their text, the two instances, and the formats that tables hold.
#ifndef FRRUCI_OSPF_COMMAND_H
#define FRRUCI_OSPF_COMMAND_H

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "ospf/vty_ospf.h"
#include "vty/session.h"

namespace frruci::ospf {

using CommandText = char[vty::kCommandBytes];

inline constexpr std::size_t kPieceBytes = 64;

struct Instance {
    uint32_t selector;
    uint16_t processId;
};

/// WAN first, then LAN: the order in which a setting of both is sent and recorded.
inline constexpr Instance kInstances[] = {
    {1, 1},
    {0, 2},
};

inline constexpr uint32_t kNoSlot = UINT32_MAX; // of ucOspfHasProcessId

/// A missing text argument is an empty one.
inline const char *orEmpty(const char *text) {
    return text == nullptr ? "" : text;
}

/// Formats one piece, cut at 63 characters, behind the text, which is cut at its last byte.
[[gnu::format(printf, 2, 3)]] inline void append(CommandText &text, const char *piece, ...) {
    char formatted[kPieceBytes];
    va_list arguments;
    va_start(arguments, piece);
    (void)vsnprintf(formatted, sizeof formatted, piece, arguments); // a cut piece is required
    va_end(arguments);
    strncat(text, formatted, sizeof text - 1 - strlen(text));
}

/// A key of two words, as the model's list routines take it.
constexpr uint64_t wordPair(uint32_t first, uint32_t second) {
    return static_cast<uint64_t>(second) << 32 | first;
}

/// Delivers the command once for each instance; 0, or the first failure.
inline uint32_t deliverToBoth(const char *command) {
    for (const Instance &instance : kInstances) {
        const uint32_t result = vtyOspfConfigOspf(0, command, instance.selector);
        if (result != 0) {
            return result;
        }
    }
    return 0;
}

/// Whether a table's format takes no argument other than at most one int.
constexpr bool takesAtMostOneInt(const char *text) {
    int ints = 0;
    for (; *text != '\0'; ++text) {
        if (*text == '%') {
            ++text;
            if (*text != 'd') {
                return false;
            }
            ++ints;
        }
    }
    return ints <= 1;
}

/// Whether the rows of a table of settings stand in the order of their keys, without a gap, and
/// their formats suit the one int that they get.
template <typename Row, std::size_t N>
constexpr bool isInKeyOrder(const Row (&rows)[N], uint32_t firstKey) {
    uint32_t key = firstKey;
    for (const Row &row : rows) {
        if (row.key != key || !takesAtMostOneInt(row.set) || !takesAtMostOneInt(row.unset)) {
            return false;
        }
        ++key;
    }
    return true;
}

} // namespace frruci::ospf

#endif
