// SPDX-License-Identifier: Apache-2.0
// The RIP model: its globals, its records' initial values, and access to their options.

#include "rip/uc_rip.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "rip/rip_internal.h"

namespace {

using namespace frruci::rip;

static_assert(sizeof(RipVrfNode) == 80 && offsetof(RipVrfNode, auto_summary) == 40 &&
              offsetof(RipVrfNode, version) == 44 && offsetof(RipVrfNode, update_timer) == 48 &&
              offsetof(RipVrfNode, timeout_timer) == 52 &&
              offsetof(RipVrfNode, garbage_timer) == 56 &&
              offsetof(RipVrfNode, default_metric) == 60 && offsetof(RipVrfNode, distance) == 61 &&
              offsetof(RipVrfNode, networks) == 64 && offsetof(RipVrfNode, neighbors) == 72);
static_assert(sizeof(RipNetworkNode) == 32 && offsetof(RipNetworkNode, mask) == 16);
static_assert(sizeof(RipNeighborNode) == 16 && sizeof(RipNetIf) == 8);
static_assert(offsetof(RipInterfaceNode, split_horizon) == 12 &&
              offsetof(RipInterfaceNode, poison_reverse) == 14 &&
              offsetof(RipInterfaceNode, passive) == 16 &&
              offsetof(RipInterfaceNode, v2_broadcast) == 18 &&
              offsetof(RipInterfaceNode, key) == 20 && offsetof(RipInterfaceNode, vlan_id) == 28 &&
              offsetof(RipInterfaceNode, auth_keyid) == 32 &&
              offsetof(RipInterfaceNode, auth_str) == 34 && sizeof(RipInterfaceNode) == 52);

/// Copies at most N - 1 characters into a zeroed field.
template <std::size_t N> void copyText(char (&field)[N], const char *text, std::size_t most) {
    memcpy(field, text, strnlen(text, most < N ? most : N - 1));
}

template <auto kField, class Record> uint32_t load(Record *record, void *value) {
    *static_cast<uint32_t *>(value) = record->*kField;
    return kOk;
}

template <auto kField, Range kRange, class Record> uint32_t store(Record *record, void *value) {
    const uint32_t wanted = *static_cast<const uint32_t *>(value);
    if (!kRange.holds(wanted)) {
        return kFailed;
    }
    record->*kField = static_cast<std::remove_reference_t<decltype(record->*kField)>>(wanted);
    return kOk;
}

constexpr std::size_t kAuthCharacters = sizeof RipInterfaceNode::auth_str - 1;

uint32_t loadAuthText(RipInterfaceNode *record, void *value) {
    memcpy(value, record->auth_str, strlen(record->auth_str) + 1);
    return kOk;
}

uint32_t storeAuthText(RipInterfaceNode *record, void *value) {
    const auto *text = static_cast<const char *>(value);
    const std::size_t length = strlen(text);
    if (length > kAuthCharacters) {
        return kFailed;
    }
    memset(record->auth_str, 0, sizeof record->auth_str);
    memcpy(record->auth_str, text, length);
    return kOk;
}

constexpr Range kVersion = {0, 3};
constexpr Range kAuthType = {0, 2};

} // namespace

dlist *gRipVrfList = nullptr;
dlist *gRipIfList = nullptr;
pthread_mutex_t ucRipVrfListMu = PTHREAD_MUTEX_INITIALIZER;
pthread_mutex_t ucRipIfListMu = PTHREAD_MUTEX_INITIALIZER;
const uint32_t gRipMultiIp = 0xE0000009U;
const uint8_t gRipMultiMac[6] = {0x01, 0x00, 0x5e, 0x00, 0x00, 0x09};

uint32_t ucRipInit() {
    gRipVrfList = dlistCreate(free, nullptr);
    gRipIfList = dlistCreate(free, nullptr);
    if (gRipVrfList == nullptr || gRipIfList == nullptr) {
        return kFailed;
    }
    (void)pthread_mutex_init(&ucRipVrfListMu, nullptr); // default attributes cannot fail
    (void)pthread_mutex_init(&ucRipIfListMu, nullptr);
    return kOk;
}

uint32_t ripInit() {
    return kOk;
}

uint32_t ripVrfNodeInit(RipVrfNode *record, const char *name) {
    if (record == nullptr || name == nullptr) {
        return kFailed;
    }
    *record = {};
    copyText(record->name, name, kNameCharacters);
    record->update_timer = kInitialUpdateTimer;
    record->timeout_timer = kInitialTimeoutTimer;
    record->garbage_timer = kInitialGarbageTimer;
    record->default_metric = kInitialMetric;
    record->distance = kInitialDistance;
    dlist *networks = dlistCreate(free, nullptr);
    dlist *neighbors = networks == nullptr ? nullptr : dlistCreate(free, nullptr);
    if (neighbors == nullptr) {
        free(networks);
        return kFailed;
    }
    record->networks = networks;
    record->neighbors = neighbors;
    return kOk;
}

