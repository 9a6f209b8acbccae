/* SPDX-License-Identifier: Apache-2.0 */
/* Names for the numbers that the model's interface uses for keys, kinds and types. */
#ifndef FRRUCI_OSPF_NUMBERS_H
#define FRRUCI_OSPF_NUMBERS_H

#include "ospf/uc_ospf.h"

namespace frruci::ospf {

/// Of ucIpOpsfBasicSetParaByKey.
enum RouterKey : OspfBasicParaKey {
    kRouterIdKey,
    kGracefulRestartKey,
    kReferenceBandwidthKey,
    kRfc1583Key,
    kDefaultMetricKey,
    kDistanceKey,
    kPassiveDefaultKey,
    kMaximumPathsKey,
    kSpfTimersKey,
};

/// Of ucIpOpsfInfSetParaByKey.
enum InterfaceKey : OspfInfParaKey {
    kHelloKey,
    kDeadKey,
    kRetransmitKey,
    kTransmitKey,
    kCostKey,
    kPriorityKey,
    kInterfaceKeys,
};

/// Of ucOspfDlistGetCfg and its like.
enum ListKind : OspfListKind { kAreaKind = 1, kAreaAggregateKind, kVirtualLinkKind, kNetworkKind };

inline constexpr OspfAreaType kNormalArea = 0;
inline constexpr OspfAuthType kSimplePassword = 1; // of an interface, in the front-end's words too
inline constexpr OspfAuthType kMessageDigest = 2;
inline constexpr OspfRedistSource kSourceOspf = 2;

} // namespace frruci::ospf

#endif
