/* SPDX-License-Identifier: Apache-2.0 */
/* The RIP model: what ripd has been told, in memory; its delivery and its dumps.
 *
 * Two lists, each guarded by its own mutex: the instances, by VRF name, with their networks and
 * neighbours (gRipVrfList, ucRipVrfListMu), and the interfaces, by key (gRipIfList, ucRipIfListMu).
 * Records stay in the order in which they were added. A record that a function hands out still
 * belongs to its list and lives until it is removed. Functions may be called from any thread; each
 * holds one mutex at most, for one search, one insertion or removal, or one access. A look-up and
 * the step after it are two critical sections, so whoever removes records that others may be using
 * keeps those others away. Nothing in the model talks to a daemon.
 *
 * Result, unless a description says otherwise: 0 done; 1 bad argument or not found; 4 out of
 * memory, or the list refused. */
#ifndef FRRUCI_RIP_UC_RIP_H
#define FRRUCI_RIP_UC_RIP_H

#include <pthread.h> /* for the types of the two mutexes only */
#include <stdint.h>

#include "../common/c_interface.h"
#include "../common/dlist.h"

FRRUCI_C_BEGIN

/* ---- records ---- */

typedef struct RipVrfNode {  /* one instance, 80 bytes */
    char name[40];           /* VRF name, at most 36 characters, zero-filled */
    uint32_t auto_summary;   /* 1 on; 0 */
    uint32_t version;        /* 1 or 2, 0 not set; 0 */
    uint32_t update_timer;   /* seconds; 30 */
    uint32_t timeout_timer;  /* seconds; 180 */
    uint32_t garbage_timer;  /* seconds; 120 */
    uint8_t default_metric;  /* of redistributed routes; 1 */
    uint8_t distance;        /* administrative distance; 120 */
    struct dlist *networks;  /* of RipNetworkNode */
    struct dlist *neighbors; /* of RipNeighborNode */
} RipVrfNode;                /* the last figure of each comment is the initial value */

typedef struct RipNetworkNode { /* one announced network, 32 bytes */
    char ip[16];                /* dotted text, at most 15 characters, zero-filled */
    char mask[16];              /* the same */
} RipNetworkNode;

typedef struct RipNeighborNode { /* one unicast neighbour, 16 bytes */
    char addr[16];               /* dotted text, at most 15 characters, zero-filled */
} RipNeighborNode;

typedef struct RipNetIf { /* key of an interface; 8 bytes, passed by value in one register */
    uint32_t type;        /* 1: the VLAN interface eth1.<vid> */
    uint32_t vid;         /* VLAN id */
} RipNetIf;

typedef struct RipInterfaceNode { /* one interface, 52 bytes */
    uint32_t send_version;        /* 0 not set, 1, 2; 0 */
    uint32_t recv_version;        /* 0 not set, 1, 2, 3 both; 0 */
    uint32_t auth_type;           /* 0 none, 1 simple text, 2 MD5; 0 */
    uint16_t split_horizon;       /* 1 on; 1 */
    uint16_t poison_reverse;      /* 0 for the life of the record: no setter writes it */
    uint16_t passive;             /* 1 on; 0 */
    uint16_t v2_broadcast;        /* 1 on; 0 */
    RipNetIf key;
    uint32_t vlan_id;    /* key.vid when key.type is 1, else 0 */
    uint16_t auth_keyid; /* 1..255; 1 */
    char auth_str[17];   /* at most 16 characters, zero-filled; the last byte stays zero */
} RipInterfaceNode;

/* ---- globals ---- */

extern struct dlist *gRipVrfList; /* of RipVrfNode, guarded by ucRipVrfListMu; null before init */
extern struct dlist *gRipIfList;  /* of RipInterfaceNode, guarded by ucRipIfListMu */
extern pthread_mutex_t ucRipVrfListMu;
extern pthread_mutex_t ucRipIfListMu;
extern const uint32_t gRipMultiIp;    /* 224.0.0.9 in host order; nothing here reads it */
extern const uint8_t gRipMultiMac[6]; /* 01:00:5e:00:00:09; nothing here reads it */

