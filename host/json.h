/* SPDX-License-Identifier: Apache-2.0 */
/* Tells a whole JSON text from one that was cut. */
#ifndef FRRUCI_HOST_JSON_H
#define FRRUCI_HOST_JSON_H

namespace frruci::host {

/// True for exactly one complete JSON value, blanks around it allowed.
bool isCompleteJson(const char *text);

} // namespace frruci::host

#endif
