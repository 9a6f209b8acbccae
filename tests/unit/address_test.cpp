// SPDX-License-Identifier: Apache-2.0
// Address and number texts: the rules one by one, an exhaustive sweep of short texts, and generated
// quads, all against readings of the rules that are written differently.

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "common/address.h"

namespace {

using Octets = std::array<uint8_t, 4>;

uint32_t valueOf(Octets octets) {
    uint32_t value = 0;
    memcpy(&value, octets.data(), octets.size());
    return value;
}

std::vector<std::string> splitAtDots(const std::string &text) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == '.') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

/// The value of a part; none when it is not of digits or above 255. The empty part is 0.
std::optional<int> octetOf(const std::string &part) {
    if (!std::all_of(part.begin(), part.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return {};
    }
    const std::size_t significant = std::min(part.find_first_not_of('0'), part.size());
    if (part.size() - significant > 3) {
        return {};
    }
    const int value = std::stoi("0" + part);
    return value <= 255 ? std::optional<int>(value) : std::nullopt;
}

/// What IpStr2Int must read.
std::optional<Octets> quadOf(const std::string &text) {
    const std::vector<std::string> parts = splitAtDots(text);
    if (text.size() % 256 > 16 || parts.size() != 4) {
        return {};
    }
    Octets octets = {};
    for (std::size_t i = 0; i < 4; ++i) {
        const std::optional<int> value = octetOf(parts[i]);
        if (!value || (i > 0 && parts[i].empty())) {
            return {};
        }
        octets[i] = static_cast<uint8_t>(*value);
    }
    return octets;
}

int32_t usability(const std::string &text) {
    const std::optional<Octets> octets = quadOf(text);
    const bool usable = octets && text.size() >= 7 && text.size() <= 15 && (*octets)[0] >= 1 &&
                        (*octets)[0] <= 223 && (*octets)[0] != 127;
    return usable ? 0 : 1;
}

uint32_t doublings(Octets octets) {
    uint32_t mask = 0;
    for (const uint8_t octet : octets) {
        mask = mask * 256 + octet;
    }
    uint32_t count = 0;
    while (mask != 0) {
        mask *= 2;
        ++count;
    }
    return count;
}

int32_t decimal(const std::string &text) {
    std::size_t at = text.find_first_not_of(' ');
    if (at == std::string::npos) {
        return 0;
    }
    const bool negative = text[at] == '-';
    at += negative ? 1 : 0;
    int32_t value = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
        value = value * 10 + (text[at] - '0');
    }
    return negative ? -value : value;
}

void checkOctets(const char *text, const std::optional<Octets> &expected) {
    std::array<uint8_t, 6> room = {0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5};
    EXPECT_EQ(IpStr2Int(text, room.data() + 1), expected ? 0 : -1) << '"' << text << '"';
    EXPECT_EQ(room.front(), 0xA5);
    EXPECT_EQ(room.back(), 0xA5);
    if (expected) {
        EXPECT_TRUE(std::equal(expected->begin(), expected->end(), room.begin() + 1)) << text;
    }
}

/// Puts one text through every reader; true when it is a quad.
bool checkQuadReaders(const std::string &text) {
    const std::optional<Octets> expected = quadOf(text);
    // A copy of exactly its size, so that sanitizers see a reader that goes on past the end.
    const std::vector<char> exact(text.c_str(), text.c_str() + text.size() + 1);
    checkOctets(exact.data(), expected);
    EXPECT_EQ(ipStrCheck(exact.data()), usability(text)) << '"' << text << '"';
    uint32_t length = 99;
    EXPECT_EQ(maskStr2len(exact.data(), &length), expected ? 0 : -1) << text;
    EXPECT_EQ(length, expected ? doublings(*expected) : 0) << text;
    return expected.has_value();
}

TEST(Address, QuadsAreRead) {
    Octets octets = {};
    EXPECT_EQ(IpStr2Int("192.168.1.1", octets.data()), 0);
    EXPECT_EQ(octets, (Octets{192, 168, 1, 1}));
    EXPECT_EQ(IpStr2Int(".1.2.3", octets.data()), 0);
    EXPECT_EQ(octets, (Octets{0, 1, 2, 3}));
    EXPECT_EQ(IpStr2Int("001.02.0003.4", octets.data()), 0);
    EXPECT_EQ(octets, (Octets{1, 2, 3, 4}));
    EXPECT_EQ(IpStr2Int("255.255.255.0255", octets.data()), 0); // 16 characters
    EXPECT_EQ(octets, (Octets{255, 255, 255, 255}));
}

