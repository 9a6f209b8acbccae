// SPDX-License-Identifier: Apache-2.0
// Delivers one command to nhrpd or zebra in its context, and streams the NHRP cache to the
// front-end.

#include "nhrp/vty_nhrp.h"

#include <cstddef>

#include "common/front_end.h"
#include "common/outside.h"
#include "common/status.h"
#include "common/text.h"
#include "vty/daemons.h"
#include "vty/session.h"

namespace {

using frruci::common::format;
using frruci::common::kFailed;
using frruci::common::kNoConnection;
using frruci::common::kSuccess;
using frruci::vty::deliver;
using frruci::vty::kNhrpdSocket;
using frruci::vty::kZebraSocket;

constexpr const char *kEnable = "enable"; // in full on the NHRP side
constexpr const char *kConfigure = "configure";
constexpr const char *kCachePipe = "/tmp/tmp/nhrp_pipe_c2lua_cache";
constexpr std::size_t kChunkBytes = 256;

uint32_t deliverToInterface(const char *path, const char *ifname, const char *command) {
    if (ifname == nullptr || command == nullptr) {
        return kFailed;
    }
    char context[frruci::vty::kCommandBytes];
    format(context, "interface %s", ifname);
    return deliver(path, {kEnable, kConfigure, context, command});
}

bool isDropped(char byte) {
    return byte == ' ' || byte == '\b' || byte == '\t' || byte == '\n';
}

/// Copies all other bytes; kept has room for a whole chunk and its terminating zero.
void copyKept(const char *chunk, std::size_t count, char (&kept)[kChunkBytes + 1]) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (isDropped(chunk[i])) {
            continue;
        }
        if (length >= kChunkBytes) {
            (void)record_log_act("vty_nhrp:%d: got something wrong!!!!!!!!!!!!!!!!!!!!!!!!\n",
                                 __LINE__);
            return;
        }
        kept[length++] = chunk[i];
    }
}

/// Hands one read's worth of the answer to the front-end; the count that the read returned.
ssize_t passChunk(int32_t fd) {
    char chunk[kChunkBytes] = {};
    char kept[kChunkBytes + 1] = {};
    const ssize_t received = frruci::outside::receive(fd, chunk, sizeof chunk);
    copyKept(chunk, received > 0 ? static_cast<std::size_t>(received) : 0, kept);
    // Up to the first NUL, so the end marker and the completion code stay out of the pipe. An empty
    // chunk is written too. Fixed by the interface.
    (void)write_pipe_to_lua(kept, kCachePipe); // without a reader there is nobody to tell
    return received;
}

void streamAnswer(int32_t fd) {
    // A full chunk is followed by another read, even when it ended the answer. Fixed by the
    // interface.
    while (passChunk(fd) == static_cast<ssize_t>(kChunkBytes)) {
    }
}

} // namespace

uint32_t doVtyNhrpEnable(uint16_t /*vrf*/, const char *command) {
    return deliver(kNhrpdSocket, {kEnable, command});
}

uint32_t doVtyNhrpConfig(uint16_t /*vrf*/, const char *command) {
    return command == nullptr ? kFailed : deliver(kNhrpdSocket, {kEnable, kConfigure, command});
}

uint32_t doVtyNhrpConfigInterface(uint16_t /*vrf*/, const char *ifname, const char *command) {
    return deliverToInterface(kNhrpdSocket, ifname, command);
}

uint32_t doVtyZebraConfigInterface(uint16_t /*vrf*/, const char *ifname, const char *command) {
    return deliverToInterface(kZebraSocket, ifname, command);
}

uint32_t frrVtyNhrpPrint(int32_t fd, const char *command) {
    if (fd < 1 || command == nullptr || frruci::outside::sendCommand(fd, command) < 0) {
        return kFailed;
    }
    streamAnswer(fd);
    return kSuccess;
}

uint32_t vtyNhrpPrint(const char *command, const char *socket_path) {
    frruci::vty::Session session(socket_path);
    if (!session.isOpen()) {
        return kNoConnection;
    }
    char reply[frruci::vty::kReplyBytes] = {};
    if (walk(session, {kEnable}, {reply, sizeof reply}) != kSuccess) {
        return kFailed;
    }
    return frrVtyNhrpPrint(session.fd(), command) == kSuccess ? kSuccess : kFailed;
}
