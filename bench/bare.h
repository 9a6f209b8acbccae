/* SPDX-License-Identifier: Apache-2.0 */
/* The floor that frruci is measured against: the same exchanges and log lines in a bare C loop. */
#ifndef FRRUCI_BENCH_BARE_H
#define FRRUCI_BENCH_BARE_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Opens a session at path, sends the commands in order, each with one log line before it, and
 * closes the session. Result: 0, or -1 when anything failed or the daemon refused. */
int bareDeliver(const char *path, const char *const *commands, size_t count);

#ifdef __cplusplus
}
#endif

#endif
