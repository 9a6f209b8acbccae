// SPDX-License-Identifier: Apache-2.0
// The RIP model's lists: search, append, remove.

#include "rip/uc_rip.h"

#include <cstdlib>
#include <cstring>

#include "common/front_end.h"
#include "common/lock.h"
#include "common/status.h"
#include "rip/uc_rip_values.h"

namespace {

using namespace frruci::rip;
using frruci::common::kFailed;
using frruci::common::kOutOfMemory;
using frruci::common::kSuccess;
using frruci::common::Locked;

constexpr int32_t kNotSearched = -1;

constexpr int32_t kMatch = 2;
constexpr int32_t kNoMatch = 0;
constexpr int32_t kEmptyEntry = 1;
constexpr int32_t kMissing = 3;

/// The name in the message and the lines: Fixed by the interface.
void logAppend(int line) {
    (void)record_log_act("uc_rip:%d: swRipRouterRipSet\n", line);
}

void lockInstances() {
    (void)pthread_mutex_lock(&ucRipVrfListMu); // cannot fail on a default mutex
}

void unlockInstances() {
    (void)pthread_mutex_unlock(&ucRipVrfListMu); // held since the search began
}

void lockInterfaces() {
    (void)pthread_mutex_lock(&ucRipIfListMu); // as above
}

void unlockInterfaces() {
    (void)pthread_mutex_unlock(&ucRipIfListMu);
}

/// Searches the instances, or the networks or neighbours of one.
dlist_node *findInInstances(dlist *list, RipCompare compare, const void *key) {
    dlist_node *entry = nullptr;
    (void)ucRipListFind(list, compare, lockInstances, unlockInstances, key, &entry);
    return entry; // none also where nothing could be searched
}

/// An address text as a search key. Fills all its bytes when the text is too long for a record, so
/// such a text matches none.
struct AddressKey {
    char bytes[16] = {};
    explicit AddressKey(const char *text) { memcpy(bytes, text, strnlen(text, sizeof bytes)); }
};

struct NetworkKey {
    AddressKey ip;
    AddressKey mask;
};
static_assert(sizeof(NetworkKey) == sizeof(RipNetworkNode));
static_assert(sizeof(AddressKey) == sizeof(RipNeighborNode));

dlist_node *findVrf(const char *name) {
    return findInInstances(gRipVrfList, ripVrfNameCmp, name);
}

dlist_node *findNeighbor(const RipVrfNode &vrf, const AddressKey &key) {
    return findInInstances(vrf.neighbors, ripNeighborCmp, &key);
}

dlist_node *findNetwork(const RipVrfNode &vrf, const NetworkKey &key) {
    return findInInstances(vrf.networks, ripNetworkCmp, &key);
}

dlist_node *findInterface(const RipNetIf &key) {
    dlist_node *entry = nullptr;
    (void)ucRipListFind(gRipIfList, ripNetIfCmp, lockInterfaces, unlockInterfaces, &key, &entry);
    return entry; // none also where nothing could be searched
}

template <typename Record> void handOut(Record **out, void *record) {
    if (out != nullptr) {
        *out = static_cast<Record *>(record);
    }
}

uint32_t appendRecord(dlist *list, pthread_mutex_t &mutex, void *record) {
    const Locked locked(mutex);
    return dlistAppend(list, record) == 0 ? kSuccess : kOutOfMemory;
}

uint32_t removeEntry(dlist *list, pthread_mutex_t &mutex, dlist_node *entry) {
    if (entry == nullptr) {
        return kSuccess;
    }
    const Locked locked(mutex);
    return dlistDelete(list, entry) == 0 ? kSuccess : kFailed;
}

/// Hands out the record of a found entry, or a new one that init has filled.
template <typename Record, typename Init>
uint32_t findOrAppend(const dlist_node *found, dlist *list, pthread_mutex_t &mutex, Record **out,
                      Init init) {
    if (found != nullptr) {
        handOut(out, found->data);
        return kSuccess;
    }
    auto *record = static_cast<Record *>(malloc(sizeof(Record)));
    if (record == nullptr) {
        return kOutOfMemory;
    }
    if (init(record) != kSuccess || appendRecord(list, mutex, record) != kSuccess) {
        free(record);
        return kOutOfMemory;
    }
    handOut(out, record);
    return kSuccess;
}

/// Makes and adds the instance that a search did not find.
uint32_t appendVrf(const char *name, RipVrfNode **out) {
    logAppend(484);
    auto *record = static_cast<RipVrfNode *>(malloc(sizeof(RipVrfNode)));
    if (record == nullptr) {
        return kFailed;
    }
    if (ripVrfNodeInit(record, name) != kSuccess) {
        free(record);
        return kOutOfMemory;
    }
    logAppend(489);
    if (appendRecord(gRipVrfList, ucRipVrfListMu, record) != kSuccess) {
        free(record);
        return kOutOfMemory;
    }
    logAppend(496);
    handOut(out, record);
    return kSuccess;
}

int32_t matchBytes(const void *key, const void *field, std::size_t size) {
    return memcmp(key, field, size) == 0 ? kMatch : kNoMatch;
}

} // namespace

