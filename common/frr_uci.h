/* SPDX-License-Identifier: Apache-2.0 */
/* Access to the UCI store. */
#ifndef FRRUCI_COMMON_FRR_UCI_H
#define FRRUCI_COMMON_FRR_UCI_H

#include <stdint.h>

#include "c_interface.h"

FRRUCI_C_BEGIN

/* ---- UCI store access ---- */
struct uci_context; /* libuci's own records */
struct uci_section;
typedef int32_t (*frr_uci_section_visitor)(struct uci_context *ctx,
                                           struct uci_section *section); /* result ignored */

int32_t frr_uci_set(const char *package, const char *section, const char *option,
                    const char *value);
int32_t frr_uci_get(const char *package, const char *section, const char *option, char *out,
                    uint16_t out_size);
int32_t frr_uci_add_section(const char *package, const char *name, const char *type);
void frr_uci_foreach_section(const char *package, const char *type,
                             frr_uci_section_visitor visitor);
int32_t frr_uci_init(void);

FRRUCI_C_END

#endif
