// SPDX-License-Identifier: Apache-2.0
// The interface-command builders: one table of command words, one routine that sends them.

#include "common/text.h"
#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_settings.h"
#include "ospf/vty_ospf.h"
#include "vty/session.h"

#include <array>

namespace {

using frruci::common::format;
using frruci::vty::kCommandBytes;

constexpr uint32_t kRefusedCode = 0xFFFFFFFF;

enum Setting : std::size_t {
    kCost,
    kRetransmit,
    kTransmit,
    kPriority,
    kHello,
    kDead,
    kNetworkType,
    kMtuIgnore,
    kPassive,
    kAuthNull,
    kAuthSimple,
    kAuthDigest,
    kAuthKey,
    kAuthMd5Key,
    kSettings,
};

/// What follows the words of a setting. The "no" form has the words alone, but for a digest key,
/// which its id names.
enum class Value : uint8_t { kNone, kNumber, kText, kDigestKey };

struct Row {
    Setting setting;
    const char *words;
    Value value;
};

constexpr std::array<Row, kSettings> kRows = {
    {
     {kCost, "ip ospf cost", Value::kNumber},
     {kRetransmit, "ip ospf retransmit-interval", Value::kNumber},
     {kTransmit, "ip ospf transmit-delay", Value::kNumber},
     {kPriority, "ip ospf priority", Value::kNumber},
     {kHello, "ip ospf hello-interval", Value::kNumber},
     {kDead, "ip ospf dead-interval", Value::kNumber},
     {kNetworkType, "ip ospf network", Value::kText},
     {kMtuIgnore, "ip ospf mtu-ignore", Value::kNone},
     {kPassive, "ip ospf passive", Value::kNone},
     {kAuthNull, "ip ospf authentication null", Value::kNone},
     {kAuthSimple, "ip ospf authentication", Value::kNone},
     {kAuthDigest, "ip ospf authentication message-digest", Value::kNone},
     {kAuthKey, "ip ospf authentication-key", Value::kText},
     {kAuthMd5Key, "ip ospf message-digest-key", Value::kDigestKey},
     }
};

constexpr bool inOrder() {
    for (std::size_t i = 0; i < kRows.size(); ++i) {
        if (kRows[i].setting != i) {
            return false;
        }
    }
    return true;
}
static_assert(inOrder(), "a setting is the index of its row");

// By the front-end's network-type code. The model and the store number the types differently.
constexpr std::array<const char *, 3> kNetworkTypeWords = {"broadcast", "point-to-point",
                                                           "point-to-multipoint"};

// By the front-end's authentication type.
constexpr std::array<Setting, 3> kAuthTypes = {kAuthNull, kAuthSimple, kAuthDigest};

struct Target {
    uint16_t vrf;
    const char *name;
    int32_t wan;
    int32_t enable;
};

const char *orEmpty(const char *text) {
    return text == nullptr ? "" : text;
}

using Command = char[kCommandBytes];

void writeSetting(Command &command, const Row &row, int32_t number, const char *text) {
    switch (row.value) {
    case Value::kNone:
        format(command, "%s", row.words);
        break;
    case Value::kNumber:
        format(command, "%s %d", row.words, number);
        break;
    case Value::kText:
        format(command, "%s %s", row.words, text);
        break;
    case Value::kDigestKey:
        format(command, "%s %d md5 %s", row.words, number, text);
        break;
    }
}

void writeNoForm(Command &command, const Row &row, int32_t number) {
    if (row.value == Value::kDigestKey) {
        format(command, "no %s %d", row.words, number);
    } else {
        format(command, "no %s", row.words);
    }
}

uint32_t deliver(const Target &target, const char *command) {
    return doVtyOspfConfigInterface(target.vrf, orEmpty(target.name),
                                    static_cast<uint32_t>(target.wan), command);
}

uint32_t send(Setting setting, const Target &target, int32_t number = 0, const char *text = "") {
    Command command = {};
    if (target.enable != 0) {
        writeSetting(command, kRows[setting], number, orEmpty(text));
    } else {
        writeNoForm(command, kRows[setting], number);
    }
    return deliver(target, command);
}

} // namespace

