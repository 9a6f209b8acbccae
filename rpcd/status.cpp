// SPDX-License-Identifier: Apache-2.0
// What runs, what is switched on, and what was refused.

#include "apply/library.h"
#include "apply/refusals.h"
#include "apply/rehearsal.h"
#include "host/daemons.h"
#include "host/text.h"
#include "rpcd/answers.h"
#include "rpcd/methods.h"

namespace frruci::rpcd {

namespace {

using host::Reach;

constexpr const char *kManagement = "mgmtd"; // not part of every version
constexpr const char *kDaemons[] = {kManagement, "zebra", "ospfd", "ripd", "nhrpd"};

/// The daemon's state for people; nothing is told of one that the version does not have.
Json daemonOf(const char *name, const host::Processes &processes) {
    host::Greeting greeting;
    host::greet(name, greeting);
    const bool answers = greeting.reach == Reach::kAnswered;
    const bool isThere = greeting.reach == Reach::kSilent || processes.has(name);
    if (!answers && !isThere && host::equals(name, kManagement) && !host::isInstalled(name)) {
        return nullptr;
    }
    Json daemon = host::jsonObject();
    host::put(daemon, "name", name);
    host::put(daemon, "state", answers ? "running" : isThere ? "silent" : "stopped");
    if (greeting.version.size() > 0) {
        host::put(daemon, "version", greeting.version.get());
    }
    return daemon;
}

Json daemonsOf(const host::Processes &processes) {
    Json daemons = host::jsonArray();
    for (const char *name : kDaemons) {
        Json daemon = daemonOf(name, processes);
        if (daemon != nullptr) {
            host::append(daemons, daemon);
        }
    }
    return daemons;
}

bool isRunning(Json daemons, const char *name) {
    bool runs = false;
    host::forEach(daemons, [&](const char *, Json daemon) {
        runs = runs || (host::equals(host::textOf(host::member(daemon, "name")), name) &&
                        host::equals(host::textOf(host::member(daemon, "state")), "running"));
    });
    return runs;
}

constexpr const char *kStored[] = {"on", "off", "unset"};

Json protocolsOf(Json daemons) {
    Json all = host::jsonObject();
    const bool readable = apply::ready();
    for (const apply::Protocol &protocol : apply::protocols()) {
        Json one = host::jsonObject();
        if (readable) {
            host::put(one, "stored", kStored[static_cast<int>(apply::storedSwitch(protocol))]);
        }
        host::putFlag(one, "running", isRunning(daemons, protocol.daemon));
        host::put(all, protocol.name, one);
    }
    return all;
}

Json othersOf(const host::Processes &processes) {
    Json others = host::jsonArray();
    for (const char *name : host::othersOnZebra()) {
        if (processes.has(name)) {
            host::append(others, host::jsonText(name));
        }
    }
    return others;
}

void putApplied(Json answer) {
    apply::Saved saved = {};
    Json refused = host::jsonArray();
    if (!apply::readSaved(saved, appendRefusal, refused)) {
        return;
    }
    Json applied = host::jsonObject();
    host::put(applied, "time", static_cast<int64_t>(saved.time));
    host::put(applied, "changes", static_cast<int64_t>(saved.changes));
    host::put(applied, "refused", refused);
    host::put(answer, "applied", applied);
}

} // namespace

Json status(Json /*arguments*/) {
    const host::Processes processes;
    Json answer = host::jsonObject();
    Json daemons = daemonsOf(processes);
    Json watch = host::jsonObject();
    host::putFlag(watch, "running", processes.hasWatch());
    host::put(answer, "version", FRRUCI_VERSION);
    host::put(answer, "daemons", daemons);
    host::put(answer, "protocols", protocolsOf(daemons));
    host::put(answer, "watch", watch);
    host::put(answer, "others", othersOf(processes));
    putApplied(answer);
    return answer;
}

} // namespace frruci::rpcd
