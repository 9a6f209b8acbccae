/* SPDX-License-Identifier: Apache-2.0 */
/* The results of this room, which are unsigned. The numbers are the interface's: families differ in
 * which one says "not found". */
#ifndef FRRUCI_OSPF_RESULTS_H
#define FRRUCI_OSPF_RESULTS_H

#include <cstdint>

#include "common/status.h"

namespace frruci::ospf {

inline constexpr uint32_t kSuccess = common::kSuccess;
inline constexpr uint32_t kFailed = common::kFailed;
inline constexpr uint32_t kOutOfMemory = common::kOutOfMemory;
inline constexpr uint32_t kNoConnection = common::kNoConnection;

inline constexpr uint32_t kNothingToUnset = 2;
inline constexpr uint32_t kRemovalFailed = 3;
inline constexpr uint32_t kNoFreeSlot = 4;
inline constexpr uint32_t kNotFound = static_cast<uint32_t>(-2);
inline constexpr uint32_t kNoFreeEntry = static_cast<uint32_t>(-1);
inline constexpr uint32_t kNoSlot = static_cast<uint32_t>(-1);          // with that process id
inline constexpr uint32_t kNoSuchCode = static_cast<uint32_t>(-1);      // of a network type
inline constexpr uint32_t kKeepsNormalArea = static_cast<uint32_t>(-1); // without a default cost

} // namespace frruci::ospf

#endif
