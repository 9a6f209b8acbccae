/* SPDX-License-Identifier: Apache-2.0 */
/* NHRP show, daemon start and store writes. */
#ifndef FRRUCI_NHRP_SW_NHRP_H
#define FRRUCI_NHRP_SW_NHRP_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

uint32_t swNhrpShow(uint16_t vrf, const char *what);

/* daemon start (number of running daemons, or the shell's status of the start command). */
int32_t nhrp_enable(void);

/* store writes; the store's status code. */
int32_t nhrp_set_interface(const char *ifname, int32_t flag);
int32_t nhrp_set_interface_config(const char *section, const char *option, const char *ifname,
                                  const char *value, int32_t enable);
int32_t nhrp_set_enable_config(const char *section, const char *option, const char *value,
                               int32_t enable);

FRRUCI_C_END

#endif
