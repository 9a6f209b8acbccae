// SPDX-License-Identifier: Apache-2.0
// The table of kinds, in the order in which the lines of one context are sent.

#include "apply/kinds.h"

#include <cstdio>
#include <cstring>

namespace frruci::apply {

namespace {

using enum Target;
using enum Place;
using enum Removal;

// clang-format off
constexpr Kind kKinds[] = {
    {"router ospf",                                        nullptr,                           Ospfd, Top,       2, Name,     kOpens},
    {"ip ospf network W",                                  nullptr,                           Ospfd, Interface, 3, Name,     kOwnType},
    {"ip ospf authentication [ null ] [ message-digest ]", nullptr,                           Ospfd, Interface, 3, Name,     kPlain},
    {"ip ospf authentication-key K8",                      nullptr,                           Ospfd, Interface, 3, Name,     kPlain},
    {"ip ospf message-digest-key N md5 K16",               nullptr,                           Ospfd, Interface, 4, Name,     kPlain},
    {"ip ospf cost N",                                     nullptr,                           Ospfd, Interface, 3, Name,     kPlain},
    {"ip ospf hello-interval N",                           "ip ospf hello-interval 10",       Ospfd, Interface, 3, Name,     kPlain},
    {"ip ospf dead-interval N",                            nullptr,                           Ospfd, Interface, 3, Name,     kPlain},
    {"ip ospf priority Z",                                 "ip ospf priority 1",              Ospfd, Interface, 3, Name,     kPlain},
    {"ip ospf retransmit-interval N",                      "ip ospf retransmit-interval 5",   Ospfd, Interface, 3, Name,     kPlain},
    {"ip ospf transmit-delay N",                           "ip ospf transmit-delay 1",        Ospfd, Interface, 3, Name,     kPlain},
    {"ip ospf mtu-ignore",                                 nullptr,                           Ospfd, Interface, 3, Name,     kPlain},
    {"[ no ] ip ospf passive",                             nullptr,                           Ospfd, Interface, 3, Opposite, kRemoveFirst},
    {"ospf router-id A",                                   "ospf router-id 0.0.0.0",          Ospfd, Router,    2, Name,     kPlain},
    {"compatible rfc1583",                                 nullptr,                           Ospfd, Router,    2, Name,     kPlain},
    {"timers throttle spf Z Z Z",                          "timers throttle spf 0 50 5000",   Ospfd, Router,    3, Name,     kPlain},
    {"maximum-paths N",                                    nullptr,                           Ospfd, Router,    1, Name,     kMaximum},
    {"passive-interface default",                          nullptr,                           Ospfd, Router,    2, Name,     kPlain},
    {"default-information originate [ always ] [ metric Z ] [ metric-type N ]",
                                                           " metric-type 2",                  Ospfd, Router,    2, Name,     kPlain},
    {"distance N",                                         nullptr,                           Ospfd, Router,    1, Whole,    kPlain},
    {"network P area R",                                   nullptr,                           Ospfd, Router,    2, Whole,    kRemoveFirst},

    {"key chain C",                                        nullptr,                           Ripd,  Top,       3, Name,     kOpens},
    {"key Z",                                              nullptr,                           Ripd,  Chain,     2, Name,     kOpens},
    {"key-string K",                                       nullptr,                           Ripd,  Key,       1, Name,     kPlain},
    {"[ no ] ip rip split-horizon [ poisoned-reverse ]",   "ip rip split-horizon",            Ripd,  Interface, 3, Default,  kPlain},
    {"ip rip receive version N [ 2 ]",                     nullptr,                           Ripd,  Interface, 4, Name,     kPlain},
    {"ip rip send version N [ 2 ]",                        nullptr,                           Ripd,  Interface, 4, Name,     kPlain},
    {"ip rip authentication mode W",                       nullptr,                           Ripd,  Interface, 4, Name,     kPlain},
    {"ip rip authentication string K",                     nullptr,                           Ripd,  Interface, 4, Name,     kPlain},
    {"ip rip authentication key-chain W",                  nullptr,                           Ripd,  Interface, 4, Name,     kPlain},
    {"router rip [ vrf default ]",                         " vrf default",                    Ripd,  Top,       2, Name,     kOpens},
    {"default-metric N",                                   "default-metric 1",                Ripd,  Router,    1, Name,     kPlain},
    {"distance N",                                         nullptr,                           Ripd,  Router,    1, Name,     kPlain},
    {"network P",                                          nullptr,                           Ripd,  Router,    2, Name,     kPlain},
    {"redistribute static [ metric Z ]",                   nullptr,                           Ripd,  Router,    2, Name,     kPlain},
    {"redistribute ospf [ metric Z ]",                     nullptr,                           Ripd,  Router,    2, Name,     kPlain},
    {"timers basic N N N",                                 "timers basic 30 180 120",         Ripd,  Router,    2, Name,     kPlain},
    {"version N",                                          nullptr,                           Ripd,  Router,    1, Name,     kPlain},

    {"tunnel protection vici profile W",                   nullptr,                           Nhrpd, Interface, 2, Name,     kPlain},
    {"tunnel source W",                                    nullptr,                           Nhrpd, Interface, 2, Name,     kPlain},
    {"ip nhrp network-id N",                               nullptr,                           Nhrpd, Interface, 3, Name,     kPlain},
    {"ip nhrp shortcut",                                   nullptr,                           Nhrpd, Interface, 3, Name,     kPlain},
    {"ip nhrp redirect",                                   nullptr,                           Nhrpd, Interface, 3, Name,     kPlain},
    {"ip nhrp registration no-unique",                     nullptr,                           Nhrpd, Interface, 4, Name,     kPlain},
    {"ip nhrp nhs dynamic nbma W",                         nullptr,                           Nhrpd, Interface, 6, Name,     kPlain},
    {"ip nhrp map multicast W",                            nullptr,                           Nhrpd, Interface, 5, Name,     kPlain},
    {"nhrp nflog-group N",                                 nullptr,                           Nhrpd, Top,       2, Name,     kPlain},
    {"nhrp multicast-nflog-group N",                       nullptr,                           Nhrpd, Top,       2, Name,     kPlain},

    {"ip address W",                                       nullptr,                           Zebra, Interface, 3, Name,     kPlain},
    {"no link-detect",                                     nullptr,                           Zebra, Interface, 1, Opposite, kPlain},
};
// clang-format on

} // namespace

std::span<const Kind> kinds() {
    return kKinds;
}

bool hasSecret(const Kind &kind) {
    const char *last = strrchr(kind.pattern, ' ');
    return last != nullptr && last[1] == 'K';
}

void formatRemoval(const Kind &kind, const char *text, std::size_t nameAt, std::size_t nameBytes,
                   char (&command)[kLineBytes]) {
    const int name = static_cast<int>(nameBytes);
    switch (kind.removal) {
    case Name:
        (void)snprintf(command, kLineBytes, "no %.*s", name, text + nameAt);
        return;
    case Whole:
        (void)snprintf(command, kLineBytes, "no %s", text);
        return;
    case Opposite:
        (void)snprintf(command, kLineBytes, "%s%s", nameAt == 0 ? "no " : "", text + nameAt);
        return;
    case Default:
        (void)snprintf(command, kLineBytes, "%s", kind.omitted);
        return;
    }
}

} // namespace frruci::apply
