// SPDX-License-Identifier: Apache-2.0
// Replays the stored RIP configuration through the handlers.
// The line numbers in its messages: Fixed by the interface.

#include "rip/frr_rip_recovery.h"

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "common/status.h"
#include "common/text.h"
#include "common/uci_option.h"
#include "rip/frr_rip.h"
#include "rip/sw_rip.h"
#include "rip/vty_rip.h"

namespace {

using namespace frruci::rip;
using frruci::common::equals;
using frruci::common::kSuccess;
using frruci::common::optionText;

constexpr const char *kPackage = "rip";
constexpr std::size_t kOptionBytes = 64;

/// Reads one option; empty, and logged, when it cannot be read.
void readOption(const char *section, const char *option, char (&text)[kOptionBytes], int line) {
    const int32_t result = frr_uci_get(kPackage, section, option, text, kOptionBytes);
    if (result != kSuccess) {
        (void)record_log_act("frr_rip_recovery:%d:  ret=%d, frr_uci_get\n", line, result);
    }
}

struct StoredWord {
    const char *option;
    int line;
};

/// Replays a setting of section "config": one option, or two.
void replay(int32_t (*handle)(int32_t argc, char **argv), const StoredWord &first,
            const StoredWord &second = {}) {
    char texts[2][kOptionBytes];
    char *words[2] = {texts[0], texts[1]};
    readOption("config", first.option, texts[0], first.line);
    const bool hasSecond = second.option != nullptr;
    if (hasSecond) {
        readOption("config", second.option, texts[1], second.line);
    }
    (void)handle(hasSecond ? 2 : 1, words); // a failure does not end the replay
}

/// Calls handle with the interface's name and the option when the section has both.
int32_t replayInterface(uci_context *context, uci_section *section, const char *option,
                        int32_t (*handle)(int32_t argc, char **argv)) {
    const char *name = optionText(context, section, "interface");
    const char *value = optionText(context, section, option);
    if (name != nullptr && value != nullptr) {
        // Handlers only read their words.
        char *words[] = {const_cast<char *>(name), const_cast<char *>(value)};
        (void)handle(2, words); // a failure does not end the replay
    }
    return 0;
}

void announce(const char *ip, const char *mask, uint32_t side, int line, const char *sideName) {
    if (swRipNetworkSet(kInstance, ip, mask, 1, side) != kSuccess) {
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
    replay(process_rip_config_version, {"rip_version", 32});
}

void rip_recovery_config_distance() {
    replay(process_rip_config_distance, {"rip_distance", 40});
}

void rip_recovery_config_auto_summary() {
    replay(process_rip_config_auto_summary, {"auto_summary", 49});
}

void rip_recovery_config_default_metric() {
    replay(process_rip_config_default_metric, {"default_metric", 58});
}

void rip_recovery_config_redistribute_static() {
    replay(process_rip_config_redistribute_static, {"redistribute_static", 67},
           {"redistribute_static_metric", 69});
}

void rip_recovery_config_redistribute_ospf() {
    replay(process_rip_config_redistribute_ospf, {"redistribute_ospf", 78},
           {"redistribute_ospf_metric", 80});
}

void rip_recovery_config_update_timer() {
    replay(process_rip_config_update_timer, {"update_timer", 89});
}

void rip_recovery_config_timeout_timer() {
    replay(process_rip_config_timeout_timer, {"timeout_timer", 98});
}

void rip_recovery_config_garbage_timer() {
    replay(process_rip_config_garbage_timer, {"garbage_timer", 107});
}

void rip_recovery_network() {
    frr_uci_foreach_section(kPackage, "network", rip_recovery_network_from_section);
}

void rip_recovery_interface() {
    frr_uci_foreach_section(kPackage, "interface", rip_recovery_interface_from_section);
}

const char *rip_uci_option_string(uci_context *context, uci_section *section, const char *name) {
    return optionText(context, section, name);
}

int32_t rip_recovery_network_from_section(uci_context *context, uci_section *section) {
    const char *mask = optionText(context, section, "mask");
    const char *ip = optionText(context, section, "ipaddress");
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
    const char *name = optionText(context, section, "interface");
    const char *mode = optionText(context, section, "authen_mode");
    const char *keyId = optionText(context, section, "key_id");
    const char *key = optionText(context, section, "key");
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