/* ---- life of the model, record initialisers ---- */

/* Makes both lists and initialises both mutexes; once, before anything else of the model. A second
 * call starts with empty lists and leaves the old ones in memory.
 * Result: 0 done; 1 a list could not be made (the other stays as it is). */
uint32_t ucRipInit(void);

/* Does nothing.
 * Result: 0. */
uint32_t ripInit(void);

/* Fills a record of the caller with the name (cut to 36 characters), the initial values and two
 * empty lists, which the caller releases.
 * Result: 0 done; 1 an argument is null or a list could not be made (the record has none then). */
uint32_t ripVrfNodeInit(RipVrfNode *record, const char *name);

/* Fills a record of the caller with both texts, each cut to 15 characters.
 * Result: 0 done; 1 an argument is null. */
uint32_t ripNetworkNodeInit(RipNetworkNode *record, const char *ip, const char *mask);

/* Fills a record of the caller with the address.
 * Result: 0 done; 1 an argument is null or addr is longer than 15 characters. */
uint32_t ripNeighborNodeInit(RipNeighborNode *record, const char *addr);

/* Fills a record of the caller with the key and the initial values.
 * Result: 0 done; 1 record is null. */
uint32_t ripInterfaceNodeInit(RipInterfaceNode *record, RipNetIf key);

/* ---- instances, neighbours, networks ---- */

/* Hands out the instance of that name through out (may be null), made and added if there is none.
 * A name of more than 36 characters is never found, so each call adds another record. Logs its way
 * in up to five lines.
 * Result: 0 done; 1 name is null or no memory for the record; 4 it could not be set up or added. */
uint32_t ucRipVrfAppend(const char *name, RipVrfNode **out);

/* Removes the instance of that name. Its networks and neighbours stay in memory.
 * Result: 0 removed, or no such instance; 1 name is null or the list refused. */
uint32_t ucRipVrfRemoveByName(const char *name);

/* Hands out the instance of that name through out (may be null; untouched on failure).
 * Result: 0 found; 1 name is null or no such instance. */
uint32_t ucRipVrfFindByName(const char *name, RipVrfNode **out);

/* Hands out the instance's neighbour addr through out, made and added if there is none.
 * Result: 0 done; 1 an argument is null or no such instance; 4 out of memory, the list refused, or
 * addr is longer than 15 characters. */
uint32_t ucRipNeighborAppend(const char *vrfName, const char *addr, RipNeighborNode **out);

/* Removes the instance's neighbour addr.
 * Result: 0 removed, or no such neighbour; 1 an argument is null, no such instance, or the list
 * refused. */
uint32_t ucRipNeighborRemoveByName(const char *vrfName, const char *addr);

/* Hands out the instance's network ip/mask through out, made and added if there is none. Texts of
 * more than 15 characters are kept cut and never found again.
 * Result: 0 done; 1 a null argument or no such instance; 4 out of memory or the list refused. */
uint32_t ucRipNetworkNodeAppend(const char *vrfName, const char *ip, const char *mask,
                                RipNetworkNode **out);

/* Removes the instance's network ip/mask.
 * Result: 0 removed, or no such network; 1 an argument is null, no such instance, or the list
 * refused. */
uint32_t ucRipNetworkNodeRemoveByName(const char *vrfName, const char *ip, const char *mask);

/* ---- interfaces ---- */

/* Hands out the interface of that key through out (may be null), made and added if there is none.
 * Result: 0 done; 4 out of memory or the list refused. */
uint32_t ucRipInterfaceNodeAppend(RipNetIf key, RipInterfaceNode **out);

/* Removes the interface of that key.
 * Result: 0 removed, or no such interface; 1 the list refused. */
