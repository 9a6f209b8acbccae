// SPDX-License-Identifier: Apache-2.0
// The words of a file in UCI syntax.

#include "words.h"

#include <cstdlib>
#include <cstring>

namespace frruci::uci {

namespace {

/// Where a line with a NUL byte is taken to end depends on this and on its doubling.
constexpr std::size_t kFirstCapacity = 32;
constexpr char kSeparators[] = " \t";

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace

Words::~Words() {
    free(line_);
}

bool Words::grow() {
    const std::size_t capacity = capacity_ == 0 ? kFirstCapacity : capacity_ * 2;
    auto *line = static_cast<char *>(realloc(line_, capacity));
    if (line == nullptr) {
        noMemory_ = true;
        return false;
    }
    line_ = line;
    capacity_ = capacity;
    return true;
}

/// Copies up to a line's end what has room with its NUL, and returns how much that was.
std::size_t Words::take(char *place, std::size_t room) {
    std::size_t count = 0;
    while (count + 1 < room && next_ != end_) {
        place[count++] = *next_;
        if (*next_++ == '\n') {
            break;
        }
    }
    place[count] = '\0';
    return count;
}

/// Reads one line from there on; nothing at the end of the text.
void Words::readAt(std::size_t place) {
    if (place + 1 >= capacity_ && !grow()) {
        return;
    }
    for (;;) {
        if (take(line_ + place, capacity_ - place) == 0 || line_[place] == '\0') {
            return;
        }
        place += strlen(line_ + place); // less than was taken where there is a NUL
        filled_ = place;
        if (line_[place - 1] == '\n' || !grow()) {
            return;
        }
    }
}

bool Words::nextLine() {
    if (next_ == end_) {
        return false;
    }
    at_ = 0;
    readAt(0);
    return !noMemory_;
}

void Words::skipSpaces() {
    while (isSpace(line_[at_])) {
        ++at_;
    }
}

const char *Words::command() {
    char *word = line_ + at_ + strspn(line_ + at_, kSeparators);
    word[strcspn(word, kSeparators)] = '\0';
    return *word == '\0' ? nullptr : word;
}

bool Words::skipCommand() {
    at_ += strlen(line_ + at_) + 1;
    return at_ <= filled_;
}

bool Words::next(std::size_t &word) {
    skipSpaces();
    word = at_;
    std::size_t target = at_;
    if (line_[at_] == ';') {
        line_[at_++] = '\0';
        return true;
    }
    do {
        if (line_[at_] == '#') {
            line_[at_] = '\0';
        }
        if (line_[at_] == ';' || line_[at_] == '\0') {
            break;
        }
        if (!takePiece(target)) {
            return false;
        }
    } while (line_[at_] != '\0' && !isSpace(line_[at_]));
    if (line_[at_] != '\0' && line_[at_] != ';') {
        ++at_; // the space, where the word's NUL may come to stand
    }
    line_[target] = '\0';
    return !noMemory_;
}

/// A quoted part, an escaped character or a bare one.
bool Words::takePiece(std::size_t &target) {
    switch (line_[at_]) {
    case '\'':
    case '"':
        return takeQuoted(target);
    case '\\':
        return takeEscaped(target);
    default:
        keep(target);
        return true;
    }
}

/// What stands between two of these quotes; only double ones know escapes.
bool Words::takeQuoted(std::size_t &target) {
    const char quote = line_[at_++];
    while (line_[at_] != quote) {
        const bool isEscape = quote == '"' && line_[at_] == '\\';
        if (!(isEscape ? takeEscaped(target) : takeInQuotes(target))) {
            return false;
        }
    }
    ++at_;
    return true;
}

/// A character, or the next line where this one ends; false where the text ends too.
bool Words::takeInQuotes(std::size_t &target) {
    if (line_[at_] != '\0') {
        keep(target);
        return true;
    }
    readAt(at_);
    return !noMemory_ && line_[at_] != '\0';
}

/// True when the line ends here, and the next one was read into its place.
bool Words::join() {
    const char *here = line_ + at_;
    if (*here != '\0' && *here != '\n' && strcmp(here, "\r\n") != 0) {
        return false;
    }
    readAt(at_);
    return true;
}

/// A backslash and what it does: joins lines, or takes one character literally.
bool Words::takeEscaped(std::size_t &target) {
    ++at_;
    if (!join()) {
        keep(target);
    }
    return !noMemory_;
}

} // namespace frruci::uci
