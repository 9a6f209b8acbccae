/* SPDX-License-Identifier: Apache-2.0 */
/* Bounded text building for the library's own code. */
#ifndef FRRUCI_COMMON_TEXT_H
#define FRRUCI_COMMON_TEXT_H

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace frruci::common {

/// Formats into the whole of out: always terminated, cut at its last byte.
template <std::size_t N>
[[gnu::format(printf, 2, 3)]] inline void format(char (&out)[N], const char *text, ...) {
    va_list arguments;
    va_start(arguments, text);
    (void)vsnprintf(out, N, text, arguments); // a cut text is the required result
    va_end(arguments);
}

inline bool equals(const char *a, const char *b) {
    return strcmp(a, b) == 0;
}

inline bool startsWith(const char *text, const char *prefix) {
    return strncmp(text, prefix, strlen(prefix)) == 0;
}

/// The number at the start of a decimal text; 0 where there is none. Front-end numbers are not
/// validated here: the daemon refuses what is out of range.
inline int32_t number(const char *text) {
    return static_cast<int32_t>(strtol(text, nullptr, 10));
}

} // namespace frruci::common

#endif
