/* SPDX-License-Identifier: Apache-2.0 */
/* Daemon processes: find and kill them, and start zebra. All protocols use these. */
#ifndef FRRUCI_OSPF_FRR_OSPF_PROCESS_H
#define FRRUCI_OSPF_FRR_OSPF_PROCESS_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* Counts the processes whose line in the output of "ps -w" contains name, and kills each (see
 * kill_process) where kill_flag is not 0. name is matched as grep does, so "ospfd" also counts a
 * process that only has the word among its arguments. The part of a line after its 511th character
 * is dropped. Logs the start of the listing and every line.
 * A name that check_safe_string refuses is not looked for: one line on standard output says so.
 * Result: the number of lines; 0 when there are none, name is refused or null, or the listing
 * cannot be started. */
int32_t process_exist(const char *name, int32_t kill_flag);

/* Sends signal 9 to the process whose id is the first space-separated field of ps_line, one line of
 * "ps -w". Nothing is killed when there is no field or the id is below 1. Logs the field and the
 * id. The line is changed: its first field is cut off by a NUL.
 * Result: 0, of no meaning. */
int32_t kill_process(char *ps_line);

/* Starts zebra ("zebra -d ") and waits 1 second; does neither when process_exist finds a zebra.
 * Logs which of the two it was.
 * Result: 0, of no meaning. */
int32_t zebra_enable(void);

FRRUCI_C_END

#endif
