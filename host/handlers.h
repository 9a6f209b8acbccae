/* SPDX-License-Identifier: Apache-2.0 */
/* The handlers that the host knows: the words that each takes, and the pipe that it answers on. */
#ifndef FRRUCI_HOST_HANDLERS_H
#define FRRUCI_HOST_HANDLERS_H

#include <cstddef>

#include "host/status.h"
#include "host/text.h"

namespace frruci::host {

/// How a handler answers.
enum class Ending {
    kWord,   ///< one word, "ok" or "fail"
    kNone,   ///< not at all
    kRows,   ///< rows, then "ok"
    kStream, ///< text until the handler returns
};

struct Handler {
    const char *name;
    const char *pipe; ///< below /tmp/tmp
    Ending ending;
    bool takesWords;
    bool isSwitch;    ///< may have nothing to do: what is off stays off
    const char *does; ///< for people
};

extern const Handler kHandlers[];
extern const std::size_t kHandlerCount;

/// Words that a handler takes, see words.h.
struct Form {
    const char *handler;
    const char *words;
};

extern const Form kForms[];
extern const std::size_t kFormCount;

/// Null for a name that the host does not know.
const Handler *findHandler(const char *name);

/// kAccepted, or kWrongUsage with a message that names the word and what is allowed.
Status checkWords(const Handler &handler, int count, char **words);

/// True when the word at index is a key in the form that the words have.
bool isSecretWord(const Handler &handler, int count, char **words, int index);

/// Adds the forms of a handler, one a line, each after its name.
void addForms(const Handler &handler, Text &text);

} // namespace frruci::host

#endif
