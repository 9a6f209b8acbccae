/* SPDX-License-Identifier: Apache-2.0 */
/* Replay of the stored OSPF configuration. */
#ifndef FRRUCI_OSPF_FRR_OSPF_RECOVERY_H
#define FRRUCI_OSPF_FRR_OSPF_RECOVERY_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* replay of the UCI configuration "ospf"; the entry's result has no meaning */
int32_t ospf_cfg_recovery(void);
void ospf_recovery_process(void);
void ospf_recovery_adv_cfg(void);
void ospf_recovery_ospf_cfg(void);
void ospf_recovery_network(void);
void ospf_recovery_interface(void);

/* section visitors for frr_uci_foreach_section. The interface visitor returns the status of the key
 * command where one is sent. */
struct uci_context;
struct uci_section;
int32_t ospf_recovery_network_from_section(struct uci_context *context,
                                           struct uci_section *section);
int32_t ospf_recovery_interface_from_section(struct uci_context *context,
                                             struct uci_section *section);

FRRUCI_C_END

#endif
