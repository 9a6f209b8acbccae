/* SPDX-License-Identifier: Apache-2.0 */
/* The in-memory model of the OSPF configuration: what the library has told ospfd.
 *
 * One block holds sixteen process slots (0 to 15) and sixty-four interface entries (0 to 63). A
 * slot is an index; the process id is the number that the daemon knows: 1 for the WAN, 2 for the
 * LAN instance. The model never talks to a daemon, prints nothing and logs nothing.
 *
 * Every function that touches the block holds uc_ospf_mutex for its whole work, so callers must not
 * hold it; the two finders of interface entries are the exception and say so.
 *
 * Result codes, where a function does not say otherwise:
 *   0           done
 *   1           not found (deletes), or there is no model, no such slot or no such entry
 *   3           removing a list record failed
 *   4           out of memory, or no free slot
 *   0xFFFFFFFE  not found (look-ups, and unsetting for a VLAN without entry)
 *   0xFFFFFFFF  no such process id, or no free interface entry
 * A slot or index out of range, a null pointer and a missing model are answered like something that
 * is not there; nothing is touched then. */
#ifndef FRRUCI_OSPF_UC_OSPF_H
#define FRRUCI_OSPF_UC_OSPF_H

#include <pthread.h> /* for the type of uc_ospf_mutex only */
#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* ---- numbers of the enumerations (record fields hold them in 8 bits) ---- */

/* 0 not configured, 1 broadcast, 2 non-broadcast, 3 point-to-multipoint, 4 point-to-point */
typedef uint8_t OspfNetworkType;
typedef uint8_t OspfAreaType;      /* 0 normal, 1 stub, 2 nssa */
typedef uint8_t OspfAuthType;      /* 0 null, 1 simple, 2 message-digest */
typedef uint8_t OspfMetricType;    /* 1 or 2 */
typedef uint8_t OspfRedistSource;  /* 0 not configured, 1 connected, 2 ospf, 3 rip, 4 static */
typedef uint32_t OspfListKind;     /* 1 areas, 2 area aggregates, 3 virtual links, 4 networks */
typedef uint32_t OspfBasicParaKey; /* 0 to 8, see ucIpOpsfBasicSetParaByKey */
typedef uint32_t OspfInfParaKey;   /* 0 to 5, see ucIpOpsfInfSetParaByKey */

/* ---- records ----
 * Natural C alignment; addresses and masks are in network order, times in seconds unless said
 * otherwise. Keys are not terminated when they fill their field. */

struct dlist; /* a list record of the system; the model only holds pointers to it */

typedef struct OspfProcessCfg { /* 104 bytes */
    uint8_t enabled;            /* 1 when the slot is in use */
    uint16_t processId;
    uint32_t reservedAddress; /* 0 at reset, not otherwise used */
    uint32_t routerId;
    uint32_t routerIdSet; /* 1 when a router id is configured */
    uint32_t gracefulRestart;
    uint32_t defaultRouteAdvertise; /* 1 with "default-information originate" */
    uint32_t always;                /* the default route's "always" */
    uint32_t originateMetric;       /* the default route's metric; 1 */
    OspfMetricType metricType;      /* the default route's metric type; 2 */
    uint8_t adminDistance;          /* 110 */
    uint32_t rfc1583Compatibility;
    int32_t defaultMetric; /* -1 while not configured */
    uint8_t maximumPaths;  /* 16 */
    uint32_t passiveDefault;
    uint32_t referenceBandwidth;   /* 100000 */
    uint16_t spfDelay;             /* milliseconds; 0 */
    uint16_t spfInitialHold;       /* milliseconds; 50 */
    uint16_t spfMaximumHold;       /* milliseconds; 5000 */
    struct dlist *networks;        /* of OspfNetworkCfg */
    struct dlist *areas;           /* of OspfAreaCfg */
    struct dlist *areaAggregates;  /* of OspfAreaAggCfg */
    struct dlist *virtualLinks;    /* of OspfVirtualLinkCfg */
    struct dlist *redistributions; /* of OspfRedistributeCfg */
} OspfProcessCfg;

