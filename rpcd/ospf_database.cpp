// SPDX-License-Identifier: Apache-2.0
// OSPF's database: who is linked to whom.

#include "host/text.h"
#include "rpcd/asking.h"
#include "rpcd/methods.h"

namespace frruci::rpcd {

namespace {

/// A kind of link: a word of the daemon's text for it, and the members that tell of it.
struct LinkType {
    const char *shown;
    const char *type;
    const char *id;
    const char *data;
};

constexpr LinkType kLinkTypes[] = {
    {"Transit",        "transit",        "designatedRouterAddress", "routerInterfaceAddress"},
    {"Stub",           "stub",           "networkAddress",          "networkMask"           },
    {"point-to-point", "point-to-point", "neighborRouterId",        "routerInterfaceAddress"},
    {"Virtual",        "virtual",        "neighborRouterId",        "routerInterfaceAddress"},
};

const LinkType *linkTypeOf(Json shown) {
    const char *text = host::textOf(host::member(shown, "linkType"));
    for (const LinkType &row : kLinkTypes) {
        if (text != nullptr && strstr(text, row.shown) != nullptr) {
            return &row;
        }
    }
    return nullptr;
}

void appendLink(Json links, Json shown) {
    const LinkType *type = linkTypeOf(shown);
    if (type == nullptr) {
        return;
    }
    Json link = host::jsonObject();
    host::put(link, "type", type->type);
    putText(link, "id", shown, type->id);
    putText(link, "data", shown, type->data);
    putNumber(link, "metric", shown, "tos0Metric");
    host::append(links, link);
}

Json routerOf(Json shown) {
    Json router = host::jsonObject();
    Json links = host::jsonArray();
    putText(router, "id", shown, "linkStateId");
    host::forEach(host::member(shown, "routerLinks"),
                  [&](const char *, Json link) { appendLink(links, link); });
    host::put(router, "links", links);
    return router;
}

Json networkOf(Json shown) {
    Json network = host::jsonObject();
    Json routers = host::jsonArray();
    putText(network, "id", shown, "linkStateId");
    putNumber(network, "mask", shown, "networkMask");
    host::forEach(host::member(shown, "attchedRouters"),
                  [&](const char *id, Json) { host::append(routers, host::jsonText(id)); });
    host::put(network, "routers", routers);
    return network;
}

/// "E1" or "E2" and more words.
int64_t metricType(Json shown) {
    const char *type = host::textOf(host::member(shown, "metricType"));
    return type != nullptr && host::startsWith(type, "E1") ? 1 : 2;
}

Json externalOf(Json shown) {
    Json external = host::jsonObject();
    const char *address = host::textOf(host::member(shown, "linkStateId"));
    host::Text network;
    network.addf("%s/%d", address == nullptr ? "" : address,
                 static_cast<int>(host::numberOf(host::member(shown, "networkMask"))));
    host::put(external, "network", network.get());
    putText(external, "router", shown, "advertisingRouter");
    putNumber(external, "metric", shown, "metric");
    host::put(external, "metric_type", metricType(shown));
    return external;
}

/// All of a list, each as an object of ours.
Json each(Json shown, Json (*of)(Json)) {
    Json list = host::jsonArray();
    host::forEach(shown, [&](const char *, Json one) { host::append(list, of(one)); });
    return list;
}

Json areasOf(Json routers, Json networks) {
    Json areas = host::jsonArray();
    Json inAreas = host::member(host::member(networks, "networkLinkStates"), "areas");
    host::forEach(host::member(host::member(routers, "routerLinkStates"), "areas"),
                  [&](const char *id, Json shown) {
                      Json area = host::jsonObject();
                      host::put(area, "id", id);
                      host::put(area, "routers", each(shown, routerOf));
                      host::put(area, "networks", each(host::member(inAreas, id), networkOf));
                      host::append(areas, area);
                  });
    return areas;
}

} // namespace

Json database(Json /*arguments*/) {
    Asking daemon("ospfd");
    Json answer = host::jsonObject();
    Json routers = daemon.json("show ip ospf database router json");
    Json networks = daemon.json("show ip ospf database network json");
    Json external = daemon.json("show ip ospf database external json");
    host::putFlag(answer, "running", daemon.runs());
    putText(answer, "router_id", routers, "routerId");
    host::put(answer, "areas", areasOf(routers, networks));
    host::put(answer, "external", each(host::member(external, "asExternalLinkStates"), externalOf));
    return answer;
}

} // namespace frruci::rpcd
