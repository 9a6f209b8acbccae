// SPDX-License-Identifier: Apache-2.0
// Any argument vector for any NHRP handler. The input is lines: the handler's letter (i, g or s),
// what argc says more than there are words, then a word each; "~" alone is a null entry.

#include <cstdint>
#include <cstring>
#include <string>

#include "nhrp/frr_nhrp.h"
#include "tests/fuzz/rehearsal.h"
#include "tests/fuzz/request.h"

namespace {

using namespace fuzz;

constexpr const char *kReplies[] = {"/tmp/tmp/nhrp_pipe_c2lua: ok",
                                    "/tmp/tmp/nhrp_pipe_c2lua: fail",
                                    "/tmp/tmp/nhrp_pipe_c2lua_cache: "};

bool isKnownReply(const std::string &reply) {
    return reply == kReplies[0] || reply == kReplies[1] || reply == kReplies[2];
}

/// One session at the most, one reply where one is due, and no shell that the words have touched.
void insistOn(Rehearsal &rehearsal, bool replies) {
    std::size_t sessions = 0;
    for (const Line &line : rehearsal.lines) {
        sessions += line.commands.rfind("/var/", 0) == 0 ? 1 : 0;
    }
    insist(sessions <= 1);
    std::size_t answers = 0;
    for (const std::string &reply : rehearsal.replies) {
        insist(isKnownReply(reply));
        answers += reply == kReplies[2] ? 0 : 1;
    }
    insist(answers == (replies ? 1U : 0U));
    for (const std::string &command : rehearsal.shells) {
        insist(isKnownShell(command));
    }
    insist(rehearsal.leftOpen() == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    static Request request;
    read(data, size, request);
    const int32_t argc = argcOf(request, kMaxWords);
    Rehearsal rehearsal;
    switch (request.head[0]) {
    case 'i':
        process_nhrp_interface(argc, request.words);
        insistOn(rehearsal, argc > 1);
        break;
    case 'g':
        process_nhrp_global(argc, request.words);
        insistOn(rehearsal, true);
        break;
    default:
        process_nhrp_show(argc, request.words);
        insistOn(rehearsal, false);
        break;
    }
    return 0;
}
