// SPDX-License-Identifier: Apache-2.0
// 100,000 random operations on the OSPF model, each answered and remembered as a plain model does.

#include <array>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "common/dlist.h"
#include "ospf/uc_ospf.h"
#include "tests/unit/ospf_model_state.h"

namespace {

constexpr int kOperationsPerSeed = 20000;
constexpr int kOperationsPerCheck = 100;

constexpr uint32_t kNone = 0xFFFFFFFF;
constexpr uint32_t kNotFound = 0xFFFFFFFE;

// ---- the plain model: vectors and numbers, newest record first ----

template <typename Record> using Records = std::vector<Record>;

struct PlainProcess {
    uint8_t enabled = 0;
    uint16_t id = 0;
    uint32_t reserved = 0;
    uint32_t routerId = 0;
    uint32_t routerIdSet = 0;
    uint32_t graceful = 0;
    uint32_t advertise = 0;
    uint32_t always = 0;
    uint32_t originateMetric = 1;
    uint8_t metricType = 2;
    uint8_t distance = 110;
    uint32_t rfc1583 = 0;
    int32_t defaultMetric = -1;
    uint8_t paths = 16;
    uint32_t passive = 0;
    uint32_t bandwidth = 100000;
    std::array<uint16_t, 3> spf = {0, 50, 5000};
    Records<OspfNetworkCfg> networks;
    Records<OspfAreaCfg> areas;
    Records<OspfAreaAggCfg> aggregates;
    Records<OspfVirtualLinkCfg> links;
    Records<OspfRedistributeCfg> redistributions;
    bool redistributionsLost = false;
};

struct PlainEntry {
    bool used = false;
    uint32_t vlan = 0;
    std::array<uint32_t, 6> parameters = {10, 40, 5, 1, 1, 1}; // by key
    uint8_t networkType = 0;
    uint32_t mtuIgnore = 0;
    uint8_t authType = 0;
    std::string simpleKey = std::string(8, '\0');
    uint8_t md5KeyId = 0;
    std::string md5Key = std::string(16, '\0');
};

struct PlainModel {
    std::array<PlainProcess, 16> processes;
    std::array<PlainEntry, 64> entries;

    PlainProcess *process(uint32_t slot) { return slot < 16 ? &processes[slot] : nullptr; }

    uint32_t slotOf(uint16_t id) const {
        for (uint32_t slot = 0; slot < 16; ++slot) {
            if (processes[slot].id == id) {
                return slot;
            }
        }
        return kNone;
    }

    PlainEntry *entryOf(uint32_t vlan) {
        for (PlainEntry &entry : entries) {
            if (entry.used && entry.vlan == vlan) {
                return &entry;
            }
        }
        return nullptr;
    }

    PlainEntry *takeEntry(uint32_t vlan) {
        for (PlainEntry &entry : entries) {
            if (!entry.used) {
                entry.used = true;
                entry.vlan = vlan;
                return &entry;
            }
        }
        return nullptr;
    }

    uint32_t reset(uint32_t slot) {
        if (slot >= 16) {
            return 1;
        }
        processes[slot] = PlainProcess();
        return 0;
    }

    uint32_t enable(uint16_t id) {
        for (PlainProcess &candidate : processes) {
            if (candidate.enabled == 0) {
                candidate = PlainProcess();
                candidate.enabled = 1;
                candidate.id = id;
                return 0;
            }
        }
        return 4;
    }

    void clearFixedPlace() {
        processes[14].redistributionsLost = model::fixedClearLosesList();
        processes[15].enabled = 0;
        processes[15].id = 0;
        processes[15].reserved &= 0xffffff00;
    }
};

template <typename Record, typename Match>
typename Records<Record>::iterator first(Records<Record> &records, Match match) {
    auto at = records.begin();
    while (at != records.end() && !match(*at)) {
        ++at;
    }
    return at;
}

// ---- the same operation on both ----

class Twin {
public:
    explicit Twin(uint32_t seed) : random_(seed) {}

