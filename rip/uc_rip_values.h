/* SPDX-License-Identifier: Apache-2.0 */
/* The values that RIP settings may have and begin with. */
#ifndef FRRUCI_RIP_UC_RIP_VALUES_H
#define FRRUCI_RIP_UC_RIP_VALUES_H

#include <cstddef>
#include <cstdint>

namespace frruci::rip {

struct Range {
    uint32_t low;
    uint32_t high;
    constexpr bool holds(uint32_t value) const { return low <= value && value <= high; }
};

inline constexpr Range kSwitchRange = {0, 1};
inline constexpr Range kOneVersionRange = {1, 2};
inline constexpr Range kReceiveVersionRange = {1, 3}; // 3 is both
inline constexpr Range kUpdateRange = {5, 100};       // seconds, as the other timers
inline constexpr Range kTimeoutRange = {5, 300};
inline constexpr Range kGarbageRange = {5, 500};
inline constexpr Range kMetricRange = {0, 16};
inline constexpr Range kDistanceRange = {1, 255};
inline constexpr Range kKeyIdRange = {1, 255};

inline constexpr uint32_t kInitialUpdate = 30;
inline constexpr uint32_t kInitialTimeout = 180;
inline constexpr uint32_t kInitialGarbage = 120;
inline constexpr uint8_t kInitialMetric = 1;
inline constexpr uint8_t kInitialDistance = 120;

inline constexpr std::size_t kNameCharacters = 36; // of an instance

inline constexpr uint32_t kVlanInterface = 1; // RipNetIf.type

inline constexpr uint32_t kNoAuthentication = 0; // RipInterfaceNode.auth_type
inline constexpr uint32_t kSimpleText = 1;
inline constexpr uint32_t kMd5 = 2;

} // namespace frruci::rip

#endif
