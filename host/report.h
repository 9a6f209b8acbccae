/* SPDX-License-Identifier: Apache-2.0 */
/* Tells how deliveries went: in JSON, and as the summary of a replay. */
#ifndef FRRUCI_HOST_REPORT_H
#define FRRUCI_HOST_REPORT_H

#include "host/json.h"
#include "host/judge.h"

namespace frruci::host {

/// The lines of a text.
Json linesOf(const char *text);

/// The commands of a session, keys hidden.
Json commandsOf(const Step &step);

/// Puts the counts, the status, and every delivery that was not simply accepted.
void putJudgement(Json object, const Judgement &judgement, Status status);

/// "ospf: 31 sent, 29 accepted, 2 noted, 0 refused".
void addSummary(const char *name, const Judgement &judgement, Text &text);

} // namespace frruci::host

#endif
