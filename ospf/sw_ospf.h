/* SPDX-License-Identifier: Apache-2.0 */
/* OSPF commands: process, area, virtual-link and interface settings.
 *
 * Each command sends one text to ospfd (vty_ospf.h) and, when the daemon accepted it, records the
 * setting in the model (uc_ospf.h). A step that fails ends the command with its result and nothing
 * is undone: a command that is sent for both instances may leave the first one changed. Texts are
 * cut at 255 characters; docs/ospf.md lists every one of them.
 *
 * set: 0 for the "no" form, anything else for the setting; virtual links and redistributions record
 * a setting only for exactly 1. A missing text (null) is an empty one. An argument named unused is
 * not looked at. selector: 1 for the WAN, 0 for the LAN instance.
 *
 * Results common to all commands:
 *   0  accepted and recorded; also accepted, and the process id has no slot to record it in
 *   1  no connection, or the daemon refused a step; the model is unchanged for that instance
 * Further codes are the model's own and listed at each command; the daemon has accepted the text
 * when they come. */
#ifndef FRRUCI_OSPF_SW_OSPF_H
#define FRRUCI_OSPF_SW_OSPF_H

#include <stdint.h>

#include "../common/c_interface.h"
#include "uc_ospf.h"

FRRUCI_C_BEGIN

/* ---- the model, and starting and stopping processes ---- */

/* A record of a VLAN, never looked into. */
typedef struct OspfVlanRecord {
    uint8_t bytes[24];
} OspfVlanRecord;

/* The model's functions of the same names (uc_ospf.h), with their results. */
uint32_t swOspfInit(void);
uint32_t swOspfHasProcessId(uint16_t processId);
uint32_t swOspfGetCfg(uint32_t slot, OspfProcessCfg *out);
uint32_t swOspfGetInEntry(OspfInterfaceEntry *out);
uint32_t swOspfProcessIsEnable(uint32_t slot);

/* Starts ospfd through the shell: "ospfd -d" for a non-zero selector, else
 * "vnete ospfd -d -i /var/ospfdv.pid -N vtyv". processId is not looked at.
 * Result: 0, whatever the shell says. */
uint32_t swOspfProcessCreateById(uint16_t processId, uint32_t selector);

/* Starts ospfd as swOspfProcessCreateById does and gives processId a slot of the model.
 * Result: 0 done; 4 no free slot, or no model. */
uint32_t swOspfEnableProcess(uint16_t processId, uint32_t selector);

/* Sends "no router ospf <processId>" and resets the id's slot, if it has one. The daemon goes on
 * running.
 * Result: 0 or 1. */
uint32_t swOspfDisableProcess(uint16_t processId);

/* Result: 0. */
uint32_t swOspfGetVlanIdByUp(const OspfVlanRecord *record);

/* Kind 1: *vlanId becomes the low 16 bits of swOspfGetVlanIdByUp, that is 0. Other kinds keep it.
 * Result: *vlanId; 0 when vlanId is null. */
uint32_t swOspfGetVlanIdByInf(uint32_t kind, const OspfVlanRecord *record, uint32_t *vlanId);

/* ---- router settings: sent and recorded for the WAN, then sent and recorded for the LAN ---- */

/* "ospf router-id <routerId>" or "no ospf router-id", then "clear ip ospf process" in the exec
 * context, for each instance; records the router id. Between the instances the host's random
 * generator is seeded with the time and one number is drawn (srand, rand); it is not used.
 * Result: 0 or 1. */
uint32_t swOspfRouterId(uint32_t unused, uint32_t set, const char *routerId);

/* "graceful-restart" or its "no" form.
 * Result: 0 or 1. */
uint32_t swOspfGracefulRestart(uint32_t unused, uint32_t set);

/* "compatible rfc1583" or its "no" form.
 * Result: 0 or 1. */
uint32_t swOspfRfc1583Compa(uint32_t unused, uint32_t set);

/* "default-metric <metric>" or "no default-metric" (recorded as -1).
 * Result: 0 or 1. */
uint32_t swOspfDefaultMetric(uint32_t unused, uint32_t set, int32_t metric);

/* "distance <distance>" or "no distance ospf" (recorded as 110). The low byte is recorded. ospfd
 * accepts the "no" form and keeps its distance, so that the recorded 110 differs from it.
 * Result: 0 or 1. */
uint32_t swOspfdistance(uint32_t unused, uint32_t set, int32_t distance);

/* "maximum-paths <paths>" or "no maximum-paths" (recorded as 16). The low byte is recorded.
 * Result: 0 or 1. */
uint32_t swOspfMaxPaths(uint32_t unused, uint32_t set, int32_t paths);

/* "auto-cost reference-bandwidth <bandwidth>" (Mbit/s) or its "no" form (recorded as 100000).
 * Result: 0 or 1. */
uint32_t swOspfAutoCostRef(uint32_t unused, uint32_t set, int32_t bandwidth);

