// SPDX-License-Identifier: Apache-2.0
// The RIP model: records, ranges, search, lists and locks.

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <sched.h>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "rip/uc_rip.h"
#include "tests/support/no_memory.h"

namespace {

/// How often each mutex of the model was taken.
int vrfLocks;
int interfaceLocks;

} // namespace

// Takes the C library's place, to see which mutex an operation takes and how often.
extern "C" int pthread_mutex_lock(pthread_mutex_t *mutex) {
    vrfLocks += mutex == &ucRipVrfListMu ? 1 : 0;
    interfaceLocks += mutex == &ucRipIfListMu ? 1 : 0;
    int result = pthread_mutex_trylock(mutex);
    for (; result == EBUSY; result = pthread_mutex_trylock(mutex)) {
        sched_yield();
    }
    return result;
}

namespace {

constexpr const char *kName = "default";
constexpr RipNetIf kKey = {1, 10};
const std::string k36(36, 'v');
const std::string k37 = k36 + 'w';
const std::string k15 = "123.123.123.123";
const std::string k16 = k15 + '4';

bool isFree(pthread_mutex_t &mutex) {
    if (pthread_mutex_trylock(&mutex) != 0) {
        return false;
    }
    pthread_mutex_unlock(&mutex);
    return true;
}

class Model : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(ucRipInit(), 0U); }
    void TearDown() override {
        EXPECT_TRUE(isFree(ucRipVrfListMu));
        EXPECT_TRUE(isFree(ucRipIfListMu));
    }
};

RipVrfNode *makeVrf(const char *name = kName) {
    RipVrfNode *vrf = nullptr;
    EXPECT_EQ(ucRipVrfAppend(name, &vrf), 0U);
    return vrf;
}

RipInterfaceNode *makeInterface(RipNetIf key = kKey) {
    RipInterfaceNode *interface = nullptr;
    EXPECT_EQ(ucRipInterfaceNodeAppend(key, &interface), 0U);
    return interface;
}

TEST(Globals, MulticastGroup) {
    EXPECT_EQ(gRipMultiIp, 0xE0000009U);
    const uint8_t mac[] = {0x01, 0x00, 0x5e, 0x00, 0x00, 0x09};
    EXPECT_EQ(memcmp(gRipMultiMac, mac, sizeof mac), 0);
}

TEST(Globals, RipInitDoesNothing) {
    EXPECT_EQ(ripInit(), 0U);
}

TEST(Records, FreshInstance) {
    RipVrfNode vrf;
    memset(&vrf, 0xff, sizeof vrf);
    ASSERT_EQ(ripVrfNodeInit(&vrf, kName), 0U);
    char name[40] = "default";
    EXPECT_EQ(memcmp(vrf.name, name, sizeof name), 0);
    EXPECT_EQ(vrf.auto_summary, 0U);
    EXPECT_EQ(vrf.version, 0U);
    EXPECT_EQ(vrf.update_timer, 30U);
    EXPECT_EQ(vrf.timeout_timer, 180U);
    EXPECT_EQ(vrf.garbage_timer, 120U);
    EXPECT_EQ(vrf.default_metric, 1);
    EXPECT_EQ(vrf.distance, 120);
    for (const dlist *list : {vrf.networks, vrf.neighbors}) {
        ASSERT_NE(list, nullptr);
        EXPECT_EQ(list->count, 0U);
        EXPECT_EQ(list->data_destroy, &free);
        EXPECT_EQ(list->data_cmp, nullptr);
        free(const_cast<dlist *>(list));
    }
}

TEST(Records, NamesAreCut) {
    for (const std::size_t length : {36U, 37U, 300U}) {
        RipVrfNode vrf;
        ASSERT_EQ(ripVrfNodeInit(&vrf, std::string(length, 'v').c_str()), 0U);
        EXPECT_EQ(k36, vrf.name) << length;
        EXPECT_EQ(memcmp(vrf.name + 36, "\0\0\0\0", 4), 0);
        free(vrf.networks);
        free(vrf.neighbors);
    }
}

TEST(Records, Network) {
    RipNetworkNode network;
    memset(&network, 0xff, sizeof network);
    ASSERT_EQ(ripNetworkNodeInit(&network, "10.0.0.0", k16.c_str()), 0U);
    const char ip[16] = "10.0.0.0";
    EXPECT_EQ(memcmp(network.ip, ip, sizeof ip), 0);
    EXPECT_EQ(k15, network.mask);
}

TEST(Records, Neighbor) {
    RipNeighborNode neighbor;
    memset(&neighbor, 0xff, sizeof neighbor);
    EXPECT_EQ(ripNeighborNodeInit(&neighbor, k16.c_str()), 1U);
    ASSERT_EQ(ripNeighborNodeInit(&neighbor, "10.0.0.2"), 0U);
    const char addr[16] = "10.0.0.2";
    EXPECT_EQ(memcmp(neighbor.addr, addr, sizeof addr), 0);
    ASSERT_EQ(ripNeighborNodeInit(&neighbor, k15.c_str()), 0U);
    EXPECT_EQ(k15, neighbor.addr);
}

