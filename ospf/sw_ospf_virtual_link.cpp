// SPDX-License-Identifier: Apache-2.0
// Virtual-link commands: timers, authentication and keys.

#include <cstring>
#include <iterator>

#include "common/address.h"
#include "common/text.h"
#include "ospf/command.h"
#include "ospf/field.h"
#include "ospf/sw_ospf.h"
#include "ospf/uc_ospf_defaults.h"

namespace {

using frruci::common::format;
using namespace frruci::ospf;

constexpr uint32_t kNewLink = 1;

/// Which link of which process.
struct Link {
    uint16_t processId;
    const char *area;
    const char *peer;
};

struct TimerSetting {
    const char *text;
    Field<OspfVirtualLinkCfg> field;
};

/// In the order in which they stand in the command. Fixed by the interface: nothing separates them.
constexpr TimerSetting kTimers[] = {
    {"hello-interval %d",      FRRUCI_FIELD(OspfVirtualLinkCfg, helloInterval)     },
    {"dead-interval %d",       FRRUCI_FIELD(OspfVirtualLinkCfg, deadInterval)      },
    {"transmit-delay %d",      FRRUCI_FIELD(OspfVirtualLinkCfg, transmitDelay)     },
    {"retransmit-interval %d", FRRUCI_FIELD(OspfVirtualLinkCfg, retransmitInterval)},
};

struct GivenTimer {
    int32_t value;
    bool given;
};
using GivenTimers = GivenTimer[std::size(kTimers)]; // by the rows of kTimers

/// By authentication type of a virtual link. An interface's types differ.
constexpr const char *kAuthWords[] = {"", " null", " message-digest"};

/// What an operation does to a link that is not set.
enum class OnUnset {
    Remove,            ///< removes it for any set value but 1
    RemoveWhenZero,    ///< removes it for 0, and does nothing for other values
    StoreLikeASetting, ///< stores what change gives
};

/// "area A virtual-link P" with a suffix, "no " in front when no is true.
void composeLink(CommandText &command, const Link &link, bool no, const char *suffix) {
    format(command, "%sarea %s virtual-link %s%s", no ? "no " : "", orEmpty(link.area),
           orEmpty(link.peer), suffix);
}

/// A new record for a link; set 0 has nothing to unset.
template <typename Change>
uint32_t addLink(uint32_t slot, OspfVirtualLinkCfg record, uint32_t set, Change change) {
    if (set == kUnset) {
        return kNothingToUnset;
    }
    change(record);
    return ucOspfVirtualLinkInsert(slot, &record);
}

/// Brings an accepted command into a slot; change(record) stores the operation's own fields.
template <typename Change>
uint32_t recordLink(uint32_t slot, const Link &link, uint32_t set, OnUnset onUnset, Change change) {
    OspfVirtualLinkCfg record = kVirtualLinkDefaults;
    record.areaId = sw_ospf_inet_aton(link.area);
    record.peerRouterId = sw_ospf_inet_aton(link.peer);
    const uint64_t key = wordPair(record.areaId, record.peerRouterId);
    // Fixed by the interface: a look-up never answers 1, so the model never gains a link here.
    if (ucOspfVirtualLinkGetCfg(slot, key, &record) == kNewLink) {
        return addLink(slot, record, set, change);
    }
    if (set != kSet && onUnset != OnUnset::StoreLikeASetting) {
        const bool remove = onUnset == OnUnset::Remove || set == kUnset;
        return remove ? ucOspfVirtualLinkDelete(slot, key) : kSuccess;
    }
    change(record);
    return ucOspfVirtualLinkSetCfg(slot, key, &record);
}

/// Records a command that was sent, once it was accepted.
template <typename Change>
uint32_t recordSent(uint32_t sent, const Link &link, uint32_t set, OnUnset onUnset, Change change) {
    return onceAccepted(sent, [&] {
        return inSlotOf(link.processId, [&](uint32_t slot) {
            return recordLink(slot, link, set, onUnset, change);
        });
    });
}

/// The key's bytes, whatever its text's length, or zeroes.
template <std::size_t N> void storeKey(uint8_t (&field)[N], const char *key, uint32_t set) {
    memset(field, 0, N);
    if (set == kSet && key != nullptr) {
        memcpy(field, key, N);
    }
}

} // namespace

