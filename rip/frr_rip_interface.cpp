// SPDX-License-Identifier: Apache-2.0
// The RIP handlers of one interface's settings.
// The line numbers in their messages: Fixed by the interface.

#include "rip/frr_rip.h"

#include <cstring>

#include "common/front_end.h"
#include "common/outside.h"
#include "common/status.h"
#include "common/table.h"
#include "common/words.h"
#include "rip/frr_rip_words.h"
#include "rip/sw_rip.h"
#include "rip/uc_rip_values.h"

namespace {

using namespace frruci::rip;
using frruci::common::findRow;
using frruci::common::kFailed;
using frruci::common::kRefused;
using frruci::common::kSuccess;
using frruci::common::number;
using frruci::common::Words;

constexpr unsigned kSettleMicroseconds = 100000;

constexpr int32_t kNoneWords = 2;
constexpr int32_t kSecretWords = 4;

constexpr uint32_t kFirstKeyId = 1;

constexpr uint32_t kBothVersions = 3;

struct SplitHorizonMode {
    char word[16]; // a text, not a pointer, which would take more flash
    uint32_t poisoned;
};
constexpr SplitHorizonMode kSplitHorizonModes[] = {
    {"split_horizon",  0},
    {"poison_reverse", 1},
};

/// The key of an interface; all zero for a name without a VLAN, which does not stop the handlers.
RipNetIf keyOf(const char *name) {
    RipNetIf key = {};
    (void)get_vlan_id_from_interface_name(name, &key); // without a VLAN the key stays as it is
    return key;
}

int32_t setAuthentication(const char *name, uint32_t mode, uint32_t keyId, const char *secret) {
    return asResult(swRipIfAuthenticationSet(name, keyOf(name), mode, keyId, secret,
                                             mode == kNoAuthentication ? 0 : 1));
}

/// The "simple" and "md5" forms; secret is the fourth entry, which may stand after a null one.
int32_t setSecret(const Words &words, const char *secret) {
    if (secret == nullptr) {
        return kFailed;
    }
    if (words.is(1, "simple")) {
        return setAuthentication(words[0], kSimpleText, kFirstKeyId, secret);
    }
    if (words.is(1, "md5") && words.count() > 2) {
        return setAuthentication(words[0], kMd5, static_cast<uint32_t>(words.number(2)), secret);
    }
    return kFailed;
}

} // namespace

int32_t get_vlan_id_from_interface_name(const char *name, RipNetIf *key) {
    const char *dot = name == nullptr ? nullptr : strchr(name, '.');
    if (dot == nullptr || key == nullptr) {
        return kRefused;
    }
    key->type = kVlanInterface;
    key->vid = static_cast<uint32_t>(number(dot + 1));
    return kSuccess;
}

int32_t process_rip_interface_split_horizon_mode(int32_t argc, char **argv) {
    const Words words(argc, argv);
    if (words.count() < 2) {
        return kFailed;
    }
    const SplitHorizonMode *mode = findRow<&SplitHorizonMode::word>(kSplitHorizonModes, words[1]);
    if (mode == nullptr) { // "none" and any other word: off. Fixed by the interface.
        return asResult(swRipIfSplitHorizonSet(words[0], keyOf(words[0]), 0, 0));
    }
    return asResult(swRipIfSplitHorizonSet(words[0], keyOf(words[0]), mode->poisoned, 1));
}

int32_t process_rip_interface_send_version(int32_t argc, char **argv) {
    (void)record_log_act("frr_rip:%d: process_rip_interface_send_version %d\n", 264, argc);
    const Words words(argc, argv);
    if (words.count() < 2) {
        return kFailed;
    }
    (void)record_log_act("frr_rip:%d: process_rip_interface_send_version %s %s\n", 268, words[0],
                         words[1]);
    RipNetIf key = {};
    const int32_t found = get_vlan_id_from_interface_name(words[0], &key);
    if (found != kSuccess) {
        (void)record_log_act("frr_rip:%d:  ret=%d, get_vlan_id_from_interface_name\n", 272, found);
    }
    const uint32_t version = versionIn(words, 1);
    if (version == kNoVersion) {
        return kFailed;
    }
    (void)record_log_act("frr_rip:%d: swRipIfSendVersionSet\n", 281);
    return asResult(swRipIfSendVersionSet(words[0], key, version, 1));
}

int32_t process_rip_interface_recv_version(int32_t argc, char **argv) {
    const Words words(argc, argv);
    const uint32_t version = words.is(1, "both") ? kBothVersions : versionIn(words, 1);
    return version == kNoVersion
               ? kFailed
               : asResult(swRipIfReceiveVersionSet(words[0], keyOf(words[0]), version, 1));
}

int32_t process_rip_interface_authen(int32_t argc, char **argv) {
    const Words words(argc, argv);
    if (words.count() < 2) {
        return kFailed;
    }
    if (argc == kNoneWords && words.is(1, "none")) {
        return setAuthentication(words[0], kNoAuthentication, kFirstKeyId, nullptr);
    }
    return argc == kSecretWords ? setSecret(words, argv[3]) : kFailed;
}

int32_t process_rip_interface_show(int32_t /*argc*/, char ** /*argv*/) {
    const uint32_t shown = swRipShowIpRipStatus();
    frruci::outside::pauseFor(0, kSettleMicroseconds);
    return asResult(shown);
}
