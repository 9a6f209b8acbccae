// SPDX-License-Identifier: Apache-2.0
// The doctor's look at the daemons. Versions are asked for over the vty sockets: a command line
// with a daemon's name would be counted as that daemon.

#include <cstdio>
#include <dirent.h>
#include <glob.h>
#include <initializer_list>

#include "host/doctor.h"
#include "host/exchange.h"
#include "host/timeout.h"

namespace frruci::host {

namespace {

constexpr unsigned kPatienceSeconds = 3;
constexpr int kFirstWithMgmtd = 10;

/// Daemons of FRR that also live on zebra, and that the library knows nothing of.
constexpr const char *kOthersOnZebra[] = {"bgpd",  "staticd", "ospf6d", "ripngd", "isisd",  "pimd",
                                          "pim6d", "ldpd",    "eigrpd", "babeld", "sharpd", "pbrd",
                                          "bfdd",  "fabricd", "vrrpd",  "pathd"};

unsigned patience() {
    return timeoutSeconds() < kPatienceSeconds ? timeoutSeconds() : kPatienceSeconds;
}

bool isProcess(const char *entry, const char *name) {
    Text path;
    path.addf("/proc/%s/comm", entry);
    FILE *file = *entry < '0' || *entry > '9' ? nullptr : fopen(path.get(), "re");
    char comm[32] = "";
    if (file == nullptr) {
        return false;
    }
    if (fgets(comm, sizeof comm, file) == nullptr) {
        comm[0] = '\0'; // gone meanwhile
    }
    (void)fclose(file); // only read from
    comm[strcspn(comm, "\n")] = '\0';
    return equals(comm, name);
}

bool runs(const char *name) {
    DIR *processes = opendir("/proc");
    bool found = false;
    for (const dirent *entry = nullptr;
         processes != nullptr && !found && (entry = readdir(processes)) != nullptr;) {
        found = isProcess(entry->d_name, name);
    }
    if (processes != nullptr) {
        (void)closedir(processes); // only read from
    }
    return found;
}

/// The number after "FRRouting " in a daemon's "show version"; the whole line goes into version.
int majorVersion(const char *answer, Text &version) {
    const char *name = strstr(answer, "FRRouting ");
    if (name == nullptr) {
        version.add("of an unknown version");
        return 0;
    }
    version.add(name, strcspn(name, " ") + 1 + strcspn(name + strcspn(name, " ") + 1, " \r\n"));
    return static_cast<int>(strtol(strchr(name, ' '), nullptr, 10)); // 0 where there is no number
}

/// The daemon's major version; 0 when it does not tell.
int examineDaemon(const char *daemon, Findings &findings) {
    Exchange exchange(daemon, patience());
    Text answer;
    Text version;
    const bool answered = exchange.ask("show version", answer) == 0;
    const bool running = runs(daemon);
    switch (exchange.reach()) {
    case Reach::kAnswered: {
        const int major = answered ? majorVersion(answer.get(), version) : 0;
        add(findings, Level::kOk, daemon, "answers, %s", version.get());
        return major;
    }
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
void examineMgmtd(int major, Findings &findings) {
    if (major < kFirstWithMgmtd) {
        return;
    }
    const bool answers = Exchange("mgmtd", patience()).reach() == Reach::kAnswered;
    if (answers || runs("mgmtd")) {
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
void examineService(Findings &findings) {
    if (runs("watchfrr")) {
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

void examineOthers(Findings &findings) {
    for (const char *other : kOthersOnZebra) {
        if (runs(other)) {
            add(findings, Level::kWarning, other,
                "lives on zebra, which is killed when the last of frruci's protocols goes off");
        }
    }
}

} // namespace

void examineDaemons(Findings &findings) {
    int newest = 0;
    for (const char *daemon : {"zebra", "ospfd", "ripd", "nhrpd"}) {
        const int major = examineDaemon(daemon, findings);
        newest = major > newest ? major : newest;
    }
    examineMgmtd(newest, findings);
    examineService(findings);
    examineOthers(findings);
}

} // namespace frruci::host
