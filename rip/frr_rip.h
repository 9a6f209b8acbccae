/* SPDX-License-Identifier: Apache-2.0 */
/* RIP front-end handlers. */
#ifndef FRRUCI_RIP_FRR_RIP_H
#define FRRUCI_RIP_FRR_RIP_H

#include <stdint.h>

#include "../common/c_interface.h"
#include "uc_rip.h"

FRRUCI_C_BEGIN

/* ---- dispatchers and switches ---- */
void process_rip_global(int32_t argc, char **argv);
void rip_enable(void);
void process_rip_config(int32_t argc, char **argv);
void process_rip_interface(int32_t argc, char **argv);
void process_rip_network(int32_t argc, char **argv);

/* ---- keyword handlers (arguments after the keyword) ---- */
int32_t process_rip_config_version(int32_t argc, char **argv);
int32_t process_rip_config_distance(int32_t argc, char **argv);
int32_t process_rip_config_auto_summary(int32_t argc, char **argv);
int32_t process_rip_config_default_metric(int32_t argc, char **argv);
int32_t process_rip_config_redistribute_static(int32_t argc, char **argv);
int32_t process_rip_config_redistribute_ospf(int32_t argc, char **argv);
int32_t process_rip_config_update_timer(int32_t argc, char **argv);
int32_t process_rip_config_timeout_timer(int32_t argc, char **argv);
int32_t process_rip_config_garbage_timer(int32_t argc, char **argv);
int32_t process_rip_interface_split_horizon_mode(int32_t argc, char **argv);
int32_t process_rip_interface_send_version(int32_t argc, char **argv);
int32_t process_rip_interface_recv_version(int32_t argc, char **argv);
int32_t process_rip_interface_authen(int32_t argc, char **argv);
int32_t process_rip_interface_show(int32_t argc, char **argv);

/* ---- support ---- */
int32_t get_vlan_id_from_interface_name(const char *name, RipNetIf *key); /* 0 or -1 */
void handle_rip_show_interface(char *line);                               /* modifies the line */

FRRUCI_C_END

#endif
