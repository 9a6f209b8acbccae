/* SPDX-License-Identifier: Apache-2.0 */
/* Sessions on a daemon's vty socket, and one command exchanged over them. With it come views
 * (views.h) and what runs once at start (startup.h).
 *
 * On the wire a command is its characters and one NUL; the answer is the command's output, three
 * NULs, and one completion code: 0 success, 1 warning, 2 no such command, 3 ambiguous command,
 * others as the daemon has them. A session is a plain descriptor, 1 or greater; it belongs to the
 * caller, and no function here closes it on failure. */
#ifndef FRRUCI_VTY_FRR_UTIL_H
#define FRRUCI_VTY_FRR_UTIL_H

#include <stdint.h>

#include "../common/c_interface.h"
#include "startup.h"
#include "views.h"

FRRUCI_C_BEGIN

/* Connects to the vty socket at path (at most 107 characters) and stores the descriptor in out_fd;
 * out_fd stays untouched on failure.
 * Result: 0 connected; 1 out_fd is null; -1 the connection failed (the socket that was tried is not
 * closed). */
int32_t frrVtyConnect(const char *path, int32_t *out_fd);

/* Closes a session.
 * Result: 0 closed; 1 fd is below 1. */
int32_t frrVtyDisconnect(int32_t fd);

/* Logs cmd, sends it and takes its answer in one receive of at most reply_size bytes. For
 * configuration commands, whose answers are short. Output text is printed to standard output.
 * reply: the caller's buffer of reply_size bytes (512 by convention, at least 4), zeroed once
 * before a sequence of exchanges. out_code gets the completion code whenever one was read.
 * Result:
 *   0       success
 *   1       fd below 1, a null buffer or reply_size below 4; or the daemon's warning
 *   -1      the send failed, fewer than 4 bytes came, the code lies outside the buffer or is 2 or 3
 *   others  the completion code as it is */
int32_t frrVtyRun(int32_t fd, const char *cmd, uint8_t *out_code, char *reply, int32_t reply_size);

/* Sends a "show" command and streams its output: each line is printed and, ending in CR LF, handed
 * to the line handler that mode chooses: 0 handle_rip_show_interface, 1 handle_ospf_show (which
 * gets show_kind and show_arg), others none. Reads until the end marker comes, also past an end of
 * stream, where it pauses 10 ms after each receive that brought nothing.
 * Result: 0 success; 1 fd below 1, out_code null, send failed, code byte lost, or code 1, 2 or 3;
 * any other completion code as it is. */
int32_t frrVtyPrint(int32_t fd, const char *cmd, uint8_t *out_code, uint32_t show_kind,
                    uint32_t show_arg, int32_t mode);

FRRUCI_C_END

#endif
