/* SPDX-License-Identifier: Apache-2.0 */
/* The grammar of a handler's words, and whether given words fit. A form is a line of tokens:
 *
 *     add|del         one of these words
 *     1..255          a number in this range
 *     ADDRESS         a kind of word, see kKinds
 *     COST=1..65535   any of these with a name for people
 */
#ifndef FRRUCI_HOST_WORDS_H
#define FRRUCI_HOST_WORDS_H

#include <cstddef>
#include <string_view>

#include "host/text.h"

namespace frruci::host {

/// A word that is described rather than listed.
struct WordKind {
    const char *name;
    const char *meaning;
    bool (*fits)(const char *word);
    bool secret;
};

extern const WordKind kKinds[];
extern const std::size_t kKindCount;

/// One token of a form.
struct Token {
    std::string_view name;    ///< before "=", else empty
    std::string_view allowed; ///< the rest
};

/// Takes the first token off a form; false at its end.
bool nextToken(const char *&form, Token &token);

/// How many tokens a form has.
int tokensOf(const char *form);

/// The token at an index; the form is long enough.
Token tokenAt(const char *form, int index);

bool fits(const Token &token, const char *word);
bool isSecret(const Token &token);

/// Null for a range or a list of words.
const WordKind *kindOf(const Token &token);

/// The bounds of "low..high"; false for anything else.
bool rangeOf(const Token &token, long long &low, long long &high);

/// Adds what the token allows, in words for people.
void describe(const Token &token, Text &text);

} // namespace frruci::host

#endif
