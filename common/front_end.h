/* SPDX-License-Identifier: Apache-2.0 */
/* Front-end plumbing: log line, reply pipe, shell-safety check, and the VLAN and address questions
 * that the front-end's Lua modules answer. */
#ifndef FRRUCI_COMMON_FRONT_END_H
#define FRRUCI_COMMON_FRONT_END_H

#include <stdint.h>

#include "c_interface.h"

FRRUCI_C_BEGIN

/* Appends one message to /tmp/tmp/data: printf-style, at most 511 characters, nothing added. By
 * convention a format begins with "source:%d: ", the caller's line number, and ends in a newline.
 * The messages hold the keys of the routing protocols: the file is made for its owner alone (0600).
 * It is opened and closed in every call, so it may be rotated at any time; the program moves a log
 * of more than 512 KiB to data.1. Where it cannot be opened, or is a link, a pipe or anything else
 * than a plain file, the message is dropped; no call waits.
 * Result: no meaning. */
int32_t record_log_act(const char *format, ...) __attribute__((format(printf, 1, 2)));

/* Writes text (its characters, no NUL, no newline) into the named pipe at path in one write. The
 * pipe must exist; it is opened for writing only, neither created nor truncated, and the open waits
 * until a reader is there. A plain file in its place is written to; a link is not followed. A null
 * text is an empty one; a null path cannot be opened. SIGPIPE is held back meanwhile.
 * Result: 0 when written and closed; the open's negative result when path cannot be opened. */
int32_t write_pipe_to_lua(const char *text, const char *path);

/* Tells whether text may stand inside a shell command. Refused characters: | " $ & ' ( ) ; < > [ \
 * and the backquote. Everything else is accepted, spaces and newlines included.
 * Result: 1 safe, also for null and for the empty text; 0 not. */
int32_t check_safe_string(const char *text);

/* Asks the front-end whether VLAN id vid is a LAN VLAN (eth0.<vid>). Runs lua through the shell and
 * reads the number that it leaves in /tmp/cli_vid; a link or a pipe in that place is no answer.
 * Result: that number, non-zero for a LAN VLAN; 0 when the file cannot be opened or holds no
 * number. */
int32_t sw_is_lan_vid(int32_t vid);

/* Asks the front-end whether VLAN id vid is a WAN VLAN (eth1.<vid>), as sw_is_lan_vid does.
 * Result: the number, non-zero for a WAN VLAN; 1, not 0, when the file cannot be opened. */
int32_t sw_is_wan_vid(int32_t vid);

/* Tells whether the dotted address ip_text may be used as a LAN network address: asks the front-end
 * (answer files /tmp/cli_ipaddr and /tmp/cli_vid; a link or a pipe in their place is no answer)
 * and compares with the router's own addresses. A text with characters that check_safe_string
 * refuses is not asked about: a line on standard output says so and an older answer counts.
 * Result: 0 usable; 1 a WAN address or one of the router's own; -1 in no LAN VLAN, or no answer. */
int32_t check_network_ip(const char *ip_text);

FRRUCI_C_END

#endif
