// SPDX-License-Identifier: Apache-2.0
// The two words of rpcd's plugins.

#include "rpcd/rpcd.h"

#include "host/json.h"
#include "host/lock.h"
#include "host/secrets.h"
#include "host/streams.h"
#include "host/text.h"
#include "rpcd/methods.h"

namespace frruci::rpcd {

namespace {

using host::Status;

/// rpcd tells types by example.
Json exampleOf(Type type) {
    return type == Type::kText ? host::jsonText("") : host::jsonArray();
}

Status list() {
    Json all = host::jsonObject();
    for (const Method &method : methods()) {
        Json arguments = host::jsonObject();
        for (const Argument &argument : method.arguments) {
            if (argument.name != nullptr) {
                host::put(arguments, argument.name, exampleOf(argument.type));
            }
        }
        host::put(all, method.name, arguments);
    }
    host::printJson(all);
    return host::kAccepted;
}

/// What is no object is refused by rpcd. The reason is on standard error, for who tries by hand.
Status refuse() {
    host::printJson(host::jsonArray());
    return host::kWrongUsage;
}

Status answer(const Method &method, Json arguments) {
    host::printJson(method.answer(arguments));
    return host::kAccepted;
}

Status call(const char *name) {
    const Method *method = findMethod(name);
    if (method == nullptr) {
        host::complain("unknown method %s", name);
        return refuse();
    }
    host::Text text;
    text.addRest(host::in);
    Json arguments = readArguments(*method, text.get(), text.size());
    if (arguments == nullptr) {
        return refuse();
    }
    if (method->alone == host::Alone::kNo) {
        return answer(*method, arguments);
    }
    const host::Lock lock;
    return lock.isHeld() ? answer(*method, arguments) : host::kNotUsable;
}

} // namespace

Status rpcdVerb(int count, char **words) {
    if (host::keysAreShown()) {
        return host::wrongUsage("rpcd never shows keys");
    }
    if (count == 1 && host::equals(words[0], "list")) {
        return list();
    }
    if (count == 2 && host::equals(words[0], "call")) {
        return call(words[1]);
    }
    return host::wrongUsage("rpcd what? list, or call METHOD");
}

} // namespace frruci::rpcd
