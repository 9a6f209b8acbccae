/* SPDX-License-Identifier: Apache-2.0 */
/* The program's verbs: one table for the command line, the help and the manual page. */
#ifndef FRRUCI_HOST_VERBS_H
#define FRRUCI_HOST_VERBS_H

#include <cstddef>

#include "host/status.h"

namespace frruci::host {

/// Who may run a verb beside it.
enum class Alone {
    kNo,
    kYes, ///< it changes something, or reads a reply pipe that others use
};

/// What people read about a verb.
struct VerbText {
    const char *words;
    const char *does;    ///< one line
    const char *details; ///< for help and the manual page
};

struct Verb {
    const char *name;
    VerbText text;
    Alone alone;
    bool exactWords; ///< options end where its words begin
    Status (*run)(int count, char **words);
};

extern const Verb kVerbs[];
extern const std::size_t kVerbCount;

/// Null for a name that is none.
const Verb *findVerb(const char *name);

/// Runs the verb that the first word names with the others.
Status runWords(int count, char **words);

} // namespace frruci::host

#endif
