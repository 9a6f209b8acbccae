// SPDX-License-Identifier: Apache-2.0
// Any daemon output through the OSPF line handlers. The input's first byte chooses kind and
// instance, the rest is output in lines. Store and reply pipe are this program's own: it looks at
// what would go there.

#include <arpa/inet.h>
#include <cstdarg>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "ospf/frr_ospf.h"

namespace {

constexpr std::size_t kMostText = 256;
constexpr std::size_t kLineBytes = kMostText + 4;
constexpr std::size_t kMostRowBytes = 257;

const char *currentLine = "";
uint32_t currentKind = 0;
int rowsOfLine = 0;

void insist(bool truth) {
    if (!truth) {
        abort();
    }
}

bool isEither(const char *text, const char *one, const char *other) {
    return strcmp(text, one) == 0 || strcmp(text, other) == 0;
}

} // namespace

int32_t frr_uci_set(const char *package, const char *section, const char *option,
                    const char *value) {
    insist(currentKind == 1);
    insist(strcmp(package, "ospf") == 0);
    insist(strlen(section) <= 15 && strchr(section, '.') == nullptr);
    if (strcmp(option, "working") == 0) {
        insist(strcmp(value, "on") == 0 && section[0] != '\0');
    } else if (strcmp(option, "network_type") == 0) {
        insist(isEither(value, "0", "1"));
    } else {
        insist(strcmp(option, "cost") == 0);
        insist(strchr(value, ' ') == nullptr && strstr(currentLine, value) != nullptr);
    }
    return section[0] % 2; // both outcomes
}

int32_t write_pipe_to_lua(const char *text, const char *path) {
    insist(strcmp(path, currentKind == 2 ? "/tmp/tmp/ospf_pipe_c2lua_neighbor"
                                         : "/tmp/tmp/ospf_pipe_c2lua_database") == 0);
    insist(currentKind == 2 || currentKind == 3);
    insist(strlen(text) <= kMostRowBytes);
    insist(strncmp(text, currentLine, strlen(text)) == 0);
    ++rowsOfLine;
    return 0;
}

int32_t record_log_act(const char *format, ...) {
    insist(strncmp(format, "frr_ospf:%d: ", 13) == 0);
    return 0;
}

namespace {

bool opensWithAddress(const char *line) {
    char word[kLineBytes] = {};
    line += strspn(line, " ");
    memcpy(word, line, strcspn(line, " "));
    in_addr address = {};
    return inet_aton(word, &address) != 0;
}

/// The line as the vty layer hands it out, in a block of its own so that its end is watched.
void take(const char *text, std::size_t length, uint32_t kind, uint32_t instance) {
    auto *line = static_cast<char *>(calloc(1, kLineBytes));
    char copy[kLineBytes] = {};
    memcpy(line, text, length);
    memcpy(line + length, "\r\n", 2);
    memcpy(copy, line, kLineBytes);
    currentLine = copy;
    currentKind = kind;
    rowsOfLine = 0;
    handle_ospf_show(line, kind, instance);
    const bool forwards = kind == 2 || (kind == 3 && instance != 0);
    if (forwards && length + 2 < kMostRowBytes) {
        insist(rowsOfLine == (opensWithAddress(copy) ? 1 : 0));
    } else {
        insist(rowsOfLine <= (forwards ? 1 : 0));
    }
    free(line);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const uint32_t kind = data[0] % 5;
    const uint32_t instance = data[0] / 5 % 2;
    const char *text = reinterpret_cast<const char *>(data) + 1;
    for (--size; size > 0;) {
        const void *end = memchr(text, '\n', size);
        const std::size_t whole =
            end == nullptr ? size : static_cast<std::size_t>(static_cast<const char *>(end) - text);
        take(text, whole < kMostText ? whole : kMostText, kind, instance);
        const std::size_t used = end == nullptr ? whole : whole + 1;
        text += used;
        size -= used;
    }
    return 0;
}
