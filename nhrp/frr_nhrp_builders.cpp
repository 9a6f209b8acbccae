// SPDX-License-Identifier: Apache-2.0
// The NHRP command builders: one table of settings and the one routine that stores and sends them.

#include <cstddef>
#include <iterator>

#include "common/front_end.h"
#include "common/text.h"
#include "nhrp/frr_nhrp.h"
#include "nhrp/settings.h"
#include "nhrp/sw_nhrp.h"
#include "nhrp/vty_nhrp.h"
#include "vty/session.h"

namespace frruci::nhrp {

namespace {

constexpr uint32_t kRefused = 1;
constexpr uint16_t kVrf = 0; // deliveries do not look at it
constexpr const char *kSection = "sdwan";
constexpr const char *kFlag = "1";

/// Where a command goes: the tunnel interface in nhrpd, the same in zebra, nhrpd's configuration.
enum class Context : uint8_t { kTunnel, kZebra, kGlobal };

/// What the store gets: nothing, "1", "0", or the first value.
enum class Stored : uint8_t { kNone, kOn, kOff, kValue };

/// An option without a name of its own is named by the value.
constexpr const char *kNamedByValue = nullptr;

struct Row {
    Setting setting;
    Context context;
    Stored stored;
    int values;
    const char *command; // its values follow, each behind a blank
    const char *option;
};

using enum Setting;
using enum Context;
using enum Stored;

constexpr Row kRows[] = {
    {kWord,         kTunnel, kOn,    1, "ip nhrp",                        kNamedByValue          },
    {kNoWord,       kTunnel, kOff,   1, "no ip nhrp",                     kNamedByValue          },
    {kAddress,      kZebra,  kValue, 1, "ip address",                     "zebra_address"        },
    {kNoAddress,    kZebra,  kOff,   1, "no ip address",                  "zebra_address"        },
    {kNetworkId,    kTunnel, kValue, 1, "ip nhrp network-id",             "network_id"           },
    {kNoUnique,     kTunnel, kOn,    0, "ip nhrp registration no-unique", "registration_nounique"},
    {kNhsNbma,      kTunnel, kValue, 1, "ip nhrp nhs dynamic nbma",       "nhs_nbma"             },
    {kNoNhsNbma,    kTunnel, kOff,   1, "no ip nhrp nhs dynamic nbma",    "nhs_nbma"             },
    {kMap,          kTunnel, kValue, 1, "ip nhrp map multicast",          "map_multicast"        },
    {kNoMap,        kTunnel, kOff,   1, "no ip nhrp map multicast",       "map_multicast"        },
    {kProfile,      kTunnel, kValue, 1, "tunnel protection vici profile", "ipsec_profile"        },
    {kSource,       kTunnel, kValue, 1, "tunnel source",                  "ipsec_source"         },
    {kAddLink,      kTunnel, kNone,  2, "tunnel add",                     nullptr                },
    {kConnectLink,  kTunnel, kNone,  2, "tunnel connect",                 nullptr                },
    {kDeleteLink,   kTunnel, kNone,  2, "tunnel del",                     nullptr                },
    {kNoLinkDetect, kZebra,  kOn,    0, "no link-detect",                 "no_link_detect"       },
    {kNflogGroup,   kGlobal, kValue, 1, "nhrp nflog-group",               "nflog_group"          },
    {kMcastGroup,   kGlobal, kValue, 1, "nhrp multicast-nflog-group",     "multicast_nflog_group"},
};

consteval bool everySettingHasItsRow() {
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        if (kRows[i].setting != static_cast<Setting>(i)) {
            return false;
        }
    }
    return std::size(kRows) == static_cast<std::size_t>(kMcastGroup) + 1;
}
static_assert(everySettingHasItsRow());

const Row &rowOf(Setting setting) {
    return kRows[static_cast<std::size_t>(setting)];
}

bool isComplete(const Row &row, const char *ifname, const Values &values) {
    for (int i = 0; i < row.values; ++i) {
        if (values.at[i] == nullptr) {
            return false;
        }
    }
    return row.context == kGlobal || ifname != nullptr;
}

void compose(char (&command)[vty::kCommandBytes], const Row &row, const Values &values) {
    switch (row.values) {
    case 0:
        common::format(command, "%s", row.command);
        break;
    case 1:
        common::format(command, "%s %s", row.command, values.at[0]);
        break;
    default:
        common::format(command, "%s %s %s", row.command, values.at[0], values.at[1]);
        break;
    }
}

/// A failed write does not keep the command from the daemon. Fixed by the interface.
void record(const Row &row, const char *ifname, const Values &values) {
    if (row.stored == kNone) {
        return;
    }
    const char *option = row.option == kNamedByValue ? values.at[0] : row.option;
    const char *value = row.stored == kValue ? values.at[0] : kFlag;
    const int32_t enable = row.stored == kOff ? 0 : 1;
    if (row.context == kGlobal) {
        (void)nhrp_set_enable_config(kSection, option, value, enable);
    } else {
        (void)nhrp_set_interface_config(kSection, option, ifname, value, enable);
    }
}

uint32_t send(const Row &row, const char *ifname, const char *command) {
    switch (row.context) {
    case kTunnel:
        return doVtyNhrpConfigInterface(kVrf, ifname, command);
    case kZebra:
        return doVtyZebraConfigInterface(kVrf, ifname, command);
    case kGlobal:
        return doVtyNhrpConfig(kVrf, command);
    }
    return kRefused;
}

} // namespace

