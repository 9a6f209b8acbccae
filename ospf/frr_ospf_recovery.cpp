// SPDX-License-Identifier: Apache-2.0
// Replays the stored OSPF configuration into the daemons, through the same builders and commands
// that the front-end's handlers use.

#include "ospf/frr_ospf_recovery.h"

#include <array>

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "common/text.h"
#include "common/uci_option.h"
#include "ospf/command.h"
#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_enable.h"
#include "ospf/frr_ospf_settings.h"
#include "ospf/numbers.h"
#include "ospf/sw_ospf.h"

namespace {

using frruci::common::equals;
using frruci::common::number;
using frruci::common::optionText;
using namespace frruci::ospf;

constexpr const char *kPackage = "ospf";
constexpr std::size_t kValueBytes = 64;

using Value = std::array<char, kValueBytes>;

/// The line of a log message is that of the call or table row that failed.
void logFailure(uint32_t status, const char *what, int line) {
    if (status != 0) {
        (void)record_log_act("frr_ospf_recovery:%d:  ret=%d, %s\n", line,
                             static_cast<int32_t>(status), what);
    }
}

// Fixed by the interface: one wording for every builder.
void logInterfaceFailure(uint32_t status, int line = __builtin_LINE()) {
    logFailure(status, "ip_ospf_cost, failed", line);
}

/// An option of a named section; empty when it is missing.
Value readOption(const char *section, const char *option, int line = __builtin_LINE()) {
    Value value = {};
    logFailure(
        static_cast<uint32_t>(frr_uci_get(kPackage, section, option, value.data(), kValueBytes)),
        "frr_uci_get", line);
    return value;
}

struct StoredOption {
    const char *name;
    int line; ///< of the row, for the log
};

constexpr StoredOption kAdvertiseOptions[] = {
    {"originate",   __LINE__},
    {"always",      __LINE__},
    {"metric",      __LINE__},
    {"metric_type", __LINE__},
};

constexpr StoredOption kProcessOptions[] = {
    {"distance",       __LINE__},
    {"rfc_compatible", __LINE__},
    {"spf_delay",      __LINE__},
    {"spf_hold_init",  __LINE__},
    {"spf_hold_max",   __LINE__},
    {"max_path",       __LINE__},
    {"passive_def",    __LINE__},
};

template <std::size_t N>
std::array<Value, N> readOptions(const char *section, const StoredOption (&options)[N]) {
    std::array<Value, N> values = {};
    for (std::size_t i = 0; i < N; ++i) {
        values[i] = readOption(section, options[i].name, options[i].line);
    }
    return values;
}

/// One interface section under replay.
struct StoredInterface {
    const char *text(const char *option) const { return optionText(context, section, option); }

    /// Fixed by the interface: a missing option counts as 0, and 0 is sent.
    int32_t value(const char *option) const {
        const char *stored = text(option);
        return stored == nullptr ? 0 : number(stored);
    }

    uci_context *context;
    uci_section *section;
    const char *name = nullptr;
    int32_t wan = 0;
};

void replayNumbers(const StoredInterface &stored) {
    for (const auto &keyword : interfaceKeywords()) {
        const int32_t value = stored.value(keyword.word);
        if (keyword.replay == Replay::kAlways || value == 1) {
            logInterfaceFailure(keyword.apply(stored.name, stored.wan, value), keyword.line);
        }
    }
}

uint32_t replayAuthentication(const StoredInterface &stored) {
    const int32_t type = stored.value(kAuthenticationWord);
    logInterfaceFailure(ip_ospf_auth(kNoVrf, stored.name, stored.wan, kSet, type));
    switch (type) {
    case kSimplePassword:
        return ip_ospf_auth_key(kNoVrf, stored.name, stored.wan, kSet, stored.text("simple_key"));
    case kMessageDigest:
        return ip_ospf_auth_md5key(kNoVrf, stored.name, stored.wan, kSet,
                                   stored.value("md5_key_id"), stored.text("md5_key"));
    default:
        return 0;
    }
}

} // namespace

int32_t ospf_cfg_recovery(void) {
    (void)record_log_act("frr_ospf_recovery:%d: ospf_cfg_recovery begin\n", __LINE__);
    const Value status = readOption("global", "status");
    if (equals(status.data(), "on")) {
        // Daemons and instances first: what follows is configured in them.
        ospf_recovery_process();
        ospf_recovery_adv_cfg();
        ospf_recovery_ospf_cfg();
        ospf_recovery_network();
        ospf_recovery_interface();
    }
    return record_log_act("frr_ospf_recovery:%d: ospf_cfg_recovery end\n", __LINE__);
}

void ospf_recovery_process(void) {
    const Value routerId = readOption("global", "router_id");
    (void)ospf_enable(routerId.data()); // a daemon that does not start fails what follows
}

void ospf_recovery_adv_cfg(void) {
    auto values = readOptions("advertise_cfg", kAdvertiseOptions);
    char *words[] = {values[0].data(), values[1].data(), values[2].data(), values[3].data(),
                     nullptr};
    process_ospf_advertise_cfg(static_cast<int32_t>(values.size()), words);
}

void ospf_recovery_ospf_cfg(void) {
    const auto values = readOptions("ospf_cfg", kProcessOptions);
    applyProcessOptions({values[0].data(), values[1].data(), values[2].data(), values[3].data(),
                         values[4].data(), values[5].data(), values[6].data()},
                        logFailure);
}

void ospf_recovery_network(void) {
    frr_uci_foreach_section(kPackage, "network", ospf_recovery_network_from_section);
}

void ospf_recovery_interface(void) {
    frr_uci_foreach_section(kPackage, "interface", ospf_recovery_interface_from_section);
}

int32_t ospf_recovery_network_from_section(uci_context *context, uci_section *section) {
    const char *area = optionText(context, section, "area_id");
    const char *mask = optionText(context, section, "wildcard_mask");
    const char *address = optionText(context, section, "ip");
    if (area == nullptr || mask == nullptr || address == nullptr) {
        return 0;
    }
    for (const uint32_t selector : kLanThenWan) {
        // A refused statement keeps neither the other instance nor the next section from theirs.
        (void)swOspfNetwork(kNoVrf, address, mask, static_cast<uint32_t>(number(area)), kSet,
                            selector);
    }
    return 0;
}

int32_t ospf_recovery_interface_from_section(uci_context *context, uci_section *section) {
    StoredInterface stored = {context, section};
    stored.name = stored.text("interface");
    if (stored.name == nullptr) {
        return 0;
    }
    const char *side = stored.text("ns");
    stored.wan = side != nullptr && equals(side, kWanWord) ? 1 : 0;
    (void)record_log_act(
        "frr_ospf_recovery:%d: ospf_recovery_interface_from_section, interface is %s\n", __LINE__,
        stored.name);
    replayNumbers(stored);
    return static_cast<int32_t>(replayAuthentication(stored));
}
