// SPDX-License-Identifier: Apache-2.0
// RIP commands of an interface, and the key chains that they use.

#include "rip/sw_rip.h"

#include <span>

#include "common/front_end.h"
#include "common/text.h"
#include "rip/rip_internal.h"
#include "vty/session.h"
#include "vty/views.h"

namespace {

using namespace frruci::rip;
using frruci::common::format;
using frruci::vty::kCommandBytes;

constexpr std::size_t kChainBytes = 32;
constexpr int32_t kParamFailed = -1;

uint32_t send(const char *ifname, RipNetIf key, const char *command) {
    char reply[kReplyBytes] = {};
    return swRipIfAutoRun(ifname, key, command, kAnnouncedReplyBytes, reply);
}

uint32_t makeRecord(RipNetIf key) {
    RipInterfaceNode *record = nullptr;
    return ucRipInterfaceNodeAppend(key, &record) == kOk ? kOk : kFailed;
}

// ---- settings with one stored value ----

/// commands[v] tells ripd the value v; 0 is the "no" form.
struct Setting {
    std::span<const char *const> commands;
    uint32_t (*store)(RipNetIf key, uint32_t value);
};

constexpr const char *kSendVersionCommands[] = {"no ip rip send version", "ip rip send version 1",
                                                "ip rip send version 2"};
constexpr const char *kReceiveVersionCommands[] = {
    "no ip rip receive version", "ip rip receive version 1", "ip rip receive version 2",
    "ip rip receive version 1 2"};
constexpr const char *kV2BroadcastCommands[] = {"no ip rip v2-broadcast", "ip rip v2-broadcast"};

constexpr Setting kSendVersion = {kSendVersionCommands, ucRipInterfaceSendVersionSet};
constexpr Setting kReceiveVersion = {kReceiveVersionCommands, ucRipInterfaceRecvVersionSet};
constexpr Setting kV2Broadcast = {kV2BroadcastCommands, ucRipInterfaceV2broadcastSet};

uint32_t set(const Setting &setting, const char *ifname, RipNetIf key, uint32_t value,
             uint32_t enable) {
    const Range accepted = {1, static_cast<uint32_t>(setting.commands.size()) - 1};
    if (!kSwitch.holds(enable) || (enable == 1 && !accepted.holds(value))) {
        return kFailed;
    }
    const uint32_t wanted = enable == 1 ? value : 0;
    const uint32_t sent = send(ifname, key, setting.commands[wanted]);
    if (sent != kOk) {
        return sent;
    }
    return makeRecord(key) == kOk ? setting.store(key, wanted) : kFailed;
}

const char *splitHorizonCommand(uint32_t poisoned, uint32_t enable) {
    if (enable == 0) {
        return "no ip rip split-horizon";
    }
    return poisoned == 1 ? "ip rip split-horizon poisoned-reverse" : "ip rip split-horizon";
}

// ---- authentication ----

constexpr uint32_t kMd5 = 2; // mode; 1 is simple text

/// Three commands: the other method goes, the new secret comes, the mode changes.
struct AuthMethod {
    const char *clearOther;
    const char *install; // with the key's text, or for MD5 the chain's name
    const char *mode;
};

constexpr const char *kTextMode = "ip rip authentication mode text";

// By mode. The handlers never ask for mode 0, whose first two commands are empty.
constexpr AuthMethod kAuthMethods[] = {
    {"",                                   "",                                   kTextMode},
    {"no ip rip authentication key-chain", "ip rip authentication string %s",    kTextMode},
    {"no ip rip authentication string",    "ip rip authentication key-chain %s",
     "ip rip authentication mode md5"                                                     },
};

uint32_t installSecret(const char *ifname, RipNetIf key, uint32_t mode, uint32_t keyid,
                       const char *keystring) {
    const AuthMethod &method = kAuthMethods[mode];
    char chain[kChainBytes];
    format(chain, "app_rip_%u", keyid);
    if (mode == kMd5) {
        (void)swRipKeychainClean(key, chain); // there may be none yet
    }
    uint32_t sent = send(ifname, key, method.clearOther);
    if (sent != kOk) {
        return sent;
    }
    if (mode == kMd5) {
        (void)swRipKeychainAdd(key, chain, keyid, keystring); // Fixed by the interface
    }
    char command[kCommandBytes];
    format(command, method.install, mode == kMd5 ? chain : keystring);
    sent = send(ifname, key, command);
    return sent != kOk ? sent : send(ifname, key, method.mode);
}

uint32_t storeSecret(RipNetIf key, uint32_t keyid, const char *keystring) {
    if (ucRipInterfaceAuth_keyidSet(key, keyid) != kOk) {
        return kFailed;
    }
    // ripd takes a key of more than 16 characters in a key chain; the model refuses it.
    return ucRipInterfaceAuth_strSet(key, keystring);
}

/// Asks the front-end about the VLAN. Fixed by the interface.
void askForSide(RipNetIf key) {
    (void)sw_is_lan_vid(static_cast<int32_t>(key.vid)); // one ripd serves both sides
}

} // namespace