TEST(Address, WhatIsNoQuadIsRefused) {
    Octets octets = {};
    for (const char *text : {"",
                             ".",
                             "...",
                             "1",
                             "1..2.3",
                             "1.2.3.",
                             "1.2.3",
                             "1.2.3.4.5",
                             "1.2.3.4.",
                             "256.1.1.1",
                             "1.256.1.1",
                             "1.1.1.256",
                             "1.2.3.4 ",
                             " 1.2.3.4",
                             "1.2.3.-4",
                             "+1.2.3.4",
                             "1.2.3.4/24",
                             "1.2.3.a",
                             "1,2,3,4",
                             "1.2.3.99999999999",
                             "255.255.255.00255",
                             "1.2.3.4.5.6.7.8",
                             "........",
                             "1.2.3.4\n"}) {
        EXPECT_EQ(IpStr2Int(text, octets.data()), -1) << '"' << text << '"';
        EXPECT_EQ(ipStrCheck(text), 1) << '"' << text << '"';
    }
    EXPECT_EQ(IpStr2Int(nullptr, octets.data()), -1);
    EXPECT_EQ(IpStr2Int("1.2.3.4", nullptr), -1);
    EXPECT_EQ(ipStrCheck(nullptr), 1);
}

TEST(Address, OctetsAreStoredAsTheyAreCompleted) {
    Octets octets = {9, 9, 9, 9};
    EXPECT_EQ(IpStr2Int("1.2.x", octets.data()), -1);
    EXPECT_EQ(octets, (Octets{1, 2, 9, 9}));
    octets = {9, 9, 9, 9};
    EXPECT_EQ(IpStr2Int("1.2.3.4.5", octets.data()), -1);
    EXPECT_EQ(octets, (Octets{1, 2, 3, 4}));
    octets = {9, 9, 9, 9};
    EXPECT_EQ(IpStr2Int("1.2.3.", octets.data()), -1); // seen before the scan
    EXPECT_EQ(octets, (Octets{9, 9, 9, 9}));
}

TEST(Address, OnlyTheLowByteOfTheLengthCounts) {
    Octets octets = {};
    const std::string quad = "1.2.3.4";
    const auto ofLength = [&quad](std::size_t length) {
        return std::string(length - quad.size(), '0') + quad;
    };
    EXPECT_EQ(IpStr2Int(ofLength(16).c_str(), octets.data()), 0);
    EXPECT_EQ(IpStr2Int(ofLength(17).c_str(), octets.data()), -1);
    EXPECT_EQ(IpStr2Int(ofLength(255).c_str(), octets.data()), -1);
    EXPECT_EQ(IpStr2Int(ofLength(256).c_str(), octets.data()), 0);
    EXPECT_EQ(IpStr2Int(ofLength(256 + 16).c_str(), octets.data()), 0);
    EXPECT_EQ(octets, (Octets{1, 2, 3, 4}));
    EXPECT_EQ(IpStr2Int(ofLength(256 + 17).c_str(), octets.data()), -1);
    EXPECT_EQ(IpStr2Int((std::string(251, '0') + "1.2.3.").c_str(), octets.data()), -1);
    EXPECT_EQ(ipStrCheck(ofLength(256 + 7).c_str()), 1); // has no such rule
}

TEST(Address, UsableHostAddresses) {
    for (const char *text : {"223.255.255.255", "1.1.1.1", "10.0.0.0", "192.168.1.255",
                             "126.255.0.1", "128.0.0.0", "010.1.1.1", "100.100.100.100"}) {
        EXPECT_EQ(ipStrCheck(text), 0) << text;
    }
    for (const char *text : {"0.1.2.3", "127.0.0.1", "224.0.0.5", "255.1.1.1", "100.100.100.1000",
                             "1.1.1.", "10.20.30.", "10.20.30.40.", ".10.20.30", "1.1.1",
                             "1.1.1.1.1", "1.1.1.999", "1.300.1.1", "10.1.1.1 ", "0127.1.1.1"}) {
        EXPECT_EQ(ipStrCheck(text), 1) << text;
    }
}

TEST(Address, ValuesBecomeTexts) {
    char text[16] = {};
    EXPECT_EQ(intIpToStrIp(text, valueOf({10, 0, 0, 1})), 0);
    EXPECT_STREQ(text, "10.0.0.1");
    EXPECT_EQ(intIpToStrIp(text, valueOf({255, 255, 255, 255})), 0);
    EXPECT_STREQ(text, "255.255.255.255");
    EXPECT_EQ(intIpToStrIp(text, 0), 0);
    EXPECT_STREQ(text, "0.0.0.0");
    EXPECT_EQ(intIpToStrIp(nullptr, 0), -1);
}

