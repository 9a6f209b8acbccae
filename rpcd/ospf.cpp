// SPDX-License-Identifier: Apache-2.0
// OSPF's neighbours and interfaces.

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include "host/interfaces.h"
#include "host/text.h"
#include "rpcd/asking.h"
#include "rpcd/methods.h"

namespace frruci::rpcd {

namespace {

constexpr const char *kDaemon = "ospfd";

/// The text up to one of the ends.
void putUpTo(Json into, const char *name, const char *text, const char *ends) {
    if (text != nullptr) {
        char *begin = host::copyOf(text, strcspn(text, ends));
        host::put(into, name, begin);
        free(begin);
    }
}

// ---- neighbors ----

Json neighborOf(const char *id, Json shown) {
    Json neighbor = host::jsonObject();
    host::put(neighbor, "id", id);
    putText(neighbor, "address", shown, "ifaceAddress");
    // "eth1.2:10.1.2.1" and "Full/DR"
    putUpTo(neighbor, "interface", host::textOf(host::member(shown, "ifaceName")), ":");
    putUpTo(neighbor, "state", host::textOf(host::member(shown, "nbrState")), "/");
    putText(neighbor, "role", shown, "role");
    putNumber(neighbor, "priority", shown, "nbrPriority");
    putSeconds(neighbor, "uptime", shown, "upTimeInMsec");
    putSeconds(neighbor, "dead", shown, "routerDeadIntervalTimerDueMsec");
    return neighbor;
}

// ---- interfaces ----

/// A type of network as the daemon shows it and as its commands have it.
struct NetworkType {
    const char *shown;
    const char *type;
};

constexpr NetworkType kTypes[] = {
    {"BROADCAST",        "broadcast"          },
    {"POINTOPOINT",      "point-to-point"     },
    {"POINTOMULTIPOINT", "point-to-multipoint"},
    {"NBMA",             "non-broadcast"      },
    {"LOOPBACK",         "loopback"           },
    {"VIRTUALLINK",      "virtual-link"       },
};

void putType(Json into, const char *shown) {
    for (const NetworkType &row : kTypes) {
        if (shown != nullptr && host::equals(row.shown, shown)) {
            host::put(into, "type", row.type);
        }
    }
}

void putPrefix(Json into, const char *address, int64_t length) {
    if (address != nullptr) {
        host::Text prefix;
        prefix.addf("%s/%d", address, static_cast<int>(length));
        host::put(into, "address", prefix.get());
    }
}

Json interfaceOf(const char *name, Json shown) {
    Json interface = host::jsonObject();
    host::put(interface, "name", name);
    host::putFlag(interface, "up", host::isTrue(host::member(shown, "ifUp")));
    putPrefix(interface, host::textOf(host::member(shown, "ipAddress")),
              host::numberOf(host::member(shown, "ipAddressPrefixlen")));
    putUpTo(interface, "area", host::textOf(host::member(shown, "area")), " "); // "0.0.0.7 [NSSA]"
    putType(interface, host::textOf(host::member(shown, "networkType")));
    putText(interface, "state", shown, "state");
    putNumber(interface, "cost", shown, "cost");
    putSeconds(interface, "hello", shown, "timerMsecs");
    putNumber(interface, "dead", shown, "timerDeadSecs");
    putNumber(interface, "priority", shown, "priority");
    host::putFlag(interface, "passive", host::isTrue(host::member(shown, "timerPassiveIface")));
    putNumber(interface, "neighbors", shown, "nbrCount");
    putNumber(interface, "adjacent", shown, "nbrAdjacentCount");
    return interface;
}

// ---- addressable ----

/// Where the library has the two sides of the router.
const char *sideOf(const char *name) {
    if (host::startsWith(name, "eth1.")) {
        return "wan";
    }
    return host::startsWith(name, "eth0.") ? "lan" : nullptr;
}

/// The display stores an interface's state in the section of its name, without dots.
void putSection(Json into, const char *name) {
    char *section = host::copyOf(name);
    for (char *dot = section; (dot = strchr(dot, '.')) != nullptr;) {
        *dot = '_';
    }
    host::put(into, "section", section);
    free(section);
}

/// The first IPv4 address of an interface, where it has one.
void putAddress(Json into, const char *name, const ifaddrs *all) {
    for (const ifaddrs *at = all; at != nullptr; at = at->ifa_next) {
        if (at->ifa_addr == nullptr || at->ifa_addr->sa_family != AF_INET ||
            at->ifa_netmask == nullptr || !host::equals(at->ifa_name, name)) {
            continue;
        }
        char text[INET_ADDRSTRLEN];
        const auto *address = reinterpret_cast<const sockaddr_in *>(at->ifa_addr);
        const auto *mask = reinterpret_cast<const sockaddr_in *>(at->ifa_netmask);
        return putPrefix(into, inet_ntop(AF_INET, &address->sin_addr, text, sizeof text),
                         __builtin_popcount(mask->sin_addr.s_addr));
    }
}

Json addressableOf(const ifaddrs &one, const ifaddrs *all) {
    Json interface = host::jsonObject();
    host::put(interface, "name", one.ifa_name);
    putSection(interface, one.ifa_name);
    if (sideOf(one.ifa_name) != nullptr) {
        host::put(interface, "ns", sideOf(one.ifa_name));
    }
    host::putFlag(interface, "up", (one.ifa_flags & IFF_UP) != 0);
    putAddress(interface, one.ifa_name, all);
    return interface;
}

/// Each interface has one entry with its hardware, beside those with its addresses.
Json addressable() {
    Json list = host::jsonArray();
    ifaddrs *all = nullptr;
    if (getifaddrs(&all) != 0) {
        return list;
    }
    for (const ifaddrs *at = all; at != nullptr; at = at->ifa_next) {
        if (at->ifa_addr != nullptr && at->ifa_addr->sa_family == AF_PACKET &&
            host::isVlanOfPort(at->ifa_name)) {
            host::append(list, addressableOf(*at, all));
        }
    }
    freeifaddrs(all);
    return list;
}

} // namespace

Json neighbors(Json /*arguments*/) {
    Asking daemon(kDaemon);
    Json answer = host::jsonObject();
    Json list = host::jsonArray();
    Json process = daemon.json("show ip ospf json");
    Json shown = daemon.json("show ip ospf neighbor json");
    host::forEach(host::member(shown, "neighbors"), [&](const char *id, Json all) {
        host::forEach(all,
                      [&](const char *, Json one) { host::append(list, neighborOf(id, one)); });
    });
    host::putFlag(answer, "running", daemon.runs());
    putText(answer, "router_id", process, "routerId");
    host::put(answer, "neighbors", list);
    return answer;
}

Json interfaces(Json /*arguments*/) {
    Asking daemon(kDaemon);
    Json answer = host::jsonObject();
    Json list = host::jsonArray();
    Json shown = daemon.json("show ip ospf interface json");
    host::forEach(host::member(shown, "interfaces"), [&](const char *name, Json one) {
        if (host::isTrue(host::member(one, "ospfEnabled"))) {
            host::append(list, interfaceOf(name, one));
        }
    });
    host::putFlag(answer, "running", daemon.runs());
    host::put(answer, "interfaces", list);
    host::put(answer, "addressable", addressable());
    return answer;
}

} // namespace frruci::rpcd
