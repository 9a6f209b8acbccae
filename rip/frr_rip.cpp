// SPDX-License-Identifier: Apache-2.0
// The RIP handlers that the web front-end calls: switches, dispatchers, instance settings.
// The line numbers in their messages: Fixed by the interface.

#include "rip/frr_rip.h"

#include <cstdio>

#include "common/front_end.h"
#include "common/outside.h"
#include "common/status.h"
#include "common/table.h"
#include "common/uninterrupted.h"
#include "common/words.h"
#include "ospf/frr_ospf_process.h"
#include "rip/frr_rip_words.h"
#include "rip/rip_leftovers.h"
#include "rip/sw_rip.h"
#include "rip/vty_rip.h"
#include "vty/manager.h"

namespace {

using namespace frruci::rip;
using frruci::common::findRow;
using frruci::common::hasUniqueWords;
using frruci::common::kFailed;
using frruci::common::kSuccess;
using frruci::common::Words;
using frruci::outside::runShell;

constexpr const char *kReplyPipe = "/tmp/tmp/ospf_pipe_c2lua"; // shared with OSPF

constexpr unsigned kSettleSeconds = 1;
constexpr int32_t kKill = 1;
constexpr int32_t kCountOnly = 0;
constexpr uint32_t kVnete = 0; // the router's two networks, by selector
constexpr uint32_t kDnete = 1;

void replyOk() {
    (void)write_pipe_to_lua("ok", kReplyPipe); // without a pipe there is nobody to tell
}

// ---- firewall ----

enum class Rule { kUnknown, kAbsent, kPresent };

Rule firewallRule() {
    FILE *listing = frruci::outside::openListing("iptables -t filter -nvL INPUT | grep dpt:520");
    if (listing == nullptr) {
        return Rule::kUnknown;
    }
    char line[512];
    const bool found = frruci::common::readLine(listing, line);
    frruci::outside::closeListing(listing);
    return found ? Rule::kPresent : Rule::kAbsent;
}

void openFirewall() {
    if (firewallRule() == Rule::kAbsent) {
        runShell("iptables -w -t filter -I INPUT -p udp --dport 520 -j ACCEPT");
    }
}

void closeFirewall() {
    if (firewallRule() == Rule::kPresent) {
        runShell("iptables -w -t filter -D INPUT -p udp --dport 520 -j ACCEPT");
    }
}

void switchOff() {
    (void)process_exist("ripd", kKill); // how many there were does not matter
    closeFirewall();
    if (process_exist("ospfd", kCountOnly) == 0) {
        (void)process_exist("zebra", kKill); // how many there were does not matter
    }
}

// ---- keywords ----

struct Keyword {
    char word[20]; // a text, not a pointer, which would take more flash
    int32_t (*handle)(int32_t argc, char **argv);
};

// NOLINTNEXTLINE(readability-identifier-naming): Fixed by the interface
constexpr Keyword rip_config_table[] = {
    {"rip_version",         process_rip_config_version            },
    {"rip_distance",        process_rip_config_distance           },
    {"auto_summary",        process_rip_config_auto_summary       },
    {"default_metric",      process_rip_config_default_metric     },
    {"redistribute_static", process_rip_config_redistribute_static},
    {"redistribute_ospf",   process_rip_config_redistribute_ospf  },
    {"update_timer",        process_rip_config_update_timer       },
    {"timeout_timer",       process_rip_config_timeout_timer      },
    {"garbage_timer",       process_rip_config_garbage_timer      },
};

// NOLINTNEXTLINE(readability-identifier-naming): Fixed by the interface
constexpr Keyword rip_interface_config_table[] = {
    {"split_horizon_mode", process_rip_interface_split_horizon_mode},
    {"send_version",       process_rip_interface_send_version      },
    {"receive_version",    process_rip_interface_recv_version      },
    {"authen_mode",        process_rip_interface_authen            },
    {"show",               process_rip_interface_show              },
};

static_assert(hasUniqueWords<&Keyword::word>(rip_config_table) &&
              hasUniqueWords<&Keyword::word>(rip_interface_config_table));

template <std::size_t kRows>
void dispatch(const Keyword (&table)[kRows], int32_t argc, char **argv) {
    const Keyword *keyword = findRow<&Keyword::word>(table, argv[0]);
    if (keyword != nullptr) {
        (void)keyword->handle(argc - 1, argv + 1); // the reply is the same either way
    }
    replyOk();
}

void setNetwork(const Words &words, uint32_t side, int line, const char *sideName) {
    const uint32_t add = words.is(0, "add") ? 1 : 0;
    if (swRipNetworkSet(kInstance, words[1], words[2], add, side) != kSuccess) {
        // "ospf" in the text: Fixed by the interface.
        (void)record_log_act("frr_rip:%d: process_ospf_network failed in %s.\n", line, sideName);
    }
}

// ---- instance settings ----

using ValueSetter = uint32_t (*)(const char *vrf, uint32_t value, uint32_t enable);

uint32_t isEnable(const Words &words) {
    return words.is(0, "enable") ? 1 : 0;
}

int32_t setValue(ValueSetter setter, const Words &words) {
    if (words.count() < 1) {
        return kFailed;
    }
    return asResult(setter(kInstance, static_cast<uint32_t>(words.number(0)), 1));
}

int32_t setTimer(uint32_t which, const Words &words) {
    if (words.count() < 1) {
        return kFailed;
    }
    return asResult(swRipTimerSet(kInstance, which, static_cast<uint32_t>(words.number(0)), 1));
}

int32_t setRedistribution(uint32_t kind, const Words &words) {
    if (words.count() < 2) {
        return kFailed;
    }
    const uint32_t enable = isEnable(words);
    const auto metric = static_cast<uint32_t>(words.number(1));
    (void)swRipRedistributeSet(kInstance, kind, metric, enable, kDnete); // the second one counts
    return asResult(swRipRedistributeSet(kInstance, kind, metric, enable, kVnete));
}

constexpr uint32_t kStatic = 1; // kinds of redistributed routes
constexpr uint32_t kOspf = 2;

constexpr uint32_t kUpdate = 1; // timers
constexpr uint32_t kTimeout = 2;
constexpr uint32_t kGarbage = 3;

} // namespace

