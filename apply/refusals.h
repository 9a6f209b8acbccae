/* SPDX-License-Identifier: Apache-2.0 */
/* What came of applying the store, noted on the way and kept in /tmp/tmp for who asks later. */
#ifndef FRRUCI_APPLY_REFUSALS_H
#define FRRUCI_APPLY_REFUSALS_H

#include <cstddef>

#include "apply/protocols.h"
#include "apply/send.h"

namespace frruci::apply {

/// The answer for a line that no daemon takes, so that it is not even sent.
inline constexpr const char *kImpossible = "no daemon takes it";

/// A command that a daemon refused, and its words about it. Without keys.
struct Refusal {
    const char *daemon;
    const char *context; ///< empty at the top
    const char *command;
    const char *answer;
};

/// From here on notes are about this protocol; earlier ones about it are dropped.
void beginNotes(const Protocol &protocol);
/// What was refused so far is tried again.
void beginTry();
/// Copies the refusal, each once. False when it shall not be said: see keepQuiet.
bool noteRefusal(const Refusal &refusal);
void noteChanges(Target target, std::size_t count);
void endNotes(Outcome outcome);
/// The protocol is off, so nothing of it is refused.
void noteOff(const Protocol &protocol);

/// Whoever reads the notes needs no messages about refusals.
void keepQuiet();

/// What was noted since the last save.
std::size_t notedChanges();
void visitNotes(void (*hear)(const char *protocol, const Refusal &refusal, void *context),
                void *context);

/// Writes the notes into the file, if anything was sent or what it tells of a protocol is over, and
/// drops them. Refusals of protocols that were not applied stay in it. A file that cannot be
/// written is reported.
void saveNotes();

/// What the file tells: when something was sent the last time, in seconds since 1970, and how many
/// changes.
struct Saved {
    long long time;
    std::size_t changes;
};

/// False without a file.
bool readSaved(Saved &saved,
               void (*hear)(const char *protocol, const Refusal &refusal, void *context),
               void *context);

} // namespace frruci::apply

#endif
