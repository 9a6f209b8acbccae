/* SPDX-License-Identifier: Apache-2.0 */
/* Address, mask and number texts. Every function has an acceptance rule of its own, and they
 * differ: each handler refuses what its own function refuses.
 *
 * A dotted quad is four numbers of at most 255, leading zeros allowed, with exactly three dots
 * between them and nothing else; two dots in a row and a dot at the end are refused, a dot at the
 * very start stands for a first octet of 0. An address value holds the first octet in its
 * lowest-addressed byte. */
#ifndef FRRUCI_COMMON_ADDRESS_H
#define FRRUCI_COMMON_ADDRESS_H

#include <stdint.h>

#include "c_interface.h"

FRRUCI_C_BEGIN

/* Reads a dotted quad into octets, four bytes, first octet first. Only the low byte of the text's
 * length is looked at, and refused above 16. Octets are stored as they are read: a refused text may
 * leave the earlier ones changed.
 * Result: 0 read; -1 refused, also a null text or null octets. */
int32_t IpStr2Int(const char *text, uint8_t *octets);

/* Tells whether text is a usable host address: a dotted quad of 7 to 15 characters whose first
 * octet is 1 to 223 and not 127. The last octet may be anything, 0 and 255 included.
 * Result: 0 usable; 1 refused, also a null text. */
int32_t ipStrCheck(const char *text);

/* Writes the address as a dotted quad into out_text, which holds 16 characters.
 * Result: 0 written; -1 out_text is null. */
int32_t intIpToStrIp(char *out_text, uint32_t address_value);

/* Prefix length of a dotted mask, 0 to 32. Only the trailing zero bits are looked at: 255.0.255.0
 * gives 24. The text follows the rules of IpStr2Int.
 * Result: 0 and *out_length set; -1 and *out_length 0 when the text is refused; -1 and nothing
 * touched when a pointer is null. */
int32_t maskStr2len(const char *mask_text, uint32_t *out_length);

/* Prefix length of a mask given as an address value. A mask whose top bit is clear is taken as a
 * wildcard mask and inverted first: 0.0.0.255 gives 24, and 0.0.0.0 gives 32.
 * Result: the length, 1 to 32. */
int32_t mask_to_masklen(uint32_t mask_value);

/* The address value of a text as inet_aton reads it, its short, octal and hexadecimal forms
 * included. Callers check the text beforehand.
 * Result: the value; 0 for a null text. For a text that inet_aton refuses it has no meaning. */
uint32_t sw_ospf_inet_aton(const char *text);

/* Writes value into out_text, at most 11 characters and a NUL: base 10 as "%d", base 16 as "%x".
 * Result: out_text; null, and out_text untouched, for any other base or a null out_text. */
char *rip_itoa(int32_t value, char *out_text, int32_t base);

/* Reads the decimal number at the start of text; leading white space and a sign are allowed, what
 * follows the digits is ignored.
 * Result: the number; 0 when there is none, or text is null. */
int32_t rip_atoi(const char *text);

FRRUCI_C_END

#endif
