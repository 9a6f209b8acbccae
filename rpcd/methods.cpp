// SPDX-License-Identifier: Apache-2.0
// The table of methods.

#include "rpcd/methods.h"

#include "apply/protocols.h"
#include "host/text.h"

namespace frruci::rpcd {

namespace {

using host::Alone;

bool isProtocol(const char *text) {
    return frruci::apply::findProtocol(text) != nullptr;
}

constexpr Argument kProtocols = {"protocols", Type::kTexts, false, isProtocol};
constexpr Argument kHandler = {"handler", Type::kText, true, nullptr};
constexpr Argument kWords = {"words", Type::kTexts, false, nullptr};

constexpr Method kMethods[] = {
    {"status",     Alone::kNo,  status,     {}                },
    {"neighbors",  Alone::kNo,  neighbors,  {}                },
    {"database",   Alone::kNo,  database,   {}                },
    {"interfaces", Alone::kNo,  interfaces, {}                },
    {"rip",        Alone::kNo,  rip,        {}                },
    {"nhrp_cache", Alone::kNo,  nhrpCache,  {}                },
    {"diff",       Alone::kNo,  diff,       {kProtocols}      },
    {"apply",      Alone::kYes, apply,      {kProtocols}      },
    {"doctor",     Alone::kNo,  doctor,     {}                },
    {"call",       Alone::kYes, call,       {kHandler, kWords}},
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
