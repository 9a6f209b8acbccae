// SPDX-License-Identifier: Apache-2.0
// The table of protocols, and who answers for what.

#include "apply/protocols.h"

#include <cstring>

#include "apply/session.h"
#include "host/nhrp_options.h"

namespace frruci::apply {

namespace {

constexpr Protocol kProtocols[] = {
    {"ospf", "ospf",             "ospfd", {Target::Ospfd},                1},
    {"rip",  "rip",              "ripd",  {Target::Ripd},                 1},
    {"nhrp", host::kNhrpPackage, "nhrpd", {Target::Nhrpd, Target::Zebra}, 2},
};

/// By target.
struct Holder {
    const char *daemon;
    bool mayBeManaged;
};

constexpr Holder kHolders[] = {
    {"ospfd", false},
    {"ripd",  true },
    {"nhrpd", false},
    {"zebra", true }
};

} // namespace

std::span<const Protocol> protocols() {
    return kProtocols;
}

const Protocol *findProtocol(const char *name) {
    for (const Protocol &protocol : kProtocols) {
        if (strcmp(protocol.name, name) == 0) {
            return &protocol;
        }
    }
    return nullptr;
}

const char *daemonOf(Target target) {
    return kHolders[static_cast<int>(target)].daemon;
}

const char *holderOf(Target target) {
    const Holder &holder = kHolders[static_cast<int>(target)];
    // mgmtd takes settings for a dead daemon too, which would hide that it is gone.
    const bool isManaged = holder.mayBeManaged && accepts("mgmtd") && accepts(holder.daemon);
    return isManaged ? "mgmtd" : holder.daemon;
}

} // namespace frruci::apply
