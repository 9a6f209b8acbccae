// SPDX-License-Identifier: Apache-2.0
// JSON by json-c.

#include "host/json.h"

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

void append(Json array, Json value) {
    (void)json_object_array_add(array, value); // fails without memory only
}

void printJson(Json value) {
    constexpr int kForm = JSON_C_TO_STRING_PRETTY | JSON_C_TO_STRING_NOSLASHESCAPE;
    (void)fprintf(out, "%s\n", json_object_to_json_string_ext(value, kForm));
    (void)fflush(out);
    (void)json_object_put(value);
}

} // namespace frruci::host
