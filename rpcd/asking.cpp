// SPDX-License-Identifier: Apache-2.0
// Asks, and takes over what was answered.

#include "rpcd/asking.h"

#include "host/daemons.h"

namespace frruci::rpcd {

namespace {

constexpr int64_t kMilliseconds = 1000;

/// Null when it is missing or no number.
Json numberIn(Json from, const char *key) {
    Json value = host::member(from, key);
    return host::kindOf(value) == host::JsonKind::kNumber ? value : nullptr;
}

} // namespace

Asking::Asking(const char *daemon) : exchange_(daemon, host::shortPatience()) {
    host::Text answer;
    (void)exchange_.ask("enable", answer); // what fails here shows next
}

void Asking::text(const char *command, host::Text &answer) {
    if (exchange_.ask(command, answer) < 0) {
        answer.clear();
    }
}

Json Asking::json(const char *command) {
    host::Text answer;
    text(command, answer);
    return host::jsonOf(answer.get());
}

void putText(Json into, const char *name, Json from, const char *key) {
    const char *text = host::textOf(host::member(from, key));
    if (text != nullptr && *text != '\0') {
        host::put(into, name, text);
    }
}

void putNumber(Json into, const char *name, Json from, const char *key) {
    Json number = numberIn(from, key);
    if (number != nullptr) {
        host::put(into, name, host::numberOf(number));
    }
}

void putSeconds(Json into, const char *name, Json from, const char *key) {
    Json number = numberIn(from, key);
    if (number != nullptr) {
        host::put(into, name, host::numberOf(number) / kMilliseconds);
    }
}

} // namespace frruci::rpcd
