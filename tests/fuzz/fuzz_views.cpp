// SPDX-License-Identifier: Apache-2.0
// The expansion of views: any entry text, parameters and room, against a reading character by
// character. Input: a byte of room, then texts ended by NUL: the entry text, then keys and values.

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "common/front_end.h"
#include "vty/frr_util.h"

// In place of the library's own: the log is no part of this, and would grow without end.
int32_t record_log_act(const char *format, ...) {
    char message[512];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    return length < 0 ? -1 : 0;
}

namespace {

constexpr std::size_t kRoom = 300;
constexpr char kUntouched = '\x7E';

using Parameters = std::vector<std::pair<std::string, std::string>>;

void insist(bool truth) {
    if (!truth) {
        abort();
    }
}

std::vector<std::string> texts(const uint8_t *data, std::size_t size) {
    std::vector<std::string> found(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == 0) {
            found.emplace_back();
        } else {
            found.back() += static_cast<char>(data[i]);
        }
    }
    return found;
}

/// Takes the value of a parameter; empty when there is none.
std::string take(Parameters &parameters, const std::string &key) {
    for (auto it = parameters.begin(); it != parameters.end(); ++it) {
        if (it->first == key) {
            const std::string value = it->second;
            parameters.erase(it);
            return value;
        }
    }
    return "";
}

/// What must come out; false when the expansion must fail.
bool expected(const std::string &entry, Parameters &parameters, std::size_t room,
              std::string &out) {
    bool inside = false;
    std::string name;
    for (const char c : entry.substr(0, 254)) {
        if (out.size() >= room) {
            break;
        }
        if (!inside && c == '<') {
            inside = true;
            name.clear();
        } else if (!inside && c != '>') {
            out += c;
        } else if (!inside || c == '<') {
            return false;
        } else if (c != '>') {
            name += c;
            if (name.size() > 31) {
                return false;
            }
        } else {
            const std::string value = take(parameters, name);
            if (value.empty()) {
                return false;
            }
            out = (out + value).substr(0, room);
            inside = false;
        }
    }
    return true;
}

bool isSet(const Parameters &parameters, const std::string &key) {
    for (const auto &parameter : parameters) {
        if (parameter.first == key) {
            return true;
        }
    }
    return false;
}

/// Sets the parameters on both sides, and checks which are refused.
void setParameters(const std::vector<std::string> &words, dlist **holder, Parameters &parameters) {
    for (std::size_t i = 1; i + 1 < words.size(); i += 2) {
        const std::string &key = words[i];
        const std::string &value = words[i + 1];
        const bool fits = key.size() <= 31 && value.size() <= 31 && !isSet(parameters, key);
        const int32_t result = frrVtyParamStrSet(holder, key.c_str(), value.c_str());
        insist(result == (fits ? static_cast<int32_t>(value.size()) : -1));
        if (fits) {
            parameters.emplace_back(key, value);
        }
    }
}

void release(dlist *list) {
    while (list->head != nullptr) {
        insist(dlistDelete(list, list->head) == 0);
    }
    free(list);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    if (gPreCmdEntryList == nullptr) {
        insist(frrVtyInit() == 0);
    }
    const std::size_t room = data[0];
    const std::vector<std::string> words = texts(data + 1, size - 1);
    dlist *holder = nullptr;
    Parameters parameters;
    insist(frrVtyParamInit(&holder) == 0);
    setParameters(words, &holder, parameters);
    insist(frrVtyViewReg("fuzzed", words[0].c_str()) == 0);

    std::string wanted;
    const bool succeeds = expected(words[0], parameters, room, wanted);
    char out[kRoom];
    memset(out, kUntouched, sizeof out);
    const int32_t result = frrVtyFPreCmdParse("fuzzed", &holder, static_cast<int32_t>(room), out);
    insist(result == (succeeds ? 0 : 1));
    insist(memcmp(out, wanted.data(), wanted.size()) == 0);
    for (std::size_t i = wanted.size(); i < sizeof out; ++i) {
        insist(out[i] == kUntouched);
    }
    insist(dlistLength(holder) == parameters.size());

    insist(frrVtyViewUnreg("fuzzed") == 0);
    release(holder);
    return 0;
}