TEST(Records, Interface) {
    RipInterfaceNode interface;
    memset(&interface, 0xff, sizeof interface);
    ASSERT_EQ(ripInterfaceNodeInit(&interface, {1, 7}), 0U);
    RipInterfaceNode wanted = {};
    wanted.split_horizon = 1;
    wanted.key = {1, 7};
    wanted.vlan_id = 7;
    wanted.auth_keyid = 1;
    EXPECT_EQ(memcmp(&interface, &wanted, offsetof(RipInterfaceNode, auth_str) + 17), 0);
    ASSERT_EQ(ripInterfaceNodeInit(&interface, {2, 7}), 0U);
    EXPECT_EQ(interface.vlan_id, 0U);
    EXPECT_EQ(interface.key.vid, 7U);
}

TEST(Records, MissingArguments) {
    RipVrfNode vrf;
    RipNetworkNode network;
    RipNeighborNode neighbor;
    EXPECT_EQ(ripVrfNodeInit(nullptr, kName), 1U);
    EXPECT_EQ(ripVrfNodeInit(&vrf, nullptr), 1U);
    EXPECT_EQ(ripNetworkNodeInit(nullptr, "1", "2"), 1U);
    EXPECT_EQ(ripNetworkNodeInit(&network, nullptr, "2"), 1U);
    EXPECT_EQ(ripNetworkNodeInit(&network, "1", nullptr), 1U);
    EXPECT_EQ(ripNeighborNodeInit(nullptr, "1"), 1U);
    EXPECT_EQ(ripNeighborNodeInit(&neighbor, nullptr), 1U);
    EXPECT_EQ(ripInterfaceNodeInit(nullptr, kKey), 1U);
}

// ---- lists ----

TEST_F(Model, FreshLists) {
    for (const dlist *list : {gRipVrfList, gRipIfList}) {
        ASSERT_NE(list, nullptr);
        EXPECT_EQ(list->count, 0U);
        EXPECT_EQ(list->data_destroy, &free);
        EXPECT_EQ(list->data_cmp, nullptr);
    }
}

TEST_F(Model, InstancesStayInOrderAndSingle) {
    RipVrfNode *b = makeVrf("b");
    RipVrfNode *a = makeVrf("a");
    EXPECT_EQ(makeVrf("b"), b);
    EXPECT_EQ(gRipVrfList->count, 2U);
    EXPECT_EQ(gRipVrfList->head->data, b);
    EXPECT_EQ(gRipVrfList->tail->data, a);
    EXPECT_EQ(ucRipVrfAppend("a", nullptr), 0U);
    EXPECT_EQ(ucRipVrfAppend(nullptr, &a), 1U);
    EXPECT_EQ(gRipVrfList->count, 2U);
}

TEST_F(Model, InstanceFoundAndRemoved) {
    RipVrfNode *vrf = makeVrf();
    RipVrfNode *found = nullptr;
    EXPECT_EQ(ucRipVrfFindByName(kName, &found), 0U);
    EXPECT_EQ(found, vrf);
    EXPECT_EQ(ucRipVrfFindByName(kName, nullptr), 0U);
    found = nullptr;
    EXPECT_EQ(ucRipVrfFindByName("defaul", &found), 1U);
    EXPECT_EQ(ucRipVrfFindByName("default2", &found), 1U);
    EXPECT_EQ(ucRipVrfFindByName("", &found), 1U);
    EXPECT_EQ(ucRipVrfFindByName(nullptr, &found), 1U);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(ucRipVrfRemoveByName(nullptr), 1U);
    EXPECT_EQ(ucRipVrfRemoveByName("other"), 0U);
    EXPECT_EQ(gRipVrfList->count, 1U);
    EXPECT_EQ(ucRipVrfRemoveByName(kName), 0U);
    EXPECT_EQ(ucRipVrfRemoveByName(kName), 0U);
    EXPECT_EQ(gRipVrfList->count, 0U);
}

TEST_F(Model, ALongNameIsNeverFound) {
    makeVrf(k37.c_str());
    makeVrf(k37.c_str());
    EXPECT_EQ(gRipVrfList->count, 2U);
    EXPECT_EQ(ucRipVrfFindByName(k37.c_str(), nullptr), 1U);
    EXPECT_EQ(ucRipVrfFindByName(k36.c_str(), nullptr), 0U);
}

