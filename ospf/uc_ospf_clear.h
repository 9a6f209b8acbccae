/* SPDX-License-Identifier: Apache-2.0 */
/* The fixed clear of the model, and what it leaves unreadable.
 *
 * Fixed by the interface: each new interface entry that is taken for a simple key clears the bytes
 * 1621 to 1628 of the model block. They are the upper three bytes of slot 14's redistribution
 * handle and the start of slot 15. The handle may then point anywhere, so nothing follows it any
 * more until a reset of the slot gives it a new list. */
#ifndef FRRUCI_OSPF_UC_OSPF_CLEAR_H
#define FRRUCI_OSPF_UC_OSPF_CLEAR_H

#include "common/dlist.h"

namespace frruci::ospf {

/// Does the clear. Call it with the lock held.
void clearFixedBytes();

/// The list, or null when its handle is the damaged one. Call it with the lock held.
dlist *readableList(dlist *list);

} // namespace frruci::ospf

#endif
