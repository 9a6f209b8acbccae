// SPDX-License-Identifier: Apache-2.0
// The words of a file in UCI syntax: quotes, escapes, comments and separators resolved.
#ifndef FRRUCI_COMPAT_UCI_WORDS_H
#define FRRUCI_COMPAT_UCI_WORDS_H

#include <cstddef>

#include "text.h"

namespace frruci::uci {

enum class Token {
    Word,      ///< a word was stored
    Separator, ///< ";" between two commands of a line
    LineEnd,   ///< also the end of the text
    Malformed, ///< an unclosed quote or a NUL byte
    NoMemory,
};

class Words {
public:
    Words(const char *text, std::size_t length) : at_(text), end_(text + length) {}

    /// Goes to the next character that is neither blank nor in a comment; false at the end.
    bool skipToCommand();
    /// Takes the bare word that begins here and the blank behind it. False when there is no blank.
    bool command(Text &word);
    /// Takes the next word of the line.
    Token next(Text &word);
    /// Goes behind the end of the current line; quotes have no meaning there.
    void skipLine();
    /// Where reading stands; seek goes back there.
    const char *position() const { return at_; }
    void seek(const char *position) { at_ = position; }

private:
    bool atEnd() const { return at_ == end_; }
    std::size_t joinLength() const;
    void skipBlanks();
    void skipToLineEnd();
    Token takeWord(Text &word);
    bool takePiece(Text &word);
    bool takeBare(Text &word);
    bool takeSingleQuoted(Text &word);
    bool takeDoubleQuoted(Text &word);
    void takeEscaped(Text &word);

    const char *at_;
    const char *end_;
};

} // namespace frruci::uci

#endif
