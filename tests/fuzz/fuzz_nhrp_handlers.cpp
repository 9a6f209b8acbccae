// SPDX-License-Identifier: Apache-2.0
// Any argument vector for any NHRP handler. The input is lines: the handler's letter (i, g or s),
// what argc says more than there are words, then a word each; "~" alone is a null entry.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "nhrp/frr_nhrp.h"
#include "nhrp/sw_nhrp.h"
#include "tests/fuzz/request.h"
#include "tests/support/stage.h"

namespace {

using namespace fuzz;

constexpr std::size_t kPrefix = sizeof "reply nhrp_pipe_c2lua: " - 1;

/// One session at the most, and one reply where one is due.
void insistOnTrace(const char *trace, bool replies) {
    int sessions = 0;
    int answers = 0;
    for (const char *line = trace; *line != '\0';) {
        const char *end = strchr(line, '\n');
        const auto length = static_cast<std::size_t>(end - line);
        if (strncmp(line, "nhrpd: ", 7) == 0 || strncmp(line, "zebra: ", 7) == 0) {
            ++sessions;
        } else if (strncmp(line, "reply nhrp_pipe_c2lua: ", kPrefix) == 0) {
            ++answers;
            insist(strncmp(line + kPrefix, "ok\n", 3) == 0 ||
                   strncmp(line + kPrefix, "fail\n", 5) == 0);
        } else {
            insist(strncmp(line, "system: killall nhrpd;nhrpd -d\n", length + 1) == 0);
        }
        line = end + 1;
    }
    insist(sessions <= 1 && answers == (replies ? 1 : 0));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    static Request request;
    read(data, size, request);
    const int32_t argc = argcOf(request, kMaxWords);
    stage::Stage stage;
    stage::writeFile("/etc/config/nhrp", "config nhrp 'sdwan'\n");
    const int open = stage::Stage::openDescriptors();
    switch (request.head[0]) {
    case 'i':
        process_nhrp_interface(argc, request.words);
        insistOnTrace(stage.trace(), argc > 1);
        break;
    case 'g':
        process_nhrp_global(argc, request.words);
        insistOnTrace(stage.trace(), true);
        break;
    default:
        process_nhrp_show(argc, request.words);
        insistOnTrace(stage.trace(), false);
        break;
    }
    insist(stage::Stage::openDescriptors() == open);
    insist(nhrp_set_enable_config("sdwan", "readable", "1", 1) == 0); // what was stored reads back
    return 0;
}
