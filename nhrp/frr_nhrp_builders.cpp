// SPDX-License-Identifier: Apache-2.0
// The NHRP command builders: what each setting sends and stores, and the one routine that does it.

#include <cstddef>
#include <cstdint>

#include "common/front_end.h"
#include "common/status.h"
#include "common/text.h"
#include "nhrp/frr_nhrp.h"
#include "nhrp/sw_nhrp.h"
#include "nhrp/vty_nhrp.h"
#include "vty/session.h"

namespace {

using frruci::common::format;
using frruci::common::kFailed;
using frruci::vty::kCommandBytes;

constexpr uint16_t kVrf = 0; // deliveries ignore it
constexpr const char *kSection = "sdwan";
constexpr const char *kFlag = "1";

/// Where a command goes: the tunnel interface in nhrpd, the same in zebra, nhrpd's configuration.
enum class Context : uint8_t { kTunnel, kZebra, kGlobal };

/// What the store gets: nothing, "1", "0", or the first value.
enum class Stored : uint8_t { kNone, kOn, kOff, kValue };

struct Setting { // texts, not pointers, which would take more flash
    Context context;
    Stored stored;
    char command[34]; // with %s for each value
    char option[22];  // named by the first value where it is empty
};

using enum Context;
using enum Stored;

constexpr Setting kWord = {kTunnel, kOn, "ip nhrp %s", ""};
constexpr Setting kNoWord = {kTunnel, kOff, "no ip nhrp %s", ""};
constexpr Setting kAddress = {kZebra, kValue, "ip address %s", "zebra_address"};
constexpr Setting kNoAddress = {kZebra, kOff, "no ip address %s", "zebra_address"};
constexpr Setting kNetworkId = {kTunnel, kValue, "ip nhrp network-id %s", "network_id"};
constexpr Setting kNoUnique = {kTunnel, kOn, "ip nhrp registration no-unique",
                               "registration_nounique"};
constexpr Setting kNhsNbma = {kTunnel, kValue, "ip nhrp nhs dynamic nbma %s", "nhs_nbma"};
constexpr Setting kNoNhsNbma = {kTunnel, kOff, "no ip nhrp nhs dynamic nbma %s", "nhs_nbma"};
constexpr Setting kMulticast = {kTunnel, kValue, "ip nhrp map multicast %s", "map_multicast"};
constexpr Setting kNoMulticast = {kTunnel, kOff, "no ip nhrp map multicast %s", "map_multicast"};
constexpr Setting kProfile = {kTunnel, kValue, "tunnel protection vici profile %s",
                              "ipsec_profile"};
constexpr Setting kSource = {kTunnel, kValue, "tunnel source %s", "ipsec_source"};
constexpr Setting kAddLink = {kTunnel, kNone, "tunnel add %s %s", ""};
constexpr Setting kConnectLink = {kTunnel, kNone, "tunnel connect %s %s", ""};
constexpr Setting kDeleteLink = {kTunnel, kNone, "tunnel del %s %s", ""};
constexpr Setting kNoLinkDetect = {kZebra, kOn, "no link-detect", "no_link_detect"};
constexpr Setting kNflogGroup = {kGlobal, kValue, "nhrp nflog-group %s", "nflog_group"};
constexpr Setting kMcastGroup = {kGlobal, kValue, "nhrp multicast-nflog-group %s",
                                 "multicast_nflog_group"};

constexpr const char *kNoInterface = "";
constexpr const char *kNoValue = "";

/// A failed write does not keep the command from the daemon. Fixed by the interface.
void recordSetting(const Setting &setting, const char *ifname, const char *value) {
    if (setting.stored == kNone) {
        return;
    }
    const char *option = *setting.option == '\0' ? value : setting.option;
    const char *stored = setting.stored == kValue ? value : kFlag;
    const int32_t enable = setting.stored == kOff ? 0 : 1;
    if (setting.context == kGlobal) {
        (void)nhrp_set_enable_config(kSection, option, stored, enable);
    } else {
        (void)nhrp_set_interface_config(kSection, option, ifname, stored, enable);
    }
}

uint32_t sendCommand(Context context, const char *ifname, const char *command) {
    switch (context) {
    case kTunnel:
        return doVtyNhrpConfigInterface(kVrf, ifname, command);
    case kZebra:
        return doVtyZebraConfigInterface(kVrf, ifname, command);
    case kGlobal:
        return doVtyNhrpConfig(kVrf, command);
    }
    return kFailed;
}

/// Stores the setting, then sends its command; line is the caller's, for the log. A null text is
/// refused before anything happens.
uint32_t applySetting(const Setting &setting, const char *ifname, const char *first = kNoValue,
                      const char *second = kNoValue, int line = __builtin_LINE()) {
    if (ifname == nullptr || first == nullptr || second == nullptr) {
        return kFailed;
    }
    char command[kCommandBytes];
    format(command, setting.command, first, second);
    (void)record_log_act("frr_nhrp:%d: generate cmd:%s\n", line, command);
    // The store first, and it keeps the value when the daemon refuses. Fixed by the interface.
    recordSetting(setting, ifname, first);
    return sendCommand(setting.context, ifname, command);
}

} // namespace

