// SPDX-License-Identifier: Apache-2.0
// Loads a package, and keeps it in a rehearsal.

#include "common/store_reading.h"

#include <cstring>

#include "common/outside.h"
#include "common/store_commit.h"
#include "common/text.h"

namespace frruci::common {

namespace {

struct Kept {
    char name[32];
    uci_context *context;
    uci_package *package; ///< null while the place is free
};

/// A rehearsal reads one or two; more are loaded again each time.
Kept kept[4] = {};

/// Where the package is or can be kept; null when it cannot.
Kept *placeFor(const char *name) {
    if (strlen(name) >= sizeof Kept::name) {
        return nullptr;
    }
    for (Kept &place : kept) {
        if (place.package == nullptr || equals(place.name, name)) {
            return &place;
        }
    }
    return nullptr;
}

} // namespace

// libuci makes a context that ignores pending changes when memory runs out in the middle: a change
// saved with it would not be committed.
uci_context *newContext() {
    uci_context *context = uci_alloc_context();
    if (context != nullptr && context->delta_path.next == &context->delta_path) {
        uci_free_context(context);
        context = nullptr;
    }
    return context;
}

int32_t checked(int32_t code, const char *package) {
    if (code == UCI_ERR_MEM) {
        releaseLocks(package);
    }
    return code;
}

int32_t load(uci_context *context, const char *package, uci_package **loaded) {
    const ReadLock lock(package);
    return checked(uci_load(context, package, loaded), package);
}

Reading::Reading(const char *name, bool loadsAnyway) {
    Kept *const place = outside::isRehearsal() ? placeFor(name) : nullptr;
    if (place != nullptr && place->package != nullptr) {
        context = place->context;
        package = place->package;
        isKept_ = true;
        return;
    }
    context = newContext();
    result = context == nullptr && !loadsAnyway ? UCI_ERR_MEM : load(context, name, &package);
    if (place != nullptr && package != nullptr) {
        format(place->name, "%s", name);
        place->context = context;
        place->package = package;
        isKept_ = true;
    }
}

Reading::~Reading() {
    if (isKept_ || context == nullptr) {
        return;
    }
    if (package != nullptr) {
        (void)uci_unload(context, package); // fails for a null package only
    }
    uci_free_context(context);
}

void forgetReadings() {
    for (Kept &place : kept) {
        if (place.package != nullptr) {
            (void)uci_unload(place.context, place.package); // as above
            uci_free_context(place.context);
        }
        place = {};
    }
}

} // namespace frruci::common
