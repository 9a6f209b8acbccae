/* SPDX-License-Identifier: Apache-2.0 */
/* A host's timer: a signal every few hundred microseconds, whose handler does not have the system
 * resume the calls that it interrupts. */
#ifndef FRRUCI_TESTS_SUPPORT_INTERRUPTIONS_H
#define FRRUCI_TESTS_SUPPORT_INTERRUPTIONS_H

#include <csignal>
#include <cstdlib>
#include <sys/time.h>

namespace interruptions {

/// Signals that came since the last timer started.
inline volatile sig_atomic_t count = 0;

/// Runs as long as it lives; one at a time.
class Timer {
public:
    explicit Timer(suseconds_t everyUs = 500) {
        count = 0;
        struct sigaction action = {};
        action.sa_handler = [](int) { count = count + 1; };
        const itimerval every = {
            {0, everyUs},
            {0, everyUs}
        };
        if (sigaction(SIGALRM, &action, &before_) != 0 ||
            setitimer(ITIMER_REAL, &every, nullptr) != 0) {
            abort();
        }
    }
    ~Timer() {
        const itimerval none = {};
        if (setitimer(ITIMER_REAL, &none, nullptr) != 0 ||
            sigaction(SIGALRM, &before_, nullptr) != 0) {
            abort();
        }
    }
    Timer(const Timer &) = delete;
    Timer &operator=(const Timer &) = delete;

private:
    struct sigaction before_ = {};
};

/// Keeps the timer's signal away from the calling thread, so that the library's thread gets it.
inline void keepAway() {
    sigset_t timer;
    if (sigemptyset(&timer) != 0 || sigaddset(&timer, SIGALRM) != 0 ||
        pthread_sigmask(SIG_BLOCK, &timer, nullptr) != 0) {
        abort();
    }
}

} // namespace interruptions

#endif
