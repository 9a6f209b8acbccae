/* SPDX-License-Identifier: Apache-2.0 */
/* A mutex held for a scope. */
#ifndef FRRUCI_COMMON_LOCK_H
#define FRRUCI_COMMON_LOCK_H

#include <pthread.h>

namespace frruci::common {

/// Holds a mutex to the end of its scope. Not recursive: a holder calls nothing that takes it
/// again.
class Locked {
public:
    explicit Locked(pthread_mutex_t &mutex) : mutex_(mutex) {
        (void)pthread_mutex_lock(&mutex_); // cannot fail on a default mutex
    }
    ~Locked() {
        (void)pthread_mutex_unlock(&mutex_); // held since the constructor
    }
    Locked(const Locked &) = delete;
    Locked &operator=(const Locked &) = delete;

private:
    pthread_mutex_t &mutex_;
};

} // namespace frruci::common

#endif
