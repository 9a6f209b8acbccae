// SPDX-License-Identifier: Apache-2.0
// Holds a session open with every daemon: when it ends, the daemon is gone, and when another one
// can be opened, the daemon was started anew.

#include "apply/watch.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>

#include "apply/daemons.h"
#include "apply/library.h"
#include "apply/refusals.h"
#include "apply/rehearsal.h"
#include "apply/report.h"
#include "apply/send.h"
#include "apply/session.h"
#include "host/lock.h"

namespace frruci::apply {

namespace {

constexpr int kTickMs = 200;
constexpr long long kGoneMs = 2000;
// A killed process may close its sessions before the socket that it listens on.
constexpr long long kEndMs = 50;
constexpr long long kSteadyMs = 60000; // who lives as long has not crashed in a row
constexpr long long kFirstDelayMs = 1000;
constexpr long long kLongestDelayMs = 16000;
constexpr long long kAgainMs = 5000;
// While mgmtd meets a daemon, it may lose what it has accepted, and refuse what it takes later.
constexpr long long kLookMs = 1000;
constexpr int kMostLooks = 5;
constexpr int kProtocolCount = 3;
constexpr int kDaemonCount = 5;

/// A daemon, and which protocols it has settings of: letters of kLetters.
struct Daemon {
    const char *name;
    const char *protocols;
};

constexpr const char *kLetters = "orn"; // in the order of protocols()
constexpr Daemon kDaemons[kDaemonCount] = {
    {"mgmtd", "rn"},
    {"zebra", "n" },
    {"ospfd", "o" },
    {"ripd",  "r" },
    {"nhrpd", "n" },
};

constexpr int kManagement = 0;
constexpr int kZebra = 1;
constexpr int kRip = 1; // among the protocols

volatile sig_atomic_t storeChanged = 0;
volatile sig_atomic_t ended = 0;

void onSignal(int signal) {
    (signal == SIGHUP ? storeChanged : ended) = 1;
}

/// One daemon under watch.
struct Watched {
    int fd = -1;
    bool wasSeen = false;
    long long changedAt = 0; ///< when it came or went
    long long notBefore = 0; ///< it is looked for
    int crashes = 0;         ///< in a row
    int attempts = 0;        ///< to start it
};

/// One protocol under watch.
struct Kept {
    bool isDirty = false;
    bool wasOn = false;
    bool restart = false; ///< its daemon has settings that mgmtd has lost
    long long notBefore = 0;
    int looks = 0; ///< in a row, each after settings were sent
};

class Watch {
public:
    void run() {
        const long long now = milliseconds();
        for (Watched &watched : watched_) {
            watched.changedAt = now;
        }
        markAll();
        while (ended == 0) {
            look();
            if (storeChanged != 0) {
                storeChanged = 0;
                markAll();
            }
            startMissing();
            applyDirty();
            wait();
        }
    }

private:
    /// Sleeps until a daemon goes, a signal comes, or it is time to look for those that are gone.
    void wait() {
        pollfd sessions[kDaemonCount];
        for (int i = 0; i < kDaemonCount; ++i) {
            sessions[i] = {watched_[i].fd, 0, 0};
        }
        if (poll(sessions, kDaemonCount, kTickMs) <= 0) {
            return; // a signal is looked at next, as is what came meanwhile
        }
        for (int i = 0; i < kDaemonCount; ++i) {
            if (watched_[i].fd >= 0 && sessions[i].revents != 0) {
                lose(i);
            }
        }
    }

    void lose(int i) {
        Watched &watched = watched_[i];
        closeConnection(watched.fd);
        const long long now = milliseconds();
        watched.fd = -1;
        watched.crashes = now - watched.changedAt < kSteadyMs ? watched.crashes + 1 : 1;
        watched.changedAt = now;
        watched.notBefore = now + kEndMs;
        report("%s is gone", kDaemons[i].name);
    }

    void look() {
        for (int i = 0; i < kDaemonCount; ++i) {
            if (watched_[i].fd < 0 && milliseconds() >= watched_[i].notBefore) {
                watched_[i].fd = openConnection(kDaemons[i].name);
                if (watched_[i].fd >= 0) {
                    meet(i);
                }
            }
        }
    }

    void meet(int i) {
        Watched &watched = watched_[i];
        watched.changedAt = milliseconds();
        for (int p = 0; p < kProtocolCount; ++p) {
            if (strchr(kDaemons[i].protocols, kLetters[p]) != nullptr) {
                mark(p, delayAfter(watched.crashes));
            }
        }
        // It comes back empty, while ripd still has what it was told.
        if (i == kManagement && watched.wasSeen) {
            kept_[kRip].restart = true;
        }
        if (host::equals(kDaemons[i].name, protocols()[kRip].daemon)) {
            kept_[kRip].restart = false; // it is new itself
        }
        watched.wasSeen = true;
        watched.attempts = 0;
    }

    /// The first crash is no reason to wait.
    static long long delayAfter(int crashes) {
        if (crashes < 2) {
            return 0;
        }
        const long long delay = kFirstDelayMs << (crashes < 8 ? crashes - 2 : 6);
        return delay < kLongestDelayMs ? delay : kLongestDelayMs;
    }

