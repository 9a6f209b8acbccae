// SPDX-License-Identifier: Apache-2.0
// Growing texts.

#include "host/text.h"

#include <cstdarg>

#include "host/status.h"

namespace frruci::host {

void *grow(void *memory, std::size_t bytes) {
    void *grown = realloc(memory, bytes);
    if (grown == nullptr) {
        (void)fputs("frruci: out of memory\n", stderr);
        _Exit(kNotUsable);
    }
    return grown;
}

char *copyOf(const char *text, std::size_t size) {
    auto *copy = static_cast<char *>(grow(nullptr, size + 1));
    memcpy(copy, text, size);
    copy[size] = '\0';
    return copy;
}

char *copyOf(const char *text) {
    return copyOf(text, strlen(text));
}

void Text::add(const char *bytes, std::size_t count) {
    bytes_ = static_cast<char *>(grow(bytes_, size_ + count + 1));
    memcpy(bytes_ + size_, bytes, count);
    size_ += count;
    bytes_[size_] = '\0';
}

void Text::addRest(FILE *file) {
    char bytes[4096];
    for (std::size_t count = 0; (count = fread(bytes, 1, sizeof bytes, file)) > 0;) {
        add(bytes, count);
    }
}

void Text::addf(const char *format, ...) {
    char *text = nullptr;
    va_list arguments;
    va_start(arguments, format);
    const int length = vasprintf(&text, format, arguments);
    va_end(arguments);
    if (length >= 0) {
        add(text, static_cast<std::size_t>(length));
        free(text);
    }
}

void Text::cut(std::size_t size) {
    if (size < size_) {
        size_ = size;
        bytes_[size] = '\0';
    }
}

bool Text::endsWith(const char *end) const {
    const std::size_t length = strlen(end);
    return size_ >= length && memcmp(get() + size_ - length, end, length) == 0;
}

} // namespace frruci::host
