// SPDX-License-Identifier: Apache-2.0
// Area commands: what they record. Their texts are in golden/ospf/area_commands.golden.

#include <gtest/gtest.h>

#include "tests/unit/ospf_commands.h"

namespace {

using commands::Commands;
using commands::kNotFound;

constexpr uint32_t kNormalArea = 0xFFFFFFFF;
constexpr const char *kArea = "0.0.0.5";

class Area : public Commands {
protected:
    ~Area() override { (void)stage_.trace(); }
    Area() = default;
    Area(const Area &) = delete;
    Area &operator=(const Area &) = delete;

    static uint32_t area(uint32_t set, uint32_t type) { return swOspfArea(2, kArea, set, type, 1); }
    static uint32_t summary(uint32_t set, uint32_t type) {
        return swOspfAreaSummary(2, kArea, set, type, 1);
    }
    static uint32_t cost(uint32_t set, int32_t value) {
        return swOspfAreaDefaultCost(2, kArea, value, set, 1);
    }
};

TEST_F(Area, ATypeIsRecordedForTheGivenProcess) {
    EXPECT_EQ(changed(0, [] { return area(1, 1); }),
              "slot 1 areas: 0.0.0.5 type 1 cost 1 no-summary 0 [........]\n");
    EXPECT_EQ(changed(0, [] { return area(1, 2); }),
              "slot 1 areas: 0.0.0.5 type 2 cost 1 no-summary 0 [........]\n");
    EXPECT_EQ(changed(0, [] { return swOspfArea(2, "0.0.0.6", 1, 256, 0); }),
              "slot 1 areas: 0.0.0.6 type 0 cost 1 no-summary 0 [........]; "
              "0.0.0.5 type 2 cost 1 no-summary 0 [........]\n");
}

TEST_F(Area, UnsettingRemovesAnAreaOfTheSameTypeOnly) {
    ASSERT_EQ(area(1, 1), 0u);
    EXPECT_EQ(changed(1, [] { return area(0, 2); }), "");
    EXPECT_EQ(changed(0, [] { return area(0, 1); }), "slot 1 areas: \n");
    EXPECT_EQ(changed(kNotFound, [] { return area(0, 1); }), "");
}

TEST_F(Area, NoSummaryIsAFlagOfItsArea) {
    EXPECT_EQ(changed(0, [] { return summary(7, 1); }),
              "slot 1 areas: 0.0.0.5 type 1 cost 1 no-summary 1 [........]\n");
    EXPECT_EQ(changed(0, [] { return summary(0, 2); }), // the type stays
              "slot 1 areas: 0.0.0.5 type 1 cost 1 no-summary 0 [........]\n");
    EXPECT_EQ(changed(0, [] { return summary(1, 2); }),
              "slot 1 areas: 0.0.0.5 type 1 cost 1 no-summary 1 [........]\n");
    ASSERT_EQ(area(0, 1), 0u);
    EXPECT_EQ(changed(kNotFound, [] { return summary(0, 1); }), "");
}

TEST_F(Area, ADefaultCostNeedsAnAreaThatIsNotNormal) {
    ASSERT_EQ(area(1, 1), 0u);
    EXPECT_EQ(changed(0, [] { return cost(1, 20); }),
              "slot 1 areas: 0.0.0.5 type 1 cost 20 no-summary 0 [........]\n");
    EXPECT_EQ(changed(0, [] { return cost(0, 99); }),
              "slot 1 areas: 0.0.0.5 type 1 cost 1 no-summary 0 [........]\n");
    ASSERT_EQ(area(1, 0), 0u);
    EXPECT_EQ(changed(kNormalArea, [] { return cost(1, 20); }), "");
    EXPECT_EQ(changed(kNormalArea, [] { return cost(0, 20); }), "");
}

TEST_F(Area, ADefaultCostOfAnUnknownAreaMakesANormalOne) {
    EXPECT_EQ(changed(kNotFound, [] { return cost(0, 20); }), "");
    EXPECT_EQ(changed(0, [] { return cost(1, -1); }),
              "slot 1 areas: 0.0.0.5 type 0 cost 4294967295 no-summary 0 [........]\n");
    EXPECT_EQ(changed(kNormalArea, [] { return cost(1, 20); }), "");
}

TEST_F(Area, ARangeIsNotRecorded) {
    EXPECT_EQ(
        changed(0,
                [] { return swOspfAreaRange(2, kArea, "10.2.0.0", "255.255.0.0", 0, 1, 7, 1, 1); }),
        "");
}

TEST_F(Area, RefusedAndUnknownProcessesRecordNothing) {
    EXPECT_EQ(changed(0, [] { return swOspfArea(3, kArea, 1, 1, 1); }), "");
    EXPECT_EQ(changed(0, [] { return swOspfAreaSummary(3, kArea, 1, 1, 1); }), "");
    EXPECT_EQ(changed(0, [] { return swOspfAreaDefaultCost(3, kArea, 20, 1, 1); }), "");
    refuseFromSend(1);
    EXPECT_EQ(changed(1, [] { return area(1, 1); }), "");
    EXPECT_EQ(changed(1, [] { return summary(1, 1); }), "");
    EXPECT_EQ(changed(1, [] { return cost(1, 20); }), "");
}

} // namespace
