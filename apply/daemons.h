/* SPDX-License-Identifier: Apache-2.0 */
/* Switches protocols on and off as the handlers do, each in a child process: that changes the
 * library's models, and daemons may keep what their starter has open. */
#ifndef FRRUCI_APPLY_DAEMONS_H
#define FRRUCI_APPLY_DAEMONS_H

#include "apply/protocols.h"

namespace frruci::apply {

/// Starts zebra and the protocol's daemon and waits until the daemon answers; false when it does
/// not.
bool switchOn(const Protocol &protocol);

/// Folders and permissions that the daemons need, as a start of the router makes them.
void prepareFolders();

/// Starts zebra unless it runs.
void startZebra();

/// Kills the protocol's daemon, which mgmtd has forgotten the settings of, and starts it again.
bool startAnew(const Protocol &protocol);

/// True when another program looks after the daemons.
bool areWatched();

/// Kills the protocol's daemon, and zebra with the last one of OSPF and RIP.
void switchOff(const Protocol &protocol);

} // namespace frruci::apply

#endif
