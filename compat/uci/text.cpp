// SPDX-License-Identifier: Apache-2.0
// A growing text for words, lines and whole files.

#include "text.h"

#include <cstdint>
#include <cstdlib>

namespace frruci::uci {

namespace {

constexpr std::size_t kFirstCapacity = 64;

} // namespace

Text::~Text() {
    free(data_);
}

void Text::clear() {
    size_ = 0;
    if (data_ != nullptr) {
        data_[0] = '\0';
    }
}

char *Text::extend(std::size_t count) {
    const std::size_t needed = size_ + count + 1;
    if (needed > capacity_) {
        const std::size_t doubled = capacity_ == 0 ? kFirstCapacity : capacity_ * 2;
        const std::size_t capacity = needed > doubled ? needed : doubled;
        auto *data = static_cast<char *>(realloc(data_, capacity));
        if (data == nullptr) {
            failed_ = true;
            return nullptr;
        }
        data_ = data;
        capacity_ = capacity;
    }
    return data_ + size_;
}

void Text::grow(std::size_t count) {
    size_ += count;
    data_[size_] = '\0';
}

void Text::append(const char *bytes, std::size_t count) {
    char *place = extend(count);
    if (place != nullptr) {
        memcpy(place, bytes, count);
        grow(count);
    }
}

void appendQuoted(Text &out, const char *text) {
    out.append('\'');
    for (;;) {
        const std::size_t plain = strcspn(text, "'");
        out.append(text, plain);
        text += plain;
        if (*text == '\0') {
            break;
        }
        out.append("'\\''");
        ++text;
    }
    out.append('\'');
}

} // namespace frruci::uci