    /// Runs one random operation on both models; false when their answers differ.
    bool step() {
        using Operation = void (Twin::*)();
        static constexpr Operation kOperations[] = {
            &Twin::enable,     &Twin::rarelyReset,  &Twin::lookUpProcess, &Twin::setBasic,
            &Twin::setBasic,   &Twin::writeProcess, &Twin::setParameter,  &Twin::setParameter,
            &Twin::setAuth,    &Twin::setKey,       &Twin::setMtuIgnore,  &Twin::setNetworkType,
            &Twin::setMd5,     &Twin::insertArea,   &Twin::changeArea,    &Twin::deleteArea,
            &Twin::aggregate,  &Twin::aggregate,    &Twin::link,          &Twin::link,
            &Twin::network,    &Twin::network,      &Twin::redistribute,  &Twin::redistribute,
            &Twin::writeEntry,
        };
        const std::size_t choice = below(std::size(kOperations));
        last_ = choice;
        (this->*kOperations[choice])();
        return got_ == wanted_;
    }

    std::string difference() const {
        return "operation " + std::to_string(last_) + " answered " + std::to_string(got_) +
               ", not " + std::to_string(wanted_);
    }

    const PlainModel &plain() const { return plain_; }

private:
    uint32_t below(std::size_t limit) { return static_cast<uint32_t>(random_() % limit); }
    bool chance(uint32_t oneIn) { return below(oneIn) == 0; }
    uint32_t slot() { return below(18); }
    uint16_t id() { return static_cast<uint16_t>(below(6)); }
    uint32_t vlan() { return below(70); }
    uint32_t flag() { return below(3); } // 2 counts as set in places and as unset in others

    /// Letters, and zeroes after them, 16 bytes and more.
    std::string key() {
        std::string text(17, '\0');
        const uint32_t letters = below(17);
        for (uint32_t i = 0; i < letters; ++i) {
            text[i] = static_cast<char>('a' + below(26));
        }
        return text;
    }

    void answer(uint32_t got, uint32_t wanted) {
        got_ = got;
        wanted_ = wanted;
    }

    // -- processes

    void enable() {
        if (!chance(3)) {
            answer(0, 0);
            return;
        }
        const uint16_t process = id();
        answer(ucOspfEnableProcess(process), plain_.enable(process));
    }

    void rarelyReset() {
        if (!chance(3)) {
            answer(0, 0);
            return;
        }
        const uint32_t number = slot();
        answer(ucOspfDefaultProcessByNum(number), plain_.reset(number));
    }

    void lookUpProcess() {
        const uint16_t process = id();
        const uint32_t number = slot();
        const PlainProcess *plain = plain_.process(number);
        const uint32_t enabled = plain != nullptr && plain->enabled == 1 ? 1 : 0;
        answer(ucOspfHasProcessId(process) * 2 + ucOspfProcessIsEnable(number) +
                   ucOspfGetProcessPid(number),
               plain_.slotOf(process) * 2 + enabled);
    }

    void setBasic() {
        const uint16_t process = id();
        const uint32_t set = flag();
        const uint32_t key = below(10);
        const auto value = static_cast<int32_t>(random_());
        const uint32_t octet = below(256);
        const std::string text = "10.0.0." + std::to_string(octet);
        const uint16_t timers[] = {static_cast<uint16_t>(value), 7, static_cast<uint16_t>(octet)};
        const void *given = key == 0   ? static_cast<const void *>(text.c_str())
                            : key == 8 ? static_cast<const void *>(timers)
                                       : static_cast<const void *>(&value);
        answer(ucIpOpsfBasicSetParaByKey(process, set, given, key), 0);
        PlainProcess *plain = plain_.process(plain_.slotOf(process));
        if (plain == nullptr) {
            return;
        }
        const bool on = set != 0;
        const auto number = static_cast<uint32_t>(value);
        switch (key) {
        case 0:
            plain->routerIdSet = on;
            plain->routerId = on ? octet << 24 | 10 : plain->routerId;
            break;
        case 1:
            plain->graceful = on;
            break;
        case 2:
            plain->bandwidth = on ? number : 100000;
            break;
        case 3:
            plain->rfc1583 = on;
            break;
        case 4:
            plain->defaultMetric = on ? value : -1;
            break;
        case 5:
            plain->distance = on ? static_cast<uint8_t>(number & 255) : 110;
            break;
        case 6:
            plain->passive = on;
            break;
        case 7:
            plain->paths = on ? static_cast<uint8_t>(number & 255) : 16;
            break;
        case 8:
            plain->spf = {timers[0], timers[1], timers[2]};
            if (!on) {
                plain->spf = {0, 50, 5000};
            }
            break;
        default:
            break;
        }
    }

