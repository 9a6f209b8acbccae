/* SPDX-License-Identifier: Apache-2.0 */
/* frruci: routing settings of a LuCI front-end, delivered to the FRRouting daemons.
 *
 * This header includes all the others. What holds for all of them stands here once:
 *
 *  1. Every function has C linkage. Texts are NUL-terminated; a "text" argument is only read during
 *     the call unless its description says who owns it afterwards.
 *  2. Handlers (process_*) take their words like main does: argc words, and a null entry ends the
 *     vector early. They never keep the vector.
 *  3. Results are 0 for success unless the function's description says otherwise. Each description
 *     lists every result code.
 *  4. "Replies WORD" means: WORD is written into the named pipe, which the front-end has made and
 *     reads; the write waits in open until a reader is there. Without the pipe nothing is written.
 *  5. "Logs" means one line appended to /tmp/tmp/data; without that folder the line is dropped.
 *  6. "Sends" means: over a session of its own on the daemon's vty socket in /var, closed before
 *     the function returns unless its description says otherwise. What configures ripd or zebra is
 *     sent to mgmtd where that runs, which since FRRouting 10 takes it; docs/rip.md has the rest.
 *  7. Calls run on the caller's thread, one handler at a time. The library starts no threads.
 *  8. Times are whole seconds unless a name says otherwise. Addresses held as numbers are in
 *     network order as they lie in memory: the first octet has the lowest address.
 *  9. Flags named set, enable or add are 1 for the setting and 0 for its "no" form.
 * 10. Some texts and behaviours look wrong and stay as they are; docs/behaviour.md lists them. */
#ifndef FRRUCI_FRRUCI_H
#define FRRUCI_FRRUCI_H

#include "common/address.h"
#include "common/dlist.h"
#include "common/front_end.h"
#include "common/frr_uci.h"
#include "nhrp/frr_nhrp.h"
#include "nhrp/sw_nhrp.h"
#include "nhrp/vty_nhrp.h"
#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_enable.h"
#include "ospf/frr_ospf_process.h"
#include "ospf/frr_ospf_recovery.h"
#include "ospf/sw_ospf.h"
#include "ospf/uc_ospf.h"
#include "ospf/vty_ospf.h"
#include "rip/frr_rip.h"
#include "rip/frr_rip_recovery.h"
#include "rip/sw_rip.h"
#include "rip/uc_rip.h"
#include "vty/frr_util.h"
#include "vty/startup.h"
#include "vty/views.h"

#include "observe.h"

#endif
