// SPDX-License-Identifier: Apache-2.0
// The words of a request: where they end, and what stands after them.

#include <gtest/gtest.h>

#include "common/words.h"

namespace {

using frruci::common::Words;

char eth[] = "eth1.2";
char hello[] = "hello";
char fifteen[] = "15s";

TEST(Words, EndAtTheCount) {
    char *argv[] = {eth, hello, fifteen, nullptr};
    const Words words(2, argv);
    EXPECT_EQ(words.count(), 2);
    EXPECT_EQ(words[0], eth);
    EXPECT_EQ(words[1], hello);
    EXPECT_EQ(words[2], nullptr);
    EXPECT_FALSE(words.is(2, "15s"));
}

TEST(Words, EndAtANullEntry) {
    char *argv[] = {eth, nullptr, fifteen, nullptr};
    EXPECT_EQ(Words(3, argv).count(), 1);
    EXPECT_EQ(Words(3, argv)[2], nullptr);
    EXPECT_EQ(Words(1000, argv + 2).count(), 1);
    EXPECT_EQ(Words(3, argv + 1).count(), 0);
}

TEST(Words, AreNoneWithoutAVectorOrCount) {
    char *argv[] = {eth, nullptr};
    EXPECT_EQ(Words(3, nullptr).count(), 0);
    EXPECT_EQ(Words(0, argv).count(), 0);
    EXPECT_EQ(Words(-1, argv).count(), 0);
    EXPECT_EQ(Words(-1, argv)[0], nullptr);
}

TEST(Words, AreComparedShownAndRead) {
    char *argv[] = {eth, hello, fifteen, nullptr};
    const Words words(3, argv);
    EXPECT_TRUE(words.is(1, "hello"));
    EXPECT_FALSE(words.is(1, "hell"));
    EXPECT_STREQ(words.shown(1), "hello");
    EXPECT_STREQ(words.shown(3), "");
    EXPECT_STREQ(words.shown(3, "(null)"), "(null)");
    EXPECT_EQ(words.number(2), 15);
    EXPECT_EQ(words.number(1), 0);
}

} // namespace
