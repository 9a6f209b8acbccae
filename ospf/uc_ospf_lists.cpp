// SPDX-License-Identifier: Apache-2.0
// The lists of a process slot: records by key, newest first, and the redistributions by source.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "common/dlist.h"
#include "common/lock.h"
#include "ospf/field.h"
#include "ospf/numbers.h"
#include "ospf/results.h"
#include "ospf/uc_ospf.h"
#include "ospf/uc_ospf_block.h"
#include "ospf/uc_ospf_clear.h"
#include "ospf/uc_ospf_defaults.h"

namespace {

using frruci::common::Locked;
using namespace frruci::ospf;

constexpr int32_t kEqual = 0;
constexpr int32_t kDifferent = -1;

constexpr uint32_t kFlagSet = 1;

struct ListFamily {
    ListHandle list;
    dlist_keycmp_fn compare;
    std::size_t recordBytes;
};

template <typename Record>
constexpr ListFamily family(ListOf<Record> list, dlist_keycmp_fn compare) {
    return {list.handle, compare, sizeof(Record)};
}

/// By ListKind, from 1 on.
constexpr ListFamily kFamilies[] = {
    family(kAreas, ucOspfAreaIdComp),
    family(kAreaAggregates, ucOspfAreaAggComp),
    family(kVirtualLinks, ucOspfVirtualLinkComp),
    family(kNetworks, ucOspfNetworkComp),
};

const ListFamily *familyOf(OspfListKind kind) {
    return kind >= kAreaKind && kind <= kNetworkKind ? &kFamilies[kind - kAreaKind] : nullptr;
}

/// The slot's list; null where there is none that may be read. Call it with the lock held.
dlist *listAt(uint32_t slot, ListHandle handle) {
    const OspfProcessCfg *record = processAt(slot);
    return record != nullptr ? readableList(record->*handle) : nullptr;
}

dlist_node *findNode(dlist *list, dlist_keycmp_fn compare, const void *key) {
    if (list == nullptr || key == nullptr) {
        return nullptr;
    }
    return dlistFindByKey(list, compare, const_cast<void *>(key)); // comparators change nothing
}

void *findRecord(uint32_t slot, const void *key, OspfListKind kind) {
    const ListFamily *family = familyOf(kind);
    if (family == nullptr) {
        return nullptr;
    }
    const dlist_node *node = findNode(listAt(slot, family->list), family->compare, key);
    return node != nullptr ? node->data : nullptr;
}

bool prepend(dlist *list, void *record) {
    return list != nullptr && record != nullptr && dlistPrepend(list, record) == 0;
}

/// Inserts a copy of the caller's record; a copy that the list did not take is released.
template <typename Record>
uint32_t insertCopy(uint32_t slot, const Record *record, OspfListKind kind) {
    if (record == nullptr) {
        return kOutOfMemory;
    }
    void *copy = malloc(sizeof(Record));
    if (copy == nullptr) {
        return kOutOfMemory;
    }
    memcpy(copy, record, sizeof(Record));
    const uint32_t result = ucOspfDlistInsert(slot, copy, kind);
    if (result != kSuccess) {
        free(copy);
    }
    return result;
}

bool anyRecord(const void * /*record*/) {
    return true;
}

/// Removes the first record with that key, when accept(record) holds for it.
template <typename Accept>
uint32_t removeFirst(uint32_t slot, const void *key, OspfListKind kind, Accept accept) {
    const Locked lock(uc_ospf_mutex);
    const ListFamily &family = *familyOf(kind);
    dlist *list = listAt(slot, family.list);
    dlist_node *node = findNode(list, family.compare, key);
    if (node == nullptr || !accept(node->data)) {
        return kFailed;
    }
    return dlistDelete(list, node) == 0 ? kSuccess : kRemovalFailed;
}

constexpr uint32_t lowHalf(uint64_t word) {
    return static_cast<uint32_t>(word);
}

constexpr uint32_t highHalf(uint64_t word) {
    return static_cast<uint32_t>(word >> 32);
}

/// Keys are the first words of their records.
int32_t compareWords(const void *key, const void *data, std::size_t words) {
    if (key == nullptr || data == nullptr) {
        return kDifferent;
    }
    return memcmp(key, data, words * sizeof(uint32_t)) == 0 ? kEqual : kDifferent;
}

void storeRedistribution(OspfRedistributeCfg &record, const OspfRedistributeCfg &given,
                         bool hasMetric, bool hasMetricType) {
    if (hasMetric) {
        record.metric = given.metric;
    }
    if (hasMetricType) {
        record.metricType = given.metricType;
    }
    if (given.source == kSourceOspf) {
        record.sourceProcessId = given.sourceProcessId;
    }
}

/// A new record of that source at the head of the list; null without memory.
OspfRedistributeCfg *addRedistribution(dlist *list, OspfRedistSource source) {
    auto *record = static_cast<OspfRedistributeCfg *>(malloc(sizeof(OspfRedistributeCfg)));
    if (record == nullptr) {
        return nullptr;
    }
    *record = kRedistributeDefaults;
    record->source = source;
    record->set = kFlagSet;
    if (!prepend(list, record)) {
        free(record);
        return nullptr;
    }
    return record;
}

} // namespace

