// SPDX-License-Identifier: Apache-2.0
// Reads options of a store section that libuci has loaded.

#include "common/uci_option.h"

#include <uci.h>

const char *frruci::common::optionText(uci_context *context, uci_section *section,
                                       const char *option) {
    uci_element *element = nullptr;
    if (context == nullptr || section == nullptr || option == nullptr ||
        uci_lookup_next(context, &element, &section->options, option) != UCI_OK ||
        element == nullptr) {
        return nullptr;
    }
    const auto *found = reinterpret_cast<const uci_option *>(element); // its first member
    return found->type == UCI_TYPE_STRING ? found->v.string : nullptr;
}
