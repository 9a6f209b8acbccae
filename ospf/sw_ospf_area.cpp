// SPDX-License-Identifier: Apache-2.0
// Area commands: kinds of area, their default cost, and their ranges.

#include "common/address.h"
#include "common/text.h"
#include "ospf/command.h"
#include "ospf/numbers.h"
#include "ospf/sw_ospf.h"
#include "ospf/uc_ospf_defaults.h"

namespace {

using frruci::common::format;
using namespace frruci::ospf;

/// By OspfAreaType. Fixed by the interface: without a type word "no-summary" joins the area id.
constexpr const char *kTypeWords[] = {"", " stub ", " nssa "};

/// By advertise mode; other modes have no word.
constexpr const char *kAdvertiseWords[] = {"advertise", "not-advertise"};

void composeArea(CommandText &command, const char *area, uint32_t set, uint32_t areaType) {
    format(command, "%sarea %s", set != 0 ? "" : "no ", orEmpty(area));
    append(command, "%s", textAt(kTypeWords, areaType));
}

/// Brings an accepted command into a slot: change(slot, record) for the area's record when there is
/// one, else, when set, a new record that fill(record) completes.
template <typename Change, typename Fill>
uint32_t recordArea(uint32_t slot, const char *area, uint32_t set, Change change, Fill fill) {
    const uint32_t areaId = sw_ospf_inet_aton(area);
    OspfAreaCfg record = kAreaDefaults;
    if (ucOspfAreaGetCfg(slot, areaId, &record) == kSuccess) {
        return change(slot, record);
    }
    if (set == 0) {
        return kNotFound;
    }
    record.areaId = areaId;
    fill(record);
    return ucOspfAreaInsert(slot, &record);
}

/// Sends the command once, and records it once it was accepted.
template <typename Change, typename Fill>
uint32_t sendArea(const CommandText &command, uint32_t selector, uint16_t processId,
                  const char *area, uint32_t set, Change change, Fill fill) {
    return onceAccepted(vtyOspfConfigOspf(0, command, selector), [&] {
        return inSlotOf(processId,
                        [&](uint32_t slot) { return recordArea(slot, area, set, change, fill); });
    });
}

uint32_t writeBack(uint32_t slot, const OspfAreaCfg &record) {
    return ucOspfAreaSetCfg(slot, record.areaId, &record);
}

} // namespace

uint32_t swOspfArea(uint16_t processId, const char *area, uint32_t set, uint32_t areaType,
                    uint32_t selector) {
    CommandText command;
    composeArea(command, area, set, areaType);
    const auto setType = [areaType](OspfAreaCfg &record) {
        record.areaType = static_cast<OspfAreaType>(areaType);
    };
    const auto change = [=](uint32_t slot, OspfAreaCfg &record) {
        if (set == 0) {
            return ucOspfAreaDelete(slot, record.areaId, areaType);
        }
        setType(record);
        return writeBack(slot, record);
    };
    return sendArea(command, selector, processId, area, set, change, setType);
}

uint32_t swOspfAreaSummary(uint16_t processId, const char *area, uint32_t set, uint32_t areaType,
                           uint32_t selector) {
    CommandText command;
    composeArea(command, area, set, areaType);
    append(command, "no-summary");
    const auto change = [set](uint32_t slot, OspfAreaCfg &record) {
        record.noSummary = set;
        return writeBack(slot, record);
    };
    return sendArea(command, selector, processId, area, set, change,
                    [areaType](OspfAreaCfg &record) {
                        record.areaType = static_cast<OspfAreaType>(areaType);
                        record.noSummary = 1;
                    });
}

uint32_t swOspfAreaDefaultCost(uint16_t processId, const char *area, int32_t cost, uint32_t set,
                               uint32_t selector) {
    CommandText command;
    if (set != 0) {
        format(command, "area %s default-cost %d", orEmpty(area), cost);
    } else {
        format(command, "no area default-cost"); // Fixed by the interface: no area id.
    }
    const auto change = [=](uint32_t slot, OspfAreaCfg &record) {
        if (record.areaType == kNormalArea) {
            return kKeepsNormalArea;
        }
        record.defaultCost = set != 0 ? static_cast<uint32_t>(cost) : kAreaDefaults.defaultCost;
        return writeBack(slot, record);
    };
    return sendArea(command, selector, processId, area, set, change, [cost](OspfAreaCfg &record) {
        record.defaultCost = static_cast<uint32_t>(cost);
    });
}

uint32_t swOspfAreaRange(uint16_t /*processId*/, const char *area, const char *prefix,
                         const char *mask, uint32_t advertiseMode, uint32_t hasCost, int32_t cost,
                         uint32_t set, uint32_t selector) {
    CommandText command;
    format(command, "%sarea %s range %s/%d", set != 0 ? "" : "no ", orEmpty(area), orEmpty(prefix),
           mask_to_masklen(sw_ospf_inet_aton(mask)));
    if (set != 0) {
        append(command, " ");
        if (hasCost != 0) {
            append(command, "cost %d", cost);
        }
        append(command, " %s", textAt(kAdvertiseWords, advertiseMode));
    }
    return vtyOspfConfigOspf(0, command, selector);
}
