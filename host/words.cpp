// SPDX-License-Identifier: Apache-2.0
// The kinds of words, and the reading of forms.

#include "host/words.h"

#include <iterator>

#include <arpa/inet.h>
#include <cerrno>
#include <climits>
#include <cstdint>

namespace frruci::host {

namespace {

bool isPrintable(const char *word, const char *refused) {
    for (const char *at = word; *at != '\0'; ++at) {
        const auto byte = static_cast<unsigned char>(*at);
        if (byte <= ' ' || byte == 0x7f || strchr(refused, *at) != nullptr) {
            return false;
        }
    }
    return *word != '\0';
}

/// Four decimal parts, as the daemons read them: inet_pton takes no other spelling.
bool readAddress(const char *word, uint32_t &address) {
    in_addr read = {};
    if (inet_pton(AF_INET, word, &read) != 1) {
        return false;
    }
    address = ntohl(read.s_addr);
    return true;
}

bool isAddress(const char *word) {
    uint32_t address = 0;
    return readAddress(word, address);
}

bool isNetmask(const char *word) {
    uint32_t mask = 0;
    return readAddress(word, mask) && ((~mask + 1) & ~mask) == 0;
}

/// A netmask, or the same with every bit turned.
bool isMask(const char *word) {
    uint32_t mask = 0;
    return readAddress(word, mask) && (((~mask + 1) & ~mask) == 0 || ((mask + 1) & mask) == 0);
}

bool readNumber(std::string_view text, long long &number) {
    char digits[24] = {};
    if (text.empty() || text.size() >= sizeof digits) {
        return false;
    }
    memcpy(digits, text.data(), text.size());
    char *end = nullptr;
    errno = 0;
    number = strtoll(digits, &end, 10);
    return digits[0] >= '0' && digits[0] <= '9' && *end == '\0' && errno == 0;
}

bool isPrefix(const char *word) {
    const char *slash = strchr(word, '/');
    char address[16] = {};
    long long length = 0;
    if (slash == nullptr || static_cast<std::size_t>(slash - word) >= sizeof address) {
        return false;
    }
    memcpy(address, word, static_cast<std::size_t>(slash - word));
    return isAddress(address) && readNumber(slash + 1, length) && length <= 32;
}

bool isInterface(const char *word) {
    return isPrintable(word, "/|\"$&'();<>[\\`") && strlen(word) <= 15;
}

bool isPlain(const char *word) {
    return isPrintable(word, "") && strlen(word) <= 63;
}

bool isShortKey(const char *word) {
    return isPrintable(word, "") && strlen(word) <= 8;
}

bool isKey(const char *word) {
    return isPrintable(word, "") && strlen(word) <= 16;
}

bool isAnything(const char *) {
    return true;
}

} // namespace

constexpr WordKind kKinds[] = {
    {"ADDRESS", "an address like 10.1.2.0",                       isAddress,   false},
    {"NETMASK", "a netmask like 255.255.255.0",                   isNetmask,   false},
    {"MASK",    "a mask like 255.255.255.0 or 0.0.0.255",         isMask,      false},
    {"PREFIX",  "an address with its length, like 10.0.0.1/24",   isPrefix,    false},
    {"IFNAME",  "an interface like eth1.2",                       isInterface, false},
    {"HOST",    "an address or a host name",                      isPlain,     false},
    {"WORD",    "a word without spaces",                          isPlain,     false},
    {"KEY8",    "a key of at most 8 characters, without spaces",  isShortKey,  true },
    {"KEY16",   "a key of at most 16 characters, without spaces", isKey,       true },
    {"ANY",     "any word, it is not looked at",                  isAnything,  false},
};
constexpr std::size_t kKindCount = std::size(kKinds);

bool nextToken(const char *&form, Token &token) {
    form += strspn(form, " ");
    const std::string_view text(form, strcspn(form, " "));
    form += text.size();
    const std::size_t equal = text.find('=');
    const bool named = equal != std::string_view::npos;
    token.name = named ? std::string_view(text.data(), equal) : std::string_view();
    const std::size_t start = named ? equal + 1 : 0;
    token.allowed = std::string_view(text.data() + start, text.size() - start);
    return !text.empty();
}

int tokensOf(const char *form) {
    int count = 0;
    for (Token token; nextToken(form, token);) {
        ++count;
    }
    return count;
}

Token tokenAt(const char *form, int index) {
    Token token;
    for (int i = 0; i <= index; ++i) {
        (void)nextToken(form, token); // the form is long enough
    }
    return token;
}

const WordKind *kindOf(const Token &token) {
    for (const WordKind &kind : kKinds) {
        if (token.allowed == kind.name) {
            return &kind;
        }
    }
    return nullptr;
}

bool rangeOf(const Token &token, long long &low, long long &high) {
    const std::size_t dots = token.allowed.find("..");
    if (dots == std::string_view::npos) {
        return false;
    }
    const char *bytes = token.allowed.data();
    return readNumber({bytes, dots}, low) &&
           readNumber({bytes + dots + 2, token.allowed.size() - dots - 2}, high);
}

bool fits(const Token &token, const char *word) {
    if (const WordKind *kind = kindOf(token)) {
        return kind->fits(word);
    }
    long long low = 0;
    long long high = 0;
    long long number = 0;
    if (rangeOf(token, low, high)) {
        return readNumber(word, number) && number >= low && number <= high;
    }
    std::string_view rest = token.allowed;
    const std::string_view given = word;
    while (!rest.empty()) {
        const std::size_t bar = rest.find('|');
        const std::size_t length = bar == std::string_view::npos ? rest.size() : bar;
        if (std::string_view(rest.data(), length) == given) {
            return true;
        }
        rest.remove_prefix(length < rest.size() ? length + 1 : length);
    }
    return false;
}

bool isSecret(const Token &token) {
    const WordKind *kind = kindOf(token);
    return kind != nullptr && kind->secret;
}

void describe(const Token &token, Text &text) {
    const WordKind *kind = kindOf(token);
    if (kind != nullptr) {
        text.add(kind->meaning);
        return;
    }
    for (const char byte : token.allowed) {
        if (byte == '|') {
            text.add(", ");
        } else {
            text.add(&byte, 1);
        }
    }
}

} // namespace frruci::host
