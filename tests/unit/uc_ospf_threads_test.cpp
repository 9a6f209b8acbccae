// SPDX-License-Identifier: Apache-2.0
// Two threads at every locked routine of the OSPF model. Means most under ThreadSanitizer; the
// counts at the end hold without it.

#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

#include "common/dlist.h"
#include "ospf/uc_ospf.h"
#include "tests/unit/ospf_model_state.h"

namespace {

constexpr int kRounds = 2000;
constexpr uint32_t kShared = 3; ///< a slot that both threads write

/// The lock that callers of the two finders hold.
class Held {
public:
    Held() { EXPECT_EQ(pthread_mutex_lock(&uc_ospf_mutex), 0); }
    ~Held() { EXPECT_EQ(pthread_mutex_unlock(&uc_ospf_mutex), 0); }
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;
};

void twice(const std::function<void(uint32_t thread)> &work) {
    std::thread first(work, 0);
    std::thread second(work, 1);
    first.join();
    second.join();
}

class Threads : public testing::Test {
protected:
    Threads() { EXPECT_EQ(ucOspfInit(), 0u); }
};

TEST_F(Threads, ListsLoseAndDoubleNothing) {
    twice([](uint32_t thread) {
        for (uint32_t i = 0; i < kRounds; ++i) {
            const OspfNetworkCfg network = {i, thread, 0};
            EXPECT_EQ(ucOspfNetworkInsert(kShared, &network), 0u);
            OspfNetworkCfg found;
            EXPECT_EQ(ucOspfNetworkGetCfg(kShared, model::words(i, thread), &found), 0u);
            found.areaId = i;
            EXPECT_EQ(ucOspfNetworkSetCfg(kShared, model::words(i, thread), &found), 0u);
            if (i % 2 == 0) {
                EXPECT_EQ(ucOspfNetworkDelete(kShared, model::words(i, thread)), 0u);
            }
        }
    });
    const dlist *networks = pucOspf->process[kShared].networks;
    EXPECT_EQ(networks->count, 2u * kRounds / 2);
    uint64_t seen = 0;
    for (const dlist_node *node = networks->head; node != nullptr; node = node->next) {
        const auto *network = static_cast<const OspfNetworkCfg *>(node->data);
        EXPECT_EQ(network->areaId, network->address);
        ++seen;
    }
    EXPECT_EQ(seen, networks->count);
}

TEST_F(Threads, EachVlanTakesOneEntry) {
    twice([](uint32_t) {
        for (int i = 0; i < kRounds; ++i) {
            const auto vlan = static_cast<uint32_t>(i % 40);
            EXPECT_EQ(ucIpOspfAuthKey(vlan, 1, "12345678"), 0u);
            EXPECT_EQ(ucIpOspfMtuIgnore(vlan, 1), 0u);
            const Held held;
            EXPECT_LT(ucOspfFindInterfaceVlan(vlan), 64u);
            EXPECT_LE(ucOspfFindFreeInterface(), 40u);
        }
    });
    const Held held;
    EXPECT_EQ(ucOspfFindFreeInterface(), 40u);
}

TEST_F(Threads, EverythingAtOnce) {
    twice([](uint32_t thread) {
        OspfInterfaceEntry entries[64];
        for (uint32_t i = 0; i < kRounds; ++i) {
            const auto id = static_cast<uint16_t>(i % 4);
            const auto value = static_cast<int32_t>(i);
            if (i % 50 == 0) {
                (void)ucOspfDefaultProcessByNum(i / 50 % 16); // both threads, any slot
                (void)ucOspfEnableProcess(id);                // may find no slot
            }
            (void)ucOspfProcessIsEnable(kShared);
            (void)ucOspfHasProcessId(id);
            (void)ucOspfGetProcessPid(kShared);
            OspfProcessCfg process;
            EXPECT_EQ(ucOspfGetCfg(kShared, &process), 0u);
            EXPECT_EQ(ucOspfSetCfg(kShared, &process), 0u);
            EXPECT_EQ(ucIpOpsfBasicSetParaByKey(id, 1, &value, 4), 0u);
            EXPECT_EQ(ucIpOpsfInfSetParaByKey(i % 60, 1, &value, i % 6), 0u);
            EXPECT_EQ(ucIpOspfAuth(i % 60, 1, 2), 0u);
            EXPECT_EQ(ucIpOspfNetwork(i % 60, 1, 2), 0u);
            EXPECT_EQ(ucIpOspfAuthM5dKey(i % 60, 1, 2, "0123456789abcdef"), 0u);
            EXPECT_EQ(ucOspfGetInCfg(i % 64, entries), 0u);
            EXPECT_EQ(ucOspfGetInEntry(entries), 0u);
            OspfAreaCfg area;
            EXPECT_EQ(ucOspfAreaInit(&area), 0u);
            area.areaId = thread;
            EXPECT_EQ(ucOspfAreaInsert(kShared, &area), 0u);
            (void)ucOspfAreaDelete(kShared, thread, 0); // may have gone with a reset
            (void)ucOspfRedistribute(kShared, i % 2, 2, i, 1, 1, 1, 1);
            const OspfAreaAggCfg aggregate = {thread, i, 0, 0, 1};
            EXPECT_EQ(ucOspfAreaAggInsert(kShared, &aggregate), 0u);
            (void)ucOspfAreaRangeDelete(kShared, model::words(thread, i), 0);
            OspfVirtualLinkCfg link;
            EXPECT_EQ(ucOspfVirtualLinkInit(&link), 0u);
            link.areaId = thread;
            EXPECT_EQ(ucOspfVirtualLinkInsert(kShared, &link), 0u);
            (void)ucOspfVirtualLinkSetCfg(kShared, model::words(thread, 0), &link);
            (void)ucOspfVirtualLinkGetCfg(kShared, model::words(thread, 0), &link);
            (void)ucOspfVirtualLinkDelete(kShared, model::words(thread, 0));
        }
    });
    const Held held;
    EXPECT_EQ(ucOspfFindFreeInterface(), 60u);
}

} // namespace
