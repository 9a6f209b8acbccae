// SPDX-License-Identifier: Apache-2.0
// Starts and stops daemons through the library.

#include "apply/daemons.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "apply/library.h"
#include "apply/session.h"
#include "host/streams.h"

namespace frruci::apply {

namespace {

constexpr const char *kReplyPipe = "/tmp/tmp/ospf_pipe_c2lua";
constexpr long long kStartMs = 10000;
constexpr int kPollMs = 20;
constexpr std::size_t kValueBytes = 64;

void startOspf() {
    char routerId[kValueBytes];
    (void)library().get("ospf", "global", "router_id", routerId, kValueBytes); // empty when missing
    routerId[strcspn(routerId, " \t\r\n")] = '\0';
    (void)library().startOspf(routerId); // whether the daemon answers tells
}

void startNhrp() {
    (void)library().startZebra(); // its result says nothing
    if (library().processes("nhrpd", 0) == 0 && system("nhrpd -d") != 0) {
        _exit(1);
    }
}

/// The handler answers on a pipe and waits for its reader, which is this process.
void switchOffByHandler(void (*handler)(int32_t, char **)) {
    const int pipe = open(kReplyPipe, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    char off[] = "off";
    char none[] = "";
    char *words[] = {off, none, nullptr};
    handler(2, words);
    (void)close(pipe);
}

void start(const Protocol &protocol) {
    if (strcmp(protocol.name, "ospf") == 0) {
        startOspf();
    } else if (strcmp(protocol.name, "rip") == 0) {
        library().startRip();
    } else {
        startNhrp();
    }
}

void stop(const Protocol &protocol) {
    if (strcmp(protocol.name, "ospf") == 0) {
        switchOffByHandler(library().switchOspf);
    } else if (strcmp(protocol.name, "rip") == 0) {
        switchOffByHandler(library().switchRip);
    }
}

void killDaemon(const Protocol &protocol) {
    (void)library().processes(protocol.daemon, 1); // how many there were does not matter
}

void inChild(void (*function)(const Protocol &), const Protocol &protocol) {
    (void)fflush(host::out);
    const pid_t child = fork();
    if (child == 0) {
        if (library().begin()) {
            function(protocol);
        }
        _exit(0);
    }
    if (child > 0) {
        (void)waitpid(child, nullptr, 0); // what became of it shows on the daemons
    }
}

} // namespace

bool switchOn(const Protocol &protocol) {
    inChild(start, protocol);
    const long long end = milliseconds() + kStartMs;
    while (!accepts(protocol.daemon)) {
        if (milliseconds() >= end) {
            return false;
        }
        (void)poll(nullptr, 0, kPollMs);
    }
    return true;
}

void prepareFolders() {
    inChild([](const Protocol &) { (void)library().prepareFolders(); }, protocols().front());
}

void startZebra() {
    inChild([](const Protocol &) { (void)library().startZebra(); }, protocols().front());
}

bool startAnew(const Protocol &protocol) {
    inChild(killDaemon, protocol);
    return switchOn(protocol);
}

bool areWatched() {
    return library().processes("watchfrr", 0) > 0;
}

void switchOff(const Protocol &protocol) {
    inChild(stop, protocol);
}

} // namespace frruci::apply
