// SPDX-License-Identifier: Apache-2.0
// Holds a call's arguments against the table.

#include <cstring>

#include "host/streams.h"
#include "rpcd/methods.h"

namespace frruci::rpcd {

namespace {

using host::JsonKind;

// uhttpd adds it to every call that comes over HTTP.
constexpr const char *kSession = "ubus_rpc_session";

bool isText(const Argument &argument, Json value) {
    const char *text = host::textOf(value);
    return text != nullptr && (argument.fits == nullptr || argument.fits(text));
}

/// An empty list could be meant as all or as none, so it is neither.
bool areTexts(const Argument &argument, Json value) {
    bool fit = host::kindOf(value) == JsonKind::kArray;
    int count = 0;
    if (fit) {
        host::forEach(value, [&](const char *, Json item) {
            fit = fit && isText(argument, item);
            ++count;
        });
    }
    return fit && (count > 0 || argument.fits == nullptr);
}

bool isGood(const Argument &argument, Json value) {
    return argument.type == Type::kText ? isText(argument, value) : areTexts(argument, value);
}

const Argument *findArgument(const Method &method, const char *name) {
    for (const Argument &argument : method.arguments) {
        if (argument.name != nullptr && strcmp(argument.name, name) == 0) {
            return &argument;
        }
    }
    return nullptr;
}

} // namespace

Json readArguments(const Method &method, const char *text, std::size_t size) {
    Json given = host::jsonOfRequest(text, size);
    if (host::kindOf(given) != JsonKind::kObject) {
        host::complain("%s: the arguments are no JSON object", method.name);
        return nullptr;
    }
    bool good = true;
    host::forEach(given, [&](const char *name, Json value) {
        const Argument *argument = findArgument(method, name);
        if (strcmp(name, kSession) != 0 && (argument == nullptr || !isGood(*argument, value))) {
            host::complain("%s: the argument %s is %s", method.name, name,
                           argument == nullptr ? "not known" : "not as it should be");
            good = false;
        }
    });
    for (const Argument &argument : method.arguments) {
        if (argument.isNeeded && host::member(given, argument.name) == nullptr) {
            host::complain("%s: the argument %s is missing", method.name, argument.name);
            good = false;
        }
    }
    return good ? given : nullptr;
}

} // namespace frruci::rpcd