TEST_F(Model, NeighborsOfAnInstance) {
    const RipVrfNode *vrf = makeVrf();
    RipNeighborNode *first = nullptr;
    RipNeighborNode *again = nullptr;
    EXPECT_EQ(ucRipNeighborAppend(kName, "10.0.0.2", &first), 0U);
    EXPECT_EQ(ucRipNeighborAppend(kName, "10.0.0.2", &again), 0U);
    EXPECT_EQ(first, again);
    EXPECT_EQ(ucRipNeighborAppend(kName, k15.c_str(), &again), 0U);
    EXPECT_NE(first, again);
    EXPECT_EQ(ucRipNeighborAppend(kName, k16.c_str(), &again), 4U);
    EXPECT_EQ(vrf->neighbors->count, 2U);
    EXPECT_EQ(ucRipNeighborRemoveByName(kName, k16.c_str()), 0U);
    EXPECT_EQ(vrf->neighbors->count, 2U);
    EXPECT_EQ(ucRipNeighborRemoveByName(kName, "10.0.0.2"), 0U);
    EXPECT_EQ(ucRipNeighborRemoveByName(kName, "10.0.0.2"), 0U);
    EXPECT_EQ(vrf->neighbors->count, 1U);
}

TEST_F(Model, NetworksOfAnInstance) {
    const RipVrfNode *vrf = makeVrf();
    RipNetworkNode *first = nullptr;
    RipNetworkNode *again = nullptr;
    EXPECT_EQ(ucRipNetworkNodeAppend(kName, "10.0.0.0", "255.0.0.0", &first), 0U);
    EXPECT_EQ(ucRipNetworkNodeAppend(kName, "10.0.0.0", "255.0.0.0", &again), 0U);
    EXPECT_EQ(first, again);
    EXPECT_EQ(ucRipNetworkNodeAppend(kName, "10.0.0.0", "255.255.0.0", &again), 0U);
    EXPECT_NE(first, again);
    EXPECT_EQ(vrf->networks->count, 2U);
    EXPECT_EQ(ucRipNetworkNodeRemoveByName(kName, "10.0.0.0", "255.255.255.0"), 0U);
    EXPECT_EQ(vrf->networks->count, 2U);
    EXPECT_EQ(ucRipNetworkNodeRemoveByName(kName, "10.0.0.0", "255.0.0.0"), 0U);
    EXPECT_EQ(vrf->networks->count, 1U);
}

TEST_F(Model, OverLongNetworkTextsNeverMatch) {
    const RipVrfNode *vrf = makeVrf();
    RipNetworkNode *network = nullptr;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(ucRipNetworkNodeAppend(kName, k16.c_str(), "255.0.0.0", &network), 0U);
        EXPECT_EQ(k15, network->ip);
    }
    EXPECT_EQ(vrf->networks->count, 2U);
    EXPECT_EQ(ucRipNetworkNodeRemoveByName(kName, k16.c_str(), "255.0.0.0"), 0U);
    EXPECT_EQ(vrf->networks->count, 2U);
    EXPECT_EQ(ucRipNetworkNodeRemoveByName(kName, k15.c_str(), "255.0.0.0"), 0U);
    EXPECT_EQ(vrf->networks->count, 1U);
}

TEST_F(Model, MissingArgumentsAndUnknownInstances) {
    makeVrf();
    RipNetworkNode *network = nullptr;
    RipNeighborNode *neighbor = nullptr;
    EXPECT_EQ(ucRipNetworkNodeAppend(nullptr, "1", "2", &network), 1U);
    EXPECT_EQ(ucRipNetworkNodeAppend(kName, nullptr, "2", &network), 1U);
    EXPECT_EQ(ucRipNetworkNodeAppend(kName, "1", nullptr, &network), 1U);
    EXPECT_EQ(ucRipNetworkNodeAppend(kName, "1", "2", nullptr), 1U);
    EXPECT_EQ(ucRipNetworkNodeAppend("other", "1", "2", &network), 1U);
    EXPECT_EQ(ucRipNetworkNodeRemoveByName(nullptr, "1", "2"), 1U);
    EXPECT_EQ(ucRipNetworkNodeRemoveByName(kName, nullptr, "2"), 1U);
    EXPECT_EQ(ucRipNetworkNodeRemoveByName(kName, "1", nullptr), 1U);
    EXPECT_EQ(ucRipNetworkNodeRemoveByName("other", "1", "2"), 1U);
    EXPECT_EQ(ucRipNeighborAppend(nullptr, "1", &neighbor), 1U);
    EXPECT_EQ(ucRipNeighborAppend(kName, nullptr, &neighbor), 1U);
    EXPECT_EQ(ucRipNeighborAppend(kName, "1", nullptr), 1U);
    EXPECT_EQ(ucRipNeighborAppend("other", "1", &neighbor), 1U);
    EXPECT_EQ(ucRipNeighborRemoveByName(nullptr, "1"), 1U);
    EXPECT_EQ(ucRipNeighborRemoveByName(kName, nullptr), 1U);
    EXPECT_EQ(ucRipNeighborRemoveByName("other", "1"), 1U);
    EXPECT_EQ(network, nullptr);
    EXPECT_EQ(neighbor, nullptr);
}

