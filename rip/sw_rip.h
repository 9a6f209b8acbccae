/* SPDX-License-Identifier: Apache-2.0 */
/* RIP commands. */
#ifndef FRRUCI_RIP_SW_RIP_H
#define FRRUCI_RIP_SW_RIP_H

#include <stdint.h>

#include "../common/c_interface.h"
#include "uc_rip.h"

FRRUCI_C_BEGIN

/* ---- instance-level commands ---- */
uint32_t swRipInit(void);
uint32_t swRipIsRunning(const char *vrf, uint32_t *running);
uint32_t swRipRouterRipSet(const char *vrf, uint32_t enable);
uint32_t swRipNetworkSet(const char *vrf, const char *ip, const char *mask, uint32_t add,
                         uint32_t selector);
uint32_t swRipNeighborSet(const char *vrf, const char *addr, uint32_t add, uint32_t selector);
uint32_t swRipVersionSet(const char *vrf, uint32_t version, uint32_t enable);
uint32_t swRipDistanceSet(const char *vrf, uint32_t distance, uint32_t enable);
uint32_t swRipDefaultMetricSet(const char *vrf, uint32_t metric, uint32_t enable);
uint32_t swRipAutoSummSet(const char *vrf, uint32_t enable);
uint32_t swRipDefaultInformationSet(const char *vrf, uint32_t enable);
uint32_t swRipRouteStaticSet(const char *vrf, const char *ip, const char *mask, uint32_t add);
uint32_t swRipRedistributeSet(const char *vrf, uint32_t kind, uint32_t metric, uint32_t enable,
                              uint32_t selector);
uint32_t swRipTimerSet(const char *vrf, uint32_t which, uint32_t value, uint32_t enable);

/* ---- interface-level commands ---- */
uint32_t swRipIfSplitHorizonSet(const char *ifname, RipNetIf key, uint32_t poisoned,
                                uint32_t enable);
uint32_t swRipIfSendVersionSet(const char *ifname, RipNetIf key, uint32_t version, uint32_t enable);
uint32_t swRipIfReceiveVersionSet(const char *ifname, RipNetIf key, uint32_t version,
                                  uint32_t enable);
uint32_t swRipIfV2BroadcastSet(const char *ifname, RipNetIf key, uint32_t enable);
uint32_t swRipIfAuthenticationSet(const char *ifname, RipNetIf key, uint32_t mode, uint32_t keyid,
                                  const char *keystring, uint32_t enable);
uint32_t swRipIfPassiveInterfaceVlanSet(RipNetIf key, uint32_t enable);
uint32_t swRipKeychainClean(RipNetIf key, const char *chain);
uint32_t swRipKeychainAdd(RipNetIf key, const char *chain, uint32_t keyid, const char *keystring);

/* ---- display, internal links ---- */
uint32_t swRipShowIpRip(void);
uint32_t swRipShowIpRipStatus(void);
uint32_t swRip_setGlobal(void);
uint32_t swRip_setIfVlan(void);
uint32_t sw_rip_if_cmd(const char *ifname, const char *command, const char *socketPath);
uint32_t init_rip_interface(void);

FRRUCI_C_END

#endif