// NOLINTNEXTLINE(readability-function-size): the interface has thirteen arguments
uint32_t swOspfVirtualLink(uint16_t processId, const char *area, const char *peer, int32_t hello,
                           uint32_t hasHello, int32_t dead, uint32_t hasDead, int32_t transmitDelay,
                           uint32_t hasTransmitDelay, int32_t retransmit, uint32_t hasRetransmit,
                           uint32_t set, uint32_t selector) {
    const Link link = {processId, area, peer};
    const GivenTimers timers = {
        {hello,         hasHello != 0        },
        {dead,          hasDead != 0         },
        {transmitDelay, hasTransmitDelay != 0},
        {retransmit,    hasRetransmit != 0   }
    };
    CommandText command;
    composeLink(command, link, set == kUnset, set == kUnset ? "" : " ");
    for (std::size_t i = 0; i < std::size(kTimers); ++i) {
        if (set != kUnset && timers[i].given) {
            append(command, kTimers[i].text, timers[i].value);
        }
    }
    // Fixed by the interface: both times with the caller's selector.
    const uint32_t sent = forBoth(
        [&](const Instance & /*instance*/) { return vtyOspfConfigOspf(0, command, selector); });
    return recordSent(sent, link, set, OnUnset::Remove, [&timers](OspfVirtualLinkCfg &record) {
        for (std::size_t i = 0; i < std::size(kTimers); ++i) {
            if (timers[i].given) {
                storeNumber(record, kTimers[i].field, static_cast<uint32_t>(timers[i].value));
            }
        }
    });
}

uint32_t swOspfVirtualLinkAuth(uint16_t processId, const char *area, const char *peer,
                               uint32_t authType, uint32_t set) {
    const Link link = {processId, area, peer};
    CommandText command = {};
    if (set == kUnset) {
        composeLink(command, link, true, ""); // Fixed by the interface: removes the whole link.
    } else if (authType < std::size(kAuthWords)) {
        composeLink(command, link, false, " authentication");
        append(command, "%s", kAuthWords[authType]);
    }
    return recordSent(sendToBoth(command), link, set, OnUnset::RemoveWhenZero,
                      [authType](OspfVirtualLinkCfg &record) {
                          record.authType = static_cast<OspfAuthType>(authType);
                      });
}

uint32_t swOspfVirtualLinkAuthKey(uint16_t processId, const char *area, const char *peer,
                                  const char *key, uint32_t set) {
    const Link link = {processId, area, peer};
    CommandText command;
    // Fixed by the interface: there is no "no" form.
    format(command, "area %s virtual-link %s authentication-key %s", orEmpty(area), orEmpty(peer),
           orEmpty(key));
    return recordSent(sendToBoth(command), link, set, OnUnset::StoreLikeASetting,
                      [=](OspfVirtualLinkCfg &record) { storeKey(record.simpleKey, key, set); });
}

uint32_t swOspfVirtualLinkMd5Key(uint16_t processId, const char *area, const char *peer,
                                 uint32_t keyId, const char *key, uint32_t set) {
    const Link link = {processId, area, peer};
    CommandText command;
    format(command, "%sarea %s virtual-link %s message-digest-key %d md5 %s",
           set != kUnset ? "" : "no ", orEmpty(area), orEmpty(peer), static_cast<int32_t>(keyId),
           set != kUnset ? orEmpty(key) : "1");
    return recordSent(sendToBoth(command), link, set, OnUnset::StoreLikeASetting,
                      [=](OspfVirtualLinkCfg &record) {
                          // Fixed by the interface: an unset stores the key id too.
                          record.md5KeyId = static_cast<uint8_t>(keyId);
                          storeKey(record.md5Key, key, set);
                      });
}
