/* SPDX-License-Identifier: Apache-2.0 */
/* Answers for programs. Built by json-c; a build without it has no --json. */
#ifndef FRRUCI_HOST_JSON_H
#define FRRUCI_HOST_JSON_H

#include <cstddef>
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
void putFlag(Json object, const char *key, bool flag);
void append(Json array, Json value);

/// A request's text, which may have nothing but spaces after its value; null for anything else.
Json jsonOfRequest(const char *text, std::size_t size);

enum class JsonKind { kObject, kArray, kText, kNumber, kOther };

/// kOther for null, too.
JsonKind kindOf(Json value);
/// Null for what is no object or has no such member.
Json member(Json object, const char *key);
/// Null for what is no text.
const char *textOf(Json value);
/// 0 for what is no number.
int64_t numberOf(Json value);
bool isTrue(Json value);

/// Hears of each member of an object with its name, and of each item of an array with an empty one;
/// of nothing for other values.
void visit(Json value, void (*hear)(const char *name, Json item, void *context), void *context);

template <typename Hear> void forEach(Json value, Hear hear) {
    visit(
        value,
        [](const char *name, Json item, void *context) {
            (*static_cast<Hear *>(context))(name, item);
        },
        &hear);
}

/// Prints the value on out, and gives it up.
void printJson(Json value);

} // namespace frruci::host

#endif
