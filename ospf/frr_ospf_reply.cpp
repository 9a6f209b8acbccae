// SPDX-License-Identifier: Apache-2.0
// Replies to the front-end, and the log line of a failure.

#include "ospf/frr_ospf_reply.h"

#include "common/front_end.h"

namespace frruci::ospf {

void replyOk(const char *pipe) {
    (void)write_pipe_to_lua("ok", pipe); // without a pipe there is nobody to tell
}

void logFailure(uint32_t status, const char *what, int line) {
    if (status != 0) {
        (void)record_log_act("frr_ospf:%d:  ret=%d, %s\n", line, static_cast<int32_t>(status),
                             what);
    }
}

} // namespace frruci::ospf
