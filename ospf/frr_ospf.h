/* SPDX-License-Identifier: Apache-2.0 */
/* OSPF front-end handlers, status display and report. */
#ifndef FRRUCI_OSPF_FRR_OSPF_H
#define FRRUCI_OSPF_FRR_OSPF_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* interface-command builders. vrf: not used in the command; wan: passed on and ignored; enable:
 * non-zero for the setting, 0 for its "no" form. Result: 0 accepted, 1 connection, context or
 * command failed. */
uint32_t ip_ospf_cost(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable, int32_t cost);
uint32_t ip_ospf_retransmit(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                            int32_t seconds);
uint32_t ip_ospf_transmit(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          int32_t seconds);
uint32_t ip_ospf_priority(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          int32_t priority);
uint32_t ip_ospf_hello(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                       int32_t seconds);
uint32_t ip_ospf_dead(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                      int32_t seconds);
/* code above 2: 0xFFFFFFFF and nothing is sent, enabled or not */
uint32_t ip_ospf_network_type(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                              uint32_t code);
uint32_t ip_ospf_mtu_ignore(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable);
uint32_t ip_ospf_passive(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable);
/* type 0 null, 1 simple password, 2 message digest; any other type sends an empty command */
uint32_t ip_ospf_auth(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable, int32_t type);
uint32_t ip_ospf_auth_key(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          const char *password);
uint32_t ip_ospf_auth_md5key(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                             int32_t key_id, const char *key);

/* set handlers, called with the front-end's argument vector */
void process_ospf_global(int32_t argc, char **argv);
void process_ospf_network(int32_t argc, char **argv);
void process_ospf_interface(int32_t argc, char **argv);
void process_ospf_advertise_cfg(int32_t argc, char **argv);
void process_ospf_ospf_cfg(int32_t argc, char **argv);

/* show triggers; rows and the closing "ok" go to the display pipes */
void process_ospf_neighbor(void);
void process_ospf_lsdb(void);

/* database request of swOspfShowOspfDatabase */
typedef struct OspfDatabaseRequest {
    const char *lsa_type; /* may be null */
    char link_state_id[64];
    char adv_router[64];
    uint32_t has_link_state_id;
    uint32_t has_adv_router;
    uint32_t self_originate;
} OspfDatabaseRequest;

/* show commands; 0 success, 1 failure. mode: 1 OSPF line handlers, 0 RIP line handler */
int32_t swOspfShowOspf(uint16_t vrf, const char *what, int32_t mode);
int32_t swOspfShowOspfDatabase(uint16_t vrf, const OspfDatabaseRequest *request);

/* line handlers; line lies in writable memory of at least 257 bytes. kind: 1 interface, 2 neighbor,
 * 3 database; arg: 1 WAN pass, 0 LAN pass */
void handle_ospf_show(char *line, uint32_t kind, uint32_t arg);
void handle_ospf_show_interface(char *line);
void handle_ospf_show_neighbor(char *line);
void handle_ospf_show_database(char *line, uint32_t arg);

/* report of the whole OSPF model on standard output, and its exported wrapper */
void ucOspfShowConfig(void);
void swShowOspfConfig(void);

FRRUCI_C_END

#endif
