/* SPDX-License-Identifier: Apache-2.0 */
/* What stands in for the outside world while a request is rehearsed: daemons that accept every
 * command, the real process list without those that were killed and with those that were started,
 * and the front-end's real answers to VLAN questions. */
#ifndef FRRUCI_HOST_REHEARSAL_H
#define FRRUCI_HOST_REHEARSAL_H

#include "frruci/observe.h"

namespace frruci::host {

/// Answers an event of a rehearsal.
void rehearse(FrruciEvent &event);

/// Removes what the VLAN questions left behind.
void endRehearsal();

} // namespace frruci::host

#endif
