/* SPDX-License-Identifier: Apache-2.0 */
/* What the daemons know, asked directly: nothing is written, no pipe is used. */
#ifndef FRRUCI_HOST_SHOW_H
#define FRRUCI_HOST_SHOW_H

#include "host/status.h"

namespace frruci::host {

Status show(int count, char **words);

} // namespace frruci::host

#endif