    void mark(int p, long long delayMs) {
        kept_[p].isDirty = true;
        kept_[p].notBefore = milliseconds() + delayMs;
    }

    void markAll() {
        for (int p = 0; p < kProtocolCount; ++p) {
            mark(p, 0);
        }
    }

    Watched &daemonOfProtocol(const Protocol &protocol) {
        int i = 0;
        while (strcmp(kDaemons[i].name, protocol.daemon) != 0) {
            ++i;
        }
        return watched_[i];
    }

    /// True when the daemon has been gone for long enough to be looked for again.
    static bool isMissing(Watched &daemon) {
        const long long now = milliseconds();
        const long long wait = kGoneMs + delayAfter(daemon.crashes + daemon.attempts);
        if (daemon.fd >= 0 || now - daemon.changedAt < wait) {
            return false;
        }
        daemon.changedAt = now;
        return true;
    }

    /// Daemons that stay gone although the store has their protocol on. Whether they come is seen
    /// later.
    void startMissing() {
        bool anyOn = false;
        for (const Protocol &protocol : protocols()) {
            Watched &daemon = daemonOfProtocol(protocol);
            if (!isMissing(daemon)) {
                anyOn = anyOn || daemon.fd >= 0;
                continue;
            }
            if (storedSwitch(protocol) == Switch::On && !areWatched()) {
                anyOn = true;
                ++daemon.attempts;
                report("starting %s", protocol.daemon);
                const host::Lock lock;
                (void)switchOn(protocol);
            }
        }
        Watched &zebra = watched_[kZebra];
        if (anyOn && isMissing(zebra) && !accepts(kDaemons[kZebra].name) && !areWatched()) {
            ++zebra.attempts;
            report("starting %s", kDaemons[kZebra].name);
            const host::Lock lock;
            startZebra();
        }
    }

    void applyDirty() {
        for (int p = 0; p < kProtocolCount; ++p) {
            Kept &kept = kept_[p];
            if (kept.isDirty && milliseconds() >= kept.notBefore) {
                kept.isDirty = false;
                keep(protocols()[static_cast<std::size_t>(p)], p);
            }
        }
    }

    void keep(const Protocol &protocol, int p) {
        Kept &kept = kept_[p];
        const host::Lock lock; // one change at a time
        const Switch stored = storedSwitch(protocol);
        const bool wasOn = kept.wasOn;
        kept.wasOn = stored == Switch::On;
        if (stored != Switch::On) {
            noteOff(protocol);
            saveNotes();
            // One that was never on here may be somebody else's.
            if (stored == Switch::Off && wasOn && accepts(protocol.daemon)) {
                report("%s: switched off", protocol.name);
                switchOff(protocol);
            }
            return;
        }
        if (!accepts(protocol.daemon) || (p == kRip && isManagementLost())) {
            return; // it comes, or is started
        }
        if (kept.restart) {
            kept.restart = false;
            report("starting %s anew, as mgmtd was", protocol.daemon);
            (void)startAnew(protocol); // whether it came is seen next
            mark(p, kLookMs);
            return; // mgmtd is to meet it first
        }
        const Outcome outcome = applyStored(protocol, false, logSent, nullptr);
        saveNotes();
        if (outcome > Outcome::Refused) {
            mark(p, kAgainMs);
        } else if (outcome >= Outcome::Applied && isManaged(p) && kept.looks < kMostLooks) {
            ++kept.looks;
            mark(p, kLookMs);
        } else {
            kept.looks = 0;
        }
    }

    /// True when mgmtd has settings of the protocol.
    bool isManaged(int p) const {
        return watched_[kManagement].fd >= 0 &&
               strchr(kDaemons[kManagement].protocols, kLetters[p]) != nullptr;
    }

    /// True while mgmtd is gone that was there: ripd would refuse everything.
    bool isManagementLost() const {
        return watched_[kManagement].wasSeen && watched_[kManagement].fd < 0;
    }

    static void logSent(const Part &part, const Sent &sent, void *) {
        report("%s: %zu changes, %d refused%s", part.holder, part.changes.count, sent.refused,
               sent.cleared ? kClearedText : "");
    }

    Watched watched_[kDaemonCount];
    Kept kept_[kProtocolCount];
};

void catchSignals() {
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART; // what waits for a child process or its pipe goes on
    for (const int signal : {SIGHUP, SIGTERM, SIGINT}) {
        (void)sigaction(signal, &action, nullptr); // these can be caught
    }
}

} // namespace

host::Status watchVerb(int count, char **) {
    if (count != 0) {
        report("watch takes no words");
        return host::kWrongUsage;
    }
    if (!ready()) {
        return host::kNotUsable;
    }
    if (!host::readyFolder()) {
        return host::kNotUsable;
    }
    reportToLog();
    catchSignals();
    prepareFolders();
    report("watching");
    Watch().run();
    return host::kAccepted;
}

} // namespace frruci::apply
