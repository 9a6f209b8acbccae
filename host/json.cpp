// SPDX-License-Identifier: Apache-2.0
// JSON by json-c.

#include "host/json.h"

#include <cstring>
#include <json-c/json.h>

#include "host/streams.h"

namespace frruci::host {

namespace {

bool wanted = false;

} // namespace

bool wantJson() {
    wanted = true;
    return true;
}

bool wantsJson() {
    return wanted;
}

Json jsonObject() {
    return json_object_new_object();
}

Json jsonArray() {
    return json_object_new_array();
}

Json jsonText(const char *text) {
    return json_object_new_string(text);
}

Json jsonOf(const char *text) {
    json_tokener_error error = json_tokener_success;
    Json value = json_tokener_parse_verbose(text, &error);
    return error == json_tokener_success ? value : nullptr;
}

void put(Json object, const char *key, Json value) {
    (void)json_object_object_add(object, key, value); // fails without memory only
}

void put(Json object, const char *key, const char *text) {
    put(object, key, jsonText(text));
}

void put(Json object, const char *key, int64_t number) {
    put(object, key, json_object_new_int64(number));
}

void putFlag(Json object, const char *key, bool flag) {
    put(object, key, json_object_new_boolean(flag ? 1 : 0));
}

void append(Json array, Json value) {
    (void)json_object_array_add(array, value); // fails without memory only
}

Json jsonOfRequest(const char *text, std::size_t size) {
    constexpr std::size_t kMost = 1024UL * 1024;
    json_tokener *tokener = size > kMost ? nullptr : json_tokener_new();
    if (tokener == nullptr) {
        return nullptr;
    }
    Json value = json_tokener_parse_ex(tokener, text, static_cast<int>(size));
    const bool isWhole = json_tokener_get_error(tokener) == json_tokener_success;
    const std::size_t end = json_tokener_get_parse_end(tokener);
    json_tokener_free(tokener);
    return isWhole && end + strspn(text + end, " \t\r\n") == size ? value : nullptr;
}

JsonKind kindOf(Json value) {
    switch (json_object_get_type(value)) {
    case json_type_object:
        return JsonKind::kObject;
    case json_type_array:
        return JsonKind::kArray;
    case json_type_string:
        return JsonKind::kText;
    case json_type_int:
        return JsonKind::kNumber;
    default:
        return JsonKind::kOther;
    }
}

Json member(Json object, const char *key) {
    Json value = nullptr;
    return kindOf(object) == JsonKind::kObject &&
                   json_object_object_get_ex(object, key, &value) != 0
               ? value
               : nullptr;
}

const char *textOf(Json value) {
    return kindOf(value) == JsonKind::kText ? json_object_get_string(value) : nullptr;
}

int64_t numberOf(Json value) {
    return kindOf(value) == JsonKind::kNumber ? json_object_get_int64(value) : 0;
}

bool isTrue(Json value) {
    return json_object_get_type(value) == json_type_boolean && json_object_get_boolean(value) != 0;
}

void visit(Json value, void (*hear)(const char *name, Json item, void *context), void *context) {
    if (kindOf(value) == JsonKind::kArray) {
        for (std::size_t i = 0; i < json_object_array_length(value); ++i) {
            hear("", json_object_array_get_idx(value, i), context);
        }
    }
    if (kindOf(value) != JsonKind::kObject) {
        return;
    }
    json_object_iterator at = json_object_iter_begin(value);
    const json_object_iterator end = json_object_iter_end(value);
    for (; json_object_iter_equal(&at, &end) == 0; json_object_iter_next(&at)) {
        hear(json_object_iter_peek_name(&at), json_object_iter_peek_value(&at), context);
    }
}

void printJson(Json value) {
    constexpr int kForm = JSON_C_TO_STRING_PRETTY | JSON_C_TO_STRING_NOSLASHESCAPE;
    (void)fprintf(out, "%s\n", json_object_to_json_string_ext(value, kForm));
    (void)fflush(out);
    (void)json_object_put(value);
}

} // namespace frruci::host
