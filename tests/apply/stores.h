/* SPDX-License-Identifier: Apache-2.0 */
/* Random stores of valid settings. */
#ifndef FRRUCI_TESTS_APPLY_STORES_H
#define FRRUCI_TESTS_APPLY_STORES_H

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace stores {

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}

    int number(int least, int most) {
        return least + static_cast<int>(engine_() % static_cast<unsigned>(most - least + 1));
    }
    bool chance(int percent) { return number(1, 100) <= percent; }
    template <typename Value> Value one(std::initializer_list<Value> of) {
        return of.begin()[number(0, static_cast<int>(of.size()) - 1)];
    }

private:
    std::mt19937 engine_;
};

/// Text of a store file, option by option.
class Store {
public:
    void section(const std::string &type, const std::string &name = "") {
        text_ += "config " + type + (name.empty() ? "" : " '" + name + "'") + "\n";
    }
    void option(const std::string &name, const std::string &value) {
        text_ += "\toption " + name + " '" + value + "'\n";
    }
    void option(const std::string &name, int value) { option(name, std::to_string(value)); }
    const std::string &text() const { return text_; }

private:
    std::string text_;
};

/// A value is there or its option is missing.
inline void maybe(Random &random, Store &store, const std::string &name, int least, int most) {
    if (random.chance(70)) {
        store.option(name, random.number(least, most));
    }
}

inline std::string flag(Random &random) {
    return random.chance(50) ? "enable" : "disable";
}

inline std::vector<std::string> interfaces(Random &random) {
    std::vector<std::string> chosen;
    // The last one does not exist, and tun0 is of another type than the rest.
    for (const char *name :
         {"eth0.2", "eth0.3", "eth0.4", "eth1.2", "eth1.3", "eth1.4", "tun0", "eth1.77"}) {
        if (random.chance(50)) {
            chosen.emplace_back(name);
        }
    }
    return chosen;
}

/// Prefixes that cover each other, some of them with bits of a host.
inline std::pair<std::string, std::string> prefix(Random &random) {
    const std::string second = std::to_string(random.number(1, 3));
    const std::string third = std::to_string(random.number(1, 4));
    switch (random.number(0, 3)) {
    case 0:
        return {"10.0.0.0", "255.0.0.0"};
    case 1:
        return {"10." + second + ".7.9", "255.255.0.0"};
    case 2:
        return {"192.168." + third + ".0", "255.255.255.0"};
    default:
        return {"10." + second + "." + third + ".1", "255.255.255.0"};
    }
}

inline std::string key(Random &random, int most) {
    static const std::string kBytes = "abcXYZ019!#|\\$?%'"; // a quote would end the option
    std::string text = "k";
    const int bytes = random.number(0, most - 1);
    for (int i = 0; i < bytes; ++i) {
        text +=
            kBytes[static_cast<std::size_t>(random.number(0, static_cast<int>(kBytes.size()) - 2))];
    }
    return text;
}

inline void ospfInterface(Random &random, Store &store, const std::string &name) {
    store.section("interface");
    store.option("ns", name[3] == '1' ? "wan" : "lan");
    store.option("interface", name);
    maybe(random, store, "cost", 1, 65535);
    maybe(random, store, "retransmit", 4, 7);
    maybe(random, store, "transmit", 1, 3);
    store.option("priority", random.number(0, 3));
    maybe(random, store, "hello", 8, 12);
    maybe(random, store, "dead", 38, 42);
    store.option("network_type", random.number(0, 2));
    maybe(random, store, "mtu_ignore", 0, 1);
    maybe(random, store, "passive", 0, 1);
    const int type = random.number(0, 2);
    store.option("auto_type", type);
    store.option("simple_key", key(random, 12));
    store.option("md5_key_id", random.number(1, 3));
    store.option("md5_key", key(random, 20));
}

inline std::string ospf(unsigned seed) {
    Random random(seed);
    Store store;
    store.section("global", "global");
    store.option("status", "on");
    store.option("router_id", random.one({"1.1.1.1", "2.3.4.5", "0.0.0.0"}));
    store.section("advertise_cfg", "advertise_cfg");
    store.option("originate", flag(random));
    store.option("always", flag(random));
    store.option("metric", random.number(0, 3));
    store.option("metric_type", random.number(1, 2));
    store.section("ospf_cfg", "ospf_cfg");
    maybe(random, store, "distance", 108, 112);
    store.option("rfc_compatible", flag(random));
    store.option("spf_delay", random.number(0, 1) * 5);
    store.option("spf_hold_init", random.one({50, 100}));
    store.option("spf_hold_max", random.one({5000, 6000}));
    if (random.chance(70)) {
        store.option("max_path", random.one({1, 8, 64, 256}));
    }
    store.option("passive_def", flag(random));
    // An interface in networks of two areas is a mistake, over which ospfd 8.4 hangs.
    const int areas[] = {random.number(0, 2), random.number(0, 2)};
    for (int i = random.number(0, 8); i > 0; --i) {
        const auto [address, mask] = prefix(random);
        store.section("network");
        store.option("ip", address);
        store.option("wildcard_mask", mask);
        store.option("area_id", areas[address.compare(0, 3, "10.") == 0 ? 0 : 1]);
    }
    for (const std::string &name : interfaces(random)) {
        ospfInterface(random, store, name);
    }
    return store.text();
}

