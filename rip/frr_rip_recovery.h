/* SPDX-License-Identifier: Apache-2.0 */
/* Replay of the stored RIP configuration. */
#ifndef FRRUCI_RIP_FRR_RIP_RECOVERY_H
#define FRRUCI_RIP_FRR_RIP_RECOVERY_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

struct uci_context;
struct uci_section;

/* ---- recovery; the section functions serve as visitors, their result is ignored ---- */
void rip_cfg_recovery(void);
void rip_recovery_process(void);
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
void rip_recovery_network(void);
void rip_recovery_interface(void);
const char *rip_uci_option_string(struct uci_context *context, struct uci_section *section,
                                  const char *name);
int32_t rip_recovery_network_from_section(struct uci_context *context, struct uci_section *section);
int32_t rip_recovery_interface_from_section(struct uci_context *context,
                                            struct uci_section *section);
int32_t rip_recovery_interface_split_horizon_mode(struct uci_context *context,
                                                  struct uci_section *section);
int32_t rip_recovery_interface_send_version(struct uci_context *context,
                                            struct uci_section *section);
int32_t rip_recovery_interface_recv_version(struct uci_context *context,
                                            struct uci_section *section);
int32_t rip_recovery_interface_authen(struct uci_context *context, struct uci_section *section);

FRRUCI_C_END

#endif
