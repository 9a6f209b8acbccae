// SPDX-License-Identifier: Apache-2.0
// Random operations on the RIP model, compared step by step with a model written apart from it.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "rip/uc_rip.h"

namespace {

constexpr int kOperations = 100000;
constexpr int kCompareEvery = 250;

struct Network {
    std::string ip;
    std::string mask;
    bool operator==(const Network &) const = default;
};

struct Instance {
    std::string name;
    // version, update, timeout, garbage, metric, distance, auto summary
    std::vector<uint32_t> options = {0, 30, 180, 120, 1, 120, 0};
    std::vector<Network> networks = {};
    std::vector<std::string> neighbors = {};
};

struct Interface {
    uint32_t type;
    uint32_t vid;
    // send, receive, broadcast, auth type, key id, split horizon, passive
    std::vector<uint32_t> options = {0, 0, 0, 0, 1, 1, 0};
    std::string authText = {};
};

struct InstanceOption {
    uint32_t (*get)(const char *, uint32_t *);
    uint32_t (*set)(const char *, uint32_t);
    uint32_t low;
    uint32_t high;
};

const InstanceOption kInstanceOptions[] = {
    {ucRipDefaultVersionGet, ucRipDefaultVersionSet, 0, 3  },
    {ucRipTimerUpdateGet,    ucRipTimerUpdateSet,    5, 100},
    {ucRipTimerTimeoutGet,   ucRipTimerTimeoutSet,   5, 300},
    {ucRipTimerGarbageGet,   ucRipTimerGarbageSet,   5, 500},
    {ucRipDefaultMetricGet,  ucRipDefaultMetricSet,  0, 16 },
    {ucRipDistanceGet,       ucRipDistanceSet,       1, 255},
    {ucRipAutosummGet,       ucRipAutosummSet,       0, 1  },
};

struct InterfaceOption {
    uint32_t (*get)(RipNetIf, uint32_t *);
    uint32_t (*set)(RipNetIf, uint32_t);
    uint32_t low;
    uint32_t high;
    std::size_t slot;
};

const InterfaceOption kInterfaceOptions[] = {
    {ucRipInterfaceSendVersionGet,           ucRipInterfaceSendVersionSet,           0, 3,   0},
    {ucRipInterfaceRecvVersionGet,           ucRipInterfaceRecvVersionSet,           0, 3,   1},
    {ucRipInterfaceV2broadcastGet,           ucRipInterfaceV2broadcastSet,           0, 1,   2},
    {ucRipInterfaceAuth_typeGet,             ucRipInterfaceAuth_typeSet,             0, 2,   3},
    {ucRipInterfaceAuth_keyidGet,            ucRipInterfaceAuth_keyidSet,            1, 255, 4},
    {ucRipInterfaceSplitHorizonEnableGet,    ucRipInterfaceSplitHorizonEnableSet,    0, 1,   5},
    {ucRipInterfacePoisonedReverseEnableGet, ucRipInterfacePoisonedReverseEnableSet, 0, 1,   5},
    {ucRipInterfacePassiveEnableGet,         ucRipInterfacePassiveEnableSet,         0, 1,   6},
};

const std::string kLong(36, 'x');
const std::vector<std::string> kNames = {"default", "a",         "",
                                         kLong,     kLong + "y", std::string(50, 'x')};
const std::vector<std::string> kAddresses = {
    "10.0.0.1", "10.0.0.2", "", "123.123.123.123", "123.123.123.1234", "not an address at all"};

template <class Items, class Matches> auto position(Items &items, Matches matches) {
    return std::find_if(items.begin(), items.end(), matches);
}

template <class Items, class Matches> void removeFirst(Items &items, Matches matches) {
    const auto at = position(items, matches);
    if (at != items.end()) {
        items.erase(at);
    }
}

/// Drives both models with the same random operations.
class Duel {
public:
    explicit Duel(uint32_t seed) : random_(seed) {}

    void step() { (this->*kSteps[below(std::size(kSteps))])(); }
    void compare();

private:
    using Step = void (Duel::*)();
    static const Step kSteps[12];

    std::size_t below(std::size_t bound) { return random_() % bound; }
    const std::string &name() { return kNames[below(kNames.size())]; }
    const std::string &address() { return kAddresses[below(kAddresses.size())]; }
    RipNetIf key() { return {static_cast<uint32_t>(below(3)), static_cast<uint32_t>(below(4))}; }
    uint32_t valueAround(uint32_t low, uint32_t high) {
        const uint32_t candidates[] = {
            low - 1, low,      low + 1, high - 1,
            high,    high + 1, 0x10001, static_cast<uint32_t>(random_())};
        return candidates[below(std::size(candidates))];
    }

    Instance *instance(const std::string &wanted) {
        const auto at = position(instances_, [&](const Instance &i) { return i.name == wanted; });
        return wanted.size() > 36 || at == instances_.end() ? nullptr : &*at;
    }
    Interface *interface(RipNetIf wanted) {
        const auto at = position(interfaces_, [&](const Interface &i) {
            return i.type == wanted.type && i.vid == wanted.vid;
        });
        return at == interfaces_.end() ? nullptr : &*at;
    }

