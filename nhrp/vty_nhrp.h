/* SPDX-License-Identifier: Apache-2.0 */
/* Delivery of one command to nhrpd or zebra, and the stream of the NHRP cache.
 *
 * Every function here opens a session of its own, sends its steps in order, each only after the one
 * before it was answered with completion code 0, and closes the session whatever happened. Nothing
 * is retried. Texts are sent as they are: the daemon's refusal is the only check. */
#ifndef FRRUCI_NHRP_VTY_NHRP_H
#define FRRUCI_NHRP_VTY_NHRP_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* Sends "enable" and command to nhrpd (/var/nhrpd.vty).
 * vrf: ignored. command: one command line without newline; null stops after "enable".
 * Result: 0 the daemon accepted every step; 1 no connection, or a step failed. */
uint32_t doVtyNhrpEnable(uint16_t vrf, const char *command);

/* Sends "enable", "configure" and command to nhrpd.
 * vrf: ignored. command: one command line without newline.
 * Result: 0 the daemon accepted every step; 1 no connection, a step failed, or command is null
 * (nothing is sent then). */
uint32_t doVtyNhrpConfig(uint16_t vrf, const char *command);

/* Sends "enable", "configure", "interface <ifname>" and command to nhrpd. The interface line is cut
 * at 255 characters.
 * vrf: ignored. ifname: the tunnel interface. command: one command line without newline.
 * Result: 0 the daemon accepted every step; 1 no connection, a step failed, or a text is null
 * (nothing is sent then). */
uint32_t doVtyNhrpConfigInterface(uint16_t vrf, const char *ifname, const char *command);

/* The same for zebra (/var/zebra.vty), which owns addresses and link detection.
 * Result: as doVtyNhrpConfigInterface. */
uint32_t doVtyZebraConfigInterface(uint16_t vrf, const char *ifname, const char *command);

/* Sends command over the open session fd and streams the answer into the named pipe
 * /tmp/tmp/nhrp_pipe_c2lua_cache. The answer is read in chunks of at most 256 bytes. Of each chunk
 * the bytes up to its first NUL are written in one write (an empty chunk too), without spaces,
 * backspaces, tabs and line feeds, also those inside JSON texts; carriage returns stay. The first
 * read that does not bring exactly 256 bytes is the last one, so an answer whose bytes, end marker
 * and completion code included, are a multiple of 256 is followed by a read that waits until the
 * daemon sends more or hangs up. The completion code is ignored.
 * fd: a session, 1 or greater; it stays open. command: may be empty.
 * Result: 0 sent and read; 1 fd is below 1, command is null, or the send failed. */
uint32_t frrVtyNhrpPrint(int32_t fd, const char *command);

/* Opens a session on the daemon at socket_path (at most 107 characters), sends "enable", and
 * streams the answer to command as frrVtyNhrpPrint does.
 * Result: 0 success; 0xFFFFFFFF the connection could not be made; 1 any other failure. */
uint32_t vtyNhrpPrint(const char *command, const char *socket_path);

FRRUCI_C_END

#endif
