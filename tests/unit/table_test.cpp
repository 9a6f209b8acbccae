// SPDX-License-Identifier: Apache-2.0
// What the compile-time checks of tables accept and refuse, and the look-up of a row.

#include <array>
#include <gtest/gtest.h>

#include "common/table.h"

namespace {

using frruci::common::findRow;
using frruci::common::hasUniqueWords;
using frruci::common::isInOrder;

enum class Kind { kFirst, kSecond, kThird };

struct Row {
    Kind kind;
    const char *word;
};

constexpr Row kRows[] = {
    {Kind::kFirst,  "a" },
    {Kind::kSecond, "ab"},
    {Kind::kThird,  ""  }
};
constexpr Row kSwapped[] = {
    {Kind::kSecond, "a"},
    {Kind::kFirst,  "b"},
    {Kind::kThird,  "c"}
};
constexpr Row kGap[] = {
    {Kind::kFirst, "a"},
    {Kind::kThird, "a"}
};
constexpr Row kTail[] = {
    {Kind::kSecond, "a"},
    {Kind::kThird,  "b"},
    {Kind::kFirst,  "a"}
};

static_assert(isInOrder<&Row::kind>(kRows));
static_assert(isInOrder<&Row::kind>(std::to_array(kRows)));
static_assert(!isInOrder<&Row::kind>(kSwapped));
static_assert(!isInOrder<&Row::kind>(kGap));
static_assert(!isInOrder<&Row::kind>(kTail, Kind::kSecond));
static_assert(isInOrder<&Row::kind>(std::array{kTail[0], kTail[1]}, Kind::kSecond));

static_assert(hasUniqueWords<&Row::word>(kRows));
static_assert(!hasUniqueWords<&Row::word>(kGap));
static_assert(!hasUniqueWords<&Row::word>(kTail));

TEST(Table, RowsAreFoundByTheirWholeWord) {
    EXPECT_EQ(findRow<&Row::word>(kRows, "a"), &kRows[0]);
    EXPECT_EQ(findRow<&Row::word>(kRows, "ab"), &kRows[1]);
    EXPECT_EQ(findRow<&Row::word>(kRows, ""), &kRows[2]);
    EXPECT_EQ(findRow<&Row::word>(kRows, "abc"), nullptr);
    EXPECT_EQ(findRow<&Row::word>(kTail, "a"), &kTail[0]);
}

} // namespace
