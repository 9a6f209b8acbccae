// SPDX-License-Identifier: Apache-2.0
// Delivery of RIP commands to ripd.

#include "rip/vty_rip.h"

#include "common/front_end.h"
#include "common/status.h"
#include "common/text.h"
#include "rip/uc_rip.h"
#include "vty/daemons.h"
#include "vty/frr_util.h"
#include "vty/session.h"
#include "vty/views.h"

namespace {

using namespace frruci::rip;
using frruci::common::format;
using frruci::common::kFailed;
using frruci::common::kNoConnection;
using frruci::common::kRefused;
using frruci::common::kSuccess;
using frruci::vty::deliver;
using frruci::vty::kRipdSocket;
using frruci::vty::ReplyPolicy;
using frruci::vty::Session;

constexpr int32_t kRipLines = 0; // mode of frrVtyPrint
constexpr uint32_t kNoArgument = 0;

// One byte more than an answer may have, so that its text always ends.
constexpr int32_t kAnnouncedReplyBytes = 512;
constexpr int32_t kViewReplyBytes = kAnnouncedReplyBytes + 1;

} // namespace

uint32_t frruci::rip::sendToInstance(const char *vrf, const char *command, uint32_t side) {
    char reply[kViewReplyBytes] = {};
    return swRipAutoRun(vrf, command, kAnnouncedReplyBytes, side, reply);
}

uint32_t frruci::rip::sendInView(const char *view, const char *command, dlist **params) {
    char reply[kViewReplyBytes] = {};
    return static_cast<uint32_t>(
        frrVtyAutoRun(view, kRipdSocket, command, params, kAnnouncedReplyBytes, reply));
}

uint32_t swRipAutoRun(const char *vrf, const char *command, int32_t replyLen, uint32_t /*selector*/,
                      char *reply) {
    dlist *params = nullptr;
    if (frrVtyParamInit(&params) != kSuccess ||
        frrVtyParamStrSet(&params, "vrf", vrf) == kRefused) {
        (void)frrVtyParamFini(&params); // nothing to do about a list that stays
        return kFailed;
    }
    return static_cast<uint32_t>(
        frrVtyAutoRun(kInstanceView, kRipdSocket, command, &params, replyLen, reply));
}

uint32_t swRipIfAutoRun(const char *ifname, RipNetIf key, const char *command, int32_t /*replyLen*/,
                        char * /*reply*/) {
    const auto vid = static_cast<int32_t>(key.vid);
    return doVtyRipConfigInterface(ifname, sw_is_lan_vid(vid) == 0 ? 1 : 0, command);
}

uint32_t doVtyRipConfigInterface(const char *ifname, uint32_t /*selector*/, const char *command) {
    if (ifname == nullptr || command == nullptr) {
        return kFailed;
    }
    char context[frruci::vty::kCommandBytes];
    format(context, "interface %s", ifname);
    return deliver(kRipdSocket, {"enable", "configure", context, command}, ReplyPolicy::kFresh);
}

uint32_t ripVtyPrint(const char *command, uint32_t /*selector*/) {
    const Session session(kRipdSocket);
    uint8_t code = 0;
    return session.isOpen() && frrVtyPrint(session.fd(), command, &code, kNoArgument, kNoArgument,
                                           kRipLines) == kSuccess
               ? kSuccess
               : kNoConnection; // a refusal too. Fixed by the interface.
}
