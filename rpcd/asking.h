/* SPDX-License-Identifier: Apache-2.0 */
/* Questions to a daemon, in one session. */
#ifndef FRRUCI_RPCD_ASKING_H
#define FRRUCI_RPCD_ASKING_H

#include "host/exchange.h"
#include "host/json.h"

namespace frruci::rpcd {

using host::Json;

/// A session with a daemon, and an answer that begins with whether it runs.
class Asking {
public:
    explicit Asking(const char *daemon);

    /// False when the daemon does not run, or does not answer.
    bool runs() const { return exchange_.reach() == host::Reach::kAnswered; }

    /// The daemon's answer, whatever its completion code: for a list without entries some daemons
    /// tell of a failure. Null when it is no JSON.
    Json json(const char *command);
    /// Empty when the daemon does not answer.
    void text(const char *command, host::Text &answer);

private:
    host::Exchange exchange_;
};

/// Puts the member of an object under another name; nothing when it is missing or no text.
void putText(Json into, const char *name, Json from, const char *key);
void putNumber(Json into, const char *name, Json from, const char *key);
/// Milliseconds as whole seconds.
void putSeconds(Json into, const char *name, Json from, const char *key);

} // namespace frruci::rpcd

#endif
