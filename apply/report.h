/* SPDX-License-Identifier: Apache-2.0 */
/* What is said to people beside a verb's own output: on standard error, and in the system's log. */
#ifndef FRRUCI_APPLY_REPORT_H
#define FRRUCI_APPLY_REPORT_H

namespace frruci::apply {

/// One line, without its end.
void report(const char *format, ...) __attribute__((format(printf, 1, 2)));

/// From now on into the system's log, too.
void reportToLog();

} // namespace frruci::apply

#endif
