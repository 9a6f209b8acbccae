// SPDX-License-Identifier: Apache-2.0
// Compares a line with the patterns of the kinds, word by word.

#include <arpa/inet.h>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "apply/kinds.h"

namespace frruci::apply {

namespace {

constexpr std::string_view kChainPrefix = "app_rip_";
constexpr std::string_view kLinkPrefix = "169.254.11.20/30"; // the router's own inner link

/// The member of this name needs the C++ runtime.
bool startsWith(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && memcmp(text.data(), start.data(), start.size()) == 0;
}

/// A text, word by word. Stored values may have line ends behind them: these count as blanks.
class Words {
public:
    explicit Words(std::string_view text) : rest_(text) { advance(); }

    bool ended() const { return word_.empty(); }
    std::string_view word() const { return word_; }

    void advance() {
        std::size_t begin = 0;
        while (begin < rest_.size() && isBlank(rest_[begin])) {
            ++begin;
        }
        std::size_t end = begin;
        while (end < rest_.size() && !isBlank(rest_[end])) {
            ++end;
        }
        word_ = {rest_.data() + begin, end - begin};
        rest_ = {rest_.data() + end, rest_.size() - end};
    }

private:
    static bool isBlank(char byte) {
        return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
    }

    std::string_view rest_;
    std::string_view word_;
};

/// The line as the daemon shows it, while it grows.
struct Output {
    explicit Output(char (&room)[kLineBytes]) : text(room) {}

    void add(std::string_view word) {
        if (bytes + word.size() + 2 > kLineBytes) {
            full = true;
            return;
        }
        if (bytes > 0) {
            text[bytes++] = ' ';
        }
        memcpy(text + bytes, word.data(), word.size());
        bytes += word.size();
        text[bytes] = '\0';
    }

    char *text;
    std::size_t bytes = 0;
    bool full = false;
};

template <typename Number> bool readNumber(std::string_view word, Number &value) {
    const char *end = word.data() + word.size();
    const auto [at, error] = std::from_chars(word.data(), end, value);
    return error == std::errc() && at == end;
}

bool readAddress(std::string_view word, in_addr &address) {
    char text[INET_ADDRSTRLEN];
    if (word.size() >= sizeof text) {
        return false;
    }
    memcpy(text, word.data(), word.size());
    text[word.size()] = '\0';
    return inet_pton(AF_INET, text, &address) == 1;
}

void addFormatted(Output &out, const char *text, int bytes) {
    out.add({text, static_cast<std::size_t>(bytes)});
}

Found takeNumber(std::string_view word, bool mayBeZero, Output &out) {
    uint64_t value = 0;
    if (!readNumber(word, value)) {
        return Found::Invalid;
    }
    if (value == 0 && !mayBeZero) {
        return Found::Absent;
    }
    char text[24];
    addFormatted(out, text, snprintf(text, sizeof text, "%llu", (unsigned long long)value));
    return Found::Yes;
}

Found takeAddress(std::string_view word, Output &out) {
    in_addr address = {};
    if (!readAddress(word, address)) {
        return Found::Invalid;
    }
    out.add(word);
    return Found::Yes;
}

Found takePrefix(std::string_view word, Output &out) {
    const std::size_t slash = word.find('/');
    in_addr address = {};
    unsigned length = 0;
    if (slash == std::string_view::npos || !readAddress({word.data(), slash}, address) ||
        !readNumber(std::string_view{word.data() + slash + 1, word.size() - slash - 1}, length) ||
        length > 32) {
        return Found::Invalid;
    }
    const uint32_t mask = length == 0 ? 0 : ~uint32_t{0} << (32 - length);
    address.s_addr &= htonl(mask);
    char dotted[INET_ADDRSTRLEN];
    char text[INET_ADDRSTRLEN + 4];
    (void)inet_ntop(AF_INET, &address, dotted, sizeof dotted); // always fits
    const int bytes = snprintf(text, sizeof text, "%s/%u", dotted, length);
    if (kLinkPrefix == std::string_view(text)) {
        return Found::No;
    }
    addFormatted(out, text, bytes);
    return Found::Yes;
}

/// An area keeps the spelling that it was given in; one is enough to compare.
Found takeArea(std::string_view word, Output &out) {
    in_addr address = {};
    uint32_t number = 0;
    if (readAddress(word, address)) {
        number = ntohl(address.s_addr);
    } else if (!readNumber(word, number)) {
        return Found::Invalid;
    }
    char text[12];
    addFormatted(out, text, snprintf(text, sizeof text, "%u", number));
    return Found::Yes;
}

Found takeChain(std::string_view word, Output &out) {
    uint32_t number = 0;
    if (!startsWith(word, kChainPrefix) ||
        !readNumber(
            std::string_view{word.data() + kChainPrefix.size(), word.size() - kChainPrefix.size()},
            number)) {
        return Found::No; // somebody else's
    }
    out.add(word);
    return Found::Yes;
}

/// The daemon cuts a key without a word.
Found takeKey(std::string_view pattern, std::string_view word, Output &out) {
    std::size_t limit = word.size();
    if (pattern.size() > 1) {
        (void)readNumber(std::string_view{pattern.data() + 1, pattern.size() - 1}, limit);
    }
    out.add({word.data(), word.size() < limit ? word.size() : limit});
    return Found::Yes;
}

bool isValue(std::string_view pattern) {
    return pattern[0] >= 'A' && pattern[0] <= 'Z';
}

Found takeValue(std::string_view pattern, std::string_view word, Output &out) {
    switch (pattern[0]) {
    case 'N':
        return takeNumber(word, false, out);
    case 'Z':
        return takeNumber(word, true, out);
    case 'A':
        return takeAddress(word, out);
    case 'P':
        return takePrefix(word, out);
    case 'R':
        return takeArea(word, out);
    case 'C':
        return takeChain(word, out);
    case 'K':
        return takeKey(pattern, word, out);
    default: // W
        out.add(word);
        return Found::Yes;
    }
}

/// One pattern against one line.
class Comparison {
public:
    Comparison(const Kind &kind, const char *text, Output &out)
        : pattern_(kind.pattern), words_(text), out_(out) {}

