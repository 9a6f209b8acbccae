// SPDX-License-Identifier: Apache-2.0
// Replays the stored RIP configuration through the handlers.
// The line numbers in its messages: Fixed by the interface.

#include "rip/frr_rip_recovery.h"

#include <uci.h>

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "common/text.h"
#include "rip/frr_rip.h"
#include "rip/rip_internal.h"
#include "rip/sw_rip.h"

namespace {

using namespace frruci::rip;
using frruci::common::equals;

constexpr const char *kPackage = "rip";
constexpr std::size_t kOptionBytes = 64;

/// Reads one option; empty, and logged, when it cannot be read.
void readOption(const char *section, const char *option, char (&text)[kOptionBytes], int line) {
    const int32_t result = frr_uci_get(kPackage, section, option, text, kOptionBytes);
    if (result != 0) {
        (void)record_log_act("frr_rip_recovery:%d:  ret=%d, frr_uci_get\n", line, result);
    }
}

struct StoredWord {
    const char *option;
    int line;
};

/// One setting of section "config": its words in the handler's order.
struct StoredSetting {
    StoredWord words[2];
    int32_t count;
    int32_t (*handle)(int32_t argc, char **argv);
};

constexpr StoredSetting kVersion = {{{"rip_version", 32}}, 1, process_rip_config_version};
constexpr StoredSetting kDistanceSetting = {{{"rip_distance", 40}}, 1, process_rip_config_distance};
constexpr StoredSetting kAutoSummary = {{{"auto_summary", 49}}, 1, process_rip_config_auto_summary};
constexpr StoredSetting kDefaultMetric = {
    {{"default_metric", 58}}, 1, process_rip_config_default_metric};
constexpr StoredSetting kRedistributeStatic = {
    {{"redistribute_static", 67}, {"redistribute_static_metric", 69}},
    2,
    process_rip_config_redistribute_static
};
constexpr StoredSetting kRedistributeOspf = {
    {{"redistribute_ospf", 78}, {"redistribute_ospf_metric", 80}},
    2,
    process_rip_config_redistribute_ospf
};
constexpr StoredSetting kUpdate = {{{"update_timer", 89}}, 1, process_rip_config_update_timer};
constexpr StoredSetting kTimeout = {{{"timeout_timer", 98}}, 1, process_rip_config_timeout_timer};
constexpr StoredSetting kGarbage = {{{"garbage_timer", 107}}, 1, process_rip_config_garbage_timer};

void replay(const StoredSetting &setting) {
    char texts[2][kOptionBytes];
    char *words[2] = {texts[0], texts[1]};
    for (int32_t i = 0; i < setting.count; ++i) {
        readOption("config", setting.words[i].option, texts[i], setting.words[i].line);
    }
    (void)setting.handle(setting.count, words); // a failure does not end the replay
}

/// Calls handle with the interface's name and the option when the section has both.
int32_t replayInterface(uci_context *context, uci_section *section, const char *option,
                        int32_t (*handle)(int32_t argc, char **argv)) {
    const char *name = rip_uci_option_string(context, section, "interface");
    const char *value = rip_uci_option_string(context, section, option);
    if (name != nullptr && value != nullptr) {
        // Handlers only read their words.
        char *words[] = {const_cast<char *>(name), const_cast<char *>(value)};
        (void)handle(2, words); // a failure does not end the replay
    }
    return 0;
}

void announce(const char *ip, const char *mask, uint32_t side, int line, const char *sideName) {
    if (swRipNetworkSet(kInstance, ip, mask, 1, side) != kOk) {
        (void)record_log_act("frr_rip_recovery:%d: recover rip %s network failed\n", line,
                             sideName);
    }
}

} // namespace

void rip_cfg_recovery() {
    (void)record_log_act("frr_rip_recovery:%d: rip_cfg_recovery begin\n", 217);
    char status[kOptionBytes];
    readOption("global", "status", status, 220);
    if (equals(status, "on")) {
        rip_recovery_process();
        rip_recovery_config();
        rip_recovery_network();
        rip_recovery_interface();
    }
    (void)record_log_act("frr_rip_recovery:%d: rip_cfg_recovery end\n", 227);
}

