/* SPDX-License-Identifier: Apache-2.0 */
/* What of the library this room calls. */
#ifndef FRRUCI_APPLY_LIBRARY_H
#define FRRUCI_APPLY_LIBRARY_H

#include <cstdint>

struct FrruciObserver;
struct uci_context;
struct uci_section;

namespace frruci::apply {

/// Functions of the library, each by its exported name.
struct Library {
    int32_t (*observe)(const FrruciObserver *);
    int32_t (*get)(const char *, const char *, const char *, char *, uint16_t);
    void (*forEachSection)(const char *, const char *, int32_t (*)(uci_context *, uci_section *));
    const char *(*optionText)(uci_context *, uci_section *, const char *);
    int32_t (*replayOspf)();
    void (*replayRip)();
    int32_t (*prepareFolders)();
    int32_t (*startZebra)();
    int32_t (*startOspf)(const char *);
    void (*startRip)();
    int32_t (*processes)(const char *, int32_t);
    void (*switchOspf)(int32_t, char **);
    void (*switchRip)(int32_t, char **);
    uint32_t (*beginViews)();
    uint32_t (*beginRip)();
    uint32_t (*beginOspf)();

    /// Registries and models, as a process needs them that runs requests.
    bool begin() const;
};

/// The library; ready() first.
const Library &library();

/// Loads the library and finds all of it; says why on standard error when it cannot.
bool ready();

} // namespace frruci::apply

#endif
