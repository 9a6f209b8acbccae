// SPDX-License-Identifier: Apache-2.0
// The model block, its process slots, and the router-level settings by key.

#include "ospf/uc_ospf.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <cstring>

#include "common/dlist.h"
#include "common/lock.h"
#include "common/table.h"
#include "ospf/field.h"
#include "ospf/numbers.h"
#include "ospf/results.h"
#include "ospf/uc_ospf_block.h"
#include "ospf/uc_ospf_defaults.h"

OspfModelBlock *pucOspf = nullptr;
pthread_mutex_t uc_ospf_mutex = PTHREAD_MUTEX_INITIALIZER;

namespace {

using frruci::common::isInOrder;
using frruci::common::Locked;
using namespace frruci::ospf;

constexpr uint8_t kEnabled = 1;

/// In the order in which a reset renews them. Fixed by the interface: the virtual links come twice.
constexpr ListHandle kResetOrder[] = {kNetworks.handle,        kAreas.handle,
                                      kAreaAggregates.handle,  kVirtualLinks.handle,
                                      kRedistributions.handle, kVirtualLinks.handle};

void renewList(dlist *&list) {
    if (list != nullptr) {
        dlistDestroy(list);
    }
    list = dlistCreate(free, nullptr); // without memory there is none, and nothing can be inserted
}

void resetRecord(OspfProcessCfg &record) {
    OspfProcessCfg fresh = kProcessDefaults;
    for (const auto list : kResetOrder) {
        fresh.*list = record.*list;
    }
    record = fresh;
    for (const auto list : kResetOrder) {
        renewList(record.*list);
    }
}

uint32_t firstFreeSlot() {
    const Locked lock(uc_ospf_mutex);
    uint32_t slot = 0;
    while (slot < kSlots && pucOspf->process[slot].enabled != 0) {
        ++slot;
    }
    return slot;
}

void storeRouterId(OspfProcessCfg &record, bool set, const void *value) {
    record.routerIdSet = set ? 1 : 0;
    in_addr address = {};
    if (set && value != nullptr && inet_aton(static_cast<const char *>(value), &address) != 0) {
        record.routerId = address.s_addr;
    }
}

void storeSpfTimers(OspfProcessCfg &record, bool set, const void *value) {
    uint16_t timers[] = {kProcessDefaults.spfDelay, kProcessDefaults.spfInitialHold,
                         kProcessDefaults.spfMaximumHold};
    if (set && value != nullptr) {
        memcpy(timers, value, sizeof timers);
    }
    record.spfDelay = timers[0];
    record.spfInitialHold = timers[1];
    record.spfMaximumHold = timers[2];
}

struct NumberSetting {
    RouterKey key;
    Field<OspfProcessCfg> field;
    bool isFlag; ///< a set stores 1, whatever the value
};

/// In the order of their keys; the router id comes before them and the SPF timers after them.
constexpr NumberSetting kNumberSettings[] = {
    {kGracefulRestartKey,    FRRUCI_FIELD(OspfProcessCfg, gracefulRestart),      true },
    {kReferenceBandwidthKey, FRRUCI_FIELD(OspfProcessCfg, referenceBandwidth),   false},
    {kRfc1583Key,            FRRUCI_FIELD(OspfProcessCfg, rfc1583Compatibility), true },
    {kDefaultMetricKey,      FRRUCI_FIELD(OspfProcessCfg, defaultMetric),        false},
    {kDistanceKey,           FRRUCI_FIELD(OspfProcessCfg, adminDistance),        false},
    {kPassiveDefaultKey,     FRRUCI_FIELD(OspfProcessCfg, passiveDefault),       true },
    {kMaximumPathsKey,       FRRUCI_FIELD(OspfProcessCfg, maximumPaths),         false},
};
static_assert(isInOrder<&NumberSetting::key>(kNumberSettings, kGracefulRestartKey));

void storeByKey(OspfProcessCfg &record, OspfBasicParaKey key, bool set, const void *value) {
    if (key == kRouterIdKey) {
        return storeRouterId(record, set, value);
    }
    if (key == kSpfTimersKey) {
        return storeSpfTimers(record, set, value);
    }
    if (key > kSpfTimersKey) {
        return;
    }
    const NumberSetting &setting = kNumberSettings[key - kGracefulRestartKey];
    const uint32_t given = setting.isFlag ? 1 : wordAt(value);
    storeNumber(record, setting.field, set ? given : numberOf(kProcessDefaults, setting.field));
}

} // namespace