TEST(Address, MaskTextsBecomeLengths) {
    const std::pair<const char *, uint32_t> masks[] = {
        {"255.255.255.252", 30},
        {"255.255.255.255", 32},
        {"255.255.0.255",   32},
        {"255.0.255.0",     24},
        {"0.0.0.0",         0 },
        {"128.0.0.0",       1 },
        {"0.0.0.1",         32},
        {"255.255.254.0",   23},
    };
    for (const auto &[text, expected] : masks) {
        uint32_t length = 99;
        EXPECT_EQ(maskStr2len(text, &length), 0) << text;
        EXPECT_EQ(length, expected) << text;
    }
    uint32_t length = 99;
    EXPECT_EQ(maskStr2len(nullptr, &length), -1);
    EXPECT_EQ(length, 99U);
    EXPECT_EQ(maskStr2len("255.255.255", &length), -1);
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(maskStr2len("255.0.0.0", nullptr), -1);
}

TEST(Address, EveryContiguousMaskInBothForms) {
    for (int32_t length = 0; length <= 32; ++length) {
        const uint32_t mask = length == 0 ? 0 : UINT32_MAX << (32 - length);
        char text[16] = {};
        EXPECT_EQ(intIpToStrIp(text, htonl(mask)), 0);
        uint32_t counted = 99;
        EXPECT_EQ(maskStr2len(text, &counted), 0);
        EXPECT_EQ(counted, static_cast<uint32_t>(length));
        if (length > 0) { // the top bit tells a mask from a wildcard
            EXPECT_EQ(mask_to_masklen(htonl(mask)), length);
            EXPECT_EQ(mask_to_masklen(htonl(~mask)), length);
        }
    }
}

TEST(Address, MaskValuesBecomeLengths) {
    EXPECT_EQ(mask_to_masklen(valueOf({255, 255, 255, 252})), 30);
    EXPECT_EQ(mask_to_masklen(valueOf({255, 255, 255, 0})), 24);
    EXPECT_EQ(mask_to_masklen(valueOf({0, 0, 0, 255})), 24);
    EXPECT_EQ(mask_to_masklen(0), 32);
    EXPECT_EQ(mask_to_masklen(UINT32_MAX), 32);
    EXPECT_EQ(mask_to_masklen(valueOf({255, 0, 255, 0})), 24);
    EXPECT_EQ(mask_to_masklen(valueOf({0, 255, 0, 255})), 24);
    EXPECT_EQ(mask_to_masklen(valueOf({127, 255, 255, 255})), 1);
}

TEST(Address, MaskValuesFollowTheCountOfShifts) {
    std::mt19937 random(11);
    for (int i = 0; i < 100000; ++i) {
        const auto value = static_cast<uint32_t>(random() << (random() % 32));
        uint32_t mask = ntohl(value);
        if (mask < 0x80000000U) {
            mask = UINT32_MAX - mask;
        }
        int32_t expected = 32;
        while (mask % 2 == 0 && expected > 0) {
            mask /= 2;
            --expected;
        }
        ASSERT_EQ(mask_to_masklen(value), expected) << value;
    }
}

TEST(Address, AddressValuesAreThoseOfInetAton) {
    EXPECT_EQ(sw_ospf_inet_aton("10.0.0.1"), valueOf({10, 0, 0, 1}));
    EXPECT_EQ(sw_ospf_inet_aton("0x0a.1"), valueOf({10, 0, 0, 1}));
    EXPECT_EQ(sw_ospf_inet_aton("012.0.1"), valueOf({10, 0, 0, 1}));
    EXPECT_EQ(sw_ospf_inet_aton("255.255.255.255"), UINT32_MAX);
    (void)sw_ospf_inet_aton(nullptr); // must only come back
    (void)sw_ospf_inet_aton("letters");
}

