// SPDX-License-Identifier: Apache-2.0
// Every row of the table of words against rehearsals: words that it allows send something, words
// that it forbids are refused before anything is sent.

#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "host/handlers.h"
#include "host/words.h"
#include "tests/host/program.h"

namespace {

using frruci::host::Form;
using frruci::host::kFormCount;
using frruci::host::kForms;
using frruci::host::Token;
using program::frruci;
using program::Outcome;
using Words = std::vector<std::string>;

struct Samples {
    Words good;
    Words bad;
};

const std::map<std::string, Samples> &samplesOfKinds() {
    static const std::map<std::string, Samples> kSamples = {
        {"ADDRESS", {{"10.1.2.0", "0.0.0.0"}, {"10.1.2.999", "10.1.2", "10.1.2.0/24", "a", ""}}   },
        {"NETMASK", {{"255.255.255.0", "255.255.255.252"}, {"255.0.255.0", "0.0.0.255", "24", ""}}},
        {"MASK",    {{"255.255.255.0", "0.0.0.255"}, {"255.0.255.0", "0.0.3.1", "24", ""}}        },
        {"PREFIX",
         {{"10.0.0.1/24", "10.0.0.1/32"}, {"10.0.0.1", "10.0.0.1/33", "10.0.0.1/", "/8"}}         },
        {"IFNAME",  {{"eth1.2", "tun0"}, {"", "eth1 2", "abcdefghijklmnop", "a/b", "a;b"}}        },
        {"HOST",    {{"10.9.0.1", "hub.example"}, {"", "a b"}}                                    },
        {"WORD",    {{"vpn"}, {"", "a b", "a\nb"}}                                                },
        {"KEY8",    {{"k", "abcdefgh"}, {"", "a b", "abcdefghi"}}                                 },
        {"KEY16",   {{"k", "abcdefghijklmnop"}, {"", "a b", "abcdefghijklmnopq"}}                 },
        {"ANY",     {{"x", ""}, {}}                                                               },
    };
    return kSamples;
}

Words alternativesOf(const std::string &list) {
    Words words(1);
    for (const char byte : list) {
        if (byte == '|') {
            words.emplace_back();
        } else {
            words.back() += byte;
        }
    }
    return words;
}

Samples samplesOf(const Token &token) {
    const std::string allowed(token.allowed);
    const auto kind = samplesOfKinds().find(allowed);
    if (kind != samplesOfKinds().end()) {
        return kind->second;
    }
    long long low = 0;
    long long high = 0;
    if (frruci::host::rangeOf(token, low, high)) {
        return {
            {std::to_string(low), std::to_string(high)},
            { std::to_string(low - 1), std::to_string(high + 1), "abc", "", "1x", " 1", "+1"}
        };
    }
    Words alternatives = alternativesOf(allowed);
    const std::string first = alternatives.front();
    return {
        alternatives, {"maybe", "", first + "x", first.substr(0, first.size() - 1)}
    };
}

/// The good words of a form, the first sample of each.
Words plainWords(const char *form) {
    Words words;
    for (Token token; frruci::host::nextToken(form, token);) {
        words.push_back(samplesOf(token).good.front());
    }
    return words;
}

Outcome plan(const Form &form, const Words &words) {
    Words all = {"plan", form.handler};
    all.insert(all.end(), words.begin(), words.end());
    return frruci(all);
}

std::string nameOf(const Form &form, const Words &words) {
    return std::string(form.handler) + testing::PrintToString(words);
}

/// A plan that only replies sends nothing.
void expectSends(const Form &form, const Words &words) {
    const Outcome outcome = plan(form, words);
    EXPECT_EQ(outcome.status, 0) << nameOf(form, words) << outcome.errors;
    EXPECT_NE(outcome.output, "") << nameOf(form, words);
    EXPECT_NE(outcome.output, "reply   ok\n") << nameOf(form, words);
}

void expectRefused(const Form &form, const Words &words) {
    for (const char *verb : {"plan", "call"}) {
        Words all = {verb, form.handler};
        all.insert(all.end(), words.begin(), words.end());
        const Outcome outcome = frruci(all);
        EXPECT_EQ(outcome.status, 2) << nameOf(form, words);
        EXPECT_EQ(outcome.output, "") << nameOf(form, words);
        EXPECT_EQ(outcome.errors.find(std::string("frruci: ") + form.handler + ": word "), 0U)
            << outcome.errors;
    }
}

class Forms : public testing::TestWithParam<std::size_t> {
protected:
    void SetUp() override { setenv("FRRUCI_LIBRARY", LIBRARY, 1); }

private:
    const program::Listener ripd_{"/var/ripd.vty"}; // RIP is on
};

TEST_P(Forms, WhatItAllowsSendsSomething) {
    const Form &form = kForms[GetParam()];
    const Words plain = plainWords(form.words);
    const bool switchesOff =
        !plain.empty() && (plain[0] == "off" || form.handler == std::string("process_rip_global"));
    const program::Daemons daemons(switchesOff ? Words{"zebra", "ospfd", "ripd"} : Words{});
    expectSends(form, plain);
    const char *rest = form.words;
    Token token;
    for (std::size_t i = 0; frruci::host::nextToken(rest, token); ++i) {
        for (const std::string &word : samplesOf(token).good) {
            Words words = plain;
            words[i] = word;
            expectSends(form, words);
        }
    }
}

TEST_P(Forms, WhatItForbidsIsRefusedBeforeAnythingIsSent) {
    const Form &form = kForms[GetParam()];
    const Words plain = plainWords(form.words);
    const char *rest = form.words;
    Token token;
    for (std::size_t i = 0; frruci::host::nextToken(rest, token); ++i) {
        for (const std::string &word : samplesOf(token).bad) {
            Words words = plain;
            words[i] = word;
            expectRefused(form, words);
        }
    }
    Words more = plain;
    more.emplace_back("more");
    expectRefused(form, more);
    if (!plain.empty()) {
        expectRefused(form, Words(plain.begin(), plain.end() - 1));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, Forms, testing::Range<std::size_t>(0, kFormCount));

TEST(Table, EveryHandlerHasARowAndEveryRowAHandler) {
    for (std::size_t i = 0; i < frruci::host::kHandlerCount; ++i) {
        int rows = 0;
        for (std::size_t j = 0; j < kFormCount; ++j) {
            rows += kForms[j].handler == frruci::host::kHandlers[i].name ? 1 : 0;
        }
        EXPECT_GT(rows, 0) << frruci::host::kHandlers[i].name;
    }
    for (std::size_t j = 0; j < kFormCount; ++j) {
        EXPECT_NE(frruci::host::findHandler(kForms[j].handler), nullptr);
    }
}

/// A word in capitals that is no kind would be taken as one word that is meant as it stands.
TEST(Table, EveryWordInCapitalsIsAKind) {
    for (std::size_t i = 0; i < kFormCount; ++i) {
        const char *rest = kForms[i].words;
        for (Token token; frruci::host::nextToken(rest, token);) {
            const char first = token.allowed[0];
            EXPECT_TRUE(first < 'A' || first > 'Z' || frruci::host::kindOf(token) != nullptr)
                << kForms[i].words;
            EXPECT_TRUE(frruci::host::kindOf(token) == nullptr ||
                        samplesOfKinds().count(std::string(token.allowed)) == 1);
        }
    }
}

} // namespace
