// SPDX-License-Identifier: Apache-2.0
// The doctor's look at the daemons.

#include <glob.h>
#include <initializer_list>

#include "host/daemons.h"
#include "host/doctor.h"

namespace frruci::host {

namespace {

constexpr int kFirstWithMgmtd = 10;

/// The daemon's major version; 0 when it does not tell.
int examineDaemon(const char *daemon, const Processes &processes, Findings &findings) {
    Greeting greeting;
    greet(daemon, greeting);
    const char *version = greeting.version.get();
    const bool running = processes.has(daemon);
    switch (greeting.reach) {
    case Reach::kAnswered:
        add(findings, Level::kOk, daemon, "answers, %s%s", *version == '\0' ? "" : "FRRouting ",
            *version == '\0' ? "of an unknown version" : version);
        return static_cast<int>(strtol(version, nullptr, 10)); // 0 where there is no number
    case Reach::kSilent:
        add(findings, Level::kFault, daemon, "does not answer on /var/%s.vty: restart it", daemon);
        return 0;
    case Reach::kStale:
        if (!running) { // switching off kills, so the socket stays
            add(findings, Level::kOk, daemon, "does not run; its old socket is harmless");
            return 0;
        }
        add(findings, Level::kFault, daemon, "runs, but does not listen on /var/%s.vty: restart it",
            daemon);
        return 0;
    case Reach::kMissing:
        break;
    }
    if (running) {
        add(findings, Level::kFault, daemon,
            "runs, but has no /var/%s.vty: link the socket there (see the start script)", daemon);
    } else {
        add(findings, Level::kOk, daemon, "does not run");
    }
    return 0;
}

/// mgmtd has no use for the library, but from FRR 10 on the others take RIP and addresses from it.
void examineMgmtd(int major, const Processes &processes, Findings &findings) {
    if (major < kFirstWithMgmtd) {
        return;
    }
    const bool answers = Exchange("mgmtd", shortPatience()).reach() == Reach::kAnswered;
    if (answers || processes.has("mgmtd")) {
        add(findings, Level::kOk, "mgmtd", "%s", answers ? "answers" : "runs");
    } else {
        add(findings, Level::kFault, "mgmtd",
            "does not run: FRR %d refuses RIP and address settings without it; start it first",
            major);
    }
}

/// OpenWrt's link for a service that is switched on.
bool isStartedAtBoot() {
    glob_t found = {};
    const bool isThere = glob("/etc/rc.d/S??frr", 0, nullptr, &found) == 0;
    globfree(&found);
    return isThere;
}

/// FRR's own service is explained and left alone: on some routers it does more than frruci.
void examineService(const Processes &processes, Findings &findings) {
    if (processes.has("watchfrr")) {
        add(findings, Level::kWarning, "watchfrr",
            "restarts what frruci stops, and frruci watch starts no daemon beside it: switch FRR's "
            "own service off (service frr disable; reboot)");
    } else if (isStartedAtBoot()) {
        add(findings, Level::kWarning, "watchfrr",
            "comes with the next boot, and then frruci watch starts no daemon: switch FRR's own "
            "service off (service frr disable)");
    } else {
        add(findings, Level::kOk, "watchfrr", "does not run");
    }
}

void examineOthers(const Processes &processes, Findings &findings) {
    for (const char *other : othersOnZebra()) {
        if (processes.has(other)) {
            add(findings, Level::kWarning, other,
                "lives on zebra, which is killed when the last of frruci's protocols goes off");
        }
    }
}

} // namespace

void examineDaemons(Findings &findings) {
    const Processes processes;
    int newest = 0;
    for (const char *daemon : {"zebra", "ospfd", "ripd", "nhrpd"}) {
        const int major = examineDaemon(daemon, processes, findings);
        newest = major > newest ? major : newest;
    }
    examineMgmtd(newest, processes, findings);
    examineService(processes, findings);
    examineOthers(processes, findings);
}

} // namespace frruci::host