    void writeProcess() {
        const uint32_t number = slot();
        PlainProcess *plain = plain_.process(number);
        OspfProcessCfg record;
        const uint32_t result = ucOspfGetCfg(number, &record);
        if (result != 0) {
            answer(result, plain == nullptr ? 1 : 0);
            return;
        }
        record.reservedAddress = below(1000);
        record.always = flag();
        record.defaultRouteAdvertise = flag();
        record.originateMetric = below(1000);
        record.metricType = static_cast<uint8_t>(below(3));
        answer(ucOspfSetCfg(number, &record), plain == nullptr ? 1 : 0);
        if (plain != nullptr) {
            plain->reserved = record.reservedAddress;
            plain->always = record.always;
            plain->advertise = record.defaultRouteAdvertise;
            plain->originateMetric = record.originateMetric;
            plain->metricType = record.metricType;
        }
    }

    // -- interface entries

    /// The VLAN's entry in the plain model, a new one when set; null and the result otherwise.
    PlainEntry *entryFor(uint32_t vlanId, bool set, bool &isNew, uint32_t &result) {
        PlainEntry *entry = plain_.entryOf(vlanId);
        isNew = entry == nullptr;
        result = 0;
        if (entry != nullptr) {
            return entry;
        }
        if (!set) {
            result = kNotFound;
            return nullptr;
        }
        entry = plain_.takeEntry(vlanId);
        result = entry == nullptr ? kNone : 0;
        return entry;
    }

    void setParameter() {
        static constexpr uint32_t kUnset[] = {10, 40, 5, 1, 1, 1};
        static constexpr uint32_t kWidth[] = {65535, 65535, 65535, 65535, 65535, 255};
        const uint32_t number = vlan();
        const uint32_t set = flag();
        const uint32_t key = below(7);
        const auto value = static_cast<int32_t>(random_());
        bool isNew = false;
        uint32_t wanted = 0;
        PlainEntry *entry = entryFor(number, set != 0, isNew, wanted);
        answer(ucIpOpsfInfSetParaByKey(number, set, &value, key), wanted);
        if (entry == nullptr || key > 5) {
            return;
        }
        PlainEntry &target = isNew ? *entry : plain_.entries[0];
        target.parameters[key] =
            set != 0 ? static_cast<uint32_t>(value) & kWidth[key] : kUnset[key];
    }

    void setAuth() {
        const uint32_t number = vlan();
        const uint32_t set = flag();
        const uint32_t type = below(4);
        bool isNew = false;
        uint32_t wanted = 0;
        PlainEntry *entry = entryFor(number, set != 0, isNew, wanted);
        answer(ucIpOspfAuth(number, set, type), wanted);
        if (entry == nullptr) {
            return;
        }
        if (set != 0) {
            entry->authType = static_cast<uint8_t>(type);
        } else if (type == 1 || type == entry->authType) {
            entry->authType = 0;
        }
    }

    void setKey() {
        const uint32_t number = vlan();
        const uint32_t set = flag();
        const std::string text = key();
        bool isNew = false;
        uint32_t wanted = 0;
        PlainEntry *entry = entryFor(number, set != 0, isNew, wanted);
        answer(ucIpOspfAuthKey(number, set, text.data()), wanted);
        if (entry == nullptr) {
            return;
        }
        entry->simpleKey = set != 0 ? text.substr(0, 8) : std::string(8, '\0');
        if (isNew) {
            plain_.clearFixedPlace();
        }
    }

    void setMtuIgnore() {
        const uint32_t number = vlan();
        const uint32_t set = flag();
        bool isNew = false;
        uint32_t wanted = 0;
        PlainEntry *entry = entryFor(number, set != 0, isNew, wanted);
        answer(ucIpOspfMtuIgnore(number, set), wanted);
        if (entry != nullptr) {
            entry->mtuIgnore = set;
        }
    }

    void setNetworkType() {
        const uint32_t number = vlan();
        const uint32_t set = flag();
        const uint32_t type = below(300);
        bool isNew = false;
        uint32_t wanted = 0;
        PlainEntry *entry = entryFor(number, set != 0, isNew, wanted);
        answer(ucIpOspfNetwork(number, set, type), wanted);
        if (entry != nullptr) {
            entry->networkType = static_cast<uint8_t>(set != 0 ? type : 0);
        }
    }

    void setMd5() {
        const uint32_t number = vlan();
        const uint32_t set = flag();
        const uint32_t keyId = below(300);
        const std::string text = key();
        bool isNew = false;
        uint32_t wanted = 0;
        PlainEntry *entry = entryFor(number, set != 0, isNew, wanted);
        answer(ucIpOspfAuthM5dKey(number, set, keyId, text.data()), wanted);
        if (entry != nullptr) {
            entry->md5KeyId = static_cast<uint8_t>(set != 0 ? keyId : 0);
            entry->md5Key = set != 0 ? text.substr(0, 16) : std::string(16, '\0');
        }
    }

