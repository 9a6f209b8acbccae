/* SPDX-License-Identifier: Apache-2.0 */
/* Parts that several answers have. */
#ifndef FRRUCI_RPCD_ANSWERS_H
#define FRRUCI_RPCD_ANSWERS_H

#include "apply/refusals.h"
#include "host/json.h"

namespace frruci::rpcd {

/// Appends a refusal to the array that context is; without a protocol it has no such member.
void appendRefusal(const char *protocol, const apply::Refusal &refusal, void *context);

} // namespace frruci::rpcd

#endif
