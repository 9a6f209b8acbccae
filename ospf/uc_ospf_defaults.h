/* SPDX-License-Identifier: Apache-2.0 */
/* What the records of the model hold before anything is set, and again when it is unset. */
#ifndef FRRUCI_OSPF_UC_OSPF_DEFAULTS_H
#define FRRUCI_OSPF_UC_OSPF_DEFAULTS_H

#include "ospf/uc_ospf.h"

namespace frruci::ospf {

inline constexpr OspfProcessCfg kProcessDefaults = {
    .enabled = 0,
    .processId = 0,
    .reservedAddress = 0,
    .routerId = 0,
    .routerIdSet = 0,
    .gracefulRestart = 0,
    .defaultRouteAdvertise = 0,
    .always = 0,
    .originateMetric = 1,
    .metricType = 2,
    .adminDistance = 110,
    .rfc1583Compatibility = 0,
    .defaultMetric = -1,
    .maximumPaths = 16,
    .passiveDefault = 0,
    .referenceBandwidth = 100000,
    .spfDelay = 0,
    .spfInitialHold = 50,
    .spfMaximumHold = 5000,
    .networks = nullptr,
    .areas = nullptr,
    .areaAggregates = nullptr,
    .virtualLinks = nullptr,
    .redistributions = nullptr,
};

inline constexpr OspfInterfaceEntry kInterfaceDefaults = {
    .inUse = 0,
    .vlanId = 0,
    .processId = 0,
    .areaId = 0,
    .priority = 1,
    .retransmitInterval = 5,
    .helloInterval = 10,
    .deadInterval = 40,
    .transmitDelay = 1,
    .cost = 1,
    .networkType = 0,
    .spare = 1,
    .mtuIgnore = 0,
    .authType = 0,
    .simpleKey = {},
    .md5KeyId = 0,
    .md5Key = {},
};

inline constexpr OspfAreaCfg kAreaDefaults = {
    .areaId = 0,
    .areaType = 0,
    .defaultCost = 1,
    .noSummary = 0,
    .trailing = {},
};

inline constexpr OspfAreaAggCfg kAreaAggDefaults = {
    .areaId = 0,
    .prefix = 0,
    .mask = 0,
    .cost = 0,
    .advertise = 1,
};

inline constexpr OspfVirtualLinkCfg kVirtualLinkDefaults = {
    .areaId = 0,
    .peerRouterId = 0,
    .retransmitInterval = 5,
    .helloInterval = 10,
    .deadInterval = 40,
    .transmitDelay = 1,
    .authType = 0,
    .simpleKey = {},
    .md5KeyId = 0,
    .md5Key = {},
};

inline constexpr OspfRedistributeCfg kRedistributeDefaults = {
    .source = 0,
    .set = 0,
    .metric = 0,
    .metricType = 2,
    .sourceProcessId = 0,
};

} // namespace frruci::ospf

#endif
