// SPDX-License-Identifier: Apache-2.0
// Pins the model's records byte for byte: hosts read them directly.

#include <cstddef>
#include <pthread.h>

#include "ospf/uc_ospf.h"

static_assert(sizeof(OspfProcessCfg) == 104);
static_assert(offsetof(OspfProcessCfg, enabled) == 0);
static_assert(offsetof(OspfProcessCfg, processId) == 2);
static_assert(offsetof(OspfProcessCfg, reservedAddress) == 4);
static_assert(offsetof(OspfProcessCfg, routerId) == 8);
static_assert(offsetof(OspfProcessCfg, routerIdSet) == 12);
static_assert(offsetof(OspfProcessCfg, gracefulRestart) == 16);
static_assert(offsetof(OspfProcessCfg, defaultRouteAdvertise) == 20);
static_assert(offsetof(OspfProcessCfg, always) == 24);
static_assert(offsetof(OspfProcessCfg, originateMetric) == 28);
static_assert(offsetof(OspfProcessCfg, metricType) == 32);
static_assert(offsetof(OspfProcessCfg, adminDistance) == 33);
static_assert(offsetof(OspfProcessCfg, rfc1583Compatibility) == 36);
static_assert(offsetof(OspfProcessCfg, defaultMetric) == 40);
static_assert(offsetof(OspfProcessCfg, maximumPaths) == 44);
static_assert(offsetof(OspfProcessCfg, passiveDefault) == 48);
static_assert(offsetof(OspfProcessCfg, referenceBandwidth) == 52);
static_assert(offsetof(OspfProcessCfg, spfDelay) == 56);
static_assert(offsetof(OspfProcessCfg, spfInitialHold) == 58);
static_assert(offsetof(OspfProcessCfg, spfMaximumHold) == 60);
static_assert(offsetof(OspfProcessCfg, networks) == 64);
static_assert(offsetof(OspfProcessCfg, areas) == 72);
static_assert(offsetof(OspfProcessCfg, areaAggregates) == 80);
static_assert(offsetof(OspfProcessCfg, virtualLinks) == 88);
static_assert(offsetof(OspfProcessCfg, redistributions) == 96);

static_assert(sizeof(OspfInterfaceEntry) == 68);
static_assert(offsetof(OspfInterfaceEntry, inUse) == 0);
static_assert(offsetof(OspfInterfaceEntry, vlanId) == 4);
static_assert(offsetof(OspfInterfaceEntry, processId) == 8);
static_assert(offsetof(OspfInterfaceEntry, areaId) == 12);
static_assert(offsetof(OspfInterfaceEntry, priority) == 16);
static_assert(offsetof(OspfInterfaceEntry, retransmitInterval) == 18);
static_assert(offsetof(OspfInterfaceEntry, helloInterval) == 20);
static_assert(offsetof(OspfInterfaceEntry, deadInterval) == 22);
static_assert(offsetof(OspfInterfaceEntry, transmitDelay) == 24);
static_assert(offsetof(OspfInterfaceEntry, cost) == 26);
static_assert(offsetof(OspfInterfaceEntry, networkType) == 28);
static_assert(offsetof(OspfInterfaceEntry, spare) == 32);
static_assert(offsetof(OspfInterfaceEntry, mtuIgnore) == 36);
static_assert(offsetof(OspfInterfaceEntry, authType) == 40);
static_assert(offsetof(OspfInterfaceEntry, simpleKey) == 41);
static_assert(offsetof(OspfInterfaceEntry, md5KeyId) == 49);
static_assert(offsetof(OspfInterfaceEntry, md5Key) == 50);

static_assert(sizeof(OspfModelBlock) == 6080);
static_assert(offsetof(OspfModelBlock, processWord) == 0);
static_assert(offsetof(OspfModelBlock, process) == 64);
static_assert(offsetof(OspfModelBlock, interface) == 1728);

static_assert(sizeof(OspfAreaCfg) == 24);
static_assert(offsetof(OspfAreaCfg, areaId) == 0);
static_assert(offsetof(OspfAreaCfg, areaType) == 4);
static_assert(offsetof(OspfAreaCfg, defaultCost) == 8);
static_assert(offsetof(OspfAreaCfg, noSummary) == 12);
static_assert(offsetof(OspfAreaCfg, trailing) == 16);

static_assert(sizeof(OspfAreaAggCfg) == 20);
static_assert(offsetof(OspfAreaAggCfg, areaId) == 0);
static_assert(offsetof(OspfAreaAggCfg, prefix) == 4);
static_assert(offsetof(OspfAreaAggCfg, mask) == 8);
static_assert(offsetof(OspfAreaAggCfg, cost) == 12);
static_assert(offsetof(OspfAreaAggCfg, advertise) == 16);

static_assert(sizeof(OspfVirtualLinkCfg) == 44);
static_assert(offsetof(OspfVirtualLinkCfg, areaId) == 0);
static_assert(offsetof(OspfVirtualLinkCfg, peerRouterId) == 4);
static_assert(offsetof(OspfVirtualLinkCfg, retransmitInterval) == 8);
static_assert(offsetof(OspfVirtualLinkCfg, helloInterval) == 10);
static_assert(offsetof(OspfVirtualLinkCfg, deadInterval) == 12);
static_assert(offsetof(OspfVirtualLinkCfg, transmitDelay) == 14);
static_assert(offsetof(OspfVirtualLinkCfg, authType) == 16);
static_assert(offsetof(OspfVirtualLinkCfg, simpleKey) == 17);
static_assert(offsetof(OspfVirtualLinkCfg, md5KeyId) == 25);
static_assert(offsetof(OspfVirtualLinkCfg, md5Key) == 26);

static_assert(sizeof(OspfNetworkCfg) == 12);
static_assert(offsetof(OspfNetworkCfg, address) == 0);
static_assert(offsetof(OspfNetworkCfg, mask) == 4);
static_assert(offsetof(OspfNetworkCfg, areaId) == 8);

static_assert(sizeof(OspfRedistributeCfg) == 16);
static_assert(offsetof(OspfRedistributeCfg, source) == 0);
static_assert(offsetof(OspfRedistributeCfg, set) == 4);
static_assert(offsetof(OspfRedistributeCfg, metric) == 8);
static_assert(offsetof(OspfRedistributeCfg, metricType) == 12);
static_assert(offsetof(OspfRedistributeCfg, sourceProcessId) == 14);
