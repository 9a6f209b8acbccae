// SPDX-License-Identifier: Apache-2.0
// Replays the NHRP settings that the store can express: one tunnel, and the last value of each
// option. They go through the library's delivery functions; its builders would write the store.

#include <cstdint>

#include "host/library.h"
#include "host/nhrp_options.h"
#include "host/replay.h"
#include "host/text.h"

namespace frruci::host {

namespace {

constexpr uint16_t kValueBytes = 64;
constexpr uint16_t kVrf = 0;
constexpr unsigned kStartPauseSeconds = 1;

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
    return calls.get(kNhrpPackage, kNhrpSection, option, value, kValueBytes) == 0 &&
           *value != '\0' && !equals(value, kNhrpOff);
}

bool isAnythingSet(const Calls &calls) {
    char value[kValueBytes];
    for (const NhrpOption &option : nhrpOptions()) {
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

void deliver(const Calls &calls, const char *tunnel, const NhrpOption &option, const char *value) {
    Text command;
    addNhrpLine(command, option, value);
    // Results are seen on their way.
    switch (option.context) {
    case NhrpContext::kTunnel:
        (void)calls.toTunnel(kVrf, tunnel, command.get());
        break;
    case NhrpContext::kZebra:
        (void)calls.toZebra(kVrf, tunnel, command.get());
        break;
    case NhrpContext::kGlobal:
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
    if (!isSet(calls, kNhrpTunnel, tunnel) || !isAnythingSet(calls)) {
        return true;
    }
    startDaemons(calls);
    for (const NhrpOption &option : nhrpOptions()) {
        char value[kValueBytes];
        if (isSet(calls, option.name, value)) {
            deliver(calls, tunnel, option, value);
        }
    }
    return true;
}

} // namespace frruci::host
