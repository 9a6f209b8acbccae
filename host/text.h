/* SPDX-License-Identifier: Apache-2.0 */
/* Texts and lists that grow. Running out of memory ends the program. */
#ifndef FRRUCI_HOST_TEXT_H
#define FRRUCI_HOST_TEXT_H

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace frruci::host {

/// As realloc and strdup, but never null.
void *grow(void *memory, std::size_t bytes);
char *copyOf(const char *text);
char *copyOf(const char *text, std::size_t size);

inline bool equals(const char *a, const char *b) {
    return strcmp(a, b) == 0;
}

inline bool startsWith(const char *text, const char *start) {
    return strncmp(text, start, strlen(start)) == 0;
}

/// A text that grows at its end; always terminated.
class Text {
public:
    Text() = default;
    ~Text() { free(bytes_); }
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;

    void add(const char *bytes, std::size_t count);
    void add(const char *text) { add(text, strlen(text)); }
    /// All that is left of a file.
    void addRest(FILE *file);
    [[gnu::format(printf, 2, 3)]] void addf(const char *format, ...);
    void cut(std::size_t size);
    void clear() { cut(0); }

    const char *get() const { return bytes_ == nullptr ? "" : bytes_; }
    std::size_t size() const { return size_; }
    bool endsWith(const char *end) const;

private:
    char *bytes_ = nullptr;
    std::size_t size_ = 0;
};

/// Plain records in a row; what they point to is theirs. Has no destructor, so that a list may be
/// static where nothing runs at the program's end: whoever is done with it releases it.
template <typename Item> struct List {
    Item &add(const Item &item) {
        items_ = static_cast<Item *>(grow(items_, (count_ + 1) * sizeof(Item)));
        items_[count_] = item;
        return items_[count_++];
    }
    void clear() { count_ = 0; }
    void release() {
        free(items_);
        *this = {};
    }

    std::size_t count() const { return count_; }
    bool isEmpty() const { return count_ == 0; }
    Item &last() { return items_[count_ - 1]; }
    Item &operator[](std::size_t index) { return items_[index]; }
    const Item &operator[](std::size_t index) const { return items_[index]; }
    Item *begin() { return items_; }
    Item *end() { return items_ + count_; }
    const Item *begin() const { return items_; }
    const Item *end() const { return items_ + count_; }

private:
    Item *items_ = nullptr;
    std::size_t count_ = 0;
};

} // namespace frruci::host

#endif
