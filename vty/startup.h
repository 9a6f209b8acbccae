/* SPDX-License-Identifier: Apache-2.0 */
/* What the host runs once, before any handler. */
#ifndef FRRUCI_VTY_STARTUP_H
#define FRRUCI_VTY_STARTUP_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* Makes /var/tmp/frr, waits 1 second and opens the permissions of the daemons' sockets, each by a
 * shell command whose outcome is not looked at.
 * Result: 0. */
int32_t frr_process_init(void);

/* Makes the view registry and registers the standard views: enable_view, configure_view,
 * interface_view (eth1.<vid>), interface_v_view (eth0.<vid>), keychain_keyid_keystr_view
 * (<keychain> and <keyid>). A second call starts over with a new registry. The first view that
 * cannot be registered ends it with a message on standard output.
 * Result: 0 all registered; else the result of that registration. */
int32_t frrVtyInit(void);

FRRUCI_C_END

#endif
