// SPDX-License-Identifier: Apache-2.0
// Address and number texts: whatever the text, the readers agree with each other and stay inside
// their buffers.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "common/address.h"

namespace {

void insist(bool truth) {
    if (!truth) {
        abort();
    }
}

/// A quad written anew reads back as itself.
void checkRoundTrip(const uint8_t (&octets)[4]) {
    uint32_t value = 0;
    memcpy(&value, octets, sizeof value);
    char text[16];
    insist(intIpToStrIp(text, value) == 0);
    uint8_t again[4] = {};
    insist(IpStr2Int(text, again) == 0 && memcmp(octets, again, sizeof again) == 0);
    insist(sw_ospf_inet_aton(text) == value);
    const bool usable = octets[0] >= 1 && octets[0] <= 223 && octets[0] != 127;
    insist(ipStrCheck(text) == (usable ? 0 : 1));
    const int32_t length = mask_to_masklen(value);
    insist(length >= 1 && length <= 32);
}

void checkQuad(const std::string &text) {
    struct {
        uint8_t octets[4];
        uint8_t behind;
    } room = {{}, 0xA5};
    const int32_t result = IpStr2Int(text.c_str(), room.octets);
    insist(result == 0 || result == -1);
    insist(room.behind == 0xA5);
    uint32_t length = 99;
    insist(maskStr2len(text.c_str(), &length) == result);
    insist(length <= 32 && (result == 0 || length == 0));
    const int32_t check = ipStrCheck(text.c_str());
    insist(check == 0 || check == 1);
    if (check == 0) {
        insist(result == 0);
    }
    if (result == 0) {
        // Nothing but digits and three dots, none of them doubled or last.
        insist(text.find_first_not_of("0123456789.") == std::string::npos);
        insist(text.find("..") == std::string::npos && text.back() != '.');
        checkRoundTrip(room.octets);
    }
}

void checkNumber(const std::string &text) {
    const int32_t value = rip_atoi(text.c_str());
    char written[12];
    insist(rip_itoa(value, written, 10) == written);
    insist(rip_atoi(written) == value);
    insist(rip_itoa(value, written, 16) == written);
    insist(static_cast<int32_t>(strtoul(written, nullptr, 16)) == value);
    (void)sw_ospf_inet_aton(text.c_str()); // may be anything for a text that is no address
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
    const std::string text(reinterpret_cast<const char *>(data),
                           strnlen(reinterpret_cast<const char *>(data), size));
    checkQuad(text);
    checkNumber(text);
    return 0;
}