int32_t ucRipListFind(dlist *list, RipCompare compare, void (*lock)(void), void (*unlock)(void),
                      const void *key, dlist_node **out) {
    if (out == nullptr) {
        return kNotSearched;
    }
    *out = nullptr;
    if (list == nullptr || key == nullptr || compare == nullptr || lock == nullptr ||
        unlock == nullptr) {
        return kNotSearched;
    }
    lock();
    for (dlist_node *entry = list->head; entry != nullptr; entry = entry->next) {
        if (compare(key, entry) == kMatch) {
            *out = entry;
            break;
        }
    }
    unlock();
    return 0;
}

int32_t ripVrfNameCmp(const void *key, const dlist_node *entry) {
    if (key == nullptr || entry == nullptr || entry->data == nullptr) {
        return kMissing;
    }
    const auto *name = static_cast<const char *>(key);
    if (strlen(name) > kNameCharacters) {
        return kMissing;
    }
    return strcmp(name, static_cast<const RipVrfNode *>(entry->data)->name) == 0 ? kMatch
                                                                                 : kNoMatch;
}

int32_t ripNeighborCmp(const void *key, const dlist_node *entry) {
    if (key == nullptr || entry == nullptr || entry->data == nullptr) {
        return kMissing;
    }
    return matchBytes(key, entry->data, sizeof(RipNeighborNode));
}

int32_t ripNetworkCmp(const void *key, const dlist_node *entry) {
    if (key == nullptr || entry == nullptr) {
        return kMissing;
    }
    if (entry->data == nullptr) {
        return kEmptyEntry;
    }
    return matchBytes(key, entry->data, sizeof(RipNetworkNode));
}

int32_t ripNetIfCmp(const void *key, const dlist_node *entry) {
    if (key == nullptr || entry == nullptr || entry->data == nullptr) {
        return kMissing;
    }
    return matchBytes(key, &static_cast<const RipInterfaceNode *>(entry->data)->key,
                      sizeof(RipNetIf));
}

uint32_t ucRipVrfAppend(const char *name, RipVrfNode **out) {
    if (name == nullptr) {
        return kFailed;
    }
    logAppend(470);
    const dlist_node *found = findVrf(name);
    logAppend(477);
    if (found == nullptr) {
        return appendVrf(name, out);
    }
    handOut(out, found->data);
    return kSuccess;
}

uint32_t ucRipVrfRemoveByName(const char *name) {
    return name == nullptr ? kFailed : removeEntry(gRipVrfList, ucRipVrfListMu, findVrf(name));
}

uint32_t ucRipVrfFindByName(const char *name, RipVrfNode **out) {
    const dlist_node *found = findVrf(name);
    if (found == nullptr) {
        return kFailed;
    }
    handOut(out, found->data);
    return kSuccess;
}

uint32_t ucRipNeighborAppend(const char *vrfName, const char *addr, RipNeighborNode **out) {
    RipVrfNode *vrf = nullptr;
    if (addr == nullptr || out == nullptr || ucRipVrfFindByName(vrfName, &vrf) != kSuccess) {
        return kFailed;
    }
    return findOrAppend(
        findNeighbor(*vrf, AddressKey(addr)), vrf->neighbors, ucRipVrfListMu, out,
        [addr](RipNeighborNode *record) { return ripNeighborNodeInit(record, addr); });
}

uint32_t ucRipNeighborRemoveByName(const char *vrfName, const char *addr) {
    RipVrfNode *vrf = nullptr;
    if (addr == nullptr || ucRipVrfFindByName(vrfName, &vrf) != kSuccess) {
        return kFailed;
    }
    return removeEntry(vrf->neighbors, ucRipVrfListMu, findNeighbor(*vrf, AddressKey(addr)));
}

uint32_t ucRipNetworkNodeAppend(const char *vrfName, const char *ip, const char *mask,
                                RipNetworkNode **out) {
    RipVrfNode *vrf = nullptr;
    if (ip == nullptr || mask == nullptr || out == nullptr ||
        ucRipVrfFindByName(vrfName, &vrf) != kSuccess) {
        return kFailed;
    }
    const NetworkKey key = {AddressKey(ip), AddressKey(mask)};
    return findOrAppend(
        findNetwork(*vrf, key), vrf->networks, ucRipVrfListMu, out,
        [ip, mask](RipNetworkNode *record) { return ripNetworkNodeInit(record, ip, mask); });
}

uint32_t ucRipNetworkNodeRemoveByName(const char *vrfName, const char *ip, const char *mask) {
    RipVrfNode *vrf = nullptr;
    if (ip == nullptr || mask == nullptr || ucRipVrfFindByName(vrfName, &vrf) != kSuccess) {
        return kFailed;
    }
    const NetworkKey key = {AddressKey(ip), AddressKey(mask)};
    return removeEntry(vrf->networks, ucRipVrfListMu, findNetwork(*vrf, key));
}

uint32_t ucRipInterfaceNodeAppend(RipNetIf key, RipInterfaceNode **out) {
    return findOrAppend(
        findInterface(key), gRipIfList, ucRipIfListMu, out,
        [key](RipInterfaceNode *record) { return ripInterfaceNodeInit(record, key); });
}

uint32_t ucRipInterfaceNodeRemoveByKey(RipNetIf key) {
    return removeEntry(gRipIfList, ucRipIfListMu, findInterface(key));
}

uint32_t ucRipIfFindByNetIf(RipNetIf key, RipInterfaceNode **out) {
    const dlist_node *found = findInterface(key);
    if (out == nullptr || found == nullptr) {
        return kFailed;
    }
    *out = static_cast<RipInterfaceNode *>(found->data);
    return kSuccess;
}
