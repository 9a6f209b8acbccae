// SPDX-License-Identifier: Apache-2.0
// RIP commands of an interface, and the key chains that they use.

#include "rip/sw_rip.h"

#include "common/front_end.h"
#include "common/status.h"
#include "common/text.h"
#include "rip/uc_rip_values.h"
#include "rip/vty_rip.h"
#include "vty/session.h"
#include "vty/views.h"

namespace {

using namespace frruci::rip;
using frruci::common::format;
using frruci::common::kFailed;
using frruci::common::kRefused;
using frruci::common::kSuccess;
using frruci::vty::kCommandBytes;

constexpr std::size_t kChainBytes = 32;

uint32_t makeRecord(RipNetIf key) {
    RipInterfaceNode *record = nullptr;
    return ucRipInterfaceNodeAppend(key, &record) == kSuccess ? kSuccess : kFailed;
}

uint32_t sendToInterface(const char *ifname, RipNetIf key, const char *command) {
    return swRipIfAutoRun(ifname, key, command, 0, nullptr); // which uses no reply buffer
}

/// Sends, and stores the value once ripd has accepted the command.
uint32_t sendAndStore(const char *ifname, RipNetIf key, const char *command,
                      uint32_t (*store)(RipNetIf key, uint32_t value), uint32_t value) {
    const uint32_t sent = sendToInterface(ifname, key, command);
    if (sent != kSuccess) {
        return sent;
    }
    return makeRecord(key) == kSuccess ? store(key, value) : kFailed;
}

// ---- versions ----

struct VersionSetting {
    char keyword[8]; // a text, not a pointer, which would take more flash
    Range accepted;  // when enabling
    uint32_t (*store)(RipNetIf key, uint32_t value);
};

constexpr VersionSetting kSendVersion = {"send", kOneVersionRange, ucRipInterfaceSendVersionSet};
constexpr VersionSetting kReceiveVersion = {"receive", kReceiveVersionRange,
                                            ucRipInterfaceRecvVersionSet};

constexpr char kVersionTexts[][4] = {"", "1", "2", "1 2"};

uint32_t setVersion(const VersionSetting &setting, const char *ifname, RipNetIf key,
                    uint32_t version, uint32_t enable) {
    if (!kSwitchRange.holds(enable) || (enable == 1 && !setting.accepted.holds(version))) {
        return kFailed;
    }
    char command[kCommandBytes];
    if (enable == 1) {
        format(command, "ip rip %s version %s", setting.keyword, kVersionTexts[version]);
    } else {
        format(command, "no ip rip %s version", setting.keyword);
    }
    return sendAndStore(ifname, key, command, setting.store, enable == 1 ? version : 0);
}

const char *splitHorizonCommand(uint32_t poisoned, uint32_t enable) {
    if (enable == 0) {
        return "no ip rip split-horizon";
    }
    return poisoned == 1 ? "ip rip split-horizon poisoned-reverse" : "ip rip split-horizon";
}

// ---- authentication ----

struct AuthMethod { // texts, not pointers, which would take more flash
    char other[10]; // the method that goes
    char secret[10];
    char mode[5];
};

// By mode. The handlers never ask for mode 0, whose first two commands are empty.
constexpr AuthMethod kAuthMethods[] = {
    {"",          "",          "text"},
    {"key-chain", "string",    "text"},
    {"string",    "key-chain", "md5" },
};

uint32_t clearOther(const char *ifname, RipNetIf key, uint32_t mode) {
    char command[kCommandBytes] = "";
    if (mode != kNoAuthentication) {
        format(command, "no ip rip authentication %s", kAuthMethods[mode].other);
    }
    return sendToInterface(ifname, key, command);
}

uint32_t setSecret(const char *ifname, RipNetIf key, uint32_t mode, const char *secret) {
    char command[kCommandBytes] = "";
    if (mode != kNoAuthentication) {
        format(command, "ip rip authentication %s %s", kAuthMethods[mode].secret, secret);
    }
    const uint32_t sent = sendToInterface(ifname, key, command);
    if (sent != kSuccess) {
        return sent;
    }
    format(command, "ip rip authentication mode %s", kAuthMethods[mode].mode);
    return sendToInterface(ifname, key, command);
}

/// Three commands: the other method goes, the new secret comes, the mode changes.
uint32_t installSecret(const char *ifname, RipNetIf key, uint32_t mode, uint32_t keyid,
                       const char *keystring) {
    char chain[kChainBytes];
    format(chain, "app_rip_%u", keyid);
    if (mode == kMd5) {
        (void)swRipKeychainClean(key, chain); // there may be none yet
    }
    const uint32_t sent = clearOther(ifname, key, mode);
    if (sent != kSuccess) {
        return sent;
    }
    if (mode == kMd5) {
        (void)swRipKeychainAdd(key, chain, keyid, keystring); // Fixed by the interface
    }
    return setSecret(ifname, key, mode, mode == kMd5 ? chain : keystring);
}

uint32_t storeSecret(RipNetIf key, uint32_t keyid, const char *keystring) {
    if (ucRipInterfaceAuth_keyidSet(key, keyid) != kSuccess) {
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
    if (!kSwitchRange.holds(poisoned) || !kSwitchRange.holds(enable)) {
        return kFailed;
    }
    // Poisoned reverse is stored as split horizon. Fixed by the interface.
    return sendAndStore(ifname, key, splitHorizonCommand(poisoned, enable),
                        ucRipInterfaceSplitHorizonEnableSet, enable);
}

uint32_t swRipIfSendVersionSet(const char *ifname, RipNetIf key, uint32_t version,
                               uint32_t enable) {
    return setVersion(kSendVersion, ifname, key, version, enable);
}

uint32_t swRipIfReceiveVersionSet(const char *ifname, RipNetIf key, uint32_t version,
                                  uint32_t enable) {
    return setVersion(kReceiveVersion, ifname, key, version, enable);
}

uint32_t swRipIfV2BroadcastSet(const char *ifname, RipNetIf key, uint32_t enable) {
    if (!kSwitchRange.holds(enable)) {
        return kFailed;
    }
    return sendAndStore(ifname, key, enable == 1 ? "ip rip v2-broadcast" : "no ip rip v2-broadcast",
                        ucRipInterfaceV2broadcastSet, enable);
}

uint32_t swRipIfAuthenticationSet(const char *ifname, RipNetIf key, uint32_t mode, uint32_t keyid,
                                  const char *keystring, uint32_t enable) {
    if (!kSwitchRange.holds(enable) ||
        (enable == 1 && (mode > kMd5 || !kKeyIdRange.holds(keyid) || keystring == nullptr))) {
        return kFailed;
    }
    const uint32_t sent = enable == 1
                              ? installSecret(ifname, key, mode, keyid, keystring)
                              : sendToInterface(ifname, key, "no ip rip authentication mode");
    if (sent != kSuccess) {
        return sent;
    }
    if (makeRecord(key) != kSuccess ||
        (enable == 1 && storeSecret(key, keyid, keystring) != kSuccess)) {
        return kFailed;
    }
    return ucRipInterfaceAuth_typeSet(key, enable == 1 ? mode : 0);
}

uint32_t swRipIfPassiveInterfaceVlanSet(RipNetIf key, uint32_t enable) {
    if (!kSwitchRange.holds(enable)) {
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
    const uint32_t sent = sendToInstance(kInstance, command, 0);
    if (sent != kSuccess) {
        return sent;
    }
    (void)ucRipInterfacePassiveEnableSet(key, enable); // Fixed by the interface
    return kSuccess;
}

uint32_t swRipKeychainClean(RipNetIf key, const char *chain) {
    if (chain == nullptr) {
        return kSuccess;
    }
    askForSide(key);
    char command[kCommandBytes];
    format(command, "no key chain %s", chain);
    return sendInView(kConfigureView, command);
}

uint32_t swRipKeychainAdd(RipNetIf key, const char *chain, uint32_t keyid, const char *keystring) {
    if (chain == nullptr || keystring == nullptr || !kKeyIdRange.holds(keyid)) {
        return kFailed;
    }
    askForSide(key);
    dlist *params = nullptr;
    if (frrVtyParamInit(&params) != kSuccess ||
        frrVtyParamStrSet(&params, "keychain", chain) == kRefused ||
        frrVtyParamIntSet(&params, "keyid", static_cast<int32_t>(keyid)) == kRefused) {
        (void)frrVtyParamFini(&params); // nothing to do about a list that stays
        return kFailed;
    }
    char command[kCommandBytes];
    format(command, "key-string %s", keystring);
    return sendInView("keychain_keyid_keystr_view", command, &params) == kSuccess ? kSuccess
                                                                                  : kFailed;
}
