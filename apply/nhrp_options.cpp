// SPDX-License-Identifier: Apache-2.0
// The table of NHRP's options.

#include "apply/nhrp_options.h"

#include <cstdio>

namespace frruci::apply {

namespace {

using enum Target;

constexpr NhrpOption kOptions[] = {
    {"ipsec_profile",         "tunnel protection vici profile", Nhrpd, true,  false},
    {"ipsec_source",          "tunnel source",                  Nhrpd, true,  false},
    {"network_id",            "ip nhrp network-id",             Nhrpd, true,  false},
    {"shortcut",              "ip nhrp shortcut",               Nhrpd, false, false},
    {"redirect",              "ip nhrp redirect",               Nhrpd, false, false},
    {"registration_nounique", "ip nhrp registration no-unique", Nhrpd, false, false},
    {"nhs_nbma",              "ip nhrp nhs dynamic nbma",       Nhrpd, true,  false},
    {"map_multicast",         "ip nhrp map multicast",          Nhrpd, true,  false},
    {"nflog_group",           "nhrp nflog-group",               Nhrpd, true,  true },
    {"multicast_nflog_group", "nhrp multicast-nflog-group",     Nhrpd, true,  true },
    {"zebra_address",         "ip address",                     Zebra, true,  false},
    {"no_link_detect",        "no link-detect",                 Zebra, false, false},
};

} // namespace

std::span<const NhrpOption> nhrpOptions() {
    return kOptions;
}

void formatNhrpLine(const NhrpOption &option, const char *value, char (&line)[kLineBytes]) {
    const bool withValue = option.hasValue && value[0] != '\0';
    (void)snprintf(line, sizeof line, "%s%s%s", option.words, withValue ? " " : "",
                   withValue ? value : "");
}

} // namespace frruci::apply