TEST(Address, NumbersBecomeTexts) {
    char text[16] = "kept";
    EXPECT_EQ(rip_itoa(255, text, 8), nullptr);
    EXPECT_EQ(rip_itoa(255, text, 0), nullptr);
    EXPECT_STREQ(text, "kept");
    EXPECT_EQ(rip_itoa(255, nullptr, 10), nullptr);
    const std::tuple<int32_t, int32_t, const char *> numbers[] = {
        {255,       16, "ff"         },
        {255,       10, "255"        },
        {-1,        16, "ffffffff"   },
        {-1,        10, "-1"         },
        {0,         16, "0"          },
        {0,         10, "0"          },
        {INT32_MIN, 10, "-2147483648"},
        {INT32_MIN, 16, "80000000"   },
        {INT32_MAX, 10, "2147483647" },
    };
    for (const auto &[value, base, expected] : numbers) {
        EXPECT_EQ(rip_itoa(value, text, base), text);
        EXPECT_STREQ(text, expected);
    }
}

TEST(Address, TextsBecomeNumbers) {
    const std::pair<const char *, int32_t> texts[] = {
        {"12abc",       12       },
        {"abc",         0        },
        {"",            0        },
        {" \t\n7",      7        },
        {"-5",          -5       },
        {"+5",          5        },
        {"- 5",         0        },
        {"--5",         0        },
        {"0x10",        0        },
        {"007",         7        },
        {"12.9",        12       },
        {"2147483647",  INT32_MAX},
        {"-2147483648", INT32_MIN},
    };
    for (const auto &[text, expected] : texts) {
        EXPECT_EQ(rip_atoi(text), expected) << '"' << text << '"';
    }
    EXPECT_EQ(rip_atoi(nullptr), 0);
}

/// All texts of up to four characters over the alphabet.
std::vector<std::string> shortTexts() {
    const std::string alphabet = "01259./- ";
    std::vector<std::string> texts = {""};
    std::size_t begin = 0;
    for (int length = 1; length <= 4; ++length) {
        const std::size_t end = texts.size();
        for (std::size_t i = begin; i < end; ++i) {
            for (const char c : alphabet) {
                texts.push_back(texts[i] + c);
            }
        }
        begin = end;
    }
    return texts;
}

TEST(Address, EveryShortTextAloneAndBehindABeginning) {
    const std::vector<std::string> texts = shortTexts();
    ASSERT_EQ(texts.size(), 1U + 9 + 81 + 729 + 6561);
    int quads = 0;
    for (const char *beginning : {"", "1.2", "10.20.30", "127.0.0", "223.255.25", "0.1.2."}) {
        for (const std::string &text : texts) {
            quads += checkQuadReaders(beginning + text) ? 1 : 0;
        }
    }
    EXPECT_GT(quads, 500);
    for (const std::string &text : texts) {
        EXPECT_EQ(rip_atoi(text.c_str()), decimal(text)) << '"' << text << '"';
    }
}

/// A quad with up to three slips of the pen.
std::string nearlyQuad(std::mt19937 &random) {
    const auto upTo = [&random](std::size_t limit) { return random() % limit; };
    std::string text;
    for (int i = 0; i < 4; ++i) {
        text += (i > 0 ? "." : "") + std::string(upTo(8) == 0 ? upTo(3) : 0, '0') +
                std::to_string(upTo(upTo(6) == 0 ? 300 : 256));
    }
    const std::string slips = "0123456789../- a";
    for (std::size_t i = upTo(4); i > 0 && !text.empty(); --i) {
        const std::size_t at = upTo(text.size());
        switch (upTo(3)) {
        case 0:
            text.erase(at, 1);
            break;
        case 1:
            text.insert(at, 1, slips[upTo(slips.size())]);
            break;
        default:
            text[at] = slips[upTo(slips.size())];
        }
    }
    return text;
}

TEST(Address, GeneratedQuads) {
    constexpr int kTexts = 100000;
    std::mt19937 random(20250101);
    int quads = 0;
    for (int i = 0; i < kTexts && !testing::Test::HasFailure(); ++i) {
        quads += checkQuadReaders(nearlyQuad(random)) ? 1 : 0;
    }
    EXPECT_GT(quads, kTexts / 4);
    EXPECT_LT(quads, kTexts * 3 / 4);
}

TEST(Address, TextsOfValuesReadBack) {
    std::mt19937 random(5);
    for (int i = 0; i < 100000; ++i) {
        const auto value = static_cast<uint32_t>(random());
        char text[16] = {};
        ASSERT_EQ(intIpToStrIp(text, value), 0);
        uint32_t back = 0;
        ASSERT_EQ(IpStr2Int(text, reinterpret_cast<uint8_t *>(&back)), 0);
        ASSERT_EQ(back, value);
        ASSERT_EQ(sw_ospf_inet_aton(text), value);
        const auto number = static_cast<int32_t>(value);
        ASSERT_EQ(rip_atoi(rip_itoa(number, text, 10)), number);
    }
}

} // namespace
