/* SPDX-License-Identifier: Apache-2.0 */
/* A fuzzer's bytes as a request of the front-end. The bytes are lines: a head whose first letter
 * names the handler, what argc says more than there are words, then a word each; "~" alone is a
 * null entry. */
#ifndef FRRUCI_TESTS_FUZZ_REQUEST_H
#define FRRUCI_TESTS_FUZZ_REQUEST_H

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace fuzz {

constexpr std::size_t kMaxBytes = 4096;
constexpr int kMaxWords = 64;
constexpr int kSpare = 8; // null entries after the words

inline void insist(bool truth) {
    if (!truth) {
        abort();
    }
}

struct Request {
    char text[kMaxBytes + 1] = {};
    const char *head = "";
    long more = 0;
    int count = 0;
    char *words[kMaxWords + kSpare] = {};
};

/// request must stay where it is: its words point into its text.
inline void read(const unsigned char *data, std::size_t size, Request &request) {
    request = Request();
    memcpy(request.text, data, size < kMaxBytes ? size : kMaxBytes);
    char *rest = request.text;
    for (int line = 0; rest != nullptr && request.count < kMaxWords; ++line) {
        char *word = strsep(&rest, "\n");
        if (line == 0) {
            request.head = word;
        } else if (line == 1) {
            request.more = strtol(word, nullptr, 10);
        } else {
            request.words[request.count++] = strcmp(word, "~") == 0 ? nullptr : word;
        }
    }
}

/// What argc says: any number, up to most.
inline int32_t argcOf(const Request &request, long most = INT32_MAX) {
    const long more = std::clamp(request.more, long{INT32_MIN}, long{INT32_MAX});
    return static_cast<int32_t>(std::clamp(request.count + more, long{INT32_MIN}, most));
}

} // namespace fuzz

#endif