    void writeEntry() {
        const uint32_t index = below(66);
        OspfInterfaceEntry entry;
        const uint32_t wanted = index < 64 ? 0 : 1;
        const uint32_t got = ucOspfGetInCfg(index, &entry);
        if (got != 0 || wanted != 0) {
            answer(got, wanted);
            return;
        }
        entry.cost = static_cast<uint16_t>(below(65536));
        answer(ucOspfSetInCfg(index, &entry), wanted);
        plain_.entries[index].parameters[4] = entry.cost;
    }

    // -- lists

    void insertArea() {
        const uint32_t number = slot();
        OspfAreaCfg record;
        (void)ucOspfAreaInit(&record); // always 0
        record.areaId = below(4);
        record.areaType = static_cast<uint8_t>(below(3));
        PlainProcess *plain = plain_.process(number);
        if (plain != nullptr && plain->areas.size() > 20) {
            answer(0, 0); // long enough
            return;
        }
        answer(ucOspfAreaInsert(number, &record), plain != nullptr ? 0 : 4);
        if (plain != nullptr) {
            plain->areas.insert(plain->areas.begin(), {record.areaId, record.areaType, 1, 0, {}});
        }
    }

    void changeArea() {
        const uint32_t number = slot();
        const uint32_t area = below(4);
        PlainProcess *plain = plain_.process(number);
        OspfAreaCfg record = {};
        const uint32_t result = ucOspfAreaGetCfg(number, area, &record);
        if (plain == nullptr) {
            answer(result, kNotFound);
            return;
        }
        const auto at =
            first(plain->areas, [area](const OspfAreaCfg &held) { return held.areaId == area; });
        if (at == plain->areas.end()) {
            answer(result, kNotFound);
            return;
        }
        if (result != 0 || record.areaType != at->areaType) {
            answer(result, 4711);
            return;
        }
        record.defaultCost = below(100);
        record.noSummary = flag();
        answer(ucOspfAreaSetCfg(number, area, &record), 0);
        *at = record;
    }

    void deleteArea() {
        const uint32_t number = slot();
        const uint32_t area = below(4);
        const uint32_t type = below(4);
        uint32_t wanted = 1;
        if (PlainProcess *plain = plain_.process(number)) {
            const auto at = first(plain->areas,
                                  [area](const OspfAreaCfg &held) { return held.areaId == area; });
            if (at != plain->areas.end() && at->areaType == type) {
                plain->areas.erase(at);
                wanted = 0;
            }
        }
        answer(ucOspfAreaDelete(number, area, type), wanted);
    }

    /// Inserts, changes or deletes a record of a kind whose key holds no more than its words.
    template <typename Record, typename Match, typename Insert, typename Set, typename Delete>
    void change(Records<Record> *records, const Record &record, Match match, Insert insert,
                Set store, Delete remove) {
        const uint32_t operation = below(3);
        if (operation == 0) {
            if (records != nullptr && records->size() > 20) {
                answer(0, 0); // long enough
                return;
            }
            answer(insert(), records != nullptr ? 0 : 4);
            if (records != nullptr) {
                records->insert(records->begin(), record);
            }
            return;
        }
        const bool held = records != nullptr && first(*records, match) != records->end();
        if (operation == 1) {
            answer(store(), held ? 0 : kNotFound);
            if (held) {
                *first(*records, match) = record;
            }
            return;
        }
        answer(remove(), held ? 0 : 1);
        if (held) {
            records->erase(first(*records, match));
        }
    }

    void aggregate() {
        const uint32_t number = slot();
        const OspfAreaAggCfg record = {below(3), below(3), below(3), below(100), flag()};
        const uint64_t key = model::words(record.areaId, record.prefix);
        PlainProcess *plain = plain_.process(number);
        change(
            plain != nullptr ? &plain->aggregates : nullptr, record,
            [&record](const OspfAreaAggCfg &held) {
                return held.areaId == record.areaId && held.prefix == record.prefix &&
                       held.mask == record.mask;
            },
            [&] { return ucOspfAreaAggInsert(number, &record); },
            [&] { return ucOspfAreaAggSetCfg(number, key, record.mask, &record); },
            [&] { return ucOspfAreaRangeDelete(number, key, record.mask); });
    }

