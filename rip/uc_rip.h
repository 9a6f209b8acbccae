/* SPDX-License-Identifier: Apache-2.0 */
/* The in-memory model of the RIP configuration, its delivery and dumps. */
#ifndef FRRUCI_RIP_UC_RIP_H
#define FRRUCI_RIP_UC_RIP_H

#include <pthread.h> /* for the types of the two mutexes only */
#include <stdint.h>

#include "../common/c_interface.h"
#include "../common/dlist.h"

FRRUCI_C_BEGIN

/* ---- records ---- */
typedef struct RipVrfNode {
    char name[40]; /* at most 36 characters, zero-filled */
    uint32_t auto_summary;
    uint32_t version;
    uint32_t update_timer;
    uint32_t timeout_timer;
    uint32_t garbage_timer;
    uint8_t default_metric;
    uint8_t distance;
    struct dlist *networks;  /* of RipNetworkNode */
    struct dlist *neighbors; /* of RipNeighborNode */
} RipVrfNode;

typedef struct RipNetworkNode {
    char ip[16];
    char mask[16];
} RipNetworkNode;
typedef struct RipNeighborNode {
    char addr[16];
} RipNeighborNode;
typedef struct RipNetIf {
    uint32_t type;
    uint32_t vid;
} RipNetIf;

typedef struct RipInterfaceNode {
    uint32_t send_version;
    uint32_t recv_version;
    uint32_t auth_type;
    uint16_t split_horizon;
    uint16_t poison_reverse;
    uint16_t passive;
    uint16_t v2_broadcast;
    RipNetIf key;
    uint32_t vlan_id;
    uint16_t auth_keyid;
    char auth_str[17]; /* 16 characters and one byte that stays zero */
} RipInterfaceNode;

/* ---- globals ---- */
extern struct dlist *gRipVrfList; /* of RipVrfNode, guarded by ucRipVrfListMu */
extern struct dlist *gRipIfList;  /* of RipInterfaceNode, guarded by ucRipIfListMu */
extern pthread_mutex_t ucRipVrfListMu;
extern pthread_mutex_t ucRipIfListMu;
extern const uint32_t gRipMultiIp;
extern const uint8_t gRipMultiMac[6];

/* ---- life of the model, record initialisers ---- */
uint32_t ucRipInit(void);
uint32_t ripInit(void);
uint32_t ripVrfNodeInit(RipVrfNode *record, const char *name);
uint32_t ripNetworkNodeInit(RipNetworkNode *record, const char *ip, const char *mask);
uint32_t ripNeighborNodeInit(RipNeighborNode *record, const char *addr);
uint32_t ripInterfaceNodeInit(RipInterfaceNode *record, RipNetIf key);

/* ---- instances, neighbours, networks ---- */
uint32_t ucRipVrfAppend(const char *name, RipVrfNode **out);
uint32_t ucRipVrfRemoveByName(const char *name);
uint32_t ucRipVrfFindByName(const char *name, RipVrfNode **out);
uint32_t ucRipNeighborAppend(const char *vrfName, const char *addr, RipNeighborNode **out);
uint32_t ucRipNeighborRemoveByName(const char *vrfName, const char *addr);
uint32_t ucRipNetworkNodeAppend(const char *vrfName, const char *ip, const char *mask,
                                RipNetworkNode **out);
uint32_t ucRipNetworkNodeRemoveByName(const char *vrfName, const char *ip, const char *mask);

/* ---- interfaces ---- */
uint32_t ucRipInterfaceNodeAppend(RipNetIf key, RipInterfaceNode **out);
uint32_t ucRipInterfaceNodeRemoveByKey(RipNetIf key);
uint32_t ucRipIfFindByNetIf(RipNetIf key, RipInterfaceNode **out);

/* ---- option access; Get writes a 32-bit slot, Set range-checks ---- */
typedef uint32_t (*RipVrfAccessor)(RipVrfNode *record, void *value);
typedef uint32_t (*RipIfAccessor)(RipInterfaceNode *record, void *value);
uint32_t ucRipGlobalOption(const char *vrfName, RipVrfAccessor accessor, void *value);
uint32_t ucRipIfOption(RipNetIf key, RipIfAccessor accessor, void *value);

