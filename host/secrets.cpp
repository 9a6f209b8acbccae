// SPDX-License-Identifier: Apache-2.0
// Finds keys in commands and in what daemons say about them.

#include "host/secrets.h"

namespace frruci::host {

namespace {

/// Words of a daemon's command, or of the store, that a key follows.
constexpr const char *kBeforeKey[] = {
    "authentication-key ",    " md5 ",       "key-string ",
    "authentication string ", "simple_key=", "md5_key=",
};

bool shown = false;

/// Where the key of a line starts; its end when it has none.
std::size_t keyStart(const char *line, std::size_t length) {
    std::size_t first = length;
    for (const char *before : kBeforeKey) {
        const std::size_t size = strlen(before);
        const void *found = memmem(line, length, before, size);
        if (found != nullptr) {
            const auto start = static_cast<std::size_t>(static_cast<const char *>(found) - line);
            first = start + size < first ? start + size : first;
        }
    }
    return first;
}

} // namespace

void showKeys() {
    shown = true;
}

bool keysAreShown() {
    return shown;
}

void addMasked(const char *text, Text &masked) {
    while (*text != '\0') {
        const std::size_t length = strcspn(text, "\r\n");
        const std::size_t start = shown ? length : keyStart(text, length);
        masked.add(text, start);
        if (start < length) {
            masked.add(kHidden);
        }
        const std::size_t ends = strspn(text + length, "\r\n");
        masked.add(text + length, ends);
        text += length + ends;
    }
}

} // namespace frruci::host
