// SPDX-License-Identifier: Apache-2.0
// The table of methods.

#include "rpcd/methods.h"

#include "apply/protocols.h"
#include "host/text.h"

namespace frruci::rpcd {

namespace {

bool isProtocol(const char *text) {
    return frruci::apply::findProtocol(text) != nullptr;
}

constexpr Argument kProtocols = {"protocols", Type::kTexts, false, isProtocol};
constexpr Argument kHandler = {"handler", Type::kText, true, nullptr};
constexpr Argument kWords = {"words", Type::kTexts, false, nullptr};

constexpr Method kMethods[] = {
    {"status",     false, status,     {}                },
    {"neighbors",  false, neighbors,  {}                },
    {"database",   false, database,   {}                },
    {"interfaces", false, interfaces, {}                },
    {"rip",        false, rip,        {}                },
    {"nhrp_cache", false, nhrpCache,  {}                },
    {"diff",       false, diff,       {kProtocols}      },
    {"apply",      true,  apply,      {kProtocols}      },
    {"doctor",     false, doctor,     {}                },
    {"call",       true,  call,       {kHandler, kWords}},
};

} // namespace

std::span<const Method> methods() {
    return kMethods;
}

const Method *findMethod(const char *name) {
    for (const Method &method : kMethods) {
        if (host::equals(method.name, name)) {
            return &method;
        }
    }
    return nullptr;
}

} // namespace frruci::rpcd
