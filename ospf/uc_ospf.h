/* SPDX-License-Identifier: Apache-2.0 */
/* The in-memory model of the OSPF configuration. */
#ifndef FRRUCI_OSPF_UC_OSPF_H
#define FRRUCI_OSPF_UC_OSPF_H

#include <pthread.h> /* for the type of uc_ospf_mutex only */
#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* ---- numbers of the enumerations (record fields hold them in 8 bits) ---- */

typedef uint8_t OspfNetworkType;   /* 0 not configured, 1 broadcast, 2 non-broadcast, 3
                                      point-to-multipoint, 4 point-to-point */
typedef uint8_t OspfAreaType;      /* 0 normal, 1 stub, 2 nssa */
typedef uint8_t OspfAuthType;      /* 0 null, 1 simple, 2 message-digest */
typedef uint8_t OspfMetricType;    /* 1 or 2 */
typedef uint8_t OspfRedistSource;  /* 0 not configured, 1 connected, 2 ospf, 3 rip, 4 static */
typedef uint32_t OspfListKind;     /* 1 areas, 2 area aggregates, 3 virtual links, 4 networks */
typedef uint32_t OspfBasicParaKey; /* 0 router id .. 8 SPF timers */
typedef uint32_t
    OspfInfParaKey; /* 0 hello, 1 dead, 2 retransmit, 3 transmit delay, 4 cost, 5 priority */

/* ---- records ---- */

struct dlist; /* a list record of the system; the model only holds pointers to it */

typedef struct OspfProcessCfg { /* 104 bytes */
    uint8_t enabled;
    uint16_t processId;
    uint32_t reservedAddress;
    uint32_t routerId;
    uint32_t routerIdSet;
    uint32_t gracefulRestart;
    uint32_t defaultRouteAdvertise;
    uint32_t always;
    uint32_t originateMetric;
    OspfMetricType metricType;
    uint8_t adminDistance;
    uint32_t rfc1583Compatibility;
    int32_t defaultMetric;
    uint8_t maximumPaths;
    uint32_t passiveDefault;
    uint32_t referenceBandwidth;
    uint16_t spfDelay;
    uint16_t spfInitialHold;
    uint16_t spfMaximumHold;
    struct dlist *networks;
    struct dlist *areas;
    struct dlist *areaAggregates;
    struct dlist *virtualLinks;
    struct dlist *redistributions;
} OspfProcessCfg;

typedef struct OspfInterfaceEntry { /* 68 bytes */
    uint32_t inUse;
    uint32_t vlanId;
    uint16_t processId;
    uint32_t areaId;
    uint8_t priority;
    uint16_t retransmitInterval;
    uint16_t helloInterval;
    uint16_t deadInterval;
    uint16_t transmitDelay;
    uint16_t cost;
    OspfNetworkType networkType;
    uint32_t spare;
    uint32_t mtuIgnore;
    OspfAuthType authType;
    uint8_t simpleKey[8];
    uint8_t md5KeyId;
    uint8_t md5Key[16];
} OspfInterfaceEntry;

typedef struct OspfModelBlock { /* 6080 bytes */
    uint32_t processWord[16];
    OspfProcessCfg process[16];
    OspfInterfaceEntry interface[64];
} OspfModelBlock;

typedef struct OspfAreaCfg { /* 24 bytes; key: areaId */
    uint32_t areaId;
    OspfAreaType areaType;
    uint32_t defaultCost;
    uint32_t noSummary;
    uint8_t trailing[8];
} OspfAreaCfg;

typedef struct OspfAreaAggCfg { /* 20 bytes; key: areaId, prefix, mask */
    uint32_t areaId;
    uint32_t prefix;
    uint32_t mask;
    uint32_t cost;
    uint32_t advertise;
} OspfAreaAggCfg;

typedef struct OspfVirtualLinkCfg { /* 44 bytes; key: areaId, peerRouterId */
    uint32_t areaId;
    uint32_t peerRouterId;
    uint16_t retransmitInterval;
    uint16_t helloInterval;
    uint16_t deadInterval;
    uint16_t transmitDelay;
    OspfAuthType authType;
    uint8_t simpleKey[8];
    uint8_t md5KeyId;
    uint8_t md5Key[16];
} OspfVirtualLinkCfg;

typedef struct OspfNetworkCfg { /* 12 bytes; key: address, mask */
    uint32_t address;
    uint32_t mask;
    uint32_t areaId;
} OspfNetworkCfg;

typedef struct OspfRedistributeCfg { /* 16 bytes; key: source */
    OspfRedistSource source;
    uint32_t set;
    uint32_t metric;
    OspfMetricType metricType;
    uint16_t sourceProcessId;
} OspfRedistributeCfg;

/* ---- globals ---- */

extern OspfModelBlock *pucOspf; /* null until ucOspfInit */
extern pthread_mutex_t uc_ospf_mutex;

/* ---- processes and whole records ---- */

uint32_t ucOspfInit(void);
uint32_t ucOspfDefaultProcessByNum(uint32_t slot);
uint32_t ucOspfEnableProcess(uint16_t processId);
uint32_t ucOspfProcessIsEnable(uint32_t slot);   /* 1 or 0 */
uint32_t ucOspfHasProcessId(uint16_t processId); /* slot or -1 */
uint32_t ucOspfGetProcessPid(uint32_t slot);     /* the slot's process word */
uint32_t ucOspfGetCfg(uint32_t slot, OspfProcessCfg *out);
uint32_t ucOspfSetCfg(uint32_t slot, const OspfProcessCfg *in);
uint32_t ucOspfGetInCfg(uint32_t index, OspfInterfaceEntry *out);
uint32_t ucOspfSetInCfg(uint32_t index, const OspfInterfaceEntry *in);
uint32_t ucOspfGetInEntry(OspfInterfaceEntry *out); /* room for 64 */

