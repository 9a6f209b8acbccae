/* SPDX-License-Identifier: Apache-2.0 */
/* The model block as its own routines see it: slots and entries that may be missing, and which list
 * holds which records. */
#ifndef FRRUCI_OSPF_UC_OSPF_BLOCK_H
#define FRRUCI_OSPF_UC_OSPF_BLOCK_H

#include <cstdint>

#include "ospf/results.h"
#include "ospf/uc_ospf.h"

namespace frruci::ospf {

inline constexpr uint32_t kSlots = 16;
inline constexpr uint32_t kEntries = 64;

/// The slot's record; null without a model or for a slot out of range. Call it with the lock held.
inline OspfProcessCfg *processAt(uint32_t slot) {
    return pucOspf != nullptr && slot < kSlots ? &pucOspf->process[slot] : nullptr;
}

/// The interface entry; null without a model or out of range. Call it with the lock held.
inline OspfInterfaceEntry *entryAt(uint32_t index) {
    return pucOspf != nullptr && index < kEntries ? &pucOspf->interface[index] : nullptr;
}

/// Copies a record out of or into the block; one that is missing, or the caller's null, fails.
template <typename Record> uint32_t copyRecord(Record *to, const Record *from) {
    if (to == nullptr || from == nullptr) {
        return kFailed;
    }
    *to = *from;
    return kSuccess;
}

using ListHandle = dlist *OspfProcessCfg::*;

/// The list of a slot that holds that kind of record.
template <typename Record> struct ListOf { ListHandle handle; };

inline constexpr ListOf<OspfNetworkCfg> kNetworks = {&OspfProcessCfg::networks};
inline constexpr ListOf<OspfAreaCfg> kAreas = {&OspfProcessCfg::areas};
inline constexpr ListOf<OspfAreaAggCfg> kAreaAggregates = {&OspfProcessCfg::areaAggregates};
inline constexpr ListOf<OspfVirtualLinkCfg> kVirtualLinks = {&OspfProcessCfg::virtualLinks};
inline constexpr ListOf<OspfRedistributeCfg> kRedistributions = {&OspfProcessCfg::redistributions};

} // namespace frruci::ospf

#endif
