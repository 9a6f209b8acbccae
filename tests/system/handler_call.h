/* SPDX-License-Identifier: Apache-2.0 */
/* Handlers called with words, and the log they leave. */
#ifndef FRRUCI_TESTS_SYSTEM_HANDLER_CALL_H
#define FRRUCI_TESTS_SYSTEM_HANDLER_CALL_H

#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace routers {

using Handler = void (*)(int32_t, char **);

/// Calls a handler with the words of a text.
inline void call(Handler handler, const std::string &text) {
    std::istringstream from(text);
    std::vector<std::string> words;
    for (std::string word; from >> word;) {
        words.push_back(word);
    }
    std::vector<char *> argv;
    for (std::string &word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    handler(static_cast<int32_t>(words.size()), argv.data());
}

inline std::string fileText(const char *path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

inline std::string logText() {
    return fileText("/tmp/tmp/data");
}

inline std::size_t occurrences(const std::string &text, const std::string &part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) {
        ++count;
    }
    return count;
}

} // namespace routers

#endif