uint32_t ucRipDefaultVersionGet(const char *vrfName, uint32_t *out);
uint32_t ucRipDefaultVersionSet(const char *vrfName, uint32_t value);
uint32_t ucRipTimerUpdateGet(const char *vrfName, uint32_t *out);
uint32_t ucRipTimerUpdateSet(const char *vrfName, uint32_t value);
uint32_t ucRipTimerTimeoutGet(const char *vrfName, uint32_t *out);
uint32_t ucRipTimerTimeoutSet(const char *vrfName, uint32_t value);
uint32_t ucRipTimerGarbageGet(const char *vrfName, uint32_t *out);
uint32_t ucRipTimerGarbageSet(const char *vrfName, uint32_t value);
uint32_t ucRipDefaultMetricGet(const char *vrfName, uint32_t *out);
uint32_t ucRipDefaultMetricSet(const char *vrfName, uint32_t value);
uint32_t ucRipDistanceGet(const char *vrfName, uint32_t *out);
uint32_t ucRipDistanceSet(const char *vrfName, uint32_t value);
uint32_t ucRipAutosummGet(const char *vrfName, uint32_t *out);
uint32_t ucRipAutosummSet(const char *vrfName, uint32_t value);

uint32_t ucRipInterfaceSendVersionGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceSendVersionSet(RipNetIf key, uint32_t value);
uint32_t ucRipInterfaceRecvVersionGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceRecvVersionSet(RipNetIf key, uint32_t value);
uint32_t ucRipInterfaceV2broadcastGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceV2broadcastSet(RipNetIf key, uint32_t value);
uint32_t ucRipInterfaceAuth_typeGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceAuth_typeSet(RipNetIf key, uint32_t value);
uint32_t ucRipInterfaceAuth_keyidGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceAuth_keyidSet(RipNetIf key, uint32_t value);
uint32_t ucRipInterfaceAuth_strGet(RipNetIf key, char *out); /* at least 17 bytes */
uint32_t ucRipInterfaceAuth_strSet(RipNetIf key, const char *text);
uint32_t ucRipInterfaceSplitHorizonEnableGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceSplitHorizonEnableSet(RipNetIf key, uint32_t value);
uint32_t ucRipInterfacePoisonedReverseEnableGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfacePoisonedReverseEnableSet(RipNetIf key, uint32_t value);
uint32_t ucRipInterfacePassiveEnableGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfacePassiveEnableSet(RipNetIf key, uint32_t value);

/* ---- search; compare gets the key and the list entry and answers 2 match, 0 none, 3 missing ----
 */
typedef int32_t (*RipCompare)(const void *key, const struct dlist_node *entry);
int32_t ucRipListFind(struct dlist *list, RipCompare compare, void (*lock)(void),
                      void (*unlock)(void), const void *key, struct dlist_node **out);
int32_t ripVrfNameCmp(const void *key, const struct dlist_node *entry);  /* key: text */
int32_t ripNeighborCmp(const void *key, const struct dlist_node *entry); /* key: 16 bytes */
int32_t
ripNetworkCmp(const void *key,
              const struct dlist_node *entry); /* key: 32 bytes; 1 = entry holds no record */
int32_t ripNetIfCmp(const void *key,
                    const struct dlist_node *entry); /* key: a RipNetIf (8 bytes) */

/* ---- delivery and dumps ---- */
uint32_t swRipAutoRun(const char *vrf, const char *command, int32_t replyLen, uint32_t selector,
                      char *reply);
uint32_t swRipIfAutoRun(const char *ifname, RipNetIf key, const char *command, int32_t replyLen,
                        char *reply);
uint32_t doVtyRipConfigInterface(const char *ifname, uint32_t selector, const char *command);
uint32_t ripVtyPrint(const char *command, uint32_t selector); /* 0 or 0xFFFFFFFF */
uint32_t ucRip_setGlobal(void);
uint32_t ucRip_setIfVlan(void);

FRRUCI_C_END

#endif