/* "passive-interface default" or its "no" form.
 * Result: 0 or 1. */
uint32_t swOspfPassiveInterface(uint32_t unused, uint32_t set);

/* ---- router settings: sent for the WAN and the LAN, then recorded for the WAN and the LAN ---- */

/* "timers throttle spf <delay> <initialHold> <maximumHold>" (milliseconds) or
 * "no timers throttle spf" (recorded as 0, 50, 5000). The low 16 bits of each are recorded.
 * Result: 0 or 1. */
uint32_t swOspfTimerThrottleSpf(uint32_t unused, uint32_t set, int32_t delay, int32_t initialHold,
                                int32_t maximumHold);

/* "default-information originate " with "always ", "metric <metric> " and
 * "metric-type <metricType>" as their flags say, or "no default-information originate". Setting
 * never clears the model's "always"; metric and type are recorded only with their flags.
 * Result: 0 or 1. */
uint32_t swOspfOrignate(uint32_t unused, uint32_t always, int32_t metric, uint32_t hasMetric,
                        int32_t metricType, uint32_t hasMetricType, uint32_t set);

/* "redistribute " or "no redistribute ", the source's word ("connect ", "ospf <sourceProcessId> ",
 * "rip ", "static " for 1 to 4), then "metric <metric> " and "metric-type <metricType> " as their
 * flags say, in the "no" form too. Any other source sends the bare text and is still recorded.
 * Result: 0; 1 also when there is no redistribution to remove; 4 out of memory. */
uint32_t swOspfRedistribute(uint32_t sourceProcessId, uint32_t set, uint32_t source, int32_t metric,
                            uint32_t hasMetric, int32_t metricType, uint32_t hasMetricType);

/* ---- one instance ---- */

/* "network <address>/<length of mask> area <areaId>" or its "no" form, once, for the selector's
 * instance; records the network there. Logs the text. Removing a network that the model does not
 * hold is a success.
 * Result: 0; 1; 4 out of memory. */
uint32_t swOspfNetwork(uint32_t unused, const char *address, const char *mask, uint32_t areaId,
                       uint32_t set, uint32_t selector);

/* ---- area commands: sent once, recorded in the slot of processId ----
 * area, prefix and mask are dotted texts. */

/* "area <area>", followed by " stub " for type 1 or " nssa " for type 2, or its "no" form.
 * Unsetting removes the model's area only when its type is areaType.
 * Result:
 *   0           accepted and recorded, or no slot
 *   1           as above; also when the stored type is another
 *   4           out of memory
 *   0xFFFFFFFE  unset, and the model does not hold the area */
uint32_t swOspfArea(uint16_t processId, const char *area, uint32_t set, uint32_t areaType,
                    uint32_t selector);

/* The text of swOspfArea, then "no-summary". Unsetting keeps the area and clears the flag.
 * Result:
 *   0           accepted and recorded, or no slot
 *   1           as above
 *   4           out of memory
 *   0xFFFFFFFE  unset, and the model does not hold the area */
uint32_t swOspfAreaSummary(uint16_t processId, const char *area, uint32_t set, uint32_t areaType,
                           uint32_t selector);

/* "area <area> default-cost <cost>" or "no area default-cost" (recorded as 1). A new area is
 * recorded as a normal one.
 * Result:
 *   0           accepted and recorded, or no slot
 *   1           as above
 *   4           out of memory
 *   0xFFFFFFFE  unset, and the model does not hold the area
 *   0xFFFFFFFF  the model holds a normal area, which stays as it is */
uint32_t swOspfAreaDefaultCost(uint16_t processId, const char *area, int32_t cost, uint32_t set,
                               uint32_t selector);

/* "area <area> range <prefix>/<length of mask> ", "cost <cost>" when hasCost is not 0, " ", and
 * "not-advertise" for advertiseMode 1, "advertise" for 0, nothing for others; or
 * "no area <area> range <prefix>/<length>". Nothing is recorded.
 * Result: 0 or 1. */
uint32_t swOspfAreaRange(uint16_t processId, const char *area, const char *prefix, const char *mask,
                         uint32_t advertiseMode, uint32_t hasCost, int32_t cost, uint32_t set,
                         uint32_t selector);

/* ---- virtual-link commands: sent twice, recorded in the slot of processId ----
 * Only a link that the model already holds is recorded: none of these adds one. area and peer are
 * dotted texts.
 * Results of all: 0; 1; 0xFFFFFFFE the model does not hold the link. */

/* "area <area> virtual-link <peer> " and, as their flags say, "hello-interval <hello>",
 * "dead-interval <dead>", "transmit-delay <transmitDelay>", "retransmit-interval <retransmit>" with
 * nothing between them; or "no area <area> virtual-link <peer>". Both sends have the caller's
 * selector. Unsetting removes the model's link.
 * Result: as above; 1 also when there is no link to remove. */