uint32_t ucOspfDlistGetCfg(uint32_t slot, const void *key, void *record, OspfListKind kind) {
    const Locked lock(uc_ospf_mutex);
    const void *found = findRecord(slot, key, kind);
    if (found == nullptr || record == nullptr) {
        return kNotFound;
    }
    memcpy(record, found, familyOf(kind)->recordBytes);
    return kSuccess;
}

uint32_t ucOspfDlistSetCfg(uint32_t slot, const void *key, const void *record, OspfListKind kind) {
    const Locked lock(uc_ospf_mutex);
    void *found = findRecord(slot, key, kind);
    if (found == nullptr || record == nullptr) {
        return kNotFound;
    }
    memcpy(found, record, familyOf(kind)->recordBytes);
    return kSuccess;
}

uint32_t ucOspfDlistInsert(uint32_t slot, void *record, OspfListKind kind) {
    const Locked lock(uc_ospf_mutex);
    const ListFamily *family = familyOf(kind);
    if (family == nullptr) {
        return kSuccess; // Fixed by the interface: an unknown kind is no failure.
    }
    return prepend(listAt(slot, family->list), record) ? kSuccess : kOutOfMemory;
}

uint32_t ucOspfAreaGetCfg(uint32_t slot, uint32_t areaId, OspfAreaCfg *record) {
    return ucOspfDlistGetCfg(slot, &areaId, record, kAreaKind);
}

uint32_t ucOspfAreaSetCfg(uint32_t slot, uint32_t areaId, const OspfAreaCfg *record) {
    return ucOspfDlistSetCfg(slot, &areaId, record, kAreaKind);
}

uint32_t ucOspfAreaAggGetCfg(uint32_t slot, uint64_t areaIdPrefix, uint32_t mask,
                             OspfAreaAggCfg *record) {
    const uint32_t key[] = {lowHalf(areaIdPrefix), highHalf(areaIdPrefix), mask};
    return ucOspfDlistGetCfg(slot, key, record, kAreaAggregateKind);
}

uint32_t ucOspfAreaAggSetCfg(uint32_t slot, uint64_t areaIdPrefix, uint32_t mask,
                             const OspfAreaAggCfg *record) {
    const uint32_t key[] = {lowHalf(areaIdPrefix), highHalf(areaIdPrefix), mask};
    return ucOspfDlistSetCfg(slot, key, record, kAreaAggregateKind);
}

uint32_t ucOspfVirtualLinkGetCfg(uint32_t slot, uint64_t areaIdPeer, OspfVirtualLinkCfg *record) {
    const uint32_t key[] = {lowHalf(areaIdPeer), highHalf(areaIdPeer)};
    return ucOspfDlistGetCfg(slot, key, record, kVirtualLinkKind);
}

uint32_t ucOspfVirtualLinkSetCfg(uint32_t slot, uint64_t areaIdPeer,
                                 const OspfVirtualLinkCfg *record) {
    const uint32_t key[] = {lowHalf(areaIdPeer), highHalf(areaIdPeer)};
    return ucOspfDlistSetCfg(slot, key, record, kVirtualLinkKind);
}

uint32_t ucOspfNetworkGetCfg(uint32_t slot, uint64_t addressMask, OspfNetworkCfg *record) {
    const uint32_t key[] = {lowHalf(addressMask), highHalf(addressMask)};
    return ucOspfDlistGetCfg(slot, key, record, kNetworkKind);
}

uint32_t ucOspfNetworkSetCfg(uint32_t slot, uint64_t addressMask, const OspfNetworkCfg *record) {
    const uint32_t key[] = {lowHalf(addressMask), highHalf(addressMask)};
    return ucOspfDlistSetCfg(slot, key, record, kNetworkKind);
}

uint32_t ucOspfAreaInsert(uint32_t slot, const OspfAreaCfg *record) {
    return insertCopy(slot, record, kAreaKind);
}

uint32_t ucOspfAreaAggInsert(uint32_t slot, const OspfAreaAggCfg *record) {
    return insertCopy(slot, record, kAreaAggregateKind);
}