    void appendInstance();
    void removeInstance();
    void findInstance();
    void appendNetwork();
    void removeNetwork();
    void appendNeighbor();
    void removeNeighbor();
    void appendInterface();
    void removeInterface();
    void instanceOption();
    void interfaceOption();
    void authText();

    std::mt19937 random_;
    std::vector<Instance> instances_;
    std::vector<Interface> interfaces_;
};

const Duel::Step Duel::kSteps[12] = {
    &Duel::appendInstance,  &Duel::removeInstance, &Duel::findInstance,    &Duel::appendNetwork,
    &Duel::removeNetwork,   &Duel::appendNeighbor, &Duel::removeNeighbor,  &Duel::appendInterface,
    &Duel::removeInterface, &Duel::instanceOption, &Duel::interfaceOption, &Duel::authText};

void Duel::appendInstance() {
    const std::string &wanted = name();
    RipVrfNode *out = nullptr;
    ASSERT_EQ(ucRipVrfAppend(wanted.c_str(), &out), 0U);
    ASSERT_EQ(wanted.substr(0, 36), out->name);
    if (instance(wanted) == nullptr) {
        instances_.push_back({wanted.substr(0, 36)});
    }
}

void Duel::removeInstance() {
    const std::string &wanted = name();
    if (below(4) != 0) { // seldom enough that instances fill up
        return;
    }
    ASSERT_EQ(ucRipVrfRemoveByName(wanted.c_str()), 0U);
    if (wanted.size() <= 36) {
        removeFirst(instances_, [&](const Instance &i) { return i.name == wanted; });
    }
}

void Duel::findInstance() {
    const std::string &wanted = name();
    RipVrfNode *out = nullptr;
    ASSERT_EQ(ucRipVrfFindByName(wanted.c_str(), &out), instance(wanted) == nullptr ? 1U : 0U);
    ASSERT_EQ(out != nullptr, instance(wanted) != nullptr);
}

void Duel::appendNetwork() {
    const std::string &vrf = name();
    const Network wanted = {address(), address()};
    RipNetworkNode *out = nullptr;
    Instance *owner = instance(vrf);
    ASSERT_EQ(ucRipNetworkNodeAppend(vrf.c_str(), wanted.ip.c_str(), wanted.mask.c_str(), &out),
              owner == nullptr ? 1U : 0U);
    if (owner != nullptr) {
        const Network kept = {wanted.ip.substr(0, 15), wanted.mask.substr(0, 15)};
        ASSERT_EQ(kept.ip, out->ip);
        ASSERT_EQ(kept.mask, out->mask);
        const auto &all = owner->networks;
        if (kept != wanted || std::find(all.begin(), all.end(), wanted) == all.end()) {
            owner->networks.push_back(kept);
        }
    }
}

void Duel::removeNetwork() {
    const std::string &vrf = name();
    const Network wanted = {address(), address()};
    Instance *owner = instance(vrf);
    ASSERT_EQ(ucRipNetworkNodeRemoveByName(vrf.c_str(), wanted.ip.c_str(), wanted.mask.c_str()),
              owner == nullptr ? 1U : 0U);
    if (owner != nullptr) {
        removeFirst(owner->networks, [&](const Network &n) { return n == wanted; });
    }
}

void Duel::appendNeighbor() {
    const std::string &vrf = name();
    const std::string &wanted = address();
    RipNeighborNode *out = nullptr;
    Instance *owner = instance(vrf);
    const uint32_t status = owner == nullptr ? 1U : wanted.size() > 15 ? 4U : 0U;
    ASSERT_EQ(ucRipNeighborAppend(vrf.c_str(), wanted.c_str(), &out), status);
    if (status == 0) {
        ASSERT_EQ(wanted, out->addr);
        auto &all = owner->neighbors;
        if (std::find(all.begin(), all.end(), wanted) == all.end()) {
            all.push_back(wanted);
        }
    }
}

void Duel::removeNeighbor() {
    const std::string &vrf = name();
    const std::string &wanted = address();
    Instance *owner = instance(vrf);
    ASSERT_EQ(ucRipNeighborRemoveByName(vrf.c_str(), wanted.c_str()), owner == nullptr ? 1U : 0U);
    if (owner != nullptr) {
        removeFirst(owner->neighbors, [&](const std::string &n) { return n == wanted; });
    }
}

void Duel::appendInterface() {
    const RipNetIf wanted = key();
    RipInterfaceNode *out = nullptr;
    ASSERT_EQ(ucRipInterfaceNodeAppend(wanted, &out), 0U);
    ASSERT_EQ(out->vlan_id, wanted.type == 1 ? wanted.vid : 0);
    if (interface(wanted) == nullptr) {
        interfaces_.push_back({wanted.type, wanted.vid});
    }
}

void Duel::removeInterface() {
    const RipNetIf wanted = key();
    ASSERT_EQ(ucRipInterfaceNodeRemoveByKey(wanted), 0U);
    removeFirst(interfaces_,
                [&](const Interface &i) { return i.type == wanted.type && i.vid == wanted.vid; });
}

void Duel::instanceOption() {
    const std::size_t slot = below(std::size(kInstanceOptions));
    const InstanceOption &option = kInstanceOptions[slot];
    const std::string &vrf = name();
    Instance *owner = instance(vrf);
    const uint32_t wanted = valueAround(option.low, option.high);
    const bool stored = owner != nullptr && wanted >= option.low && wanted <= option.high;
    ASSERT_EQ(option.set(vrf.c_str(), wanted), stored ? 0U : 1U);
    if (stored) {
        owner->options[slot] = wanted;
    }
    uint32_t value = 0;
    ASSERT_EQ(option.get(vrf.c_str(), &value), owner == nullptr ? 1U : 0U);
    ASSERT_EQ(value, owner == nullptr ? 0 : owner->options[slot]);
}

void Duel::interfaceOption() {
    const InterfaceOption &option = kInterfaceOptions[below(std::size(kInterfaceOptions))];
    const RipNetIf at = key();
    Interface *owner = interface(at);
    const uint32_t wanted = valueAround(option.low, option.high);
    const bool stored = owner != nullptr && wanted >= option.low && wanted <= option.high;
    ASSERT_EQ(option.set(at, wanted), stored ? 0U : 1U);
    if (stored) {
        owner->options[option.slot] = wanted;
    }
    uint32_t value = 0;
    ASSERT_EQ(option.get(at, &value), owner == nullptr ? 1U : 0U);
    ASSERT_EQ(value, owner == nullptr ? 0 : owner->options[option.slot]);
}

void Duel::authText() {
    const RipNetIf at = key();
    Interface *owner = interface(at);
    const std::string wanted(below(20), static_cast<char>('a' + below(26)));
    const bool stored = owner != nullptr && wanted.size() <= 16;
    ASSERT_EQ(ucRipInterfaceAuth_strSet(at, wanted.c_str()), stored ? 0U : 1U);
    if (stored) {
        owner->authText = wanted;
    }
    char text[17] = "";
    ASSERT_EQ(ucRipInterfaceAuth_strGet(at, text), owner == nullptr ? 1U : 0U);
    ASSERT_EQ(owner == nullptr ? std::string() : owner->authText, text);
}

template <class Record, class Wanted, class Same>
void compareLists(const dlist *list, const std::vector<Wanted> &wanted, Same same) {
    ASSERT_EQ(list->count, wanted.size());
    const dlist_node *entry = list->head;
    const dlist_node *before = nullptr;
    for (const Wanted &each : wanted) {
        ASSERT_NE(entry, nullptr);
        ASSERT_EQ(entry->prev, before);
        same(*static_cast<const Record *>(entry->data), each);
        before = entry;
        entry = entry->next;
    }
    ASSERT_EQ(entry, nullptr);
    ASSERT_EQ(list->tail, before);
}

void sameInstance(const RipVrfNode &vrf, const Instance &wanted) {
    ASSERT_EQ(wanted.name, vrf.name);
    const std::vector<uint32_t> options = {vrf.version,       vrf.update_timer,   vrf.timeout_timer,
                                           vrf.garbage_timer, vrf.default_metric, vrf.distance,
                                           vrf.auto_summary};
    ASSERT_EQ(options, wanted.options);
    compareLists<RipNetworkNode>(vrf.networks, wanted.networks,
                                 [](const RipNetworkNode &network, const Network &each) {
                                     ASSERT_EQ(each.ip, network.ip);
                                     ASSERT_EQ(each.mask, network.mask);
                                 });
    compareLists<RipNeighborNode>(vrf.neighbors, wanted.neighbors,
                                  [](const RipNeighborNode &neighbor, const std::string &each) {
                                      ASSERT_EQ(each, neighbor.addr);
                                  });
}

void sameInterface(const RipInterfaceNode &interface, const Interface &wanted) {
    ASSERT_EQ(interface.key.type, wanted.type);
    ASSERT_EQ(interface.key.vid, wanted.vid);
    const std::vector<uint32_t> options = {interface.send_version, interface.recv_version,
                                           interface.v2_broadcast, interface.auth_type,
                                           interface.auth_keyid,   interface.split_horizon,
                                           interface.passive};
    ASSERT_EQ(options, wanted.options);
    ASSERT_EQ(interface.poison_reverse, 0);
    ASSERT_EQ(wanted.authText, interface.auth_str);
}

void Duel::compare() {
    compareLists<RipVrfNode>(gRipVrfList, instances_, sameInstance);
    compareLists<RipInterfaceNode>(gRipIfList, interfaces_, sameInterface);
}

class Random : public testing::TestWithParam<uint32_t> {};

TEST_P(Random, BothModelsAgree) {
    ASSERT_EQ(ucRipInit(), 0U);
    Duel duel(GetParam());
    for (int i = 1; i <= kOperations; ++i) {
        duel.step();
        if (i % kCompareEvery == 0) {
            duel.compare();
        }
        ASSERT_FALSE(HasFatalFailure()) << "operation " << i;
    }
    duel.compare();
}

INSTANTIATE_TEST_SUITE_P(Seeds, Random, testing::Values(1U, 20u, 300u));

} // namespace
