/* SPDX-License-Identifier: Apache-2.0 */
/* Tables: what must hold for their rows, checked while compiling, and the look-up of a row. A field
 * is named by its member pointer, as in isInOrder<&Row::key>(kRows). */
#ifndef FRRUCI_COMMON_TABLE_H
#define FRRUCI_COMMON_TABLE_H

#include <cstddef>
#include <iterator>
#include <string_view>

#include "common/text.h"

namespace frruci::common {

/// Whether the rows' keys count up by one from first: each row stands at its index, none is
/// missing.
template <auto Field, typename Table> consteval bool isInOrder(const Table &table, auto first) {
    auto key = static_cast<std::size_t>(first);
    for (const auto &row : table) {
        if (static_cast<std::size_t>(row.*Field) != key) {
            return false;
        }
        ++key;
    }
    return true;
}

template <auto Field, typename Table> consteval bool isInOrder(const Table &table) {
    return isInOrder<Field>(table, 0);
}

/// Whether no two rows have the same word.
template <auto Field, typename Table> consteval bool hasUniqueWords(const Table &table) {
    for (std::size_t i = 0; i < std::size(table); ++i) {
        for (std::size_t j = i + 1; j < std::size(table); ++j) {
            if (std::string_view(table[i].*Field) == table[j].*Field) {
                return false;
            }
        }
    }
    return true;
}

/// The row with that word; null when there is none.
template <auto Field, typename Row, std::size_t kRows>
const Row *findRow(const Row (&table)[kRows], const char *word) {
    for (const Row &row : table) {
        if (equals(row.*Field, word)) {
            return &row;
        }
    }
    return nullptr;
}

} // namespace frruci::common

#endif