/* ---- parameters by key ----
 * value: key 0 a dotted text, key 8 three uint16_t, else an int32_t */

uint32_t ucIpOpsfBasicSetParaByKey(uint16_t processId, uint32_t set, const void *value,
                                   OspfBasicParaKey key);
uint32_t ucIpOpsfInfSetParaByKey(uint32_t vlanId, uint32_t set, const void *value,
                                 OspfInfParaKey key);

/* ---- interface entries; the two finders expect the mutex to be held already ---- */

uint32_t ucOspfFindFreeInterface(void);            /* index or -1 */
uint32_t ucOspfFindInterfaceVlan(uint32_t vlanId); /* index or -2 */
uint32_t ucIpOspfAuth(uint32_t vlanId, uint32_t set, uint32_t authType);
uint32_t ucIpOspfAuthKey(uint32_t vlanId, uint32_t set, const char *key /* 8 bytes are read */);
uint32_t ucIpOspfMtuIgnore(uint32_t vlanId, uint32_t flag);
uint32_t ucIpOspfNetwork(uint32_t vlanId, uint32_t set, uint32_t networkType);
uint32_t ucIpOspfAuthM5dKey(uint32_t vlanId, uint32_t set, uint32_t keyId,
                            const char *key /* 16 bytes are read */);

/* ---- list records. key points at the 32-bit words of the kind's key in the order named above;
 * a 64-bit key word carries the first-named word in its low half ---- */

uint32_t ucOspfDlistGetCfg(uint32_t slot, const void *key, void *record, OspfListKind kind);
uint32_t ucOspfDlistSetCfg(uint32_t slot, const void *key, const void *record, OspfListKind kind);
uint32_t ucOspfDlistInsert(uint32_t slot, void *record,
                           OspfListKind kind); /* the list takes record over */

uint32_t ucOspfAreaGetCfg(uint32_t slot, uint32_t areaId, OspfAreaCfg *record);
uint32_t ucOspfAreaSetCfg(uint32_t slot, uint32_t areaId, const OspfAreaCfg *record);
uint32_t ucOspfAreaAggGetCfg(uint32_t slot, uint64_t areaIdPrefix, uint32_t mask,
                             OspfAreaAggCfg *record);
uint32_t ucOspfAreaAggSetCfg(uint32_t slot, uint64_t areaIdPrefix, uint32_t mask,
                             const OspfAreaAggCfg *record);
uint32_t ucOspfVirtualLinkGetCfg(uint32_t slot, uint64_t areaIdPeer, OspfVirtualLinkCfg *record);
uint32_t ucOspfVirtualLinkSetCfg(uint32_t slot, uint64_t areaIdPeer,
                                 const OspfVirtualLinkCfg *record);
uint32_t ucOspfNetworkGetCfg(uint32_t slot, uint64_t addressMask, OspfNetworkCfg *record);
uint32_t ucOspfNetworkSetCfg(uint32_t slot, uint64_t addressMask, const OspfNetworkCfg *record);

uint32_t ucOspfAreaInsert(uint32_t slot, const OspfAreaCfg *record); /* these four store a copy */
uint32_t ucOspfAreaAggInsert(uint32_t slot, const OspfAreaAggCfg *record);
uint32_t ucOspfVirtualLinkInsert(uint32_t slot, const OspfVirtualLinkCfg *record);
uint32_t ucOspfNetworkInsert(uint32_t slot, const OspfNetworkCfg *record);

uint32_t ucOspfAreaInit(OspfAreaCfg *record);
uint32_t ucOspfAreaAggInit(OspfAreaAggCfg *record);
uint32_t ucOspfVirtualLinkInit(OspfVirtualLinkCfg *record);
uint32_t ucOspfRedistributeInit(OspfRedistributeCfg *record);
uint32_t ucOspfNetworkInit(OspfNetworkCfg *record);

uint32_t ucOspfAreaDelete(uint32_t slot, uint32_t areaId, uint32_t areaType);
uint32_t ucOspfAreaRangeDelete(uint32_t slot, uint64_t areaIdPrefix, uint32_t mask);
uint32_t ucOspfVirtualLinkDelete(uint32_t slot, uint64_t areaIdPeer);
uint32_t ucOspfNetworkDelete(uint32_t slot, uint64_t addressMask);

uint32_t ucOspfRedistribute(uint32_t slot, uint32_t set, uint32_t source, uint32_t metric,
                            uint32_t hasMetric, uint32_t metricType, uint32_t hasMetricType,
                            uint32_t sourceProcessId);

/* comparators for dlistFindByKey (a dlist_keycmp_fn of the system): 0 equal, -1 different; neither
 * argument is changed */
int32_t ucOspfAreaIdComp(void *key, void *data);
int32_t ucOspfAreaAggComp(void *key, void *data);
int32_t ucOspfVirtualLinkComp(void *key, void *data);
int32_t ucOspfNetworkComp(void *key, void *data);
int32_t ucOspfRedistributeComp(void *key, void *data); /* key: a uint32_t source */

FRRUCI_C_END

#endif