TEST_F(Model, Interfaces) {
    RipInterfaceNode *interface = makeInterface();
    EXPECT_EQ(makeInterface(), interface);
    EXPECT_NE(makeInterface({0, 10}), interface);
    EXPECT_NE(makeInterface({1, 11}), interface);
    EXPECT_EQ(ucRipInterfaceNodeAppend(kKey, nullptr), 0U);
    EXPECT_EQ(gRipIfList->count, 3U);
    RipInterfaceNode *found = nullptr;
    EXPECT_EQ(ucRipIfFindByNetIf(kKey, &found), 0U);
    EXPECT_EQ(found, interface);
    EXPECT_EQ(ucRipIfFindByNetIf(kKey, nullptr), 1U);
    EXPECT_EQ(ucRipIfFindByNetIf({1, 12}, &found), 1U);
    EXPECT_EQ(found, interface);
    EXPECT_EQ(ucRipInterfaceNodeRemoveByKey({1, 12}), 0U);
    EXPECT_EQ(gRipIfList->count, 3U);
    EXPECT_EQ(ucRipInterfaceNodeRemoveByKey(kKey), 0U);
    EXPECT_EQ(gRipIfList->count, 2U);
}

/// One operation, and how often it takes each mutex: once for a search, an insertion, a removal or
/// an access.
struct Locking {
    const char *name;
    uint32_t (*run)();
    int vrfLocks;
    int interfaceLocks;
};

RipVrfNode *vrfOut;
RipNetworkNode *networkOut;
RipNeighborNode *neighborOut;
RipInterfaceNode *interfaceOut;
uint32_t valueOut;

constexpr RipNetIf kZeroKey = {};

const Locking kLockings[] = {
    {"instance made",     [] { return ucRipVrfAppend(kName, &vrfOut); },                       2, 0},
    {"instance there",    [] { return ucRipVrfAppend(kName, &vrfOut); },                       1, 0},
    {"instance found",    [] { return ucRipVrfFindByName(kName, &vrfOut); },                   1, 0},
    {"network made",      [] { return ucRipNetworkNodeAppend(kName, "1", "2", &networkOut); }, 3, 0},
    {"network there",     [] { return ucRipNetworkNodeAppend(kName, "1", "2", &networkOut); }, 2, 0},
    {"network removed",   [] { return ucRipNetworkNodeRemoveByName(kName, "1", "2"); },        3, 0},
    {"network gone",      [] { return ucRipNetworkNodeRemoveByName(kName, "1", "2"); },        2, 0},
    {"neighbour made",    [] { return ucRipNeighborAppend(kName, "1", &neighborOut); },        3, 0},
    {"neighbour there",   [] { return ucRipNeighborAppend(kName, "1", &neighborOut); },        2, 0},
    {"neighbour removed", [] { return ucRipNeighborRemoveByName(kName, "1"); },                3, 0},
    {"neighbour gone",    [] { return ucRipNeighborRemoveByName(kName, "1"); },                2, 0},
    {"instance set",      [] { return ucRipDistanceSet(kName, 7); },                           2, 0},
    {"instance read",     [] { return ucRipDistanceGet(kName, &valueOut); },                   2, 0},
    {"instance removed",  [] { return ucRipVrfRemoveByName(kName); },                          2, 0},
    {"instance gone",     [] { return ucRipVrfRemoveByName(kName); },                          1, 0},
    {"instance unknown",  [] { return ucRipDistanceSet(kName, 7) - 1; },                       1, 0},
    {"interface made",    [] { return ucRipInterfaceNodeAppend(kZeroKey, &interfaceOut); },    0, 2},
    {"interface there",   [] { return ucRipInterfaceNodeAppend(kZeroKey, &interfaceOut); },    0, 1},
    {"interface found",   [] { return ucRipIfFindByNetIf(kZeroKey, &interfaceOut); },          0, 1},
    {"interface set",     [] { return ucRipInterfacePassiveEnableSet(kZeroKey, 1); },          0, 2},
    {"interface read",    [] { return ucRipInterfacePassiveEnableGet(kZeroKey, &valueOut); },  0, 2},
    {"interface removed", [] { return ucRipInterfaceNodeRemoveByKey(kZeroKey); },              0, 2},
    {"interface gone",    [] { return ucRipInterfaceNodeRemoveByKey(kZeroKey); },              0, 1},
    {"interface unknown", [] { return ucRipInterfacePassiveEnableSet(kZeroKey, 1) - 1; },      0, 1},
    {"instances dumped",  ucRip_setGlobal,                                                     1, 0},
};

TEST_F(Model, EachOperationTakesItsMutexOnlyAndGivesItBack) {
    for (const Locking &locking : kLockings) {
        SCOPED_TRACE(locking.name);
        vrfLocks = 0;
        interfaceLocks = 0;
        EXPECT_EQ(locking.run(), 0U);
        EXPECT_EQ(vrfLocks, locking.vrfLocks);
        EXPECT_EQ(interfaceLocks, locking.interfaceLocks);
        ASSERT_TRUE(isFree(ucRipVrfListMu));
        ASSERT_TRUE(isFree(ucRipIfListMu));
    }
}

