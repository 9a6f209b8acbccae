/* SPDX-License-Identifier: Apache-2.0 */
/* Address, mask and number texts. */
#ifndef FRRUCI_COMMON_ADDRESS_H
#define FRRUCI_COMMON_ADDRESS_H

#include <stdint.h>

#include "c_interface.h"

FRRUCI_C_BEGIN

/* ---- address and number text helpers ---- */
/* an address value holds the first octet in its lowest-addressed byte */
int32_t IpStr2Int(const char *text, uint8_t *octets);             /* 0 / -1; four octets */
int32_t ipStrCheck(const char *text);                             /* 0 usable / 1 refused */
int32_t intIpToStrIp(char *out_text, uint32_t address_value);     /* 0 / -1; 16 characters */
int32_t maskStr2len(const char *mask_text, uint32_t *out_length); /* 0 / -1 */
int32_t mask_to_masklen(uint32_t mask_value);
uint32_t sw_ospf_inet_aton(const char *text);
char *rip_itoa(int32_t value, char *out_text, int32_t base); /* base 10 or 16, else null */
int32_t rip_atoi(const char *text);

FRRUCI_C_END

#endif
