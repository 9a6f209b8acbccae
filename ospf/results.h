// SPDX-License-Identifier: Apache-2.0
// One name for each result of this room. The numbers are the interface's: families differ in which
// one says "not found".
#ifndef FRRUCI_OSPF_RESULTS_H
#define FRRUCI_OSPF_RESULTS_H

#include <cstdint>

namespace frruci::ospf {

inline constexpr uint32_t kDone = 0;

// Deliveries, shows and what ends with them.
inline constexpr uint32_t kRefused = 1; // no connection, or a step was refused
inline constexpr uint32_t kNoConnection = static_cast<uint32_t>(-1);
inline constexpr uint32_t kNotSent = static_cast<uint32_t>(-1); // an argument that has no command

// The model, and commands that record in it.
inline constexpr uint32_t kNothingThere = 1;
inline constexpr uint32_t kNothingToUnset = 2;
inline constexpr uint32_t kRemovalFailed = 3;
inline constexpr uint32_t kNoRoom = 4;
inline constexpr uint32_t kNotFound = static_cast<uint32_t>(-2);
inline constexpr uint32_t kNoFreeEntry = static_cast<uint32_t>(-1);
inline constexpr uint32_t kNoSlot = static_cast<uint32_t>(-1);
inline constexpr uint32_t kKeepsNormalArea = static_cast<uint32_t>(-1);

} // namespace frruci::ospf

#endif
