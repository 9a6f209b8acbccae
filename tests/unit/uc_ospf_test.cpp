// SPDX-License-Identifier: Apache-2.0
// The model block, its process slots, and the router-level settings by key.

#include <cstddef>
#include <cstring>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "common/dlist.h"
#include "ospf/uc_ospf.h"
#include "tests/unit/ospf_model_state.h"

namespace {

constexpr uint32_t kNone = 0xFFFFFFFF;

/// What the library did with whole lists, in order, while a test listens.
std::vector<std::string> *listEvents = nullptr;
std::vector<const dlist *> *destroyed = nullptr;

template <typename Function> Function original(const char *name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

// These take the place of the library's own and pass on to them.
dlist *dlistCreate(dlist_destroy_fn data_destroy, dlist_cmp_fn data_cmp) {
    if (listEvents != nullptr) {
        listEvents->push_back(data_cmp == nullptr ? "create" : "create sorted");
    }
    return original<dlist *(*)(dlist_destroy_fn, dlist_cmp_fn)>("dlistCreate")(data_destroy,
                                                                               data_cmp);
}

void dlistDestroy(dlist *list) {
    if (listEvents != nullptr) {
        listEvents->push_back("destroy");
        destroyed->push_back(list);
    }
    original<void (*)(dlist *)>("dlistDestroy")(list);
}

namespace {

class Model : public testing::Test {
protected:
    Model() { EXPECT_EQ(ucOspfInit(), 0u); }
    ~Model() override { pucOspf = nullptr; }
    Model(const Model &) = delete;
    Model &operator=(const Model &) = delete;

    static const OspfProcessCfg &slot(std::size_t number) { return pucOspf->process[number]; }
};

TEST_F(Model, AFreshSlotHoldsTheDefaults) {
    for (const OspfProcessCfg &process : pucOspf->process) {
        EXPECT_EQ(process.enabled, 0);
        EXPECT_EQ(process.processId, 0);
        EXPECT_EQ(process.reservedAddress, 0u);
        EXPECT_EQ(process.routerId, 0u);
        EXPECT_EQ(process.routerIdSet, 0u);
        EXPECT_EQ(process.gracefulRestart, 0u);
        EXPECT_EQ(process.defaultRouteAdvertise, 0u);
        EXPECT_EQ(process.always, 0u);
        EXPECT_EQ(process.originateMetric, 1u);
        EXPECT_EQ(process.metricType, 2);
        EXPECT_EQ(process.adminDistance, 110);
        EXPECT_EQ(process.rfc1583Compatibility, 0u);
        EXPECT_EQ(process.defaultMetric, -1);
        EXPECT_EQ(process.maximumPaths, 16);
        EXPECT_EQ(process.passiveDefault, 0u);
        EXPECT_EQ(process.referenceBandwidth, 100000u);
        EXPECT_EQ(process.spfDelay, 0);
        EXPECT_EQ(process.spfInitialHold, 50);
        EXPECT_EQ(process.spfMaximumHold, 5000);
        for (const dlist *list : {process.networks, process.areas, process.areaAggregates,
                                  process.virtualLinks, process.redistributions}) {
            ASSERT_NE(list, nullptr);
            EXPECT_EQ(list->count, 0u);
            EXPECT_EQ(list->data_destroy, &free);
            EXPECT_EQ(list->data_cmp, nullptr);
        }
    }
}

TEST_F(Model, AFreshEntryHoldsTheDefaults) {
    for (const OspfInterfaceEntry &entry : pucOspf->interface) {
        OspfInterfaceEntry wanted;
        memset(&wanted, 0, sizeof wanted);
        wanted.priority = 1;
        wanted.retransmitInterval = 5;
        wanted.helloInterval = 10;
        wanted.deadInterval = 40;
        wanted.transmitDelay = 1;
        wanted.cost = 1;
        wanted.spare = 1;
        EXPECT_EQ(entry.inUse, 0u);
        EXPECT_EQ(entry.vlanId, 0u);
        EXPECT_EQ(entry.processId, 0);
        EXPECT_EQ(entry.areaId, 0u);
        EXPECT_EQ(entry.priority, wanted.priority);
        EXPECT_EQ(entry.retransmitInterval, wanted.retransmitInterval);
        EXPECT_EQ(entry.helloInterval, wanted.helloInterval);
        EXPECT_EQ(entry.deadInterval, wanted.deadInterval);
        EXPECT_EQ(entry.transmitDelay, wanted.transmitDelay);
        EXPECT_EQ(entry.cost, wanted.cost);
        EXPECT_EQ(entry.networkType, 0);
        EXPECT_EQ(entry.spare, wanted.spare);
        EXPECT_EQ(entry.mtuIgnore, 0u);
        EXPECT_EQ(entry.authType, 0);
        EXPECT_EQ(memcmp(entry.simpleKey, wanted.simpleKey, 8), 0);
        EXPECT_EQ(entry.md5KeyId, 0);
        EXPECT_EQ(memcmp(entry.md5Key, wanted.md5Key, 16), 0);
    }
}

TEST_F(Model, ASecondInitMakesANewModel) {
    const OspfModelBlock *first = pucOspf;
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    ASSERT_EQ(ucOspfInit(), 0u);
    EXPECT_NE(pucOspf, first);
    EXPECT_EQ(ucOspfHasProcessId(1), kNone);
    EXPECT_EQ(first->process[0].processId, 1);
}

TEST_F(Model, ProcessesTakeTheFirstFreeSlot) {
    EXPECT_EQ(ucOspfEnableProcess(1), 0u);
    EXPECT_EQ(ucOspfEnableProcess(2), 0u);
    EXPECT_EQ(ucOspfHasProcessId(1), 0u);
    EXPECT_EQ(ucOspfHasProcessId(2), 1u);
    EXPECT_EQ(ucOspfHasProcessId(3), kNone);
    ASSERT_EQ(ucOspfDefaultProcessByNum(0), 0u);
    EXPECT_EQ(ucOspfHasProcessId(1), kNone);
    EXPECT_EQ(ucOspfEnableProcess(7), 0u);
    EXPECT_EQ(ucOspfHasProcessId(7), 0u);
}

TEST_F(Model, OneIdEnabledTwiceTakesTwoSlots) {
    EXPECT_EQ(ucOspfEnableProcess(1), 0u);
    EXPECT_EQ(ucOspfEnableProcess(1), 0u);
    EXPECT_EQ(slot(0).processId, 1);
    EXPECT_EQ(slot(1).processId, 1);
    EXPECT_EQ(ucOspfProcessIsEnable(0), 1u);
    EXPECT_EQ(ucOspfProcessIsEnable(1), 1u);
    EXPECT_EQ(ucOspfHasProcessId(1), 0u);
}

TEST_F(Model, ASeventeenthProcessFindsNoSlotAndChangesNothing) {
    for (uint16_t id = 1; id <= 16; ++id) {
        ASSERT_EQ(ucOspfEnableProcess(id), 0u);
    }
    model::Changes changes;
    EXPECT_EQ(ucOspfEnableProcess(17), 4u);
    EXPECT_EQ(changes.take(), "");
    EXPECT_EQ(ucOspfHasProcessId(16), 15u);
    EXPECT_EQ(ucOspfHasProcessId(17), kNone);
}

TEST_F(Model, EnablingResetsTheSlot) {
    OspfProcessCfg record;
    ASSERT_EQ(ucOspfGetCfg(0, &record), 0u);
    record.adminDistance = 7;
    ASSERT_EQ(ucOspfSetCfg(0, &record), 0u);
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    EXPECT_EQ(slot(0).adminDistance, 110);
}

TEST_F(Model, IdZeroIsTheFirstResetSlot) {
    EXPECT_EQ(ucOspfHasProcessId(0), 0u);
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    EXPECT_EQ(ucOspfHasProcessId(0), 1u);
}

TEST_F(Model, ASlotThatIsNotEnabledIsFoundByItsId) {
    OspfProcessCfg record;
    ASSERT_EQ(ucOspfGetCfg(5, &record), 0u);
    record.processId = 65535;
    ASSERT_EQ(ucOspfSetCfg(5, &record), 0u);
    EXPECT_EQ(ucOspfHasProcessId(65535), 5u);
    EXPECT_EQ(ucOspfProcessIsEnable(5), 0u);
}

TEST_F(Model, OnlyExactlyOneIsEnabled) {
    OspfProcessCfg record;
    ASSERT_EQ(ucOspfGetCfg(0, &record), 0u);
    record.enabled = 2;
    ASSERT_EQ(ucOspfSetCfg(0, &record), 0u);
    EXPECT_EQ(ucOspfProcessIsEnable(0), 0u);
    EXPECT_EQ(ucOspfEnableProcess(9), 0u); // not free either
    EXPECT_EQ(ucOspfHasProcessId(9), 1u);
}

TEST_F(Model, TheProcessWordIsReadAndReset) {
    pucOspf->processWord[3] = 4711;
    EXPECT_EQ(ucOspfGetProcessPid(3), 4711u);
    ASSERT_EQ(ucOspfDefaultProcessByNum(3), 0u);
    EXPECT_EQ(ucOspfGetProcessPid(3), 0u);
}

TEST_F(Model, AResetEmptiesTheListsAndGivesUpTheOldOnes) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    const OspfNetworkCfg network = {1, 2, 3};
    ASSERT_EQ(ucOspfNetworkInsert(0, &network), 0u);
    const OspfProcessCfg before = slot(0);
    ASSERT_EQ(ucOspfDefaultProcessByNum(0), 0u);
    EXPECT_NE(slot(0).networks, before.networks);
    EXPECT_EQ(slot(0).networks->count, 0u);
    EXPECT_EQ(before.networks->count, 1u); // destroying releases nothing
    EXPECT_EQ(slot(0).enabled, 0);
    EXPECT_EQ(slot(0).processId, 0);
}

TEST_F(Model, AResetRenewsTheVirtualLinksTwice) {
    const OspfProcessCfg before = slot(2);
    std::vector<std::string> events;
    std::vector<const dlist *> lists;
    listEvents = &events;
    destroyed = &lists;
    EXPECT_EQ(ucOspfDefaultProcessByNum(2), 0u);
    listEvents = nullptr;
    std::vector<std::string> wanted;
    for (int i = 0; i < 6; ++i) {
        wanted.insert(wanted.end(), {"destroy", "create"});
    }
    EXPECT_EQ(events, wanted);
    ASSERT_EQ(lists.size(), 6u);
    EXPECT_EQ(lists[0], before.networks);
    EXPECT_EQ(lists[1], before.areas);
    EXPECT_EQ(lists[2], before.areaAggregates);
    EXPECT_EQ(lists[3], before.virtualLinks);
    EXPECT_EQ(lists[4], before.redistributions);
    EXPECT_NE(lists[5], before.virtualLinks);
    EXPECT_NE(slot(2).virtualLinks, lists[5]);
}

TEST_F(Model, InitCreatesSixListsForEachSlotAndDestroysOneOfThem) {
    std::vector<std::string> events;
    std::vector<const dlist *> lists;
    listEvents = &events;
    destroyed = &lists;
    ASSERT_EQ(ucOspfInit(), 0u);
    listEvents = nullptr;
    EXPECT_EQ(events.size(), 16u * 7);
    EXPECT_EQ(lists.size(), 16u);
}

TEST_F(Model, RecordsAreCopiedWhole) {
    OspfProcessCfg record;
    ASSERT_EQ(ucOspfGetCfg(15, &record), 0u);
    EXPECT_EQ(record.networks, slot(15).networks);
    record.routerId = 1;
    record.always = 2;
    record.virtualLinks = nullptr;
    ASSERT_EQ(ucOspfSetCfg(15, &record), 0u);
    EXPECT_EQ(memcmp(&record, &slot(15), sizeof record), 0);
    ASSERT_EQ(ucOspfDefaultProcessByNum(15), 0u); // a list that is not there is only created
    EXPECT_NE(slot(15).virtualLinks, nullptr);
}

// ---- what is not there ----

TEST_F(Model, SlotsOutOfRangeAreNotThere) {
    model::Changes changes;
    OspfProcessCfg record;
    memset(&record, 0x5a, sizeof record);
    const OspfProcessCfg untouched = record;
    for (const uint32_t number : {16u, 17u, 0x7fffffffu, 0xffffffffu}) {
        EXPECT_EQ(ucOspfDefaultProcessByNum(number), 1u);
        EXPECT_EQ(ucOspfProcessIsEnable(number), 0u);
        EXPECT_EQ(ucOspfGetProcessPid(number), 0u);
        EXPECT_EQ(ucOspfGetCfg(number, &record), 1u);
        EXPECT_EQ(ucOspfSetCfg(number, &record), 1u);
    }
    EXPECT_EQ(memcmp(&record, &untouched, sizeof record), 0);
    EXPECT_EQ(ucOspfGetCfg(0, nullptr), 1u);
    EXPECT_EQ(ucOspfSetCfg(0, nullptr), 1u);
    EXPECT_EQ(changes.take(), "");
}

TEST(NoModel, IsAnsweredLikeNothingThere) {
    pucOspf = nullptr;
    OspfProcessCfg record = {};
    EXPECT_EQ(ucOspfDefaultProcessByNum(0), 1u);
    EXPECT_EQ(ucOspfEnableProcess(1), 1u);
    EXPECT_EQ(ucOspfProcessIsEnable(0), 0u);
    EXPECT_EQ(ucOspfHasProcessId(0), kNone);
    EXPECT_EQ(ucOspfGetProcessPid(0), 0u);
    EXPECT_EQ(ucOspfGetCfg(0, &record), 1u);
    EXPECT_EQ(ucOspfSetCfg(0, &record), 1u);
    const int32_t value = 1;
    EXPECT_EQ(ucIpOpsfBasicSetParaByKey(0, 1, &value, 1), 0u);
}

// ---- settings by key ----

struct BasicCase {
    uint32_t key;
    int32_t value;
    const char *afterSet;
    const char *afterUnset;
};

const BasicCase kBasicCases[] = {
    {1, 9,       "slot 1 gracefulRestart: 1\n",             "slot 1 gracefulRestart: 0\n"        },
    {2, 1000000, "slot 1 referenceBandwidth: 1000000\n",    "slot 1 referenceBandwidth: 100000\n"},
    {2, -1,      "slot 1 referenceBandwidth: 4294967295\n", "slot 1 referenceBandwidth: 100000\n"},
    {3, 9,       "slot 1 rfc1583Compatibility: 1\n",        "slot 1 rfc1583Compatibility: 0\n"   },
    {4, 20,      "slot 1 defaultMetric: 20\n",              "slot 1 defaultMetric: -1\n"         },
    {4, -7,      "slot 1 defaultMetric: -7\n",              "slot 1 defaultMetric: -1\n"         },
    {5, 120,     "slot 1 adminDistance: 120\n",             "slot 1 adminDistance: 110\n"        },
    {5, 257,     "slot 1 adminDistance: 1\n",               "slot 1 adminDistance: 110\n"        },
    {6, 9,       "slot 1 passiveDefault: 1\n",              "slot 1 passiveDefault: 0\n"         },
    {7, 64,      "slot 1 maximumPaths: 64\n",               "slot 1 maximumPaths: 16\n"          },
    {7, 256,     "slot 1 maximumPaths: 0\n",                "slot 1 maximumPaths: 16\n"          },
};

class BasicSetting : public Model {
protected:
    BasicSetting() {
        EXPECT_EQ(ucOspfEnableProcess(1), 0u);
        EXPECT_EQ(ucOspfEnableProcess(2), 0u);
    }
};

TEST_F(BasicSetting, ChangesItsFieldOfTheProcessOnly) {
    for (const BasicCase &row : kBasicCases) {
        SCOPED_TRACE("key " + std::to_string(row.key));
        model::Changes changes;
        EXPECT_EQ(ucIpOpsfBasicSetParaByKey(2, 1, &row.value, row.key), 0u);
        EXPECT_EQ(changes.take(), row.afterSet);
        EXPECT_EQ(ucIpOpsfBasicSetParaByKey(2, 0, &row.value, row.key), 0u);
        EXPECT_EQ(changes.take(), row.afterUnset);
    }
}

TEST_F(BasicSetting, TheRouterIdKeepsItsAddressWhenUnset) {
    model::Changes changes;
    EXPECT_EQ(ucIpOpsfBasicSetParaByKey(1, 1, "10.0.0.1", 0), 0u);
    EXPECT_EQ(changes.take(), "slot 0 routerId: 10.0.0.1\nslot 0 routerIdSet: 1\n");
    EXPECT_EQ(ucIpOpsfBasicSetParaByKey(1, 0, "10.0.0.2", 0), 0u);
    EXPECT_EQ(changes.take(), "slot 0 routerIdSet: 0\n");
}

TEST_F(BasicSetting, ARouterIdThatIsNoAddressKeepsTheOldOne) {
    ASSERT_EQ(ucIpOpsfBasicSetParaByKey(1, 1, "10.0.0.1", 0), 0u);
    model::Changes changes;
    EXPECT_EQ(ucIpOpsfBasicSetParaByKey(1, 1, "router", 0), 0u);
    EXPECT_EQ(ucIpOpsfBasicSetParaByKey(1, 1, nullptr, 0), 0u);
    EXPECT_EQ(changes.take(), "");
}

TEST_F(BasicSetting, TheSpfTimersAreThreeNumbers) {
    model::Changes changes;
    const uint16_t timers[] = {4464, 65535, 1};
    EXPECT_EQ(ucIpOpsfBasicSetParaByKey(1, 1, timers, 8), 0u);
    EXPECT_EQ(changes.take(),
              "slot 0 spfDelay: 4464\nslot 0 spfInitialHold: 65535\nslot 0 spfMaximumHold: 1\n");
    EXPECT_EQ(ucIpOpsfBasicSetParaByKey(1, 0, nullptr, 8), 0u);
    EXPECT_EQ(changes.take(),
              "slot 0 spfDelay: 0\nslot 0 spfInitialHold: 50\nslot 0 spfMaximumHold: 5000\n");
}

TEST_F(BasicSetting, AnUnknownKeyOrProcessChangesNothing) {
    model::Changes changes;
    const int32_t value = 7;
    EXPECT_EQ(ucIpOpsfBasicSetParaByKey(1, 1, &value, 9), 0u);
    EXPECT_EQ(ucIpOpsfBasicSetParaByKey(1, 0, &value, 0xffffffff), 0u);
    EXPECT_EQ(ucIpOpsfBasicSetParaByKey(3, 1, &value, 5), 0u);
    EXPECT_EQ(changes.take(), "");
}

TEST_F(BasicSetting, ANullValueReadsAsZero) {
    model::Changes changes;
    EXPECT_EQ(ucIpOpsfBasicSetParaByKey(1, 1, nullptr, 5), 0u);
    EXPECT_EQ(changes.take(), "slot 0 adminDistance: 0\n");
}

} // namespace
