/* SPDX-License-Identifier: Apache-2.0 */
/* Result codes that mean the same in every room. Codes of one room stand in its own files. */
#ifndef FRRUCI_COMMON_STATUS_H
#define FRRUCI_COMMON_STATUS_H

#include <cstdint>

namespace frruci::common {

inline constexpr int32_t kSuccess = 0;

/// A bad argument, something that is not there, no connection, or the daemon's refusal.
inline constexpr int32_t kFailed = 1;

/// A failed exchange, or a text that a helper refuses.
inline constexpr int32_t kRefused = -1;

/// In lists and models.
inline constexpr int32_t kInvalidArgument = 3;

/// In models and views; a list has a code of its own for it.
inline constexpr int32_t kOutOfMemory = 4;

/// A show command whose session could not be opened.
inline constexpr uint32_t kNoConnection = UINT32_MAX;

} // namespace frruci::common

#endif
