// SPDX-License-Identifier: Apache-2.0
// JSON as text, for comparisons.
#ifndef FRRUCI_TESTS_RPCD_JSON_TEXT_H
#define FRRUCI_TESTS_RPCD_JSON_TEXT_H

#include <string>

namespace jsontext {

/// Without the spaces between values.
inline std::string compact(const std::string &text) {
    std::string result;
    bool inside = false;
    bool escaped = false;
    for (const char byte : text) {
        const bool isSpace = byte == ' ' || byte == '\n' || byte == '\t';
        if (inside || !isSpace) {
            result += byte;
        }
        inside = byte == '"' && !escaped ? !inside : inside;
        escaped = byte == '\\' && !escaped;
    }
    return result;
}

} // namespace jsontext

#endif