inline void ripInterface(Random &random, Store &store, const std::string &name) {
    store.section("interface");
    store.option("interface", name);
    if (random.chance(80)) {
        store.option("split_horizon_mode", random.one({"none", "split_horizon", "poison_reverse"}));
    }
    if (random.chance(60)) {
        store.option("send_version", random.one({"ripv1", "ripv2"}));
    }
    if (random.chance(60)) {
        store.option("receive_version", random.one({"ripv1", "ripv2", "both"}));
    }
    store.option("authen_mode", random.one({"none", "simple", "md5"}));
    store.option("key_id", random.number(1, 3));
    store.option("key", key(random, 16));
}

inline std::string rip(unsigned seed) {
    Random random(seed);
    Store store;
    store.section("global", "global");
    store.option("status", "on");
    store.section("config", "config");
    store.option("rip_version", random.one({"ripv1", "ripv2", "default"}));
    maybe(random, store, "rip_distance", 118, 122);
    store.option("auto_summary", flag(random));
    maybe(random, store, "default_metric", 1, 3);
    store.option("redistribute_static", flag(random));
    maybe(random, store, "redistribute_static_metric", 0, 3);
    store.option("redistribute_ospf", flag(random));
    maybe(random, store, "redistribute_ospf_metric", 0, 3);
    maybe(random, store, "update_timer", 29, 31);
    maybe(random, store, "timeout_timer", 179, 181);
    maybe(random, store, "garbage_timer", 119, 121);
    for (int i = random.number(0, 8); i > 0; --i) {
        const auto [address, mask] = prefix(random);
        store.section("network");
        store.option("ipaddress", address);
        store.option("mask", mask);
    }
    for (const std::string &name : interfaces(random)) {
        ripInterface(random, store, name);
    }
    return store.text();
}

/// One option of NHRP, and its line.
struct NhrpOption {
    const char *name;
    const char *words;
    bool hasValue;
    bool isList;
    bool isGlobal;
    bool isZebras;
};

constexpr NhrpOption kNhrpOptions[] = {
    {"redirect",              "ip nhrp redirect",                false, false, false, false},
    {"shortcut",              "ip nhrp shortcut",                false, false, false, false},
    {"network_id",            "ip nhrp network-id ",             true,  false, false, false},
    {"registration_nounique", "ip nhrp registration no-unique",  false, false, false, false},
    {"nhs_nbma",              "ip nhrp nhs dynamic nbma ",       true,  true,  false, false},
    {"map_multicast",         "ip nhrp map multicast ",          true,  true,  false, false},
    {"ipsec_profile",         "tunnel protection vici profile ", true,  false, false, false},
    {"ipsec_source",          "tunnel source ",                  true,  false, false, false},
    {"nflog_group",           "nhrp nflog-group ",               true,  false, true,  false},
    {"multicast_nflog_group", "nhrp multicast-nflog-group ",     true,  false, true,  false},
    {"zebra_address",         "ip address ",                     true,  true,  false, true },
    {"no_link_detect",        "no link-detect",                  false, false, false, true },
};

inline std::string nhrpValue(Random &random, const NhrpOption &option) {
    const std::string number = std::to_string(random.number(1, 3));
    const std::string name = option.name;
    if (!option.hasValue) {
        return "1";
    }
    if (name == "nhs_nbma" || name == "map_multicast") {
        return "10.1.2." + number;
    }
    if (name == "zebra_address") {
        return "172.16." + number + ".1/24";
    }
    return name == "ipsec_profile"  ? "p" + number
           : name == "ipsec_source" ? "eth1." + number
                                    : number;
}

/// Each option with its value; "0" where it is off, empty where it is not stored.
using NhrpValues = std::vector<std::pair<NhrpOption, std::string>>;

inline NhrpValues nhrpValues(unsigned seed) {
    Random random(seed);
    NhrpValues values;
    for (const NhrpOption &option : kNhrpOptions) {
        const int kind = random.number(0, 9);
        values.emplace_back(option, kind < 2 ? "" : kind < 5 ? "0" : nhrpValue(random, option));
    }
    return values;
}

inline std::string nhrp(const NhrpValues &values) {
    Store store;
    store.section("nhrp", "sdwan");
    store.option("interface", "tun0");
    for (const auto &[option, value] : values) {
        if (!value.empty()) {
            store.option(option.name, value);
        }
    }
    return store.text();
}

} // namespace stores

#endif