uint32_t nhrp_ip_nhrp(uint16_t /*vrf*/, const char *ifname, const char *word) {
    return applySetting(kWord, ifname, word);
}

uint32_t nhrp_no_ip_nhrp(uint16_t /*vrf*/, const char *ifname, const char *word) {
    return applySetting(kNoWord, ifname, word);
}

uint32_t nhrp_ip_address(uint16_t /*vrf*/, const char *ifname, const char *address) {
    return applySetting(kAddress, ifname, address);
}

uint32_t no_nhrp_ip_address(uint16_t /*vrf*/, const char *ifname, const char *address) {
    return applySetting(kNoAddress, ifname, address);
}

uint32_t nhrp_ip_nhrp_network(uint16_t /*vrf*/, const char *ifname, const char *id) {
    return applySetting(kNetworkId, ifname, id);
}

uint32_t nhrp_ip_nhrp_registration(uint16_t /*vrf*/, const char *ifname) {
    return applySetting(kNoUnique, ifname);
}

uint32_t nhrp_ip_nhrp_nhs_nbma(uint16_t /*vrf*/, const char *ifname, const char *nbma) {
    return applySetting(kNhsNbma, ifname, nbma);
}

uint32_t nhrp_no_ip_nhrp_nhs_nbma(uint16_t /*vrf*/, const char *ifname, const char *nbma) {
    return applySetting(kNoNhsNbma, ifname, nbma);
}

uint32_t nhrp_ip_nhrp_map_multicast(uint16_t /*vrf*/, const char *ifname, const char *address) {
    return applySetting(kMulticast, ifname, address);
}

uint32_t nhrp_no_ip_nhrp_map_multicast(uint16_t /*vrf*/, const char *ifname, const char *address) {
    return applySetting(kNoMulticast, ifname, address);
}

uint32_t nhrp_tunnel_profile(uint16_t /*vrf*/, const char *ifname, const char *profile) {
    return applySetting(kProfile, ifname, profile);
}

uint32_t nhrp_tunnel_source(uint16_t /*vrf*/, const char *ifname, const char *source) {
    return applySetting(kSource, ifname, source);
}

uint32_t nhrp_tunnel_spoke_link(uint16_t /*vrf*/, const char *ifname, const char *first,
                                const char *second) {
    return applySetting(kAddLink, ifname, first, second);
}

uint32_t nhrp_tunnel_set_spoke_link(uint16_t /*vrf*/, const char *ifname, const char *first,
                                    const char *second) {
    return applySetting(kConnectLink, ifname, first, second);
}

uint32_t nhrp_no_tunnel_spoke_link(uint16_t /*vrf*/, const char *ifname, const char *first,
                                   const char *second) {
    return applySetting(kDeleteLink, ifname, first, second);
}

uint32_t nhrp_no_link_detect(uint16_t /*vrf*/, const char *ifname) {
    return applySetting(kNoLinkDetect, ifname);
}

uint32_t nhrp_nflog(uint16_t /*vrf*/, const char *group) {
    return applySetting(kNflogGroup, kNoInterface, group);
}

uint32_t multicast_nhrp_nflog(uint16_t /*vrf*/, const char *group) {
    return applySetting(kMcastGroup, kNoInterface, group);
}