void process_rip_global(int32_t argc, char **argv) {
    const Words words(argc, argv);
    if (words.count() < 1) {
        return;
    }
    if (words.is(0, "on")) {
        rip_enable();
    } else {
        switchOff();
    }
    replyOk();
}

void rip_enable() {
    openFirewall();
    (void)zebra_enable(); // its result has no meaning
    if (process_exist("ripd", kCountOnly) != 0) {
        (void)record_log_act("frr_rip:%d: ripd process exist\n", 40);
        return;
    }
    frruci::outside::pauseFor(kSettleSeconds);
    dropLeftovers();
    (void)frruci::vty::startDaemon("ripd -d "); // the next exchange tells
    frruci::outside::pauseFor(kSettleSeconds);
    (void)record_log_act("frr_rip:%d: rip_enable\n", 48);
    (void)swRipRouterRipSet(kInstance, 1); // rip_enable has no result
}

void process_rip_config(int32_t argc, char **argv) {
    if (Words(argc, argv).count() >= 1) {
        dispatch(rip_config_table, argc, argv);
    }
}

void process_rip_interface(int32_t argc, char **argv) {
    // The second word has to be counted, not to be there: "show" never reads it.
    if (argc < 2 || Words(argc, argv).count() < 1) {
        return;
    }
    (void)record_log_act("frr_rip:%d: %d, %s\n", 386, argc, argv[0]);
    dispatch(rip_interface_config_table, argc, argv);
}

void process_rip_network(int32_t argc, char **argv) {
    const Words words(argc, argv);
    if (words.count() < 3) {
        return;
    }
    (void)record_log_act("frr_rip:%d: process_rip_network %s %s %s\n", 204, words[0], words[1],
                         words[2]);
    setNetwork(words, kVnete, 212, "vnete");
    setNetwork(words, kDnete, 219, "dnete");
    frruci::outside::pauseFor(kSettleSeconds);
    replyOk();
}

int32_t process_rip_config_version(int32_t argc, char **argv) {
    const Words words(argc, argv);
    if (words.is(0, "default")) {
        return asResult(swRipVersionSet(kInstance, 2, 0)); // which ignores the 2
    }
    const uint32_t version = versionIn(words, 0);
    return version == kNoVersion ? kFailed : asResult(swRipVersionSet(kInstance, version, 1));
}

int32_t process_rip_config_distance(int32_t argc, char **argv) {
    return setValue(swRipDistanceSet, Words(argc, argv));
}

int32_t process_rip_config_auto_summary(int32_t argc, char **argv) {
    const Words words(argc, argv);
    return words.count() < 1 ? kFailed : asResult(swRipAutoSummSet(kInstance, isEnable(words)));
}

int32_t process_rip_config_default_metric(int32_t argc, char **argv) {
    return setValue(swRipDefaultMetricSet, Words(argc, argv));
}

int32_t process_rip_config_redistribute_static(int32_t argc, char **argv) {
    return setRedistribution(kStatic, Words(argc, argv));
}

int32_t process_rip_config_redistribute_ospf(int32_t argc, char **argv) {
    return setRedistribution(kOspf, Words(argc, argv));
}

int32_t process_rip_config_update_timer(int32_t argc, char **argv) {
    return setTimer(kUpdate, Words(argc, argv));
}

int32_t process_rip_config_timeout_timer(int32_t argc, char **argv) {
    return setTimer(kTimeout, Words(argc, argv));
}

int32_t process_rip_config_garbage_timer(int32_t argc, char **argv) {
    return setTimer(kGarbage, Words(argc, argv));
}
