/* SPDX-License-Identifier: Apache-2.0 */
/* Delivery of one command to nhrpd or zebra; the cache stream. */
#ifndef FRRUCI_NHRP_VTY_NHRP_H
#define FRRUCI_NHRP_VTY_NHRP_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* delivery of one command in its context; 0 success, 1 any failure.
   doVtyNhrpEnable accepts a null command (it stops after "enable"). */
uint32_t doVtyNhrpEnable(uint16_t vrf, const char *command);
uint32_t doVtyNhrpConfig(uint16_t vrf, const char *command);
uint32_t doVtyNhrpConfigInterface(uint16_t vrf, const char *ifname, const char *command);
uint32_t doVtyZebraConfigInterface(uint16_t vrf, const char *ifname, const char *command);

/* cache display. vtyNhrpPrint answers 0xFFFFFFFF when it cannot connect. */
uint32_t frrVtyNhrpPrint(int32_t fd, const char *command);
uint32_t vtyNhrpPrint(const char *command, const char *socket_path);

FRRUCI_C_END

#endif
