/* SPDX-License-Identifier: Apache-2.0 */
/* How deep a call goes: the stack below the caller is painted before it, and read again after it.
 */
#ifndef FRRUCI_TESTS_GOLDEN_PAINTED_STACK_H
#define FRRUCI_TESTS_GOLDEN_PAINTED_STACK_H

#include <cstddef>
#include <cstdint>

namespace golden {

inline constexpr std::size_t kPaintedBytes = 256 * 1024;
inline constexpr uint64_t kPaint = 0xA5C3'5A3C'96E1'1E69;

/// Nothing else may be called between this and the call that is measured.
[[gnu::noinline]] inline void paintStack() {
    volatile uint64_t room[kPaintedBytes / sizeof(uint64_t)];
    for (volatile uint64_t &word : room) {
        word = kPaint;
    }
}

/// Bytes below this function's caller that the call has written; kPaintedBytes when there was no
/// end.
[[gnu::noinline]] inline std::size_t usedStack() {
    volatile uint64_t room[kPaintedBytes / sizeof(uint64_t)];
    asm volatile("" : "=m"(room)); // it is read as it was left
    std::size_t untouched = 0;
    while (untouched < sizeof room / sizeof room[0] && room[untouched] == kPaint) {
        ++untouched;
    }
    return sizeof room - untouched * sizeof(uint64_t);
}

} // namespace golden

#endif
