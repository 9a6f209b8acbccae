/* SPDX-License-Identifier: Apache-2.0 */
/* Answers for programs. Built by json-c; a build without it has no --json. */
#ifndef FRRUCI_HOST_JSON_H
#define FRRUCI_HOST_JSON_H

#include <cstdint>

struct json_object;

namespace frruci::host {

using Json = json_object *;

/// For --json; false when this build has none.
bool wantJson();
bool wantsJson();

Json jsonObject();
Json jsonArray();
Json jsonText(const char *text);
/// What a daemon answered in JSON; null when it is not whole.
Json jsonOf(const char *text);

/// The object or array takes the value over.
void put(Json object, const char *key, Json value);
void put(Json object, const char *key, const char *text);
void put(Json object, const char *key, int64_t number);
void append(Json array, Json value);

/// Prints the value on out, and gives it up.
void printJson(Json value);

} // namespace frruci::host

#endif
