/* SPDX-License-Identifier: Apache-2.0 */
/* Memory that is given back as a whole. */
#ifndef FRRUCI_APPLY_MEMORY_H
#define FRRUCI_APPLY_MEMORY_H

#include <cstddef>

namespace frruci::apply {

class Arena {
public:
    Arena() = default;
    ~Arena();
    Arena(const Arena &) = delete;
    Arena &operator=(const Arena &) = delete;

    void *take(std::size_t bytes);
    const char *copy(const char *text, std::size_t bytes);
    const char *copy(const char *text);

private:
    struct Block {
        Block *next;
    };
    Block *blocks_ = nullptr;
    char *free_ = nullptr;
    std::size_t left_ = 0;
};

} // namespace frruci::apply

#endif