uint32_t swRipIfSplitHorizonSet(const char *ifname, RipNetIf key, uint32_t poisoned,
                                uint32_t enable) {
    if (!kSwitch.holds(poisoned) || !kSwitch.holds(enable)) {
        return kFailed;
    }
    const uint32_t sent = send(ifname, key, splitHorizonCommand(poisoned, enable));
    if (sent != kOk) {
        return sent;
    }
    // Poisoned reverse is stored as split horizon. Fixed by the interface.
    return makeRecord(key) == kOk ? ucRipInterfaceSplitHorizonEnableSet(key, enable) : kFailed;
}

uint32_t swRipIfSendVersionSet(const char *ifname, RipNetIf key, uint32_t version,
                               uint32_t enable) {
    return set(kSendVersion, ifname, key, version, enable);
}

uint32_t swRipIfReceiveVersionSet(const char *ifname, RipNetIf key, uint32_t version,
                                  uint32_t enable) {
    return set(kReceiveVersion, ifname, key, version, enable);
}

uint32_t swRipIfV2BroadcastSet(const char *ifname, RipNetIf key, uint32_t enable) {
    return set(kV2Broadcast, ifname, key, 1, enable);
}

uint32_t swRipIfAuthenticationSet(const char *ifname, RipNetIf key, uint32_t mode, uint32_t keyid,
                                  const char *keystring, uint32_t enable) {
    if (!kSwitch.holds(enable) ||
        (enable == 1 && (mode > kMd5 || !kKeyId.holds(keyid) || keystring == nullptr))) {
        return kFailed;
    }
    const uint32_t sent = enable == 1 ? installSecret(ifname, key, mode, keyid, keystring)
                                      : send(ifname, key, "no ip rip authentication mode");
    if (sent != kOk) {
        return sent;
    }
    if (makeRecord(key) != kOk || (enable == 1 && storeSecret(key, keyid, keystring) != kOk)) {
        return kFailed;
    }
    return ucRipInterfaceAuth_typeSet(key, enable == 1 ? mode : 0);
}

uint32_t swRipIfPassiveInterfaceVlanSet(RipNetIf key, uint32_t enable) {
    if (!kSwitch.holds(enable)) {
        return kFailed;
    }
    // Made before the checks. Fixed by the interface.
    (void)makeRecord(key); // without a record only the last step fails, whose result is ignored
    const auto vid = static_cast<int32_t>(key.vid);
    char command[kCommandBytes];
    format(command, enable == 1 ? "passive-interface eth1.%d" : "no passive-interface eth1.%d",
           vid);
    if (sw_is_lan_vid(vid) == 0 && sw_is_wan_vid(vid) == 0) {
        return kFailed;
    }
    char reply[kReplyBytes] = {};
    const uint32_t sent = swRipAutoRun(kInstance, command, kAnnouncedReplyBytes, 0, reply);
    if (sent != kOk) {
        return sent;
    }
    (void)ucRipInterfacePassiveEnableSet(key, enable); // Fixed by the interface
    return kOk;
}

uint32_t swRipKeychainClean(RipNetIf key, const char *chain) {
    if (chain == nullptr) {
        return kOk;
    }
    askForSide(key);
    char command[kCommandBytes];
    format(command, "no key chain %s", chain);
    char reply[kReplyBytes] = {};
    return static_cast<uint32_t>(
        frrVtyAutoRun(kConfigureView, kRipSocket, command, nullptr, kAnnouncedReplyBytes, reply));
}

uint32_t swRipKeychainAdd(RipNetIf key, const char *chain, uint32_t keyid, const char *keystring) {
    if (chain == nullptr || keystring == nullptr || !kKeyId.holds(keyid)) {
        return kFailed;
    }
    askForSide(key);
    dlist *params = nullptr;
    if (frrVtyParamInit(&params) != 0 ||
        frrVtyParamStrSet(&params, "keychain", chain) == kParamFailed ||
        frrVtyParamIntSet(&params, "keyid", static_cast<int32_t>(keyid)) == kParamFailed) {
        (void)frrVtyParamFini(&params); // nothing to do about a list that stays
        return kFailed;
    }
    char command[kCommandBytes];
    format(command, "key-string %s", keystring);
    char reply[kReplyBytes] = {};
    return frrVtyAutoRun("keychain_keyid_keystr_view", kRipSocket, command, &params,
                         kAnnouncedReplyBytes, reply) == 0
               ? kOk
               : kFailed;
}