uint32_t ripNetworkNodeInit(RipNetworkNode *record, const char *ip, const char *mask) {
    if (record == nullptr || ip == nullptr || mask == nullptr) {
        return kFailed;
    }
    *record = {};
    copyText(record->ip, ip, sizeof record->ip);
    copyText(record->mask, mask, sizeof record->mask);
    return kOk;
}

uint32_t ripNeighborNodeInit(RipNeighborNode *record, const char *addr) {
    if (record == nullptr || addr == nullptr || strlen(addr) >= sizeof record->addr) {
        return kFailed;
    }
    *record = {};
    copyText(record->addr, addr, sizeof record->addr);
    return kOk;
}

uint32_t ripInterfaceNodeInit(RipInterfaceNode *record, RipNetIf key) {
    if (record == nullptr) {
        return kFailed;
    }
    *record = {};
    record->split_horizon = 1;
    record->key = key;
    record->vlan_id = key.type == kVlanInterface ? key.vid : 0;
    record->auth_keyid = 1;
    return kOk;
}

uint32_t ucRipGlobalOption(const char *vrfName, RipVrfAccessor accessor, void *value) {
    RipVrfNode *record = nullptr;
    if (vrfName == nullptr || accessor == nullptr || value == nullptr ||
        ucRipVrfFindByName(vrfName, &record) != kOk) {
        return kFailed;
    }
    const Locked locked(ucRipVrfListMu);
    return accessor(record, value);
}

uint32_t ucRipIfOption(RipNetIf key, RipIfAccessor accessor, void *value) {
    RipInterfaceNode *record = nullptr;
    if (accessor == nullptr || value == nullptr || ucRipIfFindByNetIf(key, &record) != kOk) {
        return kFailed;
    }
    const Locked locked(ucRipIfListMu);
    return accessor(record, value);
}

// The options: name of the accessor pair, field, values that its Set accepts.
#define INSTANCE_OPTIONS(ROW)                                                                      \
    ROW(DefaultVersion, version, kVersion)                                                         \
    ROW(TimerUpdate, update_timer, kUpdateTimer)                                                   \
    ROW(TimerTimeout, timeout_timer, kTimeoutTimer)                                                \
    ROW(TimerGarbage, garbage_timer, kGarbageTimer)                                                \
    ROW(DefaultMetric, default_metric, kMetric)                                                    \
    ROW(Distance, distance, kDistance)                                                             \
    ROW(Autosumm, auto_summary, kSwitch)

// The poisoned-reverse pair reads and writes split horizon. Fixed by the interface.
#define INTERFACE_OPTIONS(ROW)                                                                     \
    ROW(SendVersion, send_version, kVersion)                                                       \
    ROW(RecvVersion, recv_version, kVersion)                                                       \
    ROW(V2broadcast, v2_broadcast, kSwitch)                                                        \
    ROW(Auth_type, auth_type, kAuthType)                                                           \
    ROW(Auth_keyid, auth_keyid, kKeyId)                                                            \
    ROW(SplitHorizonEnable, split_horizon, kSwitch)                                                \
    ROW(PoisonedReverseEnable, split_horizon, kSwitch)                                             \
    ROW(PassiveEnable, passive, kSwitch)

#define INSTANCE_PAIR(name, field, range)                                                          \
    uint32_t ucRip##name##Get(const char *vrfName, uint32_t *out) {                                \
        return ucRipGlobalOption(vrfName, load<&RipVrfNode::field>, out);                          \
    }                                                                                              \
    uint32_t ucRip##name##Set(const char *vrfName, uint32_t value) {                               \
        return ucRipGlobalOption(vrfName, store<&RipVrfNode::field, range>, &value);               \
    }

#define INTERFACE_PAIR(name, field, range)                                                         \
    uint32_t ucRipInterface##name##Get(RipNetIf key, uint32_t *out) {                              \
        return ucRipIfOption(key, load<&RipInterfaceNode::field>, out);                            \
    }                                                                                              \
    uint32_t ucRipInterface##name##Set(RipNetIf key, uint32_t value) {                             \
        return ucRipIfOption(key, store<&RipInterfaceNode::field, range>, &value);                 \
    }

INSTANCE_OPTIONS(INSTANCE_PAIR)
INTERFACE_OPTIONS(INTERFACE_PAIR)

uint32_t ucRipInterfaceAuth_strGet(RipNetIf key, char *out) {
    return ucRipIfOption(key, loadAuthText, out);
}

uint32_t ucRipInterfaceAuth_strSet(RipNetIf key, const char *text) {
    return ucRipIfOption(key, storeAuthText, const_cast<char *>(text)); // only read from
}
