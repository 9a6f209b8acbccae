// SPDX-License-Identifier: Apache-2.0
// The scope of one session and the walk into a context.

#include "vty/session.h"

#include <cstring>

#include "common/status.h"
#include "vty/frr_util.h"
#include "vty/manager.h"

namespace frruci::vty {

using common::kFailed;
using common::kSuccess;

Session::Session(const char *path) : path_(path) {
    if (frrVtyConnect(path, &fd_) != kSuccess) {
        fd_ = -1;
    }
}

Session::~Session() {
    (void)frrVtyDisconnect(fd_); // refuses a session that never opened
}

void Session::moveTo(int32_t fd) {
    (void)frrVtyDisconnect(fd_); // as at its end
    fd_ = fd;
}

int32_t walk(Session &session, std::span<const char *const> steps, const Reply &reply) {
    Manager manager;
    if (!session.isOpen() || !manager.takeOver(session, steps)) {
        return kFailed;
    }
    for (std::size_t i = 0; i < steps.size() && steps[i] != nullptr;) {
        if (reply.policy == ReplyPolicy::kFresh) {
            memset(reply.text, 0, static_cast<std::size_t>(reply.bytes));
        }
        uint8_t code = 0;
        const int32_t result = frrVtyRun(session.fd(), steps[i], &code, reply.text, reply.bytes);
        if (result == kSuccess) {
            ++i;
        } else if (!manager.goesOn(result, reply.text, i)) {
            return result;
        }
    }
    return kSuccess;
}

uint32_t deliver(const char *path, std::initializer_list<const char *> steps, ReplyPolicy policy) {
    Session session(path);
    char reply[kReplyBytes] = {};
    return walk(session, steps, {reply, kReplyBytes, policy}) == kSuccess ? kSuccess : kFailed;
}

} // namespace frruci::vty
