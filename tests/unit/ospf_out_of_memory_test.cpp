// SPDX-License-Identifier: Apache-2.0
// What the OSPF model and its commands answer when memory runs out, or a list refuses.

#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string>

#include "common/dlist.h"
#include "ospf/sw_ospf.h"
#include "ospf/uc_ospf.h"
#include "tests/support/no_memory.h"
#include "tests/support/stage.h"
#include "tests/unit/ospf_model_state.h"

namespace {

bool prependFails = false;
bool deleteFails = false;

} // namespace

// These take the place of the library's own.
int32_t dlistPrepend(dlist *list, void *data) {
    return prependFails ? 1 : dlistInsertAfter(list, nullptr, data);
}

int32_t dlistDelete(dlist *list, dlist_node *node) {
    if (deleteFails) {
        return 3;
    }
    const auto original =
        reinterpret_cast<int32_t (*)(dlist *, dlist_node *)>(dlsym(RTLD_NEXT, "dlistDelete"));
    return original(list, node);
}

namespace {

/// The call's result when its allocation of that number, counted from 1, fails.
template <typename Call> uint32_t withFailing(int allocation, Call call) {
    const stage::NoMemory failing(allocation);
    return call();
}

class OutOfMemory : public testing::Test {
protected:
    OutOfMemory() {
        EXPECT_EQ(ucOspfInit(), 0u);
        EXPECT_EQ(ucOspfEnableProcess(1), 0u);
        EXPECT_EQ(ucOspfEnableProcess(2), 0u);
    }
    ~OutOfMemory() override {
        prependFails = false;
        deleteFails = false;
    }
    OutOfMemory(const OutOfMemory &) = delete;
    OutOfMemory &operator=(const OutOfMemory &) = delete;