    Found run() {
        while (!pattern_.ended()) {
            const Found found = pattern_.word() == "[" ? optional() : required();
            if (found != Found::Yes) {
                return found;
            }
        }
        if (out_.full || !words_.ended()) {
            // What has no value at all is the kind itself only when nothing follows.
            return sawValue_ || sawOption_ ? Found::Invalid : Found::No;
        }
        return Found::Yes;
    }

private:
    Found required() {
        const std::string_view pattern = pattern_.word();
        pattern_.advance();
        if (!isValue(pattern)) {
            if (words_.word() != pattern) {
                return sawValue_ ? Found::Invalid : Found::No;
            }
            out_.add(pattern);
            words_.advance();
            return Found::Yes;
        }
        sawValue_ = true;
        if (words_.ended()) {
            return Found::Absent;
        }
        const Found found = takeValue(pattern, words_.word(), out_);
        words_.advance();
        return found;
    }

    /// The words of a bracket are taken all or not at all; a 0 that stands for nothing leaves them
    /// out.
    Found optional() {
        pattern_.advance();
        sawOption_ = sawOption_ || out_.bytes > 0;
        const bool present = words_.word() == pattern_.word();
        const std::size_t before = out_.bytes;
        Found found = Found::Yes;
        while (pattern_.word() != "]") {
            if (present && found == Found::Yes) {
                found = required();
            } else {
                pattern_.advance();
            }
        }
        pattern_.advance();
        if (found == Found::Absent) {
            out_.bytes = before;
            out_.text[before] = '\0';
            return Found::Yes;
        }
        return found;
    }

    Words pattern_;
    Words words_;
    Output &out_;
    bool sawValue_ = false;
    bool sawOption_ = false;
};

/// Takes an end away that the daemon does not show.
void omitEnd(const Kind &kind, char *text) {
    if (kind.omitted == nullptr || kind.omitted[0] != ' ') {
        return;
    }
    const std::size_t bytes = strlen(text);
    const std::size_t end = strlen(kind.omitted);
    if (bytes >= end && strcmp(text + bytes - end, kind.omitted) == 0) {
        text[bytes - end] = '\0';
    }
}

void findName(const Kind &kind, Line &line) {
    const std::string_view text = line.text;
    line.nameAt = startsWith(text, "no ") ? 3 : 0;
    std::size_t end = line.nameAt;
    for (int word = 0; word < kind.words; ++word) {
        while (end < text.size() && text[end] == ' ') {
            ++end;
        }
        while (end < text.size() && text[end] != ' ') {
            ++end;
        }
    }
    line.nameBytes = end - line.nameAt;
}

} // namespace

Found recognise(Target target, Place place, const char *text, Line &line) {
    const char first = *Words(text).word().data();
    for (const Kind &kind : kinds()) {
        // Most kinds are told apart by their first letter.
        const bool mayBe = kind.pattern[0] == first || kind.pattern[0] == '[';
        if (kind.target != target || kind.place != place || !mayBe) {
            continue;
        }
        Output out(line.text);
        out.text[0] = '\0';
        const Found found = Comparison(kind, text, out).run();
        if (found == Found::No) {
            continue;
        }
        line.kind = &kind;
        omitEnd(kind, line.text);
        findName(kind, line);
        return found;
    }
    return Found::No;
}

} // namespace frruci::apply
