/* SPDX-License-Identifier: Apache-2.0 */
/* Keys are not shown unless the user asks for it. */
#ifndef FRRUCI_HOST_SECRETS_H
#define FRRUCI_HOST_SECRETS_H

#include "host/text.h"

namespace frruci::host {

inline constexpr const char *kHidden = "***";

/// For --show-keys.
void showKeys();
bool keysAreShown();

/// Adds text with everything replaced that follows, in its line, the words that a key stands after.
void addMasked(const char *text, Text &masked);

} // namespace frruci::host

#endif
