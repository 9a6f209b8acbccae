/* SPDX-License-Identifier: Apache-2.0 */
/* What differs between two configurations, and the commands that make it the same. */
#ifndef FRRUCI_APPLY_DIFFERENCE_H
#define FRRUCI_APPLY_DIFFERENCE_H

#include <cstdio>

#include "apply/settings.h"

namespace frruci::apply {

/// What stands in the place of a key.
inline constexpr const char *kMask = "***";

/// One line: added (no old), removed (no now) or changed.
struct Change {
    const Setting *old;
    const Setting *now;
    bool implied; ///< removed with the context that it stands in
};

struct Changes {
    Change *items = nullptr;
    std::size_t count = 0;
};

/// Both settled. Owned by the arena.
Changes difference(Arena &arena, const Settings &running, const Settings &wanted);

/// Prints the changes as the daemon writes them, each with a sign in front of its line and below
/// its context. Keys are shown as *** unless showKeys.
void printChanges(FILE *out, const Changes &changes, bool showKeys);

/// One command of a session in the configuration.
struct Step {
    enum class Does : std::uint8_t { Enter, Leave, Set, Remove };
    Does does;
    const char *text;
    const Kind *kind; ///< of what is set or removed; null for others
};

struct Steps {
    Step *items = nullptr;
    std::size_t count = 0;
};

/// The commands of one session that begins after "configure", for what differs from the wanted
/// settings. Owned by the arena.
Steps stepsFor(Arena &arena, const Changes &changes, const Settings &wanted);

/// A text with its key as ***, in the caller's room.
const char *maskedText(const Step &step, bool showKeys, char (&room)[kLineBytes]);
const char *maskedText(const Setting &setting, bool showKeys, char (&room)[kLineBytes]);

} // namespace frruci::apply

#endif
