// SPDX-License-Identifier: Apache-2.0
// The RIP handlers of one interface's settings.
// The line numbers in their messages: Fixed by the interface.

#include "rip/frr_rip.h"

#include <cstring>

#include "common/front_end.h"
#include "common/outside.h"
#include "common/text.h"
#include "rip/frr_rip_words.h"
#include "rip/rip_internal.h"
#include "rip/sw_rip.h"

namespace {

using namespace frruci::rip;
using frruci::common::equals;
using frruci::common::number;

constexpr int32_t kNoVlan = -1;

constexpr unsigned kSettleMicroseconds = 100000;

constexpr int32_t kNoneWords = 2;
constexpr int32_t kSecretWords = 4;

constexpr uint32_t kNoAuth = 0;
constexpr uint32_t kSimpleText = 1;
constexpr uint32_t kMd5 = 2;
constexpr uint32_t kFirstKeyId = 1;

constexpr uint32_t kBothVersions = 3;

struct SplitHorizonMode {
    const char *word;
    uint32_t poisoned;
    uint32_t enable;
};
constexpr SplitHorizonMode kSplitHorizonModes[] = {
    {"split_horizon",  0, 1},
    {"poison_reverse", 1, 1},
};
constexpr SplitHorizonMode kSplitHorizonOff = {"none", 0, 0};

/// An unknown word switches off. Fixed by the interface.
const SplitHorizonMode &splitHorizonMode(const char *word) {
    for (const SplitHorizonMode &mode : kSplitHorizonModes) {
        if (equals(mode.word, word)) {
            return mode;
        }
    }
    return kSplitHorizonOff;
}

/// The key of an interface; all zero for a name without a VLAN, which does not stop the handlers.
RipNetIf keyOf(const char *name) {
    RipNetIf key = {};
    (void)get_vlan_id_from_interface_name(name, &key); // without a VLAN the key stays as it is
    return key;
}

int32_t setAuthentication(const char *name, uint32_t mode, uint32_t keyId, const char *secret) {
    return result(
        swRipIfAuthenticationSet(name, keyOf(name), mode, keyId, secret, mode == kNoAuth ? 0 : 1));
}

/// The "simple" and "md5" forms; null entries stand for words that the caller did not have.
int32_t setSecret(char **argv) {
    const char *secret = argv[3];
    if (secret == nullptr) {
        return kNothingDone;
    }
    if (equals(argv[1], "simple")) {
        return setAuthentication(argv[0], kSimpleText, kFirstKeyId, secret);
    }
    if (equals(argv[1], "md5") && argv[2] != nullptr) {
        return setAuthentication(argv[0], kMd5, static_cast<uint32_t>(number(argv[2])), secret);
    }
    return kNothingDone;
}

} // namespace

int32_t get_vlan_id_from_interface_name(const char *name, RipNetIf *key) {
    const char *dot = name == nullptr ? nullptr : strchr(name, '.');
    if (dot == nullptr || key == nullptr) {
        return kNoVlan;
    }
    key->type = kVlanInterface;
    key->vid = static_cast<uint32_t>(number(dot + 1));
    return 0;
}

int32_t process_rip_interface_split_horizon_mode(int32_t argc, char **argv) {
    if (!hasWords(argc, argv, 2)) {
        return kNothingDone;
    }
    const SplitHorizonMode &mode = splitHorizonMode(argv[1]);
    return result(swRipIfSplitHorizonSet(argv[0], keyOf(argv[0]), mode.poisoned, mode.enable));
}

int32_t process_rip_interface_send_version(int32_t argc, char **argv) {
    (void)record_log_act("frr_rip:%d: process_rip_interface_send_version %d\n", 264, argc);
    if (!hasWords(argc, argv, 2)) {
        return kNothingDone;
    }
    (void)record_log_act("frr_rip:%d: process_rip_interface_send_version %s %s\n", 268, argv[0],
                         argv[1]);
    RipNetIf key = {};
    const int32_t found = get_vlan_id_from_interface_name(argv[0], &key);
    if (found != 0) {
        (void)record_log_act("frr_rip:%d:  ret=%d, get_vlan_id_from_interface_name\n", 272, found);
    }
    const uint32_t version = versionOf(argv[1]);
    if (version == kNoVersion) {
        return kNothingDone;
    }
    (void)record_log_act("frr_rip:%d: swRipIfSendVersionSet\n", 281);
    return result(swRipIfSendVersionSet(argv[0], key, version, 1));
}

int32_t process_rip_interface_recv_version(int32_t argc, char **argv) {
    if (!hasWords(argc, argv, 2)) {
        return kNothingDone;
    }
    const uint32_t version = equals(argv[1], "both") ? kBothVersions : versionOf(argv[1]);
    return version == kNoVersion
               ? kNothingDone
               : result(swRipIfReceiveVersionSet(argv[0], keyOf(argv[0]), version, 1));
}

int32_t process_rip_interface_authen(int32_t argc, char **argv) {
    if (!hasWords(argc, argv, 2)) {
        return kNothingDone;
    }
    if (argc == kNoneWords && equals(argv[1], "none")) {
        return setAuthentication(argv[0], kNoAuth, kFirstKeyId, nullptr);
    }
    return argc == kSecretWords ? setSecret(argv) : kNothingDone;
}

int32_t process_rip_interface_show(int32_t /*argc*/, char ** /*argv*/) {
    const uint32_t shown = swRipShowIpRipStatus();
    frruci::outside::pauseFor(0, kSettleMicroseconds);
    return result(shown);
}