typedef struct OspfInterfaceEntry { /* 68 bytes */
    uint32_t inUse;                 /* 1 when the entry belongs to a VLAN */
    uint32_t vlanId;
    uint16_t processId;          /* reported; the model does not set it */
    uint32_t areaId;             /* reported; the model does not set it */
    uint8_t priority;            /* 1 */
    uint16_t retransmitInterval; /* 5 */
    uint16_t helloInterval;      /* 10 */
    uint16_t deadInterval;       /* 40 */
    uint16_t transmitDelay;      /* 1 */
    uint16_t cost;               /* 1 */
    OspfNetworkType networkType;
    uint32_t spare; /* 1, not otherwise used */
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
    uint32_t defaultCost; /* 1 */
    uint32_t noSummary;
    uint8_t trailing[8]; /* 0, not otherwise used */
} OspfAreaCfg;

typedef struct OspfAreaAggCfg { /* 20 bytes; key: areaId, prefix, mask */
    uint32_t areaId;
    uint32_t prefix;
    uint32_t mask;
    uint32_t cost;      /* 0 */
    uint32_t advertise; /* 1 */
} OspfAreaAggCfg;

typedef struct OspfVirtualLinkCfg { /* 44 bytes; key: areaId, peerRouterId */
    uint32_t areaId;
    uint32_t peerRouterId;
    uint16_t retransmitInterval; /* 5 */
    uint16_t helloInterval;      /* 10 */
    uint16_t deadInterval;       /* 40 */
    uint16_t transmitDelay;      /* 1 */
    OspfAuthType authType;
    uint8_t simpleKey[8];
    uint8_t md5KeyId;
    uint8_t md5Key[16];
} OspfVirtualLinkCfg;

typedef struct OspfNetworkCfg { /* 12 bytes; key: address, mask */
    uint32_t address;
    uint32_t mask;
    uint32_t areaId; /* a plain number, not in network order */
} OspfNetworkCfg;

typedef struct OspfRedistributeCfg { /* 16 bytes; key: source */
    OspfRedistSource source;
    uint32_t set; /* 1 in a stored record */
    uint32_t metric;
    OspfMetricType metricType;
    uint16_t sourceProcessId; /* of source 2 (OSPF) only */
} OspfRedistributeCfg;

/* ---- globals ---- */

extern OspfModelBlock *pucOspf; /* null until ucOspfInit; lives as long as the process */
extern pthread_mutex_t uc_ospf_mutex;

/* ---- processes and whole records ---- */

/* Makes the model: initialises the mutex, allocates the block, resets every slot and sets every
 * interface entry to its defaults. Call it once; a second call makes a new block and does not
 * release the old one.
 * Result: 0; 4 out of memory (the earlier block, if any, stays). */
uint32_t ucOspfInit(void);

/* Resets a slot: every field to its default, five fresh empty lists. The lists that were there are
 * given up with their records, not released.
 * Result: 0; 1 no model or no such slot. */
uint32_t ucOspfDefaultProcessByNum(uint32_t slot);

/* Resets the first slot that is not enabled and gives it to processId. The same id enabled twice
 * takes two slots.
 * Result: 0; 4 all sixteen slots are enabled; 1 no model. */
uint32_t ucOspfEnableProcess(uint16_t processId);

/* Result: 1 the slot is enabled; 0 it is not. */
uint32_t ucOspfProcessIsEnable(uint32_t slot);

/* The first slot with that process id, enabled or not: 0 finds the first slot that was reset.
 * Result: the slot; 0xFFFFFFFF none. */
uint32_t ucOspfHasProcessId(uint16_t processId);

/* Result: the slot's process word, which the model only ever sets to 0. */
uint32_t ucOspfGetProcessPid(uint32_t slot);

/* Copies a slot's whole record out of or into the block, list handles included: the lists stay the
 * model's own.
 * Result: 0 done; 1 no such slot, no model, or null. */
uint32_t ucOspfGetCfg(uint32_t slot, OspfProcessCfg *out);
uint32_t ucOspfSetCfg(uint32_t slot, const OspfProcessCfg *in);

/* Copies one interface entry out of or into the block.
 * Result: 0 done; 1 no such entry, no model, or null. */
