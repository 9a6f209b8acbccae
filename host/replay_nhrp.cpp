// SPDX-License-Identifier: Apache-2.0
// Replays the NHRP settings that the store can express: one tunnel, and the last value of each
// option. They go through the library's delivery functions; its builders would write the store.

#include <cstdint>

#include "host/library.h"
#include "host/replay.h"
#include "host/text.h"

namespace frruci::host {

namespace {

constexpr const char *kPackage = "/etc/config/nhrp";
constexpr const char *kSection = "sdwan";
constexpr uint16_t kValueBytes = 64;
constexpr uint16_t kVrf = 0;
constexpr unsigned kStartPauseSeconds = 1;

enum class Context { kTunnel, kZebra, kGlobal };

/// An option and its command; the value follows the command unless the option is a flag.
struct Option {
    const char *name;
    const char *command;
    Context context;
    bool isFlag;
};

constexpr Option kOptions[] = {
    {"no_link_detect",        "no link-detect",                 Context::kZebra,  true },
    {"zebra_address",         "ip address",                     Context::kZebra,  false},
    {"ipsec_profile",         "tunnel protection vici profile", Context::kTunnel, false},
    {"ipsec_source",          "tunnel source",                  Context::kTunnel, false},
    {"network_id",            "ip nhrp network-id",             Context::kTunnel, false},
    {"shortcut",              "ip nhrp shortcut",               Context::kTunnel, true },
    {"redirect",              "ip nhrp redirect",               Context::kTunnel, true },
    {"registration_nounique", "ip nhrp registration no-unique", Context::kTunnel, true },
    {"nhs_nbma",              "ip nhrp nhs dynamic nbma",       Context::kTunnel, false},
    {"map_multicast",         "ip nhrp map multicast",          Context::kTunnel, false},
    {"nflog_group",           "nhrp nflog-group",               Context::kGlobal, false},
    {"multicast_nflog_group", "nhrp multicast-nflog-group",     Context::kGlobal, false},
};

using GetOption = int32_t(const char *, const char *, const char *, char *, uint16_t);
using ForInterface = uint32_t(uint16_t, const char *, const char *);
using ForAll = uint32_t(uint16_t, const char *);
using CountProcesses = int32_t(const char *, int32_t);
using StartDaemon = int32_t();

/// What the replay calls of the library.
struct Calls {
    GetOption *get = find<GetOption>("frr_uci_get");
    ForInterface *toTunnel = find<ForInterface>("doVtyNhrpConfigInterface");
    ForInterface *toZebra = find<ForInterface>("doVtyZebraConfigInterface");
    ForAll *toNhrp = find<ForAll>("doVtyNhrpConfig");
    CountProcesses *count = find<CountProcesses>("process_exist");
    StartDaemon *startZebra = find<StartDaemon>("zebra_enable");

    bool areThere() const {
        return get != nullptr && toTunnel != nullptr && toZebra != nullptr && toNhrp != nullptr &&
               count != nullptr && startZebra != nullptr;
    }
};

/// False for an option that is missing, empty, or "0".
bool isSet(const Calls &calls, const char *option, char (&value)[kValueBytes]) {
    return calls.get(kPackage, kSection, option, value, kValueBytes) == 0 && *value != '\0' &&
           !equals(value, "0");
}

bool isAnythingSet(const Calls &calls) {
    char value[kValueBytes];
    for (const Option &option : kOptions) {
        if (isSet(calls, option.name, value)) {
            return true;
        }
    }
    return false;
}

/// nhrpd as nhrpd: the library's own start runs a launcher that only some routers have.
void startDaemons(const Calls &calls) {
    (void)calls.startZebra(); // its result says nothing
    if (calls.count("nhrpd", 0) == 0) {
        runShell("nhrpd -d");
        pauseSeconds(kStartPauseSeconds);
    }
}

void deliver(const Calls &calls, const char *tunnel, const Option &option, const char *value) {
    Text command;
    command.add(option.command);
    if (!option.isFlag) {
        command.addf(" %s", value);
    }
    // Results are seen on their way.
    switch (option.context) {
    case Context::kTunnel:
        (void)calls.toTunnel(kVrf, tunnel, command.get());
        break;
    case Context::kZebra:
        (void)calls.toZebra(kVrf, tunnel, command.get());
        break;
    case Context::kGlobal:
        (void)calls.toNhrp(kVrf, command.get());
        break;
    }
}

} // namespace

bool replayNhrp() {
    const Calls calls;
    if (!calls.areThere()) {
        return false;
    }
    char tunnel[kValueBytes];
    if (!isSet(calls, "interface", tunnel) || !isAnythingSet(calls)) {
        return true;
    }
    startDaemons(calls);
    for (const Option &option : kOptions) {
        char value[kValueBytes];
        if (isSet(calls, option.name, value)) {
            deliver(calls, tunnel, option, value);
        }
    }
    return true;
}

} // namespace frruci::host
