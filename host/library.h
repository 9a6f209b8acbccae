/* SPDX-License-Identifier: Apache-2.0 */
/* The library, loaded at run time as a router's front-end host loads it. */
#ifndef FRRUCI_HOST_LIBRARY_H
#define FRRUCI_HOST_LIBRARY_H

namespace frruci::host {

/// Loads libfrruci.so (or the file named by FRRUCI_LIBRARY); says why on standard error when it
/// fails.
bool loadLibrary();

/// The address of an exported function, or null with a message when the library lacks it.
void *find(const char *name);

template <typename Function> Function *find(const char *name) {
    return reinterpret_cast<Function *>(find(name));
}

/// Readies the registries and models that handlers rely on: once a process, nothing is sent.
/// A protocol whose daemon answers on its socket counts as switched on.
bool prepare();

} // namespace frruci::host

#endif
