// SPDX-License-Identifier: Apache-2.0
// A growing text for words, lines and whole files; remembers that memory ran out.
#ifndef FRRUCI_COMPAT_UCI_TEXT_H
#define FRRUCI_COMPAT_UCI_TEXT_H

#include <cstddef>
#include <cstring>

namespace frruci::uci {

class Text {
public:
    Text() = default;
    ~Text();
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;

    void clear();
    void append(char character) { append(&character, 1); }
    void append(const char *text) { append(text, strlen(text)); }
    void append(const char *bytes, std::size_t count);
    /// Makes room for count more bytes and returns where they begin; null without memory.
    char *extend(std::size_t count);
    /// Counts bytes that were put where extend said.
    void grow(std::size_t count);

    /// NUL-terminated; empty, not null, while nothing was appended.
    const char *data() const { return data_ == nullptr ? "" : data_; }
    /// The same, to be split in place; null while nothing was appended.
    char *characters() { return data_; }
    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    /// An append was lost for want of memory.
    bool failed() const { return failed_; }

private:
    char *data_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
    bool failed_ = false;
};

/// Appends text in single quotes, in the form that a word of a file takes.
void appendQuoted(Text &out, const char *text);

} // namespace frruci::uci

#endif
