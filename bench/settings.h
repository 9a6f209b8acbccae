/* SPDX-License-Identifier: Apache-2.0 */
/* Stored settings to recover, as the text of a store file. */
#ifndef FRRUCI_BENCH_SETTINGS_H
#define FRRUCI_BENCH_SETTINGS_H

#include <cstdio>
#include <cstdlib>
#include <string>

namespace bench {

inline void writeText(const char *path, const std::string &text) {
    FILE *file = fopen(path, "w");
    if (file == nullptr || fwrite(text.data(), 1, text.size(), file) != text.size() ||
        fclose(file) != 0) {
        perror(path);
        exit(1);
    }
}

inline std::string option(const std::string &name, const std::string &value) {
    return "\toption " + name + " '" + value + "'\n";
}

inline std::string networkAddress(int index) {
    return "10." + std::to_string(100 + index / 250) + "." + std::to_string(index % 250) + ".0";
}

} // namespace bench

#endif
