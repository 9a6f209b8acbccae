/* SPDX-License-Identifier: Apache-2.0 */
/* What the RIP files share: result codes, the ranges of settings, the lock guard. */
#ifndef FRRUCI_RIP_RIP_INTERNAL_H
#define FRRUCI_RIP_RIP_INTERNAL_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <pthread.h>

namespace frruci::rip {

inline constexpr uint32_t kOk = 0;
inline constexpr uint32_t kFailed = 1; // bad argument, not found, failed
inline constexpr uint32_t kListFailed = 4;

inline constexpr const char *kRipSocket = "/var/ripd.vty";
inline constexpr const char *kInstanceView = "view_rip";
inline constexpr const char *kConfigureView = "configure_view";
inline constexpr const char *kInstance = "default"; // the VRF name that everything here means

// One byte more than ripd's answer may have, so that its text always ends.
inline constexpr int32_t kAnnouncedReplyBytes = 512;
inline constexpr int32_t kReplyBytes = kAnnouncedReplyBytes + 1;

inline constexpr std::size_t kNameCharacters = 36; // of a VRF name in the model

struct Range {
    uint32_t low;
    uint32_t high;
    constexpr bool holds(uint32_t value) const { return low <= value && value <= high; }
};

inline constexpr Range kSwitch = {0, 1};
inline constexpr Range kUpdateTimer = {5, 100};
inline constexpr Range kTimeoutTimer = {5, 300};
inline constexpr Range kGarbageTimer = {5, 500};
inline constexpr Range kMetric = {0, 16};
inline constexpr Range kDistance = {1, 255};
inline constexpr Range kKeyId = {1, 255};

inline constexpr uint32_t kInitialUpdateTimer = 30;
inline constexpr uint32_t kInitialTimeoutTimer = 180;
inline constexpr uint32_t kInitialGarbageTimer = 120;
inline constexpr uint8_t kInitialMetric = 1;
inline constexpr uint8_t kInitialDistance = 120;

inline constexpr uint32_t kVlanInterface = 1; // RipNetIf.type

/// Sends the steps in order over one session, each only after the one before it succeeded and into
/// a reply buffer of its own: a cut answer is not completed by an older one.
/// Result: kOk, or kFailed when the connection or a step failed.
uint32_t deliver(const char *path, std::initializer_list<const char *> steps);

/// Holds a mutex of the model for its scope.
class Locked {
public:
    explicit Locked(pthread_mutex_t &mutex) : mutex_(mutex) {
        (void)pthread_mutex_lock(&mutex_); // fails only on misuse
    }
    ~Locked() { (void)pthread_mutex_unlock(&mutex_); }
    Locked(const Locked &) = delete;
    Locked &operator=(const Locked &) = delete;

private:
    pthread_mutex_t &mutex_;
};

} // namespace frruci::rip

#endif
