// SPDX-License-Identifier: Apache-2.0
// NHRP's cache.

#include "host/text.h"
#include "rpcd/asking.h"
#include "rpcd/methods.h"

namespace frruci::rpcd {

namespace {

/// A flag of an entry, and its letter in the daemon's own table.
struct Flag {
    const char *name;
    char letter;
};

constexpr Flag kFlags[] = {
    {"used",    'U'},
    {"timeout", 'T'},
    {"auth",    'A'},
};

void putFlags(Json into, Json entry) {
    host::Text letters;
    for (const Flag &flag : kFlags) {
        if (host::isTrue(host::member(entry, flag.name))) {
            letters.add(&flag.letter, 1);
        }
    }
    if (letters.size() > 0) {
        host::put(into, "flags", letters.get());
    }
}

/// The daemon writes a word in brackets, or a line, for an address that is not known.
void putAddress(Json into, const char *name, Json entry) {
    const char *text = host::textOf(host::member(entry, name));
    if (text != nullptr && *text != '-' && *text != '(') {
        host::put(into, name, text);
    }
}

Json entryOf(Json entry) {
    Json result = host::jsonObject();
    putText(result, "interface", entry, "interface");
    putText(result, "type", entry, "type");
    putAddress(result, "protocol", entry);
    putAddress(result, "nbma", entry);
    putFlags(result, entry);
    putText(result, "identity", entry, "identity");
    return result;
}

} // namespace

Json nhrpCache(Json /*arguments*/) {
    Asking daemon("nhrpd");
    Json answer = host::jsonObject();
    Json entries = host::jsonArray();
    Json shown = daemon.json("show ip nhrp cache json");
    host::forEach(host::member(shown, "table"),
                  [&](const char *, Json entry) { host::append(entries, entryOf(entry)); });
    host::putFlag(answer, "running", daemon.runs());
    host::put(answer, "entries", entries);
    return answer;
}

} // namespace frruci::rpcd
