/* SPDX-License-Identifier: Apache-2.0 */
/* Access to the UCI store.
 *
 * package is a package name, such as "ospf", or a file path that begins with "/", such as
 * "/etc/config/nhrp"; the path's file is read and written without libuci's pending changes. Every
 * call opens a libuci context of its own, reads the whole package, and releases both before it
 * returns: nothing is cached, but that a rehearsal reads a package once. Results are libuci's
 * codes: 0 success, 1 out of memory, 2 invalid argument, 3 not found, 4 input/output error, 5
 * malformed file, 6 duplicate, 7 unknown. */
#ifndef FRRUCI_COMMON_FRR_UCI_H
#define FRRUCI_COMMON_FRR_UCI_H

#include <stdint.h>

#include "c_interface.h"

FRRUCI_C_BEGIN

struct uci_context; /* libuci's own records */
struct uci_section;

/* Called with libuci's context and one section, both valid only during the call. The visitor may
 * read the section's options. Its result is ignored. */
typedef int32_t (*frr_uci_section_visitor)(struct uci_context *ctx, struct uci_section *section);

/* Sets one option and commits. The section must exist. A null option sets the section's type, and
 * adds the section where it is missing; an empty value removes the option (or section). A name or
 * value that libuci's pending changes cannot carry (letters, digits and underscore in names, no
 * control characters in values) gives 0 and is not stored, except in a package named by path.
 * With any result the file is the old one or the whole new one, and what was pending is in the file
 * or still pending. After a result other than 0 the change itself may be pending by name: the next
 * commit of that package stores it.
 * Result:
 *   0  stored
 *   1  no context or memory
 *   2  the section is missing, or package or value is null
 *   3  no such package
 *   4  the file or the pending change cannot be opened, locked or written as a whole
 *   5  the file is malformed */
int32_t frr_uci_set(const char *package, const char *section, const char *option,
                    const char *value);

/* Reads one option as text into out, a buffer of out_size bytes: first filled with zeros, then at
 * most out_size - 1 characters of the value. Callers use 64 bytes.
 * Result:
 *   0  read, also when cut
 *   1  no context or memory
 *   2  a bad package name
 *   3  no such package, section or option, or the option is a list
 *   4  the file cannot be opened or locked
 *   5  the file is malformed */
int32_t frr_uci_get(const char *package, const char *section, const char *option, char *out,
                    uint16_t out_size);

/* Adds an anonymous section of the given type at the end of package and commits. name overwrites
 * only the first characters of the section's made-up name in memory: it is not stored. Logs a
 * failure to load or to add; failures to save and commit are not reported.
 * Result:
 *   0       added
 *   1       no context or memory
 *   2       type is null
 *   3       package cannot be loaded, for whatever reason
 *   others  libuci's code as it is */
int32_t frr_uci_add_section(const char *package, const char *name, const char *type);

/* Calls visitor for every section of package whose type equals type exactly, in file order.
 * Visits nothing when the package cannot be loaded. */
void frr_uci_foreach_section(const char *package, const char *type,
                             frr_uci_section_visitor visitor);

/* Puts the start-up values and sections into packages "iptv" and "ospf": sets iptv.iptv.handle_time
 * to 20, ospf.global.enable and ospf.global2.enable to en, and adds four sections of types abc and
 * abc2. Each failure is logged and the next step taken. Nothing in the library calls it.
 * Result: the code of the last step, the section of type abc2 in ospf. */
int32_t frr_uci_init(void);

FRRUCI_C_END

#endif
