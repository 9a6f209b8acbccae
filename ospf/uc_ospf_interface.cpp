// SPDX-License-Identifier: Apache-2.0
// The model's interface entries: one for each VLAN, taken with its first setting and kept.

#include <cstdint>
#include <cstring>
#include <iterator>

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

constexpr uint32_t kInUse = 1;

/// By OspfInfParaKey.
constexpr Field<OspfInterfaceEntry> kKeyFields[] = {
    FRRUCI_FIELD(OspfInterfaceEntry, helloInterval),
    FRRUCI_FIELD(OspfInterfaceEntry, deadInterval),
    FRRUCI_FIELD(OspfInterfaceEntry, retransmitInterval),
    FRRUCI_FIELD(OspfInterfaceEntry, transmitDelay),
    FRRUCI_FIELD(OspfInterfaceEntry, cost),
    FRRUCI_FIELD(OspfInterfaceEntry, priority),
};
static_assert(std::size(kKeyFields) == kInterfaceKeys);

/// Copies a key's bytes, whatever its text's length; no key is all zeroes.
template <std::size_t N> void copyKey(uint8_t (&field)[N], const char *key) {
    if (key == nullptr) {
        memset(field, 0, N);
    } else {
        memcpy(field, key, N);
    }
}

/// Runs change(entry, isNew) on the VLAN's entry, which a set takes when there is none yet. The
/// entry is the model's own, under the lock.
template <typename Change> uint32_t withEntry(uint32_t vlanId, bool set, Change change) {
    const Locked lock(uc_ospf_mutex);
    uint32_t index = ucOspfFindInterfaceVlan(vlanId);
    const bool isNew = index == kNotFound;
    if (isNew) {
        if (!set) {
            return kNotFound;
        }
        index = ucOspfFindFreeInterface();
        if (index == kNoFreeEntry) {
            return kNoFreeEntry;
        }
        pucOspf->interface[index].inUse = kInUse;
        pucOspf->interface[index].vlanId = vlanId;
    }
    change(pucOspf->interface[index], isNew);
    return kSuccess;
}

} // namespace

uint32_t ucOspfGetInCfg(uint32_t index, OspfInterfaceEntry *out) {
    const Locked lock(uc_ospf_mutex);
    return copyRecord<OspfInterfaceEntry>(out, entryAt(index));
}

uint32_t ucOspfSetInCfg(uint32_t index, const OspfInterfaceEntry *in) {
    const Locked lock(uc_ospf_mutex);
    return copyRecord(entryAt(index), in);
}

uint32_t ucOspfGetInEntry(OspfInterfaceEntry *out) {
    const Locked lock(uc_ospf_mutex);
    if (pucOspf == nullptr || out == nullptr) {
        return kFailed;
    }
    memcpy(out, pucOspf->interface, sizeof pucOspf->interface);
    return kSuccess;
}

uint32_t ucOspfFindFreeInterface(void) {
    for (uint32_t index = 0; index < kEntries; ++index) {
        const OspfInterfaceEntry *entry = entryAt(index);
        if (entry != nullptr && entry->inUse == 0) {
            return index;
        }
    }
    return kNoFreeEntry;
}

uint32_t ucOspfFindInterfaceVlan(uint32_t vlanId) {
    for (uint32_t index = 0; index < kEntries; ++index) {
        const OspfInterfaceEntry *entry = entryAt(index);
        if (entry != nullptr && entry->inUse == kInUse && entry->vlanId == vlanId) {
            return index;
        }
    }
    return kNotFound;
}

uint32_t ucIpOpsfInfSetParaByKey(uint32_t vlanId, uint32_t set, const void *value,
                                 OspfInfParaKey key) {
    return withEntry(vlanId, set != 0, [&](OspfInterfaceEntry &entry, bool isNew) {
        if (key < std::size(kKeyFields)) {
            // Fixed by the interface: entry 0, whichever entry is the VLAN's.
            OspfInterfaceEntry &target = isNew ? entry : pucOspf->interface[0];
            const auto field = kKeyFields[key];
            storeNumber(target, field,
                        set != 0 ? wordAt(value) : numberOf(kInterfaceDefaults, field));
        }
    });
}

uint32_t ucIpOspfAuth(uint32_t vlanId, uint32_t set, uint32_t authType) {
    return withEntry(vlanId, set != 0, [=](OspfInterfaceEntry &entry, bool /*isNew*/) {
        if (set != 0) {
            entry.authType = static_cast<OspfAuthType>(authType);
        } else if (entry.authType == authType || authType == kSimplePassword) {
            entry.authType = kInterfaceDefaults.authType;
        }
    });
}

uint32_t ucIpOspfAuthKey(uint32_t vlanId, uint32_t set, const char *key) {
    return withEntry(vlanId, set != 0, [=](OspfInterfaceEntry &entry, bool isNew) {
        copyKey(entry.simpleKey, set != 0 ? key : nullptr);
        if (isNew) {
            clearFixedBytes();
        }
    });
}

uint32_t ucIpOspfMtuIgnore(uint32_t vlanId, uint32_t flag) {
    return withEntry(vlanId, flag != 0,
                     [=](OspfInterfaceEntry &entry, bool /*isNew*/) { entry.mtuIgnore = flag; });
}

uint32_t ucIpOspfNetwork(uint32_t vlanId, uint32_t set, uint32_t networkType) {
    return withEntry(vlanId, set != 0, [=](OspfInterfaceEntry &entry, bool /*isNew*/) {
        entry.networkType =
            set != 0 ? static_cast<OspfNetworkType>(networkType) : kInterfaceDefaults.networkType;
    });
}

uint32_t ucIpOspfAuthM5dKey(uint32_t vlanId, uint32_t set, uint32_t keyId, const char *key) {
    return withEntry(vlanId, set != 0, [=](OspfInterfaceEntry &entry, bool /*isNew*/) {
        entry.md5KeyId = set != 0 ? static_cast<uint8_t>(keyId) : kInterfaceDefaults.md5KeyId;
        copyKey(entry.md5Key, set != 0 ? key : nullptr);
    });
}
