/* SPDX-License-Identifier: Apache-2.0 */
/* Daemon processes: find, kill and start them. */
#ifndef FRRUCI_OSPF_FRR_OSPF_PROCESS_H
#define FRRUCI_OSPF_FRR_OSPF_PROCESS_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

int32_t process_exist(const char *name, int32_t kill_flag); /* the number of matching processes */
int32_t kill_process(char *ps_line); /* changes the line; result of no meaning */
int32_t zebra_enable(void);          /* result of no meaning */
int32_t ospf_enable(const char *router_id_text);
int32_t sysn_network(uint16_t process_id, uint32_t area_id, int32_t instance_selector);

FRRUCI_C_END

#endif