uint32_t ucRipInterfaceNodeRemoveByKey(RipNetIf key);

/* Hands out the interface of that key through out (untouched on failure).
 * Result: 0 found; 1 out is null or no such interface. */
uint32_t ucRipIfFindByNetIf(RipNetIf key, RipInterfaceNode **out);

/* ---- option access ---- */

/* Reads or writes one field of a record; value is what the caller of the generic entry gave. Runs
 * with the list's mutex held, so it must not call into the model. */
typedef uint32_t (*RipVrfAccessor)(RipVrfNode *record, void *value);
typedef uint32_t (*RipIfAccessor)(RipInterfaceNode *record, void *value);

/* Applies the accessor to the instance of that name.
 * Result: the accessor's; 1 a null argument or no such instance (the accessor is not called). */
uint32_t ucRipGlobalOption(const char *vrfName, RipVrfAccessor accessor, void *value);

/* Applies the accessor to the interface of that key.
 * Result: the accessor's; 1 accessor or value is null or no such interface (the accessor is not
 * called). */
uint32_t ucRipIfOption(RipNetIf key, RipIfAccessor accessor, void *value);

/* Every Get copies a field, widened to 32 bits, into out, and every Set stores a value that lies in
 * the range given.
 * Result of each Get: 0 done; 1 an argument is null or no such record (out untouched).
 * Result of each Set: 0 stored; 1 vrfName is null, no such record, or the value out of range (the
 * field untouched). */
uint32_t ucRipDefaultVersionGet(const char *vrfName, uint32_t *out);
uint32_t ucRipDefaultVersionSet(const char *vrfName, uint32_t value); /* 0..3 */
uint32_t ucRipTimerUpdateGet(const char *vrfName, uint32_t *out);
uint32_t ucRipTimerUpdateSet(const char *vrfName, uint32_t value); /* 5..100 seconds */
uint32_t ucRipTimerTimeoutGet(const char *vrfName, uint32_t *out);
uint32_t ucRipTimerTimeoutSet(const char *vrfName, uint32_t value); /* 5..300 seconds */
uint32_t ucRipTimerGarbageGet(const char *vrfName, uint32_t *out);
uint32_t ucRipTimerGarbageSet(const char *vrfName, uint32_t value); /* 5..500 seconds */
uint32_t ucRipDefaultMetricGet(const char *vrfName, uint32_t *out);
uint32_t ucRipDefaultMetricSet(const char *vrfName, uint32_t value); /* 0..16 */
uint32_t ucRipDistanceGet(const char *vrfName, uint32_t *out);
uint32_t ucRipDistanceSet(const char *vrfName, uint32_t value); /* 1..255 */
uint32_t ucRipAutosummGet(const char *vrfName, uint32_t *out);
uint32_t ucRipAutosummSet(const char *vrfName, uint32_t value); /* 0..1 */

uint32_t ucRipInterfaceSendVersionGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceSendVersionSet(RipNetIf key, uint32_t value); /* 0..3 */
uint32_t ucRipInterfaceRecvVersionGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceRecvVersionSet(RipNetIf key, uint32_t value); /* 0..3 */
uint32_t ucRipInterfaceV2broadcastGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceV2broadcastSet(RipNetIf key, uint32_t value); /* 0..1 */
uint32_t ucRipInterfaceAuth_typeGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceAuth_typeSet(RipNetIf key, uint32_t value); /* 0..2 */
uint32_t ucRipInterfaceAuth_keyidGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceAuth_keyidSet(RipNetIf key, uint32_t value); /* 1..255 */
uint32_t ucRipInterfaceAuth_strGet(RipNetIf key, char *out); /* the text, NUL included; 17 bytes */
uint32_t ucRipInterfaceAuth_strSet(RipNetIf key, const char *text); /* at most 16 characters */
uint32_t ucRipInterfaceSplitHorizonEnableGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfaceSplitHorizonEnableSet(RipNetIf key, uint32_t value); /* 0..1 */
/* The poisoned-reverse pair is another name of the split-horizon pair. */
uint32_t ucRipInterfacePoisonedReverseEnableGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfacePoisonedReverseEnableSet(RipNetIf key, uint32_t value); /* 0..1 */
uint32_t ucRipInterfacePassiveEnableGet(RipNetIf key, uint32_t *out);
uint32_t ucRipInterfacePassiveEnableSet(RipNetIf key, uint32_t value); /* 0..1 */