uint32_t ucOspfGetInCfg(uint32_t index, OspfInterfaceEntry *out);
uint32_t ucOspfSetInCfg(uint32_t index, const OspfInterfaceEntry *in);

/* Copies all interface entries; out has room for 64.
 * Result: 0 done; 1 no model, or out is null. */
uint32_t ucOspfGetInEntry(OspfInterfaceEntry *out);

/* ---- parameters by key ---- */

/* Sets (set not 0) or unsets one field of the slot of processId. An id without slot changes
 * nothing, and so does a key of 9 or more. value points at an int32_t, except for the keys 0 and 8;
 * it is looked at only when a number is set, and null reads as 0.
 *
 *   key  field                            set                      unset
 *   0    router id, router id set         dotted text; 1           address kept; 0
 *   1    graceful restart                 1                        0
 *   2    reference bandwidth              value                    100000
 *   3    RFC 1583 compatibility           1                        0
 *   4    default metric                   value                    -1
 *   5    admin distance                   low byte of value        110
 *   6    passive default                  1                        0
 *   7    maximum paths                    low byte of value        16
 *   8    SPF delay, initial, max. hold    three uint16_t           0, 50, 5000
 *
 * A router id text that inet_aton refuses keeps the address, and still counts as set.
 * Result: 0, also for an unknown id; 1 no model. */
uint32_t ucIpOpsfBasicSetParaByKey(uint16_t processId, uint32_t set, const void *value,
                                   OspfBasicParaKey key);

/* Sets or unsets one interface parameter (value: an int32_t, narrowed to the field). The first
 * setting for a VLAN takes the first free entry for it and stores the value there; any later one
 * stores into entry 0, whichever entry is the VLAN's. A key of 6 or more stores nothing.
 *
 *   key  field                 unset value
 *   0    hello interval        10
 *   1    dead interval         40
 *   2    retransmit interval    5
 *   3    transmit delay         1
 *   4    cost                   1
 *   5    priority               1
 *
 * Result: 0 done; 0xFFFFFFFE unset for a VLAN without entry; 0xFFFFFFFF no free entry. */
uint32_t ucIpOpsfInfSetParaByKey(uint32_t vlanId, uint32_t set, const void *value,
                                 OspfInfParaKey key);

/* ---- interface entries ---- */

/* Call these two with uc_ospf_mutex held.
 * Result: the lowest index of a free entry, 0xFFFFFFFF when there is none; the lowest index of an
 * entry in use for that VLAN, 0xFFFFFFFE when there is none. */
uint32_t ucOspfFindFreeInterface(void);
uint32_t ucOspfFindInterfaceVlan(uint32_t vlanId);

/* The setters below change the VLAN's own entry; the first setting for a VLAN takes the first free
 * one.
 * Result: 0 done; 0xFFFFFFFE unset for a VLAN without entry; 0xFFFFFFFF no free entry. */

/* Set: stores the type. Unset: stores 0, but only when the stored type equals authType or authType
 * is 1. */
uint32_t ucIpOspfAuth(uint32_t vlanId, uint32_t set, uint32_t authType);

/* Set: stores exactly 8 bytes of key, whatever the text's length. Unset: clears them. Taking a new
 * entry also clears the bytes 1621 to 1628 of the block, which are the upper three bytes of slot
 * 14's redistribution handle and the first five of slot 15; that list of slot 14 then counts as not
 * there until the slot is reset. A null key is eight zero bytes. */
uint32_t ucIpOspfAuthKey(uint32_t vlanId, uint32_t set, const char *key);

/* Stores the flag, which is also what sets (not 0) or unsets. */
uint32_t ucIpOspfMtuIgnore(uint32_t vlanId, uint32_t flag);

/* Set: stores the type. Unset: stores 0. */
uint32_t ucIpOspfNetwork(uint32_t vlanId, uint32_t set, uint32_t networkType);

/* Set: stores the low byte of keyId and exactly 16 bytes of key, whatever the text's length. Unset:
 * clears both. A null key is sixteen zero bytes. */
uint32_t ucIpOspfAuthM5dKey(uint32_t vlanId, uint32_t set, uint32_t keyId, const char *key);

