/* SPDX-License-Identifier: Apache-2.0 */
/* What LeakSanitizer must not report: lists that were handed to dlistDestroy, which releases
 * nothing, and the OSPF model, which lives as long as the process. Whatever these hold is left out
 * with them. */

__attribute__((visibility("default"))) const char *__lsan_default_suppressions(void);

const char *__lsan_default_suppressions(void) {
    return "leak:dlistCreate\nleak:ucOspfInit\n";
}
