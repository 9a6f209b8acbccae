// SPDX-License-Identifier: Apache-2.0
// In place of the room where there is no json-c.

#include "host/streams.h"
#include "rpcd/rpcd.h"

namespace frruci::rpcd {

host::Status rpcdVerb(int, char **) {
    return host::wrongUsage("this build has no rpcd");
}

} // namespace frruci::rpcd
