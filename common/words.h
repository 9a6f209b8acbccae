/* SPDX-License-Identifier: Apache-2.0 */
/* The words of a front-end request. */
#ifndef FRRUCI_COMMON_WORDS_H
#define FRRUCI_COMMON_WORDS_H

#include <cstdint>

#include "common/text.h"

namespace frruci::common {

/// The argument vector of a handler. A null entry ends it, whatever the count says; nothing after
/// it is read.
class Words {
public:
    Words(int32_t argc, char **argv) : argv_(argv) {
        while (argv != nullptr && count_ < argc && argv[count_] != nullptr) {
            ++count_;
        }
    }

    int32_t count() const { return count_; }

    /// The word; null after the last one.
    const char *operator[](int32_t index) const { return index < count_ ? argv_[index] : nullptr; }

    /// The word, or what a log line shows in place of a missing one.
    const char *shown(int32_t index, const char *missing = "") const {
        return index < count_ ? argv_[index] : missing;
    }

    /// Whether the word is there and is this text.
    bool is(int32_t index, const char *text) const {
        return index < count_ && equals(argv_[index], text);
    }

    /// The number at the start of a word that is there.
    int32_t number(int32_t index) const { return common::number(argv_[index]); }

private:
    char **argv_;
    int32_t count_ = 0;
};

} // namespace frruci::common

#endif
