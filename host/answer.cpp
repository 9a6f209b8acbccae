// SPDX-License-Identifier: Apache-2.0
// Rows are printed as they come; only what may be the closing word is held back.

#include "host/answer.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/json.h"

namespace frruci::host {

namespace {

constexpr std::size_t kClosingWord = 4; // the longest, "fail"

} // namespace

void Answer::take(const char *bytes, std::size_t count) {
    char *grown = static_cast<char *>(realloc(held_, size_ + count + 1));
    if (grown == nullptr) {
        (void)fprintf(stderr, "frruci: no memory for the answer\n");
        exit(kNoAnswer);
    }
    held_ = grown;
    memcpy(held_ + size_, bytes, count);
    size_ += count;
    held_[size_] = '\0';
    taken_ = taken_ || count > 0;
    if (ending_ != Ending::Json && size_ > kClosingWord) {
        print(size_ - kClosingWord);
    }
}

Status Answer::finish() {
    if (!taken_) {
        return kNoAnswer;
    }
    if (ending_ == Ending::Json) {
        return finishJson();
    }
    const bool ok = endsWith("ok");
    const bool fail = endsWith("fail");
    if (ending_ == Ending::Rows && ok) {
        size_ -= strlen("ok"); // an end mark, not a row
    }
    print(size_);
    if (ending_ != Ending::Rows) {
        (void)putchar('\n');
    }
    (void)fflush(stdout);
    if (ok || ending_ == Ending::Stream) {
        return kAnsweredOk;
    }
    return fail ? kAnsweredFail : kNoAnswer;
}

bool Answer::endsWith(const char *word) const {
    const std::size_t length = strlen(word);
    return size_ >= length && memcmp(held_ + size_ - length, word, length) == 0;
}

void Answer::print(std::size_t count) {
    (void)fwrite(held_, 1, count, stdout);
    size_ -= count;
    memmove(held_, held_ + count, size_);
}

Status Answer::finishJson() {
    if (!isCompleteJson(held_)) {
        (void)fprintf(stderr, "frruci: the answer is not complete JSON (%zu bytes)\n", size_);
        return kAnsweredFail;
    }
    (void)puts(held_);
    (void)fflush(stdout);
    return kAnsweredOk;
}

} // namespace frruci::host
