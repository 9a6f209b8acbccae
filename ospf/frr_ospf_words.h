/* SPDX-License-Identifier: Apache-2.0 */
/* The front-end's argument vector, read safely. */
#ifndef FRRUCI_OSPF_FRR_OSPF_WORDS_H
#define FRRUCI_OSPF_FRR_OSPF_WORDS_H

#include <cstdint>

#include "common/text.h"

namespace frruci::ospf {

/// The words of a handler call. A null entry ends the vector; nothing behind it is read.
class Words {
public:
    Words(int32_t argc, char **argv) : argv_(argv) {
        while (argv != nullptr && count_ < argc && argv[count_] != nullptr) {
            ++count_;
        }
    }

    int32_t count() const { return count_; }

    /// A word below count().
    const char *operator[](int32_t index) const { return argv_[index]; }

    bool is(int32_t index, const char *word) const { return common::equals(argv_[index], word); }

    int32_t number(int32_t index) const { return common::number(argv_[index]); }

private:
    char **argv_;
    int32_t count_ = 0;
};

/// A word for a log line that prints more words than the call may have: up to the vector's null
/// entry whatever its count says, and empty from there on.
inline const char *loggedWord(char **argv, int32_t index) {
    for (int32_t i = 0; argv != nullptr && argv[i] != nullptr; ++i) {
        if (i == index) {
            return argv[i];
        }
    }
    return "";
}

} // namespace frruci::ospf

#endif
