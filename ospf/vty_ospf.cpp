// SPDX-License-Identifier: Apache-2.0
// The walk into one ospfd context, the command, and the end of the session.

#include "ospf/vty_ospf.h"

#include "common/front_end.h"
#include "common/text.h"
#include "ospf/command.h"
#include "vty/daemons.h"
#include "vty/frr_util.h"
#include "vty/session.h"

namespace {

using frruci::common::format;
using namespace frruci::ospf;
using namespace frruci::vty;

constexpr const char *kLanInterface = "interface eth0.%d";
constexpr const char *kWanInterface = "interface eth1.%d";

/// The interface line's format for the side that the VLAN is on; null for no VLAN of ours.
const char *interfaceLine(int32_t vlan) {
    if (sw_is_lan_vid(vlan) != 0) {
        return kLanInterface;
    }
    return sw_is_wan_vid(vlan) != 0 ? kWanInterface : nullptr;
}

/// Any failure of the exchange is the one of this layer.
uint32_t resultOf(int32_t exchange) {
    return exchange == 0 ? kSuccess : kFailed;
}

} // namespace

uint32_t vtyOspfConfigOspf(uint32_t /*unused*/, const char *command, uint32_t /*selector*/) {
    // Fixed by the interface: one socket serves both instances, whatever the selector.
    return deliver(kOspfdSocket, {"en", "configure", "router ospf", command});
}

uint32_t vtyOspfConfigInterface(uint32_t /*unused*/, uint32_t vlanId, const char *command) {
    const auto vlan = static_cast<int32_t>(vlanId);
    if (interfaceLine(vlan) == nullptr) {
        return kFailed;
    }
    Session session(kOspfdSocket);
    char text[kReplyBytes] = {};
    const Reply reply = {text, kReplyBytes};
    if (walk(session, {"en", "configure"}, reply) != 0) {
        return kFailed;
    }
    // Fixed by the interface: asked a second time.
    const char *line = interfaceLine(vlan);
    if (line == nullptr) {
        return kFailed; // the command must not land in the context outside any interface
    }
    char context[kCommandBytes];
    format(context, line, vlan);
    return resultOf(walk(session, {context, command}, reply));
}

uint32_t vtyOspfConfigNetwork(uint32_t /*unused*/, uint32_t vlanId, const char *command,
                              uint32_t selector) {
    char context[kCommandBytes];
    format(context, selector != 0 ? kWanInterface : kLanInterface, static_cast<int32_t>(vlanId));
    return deliver(kOspfdSocket, {"en", "configure", context, command});
}

uint32_t doVtyOspfConfigInterface(uint32_t /*unused*/, const char *interfaceName,
                                  uint32_t /*unused2*/, const char *command) {
    char context[kCommandBytes];
    format(context, "interface %s", orEmpty(interfaceName));
    return deliver(kOspfdSocket, {"en", "configure", context, command});
}

uint32_t vtyOspfShowOspf(uint32_t /*unused*/, const char *command, char *reply,
                         uint32_t /*selector*/) {
    Session session(kOspfdSocket);
    char text[kReplyBytes] = {};
    const int32_t entered = walk(session, {"en"}, {text, kReplyBytes});
    return onceAccepted(resultOf(entered), [&] {
        return resultOf(walk(session, {command}, {reply, kReplyBytes}));
    });
}

uint32_t vtyPrint(const char *command, const char *socketPath, uint32_t kind, uint32_t selector,
                  int32_t extra) {
    const Session session(socketPath);
    if (!session.isOpen()) {
        return kNoConnection;
    }
    uint8_t code = 0;
    return resultOf(frrVtyPrint(session.fd(), command, &code, kind, selector, extra));
}
