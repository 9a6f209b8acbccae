// SPDX-License-Identifier: Apache-2.0
// The OSPF handlers that the web front-end calls with its words.

#include "ospf/frr_ospf.h"

#include "common/front_end.h"
#include "common/words.h"
#include "ospf/command.h"
#include "ospf/frr_ospf_enable.h"
#include "ospf/frr_ospf_process.h"
#include "ospf/frr_ospf_reply.h"
#include "ospf/frr_ospf_settings.h"
#include "ospf/frr_ospf_show.h"
#include "ospf/numbers.h"
#include "ospf/sw_ospf.h"

namespace {

using frruci::common::Words;
using namespace frruci::ospf;

constexpr int32_t kGlobalWords = 2;
constexpr int32_t kNetworkWords = 4;
constexpr int32_t kInterfaceShowWords = 1;
constexpr int32_t kInterfaceWords = 4;
constexpr int32_t kPasswordWords = kInterfaceWords + 1;
constexpr int32_t kDigestWords = kInterfaceWords + 2;
constexpr int32_t kAdvertiseWords = 4;
constexpr int32_t kProcessWords = 7;

constexpr int32_t kFind = 0;
constexpr int32_t kKill = 1;
constexpr uint32_t kGiven = 1;

// Fixed by the interface: one wording for every keyword.
void logInterfaceFailure(uint32_t status, int line = __builtin_LINE()) {
    logFailure(status, "ip_ospf_cost, failed", line);
}

uint32_t flag(bool value) {
    return value ? 1 : 0;
}

struct Interface {
    const char *name;
    int32_t wan;
};

// Fixed by the interface: no reply.
void leaveUnanswered(int line = __builtin_LINE()) {
    (void)record_log_act("frr_ospf:%d: ip_ospf_cost, failed\n", line);
}

void setAuthentication(const Interface &interface, const Words &words) {
    const int32_t type = words.number(3);
    logInterfaceFailure(ip_ospf_auth(kNoVrf, interface.name, interface.wan, kSet, type));
    // Fixed by the interface: the results of the key commands are not looked at.
    if (type == kSimplePassword) {
        if (words.count() < kPasswordWords) {
            return leaveUnanswered();
        }
        (void)ip_ospf_auth_key(kNoVrf, interface.name, interface.wan, kSet, words[4]);
    } else if (type == kMessageDigest) {
        if (words.count() < kDigestWords) {
            return leaveUnanswered();
        }
        (void)ip_ospf_auth_md5key(kNoVrf, interface.name, interface.wan, kSet, words.number(4),
                                  words[5]);
    }
    replyOk();
}

void setByKeyword(const Interface &interface, const Words &words) {
    const InterfaceKeyword *keyword = findInterfaceKeyword(words[2]);
    if (keyword != nullptr) {
        logInterfaceFailure(keyword->apply(interface.name, interface.wan, words.number(3)),
                            keyword->line);
    }
    replyOk();
}

void switchOff() {
    (void)process_exist("ospfd", kKill); // however many there are
    // Fixed by the interface: only ripd is asked for, so a running nhrpd does not keep zebra.
    if (process_exist("ripd", kFind) == 0) {
        (void)process_exist("zebra", kKill); // however many there are
    }
}

} // namespace

void process_ospf_global(int32_t argc, char **argv) {
    const Words words(argc, argv);
    if (argc < kGlobalWords || words.count() == 0) {
        return;
    }
    if (!words.is(0, "on")) {
        switchOff();
    } else if (words.count() >= kGlobalWords) {
        (void)ospf_enable(words[1]); // a daemon that does not start fails the settings that follow
    } else {
        return;
    }
    replyOk();
}

void process_ospf_network(int32_t argc, char **argv) {
    const Words words(argc, argv);
    if (words.count() < kNetworkWords) {
        return;
    }
    (void)record_log_act("frr_ospf:%d: process_ospf_network %s %s %s %s\n", __LINE__, words[0],
                         words[1], words[2], words[3]);
    const auto area = static_cast<uint32_t>(words.number(3));
    for (const uint32_t selector : kLanThenWan) {
        if (swOspfNetwork(1, words[1], words[2], area, flag(words.is(0, "add")), selector) != 0) {
            (void)record_log_act("frr_ospf:%d: process_ospf_network failed.\n\n", __LINE__);
        }
    }
    replyOk();
}

void process_ospf_interface(int32_t argc, char **argv) {
    const Words words(argc, argv);
    if (argc == kInterfaceShowWords) {
        if (words.count() == argc && words.is(0, "show")) {
            showInterfaces();
        }
        return;
    }
    (void)record_log_act("frr_ospf:%d: process_ospf_interface %d\n", __LINE__, argc);
    const Words logged(INT32_MAX, argv); // up to the null entry, whatever argc says
    (void)record_log_act("frr_ospf:%d: process_ospf_interface %s %s %s %s\n", __LINE__,
                         logged.shown(0), logged.shown(1), logged.shown(2), logged.shown(3));
    if (words.count() < kInterfaceWords) {
        return;
    }
    const Interface interface = {words[0], words.is(1, kWanWord) ? 1 : 0};
    if (words.is(2, kAuthenticationWord)) {
        setAuthentication(interface, words);
    } else {
        setByKeyword(interface, words);
    }
}

// Writes no reply, since the replay of the stored configuration calls it too.
void process_ospf_advertise_cfg(int32_t argc, char **argv) {
    const Words words(argc, argv);
    if (words.count() < kAdvertiseWords) {
        return;
    }
    logFailure(swOspfOrignate(kNoVrf, flag(words.is(1, kEnableWord)), words.number(2), kGiven,
                              words.number(3), kGiven, flag(words.is(0, kEnableWord))),
               "swOspfOrignate");
}

void process_ospf_ospf_cfg(int32_t argc, char **argv) {
    const Words words(argc, argv);
    if (words.count() < kProcessWords) {
        return;
    }
    applyProcessOptions({words[0], words[1], words[2], words[3], words[4], words[5], words[6]},
                        logFailure);
    replyOk();
}
