// SPDX-License-Identifier: Apache-2.0
// Shows the NHRP cache, starts nhrpd, and keeps the NHRP settings in the store.

#include "nhrp/sw_nhrp.h"

#include <uci.h>

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "common/status.h"
#include "common/text.h"
#include "nhrp/vty_nhrp.h"
#include "ospf/frr_ospf_process.h"
#include "vty/daemons.h"
#include "vty/manager.h"

namespace {

using frruci::common::equals;
using frruci::common::kFailed;
using frruci::common::kSuccess;

constexpr const char *kPackage = "/etc/config/nhrp"; // libuci takes a path as well
constexpr const char *kSection = "sdwan";
constexpr const char *kInterface = "interface";
constexpr const char *kOff = "0";

constexpr int32_t kRecord = 1;
constexpr uint16_t kInterfaceBytes = 64;

int32_t storeOption(const char *section, const char *option, const char *value) {
    if (section == nullptr || option == nullptr || value == nullptr) {
        return UCI_ERR_INVAL;
    }
    return frr_uci_set(kPackage, section, option, value);
}

bool hasInterface() {
    char recorded[kInterfaceBytes];
    return frr_uci_get(kPackage, kSection, kInterface, recorded, sizeof recorded) == UCI_OK;
}

} // namespace

uint32_t swNhrpShow(uint16_t /*vrf*/, const char *what) {
    const bool cache = what != nullptr && equals(what, "cache");
    // Anything else sends an empty line. Fixed by the interface.
    const char *command = cache ? "show ip nhrp cache json" : "";
    return vtyNhrpPrint(command, frruci::vty::kNhrpdSocket) == kSuccess ? kSuccess : kFailed;
}

int32_t nhrp_enable() {
    if (process_exist("zebra", 0) == 0) {
        (void)zebra_enable(); // its result has no meaning
    }
    const int32_t running = process_exist("nhrpd", 0);
    if (running != 0) {
        return running;
    }
    (void)record_log_act("sw_nhrp:%d: nhrp is starting\n", __LINE__);
    // "nhrp", where a restart runs "nhrpd". Fixed by the interface.
    return frruci::vty::startDaemon("nhrp -d");
}

int32_t nhrp_set_interface(const char *ifname, int32_t flag) {
    if (flag == 0) {
        return storeOption(kSection, kInterface, kOff);
    }
    // What is recorded stays, a "0" too. Fixed by the interface.
    if (hasInterface()) {
        return UCI_OK;
    }
    (void)record_log_act("sw_nhrp:%d: nhrp interface is null\n", __LINE__);
    return storeOption(kSection, kInterface, ifname);
}

int32_t nhrp_set_interface_config(const char *section, const char *option, const char *ifname,
                                  const char *value, int32_t enable) {
    if (enable == 0) {
        return storeOption(section, option, kOff);
    }
    (void)nhrp_set_interface(ifname, kRecord); // the setting is stored all the same
    return storeOption(section, option, value);
}

int32_t nhrp_set_enable_config(const char *section, const char *option, const char *value,
                               int32_t enable) {
    return storeOption(section, option, enable != 0 ? value : kOff);
}
