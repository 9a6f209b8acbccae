// SPDX-License-Identifier: Apache-2.0
// Loading the library, its start-up without any command to a daemon, and the eye on what leaves it.

#include "host/library.h"

#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <unistd.h>

#include "host/exchange.h"
#include "host/rehearsal.h"
#include "host/streams.h"
#include "host/timeout.h"
#include "host/traffic.h"

namespace frruci::host {

namespace {

constexpr const char *kDefaultLibrary = "libfrruci.so";
constexpr uint16_t kWanProcess = 1;
constexpr uint64_t kMicroseconds = 1000000;

void *library = nullptr;
bool prepared = false;
bool rehearsing = false;

bool observe(FrruciSee see, Watched::How how) {
    auto *set = find<int32_t(const FrruciObserver *)>("frruciObserve");
    if (set == nullptr) {
        return false;
    }
    const FrruciObserver observer = {sizeof observer, how == Watched::kRehearsal ? 1U : 0U, see,
                                     nullptr};
    return set(see == nullptr ? nullptr : &observer) == 0;
}

void see(FrruciEvent *event, void * /*context*/) {
    record(*event);
    if (event->kind == FRRUCI_PAUSE && event->done == 0) {
        progress(static_cast<unsigned>(event->number / kMicroseconds) + 1);
    } else if (event->kind != FRRUCI_ANSWER || event->result > 0) {
        progress(0); // the end of a stream is none, however often it is read
    }
    if (onEvent != nullptr) {
        onEvent();
    }
}

void seeRehearsal(FrruciEvent *event, void * /*context*/) {
    rehearse(*event);
    record(*event);
}

void seeNothing(FrruciEvent * /*event*/, void * /*context*/) {}

bool runSteps() {
    static constexpr const char *kSteps[] = {"frrVtyInit", "swRipInit", "swOspfInit"};
    for (const char *step : kSteps) {
        auto *function = find<uint32_t()>(step);
        if (function == nullptr || function() != 0) {
            complain("%s failed", step);
            return false;
        }
    }
    return true;
}

bool answers(const char *daemon) {
    return Exchange(daemon, timeoutSeconds()).reach() == Reach::kAnswered;
}

/// The library learns that a protocol is on when it starts the daemon itself. A process that comes
/// later finds the daemon running.
void adoptRunningDaemons() {
    auto *enableOspf = find<uint32_t(uint16_t)>("ucOspfEnableProcess");
    if (enableOspf != nullptr && answers("ospfd")) {
        (void)enableOspf(kWanProcess); // a fresh model has room
    }
    auto *appendRip = find<uint32_t(const char *, void **)>("ucRipVrfAppend");
    if (appendRip != nullptr && answers("ripd")) {
        (void)appendRip("default", nullptr); // without it RIP settings are only not recorded
    }
}

/// Shows an event of the program's own in earnest or in a rehearsal; true when it shall happen.
bool begins(FrruciEvent &event) {
    event.size = sizeof event;
    event.fd = -1;
    (rehearsing ? seeRehearsal : see)(&event, nullptr);
    return !rehearsing;
}

void ended(FrruciEvent &event, int result) {
    event.done = 1;
    event.result = result;
    see(&event, nullptr);
}

} // namespace

void (*onEvent)() = nullptr;

bool loadLibrary() {
    if (library != nullptr) {
        return true;
    }
    const char *named = getenv("FRRUCI_LIBRARY");
    library = dlopen(named == nullptr ? kDefaultLibrary : named, RTLD_NOW | RTLD_GLOBAL);
    if (library == nullptr) {
        complain("%s", dlerror());
    }
    return library != nullptr;
}

void *find(const char *name) {
    void *symbol = dlsym(library, name);
    if (symbol == nullptr) {
        complain("the library has no %s", name);
    }
    return symbol;
}

bool prepare() {
    if (prepared) {
        return true;
    }
    // As a rehearsal, so that none of it is logged.
    if (!loadLibrary() || !observe(seeNothing, Watched::kRehearsal)) {
        return false;
    }
    prepared = runSteps();
    if (prepared) {
        adoptRunningDaemons();
    }
    (void)observe(nullptr, Watched::kEarnest); // cannot fail
    return prepared;
}

void runShell(const char *command) {
    FrruciEvent event = {};
    event.kind = FRRUCI_SHELL;
    event.text = command;
    if (begins(event)) {
        ended(event, system(command));
    }
}

void pauseSeconds(unsigned seconds) {
    FrruciEvent event = {};
    event.kind = FRRUCI_PAUSE;
    event.number = seconds * kMicroseconds;
    if (begins(event)) {
        (void)sleep(seconds); // nothing of ours interrupts it but the end
        ended(event, 0);
    }
}

Watched::Watched(How how) : waiting_(Waiting::kForDaemons) {
    clearTraffic();
    rehearsing = how == kRehearsal;
    (void)observe(how == kRehearsal ? seeRehearsal : see, how); // prepare has found it
}

Watched::~Watched() {
    (void)observe(nullptr, kEarnest); // cannot fail
}

} // namespace frruci::host