void rip_recovery_process() {
    rip_enable();
}

void rip_recovery_config() {
    rip_recovery_config_version();
    rip_recovery_config_distance();
    rip_recovery_config_auto_summary();
    rip_recovery_config_default_metric();
    rip_recovery_config_redistribute_static();
    rip_recovery_config_redistribute_ospf();
    rip_recovery_config_update_timer();
    rip_recovery_config_timeout_timer();
    rip_recovery_config_garbage_timer();
}

void rip_recovery_config_version() {
    replay(kVersion);
}

void rip_recovery_config_distance() {
    replay(kDistanceSetting);
}

void rip_recovery_config_auto_summary() {
    replay(kAutoSummary);
}

void rip_recovery_config_default_metric() {
    replay(kDefaultMetric);
}

void rip_recovery_config_redistribute_static() {
    replay(kRedistributeStatic);
}

void rip_recovery_config_redistribute_ospf() {
    replay(kRedistributeOspf);
}

void rip_recovery_config_update_timer() {
    replay(kUpdate);
}

void rip_recovery_config_timeout_timer() {
    replay(kTimeout);
}

void rip_recovery_config_garbage_timer() {
    replay(kGarbage);
}

void rip_recovery_network() {
    frr_uci_foreach_section(kPackage, "network", rip_recovery_network_from_section);
}

void rip_recovery_interface() {
    frr_uci_foreach_section(kPackage, "interface", rip_recovery_interface_from_section);
}

const char *rip_uci_option_string(uci_context *context, uci_section *section, const char *name) {
    uci_element *element = nullptr;
    if (context == nullptr || section == nullptr || name == nullptr ||
        uci_lookup_next(context, &element, &section->options, name) != UCI_OK ||
        element == nullptr) {
        return nullptr;
    }
    // An element is the first member of its option.
    const auto *option = reinterpret_cast<const uci_option *>(element);
    return option->type == UCI_TYPE_STRING ? option->v.string : nullptr;
}

int32_t rip_recovery_network_from_section(uci_context *context, uci_section *section) {
    const char *mask = rip_uci_option_string(context, section, "mask");
    const char *ip = rip_uci_option_string(context, section, "ipaddress");
    if (mask != nullptr && ip != nullptr) {
        announce(ip, mask, 0, 137, "vnete");
        announce(ip, mask, 1, 143, "dnete");
    }
    return 0;
}

int32_t rip_recovery_interface_from_section(uci_context *context, uci_section *section) {
    (void)rip_recovery_interface_split_horizon_mode(context, section); // results have no meaning
    (void)rip_recovery_interface_send_version(context, section);
    (void)rip_recovery_interface_recv_version(context, section);
    (void)rip_recovery_interface_authen(context, section);
    return 0;
}

int32_t rip_recovery_interface_split_horizon_mode(uci_context *context, uci_section *section) {
    return replayInterface(context, section, "split_horizon_mode",
                           process_rip_interface_split_horizon_mode);
}

int32_t rip_recovery_interface_send_version(uci_context *context, uci_section *section) {
    return replayInterface(context, section, "send_version", process_rip_interface_send_version);
}

int32_t rip_recovery_interface_recv_version(uci_context *context, uci_section *section) {
    return replayInterface(context, section, "receive_version", process_rip_interface_recv_version);
}

int32_t rip_recovery_interface_authen(uci_context *context, uci_section *section) {
    const char *name = rip_uci_option_string(context, section, "interface");
    const char *mode = rip_uci_option_string(context, section, "authen_mode");
    const char *keyId = rip_uci_option_string(context, section, "key_id");
    const char *key = rip_uci_option_string(context, section, "key");
    if (name == nullptr || mode == nullptr || key == nullptr ||
        (keyId == nullptr && equals(mode, "md5"))) {
        return 0;
    }
    // Always four words, so "none" means nothing to the handler. Fixed by the interface.
    // Handlers only read their words.
    char *words[] = {const_cast<char *>(name), const_cast<char *>(mode), const_cast<char *>(keyId),
                     const_cast<char *>(key)};
    (void)process_rip_interface_authen(4, words); // a failure does not end the replay
    return 0;
}
