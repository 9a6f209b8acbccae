/* SPDX-License-Identifier: Apache-2.0 */
/* What would be sent, session by session. */
#ifndef FRRUCI_HOST_PLAN_H
#define FRRUCI_HOST_PLAN_H

#include "host/status.h"
#include "host/traffic.h"

namespace frruci::host {

/// Prints the steps, keys hidden.
void printPlan(const List<Step> &steps);

/// Runs a rehearsal in a process of its own, since it changes the models. Its status, or
/// kNotUsable when it died.
Status inChild(Status (*rehearsal)(void *context), void *context);

} // namespace frruci::host

#endif
