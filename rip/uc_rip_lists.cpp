// SPDX-License-Identifier: Apache-2.0
// The RIP model's lists: search, append, remove.

#include "rip/uc_rip.h"

#include <cstdlib>
#include <cstring>

#include "common/front_end.h"
#include "rip/rip_internal.h"

namespace {

using namespace frruci::rip;

constexpr int32_t kNotSearched = -1;

constexpr int32_t kMatch = 2;
constexpr int32_t kNoMatch = 0;
constexpr int32_t kEmptyEntry = 1;
constexpr int32_t kMissing = 3;

/// The name in the message and the lines: Fixed by the interface.
void logAppend(int line) {
    (void)record_log_act("uc_rip:%d: swRipRouterRipSet\n", line);
}

template <pthread_mutex_t &kMutex> void lock() {
    (void)pthread_mutex_lock(&kMutex); // fails only on misuse
}

template <pthread_mutex_t &kMutex> void unlock() {
    (void)pthread_mutex_unlock(&kMutex);
}

template <pthread_mutex_t &kMutex>
dlist_node *find(dlist *list, RipCompare compare, const void *key) {
    dlist_node *entry = nullptr;
    (void)ucRipListFind(list, compare, lock<kMutex>, unlock<kMutex>, key, &entry);
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
    return find<ucRipVrfListMu>(gRipVrfList, ripVrfNameCmp, name);
}

dlist_node *findNeighbor(const RipVrfNode &vrf, const AddressKey &key) {
    return find<ucRipVrfListMu>(vrf.neighbors, ripNeighborCmp, &key);
}

dlist_node *findNetwork(const RipVrfNode &vrf, const NetworkKey &key) {
    return find<ucRipVrfListMu>(vrf.networks, ripNetworkCmp, &key);
}

dlist_node *findInterface(const RipNetIf &key) {
    return find<ucRipIfListMu>(gRipIfList, ripNetIfCmp, &key);
}

template <class Record> void handOut(Record **out, void *record) {
    if (out != nullptr) {
        *out = static_cast<Record *>(record);
    }
}

template <pthread_mutex_t &kMutex> uint32_t append(dlist *list, void *record) {
    const Locked locked(kMutex);
    return dlistAppend(list, record) == 0 ? kOk : kListFailed;
}

template <pthread_mutex_t &kMutex> uint32_t remove(dlist *list, dlist_node *entry) {
    if (entry == nullptr) {
        return kOk;
    }
    const Locked locked(kMutex);
    return dlistDelete(list, entry) == 0 ? kOk : kFailed;
}

/// Hands out the record of a found entry, or a new one that init has filled.
template <pthread_mutex_t &kMutex, class Record, class Init>
uint32_t findOrAppend(dlist_node *found, dlist *list, Record **out, Init init) {
    if (found != nullptr) {
        handOut(out, found->data);
        return kOk;
    }
    auto *record = static_cast<Record *>(malloc(sizeof(Record)));
    if (record == nullptr) {
        return kListFailed;
    }
    if (init(record) != kOk || append<kMutex>(list, record) != kOk) {
        free(record);
        return kListFailed;
    }
    handOut(out, record);
    return kOk;
}

/// Makes and adds the instance that a search did not find.
uint32_t appendVrf(const char *name, RipVrfNode **out) {
    logAppend(484);
    auto *record = static_cast<RipVrfNode *>(malloc(sizeof(RipVrfNode)));
    if (record == nullptr) {
        return kFailed;
    }
    if (ripVrfNodeInit(record, name) != kOk) {
        free(record);
        return kListFailed;
    }
    logAppend(489);
    if (append<ucRipVrfListMu>(gRipVrfList, record) != kOk) {
        free(record);
        return kListFailed;
    }
    logAppend(496);
    handOut(out, record);
    return kOk;
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
    return kOk;
}

uint32_t ucRipVrfRemoveByName(const char *name) {
    return name == nullptr ? kFailed : remove<ucRipVrfListMu>(gRipVrfList, findVrf(name));
}

uint32_t ucRipVrfFindByName(const char *name, RipVrfNode **out) {
    const dlist_node *found = findVrf(name);
    if (found == nullptr) {
        return kFailed;
    }
    handOut(out, found->data);
    return kOk;
}

uint32_t ucRipNeighborAppend(const char *vrfName, const char *addr, RipNeighborNode **out) {
    RipVrfNode *vrf = nullptr;
    if (addr == nullptr || out == nullptr || ucRipVrfFindByName(vrfName, &vrf) != kOk) {
        return kFailed;
    }
    return findOrAppend<ucRipVrfListMu>(
        findNeighbor(*vrf, AddressKey(addr)), vrf->neighbors, out,
        [addr](RipNeighborNode *record) { return ripNeighborNodeInit(record, addr); });
}

uint32_t ucRipNeighborRemoveByName(const char *vrfName, const char *addr) {
    RipVrfNode *vrf = nullptr;
    if (addr == nullptr || ucRipVrfFindByName(vrfName, &vrf) != kOk) {
        return kFailed;
    }
    return remove<ucRipVrfListMu>(vrf->neighbors, findNeighbor(*vrf, AddressKey(addr)));
}

uint32_t ucRipNetworkNodeAppend(const char *vrfName, const char *ip, const char *mask,
                                RipNetworkNode **out) {
    RipVrfNode *vrf = nullptr;
    if (ip == nullptr || mask == nullptr || out == nullptr ||
        ucRipVrfFindByName(vrfName, &vrf) != kOk) {
        return kFailed;
    }
    const NetworkKey key = {AddressKey(ip), AddressKey(mask)};
    return findOrAppend<ucRipVrfListMu>(
        findNetwork(*vrf, key), vrf->networks, out,
        [ip, mask](RipNetworkNode *record) { return ripNetworkNodeInit(record, ip, mask); });
}

uint32_t ucRipNetworkNodeRemoveByName(const char *vrfName, const char *ip, const char *mask) {
    RipVrfNode *vrf = nullptr;
    if (ip == nullptr || mask == nullptr || ucRipVrfFindByName(vrfName, &vrf) != kOk) {
        return kFailed;
    }
    const NetworkKey key = {AddressKey(ip), AddressKey(mask)};
    return remove<ucRipVrfListMu>(vrf->networks, findNetwork(*vrf, key));
}

uint32_t ucRipInterfaceNodeAppend(RipNetIf key, RipInterfaceNode **out) {
    return findOrAppend<ucRipIfListMu>(
        findInterface(key), gRipIfList, out,
        [key](RipInterfaceNode *record) { return ripInterfaceNodeInit(record, key); });
}

uint32_t ucRipInterfaceNodeRemoveByKey(RipNetIf key) {
    return remove<ucRipIfListMu>(gRipIfList, findInterface(key));
}

uint32_t ucRipIfFindByNetIf(RipNetIf key, RipInterfaceNode **out) {
    const dlist_node *found = findInterface(key);
    if (out == nullptr || found == nullptr) {
        return kFailed;
    }
    *out = static_cast<RipInterfaceNode *>(found->data);
    return kOk;
}