TEST(WithoutInit, NothingIsFound) {
    dlist *vrfs = gRipVrfList;
    dlist *interfaces = gRipIfList;
    gRipVrfList = nullptr;
    gRipIfList = nullptr;
    RipInterfaceNode *interface = nullptr;
    uint32_t value = 0;
    EXPECT_EQ(ucRipVrfFindByName(kName, nullptr), 1U);
    EXPECT_EQ(ucRipVrfAppend(kName, nullptr), 4U);
    EXPECT_EQ(ucRipVrfRemoveByName(kName), 0U);
    EXPECT_EQ(ucRipIfFindByNetIf(kKey, &interface), 1U);
    EXPECT_EQ(ucRipInterfaceNodeAppend(kKey, &interface), 4U);
    EXPECT_EQ(ucRipDistanceGet(kName, &value), 1U);
    EXPECT_EQ(ucRip_setGlobal(), 0U);
    EXPECT_EQ(ucRip_setIfVlan(), 1U);
    gRipVrfList = vrfs;
    gRipIfList = interfaces;
}

TEST_F(Model, WithoutMemory) {
    makeVrf();
    RipNetworkNode *network = nullptr;
    RipNeighborNode *neighbor = nullptr;
    RipInterfaceNode *interface = nullptr;
    for (int failing = 1; failing <= 2; ++failing) { // the record, its list node
        const stage::NoMemory noMemory(failing);
        EXPECT_EQ(ucRipNetworkNodeAppend(kName, "1", "2", &network), 4U);
    }
    for (int failing = 1; failing <= 2; ++failing) {
        const stage::NoMemory noMemory(failing);
        EXPECT_EQ(ucRipNeighborAppend(kName, "1", &neighbor), 4U);
    }
    for (int failing = 1; failing <= 2; ++failing) {
        const stage::NoMemory noMemory(failing);
        EXPECT_EQ(ucRipInterfaceNodeAppend(kKey, &interface), 4U);
    }
    for (int failing = 1; failing <= 4; ++failing) { // the record, its two lists, its list node
        const stage::NoMemory noMemory(failing);
        EXPECT_EQ(ucRipVrfAppend("other", nullptr), failing == 1 ? 1U : 4U);
    }
    EXPECT_EQ(network, nullptr);
    EXPECT_EQ(neighbor, nullptr);
    EXPECT_EQ(interface, nullptr);
    EXPECT_EQ(gRipVrfList->count, 1U);
    EXPECT_EQ(gRipIfList->count, 0U);
}

/// Bytes that the heap has given out.
std::size_t bytesInUse() {
    return mallinfo2().uordblks;
}

TEST(Records, AnInstanceWithoutItsSecondListKeepsNoneOfItsFirst) {
    constexpr std::size_t kTimes = 1000;
    RipVrfNode vrf;
    const std::size_t before = bytesInUse();
    for (std::size_t i = 0; i < kTimes; ++i) {
        const stage::NoMemory noMemory(2);
        ASSERT_EQ(ripVrfNodeInit(&vrf, kName), 1U);
    }
    EXPECT_LT(bytesInUse(), before + kTimes * sizeof(dlist)); // a sanitizer's heap says 0 each time
    EXPECT_EQ(vrf.networks, nullptr);
    EXPECT_EQ(vrf.neighbors, nullptr);
}

TEST(Init, WithoutMemory) {
    for (int failing = 1; failing <= 2; ++failing) {
        const stage::NoMemory noMemory(failing);
        EXPECT_EQ(ucRipInit(), 1U);
    }
    EXPECT_EQ(ucRipInit(), 0U);
}

// ---- options ----

struct InstanceOption {
    const char *name;
    uint32_t (*get)(const char *, uint32_t *);
    uint32_t (*set)(const char *, uint32_t);
    uint32_t initial;
    uint32_t low;
    uint32_t high;
    std::size_t offset;
    std::size_t width;
};

#define FIELD(record, field) offsetof(record, field), sizeof(record::field)

