/* SPDX-License-Identifier: Apache-2.0 */
/* A configuration as a plain row of settings, each with the context that it stands in. */
#ifndef FRRUCI_APPLY_SETTINGS_H
#define FRRUCI_APPLY_SETTINGS_H

#include <cstddef>
#include <cstdint>

#include "apply/kinds.h"
#include "apply/memory.h"

namespace frruci::apply {

/// One line. A context is written as the lines that lead to it, with a line feed between them; the
/// top is the empty text.
struct Setting {
    const Kind *kind;
    const char *where; ///< the context that the line stands in
    const char *path;  ///< the context that it opens, else where
    const char *text;
    std::uint32_t nameAt; ///< its name in the text: "ip ospf cost", "network 10.0.0.0/8"
    std::uint32_t nameBytes;
    std::uint32_t order; ///< as it was added
    std::uint8_t rank;   ///< of its path among contexts
    bool gone;
};

/// The place that a context is; Foreign for those that frruci leaves alone.
Place placeOf(Target target, const char *where);

/// The order in which contexts are gone through.
std::uint8_t rankOf(Target target, const char *where);

/// Where the line opens a context: its path. Owned by the arena.
const char *pathBelow(Arena &arena, const char *where, const char *line);

/// True for the context itself and for those below it.
bool isBelow(const char *where, const char *context);

/// True when text begins with these words.
bool beginsWithWords(const char *text, const char *words);

class Settings {
public:
    explicit Settings(Arena &arena) : arena_(arena) {}
    ~Settings();
    Settings(const Settings &) = delete;
    Settings &operator=(const Settings &) = delete;

    void add(const char *where, const Line &line);
    /// What "no WORDS" in a context takes away.
    void remove(const char *where, const char *words);
    /// In order of context, kind and name. Of several with one name the daemon keeps the one added
    /// last, or the first of a kind that must be removed before it changes. What was removed is
    /// dropped.
    void settle();

    Setting *begin() { return items_; }
    Setting *end() { return items_ + count_; }
    const Setting *begin() const { return items_; }
    const Setting *end() const { return items_ + count_; }
    std::size_t count() const { return count_; }
    /// Drops the settings that are marked as gone.
    void sweep();
    Arena &arena() { return arena_; }

private:
    Arena &arena_;
    Setting *items_ = nullptr;
    std::size_t count_ = 0;
    std::size_t room_ = 0;
};

/// The order of contexts, kinds and names.
int compare(const Setting &a, const Setting &b);

} // namespace frruci::apply

#endif
