// SPDX-License-Identifier: Apache-2.0
// Address, mask and number texts: one scan of dotted quads, and narrow rules of each function.

#include "common/address.h"

#include <arpa/inet.h>
#include <bit>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "common/status.h"
#include "common/text.h"

namespace {

using frruci::common::kRefused;
using frruci::common::kSuccess;

constexpr int32_t kNotUsable = 1;

constexpr std::size_t kOctets = 4;
constexpr std::size_t kAddressBytes = 16;
constexpr uint32_t kLargestOctet = 255;

constexpr std::size_t kLongestQuad = 16;
constexpr std::size_t kShortestHost = 7;
constexpr std::size_t kLongestHost = 15;
constexpr uint32_t kLoopback = 127;
constexpr uint32_t kLastUnicast = 223;

constexpr int kMaskBits = 32;

/// Reads a dotted quad; take(index, value) gets each octet when it is complete and may refuse it.
/// True when there were exactly four octets, all accepted. A dot at the very start closes a 0.
template <typename Take> bool scanQuad(const char *text, Take take) {
    std::size_t index = 0;
    uint32_t value = 0;
    for (; *text != '\0'; ++text) {
        if (*text == '.') {
            if (text[1] == '.' || index >= kOctets || !take(index, value)) {
                return false;
            }
            ++index;
            value = 0;
        } else if (*text >= '0' && *text <= '9') {
            value = value * 10 + static_cast<uint32_t>(*text - '0');
            if (value > kLargestOctet) {
                return false;
            }
        } else {
            return false;
        }
    }
    return index == kOctets - 1 && take(index, value);
}

bool endsInDot(const char *text, std::size_t length) {
    return length > 0 && text[length - 1] == '.';
}

/// The bits before the trailing zeros: a prefix length where the mask is contiguous.
int leadingBits(uint32_t mask) {
    return kMaskBits - std::countr_zero(mask);
}

} // namespace

int32_t IpStr2Int(const char *text, uint8_t *octets) {
    if (text == nullptr || octets == nullptr) {
        return kRefused;
    }
    const std::size_t length = strlen(text);
    // Fixed by the interface: only the low byte of the length counts, so longer texts reach the
    // scan.
    if (static_cast<uint8_t>(length) > kLongestQuad || endsInDot(text, length)) {
        return kRefused;
    }
    const bool quad = scanQuad(text, [octets](std::size_t index, uint32_t value) {
        octets[index] = static_cast<uint8_t>(value);
        return true;
    });
    return quad ? kSuccess : kRefused;
}

// Fixed by the interface: the last octet may be anything.
int32_t ipStrCheck(const char *text) {
    if (text == nullptr) {
        return kNotUsable;
    }
    const std::size_t length = strlen(text);
    if (length < kShortestHost || length > kLongestHost || endsInDot(text, length)) {
        return kNotUsable;
    }
    const bool usable = scanQuad(text, [](std::size_t index, uint32_t value) {
        return index != 0 || (value >= 1 && value <= kLastUnicast && value != kLoopback);
    });
    return usable ? kSuccess : kNotUsable;
}

int32_t intIpToStrIp(char *out_text, uint32_t address_value) {
    if (out_text == nullptr) {
        return kRefused;
    }
    uint8_t octets[kOctets];
    static_assert(sizeof octets == sizeof address_value);
    memcpy(octets, &address_value, sizeof octets);
    (void)snprintf(out_text, kAddressBytes, "%d.%d.%d.%d", octets[0], octets[1], octets[2],
                   octets[3]); // the longest address fits
    return kSuccess;
}

int32_t maskStr2len(const char *mask_text, uint32_t *out_length) {
    if (mask_text == nullptr || out_length == nullptr) {
        return kRefused;
    }
    *out_length = 0;
    uint32_t mask = 0;
    if (IpStr2Int(mask_text, reinterpret_cast<uint8_t *>(&mask)) != kSuccess) {
        return kRefused;
    }
    *out_length = static_cast<uint32_t>(leadingBits(ntohl(mask)));
    return kSuccess;
}

int32_t mask_to_masklen(uint32_t mask_value) {
    const uint32_t mask = ntohl(mask_value);
    const bool isWildcard = mask >> (kMaskBits - 1) == 0;
    return leadingBits(isWildcard ? ~mask : mask);
}

uint32_t sw_ospf_inet_aton(const char *text) {
    in_addr address = {};
    if (text == nullptr || inet_aton(text, &address) == 0) {
        return 0;
    }
    return address.s_addr;
}

char *rip_itoa(int32_t value, char *out_text, int32_t base) {
    if (out_text == nullptr) {
        return nullptr;
    }
    switch (base) {
    case 10:
        (void)sprintf(out_text, "%d", value); // the caller's buffer holds any number
        return out_text;
    case 16:
        (void)sprintf(out_text, "%x", static_cast<uint32_t>(value));
        return out_text;
    default:
        return nullptr;
    }
}

int32_t rip_atoi(const char *text) {
    return text == nullptr ? 0 : frruci::common::number(text);
}
