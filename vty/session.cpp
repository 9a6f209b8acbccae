// SPDX-License-Identifier: Apache-2.0
// The scope of one session and the sequential walk into a context.

#include "vty/session.h"

#include "vty/frr_util.h"

namespace frruci::vty {

Session::Session(const char *path) {
    if (frrVtyConnect(path, &fd_) != 0) {
        fd_ = -1;
    }
}

Session::~Session() {
    (void)frrVtyDisconnect(fd_);
} // refuses a session that never opened

bool Session::run(const char *command) {
    return run(command, reply_);
}

bool Session::run(const char *command, char *reply) {
    uint8_t code = 0;
    return frrVtyRun(fd_, command, &code, reply, kReplyBytes) == 0;
}

uint32_t deliver(const char *path, std::initializer_list<const char *> steps) {
    Session session(path);
    if (!session.isOpen()) {
        return 1;
    }
    for (const char *step : steps) {
        if (step == nullptr) {
            break;
        }
        if (!session.run(step)) {
            return 1;
        }
    }
    return 0;
}

} // namespace frruci::vty
