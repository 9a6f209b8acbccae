// SPDX-License-Identifier: Apache-2.0
// The words of a file in UCI syntax: quotes, escapes, comments and separators resolved. Words are
// taken apart in the line's own memory, as in libuci: what stands after a semicolon, a NUL or a
// joined line depends on that.
#ifndef FRRUCI_COMPAT_UCI_WORDS_H
#define FRRUCI_COMPAT_UCI_WORDS_H

#include <cstddef>

namespace frruci::uci {

class Words {
public:
    Words(const char *text, std::size_t length) : next_(text), end_(text + length) {}
    ~Words();
    Words(const Words &) = delete;
    Words &operator=(const Words &) = delete;

    /// Goes on to the next line; false at the end of the text or without memory.
    bool nextLine();
    /// The next word up to a space or tab; null at the line's end. Quotes mean nothing in it.
    const char *command();
    /// Goes past what command gave; false when the line ends there.
    bool skipCommand();
    /// Takes the next word and stores where it begins: at the line's end or a separator an empty
    /// one. False for an unclosed quote. A word may move when the next one is taken.
    bool next(std::size_t &word);
    /// The word that next stored, to be split in place; valid until the next call.
    char *at(std::size_t word) { return line_ + word; }
    /// What is left of the line.
    const char *rest() const { return line_ + at_; }
    void skipSpaces();
    bool noMemory() const { return noMemory_; }

private:
    std::size_t take(char *place, std::size_t room);
    bool grow();
    void readAt(std::size_t place);
    bool join();
    bool takeQuoted(std::size_t &target);
    bool takeInQuotes(std::size_t &target);
    bool takeEscaped(std::size_t &target);
    bool takePiece(std::size_t &target);
    void keep(std::size_t &target) { line_[target++] = line_[at_++]; }

    const char *next_; ///< what is not read yet
    const char *end_;
    char *line_ = nullptr;
    std::size_t capacity_ = 0;
    std::size_t filled_ = 0;
    std::size_t at_ = 0;
    bool noMemory_ = false;
};

} // namespace frruci::uci

#endif
