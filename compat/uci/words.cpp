// SPDX-License-Identifier: Apache-2.0
// The words of a file in UCI syntax.

#include "words.h"

namespace frruci::uci {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

bool isSpace(char c) {
    return isBlank(c) || c == '\n';
}

/// Blanks and the characters with a meaning of their own; NUL is refused.
bool endsBare(char c) {
    switch (c) {
    case '\'':
    case '"':
    case '\\':
    case '#':
    case ';':
    case '\0':
        return true;
    default:
        return isSpace(c);
    }
}

} // namespace

/// Length of the backslash and line end that stand here and join two lines; 0 if others do.
std::size_t Words::joinLength() const {
    const auto left = static_cast<std::size_t>(end_ - at_);
    if (left >= 2 && at_[0] == '\\' && at_[1] == '\n') {
        return 2;
    }
    return left >= 3 && at_[0] == '\\' && at_[1] == '\r' && at_[2] == '\n' ? 3 : 0;
}

void Words::skipBlanks() {
    while (!atEnd()) {
        const std::size_t join = joinLength();
        if (join == 0 && !isBlank(*at_)) {
            break;
        }
        at_ += join == 0 ? 1 : join;
    }
}

void Words::skipToLineEnd() {
    while (!atEnd() && *at_ != '\n') {
        ++at_;
    }
}

void Words::skipLine() {
    skipToLineEnd();
    if (!atEnd()) {
        ++at_;
    }
}

bool Words::skipToCommand() {
    skipBlanks();
    while (!atEnd() && (*at_ == '\n' || *at_ == '#')) {
        skipLine();
        skipBlanks();
    }
    return !atEnd();
}

bool Words::command(Text &word) {
    word.clear();
    const char *from = at_;
    while (!atEnd() && !isSpace(*at_)) {
        ++at_;
    }
    word.append(from, static_cast<std::size_t>(at_ - from));
    return !atEnd() && (*at_ == ' ' || *at_ == '\t');
}

Token Words::next(Text &word) {
    word.clear();
    skipBlanks();
    if (!atEnd() && *at_ == ';' && (at_ + 1 == end_ || isSpace(at_[1]))) {
        ++at_;
        return Token::Separator;
    }
    if (atEnd() || *at_ == '\n' || *at_ == '#' || *at_ == ';') {
        skipLine();
        return Token::LineEnd;
    }
    return takeWord(word);
}

Token Words::takeWord(Text &word) {
    while (!atEnd() && !isSpace(*at_) && *at_ != '#') {
        // Intended: right behind a word a semicolon loses the rest of the line, as in libuci.
        if (*at_ == ';') {
            skipToLineEnd();
            break;
        }
        if (!takePiece(word)) {
            return Token::Malformed;
        }
    }
    return word.failed() ? Token::NoMemory : Token::Word;
}

bool Words::takePiece(Text &word) {
    switch (*at_) {
    case '\'':
        return takeSingleQuoted(word);
    case '"':
        return takeDoubleQuoted(word);
    case '\\':
        takeEscaped(word);
        return true;
    default:
        return takeBare(word);
    }
}

/// Characters without a meaning of their own, at least one.
bool Words::takeBare(Text &word) {
    const char *from = at_;
    while (!atEnd() && !endsBare(*at_)) {
        ++at_;
    }
    word.append(from, static_cast<std::size_t>(at_ - from));
    return at_ != from; // only a NUL can stand here
}

bool Words::takeSingleQuoted(Text &word) {
    const char *from = ++at_;
    while (!atEnd() && *at_ != '\'' && *at_ != '\0') {
        ++at_;
    }
    word.append(from, static_cast<std::size_t>(at_ - from));
    return !atEnd() && *at_++ == '\'';
}

bool Words::takeDoubleQuoted(Text &word) {
    ++at_;
    while (!atEnd() && *at_ != '"' && *at_ != '\0') {
        if (*at_ == '\\') {
            takeEscaped(word);
        } else {
            word.append(*at_++);
        }
    }
    return !atEnd() && *at_++ == '"';
}

/// A backslash and what it does: joins lines, or takes one character literally.
void Words::takeEscaped(Text &word) {
    const std::size_t join = joinLength();
    if (join != 0) {
        at_ += join;
        return;
    }
    ++at_;
    if (!atEnd() && *at_ != '\0') { // a NUL is left to be refused
        word.append(*at_++);
    }
}

} // namespace frruci::uci
