// SPDX-License-Identifier: Apache-2.0
// The table of docs/apply.md against the kinds.

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "apply/kinds.h"

namespace {

using namespace frruci::apply;

std::string place(const Kind &kind) {
    static constexpr const char *kTargets[] = {"ospfd", "ripd", "nhrpd", "zebra"};
    static constexpr const char *kPlaces[] = {"key chain", "key", "interface", "router", "top"};
    return std::string(kTargets[static_cast<int>(kind.target)]) + ", " +
           kPlaces[static_cast<int>(kind.place)];
}

/// The words of a pattern outside of brackets.
std::vector<std::string> plainWords(const std::string &pattern) {
    std::istringstream from(pattern);
    std::vector<std::string> words;
    int depth = 0;
    for (std::string word; from >> word;) {
        depth += word == "[" ? 1 : word == "]" ? -1 : 0;
        if (depth == 0 && word != "]") {
            words.push_back(word);
        }
    }
    return words;
}

std::string code(const std::string &text) {
    return "`" + text + "`";
}

std::string removal(const Kind &kind) {
    if (kind.removal == Removal::Opposite) {
        return "its opposite";
    }
    if (kind.removal == Removal::Default) {
        return code(kind.omitted);
    }
    const std::vector<std::string> words = plainWords(kind.pattern);
    const std::size_t count = kind.removal == Removal::Whole ? words.size() : kind.words;
    std::string text = "no";
    for (std::size_t i = 0; i < count; ++i) {
        text += " " + words[i];
    }
    return code(text);
}

std::string hidden(const Kind &kind) {
    if ((kind.traits & kOwnType) != 0) {
        return "8.4: the interface's own type";
    }
    if ((kind.traits & kMaximum) != 0) {
        return "the greatest number";
    }
    if (kind.omitted == nullptr) {
        return "";
    }
    const std::string omitted = kind.omitted;
    return omitted[0] == ' ' ? "an end " + code(omitted.substr(1)) : code(omitted);
}

std::string expected() {
    std::string rows;
    for (const Kind &kind : kinds()) {
        const std::string notShown = hidden(kind);
        rows += "| " + place(kind) + " | " + code(kind.pattern) + " |" +
                (notShown.empty() ? "" : " " + notShown) + " | " + removal(kind) + " |\n";
    }
    return rows;
}

TEST(Page, HasEveryKindInItsOrder) {
    std::ifstream page(APPLY_PAGE);
    ASSERT_TRUE(page) << APPLY_PAGE;
    std::string rows;
    for (std::string line; std::getline(page, line);) {
        const bool isKind =
            line.compare(0, 7, "| ospfd") == 0 || line.compare(0, 6, "| ripd") == 0 ||
            line.compare(0, 7, "| nhrpd") == 0 || line.compare(0, 7, "| zebra") == 0;
        if (isKind) {
            rows += line + "\n";
        }
    }
    EXPECT_EQ(rows, expected());
}

} // namespace
