// SPDX-License-Identifier: Apache-2.0
// The one rule for names.

#include "host/interfaces.h"

#include <cstddef>
#include <cstring>

#include "host/text.h"

namespace frruci::host {

bool isVlanOfPort(const char *name) {
    constexpr const char *kDigits = "0123456789";
    const char *port = name + 3;
    const std::size_t portDigits = startsWith(name, "eth") ? strspn(port, kDigits) : 0;
    const char *dot = port + portDigits;
    const std::size_t vlanDigits = portDigits > 0 && *dot == '.' ? strspn(dot + 1, kDigits) : 0;
    return vlanDigits > 0 && dot[1 + vlanDigits] == '\0';
}

} // namespace frruci::host
