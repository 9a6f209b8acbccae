/* SPDX-License-Identifier: Apache-2.0 */
/* OSPF commands: process, area, virtual link and interface settings. */
#ifndef FRRUCI_OSPF_SW_OSPF_H
#define FRRUCI_OSPF_SW_OSPF_H

#include <stdint.h>

#include "../common/c_interface.h"
#include "uc_ospf.h"

FRRUCI_C_BEGIN

/* ---- process commands ---- */

typedef struct OspfVlanRecord {
    uint8_t bytes[24];
} OspfVlanRecord; /* never looked into */

uint32_t swOspfInit(void);
uint32_t swOspfHasProcessId(uint16_t processId);
uint32_t swOspfGetCfg(uint32_t slot, OspfProcessCfg *out);
uint32_t swOspfGetInEntry(OspfInterfaceEntry *out);
uint32_t swOspfProcessIsEnable(uint32_t slot);
uint32_t swOspfProcessCreateById(uint16_t processId, uint32_t selector);
uint32_t swOspfEnableProcess(uint16_t processId, uint32_t selector);
uint32_t swOspfDisableProcess(uint16_t processId);
uint32_t swOspfGetVlanIdByUp(const OspfVlanRecord *record);
uint32_t swOspfGetVlanIdByInf(uint32_t kind, const OspfVlanRecord *record, uint32_t *vlanId);

uint32_t swOspfRouterId(uint32_t unused, uint32_t set, const char *routerId);
uint32_t swOspfGracefulRestart(uint32_t unused, uint32_t set);
uint32_t swOspfRfc1583Compa(uint32_t unused, uint32_t set);
uint32_t swOspfDefaultMetric(uint32_t unused, uint32_t set, int32_t metric);
uint32_t swOspfdistance(uint32_t unused, uint32_t set, int32_t distance);
uint32_t swOspfMaxPaths(uint32_t unused, uint32_t set, int32_t paths);
uint32_t swOspfAutoCostRef(uint32_t unused, uint32_t set, int32_t bandwidth);
uint32_t swOspfPassiveInterface(uint32_t unused, uint32_t set);
uint32_t swOspfTimerThrottleSpf(uint32_t unused, uint32_t set, int32_t delay, int32_t initialHold,
                                int32_t maximumHold);
uint32_t swOspfOrignate(uint32_t unused, uint32_t always, int32_t metric, uint32_t hasMetric,
                        int32_t metricType, uint32_t hasMetricType, uint32_t set);
uint32_t swOspfNetwork(uint32_t unused, const char *address, const char *mask, uint32_t areaId,
                       uint32_t set, uint32_t selector);
uint32_t swOspfRedistribute(uint32_t sourceProcessId, uint32_t set, uint32_t source, int32_t metric,
                            uint32_t hasMetric, int32_t metricType, uint32_t hasMetricType);

/* ---- area and virtual-link commands (addresses and masks are dotted texts) ---- */

uint32_t swOspfArea(uint16_t processId, const char *area, uint32_t set, uint32_t areaType,
                    uint32_t selector);
uint32_t swOspfAreaSummary(uint16_t processId, const char *area, uint32_t set, uint32_t areaType,
                           uint32_t selector);
uint32_t swOspfAreaDefaultCost(uint16_t processId, const char *area, int32_t cost, uint32_t set,
                               uint32_t selector);
uint32_t swOspfAreaRange(uint16_t processId, const char *area, const char *prefix, const char *mask,
                         uint32_t advertiseMode, uint32_t hasCost, int32_t cost, uint32_t set,
                         uint32_t selector);
uint32_t swOspfVirtualLink(uint16_t processId, const char *area, const char *peer, int32_t hello,
                           uint32_t hasHello, int32_t dead, uint32_t hasDead, int32_t transmitDelay,
                           uint32_t hasTransmitDelay, int32_t retransmit, uint32_t hasRetransmit,
                           uint32_t set, uint32_t selector);
uint32_t swOspfVirtualLinkAuth(uint16_t processId, const char *area, const char *peer,
                               uint32_t authType, uint32_t set);
uint32_t swOspfVirtualLinkAuthKey(uint16_t processId, const char *area, const char *peer,
                                  const char *key, uint32_t set);
uint32_t swOspfVirtualLinkMd5Key(uint16_t processId, const char *area, const char *peer,
                                 uint32_t keyId, const char *key, uint32_t set);

/* ---- interface commands ---- */

uint32_t swIpOspfHelloInterval(uint32_t unused, uint32_t vlanId, uint32_t set, int32_t seconds);
uint32_t swIpOspfDeadInterval(uint32_t unused, uint32_t vlanId, uint32_t set, int32_t seconds);
uint32_t swIpOspfRetransmitInterval(uint32_t unused, uint32_t vlanId, uint32_t set,
                                    int32_t seconds);
uint32_t swIpOspfTransmitDelay(uint32_t unused, uint32_t vlanId, uint32_t set, int32_t seconds);
uint32_t swIpOpsfCost(uint32_t unused, uint32_t vlanId, uint32_t set, int32_t cost);
uint32_t swIpOspfPriority(uint32_t unused, uint32_t vlanId, uint32_t set, int32_t priority);
uint32_t swIpOspfMtuIgnore(uint32_t unused, uint32_t vlanId, uint32_t set);
uint32_t swIpOspfNetwork(uint32_t unused, uint32_t vlanId, uint32_t set, uint32_t networkType);
uint32_t swIpOspfAuth(uint32_t unused, uint32_t vlanId, uint32_t set, uint32_t authType);
uint32_t swIpOspfAuthKey(uint32_t unused, uint32_t vlanId, uint32_t set, const char *key);
uint32_t swIpOspfAuthM5dKey(uint32_t unused, uint32_t vlanId, uint32_t set, uint32_t keyId,
                            const char *key);

FRRUCI_C_END

#endif
