/* SPDX-License-Identifier: Apache-2.0 */
/* Delivery of one OSPF command to ospfd. */
#ifndef FRRUCI_OSPF_VTY_OSPF_H
#define FRRUCI_OSPF_VTY_OSPF_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* ---- delivery to the daemon ---- */

uint32_t vtyOspfConfigOspf(uint32_t unused, const char *command, uint32_t selector);
uint32_t vtyOspfConfigInterface(uint32_t unused, uint32_t vlanId, const char *command);
uint32_t vtyOspfConfigNetwork(uint32_t unused, uint32_t vlanId, const char *command,
                              uint32_t selector);
uint32_t doVtyOspfConfigInterface(uint32_t unused, const char *interfaceName, uint32_t unused2,
                                  const char *command);
uint32_t vtyOspfShowOspf(uint32_t unused, const char *command, char *reply /* 512 bytes */,
                         uint32_t selector);
uint32_t vtyPrint(const char *command, const char *socketPath, uint32_t kind, uint32_t selector,
                  int32_t extra);

FRRUCI_C_END

#endif
