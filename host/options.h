/* SPDX-License-Identifier: Apache-2.0 */
/* The options that every verb takes. */
#ifndef FRRUCI_HOST_OPTIONS_H
#define FRRUCI_HOST_OPTIONS_H

#include <cstddef>

namespace frruci::host {

struct Option {
    const char *name;
    const char *value; ///< for people; null for none
    const char *does;
};

extern const Option kOptions[];
extern const std::size_t kOptionCount;

/// Takes the options off the front of the words, or out of all of them. False when one is wrong,
/// which has been said.
bool takeOptions(int &count, char **&words, bool everywhere);

} // namespace frruci::host

#endif