/* ---- search ---- */

/* Compares a key with a list entry: 2 they match; 0 they do not; 3 key or entry is null; others as
 * a comparator says. */
typedef int32_t (*RipCompare)(const void *key, const struct dlist_node *entry);

/* Stores in out the first entry, from the head, for which compare gives 2, or null; lock is called
 * before the walk and unlock after it.
 * Result: 0 the list was searched, also when nothing matched; -1 an argument is null (nothing is
 * locked). */
int32_t ucRipListFind(struct dlist *list, RipCompare compare, void (*lock)(void),
                      void (*unlock)(void), const void *key, struct dlist_node **out);

/* key: a text; 3 also when it is longer than 36 characters. Only identical names match. */
int32_t ripVrfNameCmp(const void *key, const struct dlist_node *entry);

/* key: 16 bytes, the address zero-filled. */
int32_t ripNeighborCmp(const void *key, const struct dlist_node *entry);

/* key: 32 bytes, ip and mask zero-filled to 16 each; 1 when the entry holds no record. */
int32_t ripNetworkCmp(const void *key, const struct dlist_node *entry);

/* key: a RipNetIf. */
int32_t ripNetIfCmp(const void *key, const struct dlist_node *entry);

/* ---- delivery to ripd ---- */

/* Sends command inside "enable", "configure", "router rip vrf <vrf>", through the view "view_rip".
 * vrf: 1 to 31 characters. reply: replyLen bytes, zeroed by the caller, at least 4. selector: 1 or
 * 0, the side that is meant; both sides are served by the one ripd, so it changes nothing. After a
 * failed step the session stays open.
 * Result, that of frrVtyAutoRun as an unsigned number:
 *   0           done
 *   1           bad argument, no connection, or a warning
 *   0xFFFFFFFF  refused
 *   others      another completion code as it is */
uint32_t swRipAutoRun(const char *vrf, const char *command, int32_t replyLen, uint32_t selector,
                      char *reply);

/* Sends command inside the interface context of ifname, after asking the front-end whether key.vid
 * is a LAN VLAN, which chooses a selector that changes nothing. replyLen and reply are not used.
 * Result: 0 done; 1 bad argument, no connection, or a step refused. */
uint32_t swRipIfAutoRun(const char *ifname, RipNetIf key, const char *command, int32_t replyLen,
                        char *reply);

/* Sends "enable", "configure", "interface <ifname>" (cut to 255 characters) and command. selector
 * changes nothing.
 * Result: 0 done; 1 ifname or command is null, no connection, or a step refused. */
uint32_t doVtyRipConfigInterface(const char *ifname, uint32_t selector, const char *command);

/* Sends a "show" command; its output is printed, each line also handed to
 * handle_rip_show_interface. selector changes nothing.
 * Result: 0 done; 0xFFFFFFFF no connection or refused. */
uint32_t ripVtyPrint(const char *command, uint32_t selector);

/* ---- dumps, on standard output, without any line end ---- */

/* Prints every instance with what differs from the initial values, its networks and its neighbours.
 * Result: 0. */
uint32_t ucRip_setGlobal(void);

/* Prints the interface whose key is all zero: the one that the handlers made of a name without a
 * dot, such as "br-lan", and never one of a VLAN.
 * Result: 0 printed; 1 no such interface. */
uint32_t ucRip_setIfVlan(void);

FRRUCI_C_END

#endif
