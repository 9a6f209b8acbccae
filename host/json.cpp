// SPDX-License-Identifier: Apache-2.0
// A checker for JSON texts; it builds nothing.

#include "host/json.h"

#include <cstring>

namespace frruci::host {

namespace {

constexpr int kDeepest = 64;

class Checker {
public:
    explicit Checker(const char *text) : at_(text) {}

    bool whole() {
        if (!value(0)) {
            return false;
        }
        blanks();
        return *at_ == '\0';
    }

private:
    void blanks() { at_ += strspn(at_, " \t\r\n"); }

    bool take(char byte) {
        blanks();
        if (*at_ != byte) {
            return false;
        }
        ++at_;
        return true;
    }

    bool takeWord(const char *word) {
        const std::size_t length = strlen(word);
        if (strncmp(at_, word, length) != 0) {
            return false;
        }
        at_ += length;
        return true;
    }

    bool string() {
        if (!take('"')) {
            return false;
        }
        for (; *at_ != '"'; ++at_) {
            if (static_cast<unsigned char>(*at_) < 0x20 || (*at_ == '\\' && *++at_ == '\0')) {
                return false;
            }
        }
        ++at_;
        return true;
    }

    bool digits() {
        const std::size_t count = strspn(at_, "0123456789");
        at_ += count;
        return count > 0;
    }

    bool number() {
        at_ += *at_ == '-' ? 1 : 0;
        if (!digits()) {
            return false;
        }
        if (*at_ == '.') {
            ++at_;
            if (!digits()) {
                return false;
            }
        }
        if (*at_ == 'e' || *at_ == 'E') {
            ++at_;
            at_ += *at_ == '+' || *at_ == '-' ? 1 : 0;
            return digits();
        }
        return true;
    }

    /// The inside of brackets: members or elements, separated by commas.
    bool list(char close, bool named, int depth) {
        if (take(close)) {
            return true;
        }
        do {
            if ((named && !(string() && take(':'))) || !value(depth + 1)) {
                return false;
            }
        } while (take(','));
        return take(close);
    }

    bool value(int depth) {
        blanks();
        if (depth > kDeepest) {
            return false;
        }
        switch (*at_) {
        case '{':
            ++at_;
            return list('}', true, depth);
        case '[':
            ++at_;
            return list(']', false, depth);
        case '"':
            return string();
        default:
            return takeWord("true") || takeWord("false") || takeWord("null") || number();
        }
    }

    const char *at_;
};

} // namespace

bool isCompleteJson(const char *text) {
    return Checker(text).whole();
}

} // namespace frruci::host
