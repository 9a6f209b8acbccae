/* SPDX-License-Identifier: Apache-2.0 */
/* The look-up of a registered view. */
#ifndef FRRUCI_VTY_VIEW_REGISTRY_H
#define FRRUCI_VTY_VIEW_REGISTRY_H

#include "vty/views.h"

namespace frruci::vty {

/// The view of that name, the registry's own; null when there is none.
const FrrVtyView *findView(const char *name);

} // namespace frruci::vty

#endif