uint32_t swOspfVirtualLink(uint16_t processId, const char *area, const char *peer, int32_t hello,
                           uint32_t hasHello, int32_t dead, uint32_t hasDead, int32_t transmitDelay,
                           uint32_t hasTransmitDelay, int32_t retransmit, uint32_t hasRetransmit,
                           uint32_t set, uint32_t selector);

/* "area <area> virtual-link <peer> authentication" for authType 0, with " null" for 1 and
 * " message-digest" for 2, an empty command for others; or "no area <area> virtual-link <peer>",
 * which removes the whole link, in the model too. A set value other than 0 and 1 records nothing.
 * Result: as above; 1 also when there is no link to remove. */
uint32_t swOspfVirtualLinkAuth(uint16_t processId, const char *area, const char *peer,
                               uint32_t authType, uint32_t set);

/* "area <area> virtual-link <peer> authentication-key <key>", set or not; records exactly 8 bytes
 * of key (set 1) or zeroes. */
uint32_t swOspfVirtualLinkAuthKey(uint16_t processId, const char *area, const char *peer,
                                  const char *key, uint32_t set);

/* "area <area> virtual-link <peer> message-digest-key <keyId> md5 <key>", or its "no" form with the
 * key "1"; records the key id in both cases, and exactly 16 bytes of key (set 1) or zeroes. */
uint32_t swOspfVirtualLinkMd5Key(uint16_t processId, const char *area, const char *peer,
                                 uint32_t keyId, const char *key, uint32_t set);

/* ---- interface commands: sent once, in the context of the VLAN's interface ----
 * Results of all:
 *   0           accepted and recorded
 *   1           as above; also for a VLAN that is neither a LAN nor a WAN VLAN: nothing is sent
 *   0xFFFFFFFE  unset, and the VLAN has no entry in the model
 *   0xFFFFFFFF  all entries are taken
 *
 * The first six record the value of the VLAN's first setting in an entry of its own, and any later
 * one in entry 0 (ucIpOpsfInfSetParaByKey). */

/* "ip ospf hello-interval <seconds>" or "no ip ospf hello-interval" (recorded as 10). */
uint32_t swIpOspfHelloInterval(uint32_t unused, uint32_t vlanId, uint32_t set, int32_t seconds);

/* "ip ospf dead-interval <seconds>" or "no ip ospf dead-interval" (recorded as 40). */
uint32_t swIpOspfDeadInterval(uint32_t unused, uint32_t vlanId, uint32_t set, int32_t seconds);

/* "ip ospf retransmit-interval <seconds>" or "no ip ospf retransmit-interval" (recorded as 5). */
uint32_t swIpOspfRetransmitInterval(uint32_t unused, uint32_t vlanId, uint32_t set,
                                    int32_t seconds);

/* "ip ospf transmit-delay <seconds>" or "no ip ospf transmit-delay" (recorded as 1). */
uint32_t swIpOspfTransmitDelay(uint32_t unused, uint32_t vlanId, uint32_t set, int32_t seconds);

/* "ip ospf cost <cost>" or "no ip ospf cost" (recorded as 1). */
uint32_t swIpOpsfCost(uint32_t unused, uint32_t vlanId, uint32_t set, int32_t cost);

/* "ip ospf priority <priority>" or "no ip ospf priority" (recorded as 1). */
uint32_t swIpOspfPriority(uint32_t unused, uint32_t vlanId, uint32_t set, int32_t priority);

/* "ip ospf mtu-ignore" or its "no" form. */
uint32_t swIpOspfMtuIgnore(uint32_t unused, uint32_t vlanId, uint32_t set);

/* "ip ospf network <label>" with the label of the OspfNetworkType ("Not Configure", "broadcast",
 * "non-broadcast", "point-to-multipoint", "point-to-point"; none above 4), or
 * "no ip ospf network". */
uint32_t swIpOspfNetwork(uint32_t unused, uint32_t vlanId, uint32_t set, uint32_t networkType);

/* "ip ospf authentication null" for authType 0, without a word for 1, with "message-digest" for 2,
 * or the "no" form of the same; an empty command for others, which are recorded as well. */
uint32_t swIpOspfAuth(uint32_t unused, uint32_t vlanId, uint32_t set, uint32_t authType);

/* "ip ospf authentication-key <key>" or "no ip ospf authentication-key". Exactly 8 bytes of key are
 * recorded: the caller's buffer has room for them, whatever the text's length. */
uint32_t swIpOspfAuthKey(uint32_t unused, uint32_t vlanId, uint32_t set, const char *key);

/* "ip ospf message-digest-key <keyId> md5 <key>" or "no ip ospf message-digest-key <keyId>". The
 * low byte of keyId and exactly 16 bytes of key are recorded. */
uint32_t swIpOspfAuthM5dKey(uint32_t unused, uint32_t vlanId, uint32_t set, uint32_t keyId,
                            const char *key);

FRRUCI_C_END

#endif
