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

/// OSPF's store with so many interfaces and networks; the first interface has this cost.
inline std::string ospfStore(int interfaces, int networks, int cost = 10) {
    std::string text =
        "config global 'global'\n" + option("status", "on") + option("router_id", "1.1.1.1");
    for (int i = 0; i < interfaces; ++i) {
        text += "config interface\n" + option("interface", "eth1." + std::to_string(100 + i)) +
                option("cost", std::to_string(cost + i)) + option("hello", "5") +
                option("dead", "20") + option("priority", "2") + option("retransmit", "6") +
                option("transmit", "2") + option("network_type", "1") + option("mtu_ignore", "1") +
                option("auto_type", "2") + option("md5_key_id", "1") + option("md5_key", "secret");
    }
    for (int i = 0; i < networks; ++i) {
        text += "config network\n" + option("ip", networkAddress(i)) +
                option("wildcard_mask", "255.255.255.0") + option("area_id", "0");
    }
    return text;
}

} // namespace bench

#endif
