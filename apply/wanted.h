/* SPDX-License-Identifier: Apache-2.0 */
/* What a daemon should have: the commands of a replay, taken as the daemon would take them. */
#ifndef FRRUCI_APPLY_WANTED_H
#define FRRUCI_APPLY_WANTED_H

#include "apply/settings.h"

namespace frruci::apply {

/// What is known about a daemon beside its configuration.
struct Surroundings {
    int majorVersion = 0;
    unsigned long maximumPaths = 0; ///< in use
    char routerId[16] = {};         ///< in use
    bool hasFullNeighbours = false;
    bool (*isPointToPoint)(const char *interface) = nullptr;
};

/// A line that no daemon takes, so that it is not even sent.
struct Impossible {
    const char *where;
    const char *text; ///< without a key
    Impossible *next;
};

/// Takes the sessions of one target's replay.
class Replay {
public:
    Replay(Target target, Settings &wanted) : target_(target), wanted_(wanted) {}

    void beginSession() { where_ = nullptr; }
    void command(const char *text);
    /// One command in a context of its own.
    void command(const char *where, const char *text);
    const Impossible *impossible() const { return impossible_; }

private:
    /// A line that was taken. Replays repeat their way into a context for each line, and many lines
    /// for their other instance.
    struct Taken {
        const char *where = nullptr; ///< null for none
        char text[kLineBytes];
        const char *path; ///< of the context that it opened, else where
    };

    bool repeats(const char *text);
    void take(const char *text, const Line &line);
    void note(const char *text, const Line &line);

    Target target_;
    Settings &wanted_;
    const char *where_ = nullptr; ///< null outside of the configuration
    Impossible *impossible_ = nullptr;
    Taken opener_; ///< the last ones
    Taken line_;
};

/// Settles the wanted settings, without those that the daemon does not show.
void settleWanted(Settings &wanted, const Settings &running, const Surroundings &surroundings);

/// True for the daemons of NHRP: frruci adds to their configuration and removes only what the store
/// switches off by name.
bool isOnlyAddedTo(Target target);

/// Keeps of the running settings only what the wanted ones change and what one of the removals
/// names, for configurations that frruci only adds to.
struct Unwanted {
    const char *where;
    const char *words; ///< as the lines begin
};
void keepOthers(Settings &running, const Settings &wanted, const Unwanted *unwanted,
                std::size_t count);

} // namespace frruci::apply

#endif
