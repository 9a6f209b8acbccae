// SPDX-License-Identifier: Apache-2.0
// The model block as its own routines see it: the result codes, the lock, slots that may be
// missing, and how a number is stored in a field.
#ifndef FRRUCI_OSPF_UC_OSPF_BLOCK_H
#define FRRUCI_OSPF_UC_OSPF_BLOCK_H

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "ospf/uc_ospf.h"

namespace frruci::ospf {

// Results of the model; which one says "not found" differs by family and is part of the interface.
inline constexpr uint32_t kDone = 0;
inline constexpr uint32_t kNothingThere = 1;
inline constexpr uint32_t kRemovalFailed = 3;
inline constexpr uint32_t kNoRoom = 4;
inline constexpr uint32_t kNotFound = static_cast<uint32_t>(-2);
inline constexpr uint32_t kNone = static_cast<uint32_t>(-1);

inline constexpr uint32_t kSlots = 16;
inline constexpr uint32_t kEntries = 64;

/// Holds the model's mutex for a scope. Not recursive: a holder calls no routine that takes it.
class ModelLock {
public:
    ModelLock() { (void)pthread_mutex_lock(&uc_ospf_mutex); } // cannot fail on a default mutex
    ~ModelLock() { (void)pthread_mutex_unlock(&uc_ospf_mutex); }
    ModelLock(const ModelLock &) = delete;
    ModelLock &operator=(const ModelLock &) = delete;
};

/// The slot's record; null without a model or for a slot out of range. Call it with the lock held.
inline OspfProcessCfg *processAt(uint32_t slot) {
    return pucOspf != nullptr && slot < kSlots ? &pucOspf->process[slot] : nullptr;
}

/// The interface entry; null without a model or out of range. Call it with the lock held.
inline OspfInterfaceEntry *entryAt(uint32_t index) {
    return pucOspf != nullptr && index < kEntries ? &pucOspf->interface[index] : nullptr;
}

/// The 32-bit number at value, which may lie anywhere; null reads as 0.
inline int32_t numberAt(const void *value) {
    int32_t number = 0;
    if (value != nullptr) {
        memcpy(&number, value, sizeof number);
    }
    return number;
}

/// Row of a table of settings by key: stores the value (set) or the field's default into a record.
template <typename Record> using StoreSetting = void (*)(Record &record, bool set, const void *);

/// A number, narrowed to its field.
template <auto Field, const auto &Defaults, typename Record>
void storeNumber(Record &record, bool set, const void *value) {
    using Number = std::remove_reference_t<decltype(record.*Field)>;
    record.*Field = set ? static_cast<Number>(numberAt(value)) : Defaults.*Field;
}

/// The redistribution handle that the fixed clear of ucIpOspfAuthKey has damaged; null when none
/// is. Nothing may be read through it.
extern dlist *damagedHandle;

/// A record's list as far as it may be followed: null for the damaged handle.
inline dlist *readable(dlist *list) {
    return list != damagedHandle ? list : nullptr;
}

} // namespace frruci::ospf

#endif