    void link() {
        const uint32_t number = slot();
        OspfVirtualLinkCfg record = {};
        record.areaId = below(3);
        record.peerRouterId = below(3);
        record.helloInterval = static_cast<uint16_t>(below(65536));
        memcpy(record.md5Key, key().data(), sizeof record.md5Key);
        const uint64_t words = model::words(record.areaId, record.peerRouterId);
        PlainProcess *plain = plain_.process(number);
        change(
            plain != nullptr ? &plain->links : nullptr, record,
            [&record](const OspfVirtualLinkCfg &held) {
                return held.areaId == record.areaId && held.peerRouterId == record.peerRouterId;
            },
            [&] { return ucOspfVirtualLinkInsert(number, &record); },
            [&] { return ucOspfVirtualLinkSetCfg(number, words, &record); },
            [&] { return ucOspfVirtualLinkDelete(number, words); });
    }

    void network() {
        const uint32_t number = slot();
        const OspfNetworkCfg record = {below(4), below(3), below(100)};
        const uint64_t key = model::words(record.address, record.mask);
        PlainProcess *plain = plain_.process(number);
        change(
            plain != nullptr ? &plain->networks : nullptr, record,
            [&record](const OspfNetworkCfg &held) {
                return held.address == record.address && held.mask == record.mask;
            },
            [&] { return ucOspfNetworkInsert(number, &record); },
            [&] { return ucOspfNetworkSetCfg(number, key, &record); },
            [&] { return ucOspfNetworkDelete(number, key); });
    }

    void redistribute() {
        const uint32_t number = slot();
        const uint32_t set = flag();
        const uint32_t source = below(6);
        const uint32_t metric = below(1000);
        const uint32_t hasMetric = flag();
        const uint32_t type = below(3);
        const uint32_t hasType = flag();
        const uint32_t process = below(70000);
        const uint32_t got =
            ucOspfRedistribute(number, set, source, metric, hasMetric, type, hasType, process);
        PlainProcess *plain = plain_.process(number);
        if (plain == nullptr || plain->redistributionsLost) {
            answer(got, set == 1 ? 4 : 1);
            return;
        }
        auto &records = plain->redistributions;
        auto at = first(
            records, [source](const OspfRedistributeCfg &held) { return held.source == source; });
        if (set != 1) {
            answer(got, at == records.end() ? 1 : 0);
            if (at != records.end()) {
                records.erase(at);
            }
            return;
        }
        answer(got, 0);
        if (at == records.end()) {
            at = records.insert(records.begin(), {static_cast<uint8_t>(source), 1, 0, 2, 0});
        }
        at->metric = hasMetric == 1 ? metric : at->metric;
        at->metricType = hasType == 1 ? static_cast<uint8_t>(type) : at->metricType;
        at->sourceProcessId = source == 2 ? static_cast<uint16_t>(process) : at->sourceProcessId;
    }