const InstanceOption kInstanceOptions[] = {
    {"version",      ucRipDefaultVersionGet, ucRipDefaultVersionSet, 0,   0, 3,
     FIELD(RipVrfNode,                                                                              version)       },
    {"update",       ucRipTimerUpdateGet,    ucRipTimerUpdateSet,    30,  5, 100,
     FIELD(RipVrfNode,                                                                              update_timer)  },
    {"timeout",      ucRipTimerTimeoutGet,   ucRipTimerTimeoutSet,   180, 5, 300,
     FIELD(RipVrfNode,                                                                              timeout_timer) },
    {"garbage",      ucRipTimerGarbageGet,   ucRipTimerGarbageSet,   120, 5, 500,
     FIELD(RipVrfNode,                                                                              garbage_timer) },
    {"metric",       ucRipDefaultMetricGet,  ucRipDefaultMetricSet,  1,   0, 16,
     FIELD(RipVrfNode,                                                                              default_metric)},
    {"distance",     ucRipDistanceGet,       ucRipDistanceSet,       120, 1, 255, FIELD(RipVrfNode, distance)      },
    {"auto summary", ucRipAutosummGet,       ucRipAutosummSet,       0,   0, 1,   FIELD(RipVrfNode, auto_summary)  },
};

struct InterfaceOption {
    const char *name;
    uint32_t (*get)(RipNetIf, uint32_t *);
    uint32_t (*set)(RipNetIf, uint32_t);
    uint32_t initial;
    uint32_t low;
    uint32_t high;
    std::size_t offset;
    std::size_t width;
};

const InterfaceOption kInterfaceOptions[] = {
    {"send version",     ucRipInterfaceSendVersionGet,           ucRipInterfaceSendVersionSet,        0, 0, 3,
     FIELD(RipInterfaceNode,                                                                                                             send_version) },
    {"receive version",  ucRipInterfaceRecvVersionGet,           ucRipInterfaceRecvVersionSet,        0, 0, 3,
     FIELD(RipInterfaceNode,                                                                                                             recv_version) },
    {"v2 broadcast",     ucRipInterfaceV2broadcastGet,           ucRipInterfaceV2broadcastSet,        0, 0, 1,
     FIELD(RipInterfaceNode,                                                                                                             v2_broadcast) },
    {"auth type",        ucRipInterfaceAuth_typeGet,             ucRipInterfaceAuth_typeSet,          0, 0, 2,
     FIELD(RipInterfaceNode,                                                                                                             auth_type)    },
    {"auth key id",      ucRipInterfaceAuth_keyidGet,            ucRipInterfaceAuth_keyidSet,         1, 1, 255,
     FIELD(RipInterfaceNode,                                                                                                             auth_keyid)   },
    {"split horizon",    ucRipInterfaceSplitHorizonEnableGet,    ucRipInterfaceSplitHorizonEnableSet, 1,
     0,                                                                                                     1,   FIELD(RipInterfaceNode, split_horizon)},
    {"poisoned reverse", ucRipInterfacePoisonedReverseEnableGet,
     ucRipInterfacePoisonedReverseEnableSet,                                                          1, 0, 1,   FIELD(RipInterfaceNode, split_horizon)},
    {"passive",          ucRipInterfacePassiveEnableGet,         ucRipInterfacePassiveEnableSet,      0, 0, 1,
     FIELD(RipInterfaceNode,                                                                                                             passive)      },
};

uint32_t fieldAt(const void *record, std::size_t offset, std::size_t width) {
    uint32_t value = 0; // little endian, as all machines that the library runs on
    memcpy(&value, static_cast<const char *>(record) + offset, width);
    return value;
}

/// Puts every value around both ends of the range into one field and leaves the others alone.
template <class Option, class Key, class Record>
void checkOption(const Option &option, Key key, Key unknown, Record *record) {
    SCOPED_TRACE(option.name);
    uint32_t value = 77;
    EXPECT_EQ(option.get(unknown, &value), 1U);
    EXPECT_EQ(option.set(unknown, option.low), 1U);
    EXPECT_EQ(option.get(key, nullptr), 1U);
    EXPECT_EQ(value, 77U);
    EXPECT_EQ(option.get(key, &value), 0U);
    EXPECT_EQ(value, option.initial);
    const Record before = *record;
    uint32_t kept = option.initial;
    for (const uint32_t wanted : {option.low, option.high, option.high + 1, option.low - 1,
                                  uint32_t{0x10000}, uint32_t{0x100}, UINT32_MAX, option.initial}) {
        const bool accepted = wanted >= option.low && wanted <= option.high;
        EXPECT_EQ(option.set(key, wanted), accepted ? 0U : 1U) << wanted;
        kept = accepted ? wanted : kept;
        EXPECT_EQ(fieldAt(record, option.offset, option.width), kept) << wanted;
        EXPECT_EQ(option.get(key, &value), 0U);
        EXPECT_EQ(value, kept) << wanted;
    }
    EXPECT_EQ(memcmp(&before, record, sizeof before), 0);
}

TEST_F(Model, InstanceOptions) {
    RipVrfNode *vrf = makeVrf();
    for (const InstanceOption &option : kInstanceOptions) {
        checkOption<InstanceOption, const char *>(option, kName, "other", vrf);
        EXPECT_EQ(option.set(nullptr, option.low), 1U);
    }
}

TEST_F(Model, InterfaceOptions) {
    RipInterfaceNode *interface = makeInterface();
    for (const InterfaceOption &option : kInterfaceOptions) {
        checkOption(option, kKey, RipNetIf{1, 11}, interface);
    }
}