uint32_t ucOspfVirtualLinkInsert(uint32_t slot, const OspfVirtualLinkCfg *record) {
    return insertCopy(slot, record, kVirtualLinkKind);
}

uint32_t ucOspfNetworkInsert(uint32_t slot, const OspfNetworkCfg *record) {
    return insertCopy(slot, record, kNetworkKind);
}

uint32_t ucOspfAreaInit(OspfAreaCfg *record) {
    if (record != nullptr) {
        *record = kAreaDefaults;
    }
    return kSuccess;
}

uint32_t ucOspfAreaAggInit(OspfAreaAggCfg *record) {
    if (record != nullptr) {
        record->areaId = kAreaAggDefaults.areaId;
        record->cost = kAreaAggDefaults.cost;
        record->advertise = kAreaAggDefaults.advertise;
    }
    return kSuccess;
}

uint32_t ucOspfVirtualLinkInit(OspfVirtualLinkCfg *record) {
    if (record != nullptr) {
        *record = kVirtualLinkDefaults;
    }
    return kSuccess;
}

uint32_t ucOspfRedistributeInit(OspfRedistributeCfg *record) {
    if (record != nullptr) {
        *record = kRedistributeDefaults;
    }
    return kSuccess;
}

uint32_t ucOspfNetworkInit(OspfNetworkCfg *record) {
    if (record != nullptr) {
        record->areaId = 0;
    }
    return kSuccess;
}

uint32_t ucOspfAreaDelete(uint32_t slot, uint32_t areaId, uint32_t areaType) {
    return removeFirst(slot, &areaId, kAreaKind, [areaType](const void *record) {
        return static_cast<const OspfAreaCfg *>(record)->areaType == areaType;
    });
}

uint32_t ucOspfAreaRangeDelete(uint32_t slot, uint64_t areaIdPrefix, uint32_t mask) {
    const uint32_t key[] = {lowHalf(areaIdPrefix), highHalf(areaIdPrefix), mask};
    return removeFirst(slot, key, kAreaAggregateKind, anyRecord);
}

uint32_t ucOspfVirtualLinkDelete(uint32_t slot, uint64_t areaIdPeer) {
    const uint32_t key[] = {lowHalf(areaIdPeer), highHalf(areaIdPeer)};
    return removeFirst(slot, key, kVirtualLinkKind, anyRecord);
}

uint32_t ucOspfNetworkDelete(uint32_t slot, uint64_t addressMask) {
    const uint32_t key[] = {lowHalf(addressMask), highHalf(addressMask)};
    return removeFirst(slot, key, kNetworkKind, anyRecord);
}

uint32_t ucOspfRedistribute(uint32_t slot, uint32_t set, uint32_t source, uint32_t metric,
                            uint32_t hasMetric, uint32_t metricType, uint32_t hasMetricType,
                            uint32_t sourceProcessId) {
    const Locked lock(uc_ospf_mutex);
    dlist *list = listAt(slot, kRedistributions.handle);
    dlist_node *node = findNode(list, ucOspfRedistributeComp, &source);
    if (set != kFlagSet) {
        if (node == nullptr) {
            return kFailed;
        }
        return dlistDelete(list, node) == 0 ? kSuccess : kOutOfMemory;
    }
    const OspfRedistributeCfg given = {
        .source = static_cast<OspfRedistSource>(source),
        .set = kFlagSet,
        .metric = metric,
        .metricType = static_cast<OspfMetricType>(metricType),
        .sourceProcessId = static_cast<uint16_t>(sourceProcessId),
    };
    auto *record = node != nullptr ? static_cast<OspfRedistributeCfg *>(node->data)
                                   : addRedistribution(list, given.source);
    if (record == nullptr) {
        return kOutOfMemory;
    }
    storeRedistribution(*record, given, hasMetric == kFlagSet, hasMetricType == kFlagSet);
    return kSuccess;
}

int32_t ucOspfAreaIdComp(void *key, void *data) {
    return compareWords(key, data, 1);
}

int32_t ucOspfAreaAggComp(void *key, void *data) {
    return compareWords(key, data, 3);
}

int32_t ucOspfVirtualLinkComp(void *key, void *data) {
    return compareWords(key, data, 2);
}

int32_t ucOspfNetworkComp(void *key, void *data) {
    return compareWords(key, data, 2);
}

int32_t ucOspfRedistributeComp(void *key, void *data) {
    if (key == nullptr || data == nullptr) {
        return kDifferent;
    }
    const auto source = wordAt(key);
    return static_cast<const OspfRedistributeCfg *>(data)->source == source ? kEqual : kDifferent;
}
