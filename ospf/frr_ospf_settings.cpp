// SPDX-License-Identifier: Apache-2.0
// The keywords of an interface, and the process-wide options.

#include "ospf/frr_ospf_settings.h"

#include "common/table.h"
#include "common/text.h"
#include "ospf/command.h"
#include "ospf/frr_ospf.h"
#include "ospf/sw_ospf.h"

namespace frruci::ospf {

namespace {

template <auto Builder> uint32_t setValue(const char *name, int32_t wan, int32_t value) {
    return Builder(kNoVrf, name, wan, kSet, value);
}

uint32_t setNetworkType(const char *name, int32_t wan, int32_t value) {
    return ip_ospf_network_type(kNoVrf, name, wan, kSet, static_cast<uint32_t>(value));
}

// Of these two the value is the enable flag.
template <auto Builder> uint32_t setSwitch(const char *name, int32_t wan, int32_t value) {
    return Builder(kNoVrf, name, wan, value);
}

uint32_t enableFlag(const char *text) {
    return common::equals(text, kEnableWord) ? 1 : 0;
}

constexpr InterfaceKeyword kInterfaceKeywords[] = {
    {"cost",         setValue<ip_ospf_cost>,        Replay::kAlways,  __LINE__},
    {"retransmit",   setValue<ip_ospf_retransmit>,  Replay::kAlways,  __LINE__},
    {"transmit",     setValue<ip_ospf_transmit>,    Replay::kAlways,  __LINE__},
    {"priority",     setValue<ip_ospf_priority>,    Replay::kAlways,  __LINE__},
    {"hello",        setValue<ip_ospf_hello>,       Replay::kAlways,  __LINE__},
    {"dead",         setValue<ip_ospf_dead>,        Replay::kAlways,  __LINE__},
    {"network_type", setNetworkType,                Replay::kAlways,  __LINE__},
    {"mtu_ignore",   setSwitch<ip_ospf_mtu_ignore>, Replay::kAlways,  __LINE__},
    {"passive",      setSwitch<ip_ospf_passive>,    Replay::kWhenOne, __LINE__},
};

static_assert(common::hasUniqueWords<&InterfaceKeyword::word>(kInterfaceKeywords));

} // namespace

const InterfaceKeyword *findInterfaceKeyword(const char *word) {
    return common::findRow<&InterfaceKeyword::word>(kInterfaceKeywords, word);
}

std::span<const InterfaceKeyword> interfaceKeywords() {
    return kInterfaceKeywords;
}

void applyProcessOptions(const ProcessOptions &options, FailureLog log) {
    using common::number;
    const uint32_t compatible = enableFlag(options.rfcCompatible);
    const uint32_t passive = enableFlag(options.passiveDefault);
    const int32_t delay = number(options.spfDelay);
    const int32_t initialHold = number(options.spfInitialHold);
    const int32_t maximumHold = number(options.spfMaximumHold);
    log(swOspfdistance(kNoVrf, kSet, number(options.distance)), "swOspfdistance", __LINE__);
    log(swOspfRfc1583Compa(kNoVrf, compatible), "rfc1583_compatile", __LINE__);
    log(swOspfTimerThrottleSpf(kNoVrf, kSet, delay, initialHold, maximumHold),
        "swOspfTimerThrottleSpf", __LINE__);
    log(swOspfMaxPaths(kNoVrf, kSet, number(options.maximumPaths)), "swOspfMaxPaths", __LINE__);
    log(swOspfPassiveInterface(kNoVrf, passive), "swOspfPassiveInterface", __LINE__);
}

} // namespace frruci::ospf
