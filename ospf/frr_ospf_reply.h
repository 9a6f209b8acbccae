/* SPDX-License-Identifier: Apache-2.0 */
/* How the handlers and the display answer the front-end and report failures. */
#ifndef FRRUCI_OSPF_FRR_OSPF_REPLY_H
#define FRRUCI_OSPF_FRR_OSPF_REPLY_H

#include <cstdint>

namespace frruci::ospf {

inline constexpr const char *kReplyPipe = "/tmp/tmp/ospf_pipe_c2lua";

/// Fixed by the interface: every reply is "ok", also after a failure.
void replyOk(const char *pipe = kReplyPipe);

/// Logs a status other than 0. The number in the line is that of the call or table row that failed.
void logFailure(uint32_t status, const char *what, int line = __builtin_LINE());

} // namespace frruci::ospf

#endif
