// SPDX-License-Identifier: Apache-2.0
// The table of NHRP's options.

#include "host/nhrp_options.h"

namespace frruci::host {

namespace {

using enum NhrpContext;

constexpr NhrpOption kOptions[] = {
    {"no_link_detect",        "no link-detect",                 kZebra,  true },
    {"zebra_address",         "ip address",                     kZebra,  false},
    {"ipsec_profile",         "tunnel protection vici profile", kTunnel, false},
    {"ipsec_source",          "tunnel source",                  kTunnel, false},
    {"network_id",            "ip nhrp network-id",             kTunnel, false},
    {"shortcut",              "ip nhrp shortcut",               kTunnel, true },
    {"redirect",              "ip nhrp redirect",               kTunnel, true },
    {"registration_nounique", "ip nhrp registration no-unique", kTunnel, true },
    {"nhs_nbma",              "ip nhrp nhs dynamic nbma",       kTunnel, false},
    {"map_multicast",         "ip nhrp map multicast",          kTunnel, false},
    {"nflog_group",           "nhrp nflog-group",               kGlobal, false},
    {"multicast_nflog_group", "nhrp multicast-nflog-group",     kGlobal, false},
};

} // namespace

std::span<const NhrpOption> nhrpOptions() {
    return kOptions;
}

void addNhrpLine(Text &line, const NhrpOption &option, const char *value) {
    line.add(option.words);
    if (!option.isFlag && *value != '\0') {
        line.add(" ");
        line.add(value);
    }
}

} // namespace frruci::host
