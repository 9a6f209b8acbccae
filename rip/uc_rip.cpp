// SPDX-License-Identifier: Apache-2.0
// The RIP model: its globals and the initial values of its records.

#include "rip/uc_rip.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "common/status.h"
#include "rip/uc_rip_values.h"

namespace {

using namespace frruci::rip;
using frruci::common::kFailed;
using frruci::common::kSuccess;

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
    return kSuccess;
}

uint32_t ripInit() {
    return kSuccess;
}

uint32_t ripVrfNodeInit(RipVrfNode *record, const char *name) {
    if (record == nullptr || name == nullptr) {
        return kFailed;
    }
    *record = {};
    copyText(record->name, name, kNameCharacters);
    record->update_timer = kInitialUpdate;
    record->timeout_timer = kInitialTimeout;
    record->garbage_timer = kInitialGarbage;
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
    return kSuccess;
}

uint32_t ripNetworkNodeInit(RipNetworkNode *record, const char *ip, const char *mask) {
    if (record == nullptr || ip == nullptr || mask == nullptr) {
        return kFailed;
    }
    *record = {};
    copyText(record->ip, ip, sizeof record->ip);
    copyText(record->mask, mask, sizeof record->mask);
    return kSuccess;
}

uint32_t ripNeighborNodeInit(RipNeighborNode *record, const char *addr) {
    if (record == nullptr || addr == nullptr || strlen(addr) >= sizeof record->addr) {
        return kFailed;
    }
    *record = {};
    copyText(record->addr, addr, sizeof record->addr);
    return kSuccess;
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
    return kSuccess;
}
