/* SPDX-License-Identifier: Apache-2.0 */
/* Replay of the stored OSPF configuration, the UCI package ospf, into freshly started daemons.
 *
 * Nothing is replied to the front-end and nothing is written to the store. Failures are lines of
 * the log, under the source name frr_ospf_recovery, and never stop the replay; the number in such a
 * line is that of the call or table row in the source that failed. A missing option counts as the
 * empty text or as 0, and 0 is sent. Meant to run before the front-end's first request. */
#ifndef FRRUCI_OSPF_FRR_OSPF_RECOVERY_H
#define FRRUCI_OSPF_FRR_OSPF_RECOVERY_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

struct uci_context; /* libuci's own records */
struct uci_section;

/* The whole replay: when option status of section global is "on", the five steps below in their
 * order; otherwise only its two log lines, begin and end.
 * Result: no meaning. */
int32_t ospf_cfg_recovery(void);

/* Starts zebra and ospfd where they do not run, and sets the router id (ospf_enable with
 * global.router_id, which makes the pauses; its result is ignored). */
void ospf_recovery_process(void);

/* Sets the default-route origination: process_ospf_advertise_cfg with originate, always, metric
 * and metric_type of section advertise_cfg. */
void ospf_recovery_adv_cfg(void);

/* Sends the process-wide options of section ospf_cfg, as process_ospf_ospf_cfg does: distance,
 * rfc_compatible, spf_delay, spf_hold_init, spf_hold_max, max_path, passive_def. */
void ospf_recovery_ospf_cfg(void);

/* Visits every section of type network, or of type interface, in file order. */
void ospf_recovery_network(void);
void ospf_recovery_interface(void);

/* Adds the network of one section (ip, wildcard_mask, area_id) to the LAN instance and then to the
 * WAN instance. A section without one of the three is skipped.
 * context, section: libuci's, as frr_uci_foreach_section hands them out; not kept.
 * Result: 0. */
int32_t ospf_recovery_network_from_section(struct uci_context *context,
                                           struct uci_section *section);

/* Sends the settings of one interface section (interface, ns) in this order: cost, retransmit,
 * transmit, priority, hello, dead, network_type, mtu_ignore (also its "no" form), passive when it
 * is 1, auto_type; then simple_key for type 1, or md5_key_id and md5_key for type 2. Every failure
 * but that of a key is logged. A section without interface is skipped.
 * Result: the status of the key command where one was sent (0 accepted, 1 failed); else 0. */
int32_t ospf_recovery_interface_from_section(struct uci_context *context,
                                             struct uci_section *section);

FRRUCI_C_END

#endif