    stage::Stage stage_;
};

TEST_F(OutOfMemory, InitFailsAndKeepsTheEarlierModel) {
    const OspfModelBlock *before = pucOspf;
    EXPECT_EQ(withFailing(1, ucOspfInit), 4u);
    EXPECT_EQ(withFailing(1, swOspfInit), 4u);
    EXPECT_EQ(pucOspf, before);
}

TEST_F(OutOfMemory, AListThatCannotBeMadeIsMissingAndTakesNothing) {
    EXPECT_EQ(withFailing(1, [] { return ucOspfDefaultProcessByNum(5); }), 0u);
    EXPECT_EQ(pucOspf->process[5].networks, nullptr);
    EXPECT_NE(pucOspf->process[5].areas, nullptr);
    const OspfNetworkCfg network = {1, 2, 3};
    OspfNetworkCfg found = {};
    EXPECT_EQ(ucOspfNetworkInsert(5, &network), 4u);
    EXPECT_EQ(ucOspfNetworkGetCfg(5, model::words(1, 2), &found), 0xFFFFFFFEu);
    EXPECT_EQ(ucOspfNetworkDelete(5, model::words(1, 2)), 1u);
    EXPECT_EQ(ucOspfDefaultProcessByNum(5), 0u);
    EXPECT_EQ(ucOspfNetworkInsert(5, &network), 0u);
}

TEST_F(OutOfMemory, NeitherARecordNorItsNodeIsLeftBehind) {
    model::Changes changes;
    const OspfAreaCfg area = {};
    const OspfAreaAggCfg aggregate = {};
    const OspfVirtualLinkCfg link = {};
    const OspfNetworkCfg network = {};
    for (const int allocation : {1, 2}) { // the record, then its node
        SCOPED_TRACE(allocation);
        EXPECT_EQ(withFailing(allocation, [&] { return ucOspfAreaInsert(0, &area); }), 4u);
        EXPECT_EQ(withFailing(allocation, [&] { return ucOspfAreaAggInsert(0, &aggregate); }), 4u);
        EXPECT_EQ(withFailing(allocation, [&] { return ucOspfVirtualLinkInsert(0, &link); }), 4u);
        EXPECT_EQ(withFailing(allocation, [&] { return ucOspfNetworkInsert(0, &network); }), 4u);
        EXPECT_EQ(
            withFailing(allocation, [] { return ucOspfRedistribute(0, 1, 3, 0, 0, 0, 0, 0); }), 4u);
    }
    EXPECT_EQ(changes.take(), "");
}

TEST_F(OutOfMemory, ARefusingListTakesNothing) {
    model::Changes changes;
    const OspfAreaCfg area = {};
    prependFails = true;
    EXPECT_EQ(ucOspfAreaInsert(0, &area), 4u);
    EXPECT_EQ(ucOspfRedistribute(0, 1, 3, 0, 0, 0, 0, 0), 4u);
    void *record = malloc(sizeof area);
    EXPECT_EQ(ucOspfDlistInsert(0, record, 1), 4u);
    free(record); // still the caller's
    EXPECT_EQ(changes.take(), "");
}

TEST_F(OutOfMemory, ARemovalThatFailsHasACodeOfItsOwn) {
    const OspfAreaCfg area = {};
    const OspfAreaAggCfg aggregate = {};
    const OspfVirtualLinkCfg link = {};
    const OspfNetworkCfg network = {};
    ASSERT_EQ(ucOspfAreaInsert(0, &area), 0u);
    ASSERT_EQ(ucOspfAreaAggInsert(0, &aggregate), 0u);
    ASSERT_EQ(ucOspfVirtualLinkInsert(0, &link), 0u);
    ASSERT_EQ(ucOspfNetworkInsert(0, &network), 0u);
    ASSERT_EQ(ucOspfRedistribute(0, 1, 3, 0, 0, 0, 0, 0), 0u);
    model::Changes changes;
    deleteFails = true;
    EXPECT_EQ(ucOspfAreaDelete(0, 0, 0), 3u);
    EXPECT_EQ(ucOspfAreaRangeDelete(0, 0, 0), 3u);
    EXPECT_EQ(ucOspfVirtualLinkDelete(0, 0), 3u);
    EXPECT_EQ(ucOspfNetworkDelete(0, 0), 3u);
    EXPECT_EQ(ucOspfRedistribute(0, 0, 3, 0, 0, 0, 0, 0), 4u);
    EXPECT_EQ(changes.take(), "");
}

TEST_F(OutOfMemory, CommandsPassTheModelsResultOn) {
    model::Changes changes;
    prependFails = true;
    EXPECT_EQ(swOspfNetwork(0, "10.1.0.0", "255.255.0.0", 5, 1, 1), 4u);
    EXPECT_EQ(swOspfArea(1, "0.0.0.5", 1, 1, 1), 4u);
    EXPECT_EQ(swOspfAreaSummary(1, "0.0.0.5", 1, 1, 1), 4u);
    EXPECT_EQ(swOspfAreaDefaultCost(1, "0.0.0.5", 20, 1, 1), 4u);
    EXPECT_EQ(swOspfRedistribute(0, 1, 3, 20, 1, 1, 1), 4u);
    EXPECT_EQ(changes.take(), "");
    prependFails = false;
    ASSERT_EQ(swOspfNetwork(0, "10.1.0.0", "255.255.0.0", 5, 1, 1), 0u);
    ASSERT_EQ(swOspfArea(1, "0.0.0.5", 1, 1, 1), 0u);
    ASSERT_EQ(swOspfRedistribute(0, 1, 3, 20, 1, 1, 1), 0u);
    (void)changes.take();
    deleteFails = true;
    EXPECT_EQ(swOspfNetwork(0, "10.1.0.0", "255.255.0.0", 5, 0, 1), 3u);
    EXPECT_EQ(swOspfArea(1, "0.0.0.5", 0, 1, 1), 3u);
    EXPECT_EQ(swOspfRedistribute(0, 0, 3, 20, 1, 1, 1), 4u);
    EXPECT_EQ(changes.take(), "");
}

} // namespace
