/* SPDX-License-Identifier: Apache-2.0 */
/* The methods of the ubus object: one table for the list, the checks and the calls. */
#ifndef FRRUCI_RPCD_METHODS_H
#define FRRUCI_RPCD_METHODS_H

#include <span>

#include "host/json.h"
#include "host/verbs.h"

namespace frruci::rpcd {

using host::Json;

enum class Type { kText, kTexts };

struct Argument {
    const char *name; ///< null after the last one
    Type type;
    bool isNeeded;
    bool (*fits)(const char *text); ///< each text; null for any
};

inline constexpr int kMostArguments = 2;

struct Method {
    const char *name;
    host::Alone alone;
    Json (*answer)(Json arguments);
    Argument arguments[kMostArguments];
};

std::span<const Method> methods();

/// Null for a name that is none.
const Method *findMethod(const char *name);

/// An object of arguments for the method, from its JSON text. Null, and said on err why, when the
/// text is no object, or has an argument that the method does not know or of another type, or
/// lacks one.
Json readArguments(const Method &method, const char *text, std::size_t size);

// Each answers with an object. The arguments fit the method.
Json status(Json arguments);
Json neighbors(Json arguments);
Json database(Json arguments);
Json interfaces(Json arguments);
Json rip(Json arguments);
Json nhrpCache(Json arguments);
Json diff(Json arguments);
Json apply(Json arguments);
Json doctor(Json arguments);
Json call(Json arguments);

} // namespace frruci::rpcd

#endif