TEST_F(Model, PoisonedReverseIsSplitHorizon) {
    const RipInterfaceNode *interface = makeInterface();
    EXPECT_EQ(ucRipInterfacePoisonedReverseEnableSet(kKey, 0), 0U);
    EXPECT_EQ(interface->split_horizon, 0);
    EXPECT_EQ(interface->poison_reverse, 0);
    EXPECT_EQ(ucRipInterfacePoisonedReverseEnableSet(kKey, 1), 0U);
    EXPECT_EQ(interface->split_horizon, 1);
    EXPECT_EQ(interface->poison_reverse, 0);
}

TEST_F(Model, AuthText) {
    const RipInterfaceNode *interface = makeInterface();
    const std::string text16 = "0123456789abcdef";
    char out[18];
    memset(out, 'x', sizeof out);
    EXPECT_EQ(ucRipInterfaceAuth_strGet(kKey, out), 0U);
    EXPECT_EQ(memcmp(out, "\0x", 2), 0);
    EXPECT_EQ(ucRipInterfaceAuth_strSet(kKey, text16.c_str()), 0U);
    EXPECT_EQ(ucRipInterfaceAuth_strSet(kKey, (text16 + 'g').c_str()), 1U);
    EXPECT_EQ(ucRipInterfaceAuth_strGet(kKey, out), 0U);
    EXPECT_EQ(text16, out);
    EXPECT_EQ(out[17], 'x');
    EXPECT_EQ(ucRipInterfaceAuth_strSet(kKey, "ab"), 0U);
    const char wanted[17] = "ab";
    EXPECT_EQ(memcmp(interface->auth_str, wanted, sizeof wanted), 0);
    EXPECT_EQ(ucRipInterfaceAuth_strSet(kKey, nullptr), 1U);
    EXPECT_EQ(ucRipInterfaceAuth_strGet(kKey, nullptr), 1U);
    EXPECT_EQ(ucRipInterfaceAuth_strSet({1, 11}, "a"), 1U);
    EXPECT_EQ(ucRipInterfaceAuth_strSet(kKey, ""), 0U);
    EXPECT_EQ(interface->auth_str[0], '\0');
}

int accessed;

uint32_t seeInstance(RipVrfNode *record, void *value) {
    ++accessed;
    EXPECT_STREQ(record->name, kName);
    EXPECT_EQ(pthread_mutex_trylock(&ucRipVrfListMu), EBUSY);
    EXPECT_TRUE(isFree(ucRipIfListMu));
    return *static_cast<uint32_t *>(value);
}

uint32_t seeInterface(RipInterfaceNode *record, void *value) {
    ++accessed;
    EXPECT_EQ(record->key.vid, kKey.vid);
    EXPECT_EQ(pthread_mutex_trylock(&ucRipIfListMu), EBUSY);
    EXPECT_TRUE(isFree(ucRipVrfListMu));
    return *static_cast<uint32_t *>(value);
}

TEST_F(Model, AccessorsRunUnderTheirMutexOnly) {
    makeVrf();
    makeInterface();
    uint32_t value = 42;
    accessed = 0;
    EXPECT_EQ(ucRipGlobalOption(kName, seeInstance, &value), 42U);
    EXPECT_EQ(ucRipIfOption(kKey, seeInterface, &value), 42U);
    EXPECT_EQ(accessed, 2);
    EXPECT_EQ(ucRipGlobalOption("other", seeInstance, &value), 1U);
    EXPECT_EQ(ucRipGlobalOption(nullptr, seeInstance, &value), 1U);
    EXPECT_EQ(ucRipGlobalOption(kName, nullptr, &value), 1U);
    EXPECT_EQ(ucRipGlobalOption(kName, seeInstance, nullptr), 1U);
    EXPECT_EQ(ucRipIfOption({0, 10}, seeInterface, &value), 1U);
    EXPECT_EQ(ucRipIfOption(kKey, nullptr, &value), 1U);
    EXPECT_EQ(ucRipIfOption(kKey, seeInterface, nullptr), 1U);
    EXPECT_EQ(accessed, 2);
}

// ---- search ----

std::vector<std::string> steps;

int32_t compareNoted(const void *key, const dlist_node *entry) {
    steps.emplace_back(static_cast<const char *>(entry->data));
    return strcmp(static_cast<const char *>(key), static_cast<const char *>(entry->data)) == 0 ? 2
                                                                                               : 3;
}

void noteLock() {
    steps.emplace_back("lock");
}

void noteUnlock() {
    steps.emplace_back("unlock");
}

class Search : public testing::Test {
protected:
    void SetUp() override {
        steps.clear();
        for (int i = 0; i < 3; ++i) {
            nodes_[i].data = texts_[i];
            nodes_[i].next = i < 2 ? &nodes_[i + 1] : nullptr;
        }
        list_.head = nodes_.data();
    }
    char texts_[3][2] = {"a", "b", "b"};
    std::array<dlist_node, 3> nodes_ = {};
    dlist list_ = {};
};

