// SPDX-License-Identifier: Apache-2.0
// The model's interface entries: taking them, where settings land, and the fixed clear.

#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "common/dlist.h"
#include "ospf/uc_ospf.h"
#include "tests/unit/ospf_model_state.h"

namespace {

constexpr uint32_t kNone = 0xFFFFFFFF;
constexpr uint32_t kNotFound = 0xFFFFFFFE;

constexpr std::size_t kFixedClear = 1621;

class Entries : public testing::Test {
protected:
    Entries() { EXPECT_EQ(ucOspfInit(), 0u); }
    ~Entries() override { pucOspf = nullptr; }
    Entries(const Entries &) = delete;
    Entries &operator=(const Entries &) = delete;

    static uint32_t set(uint32_t vlan, int32_t value, uint32_t key) {
        return ucIpOpsfInfSetParaByKey(vlan, 1, &value, key);
    }
    static uint32_t unset(uint32_t vlan, uint32_t key) {
        return ucIpOpsfInfSetParaByKey(vlan, 0, nullptr, key);
    }
    static const unsigned char *block() { return reinterpret_cast<const unsigned char *>(pucOspf); }
};

struct ParameterCase {
    uint32_t key;
    int32_t value;
    const char *field;
    const char *stored;
    const char *unset;
};

const ParameterCase kParameters[] = {
    {0, 15,    "helloInterval",      "15",    "10"},
    {0, 65537, "helloInterval",      "1",     "10"},
    {1, 60,    "deadInterval",       "60",    "40"},
    {1, -1,    "deadInterval",       "65535", "40"},
    {2, 7,     "retransmitInterval", "7",     "5" },
    {3, 3,     "transmitDelay",      "3",     "1" },
    {4, 65535, "cost",               "65535", "1" },
    {5, 255,   "priority",           "255",   "1" },
    {5, 256,   "priority",           "0",     "1" },
};

TEST_F(Entries, TheFirstSettingTakesAnEntryOfItsOwnAndLaterOnesLandInEntryZero) {
    for (const ParameterCase &row : kParameters) {
        SCOPED_TRACE("key " + std::to_string(row.key));
        ASSERT_EQ(ucOspfInit(), 0u);
        ASSERT_EQ(ucIpOspfMtuIgnore(100, 1), 0u);
        model::Changes changes;
        const std::string field = row.field;
        EXPECT_EQ(set(2, row.value, row.key), 0u);
        EXPECT_EQ(changes.take(), model::lines({"entry 1 inUse: 1", "entry 1 vlanId: 2",
                                                "entry 1 " + field + ": " + row.stored}));
        EXPECT_EQ(set(2, row.value, row.key), 0u);
        EXPECT_EQ(changes.take(), "entry 0 " + field + ": " + row.stored + "\n");
        EXPECT_EQ(unset(2, row.key), 0u);
        EXPECT_EQ(changes.take(), "entry 0 " + field + ": " + row.unset + "\n");
    }
}

TEST_F(Entries, UnsettingWithoutAnEntryAllocatesNothing) {
    model::Changes changes;
    for (uint32_t key = 0; key <= 6; ++key) {
        EXPECT_EQ(unset(2, key), kNotFound);
    }
    EXPECT_EQ(ucIpOspfAuth(2, 0, 1), kNotFound);
    EXPECT_EQ(ucIpOspfAuthKey(2, 0, "12345678"), kNotFound);
    EXPECT_EQ(ucIpOspfMtuIgnore(2, 0), kNotFound);
    EXPECT_EQ(ucIpOspfNetwork(2, 0, 1), kNotFound);
    EXPECT_EQ(ucIpOspfAuthM5dKey(2, 0, 1, "1234567812345678"), kNotFound);
    EXPECT_EQ(changes.take(), "");
}

TEST_F(Entries, AnUnknownKeyTakesAnEntryAndStoresNothing) {
    model::Changes changes;
    EXPECT_EQ(set(2, 9, 6), 0u);
    EXPECT_EQ(changes.take(), "entry 0 inUse: 1\nentry 0 vlanId: 2\n");
    EXPECT_EQ(set(2, 9, 0xffffffff), 0u);
    EXPECT_EQ(unset(2, 6), 0u);
    EXPECT_EQ(changes.take(), "");
}

TEST_F(Entries, SixtyFourVlansFitAndTheNextFindsNoEntry) {
    for (uint32_t vlan = 1; vlan <= 64; ++vlan) {
        ASSERT_EQ(set(vlan, 1, 4), 0u);
    }
    EXPECT_EQ(ucOspfFindFreeInterface(), kNone);
    model::Changes changes;
    EXPECT_EQ(set(65, 1, 4), kNone);
    EXPECT_EQ(ucIpOspfAuth(65, 1, 1), kNone);
    EXPECT_EQ(ucIpOspfAuthKey(65, 1, "12345678"), kNone);
    EXPECT_EQ(ucIpOspfMtuIgnore(65, 1), kNone);
    EXPECT_EQ(ucIpOspfNetwork(65, 1, 1), kNone);
    EXPECT_EQ(ucIpOspfAuthM5dKey(65, 1, 1, "1234567812345678"), kNone);
    EXPECT_EQ(unset(65, 4), kNotFound);
    EXPECT_EQ(changes.take(), "");
    EXPECT_EQ(ucOspfFindInterfaceVlan(64), 63u);
}

TEST_F(Entries, FindersLookAtTheUseWord) {
    EXPECT_EQ(ucOspfFindInterfaceVlan(0), kNotFound); // free entries hold VLAN 0
    EXPECT_EQ(ucOspfFindFreeInterface(), 0u);
    pucOspf->interface[0].inUse = 2; // neither free nor in use
    pucOspf->interface[0].vlanId = 9;
    EXPECT_EQ(ucOspfFindFreeInterface(), 1u);
    EXPECT_EQ(ucOspfFindInterfaceVlan(9), kNotFound);
    pucOspf->interface[5].inUse = 1;
    pucOspf->interface[5].vlanId = 9;
    pucOspf->interface[7] = pucOspf->interface[5];
    EXPECT_EQ(ucOspfFindInterfaceVlan(9), 5u);
}

TEST_F(Entries, SettersChangeTheVlansOwnEntry) {
    ASSERT_EQ(ucIpOspfMtuIgnore(100, 1), 0u);
    ASSERT_EQ(ucIpOspfMtuIgnore(2, 1), 0u);
    model::Changes changes;
    EXPECT_EQ(ucIpOspfMtuIgnore(2, 0), 0u);
    EXPECT_EQ(changes.take(), "entry 1 mtuIgnore: 0\n");
    EXPECT_EQ(ucIpOspfMtuIgnore(2, 7), 0u);
    EXPECT_EQ(changes.take(), "entry 1 mtuIgnore: 7\n");
    EXPECT_EQ(ucIpOspfNetwork(2, 1, 4), 0u);
    EXPECT_EQ(changes.take(), "entry 1 networkType: 4\n");
    EXPECT_EQ(ucIpOspfNetwork(2, 0, 4), 0u);
    EXPECT_EQ(changes.take(), "entry 1 networkType: 0\n");
    EXPECT_EQ(ucIpOspfAuthKey(2, 1, "12345678"), 0u);
    EXPECT_EQ(changes.take(), "entry 1 simpleKey: 12345678\n");
    EXPECT_EQ(ucIpOspfAuthKey(2, 1, "abc\0\0\0\0\0"), 0u);
    EXPECT_EQ(changes.take(), "entry 1 simpleKey: abc.....\n");
    EXPECT_EQ(ucIpOspfAuthKey(2, 0, nullptr), 0u);
    EXPECT_EQ(changes.take(), "entry 1 simpleKey: ........\n");
    EXPECT_EQ(ucIpOspfAuthM5dKey(2, 1, 258, "0123456789abcdefXYZ"), 0u);
    EXPECT_EQ(changes.take(), "entry 1 md5Key: 0123456789abcdef\nentry 1 md5KeyId: 2\n");
    EXPECT_EQ(ucIpOspfAuthM5dKey(2, 0, 5, nullptr), 0u);
    EXPECT_EQ(changes.take(), "entry 1 md5Key: ................\nentry 1 md5KeyId: 0\n");
}

TEST_F(Entries, SettersTakeAnEntry) {
    model::Changes changes;
    EXPECT_EQ(ucIpOspfAuth(1, 1, 2), 0u);
    EXPECT_EQ(changes.take(), "entry 0 authType: 2\nentry 0 inUse: 1\nentry 0 vlanId: 1\n");
    EXPECT_EQ(ucIpOspfMtuIgnore(2, 3), 0u);
    EXPECT_EQ(changes.take(), "entry 1 inUse: 1\nentry 1 mtuIgnore: 3\nentry 1 vlanId: 2\n");
    EXPECT_EQ(ucIpOspfNetwork(3, 1, 1), 0u);
    EXPECT_EQ(changes.take(), "entry 2 inUse: 1\nentry 2 networkType: 1\nentry 2 vlanId: 3\n");
    EXPECT_EQ(ucIpOspfAuthM5dKey(4, 1, 5, "0123456789abcdef"), 0u);
    EXPECT_EQ(changes.take(), "entry 3 inUse: 1\nentry 3 md5Key: 0123456789abcdef\n"
                              "entry 3 md5KeyId: 5\nentry 3 vlanId: 4\n");
}

TEST_F(Entries, UnsettingAnAuthTypeNeedsTheSameTypeOrTheSimpleOne) {
    ASSERT_EQ(ucIpOspfAuth(2, 1, 2), 0u);
    model::Changes changes;
    EXPECT_EQ(ucIpOspfAuth(2, 0, 0), 0u);
    EXPECT_EQ(ucIpOspfAuth(2, 0, 3), 0u);
    EXPECT_EQ(ucIpOspfAuth(2, 0, 258), 0u); // not narrowed for the comparison
    EXPECT_EQ(changes.take(), "");
    EXPECT_EQ(ucIpOspfAuth(2, 0, 2), 0u);
    EXPECT_EQ(changes.take(), "entry 0 authType: 0\n");
    ASSERT_EQ(ucIpOspfAuth(2, 1, 2), 0u);
    EXPECT_EQ(ucIpOspfAuth(2, 0, 1), 0u);
    EXPECT_EQ(pucOspf->interface[0].authType, 0);
    EXPECT_EQ(ucIpOspfAuth(2, 1, 3), 0u);
    EXPECT_EQ(pucOspf->interface[0].authType, 3);
}

// ---- the fixed clear ----

TEST_F(Entries, ANewKeyClearsEightBytesAtTheFixedPlace) {
    memset(reinterpret_cast<unsigned char *>(pucOspf) + kFixedClear - 5, 0xee, 16);
    EXPECT_EQ(ucIpOspfAuthKey(2, 1, "12345678"), 0u);
    EXPECT_EQ(memcmp(block() + kFixedClear - 5, "\xee\xee\xee\xee\xee", 5), 0);
    EXPECT_EQ(memcmp(block() + kFixedClear, "\0\0\0\0\0\0\0\0", 8), 0);
    EXPECT_EQ(memcmp(block() + kFixedClear + 8, "\xee\xee\xee", 3), 0);
    EXPECT_EQ(memcmp(pucOspf->interface[0].simpleKey, "12345678", 8), 0);
}

TEST_F(Entries, TheFixedClearHitsSlotFourteensHandleAndSlotFifteen) {
    pucOspf->process[15].enabled = 1;
    pucOspf->process[15].processId = 0xabcd;
    pucOspf->process[15].reservedAddress = 0xffffffff;
    model::Changes changes;
    EXPECT_EQ(ucIpOspfAuthKey(2, 1, "12345678"), 0u);
    EXPECT_EQ(changes.take(), "entry 0 inUse: 1\n"
                              "entry 0 simpleKey: 12345678\n"
                              "entry 0 vlanId: 2\n" +
                                  model::lostListLine() +
                                  "slot 15 enabled: 0\n"
                                  "slot 15 processId: 0\n"
                                  "slot 15 reservedAddress: 0.255.255.255\n");
}

TEST_F(Entries, TheFixedClearComesWithEveryCreationAndOnlyThen) {
    ASSERT_EQ(ucIpOspfAuthKey(2, 1, "12345678"), 0u);
    pucOspf->process[15].enabled = 1;
    EXPECT_EQ(ucIpOspfAuthKey(2, 1, "abcdefgh"), 0u);
    EXPECT_EQ(ucIpOspfAuthKey(2, 0, nullptr), 0u);
    EXPECT_EQ(ucIpOspfAuth(3, 1, 1), 0u);
    EXPECT_EQ(pucOspf->process[15].enabled, 1);
    EXPECT_EQ(ucIpOspfAuthKey(4, 1, nullptr), 0u);
    EXPECT_EQ(pucOspf->process[15].enabled, 0);
}

TEST_F(Entries, TheCutListOfSlotFourteenIsNotThereUntilAReset) {
    for (uint16_t id = 1; id <= 15; ++id) {
        ASSERT_EQ(ucOspfEnableProcess(id), 0u);
    }
    ASSERT_EQ(ucOspfRedistribute(14, 1, 3, 20, 1, 1, 1, 0), 0u);
    ASSERT_EQ(ucIpOspfAuthKey(2, 1, "12345678"), 0u);
    ASSERT_EQ(ucIpOspfAuthKey(3, 1, "12345678"), 0u); // cuts nothing more
    const bool lost = model::fixedClearLosesList();
    EXPECT_EQ(ucOspfRedistribute(14, 1, 3, 20, 1, 1, 1, 0), lost ? 4u : 0u);
    EXPECT_EQ(ucOspfRedistribute(14, 0, 3, 20, 1, 1, 1, 0), lost ? 1u : 0u);
    ASSERT_EQ(ucOspfDefaultProcessByNum(14), 0u);
    EXPECT_EQ(ucOspfRedistribute(14, 1, 3, 20, 1, 1, 1, 0), 0u);
    EXPECT_EQ(ucOspfRedistribute(13, 1, 3, 20, 1, 1, 1, 0), 0u);
}

// ---- whole entries ----

TEST_F(Entries, AreCopiedWhole) {
    OspfInterfaceEntry entry;
    ASSERT_EQ(ucOspfGetInCfg(63, &entry), 0u);
    entry.inUse = 1;
    entry.vlanId = 4094;
    entry.processId = 2;
    entry.areaId = 7;
    model::Changes changes;
    ASSERT_EQ(ucOspfSetInCfg(63, &entry), 0u);
    EXPECT_EQ(changes.take(), "entry 63 areaId: 7\nentry 63 inUse: 1\nentry 63 processId: 2\n"
                              "entry 63 vlanId: 4094\n");
    OspfInterfaceEntry all[64];
    ASSERT_EQ(ucOspfGetInEntry(all), 0u);
    EXPECT_EQ(memcmp(all, pucOspf->interface, sizeof all), 0);
}

TEST_F(Entries, OutOfRangeAreNotThere) {
    OspfInterfaceEntry entry = {};
    model::Changes changes;
    for (const uint32_t index : {64u, 0x7fffffffu, 0xffffffffu}) {
        EXPECT_EQ(ucOspfGetInCfg(index, &entry), 1u);
        EXPECT_EQ(ucOspfSetInCfg(index, &entry), 1u);
    }
    EXPECT_EQ(ucOspfGetInCfg(0, nullptr), 1u);
    EXPECT_EQ(ucOspfSetInCfg(0, nullptr), 1u);
    EXPECT_EQ(ucOspfGetInEntry(nullptr), 1u);
    EXPECT_EQ(changes.take(), "");
}

TEST(NoModel, HasNoEntries) {
    pucOspf = nullptr;
    OspfInterfaceEntry all[64];
    const int32_t value = 1;
    EXPECT_EQ(ucOspfGetInCfg(0, all), 1u);
    EXPECT_EQ(ucOspfSetInCfg(0, all), 1u);
    EXPECT_EQ(ucOspfGetInEntry(all), 1u);
    EXPECT_EQ(ucOspfFindFreeInterface(), kNone);
    EXPECT_EQ(ucOspfFindInterfaceVlan(0), kNotFound);
    EXPECT_EQ(ucIpOpsfInfSetParaByKey(2, 1, &value, 0), kNone);
    EXPECT_EQ(ucIpOpsfInfSetParaByKey(2, 0, &value, 0), kNotFound);
    EXPECT_EQ(ucIpOspfAuth(2, 1, 1), kNone);
    EXPECT_EQ(ucIpOspfAuthKey(2, 1, "12345678"), kNone);
    EXPECT_EQ(ucIpOspfMtuIgnore(2, 1), kNone);
    EXPECT_EQ(ucIpOspfNetwork(2, 1, 1), kNone);
    EXPECT_EQ(ucIpOspfAuthM5dKey(2, 1, 1, "1234567812345678"), kNone);
}

} // namespace
