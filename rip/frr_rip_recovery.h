/* SPDX-License-Identifier: Apache-2.0 */
/* Replay of the stored RIP configuration (store "rip") into a freshly started ripd, through the
 * handlers that the web pages call.
 *
 * Nothing here stops early: an option that cannot be read and a network that fails are logged, any
 * other failure is not, and the next setting is tried. No reply is written. */
#ifndef FRRUCI_RIP_FRR_RIP_RECOVERY_H
#define FRRUCI_RIP_FRR_RIP_RECOVERY_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

struct uci_context; /* libuci's own records */
struct uci_section;

/* Replays everything, in the order of the functions below, when option "status" of section "global"
 * is "on"; else nothing. Logs its begin and end. Called once by the host, after swRipInit. */
void rip_cfg_recovery(void);

/* Starts ripd (rip_enable). */
void rip_recovery_process(void);

/* Replays the settings of section "config", in the order of the nine functions below. Each reads
 * its option, which has the name that the function ends in (rip_version and rip_distance for the
 * first two; redistribute_static and redistribute_ospf each with a second one, ..._metric), at most
 * 63 characters of it, and calls its handler. An option that cannot be read is logged and handed on
 * as the empty text, so a missing auto_summary sends "no autosummary" and a missing default_metric
 * metric 0, while a missing distance or timer is refused as 0. */
void rip_recovery_config(void);
void rip_recovery_config_version(void);
void rip_recovery_config_distance(void);
void rip_recovery_config_auto_summary(void);
void rip_recovery_config_default_metric(void);
void rip_recovery_config_redistribute_static(void);
void rip_recovery_config_redistribute_ospf(void);
void rip_recovery_config_update_timer(void);
void rip_recovery_config_timeout_timer(void);
void rip_recovery_config_garbage_timer(void);

/* Replay every section of type "network" or "interface", in file order. */
void rip_recovery_network(void);
void rip_recovery_interface(void);

/* Reads one option of a section.
 * Result: the text of the section's option of that name, the context's and valid while the section
 * is; null when an argument is null, there is no such option, or it is a list. */
const char *rip_uci_option_string(struct uci_context *context, struct uci_section *section,
                                  const char *name);

/* Visitors for one section; their result is 0 and of no meaning. An option that the section lacks
 * leaves out that setting only. */

/* Options "ipaddress" and "mask": announces the network twice (swRipNetworkSet), once for each of
 * the router's networks; each failure is logged. */
int32_t rip_recovery_network_from_section(struct uci_context *context, struct uci_section *section);

/* Replays the four settings below, in this order. */
int32_t rip_recovery_interface_from_section(struct uci_context *context,
                                            struct uci_section *section);

/* Options "interface" and "split_horizon_mode", "send_version" or "receive_version". */
int32_t rip_recovery_interface_split_horizon_mode(struct uci_context *context,
                                                  struct uci_section *section);
int32_t rip_recovery_interface_send_version(struct uci_context *context,
                                            struct uci_section *section);
int32_t rip_recovery_interface_recv_version(struct uci_context *context,
                                            struct uci_section *section);

/* Options "interface", "authen_mode", "key_id" and "key". Needs all of them, except the key id for
 * the mode "simple". The mode "none" replays nothing. */
int32_t rip_recovery_interface_authen(struct uci_context *context, struct uci_section *section);

FRRUCI_C_END

#endif