TEST_F(Search, StopsAtTheFirstMatch) {
    dlist_node *out = nullptr;
    EXPECT_EQ(ucRipListFind(&list_, compareNoted, noteLock, noteUnlock, "b", &out), 0);
    EXPECT_EQ(out, &nodes_[1]);
    EXPECT_EQ(steps, (std::vector<std::string>{"lock", "a", "b", "unlock"}));
}

TEST_F(Search, NothingMatches) {
    dlist_node *out = nodes_.data();
    EXPECT_EQ(ucRipListFind(&list_, compareNoted, noteLock, noteUnlock, "c", &out), 0);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(steps, (std::vector<std::string>{"lock", "a", "b", "b", "unlock"}));
}

TEST_F(Search, MissingArgumentsLockNothing) {
    dlist_node *out = nodes_.data();
    EXPECT_EQ(ucRipListFind(nullptr, compareNoted, noteLock, noteUnlock, "b", &out), -1);
    EXPECT_EQ(out, nullptr);
    out = nodes_.data();
    EXPECT_EQ(ucRipListFind(&list_, compareNoted, noteLock, noteUnlock, nullptr, &out), -1);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(ucRipListFind(&list_, nullptr, noteLock, noteUnlock, "b", &out), -1);
    EXPECT_EQ(ucRipListFind(&list_, compareNoted, nullptr, noteUnlock, "b", &out), -1);
    EXPECT_EQ(ucRipListFind(&list_, compareNoted, noteLock, nullptr, "b", &out), -1);
    EXPECT_EQ(ucRipListFind(&list_, compareNoted, noteLock, noteUnlock, "b", nullptr), -1);
    EXPECT_TRUE(steps.empty());
}

TEST(Comparators, InstanceName) {
    RipVrfNode vrf = {};
    memcpy(vrf.name, k36.c_str(), 36);
    const dlist_node entry = {nullptr, nullptr, &vrf};
    const dlist_node empty = {};
    EXPECT_EQ(ripVrfNameCmp(k36.c_str(), &entry), 2);
    EXPECT_EQ(ripVrfNameCmp(k36.substr(0, 35).c_str(), &entry), 0);
    EXPECT_EQ(ripVrfNameCmp("", &entry), 0);
    EXPECT_EQ(ripVrfNameCmp(k37.c_str(), &entry), 3);
    EXPECT_EQ(ripVrfNameCmp(nullptr, &entry), 3);
    EXPECT_EQ(ripVrfNameCmp(k36.c_str(), nullptr), 3);
    EXPECT_EQ(ripVrfNameCmp(k36.c_str(), &empty), 3);
}

TEST(Comparators, Neighbor) {
    RipNeighborNode neighbor = {"10.0.0.2"};
    const dlist_node entry = {nullptr, nullptr, &neighbor};
    char key[16] = "10.0.0.2";
    EXPECT_EQ(ripNeighborCmp(key, &entry), 2);
    key[15] = '2';
    EXPECT_EQ(ripNeighborCmp(key, &entry), 0);
    EXPECT_EQ(ripNeighborCmp(nullptr, &entry), 3);
    EXPECT_EQ(ripNeighborCmp(key, nullptr), 3);
}

TEST(Comparators, Network) {
    RipNetworkNode network = {"10.0.0.0", "255.0.0.0"};
    const dlist_node entry = {nullptr, nullptr, &network};
    const dlist_node empty = {};
    char key[32] = "10.0.0.0";
    EXPECT_EQ(ripNetworkCmp(key, &entry), 0);
    memcpy(key + 16, "255.0.0.0", 9);
    EXPECT_EQ(ripNetworkCmp(key, &entry), 2);
    key[31] = '1';
    EXPECT_EQ(ripNetworkCmp(key, &entry), 0);
    EXPECT_EQ(ripNetworkCmp(key, &empty), 1);
    EXPECT_EQ(ripNetworkCmp(nullptr, &empty), 3);
    EXPECT_EQ(ripNetworkCmp(key, nullptr), 3);
}

TEST(Comparators, Interface) {
    RipInterfaceNode interface = {};
    interface.key = kKey;
    const dlist_node entry = {nullptr, nullptr, &interface};
    RipNetIf key = kKey;
    EXPECT_EQ(ripNetIfCmp(&key, &entry), 2);
    key.type = 0;
    EXPECT_EQ(ripNetIfCmp(&key, &entry), 0);
    key = {1, 11};
    EXPECT_EQ(ripNetIfCmp(&key, &entry), 0);
    EXPECT_EQ(ripNetIfCmp(nullptr, &entry), 3);
    EXPECT_EQ(ripNetIfCmp(&key, nullptr), 3);
}

} // namespace
