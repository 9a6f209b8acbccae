/* SPDX-License-Identifier: Apache-2.0 */
/* NHRP command builders and front-end handlers. */
#ifndef FRRUCI_NHRP_FRR_NHRP_H
#define FRRUCI_NHRP_FRR_NHRP_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* interface-level command builders (vrf, tunnel interface, values).
   Each writes the store, sends one command, and answers 0 (accepted) or 1 (connection, context or
   command failed). */
uint32_t nhrp_ip_nhrp(uint16_t vrf, const char *ifname, const char *word);
uint32_t nhrp_no_ip_nhrp(uint16_t vrf, const char *ifname, const char *word);
uint32_t nhrp_ip_address(uint16_t vrf, const char *ifname, const char *address);
uint32_t no_nhrp_ip_address(uint16_t vrf, const char *ifname, const char *address);
uint32_t nhrp_ip_nhrp_network(uint16_t vrf, const char *ifname, const char *id);
uint32_t nhrp_ip_nhrp_registration(uint16_t vrf, const char *ifname);
uint32_t nhrp_ip_nhrp_nhs_nbma(uint16_t vrf, const char *ifname, const char *nbma);
uint32_t nhrp_no_ip_nhrp_nhs_nbma(uint16_t vrf, const char *ifname, const char *nbma);
uint32_t nhrp_ip_nhrp_map_multicast(uint16_t vrf, const char *ifname, const char *address);
uint32_t nhrp_no_ip_nhrp_map_multicast(uint16_t vrf, const char *ifname, const char *address);
uint32_t nhrp_tunnel_profile(uint16_t vrf, const char *ifname, const char *profile);
uint32_t nhrp_tunnel_source(uint16_t vrf, const char *ifname, const char *source);
uint32_t nhrp_tunnel_spoke_link(uint16_t vrf, const char *ifname, const char *first,
                                const char *second);
uint32_t nhrp_tunnel_set_spoke_link(uint16_t vrf, const char *ifname, const char *first,
                                    const char *second);
uint32_t nhrp_no_tunnel_spoke_link(uint16_t vrf, const char *ifname, const char *first,
                                   const char *second);
uint32_t nhrp_no_link_detect(uint16_t vrf, const char *ifname);

/* global command builders (vrf, NFLOG group text). */
uint32_t nhrp_nflog(uint16_t vrf, const char *group);
uint32_t multicast_nhrp_nflog(uint16_t vrf, const char *group);

/* front-end handlers. */
void process_nhrp_interface(int32_t argc, char **argv);
void process_nhrp_global(int32_t argc, char **argv);
void process_nhrp_show(int32_t argc, char **argv);

FRRUCI_C_END

#endif
