// SPDX-License-Identifier: Apache-2.0
// The lists of a process slot: keys, order, the common routines by kind, deletes, redistributions.

#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "common/dlist.h"
#include "ospf/uc_ospf.h"
#include "tests/unit/ospf_model_state.h"

namespace {

using model::address;
using model::words;

constexpr uint32_t kNotFound = 0xFFFFFFFE;

constexpr uint32_t kAreas = 1;
constexpr uint32_t kAreaAggregates = 2;
constexpr uint32_t kVirtualLinks = 3;
constexpr uint32_t kNetworks = 4;

class Lists : public testing::Test {
protected:
    Lists() { EXPECT_EQ(ucOspfInit(), 0u); }
    ~Lists() override { pucOspf = nullptr; }
    Lists(const Lists &) = delete;
    Lists &operator=(const Lists &) = delete;

    static OspfAreaCfg area(const char *id, uint8_t type) {
        OspfAreaCfg record;
        EXPECT_EQ(ucOspfAreaInit(&record), 0u);
        record.areaId = address(id);
        record.areaType = type;
        return record;
    }
    static uint32_t redistribute(uint32_t set, uint32_t source) {
        return ucOspfRedistribute(3, set, source, 20, 1, 1, 1, 7);
    }
};

// ---- records and their defaults ----

TEST_F(Lists, InitialisersSetTheirFieldsOnly) {
    OspfAreaCfg areaRecord;
    memset(&areaRecord, 0xee, sizeof areaRecord);
    EXPECT_EQ(ucOspfAreaInit(&areaRecord), 0u);
    EXPECT_EQ(areaRecord.areaId, 0u);
    EXPECT_EQ(areaRecord.areaType, 0);
    EXPECT_EQ(areaRecord.defaultCost, 1u);
    EXPECT_EQ(areaRecord.noSummary, 0u);
    EXPECT_EQ(memcmp(areaRecord.trailing, "\0\0\0\0\0\0\0\0", 8), 0);

    OspfAreaAggCfg aggregate;
    memset(&aggregate, 0xee, sizeof aggregate);
    EXPECT_EQ(ucOspfAreaAggInit(&aggregate), 0u);
    EXPECT_EQ(aggregate.areaId, 0u);
    EXPECT_EQ(aggregate.prefix, 0xeeeeeeeeu);
    EXPECT_EQ(aggregate.mask, 0xeeeeeeeeu);
    EXPECT_EQ(aggregate.cost, 0u);
    EXPECT_EQ(aggregate.advertise, 1u);

    OspfVirtualLinkCfg link;
    memset(&link, 0xee, sizeof link);
    EXPECT_EQ(ucOspfVirtualLinkInit(&link), 0u);
    EXPECT_EQ(link.areaId, 0u);
    EXPECT_EQ(link.peerRouterId, 0u);
    EXPECT_EQ(link.retransmitInterval, 5);
    EXPECT_EQ(link.helloInterval, 10);
    EXPECT_EQ(link.deadInterval, 40);
    EXPECT_EQ(link.transmitDelay, 1);
    EXPECT_EQ(link.authType, 0);
    EXPECT_EQ(memcmp(link.simpleKey, "\0\0\0\0\0\0\0\0", 8), 0);
    EXPECT_EQ(link.md5KeyId, 0);
    EXPECT_EQ(memcmp(link.md5Key, "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 16), 0);

    OspfRedistributeCfg redistribution;
    memset(&redistribution, 0xee, sizeof redistribution);
    EXPECT_EQ(ucOspfRedistributeInit(&redistribution), 0u);
    EXPECT_EQ(redistribution.source, 0);
    EXPECT_EQ(redistribution.set, 0u);
    EXPECT_EQ(redistribution.metric, 0u);
    EXPECT_EQ(redistribution.metricType, 2);
    EXPECT_EQ(redistribution.sourceProcessId, 0);

    OspfNetworkCfg network;
    memset(&network, 0xee, sizeof network);
    EXPECT_EQ(ucOspfNetworkInit(&network), 0u);
    EXPECT_EQ(network.address, 0xeeeeeeeeu);
    EXPECT_EQ(network.mask, 0xeeeeeeeeu);
    EXPECT_EQ(network.areaId, 0u);

    EXPECT_EQ(ucOspfAreaInit(nullptr), 0u);
    EXPECT_EQ(ucOspfAreaAggInit(nullptr), 0u);
    EXPECT_EQ(ucOspfVirtualLinkInit(nullptr), 0u);
    EXPECT_EQ(ucOspfRedistributeInit(nullptr), 0u);
    EXPECT_EQ(ucOspfNetworkInit(nullptr), 0u);
}

// ---- the four kinds through their typed functions ----

TEST_F(Lists, AnAreaIsKeptByItsId) {
    const OspfAreaCfg stub = area("0.0.0.5", 1);
    model::Changes changes;
    EXPECT_EQ(ucOspfAreaInsert(3, &stub), 0u);
    EXPECT_EQ(changes.take(), "slot 3 areas: 0.0.0.5 type 1 cost 1 no-summary 0 [........]\n");
    OspfAreaCfg found = {};
    EXPECT_EQ(ucOspfAreaGetCfg(3, address("0.0.0.5"), &found), 0u);
    EXPECT_EQ(memcmp(&found.areaId, &stub.areaId, sizeof found.areaId), 0);
    EXPECT_EQ(found.defaultCost, 1u);
    found.defaultCost = 20;
    EXPECT_EQ(ucOspfAreaSetCfg(3, address("0.0.0.5"), &found), 0u);
    EXPECT_EQ(changes.take(), "slot 3 areas: 0.0.0.5 type 1 cost 20 no-summary 0 [........]\n");
    EXPECT_EQ(ucOspfAreaGetCfg(3, address("0.0.0.6"), &found), kNotFound);
    EXPECT_EQ(ucOspfAreaSetCfg(3, address("0.0.0.6"), &found), kNotFound);
    EXPECT_EQ(ucOspfAreaGetCfg(2, address("0.0.0.5"), &found), kNotFound);
    EXPECT_EQ(changes.take(), "");
}

TEST_F(Lists, AnAreaIsDeletedOnlyWithItsType) {
    const OspfAreaCfg stub = area("0.0.0.5", 1);
    ASSERT_EQ(ucOspfAreaInsert(3, &stub), 0u);
    model::Changes changes;
    EXPECT_EQ(ucOspfAreaDelete(3, address("0.0.0.5"), 2), 1u);
    EXPECT_EQ(ucOspfAreaDelete(3, address("0.0.0.5"), 257), 1u); // not narrowed
    EXPECT_EQ(ucOspfAreaDelete(3, address("0.0.0.6"), 1), 1u);
    EXPECT_EQ(ucOspfAreaDelete(4, address("0.0.0.5"), 1), 1u);
    EXPECT_EQ(changes.take(), "");
    EXPECT_EQ(ucOspfAreaDelete(3, address("0.0.0.5"), 1), 0u);
    EXPECT_EQ(changes.take(), "slot 3 areas: \n");
    EXPECT_EQ(ucOspfAreaDelete(3, address("0.0.0.5"), 1), 1u);
}

TEST_F(Lists, AnAggregateIsKeptByAreaPrefixAndMask) {
    const uint32_t mask = address("255.255.0.0");
    const uint64_t key = words(address("0.0.0.5"), address("10.2.0.0"));
    OspfAreaAggCfg record;
    ASSERT_EQ(ucOspfAreaAggInit(&record), 0u);
    record.areaId = address("0.0.0.5");
    record.prefix = address("10.2.0.0");
    record.mask = mask;
    model::Changes changes;
    EXPECT_EQ(ucOspfAreaAggInsert(3, &record), 0u);
    EXPECT_EQ(changes.take(),
              "slot 3 areaAggregates: 0.0.0.5 10.2.0.0/255.255.0.0 cost 0 advertise 1\n");
    OspfAreaAggCfg found = {};
    EXPECT_EQ(ucOspfAreaAggGetCfg(3, key, mask, &found), 0u);
    EXPECT_EQ(memcmp(&found, &record, sizeof found), 0);
    found.cost = 9;
    EXPECT_EQ(ucOspfAreaAggSetCfg(3, key, mask, &found), 0u);
    EXPECT_EQ(changes.take(),
              "slot 3 areaAggregates: 0.0.0.5 10.2.0.0/255.255.0.0 cost 9 advertise 1\n");
    const uint64_t otherPrefix = words(address("0.0.0.5"), address("10.3.0.0"));
    const uint64_t swapped = words(address("10.2.0.0"), address("0.0.0.5"));
    EXPECT_EQ(ucOspfAreaAggGetCfg(3, key, 0, &found), kNotFound);
    EXPECT_EQ(ucOspfAreaAggGetCfg(3, otherPrefix, mask, &found), kNotFound);
    EXPECT_EQ(ucOspfAreaAggSetCfg(3, swapped, mask, &found), kNotFound);
    EXPECT_EQ(ucOspfAreaRangeDelete(3, key, 0), 1u);
    EXPECT_EQ(ucOspfAreaRangeDelete(3, key, mask), 0u);
    EXPECT_EQ(changes.take(), "slot 3 areaAggregates: \n");
    EXPECT_EQ(ucOspfAreaRangeDelete(3, key, mask), 1u);
}

TEST_F(Lists, AVirtualLinkIsKeptByAreaAndPeer) {
    const uint64_t key = words(address("0.0.0.1"), address("10.0.0.2"));
    OspfVirtualLinkCfg record;
    ASSERT_EQ(ucOspfVirtualLinkInit(&record), 0u);
    record.areaId = address("0.0.0.1");
    record.peerRouterId = address("10.0.0.2");
    model::Changes changes;
    EXPECT_EQ(ucOspfVirtualLinkInsert(3, &record), 0u);
    EXPECT_EQ(changes.take(), "slot 3 virtualLinks: 0.0.0.1 10.0.0.2 timers 5/10/40/1 auth 0 "
                              "........ 0 ................\n");
    OspfVirtualLinkCfg found = {};
    EXPECT_EQ(ucOspfVirtualLinkGetCfg(3, key, &found), 0u);
    found.helloInterval = 65535;
    memcpy(found.md5Key, "0123456789abcdef", 16);
    EXPECT_EQ(ucOspfVirtualLinkSetCfg(3, key, &found), 0u);
    EXPECT_EQ(changes.take(), "slot 3 virtualLinks: 0.0.0.1 10.0.0.2 timers 5/65535/40/1 auth 0 "
                              "........ 0 0123456789abcdef\n");
    const uint64_t other = words(address("0.0.0.1"), address("10.0.0.3"));
    EXPECT_EQ(ucOspfVirtualLinkGetCfg(3, other, &found), kNotFound);
    EXPECT_EQ(ucOspfVirtualLinkSetCfg(3, other, &found), kNotFound);
    EXPECT_EQ(ucOspfVirtualLinkDelete(3, other), 1u);
    EXPECT_EQ(ucOspfVirtualLinkDelete(3, key), 0u);
    EXPECT_EQ(changes.take(), "slot 3 virtualLinks: \n");
}

TEST_F(Lists, ANetworkIsKeptByAddressAndMask) {
    const uint64_t key = words(address("10.1.0.0"), address("255.255.0.0"));
    const OspfNetworkCfg record = {address("10.1.0.0"), address("255.255.0.0"), 4294967295};
    model::Changes changes;
    EXPECT_EQ(ucOspfNetworkInsert(3, &record), 0u);
    EXPECT_EQ(changes.take(), "slot 3 networks: 10.1.0.0/255.255.0.0 area 4294967295\n");
    OspfNetworkCfg found = {};
    EXPECT_EQ(ucOspfNetworkGetCfg(3, key, &found), 0u);
    found.areaId = 5;
    EXPECT_EQ(ucOspfNetworkSetCfg(3, key, &found), 0u);
    EXPECT_EQ(changes.take(), "slot 3 networks: 10.1.0.0/255.255.0.0 area 5\n");
    const uint64_t other = words(address("10.1.0.0"), address("255.0.0.0"));
    EXPECT_EQ(ucOspfNetworkGetCfg(3, other, &found), kNotFound);
    EXPECT_EQ(ucOspfNetworkSetCfg(3, other, &found), kNotFound);
    EXPECT_EQ(ucOspfNetworkDelete(3, other), 1u);
    EXPECT_EQ(ucOspfNetworkDelete(3, key), 0u);
    EXPECT_EQ(changes.take(), "slot 3 networks: \n");
}

TEST_F(Lists, AreNewestFirstAndTheFirstMatchCounts) {
    const OspfAreaCfg older = area("0.0.0.5", 1);
    const OspfAreaCfg newer = area("0.0.0.5", 2);
    const OspfAreaCfg other = area("0.0.0.6", 0);
    ASSERT_EQ(ucOspfAreaInsert(3, &older), 0u);
    ASSERT_EQ(ucOspfAreaInsert(3, &newer), 0u);
    ASSERT_EQ(ucOspfAreaInsert(3, &other), 0u);
    OspfAreaCfg found = {};
    ASSERT_EQ(ucOspfAreaGetCfg(3, older.areaId, &found), 0u);
    EXPECT_EQ(found.areaType, 2);
    model::Changes changes;
    found.defaultCost = 9;
    ASSERT_EQ(ucOspfAreaSetCfg(3, older.areaId, &found), 0u);
    EXPECT_EQ(changes.take(), "slot 3 areas: 0.0.0.6 type 0 cost 1 no-summary 0 [........]; "
                              "0.0.0.5 type 2 cost 9 no-summary 0 [........]; "
                              "0.0.0.5 type 1 cost 1 no-summary 0 [........]\n");
    EXPECT_EQ(ucOspfAreaDelete(3, older.areaId, 1), 1u); // the first match has another type
    EXPECT_EQ(ucOspfAreaDelete(3, older.areaId, 2), 0u);
    EXPECT_EQ(changes.take(), "slot 3 areas: 0.0.0.6 type 0 cost 1 no-summary 0 [........]; "
                              "0.0.0.5 type 1 cost 1 no-summary 0 [........]\n");
}

// ---- the common routines ----

TEST_F(Lists, EachKindHasAListOfItsOwn) {
    struct {
        uint32_t kind;
        std::size_t bytes;
        dlist *OspfProcessCfg::*list;
    } const kinds[] = {
        {kAreas,          sizeof(OspfAreaCfg),        &OspfProcessCfg::areas         },
        {kAreaAggregates, sizeof(OspfAreaAggCfg),     &OspfProcessCfg::areaAggregates},
        {kVirtualLinks,   sizeof(OspfVirtualLinkCfg), &OspfProcessCfg::virtualLinks  },
        {kNetworks,       sizeof(OspfNetworkCfg),     &OspfProcessCfg::networks      },
    };
    for (const auto &kind : kinds) {
        SCOPED_TRACE("kind " + std::to_string(kind.kind));
        unsigned char wanted[64];
        memset(wanted, 0x5a, sizeof wanted);
        void *record = malloc(kind.bytes);
        ASSERT_NE(record, nullptr);
        memcpy(record, wanted, kind.bytes);
        EXPECT_EQ(ucOspfDlistInsert(0, record, kind.kind), 0u);
        ASSERT_NE((pucOspf->process[0].*kind.list)->head, nullptr);
        EXPECT_EQ((pucOspf->process[0].*kind.list)->head->data, record); // taken over, not copied
        unsigned char got[64];
        memset(got, 0xee, sizeof got);
        EXPECT_EQ(ucOspfDlistGetCfg(0, wanted, got, kind.kind), 0u);
        EXPECT_EQ(memcmp(got, wanted, kind.bytes), 0);
        EXPECT_EQ(got[kind.bytes], 0xee);
        unsigned char changed[64];
        memset(changed, 0x11, sizeof changed);
        EXPECT_EQ(ucOspfDlistSetCfg(0, wanted, changed, kind.kind), 0u);
        EXPECT_EQ(memcmp(record, changed, kind.bytes), 0);
        EXPECT_EQ(ucOspfDlistGetCfg(0, wanted, got, kind.kind), kNotFound);
    }
}

TEST_F(Lists, OtherKindsFindNothingAndInsertNothing) {
    OspfVirtualLinkCfg record = {};
    model::Changes changes;
    for (const uint32_t kind : {0u, 5u, 0xffffffffu}) {
        EXPECT_EQ(ucOspfDlistInsert(0, &record, kind), 0u);
        EXPECT_EQ(ucOspfDlistGetCfg(0, &record, &record, kind), kNotFound);
        EXPECT_EQ(ucOspfDlistSetCfg(0, &record, &record, kind), kNotFound);
    }
    EXPECT_EQ(changes.take(), "");
}

TEST_F(Lists, WhatIsNotThereIsNotFound) {
    OspfVirtualLinkCfg record = {};
    model::Changes changes;
    for (const uint32_t slot : {16u, 0xffffffffu}) {
        EXPECT_EQ(ucOspfDlistInsert(slot, &record, kAreas), 4u);
        EXPECT_EQ(ucOspfDlistGetCfg(slot, &record, &record, kAreas), kNotFound);
        EXPECT_EQ(ucOspfDlistSetCfg(slot, &record, &record, kAreas), kNotFound);
        EXPECT_EQ(ucOspfVirtualLinkInsert(slot, &record), 4u);
        EXPECT_EQ(ucOspfVirtualLinkDelete(slot, 0), 1u);
        EXPECT_EQ(ucOspfRedistribute(slot, 1, 1, 0, 0, 0, 0, 0), 4u);
        EXPECT_EQ(ucOspfRedistribute(slot, 0, 1, 0, 0, 0, 0, 0), 1u);
    }
    EXPECT_EQ(ucOspfDlistInsert(0, nullptr, kAreas), 4u);
    EXPECT_EQ(ucOspfDlistGetCfg(0, nullptr, &record, kAreas), kNotFound);
    EXPECT_EQ(ucOspfAreaInsert(0, nullptr), 4u);
    EXPECT_EQ(ucOspfAreaAggInsert(0, nullptr), 4u);
    EXPECT_EQ(ucOspfVirtualLinkInsert(0, nullptr), 4u);
    EXPECT_EQ(ucOspfNetworkInsert(0, nullptr), 4u);
    EXPECT_EQ(changes.take(), "");
    const OspfNetworkCfg network = {1, 2, 3};
    ASSERT_EQ(ucOspfNetworkInsert(0, &network), 0u);
    EXPECT_EQ(ucOspfNetworkGetCfg(0, words(1, 2), nullptr), kNotFound);
    EXPECT_EQ(ucOspfNetworkSetCfg(0, words(1, 2), nullptr), kNotFound);
    pucOspf = nullptr;
    EXPECT_EQ(ucOspfNetworkInsert(0, &network), 4u);
    EXPECT_EQ(ucOspfDlistGetCfg(0, &record, &record, kAreas), kNotFound);
    EXPECT_EQ(ucOspfNetworkDelete(0, words(1, 2)), 1u);
    EXPECT_EQ(ucOspfRedistribute(0, 1, 1, 0, 0, 0, 0, 0), 4u);
}

// ---- comparators ----

TEST(Comparators, LookAtEveryWordOfTheKey) {
    uint32_t key[] = {1, 2, 3};
    uint32_t data[] = {1, 2, 3, 4, 5};
    for (int word = 0; word < 5; ++word) {
        SCOPED_TRACE(word);
        data[word] += 100;
        EXPECT_EQ(ucOspfAreaIdComp(key, data), word < 1 ? -1 : 0);
        EXPECT_EQ(ucOspfVirtualLinkComp(key, data), word < 2 ? -1 : 0);
        EXPECT_EQ(ucOspfNetworkComp(key, data), word < 2 ? -1 : 0);
        EXPECT_EQ(ucOspfAreaAggComp(key, data), word < 3 ? -1 : 0);
        data[word] -= 100;
    }
}

TEST(Comparators, NeverOrder) {
    uint32_t small[] = {1, 1, 1};
    uint32_t large[] = {9, 9, 9};
    for (const auto compare :
         {ucOspfAreaIdComp, ucOspfAreaAggComp, ucOspfVirtualLinkComp, ucOspfNetworkComp}) {
        EXPECT_EQ(compare(small, large), -1);
        EXPECT_EQ(compare(large, small), -1);
        EXPECT_EQ(compare(nullptr, small), -1);
        EXPECT_EQ(compare(small, nullptr), -1);
    }
}

TEST(Comparators, TheSourceIsAWholeWordInTheKey) {
    OspfRedistributeCfg record = {};
    record.source = 3;
    uint32_t source = 3;
    EXPECT_EQ(ucOspfRedistributeComp(&source, &record), 0);
    source = 256 + 3;
    EXPECT_EQ(ucOspfRedistributeComp(&source, &record), -1);
    source = 2;
    EXPECT_EQ(ucOspfRedistributeComp(&source, &record), -1);
    EXPECT_EQ(ucOspfRedistributeComp(nullptr, &record), -1);
    EXPECT_EQ(ucOspfRedistributeComp(&source, nullptr), -1);
}

// ---- redistributions ----

TEST_F(Lists, ANewRedistributionStoresWhatIsGiven) {
    model::Changes changes;
    EXPECT_EQ(ucOspfRedistribute(3, 1, 3, 20, 1, 1, 1, 7), 0u);
    EXPECT_EQ(changes.take(),
              "slot 3 redistributions: source 3 set 1 metric 20 type 1 process 0\n");
    EXPECT_EQ(ucOspfRedistribute(3, 1, 2, 20, 0, 1, 0, 65537), 0u);
    EXPECT_EQ(changes.take(), "slot 3 redistributions: source 2 set 1 metric 0 type 2 process 1; "
                              "source 3 set 1 metric 20 type 1 process 0\n");
}

TEST_F(Lists, AStoredRedistributionKeepsWhatIsNotGiven) {
    ASSERT_EQ(ucOspfRedistribute(3, 1, 2, 20, 1, 1, 1, 7), 0u);
    model::Changes changes;
    EXPECT_EQ(ucOspfRedistribute(3, 1, 2, 99, 0, 2, 0, 7), 0u);
    EXPECT_EQ(ucOspfRedistribute(3, 1, 2, 99, 2, 2, 2, 7), 0u); // flags count only when 1
    EXPECT_EQ(changes.take(), "");
    EXPECT_EQ(ucOspfRedistribute(3, 1, 2, 99, 1, 2, 0, 8), 0u);
    EXPECT_EQ(changes.take(),
              "slot 3 redistributions: source 2 set 1 metric 99 type 1 process 8\n");
    EXPECT_EQ(ucOspfRedistribute(3, 1, 2, 0, 0, 2, 1, 8), 0u);
    EXPECT_EQ(changes.take(),
              "slot 3 redistributions: source 2 set 1 metric 99 type 2 process 8\n");
}

TEST_F(Lists, AnythingButOneRemovesARedistribution) {
    ASSERT_EQ(redistribute(1, 3), 0u);
    ASSERT_EQ(redistribute(1, 4), 0u);
    model::Changes changes;
    EXPECT_EQ(redistribute(0, 3), 0u);
    EXPECT_EQ(changes.take(),
              "slot 3 redistributions: source 4 set 1 metric 20 type 1 process 0\n");
    EXPECT_EQ(redistribute(0, 3), 1u);
    EXPECT_EQ(redistribute(2, 4), 0u);
    EXPECT_EQ(changes.take(), "slot 3 redistributions: \n");
    EXPECT_EQ(redistribute(2, 4), 1u);
}

TEST_F(Lists, ASourceIsNarrowedWhereItIsStoredOnly) {
    model::Changes changes;
    EXPECT_EQ(redistribute(1, 256 + 3), 0u);
    EXPECT_EQ(redistribute(1, 256 + 3), 0u); // not found again: a second record
    EXPECT_EQ(changes.take(), "slot 3 redistributions: source 3 set 1 metric 20 type 1 process 0; "
                              "source 3 set 1 metric 20 type 1 process 0\n");
    EXPECT_EQ(redistribute(0, 256 + 3), 1u);
    EXPECT_EQ(redistribute(0, 3), 0u);
}

} // namespace