/* ---- list records ----
 * Lists are newest first: inserting goes to the head, looking up and deleting take the first match.
 * key points at the 32-bit words of the kind's key in the order named at its record; a 64-bit key
 * word carries the first-named word in its low half. */

/* Copies the first matching record out, or record into the first matching one.
 * Result: 0; 0xFFFFFFFE not found, or no such kind. */
uint32_t ucOspfDlistGetCfg(uint32_t slot, const void *key, void *record, OspfListKind kind);
uint32_t ucOspfDlistSetCfg(uint32_t slot, const void *key, const void *record, OspfListKind kind);

/* Puts record, a block from malloc of the kind's record size, at the head of the list, which then
 * owns it.
 * Result: 0; 0 and nothing inserted when there is no such kind; 4 the insertion failed. The caller
 * keeps a record that was not inserted. */
uint32_t ucOspfDlistInsert(uint32_t slot, void *record, OspfListKind kind);

/* ucOspfDlistGetCfg and ucOspfDlistSetCfg for each kind, with the key by value. */
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

/* Insert a copy of the caller's record.
 * Result: 0 done; 4 out of memory, no such slot, or record is null. */
uint32_t ucOspfAreaInsert(uint32_t slot, const OspfAreaCfg *record);
uint32_t ucOspfAreaAggInsert(uint32_t slot, const OspfAreaAggCfg *record);
uint32_t ucOspfVirtualLinkInsert(uint32_t slot, const OspfVirtualLinkCfg *record);
uint32_t ucOspfNetworkInsert(uint32_t slot, const OspfNetworkCfg *record);

/* Set a record of the caller's to its defaults, without the lock.
 * Result: 0.
 * Area: all 0, default cost 1. */
uint32_t ucOspfAreaInit(OspfAreaCfg *record);
/* Area id 0, cost 0, advertise 1; prefix and mask stay as they are. */
uint32_t ucOspfAreaAggInit(OspfAreaAggCfg *record);
/* Retransmit 5, hello 10, dead 40, transmit delay 1; all else 0. */
uint32_t ucOspfVirtualLinkInit(OspfVirtualLinkCfg *record);
/* Metric type 2; all else 0. */
uint32_t ucOspfRedistributeInit(OspfRedistributeCfg *record);
/* Area id 0; address and mask stay as they are. */
uint32_t ucOspfNetworkInit(OspfNetworkCfg *record);

/* Remove the first matching record; an area only when its stored type equals areaType.
 * Result: 0; 1 not found, or another type; 3 the removal failed. */
uint32_t ucOspfAreaDelete(uint32_t slot, uint32_t areaId, uint32_t areaType);
uint32_t ucOspfAreaRangeDelete(uint32_t slot, uint64_t areaIdPrefix, uint32_t mask);
uint32_t ucOspfVirtualLinkDelete(uint32_t slot, uint64_t areaIdPeer);
uint32_t ucOspfNetworkDelete(uint32_t slot, uint64_t addressMask);

/* Sets (set exactly 1) or removes the redistribution of a source. Setting stores the metric when
 * hasMetric is 1, the metric type when hasMetricType is 1, and the process id when source is 2
 * (OSPF); what is not given keeps its value, or the default in a new record.
 * Result: 0; 1 nothing to remove; 4 out of memory, or the insertion or removal failed. */
uint32_t ucOspfRedistribute(uint32_t slot, uint32_t set, uint32_t source, uint32_t metric,
                            uint32_t hasMetric, uint32_t metricType, uint32_t hasMetricType,
                            uint32_t sourceProcessId);

/* Comparators for dlistFindByKey; they order nothing. key: the words of the record's key, for a
 * redistribution a uint32_t source.
 * Result: 0 equal; -1 different, or a null argument. */
int32_t ucOspfAreaIdComp(void *key, void *data);
int32_t ucOspfAreaAggComp(void *key, void *data);
int32_t ucOspfVirtualLinkComp(void *key, void *data);
int32_t ucOspfNetworkComp(void *key, void *data);
int32_t ucOspfRedistributeComp(void *key, void *data);

FRRUCI_C_END

#endif
