/* SPDX-License-Identifier: Apache-2.0 */
/* What the program says on standard error, kept for an answer. */
#ifndef FRRUCI_RPCD_MESSAGES_H
#define FRRUCI_RPCD_MESSAGES_H

#include <cstdio>

#include "host/json.h"

namespace frruci::rpcd {

/// From construction to the end of its scope host::err leads into a file without a name, which
/// child processes share.
class Messages {
public:
    Messages();
    ~Messages();
    Messages(const Messages &) = delete;
    Messages &operator=(const Messages &) = delete;

    /// Puts what was said, line by line, keys hidden; nothing when nothing was said.
    void putInto(host::Json object) const;

private:
    FILE *before_;
    FILE *file_;
};

} // namespace frruci::rpcd

#endif