uint32_t ip_ospf_cost(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable, int32_t cost) {
    return send(kCost, {vrf, ifname, wan, enable}, cost);
}

uint32_t ip_ospf_retransmit(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                            int32_t seconds) {
    return send(kRetransmit, {vrf, ifname, wan, enable}, seconds);
}

uint32_t ip_ospf_transmit(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          int32_t seconds) {
    return send(kTransmit, {vrf, ifname, wan, enable}, seconds);
}

uint32_t ip_ospf_priority(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          int32_t priority) {
    return send(kPriority, {vrf, ifname, wan, enable}, priority);
}

uint32_t ip_ospf_hello(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                       int32_t seconds) {
    return send(kHello, {vrf, ifname, wan, enable}, seconds);
}

uint32_t ip_ospf_dead(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                      int32_t seconds) {
    return send(kDead, {vrf, ifname, wan, enable}, seconds);
}

uint32_t ip_ospf_network_type(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                              uint32_t code) {
    // Fixed by the interface: a code is refused for the "no" form too, which has no code in it.
    if (code >= kNetworkTypeWords.size()) {
        return kRefusedCode;
    }
    return send(kNetworkType, {vrf, ifname, wan, enable}, 0, kNetworkTypeWords[code]);
}

uint32_t ip_ospf_mtu_ignore(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable) {
    return send(kMtuIgnore, {vrf, ifname, wan, enable});
}

uint32_t ip_ospf_passive(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable) {
    return send(kPassive, {vrf, ifname, wan, enable});
}

uint32_t ip_ospf_auth(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable, int32_t type) {
    const Target target = {vrf, ifname, wan, enable};
    const auto index = static_cast<uint32_t>(type);
    // Fixed by the interface: an unknown type sends an empty line.
    return index < kAuthTypes.size() ? send(kAuthTypes[index], target) : deliver(target, "");
}

uint32_t ip_ospf_auth_key(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          const char *password) {
    return send(kAuthKey, {vrf, ifname, wan, enable}, 0, password);
}

uint32_t ip_ospf_auth_md5key(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                             int32_t key_id, const char *key) {
    return send(kAuthMd5Key, {vrf, ifname, wan, enable}, key_id, key);
}

namespace frruci::ospf {

namespace {

constexpr int32_t kSet = 1;

template <auto Builder> uint32_t set(const char *name, int32_t wan, int32_t value) {
    return Builder(kNoVrf, name, wan, kSet, value);
}

uint32_t setNetworkType(const char *name, int32_t wan, int32_t value) {
    return ip_ospf_network_type(kNoVrf, name, wan, kSet, static_cast<uint32_t>(value));
}

// Of these two the value is the enable flag.
template <auto Builder> uint32_t turn(const char *name, int32_t wan, int32_t value) {
    return Builder(kNoVrf, name, wan, value);
}

constexpr InterfaceKeyword kInterfaceKeywords[] = {
    {"cost",         set<ip_ospf_cost>,        __LINE__},
    {"retransmit",   set<ip_ospf_retransmit>,  __LINE__},
    {"transmit",     set<ip_ospf_transmit>,    __LINE__},
    {"priority",     set<ip_ospf_priority>,    __LINE__},
    {"hello",        set<ip_ospf_hello>,       __LINE__},
    {"dead",         set<ip_ospf_dead>,        __LINE__},
    {"network_type", setNetworkType,           __LINE__},
    {"mtu_ignore",   turn<ip_ospf_mtu_ignore>, __LINE__},
    {"passive",      turn<ip_ospf_passive>,    __LINE__},
};

} // namespace

std::span<const InterfaceKeyword> interfaceKeywords() {
    return kInterfaceKeywords;
}

} // namespace frruci::ospf
