// SPDX-License-Identifier: Apache-2.0
// An alarm that every event of the library puts off.

#include "host/timeout.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "host/streams.h"
#include "host/traffic.h"

namespace frruci::host {

namespace {

constexpr unsigned long kLongest = 86400;

unsigned seconds = kDefaultTimeoutSeconds;
bool isGiven = false;
bool isRunning = false;
int errDescriptor = STDERR_FILENO;

void say(const char *text) {
    if (write(errDescriptor, text, strlen(text)) < 0) {
        // Nothing is left to say it with.
    }
}

void giveUp(int) {
    const char *what = activity();
    say("frruci: ");
    say(what == nullptr ? "the library did not return" : what);
    say(" in time\n");
    _exit(kNoAnswer);
}

} // namespace

bool setTimeout(const char *text) {
    char *end = nullptr;
    const unsigned long given = strtoul(text, &end, 10);
    if (*text < '0' || *text > '9' || *end != '\0' || given == 0 || given > kLongest) {
        return false;
    }
    seconds = static_cast<unsigned>(given);
    isGiven = true;
    return true;
}

unsigned timeoutSeconds() {
    return seconds;
}

void progress(unsigned pauseSeconds) {
    if (isRunning) {
        (void)alarm(seconds + pauseSeconds);
    }
}

Waiting::Waiting(For whom) {
    errDescriptor = fileno(err);
    struct sigaction action = {};
    action.sa_handler = giveUp;
    action.sa_flags = SA_RESTART;
    (void)sigaction(SIGALRM, &action, nullptr); // a signal that everybody may handle
    isRunning = whom == kForDaemons || isGiven;
    progress(0);
}

Waiting::~Waiting() {
    isRunning = false;
    (void)alarm(0);
}

} // namespace frruci::host