int valueCount(Setting setting) {
    return rowOf(setting).values;
}

uint32_t apply(Setting setting, const char *ifname, const Values &values) {
    const Row &row = rowOf(setting);
    if (!isComplete(row, ifname, values)) {
        return kRefused;
    }
    char command[vty::kCommandBytes];
    compose(command, row, values);
    (void)record_log_act("frr_nhrp:%d: generate cmd:%s\n", __LINE__, command);
    // The store first, and it keeps the value when the daemon refuses. Fixed by the interface.
    record(row, ifname, values);
    return send(row, ifname, command);
}

} // namespace frruci::nhrp

using frruci::nhrp::apply;
using enum frruci::nhrp::Setting;

uint32_t nhrp_ip_nhrp(uint16_t, const char *ifname, const char *word) {
    return apply(kWord, ifname, {word});
}

uint32_t nhrp_no_ip_nhrp(uint16_t, const char *ifname, const char *word) {
    return apply(kNoWord, ifname, {word});
}

uint32_t nhrp_ip_address(uint16_t, const char *ifname, const char *address) {
    return apply(kAddress, ifname, {address});
}

uint32_t no_nhrp_ip_address(uint16_t, const char *ifname, const char *address) {
    return apply(kNoAddress, ifname, {address});
}

uint32_t nhrp_ip_nhrp_network(uint16_t, const char *ifname, const char *id) {
    return apply(kNetworkId, ifname, {id});
}

uint32_t nhrp_ip_nhrp_registration(uint16_t, const char *ifname) {
    return apply(kNoUnique, ifname, {});
}

uint32_t nhrp_ip_nhrp_nhs_nbma(uint16_t, const char *ifname, const char *nbma) {
    return apply(kNhsNbma, ifname, {nbma});
}

uint32_t nhrp_no_ip_nhrp_nhs_nbma(uint16_t, const char *ifname, const char *nbma) {
    return apply(kNoNhsNbma, ifname, {nbma});
}

uint32_t nhrp_ip_nhrp_map_multicast(uint16_t, const char *ifname, const char *address) {
    return apply(kMap, ifname, {address});
}

uint32_t nhrp_no_ip_nhrp_map_multicast(uint16_t, const char *ifname, const char *address) {
    return apply(kNoMap, ifname, {address});
}

uint32_t nhrp_tunnel_profile(uint16_t, const char *ifname, const char *profile) {
    return apply(kProfile, ifname, {profile});
}

uint32_t nhrp_tunnel_source(uint16_t, const char *ifname, const char *source) {
    return apply(kSource, ifname, {source});
}

uint32_t nhrp_tunnel_spoke_link(uint16_t, const char *ifname, const char *first,
                                const char *second) {
    return apply(kAddLink, ifname, {first, second});
}

uint32_t nhrp_tunnel_set_spoke_link(uint16_t, const char *ifname, const char *first,
                                    const char *second) {
    return apply(kConnectLink, ifname, {first, second});
}

uint32_t nhrp_no_tunnel_spoke_link(uint16_t, const char *ifname, const char *first,
                                   const char *second) {
    return apply(kDeleteLink, ifname, {first, second});
}

uint32_t nhrp_no_link_detect(uint16_t, const char *ifname) {
    return apply(kNoLinkDetect, ifname, {});
}

uint32_t nhrp_nflog(uint16_t, const char *group) {
    return apply(kNflogGroup, nullptr, {group});
}

uint32_t multicast_nhrp_nflog(uint16_t, const char *group) {
    return apply(kMcastGroup, nullptr, {group});
}
