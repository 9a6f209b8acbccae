// SPDX-License-Identifier: Apache-2.0
// Loading the library, and its start-up without any command to a daemon.

#include "host/library.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace frruci::host {

namespace {

constexpr const char *kDefaultLibrary = "libfrruci.so";
constexpr uint16_t kWanProcess = 1;

void *library = nullptr;
bool prepared = false;

bool daemonAnswers(const char *socketPath) {
    auto *connectTo = find<int32_t(const char *, int32_t *)>("frrVtyConnect");
    auto *disconnect = find<int32_t(int32_t)>("frrVtyDisconnect");
    int32_t session = -1;
    if (connectTo == nullptr || disconnect == nullptr || connectTo(socketPath, &session) != 0) {
        return false;
    }
    return disconnect(session) == 0;
}

/// The library learns that a protocol is on when it starts the daemon itself. A process that comes
/// later finds the daemon running.
void adoptRunningDaemons() {
    auto *enableOspf = find<uint32_t(uint16_t)>("ucOspfEnableProcess");
    if (enableOspf != nullptr && daemonAnswers("/var/ospfd.vty")) {
        (void)enableOspf(kWanProcess); // a fresh model has room
    }
    auto *appendRip = find<uint32_t(const char *, void **)>("ucRipVrfAppend");
    if (appendRip != nullptr && daemonAnswers("/var/ripd.vty")) {
        (void)appendRip("default", nullptr); // without it RIP settings are only not recorded
    }
}

} // namespace

bool loadLibrary() {
    if (library != nullptr) {
        return true;
    }
    const char *named = getenv("FRRUCI_LIBRARY");
    library = dlopen(named == nullptr ? kDefaultLibrary : named, RTLD_NOW | RTLD_GLOBAL);
    if (library == nullptr) {
        (void)fprintf(stderr, "frruci: %s\n", dlerror());
    }
    return library != nullptr;
}

void *find(const char *name) {
    void *symbol = dlsym(library, name);
    if (symbol == nullptr) {
        (void)fprintf(stderr, "frruci: the library has no %s\n", name);
    }
    return symbol;
}

bool prepare() {
    if (prepared) {
        return true;
    }
    static constexpr const char *kSteps[] = {"frrVtyInit", "swRipInit", "swOspfInit"};
    for (const char *step : kSteps) {
        auto *function = find<uint32_t()>(step);
        if (function == nullptr || function() != 0) {
            (void)fprintf(stderr, "frruci: %s failed\n", step);
            return false;
        }
    }
    adoptRunningDaemons();
    prepared = true;
    return true;
}

} // namespace frruci::host
