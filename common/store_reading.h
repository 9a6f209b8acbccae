/* SPDX-License-Identifier: Apache-2.0 */
/* Packages of the store as they are read. */
#ifndef FRRUCI_COMMON_STORE_READING_H
#define FRRUCI_COMMON_STORE_READING_H

#include <cstdint>

#include <uci.h>

namespace frruci::common {

/// Null without memory.
uci_context *newContext();

/// The code of a call of libuci; one that ran out of memory may have kept its locks.
int32_t checked(int32_t code, const char *package);

/// As uci_load, while nobody writes the package.
int32_t load(uci_context *context, const char *package, uci_package **loaded);

/// A package for as long as this lives. In a rehearsal it stays loaded until the observation ends:
/// a replay reads option by option, and nothing of what it does changes the store.
class Reading {
public:
    /// Libuci is asked to load it also without a context when loadsAnyway.
    explicit Reading(const char *name, bool loadsAnyway = false);
    ~Reading();
    Reading(const Reading &) = delete;
    Reading &operator=(const Reading &) = delete;

    int32_t result = 0; ///< libuci's code
    uci_context *context = nullptr;
    uci_package *package = nullptr; ///< null when it could not be loaded

private:
    bool isKept_ = false;
};

/// Releases what a rehearsal has loaded.
void forgetReadings();

} // namespace frruci::common

#endif
