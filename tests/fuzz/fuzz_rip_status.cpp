// SPDX-License-Identifier: Apache-2.0
// Any output of "show ip rip status": which interfaces are marked up, against a reading word by
// word. The input is the output as the daemon sends it, handed on line by line.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "rip/frr_rip.h"

namespace {

constexpr int32_t kNotFound = 3;

std::vector<std::string> marked;
int logged;

void insist(bool truth) {
    if (!truth) {
        abort();
    }
}

/// The section that the line marks; empty when it marks none.
std::string expected(const std::string &line) {
    std::vector<std::string> words(1);
    for (const char c : line) {
        if (c != ' ') {
            words.back() += c;
        } else if (!words.back().empty()) {
            words.emplace_back();
        }
    }
    if (words.size() < 2 || (words[1] != "1" && words[1] != "2")) {
        return "";
    }
    for (char &c : words[0]) {
        c = c == '.' ? '_' : c;
    }
    return words[0];
}

/// As the show streaming hands it over: CR LF after the text, cut at a NUL.
std::string asHanded(const std::string &line) {
    return std::string(line.c_str()).substr(0, 256) + (line.size() < 256 ? "\r\n" : "");
}

void check(const std::string &line) {
    const std::string handed =
        line.find('\0') == std::string::npos ? asHanded(line) : std::string(line.c_str());
    std::vector<char> room(handed.c_str(), handed.c_str() + handed.size() + 1);
    marked.clear();
    logged = 0;
    handle_rip_show_interface(room.data());
    const std::string section = expected(handed);
    insist(marked.size() == (section.empty() ? 0U : 1U));
    insist(section.empty() || marked[0] == section);
    insist(logged == (section.empty() ? 0 : 1));
}

} // namespace

// In place of the library's own: what is marked is noted, and never found.
int32_t frr_uci_set(const char *package, const char *section, const char *option,
                    const char *value) {
    insist(strcmp(package, "rip") == 0 && strcmp(option, "status") == 0 &&
           strcmp(value, "up") == 0);
    marked.emplace_back(section);
    return kNotFound;
}

int32_t record_log_act(const char *format, ...) {
    insist(strcmp(format, "frr_rip:%d:  ret=%d, frr_uci_set\n") == 0);
    ++logged;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
    std::string line;
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == '\n') {
            check(line);
            line.clear();
        } else {
            line += static_cast<char>(data[i]);
        }
    }
    check(line);
    return 0;
}