    PlainModel plain_;
    std::mt19937 random_;
    std::size_t last_ = 0;
    uint32_t got_ = 0;
    uint32_t wanted_ = 0;
};

// ---- comparing what they hold ----

template <typename Record> bool same(const Records<Record> &wanted, const dlist *list) {
    const dlist_node *node = list->head;
    for (const Record &record : wanted) {
        if (node == nullptr || memcmp(&record, node->data, sizeof record) != 0) {
            return false;
        }
        node = node->next;
    }
    return node == nullptr && list->count == wanted.size();
}

/// These two have bytes of padding.
bool sameFields(const OspfAreaCfg &a, const OspfAreaCfg &b) {
    return a.areaId == b.areaId && a.areaType == b.areaType && a.defaultCost == b.defaultCost &&
           a.noSummary == b.noSummary && memcmp(a.trailing, b.trailing, sizeof a.trailing) == 0;
}

bool sameFields(const OspfRedistributeCfg &a, const OspfRedistributeCfg &b) {
    return a.source == b.source && a.set == b.set && a.metric == b.metric &&
           a.metricType == b.metricType && a.sourceProcessId == b.sourceProcessId;
}

template <typename Record> bool samePadded(const Records<Record> &wanted, const dlist *list) {
    const dlist_node *node = list->head;
    for (const Record &record : wanted) {
        if (node == nullptr || !sameFields(record, *static_cast<const Record *>(node->data))) {
            return false;
        }
        node = node->next;
    }
    return node == nullptr && list->count == wanted.size();
}

void expectSame(const PlainProcess &plain, const OspfProcessCfg &process) {
    EXPECT_EQ(process.enabled, plain.enabled);
    EXPECT_EQ(process.processId, plain.id);
    EXPECT_EQ(process.reservedAddress, plain.reserved);
    EXPECT_EQ(process.routerId, plain.routerId);
    EXPECT_EQ(process.routerIdSet, plain.routerIdSet);
    EXPECT_EQ(process.gracefulRestart, plain.graceful);
    EXPECT_EQ(process.defaultRouteAdvertise, plain.advertise);
    EXPECT_EQ(process.always, plain.always);
    EXPECT_EQ(process.originateMetric, plain.originateMetric);
    EXPECT_EQ(process.metricType, plain.metricType);
    EXPECT_EQ(process.adminDistance, plain.distance);
    EXPECT_EQ(process.rfc1583Compatibility, plain.rfc1583);
    EXPECT_EQ(process.defaultMetric, plain.defaultMetric);
    EXPECT_EQ(process.maximumPaths, plain.paths);
    EXPECT_EQ(process.passiveDefault, plain.passive);
    EXPECT_EQ(process.referenceBandwidth, plain.bandwidth);
    EXPECT_EQ(process.spfDelay, plain.spf[0]);
    EXPECT_EQ(process.spfInitialHold, plain.spf[1]);
    EXPECT_EQ(process.spfMaximumHold, plain.spf[2]);
    EXPECT_TRUE(same(plain.networks, process.networks));
    EXPECT_TRUE(samePadded(plain.areas, process.areas));
    EXPECT_TRUE(same(plain.aggregates, process.areaAggregates));
    EXPECT_TRUE(same(plain.links, process.virtualLinks));
    if (!plain.redistributionsLost) {
        EXPECT_TRUE(samePadded(plain.redistributions, process.redistributions));
    }
}

void expectSame(const PlainEntry &plain, const OspfInterfaceEntry &entry) {
    EXPECT_EQ(entry.inUse, plain.used ? 1u : 0u);
    EXPECT_EQ(entry.vlanId, plain.vlan);
    EXPECT_EQ(entry.processId, 0);
    EXPECT_EQ(entry.areaId, 0u);
    EXPECT_EQ(entry.helloInterval, plain.parameters[0]);
    EXPECT_EQ(entry.deadInterval, plain.parameters[1]);
    EXPECT_EQ(entry.retransmitInterval, plain.parameters[2]);
    EXPECT_EQ(entry.transmitDelay, plain.parameters[3]);
    EXPECT_EQ(entry.cost, plain.parameters[4]);
    EXPECT_EQ(entry.priority, plain.parameters[5]);
    EXPECT_EQ(entry.networkType, plain.networkType);
    EXPECT_EQ(entry.spare, 1u);
    EXPECT_EQ(entry.mtuIgnore, plain.mtuIgnore);
    EXPECT_EQ(entry.authType, plain.authType);
    EXPECT_EQ(memcmp(entry.simpleKey, plain.simpleKey.data(), 8), 0);
    EXPECT_EQ(entry.md5KeyId, plain.md5KeyId);
    EXPECT_EQ(memcmp(entry.md5Key, plain.md5Key.data(), 16), 0);
}

void expectSame(const PlainModel &plain) {
    for (uint32_t slot = 0; slot < 16; ++slot) {
        SCOPED_TRACE("slot " + std::to_string(slot));
        expectSame(plain.processes[slot], pucOspf->process[slot]);
    }
    for (uint32_t index = 0; index < 64; ++index) {
        SCOPED_TRACE("entry " + std::to_string(index));
        expectSame(plain.entries[index], pucOspf->interface[index]);
    }
}

class Random : public testing::TestWithParam<uint32_t> {};

TEST_P(Random, OperationsAnswerAndRememberAsAPlainModelDoes) {
    ASSERT_EQ(ucOspfInit(), 0u);
    Twin twin(GetParam());
    for (int operation = 0; operation < kOperationsPerSeed; ++operation) {
        ASSERT_TRUE(twin.step()) << "at " << operation << ": " << twin.difference();
        if (operation % kOperationsPerCheck == 0) {
            expectSame(twin.plain());
            ASSERT_FALSE(HasFailure()) << "at " << operation;
        }
    }
    expectSame(twin.plain());
}

INSTANTIATE_TEST_SUITE_P(Seeds, Random, testing::Values(1u, 20u, 300u, 4000u, 50000u));

} // namespace
