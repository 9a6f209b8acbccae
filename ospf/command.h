/* SPDX-License-Identifier: Apache-2.0 */
/* What the OSPF commands share: their text, the two instances, and recording what was accepted. */
#ifndef FRRUCI_OSPF_COMMAND_H
#define FRRUCI_OSPF_COMMAND_H

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "ospf/results.h"
#include "ospf/uc_ospf.h"
#include "ospf/vty_ospf.h"
#include "vty/session.h"

namespace frruci::ospf {

inline constexpr uint32_t kSet = 1;
inline constexpr uint32_t kUnset = 0;

// ---- text ----

using CommandText = char[vty::kCommandBytes];

inline constexpr std::size_t kPieceBytes = 64;

/// A missing text argument is an empty one.
inline const char *orEmpty(const char *text) {
    return text == nullptr ? "" : text;
}

/// A table's text for a number; empty for a number that has none.
template <std::size_t N> const char *textAt(const char *const (&texts)[N], uint32_t index) {
    return index < N ? texts[index] : "";
}

/// Formats one piece, cut at 63 characters, after the text, which is cut at its last byte.
[[gnu::format(printf, 2, 3)]] inline void append(CommandText &text, const char *piece, ...) {
    char formatted[kPieceBytes];
    va_list arguments;
    va_start(arguments, piece);
    (void)vsnprintf(formatted, sizeof formatted, piece, arguments); // a cut piece is required
    va_end(arguments);
    strncat(text, formatted, sizeof text - 1 - strlen(text));
}

// ---- instances ----

struct Instance {
    uint32_t selector;
    uint16_t processId;
};

inline constexpr Instance kWan = {.selector = 1, .processId = 1};
inline constexpr Instance kLan = {.selector = 0, .processId = 2};

/// Runs step(instance) for the WAN and then for the LAN; 0, or the first failure, which ends it.
template <typename Step> uint32_t forBoth(Step step) {
    const uint32_t result = step(kWan);
    return result == kSuccess ? step(kLan) : result;
}

/// Runs step(slot) for the slot of a process id; a process id without one has nothing to record.
template <typename Step> uint32_t inSlotOf(uint16_t processId, Step step) {
    const uint32_t slot = ucOspfHasProcessId(processId);
    return slot != kNoSlot ? step(slot) : kSuccess;
}

template <typename Step> uint32_t inBothSlots(Step step) {
    return forBoth(
        [&step](const Instance &instance) { return inSlotOf(instance.processId, step); });
}

/// Sends the command in the router context, once for each instance.
inline uint32_t sendToBoth(const char *command) {
    return forBoth([command](const Instance &instance) {
        return vtyOspfConfigOspf(0, command, instance.selector);
    });
}

/// What a command comes to: record() once it was accepted, else the failure of the sending.
template <typename Record> uint32_t onceAccepted(uint32_t sent, Record record) {
    return sent == kSuccess ? record() : sent;
}

// ---- keys of the model ----

/// A key of two words, as the model's list routines take it.
constexpr uint64_t wordPair(uint32_t first, uint32_t second) {
    return static_cast<uint64_t>(second) << 32 | first;
}

} // namespace frruci::ospf

#endif