uint32_t ucOspfInit(void) {
    if (pthread_mutex_init(&uc_ospf_mutex, nullptr) != 0) {
        return kOutOfMemory;
    }
    auto *block = static_cast<OspfModelBlock *>(calloc(1, sizeof(OspfModelBlock)));
    if (block == nullptr) {
        return kOutOfMemory;
    }
    pucOspf = block;
    for (uint32_t slot = 0; slot < kSlots; ++slot) {
        const uint32_t result = ucOspfDefaultProcessByNum(slot);
        if (result != kSuccess) {
            return result;
        }
    }
    const Locked lock(uc_ospf_mutex);
    for (OspfInterfaceEntry &entry : block->interface) {
        entry = kInterfaceDefaults;
    }
    return kSuccess;
}

uint32_t ucOspfDefaultProcessByNum(uint32_t slot) {
    if (pucOspf == nullptr) {
        return kFailed;
    }
    const Locked lock(uc_ospf_mutex);
    OspfProcessCfg *record = processAt(slot);
    if (record == nullptr) {
        return kFailed;
    }
    pucOspf->processWord[slot] = 0;
    resetRecord(*record);
    return kSuccess;
}

uint32_t ucOspfEnableProcess(uint16_t processId) {
    if (pucOspf == nullptr) {
        return kFailed;
    }
    const uint32_t slot = firstFreeSlot();
    if (slot == kSlots) {
        return kNoFreeSlot;
    }
    // Chosen, reset and claimed under three holds: the reset takes the lock itself.
    (void)ucOspfDefaultProcessByNum(slot); // the slot is there
    const Locked lock(uc_ospf_mutex);
    pucOspf->process[slot].enabled = kEnabled;
    pucOspf->process[slot].processId = processId;
    return kSuccess;
}

uint32_t ucOspfProcessIsEnable(uint32_t slot) {
    const Locked lock(uc_ospf_mutex);
    const OspfProcessCfg *record = processAt(slot);
    return record != nullptr && record->enabled == kEnabled ? 1 : 0;
}

uint32_t ucOspfHasProcessId(uint16_t processId) {
    const Locked lock(uc_ospf_mutex);
    for (uint32_t slot = 0; slot < kSlots; ++slot) {
        const OspfProcessCfg *record = processAt(slot);
        // Fixed by the interface: slots that are not enabled count too, so id 0 finds a reset one.
        if (record != nullptr && record->processId == processId) {
            return slot;
        }
    }
    return kNoSlot;
}

uint32_t ucOspfGetProcessPid(uint32_t slot) {
    const Locked lock(uc_ospf_mutex);
    return processAt(slot) != nullptr ? pucOspf->processWord[slot] : 0;
}

uint32_t ucOspfGetCfg(uint32_t slot, OspfProcessCfg *out) {
    const Locked lock(uc_ospf_mutex);
    return copyRecord<OspfProcessCfg>(out, processAt(slot));
}

uint32_t ucOspfSetCfg(uint32_t slot, const OspfProcessCfg *in) {
    const Locked lock(uc_ospf_mutex);
    return copyRecord(processAt(slot), in);
}

uint32_t ucIpOpsfBasicSetParaByKey(uint16_t processId, uint32_t set, const void *value,
                                   OspfBasicParaKey key) {
    const uint32_t slot = ucOspfHasProcessId(processId);
    if (slot == kNoSlot) {
        return kSuccess; // Fixed by the interface: an unknown id is no failure.
    }
    OspfProcessCfg record;
    const uint32_t result = ucOspfGetCfg(slot, &record);
    if (result != kSuccess) {
        return result;
    }
    storeByKey(record, key, set != 0, value);
    return ucOspfSetCfg(slot, &record);
}
