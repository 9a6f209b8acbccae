// SPDX-License-Identifier: Apache-2.0
// Finds, kills and starts daemon processes through the shell, switches OSPF on, and moves the
// network statement of the router's inner link.

#include "ospf/frr_ospf_process.h"

#include <cstdio>
#include <cstring>

#include "common/front_end.h"
#include "common/outside.h"
#include "common/shell.h"
#include "common/text.h"
#include "ospf/sw_ospf.h"

namespace {

// Line numbers in messages. Fixed by the interface.
constexpr int kZebraFoundLine = 180;
constexpr int kZebraStartedLine = 185;
constexpr int kFieldLine = 192;
constexpr int kProcessIdLine = 195;
constexpr int kListingLine = 213;
constexpr int kListedLine = 215;
constexpr int kUnsafeNameLine = 225;
constexpr int kOspfFoundLine = 235;
constexpr int kOspfStartLine = 241;

constexpr unsigned kStartPauseSeconds = 1;

constexpr uint16_t kWanProcess = 1;
constexpr uint32_t kWanSelector = 1;
constexpr uint32_t kSet = 1;
constexpr uint32_t kUnset = 0;
constexpr uint32_t kUnusedWord = 2;

/// One end of the router's inner link, in the OSPF instance of a selector.
struct LinkEnd {
    const char *address;
    const char *nameInMessages;
};

constexpr LinkEnd kLinkEnds[] = {
    {"169.254.11.22", "veth1" },
    {"169.254.11.21", "br-lan"}
};
constexpr const char *kLinkMask = "255.255.255.252";

/// Under which area each instance announced its end last; never stored, so 0 after a start.
uint32_t announcedAreas[] = {0, 0};

/// Reads one line, its newline included; what does not fit is dropped, so that it never counts as a
/// line of its own. False at the end.
template <std::size_t N> bool readLine(FILE *from, char (&line)[N]) {
    if (fgets(line, static_cast<int>(N), from) == nullptr) {
        return false;
    }
    if (strchr(line, '\n') == nullptr) {
        int dropped = fgetc(from);
        while (dropped != '\n' && dropped != EOF) {
            dropped = fgetc(from);
        }
    }
    return true;
}

int32_t setRouterId(const char *routerId) {
    return static_cast<int32_t>(swOspfRouterId(kUnusedWord, kSet, routerId));
}

/// Sends one form of the network statement; says so on standard output when it fails.
int32_t sendLink(uint16_t processId, const LinkEnd &end, uint32_t areaId, uint32_t set,
                 int32_t selector) {
    const auto result = static_cast<int32_t>(swOspfNetwork(
        processId, end.address, kLinkMask, areaId, set, static_cast<uint32_t>(selector)));
    if (result != 0) {
        (void)printf("%s ospf network %s failed.\n", set == kSet ? "Set" : "Reset",
                     end.nameInMessages);
    }
    return result;
}

} // namespace

int32_t process_exist(const char *name, int32_t kill_flag) {
    if (name == nullptr) {
        return 0;
    }
    if (check_safe_string(name) == 0) {
        (void)printf("%s %d: check safe string failed!\n", "process_exist", kUnsafeNameLine);
        return 0;
    }
    char command[128];
    frruci::common::format(command, "ps -w | grep -v grep | grep %s", name);
    FILE *listing = frruci::outside::openListing(command);
    if (listing == nullptr) {
        return 0;
    }
    (void)record_log_act("frr_ospf:%d: popen\n", kListingLine);
    int32_t count = 0;
    char line[512];
    while (readLine(listing, line)) {
        ++count;
        (void)record_log_act("frr_ospf:%d: popen %s\n", kListedLine, line);
        if (kill_flag != 0) {
            (void)kill_process(line);
        }
    }
    frruci::outside::closeListing(listing);
    return count;
}

int32_t kill_process(char *ps_line) {
    char *rest = nullptr;
    const char *field = ps_line == nullptr ? nullptr : strtok_r(ps_line, " ", &rest);
    (void)record_log_act("frr_ospf:%d: strtok ret %s\n", kFieldLine,
                         field == nullptr ? "(null)" : field);
    if (field == nullptr) {
        return 0;
    }
    const int32_t processId = frruci::common::number(field);
    (void)record_log_act("frr_ospf:%d: pid = %d\n", kProcessIdLine, processId);
    if (processId >= 1) {
        frruci::outside::killProcess(processId);
    }
    return 0;
}

int32_t zebra_enable(void) {
    if (process_exist("zebra", 0) != 0) {
        (void)record_log_act("frr_ospf:%d: zebra process exist\n", kZebraFoundLine);
        return 0;
    }
    frruci::common::runShell("zebra -d ");
    frruci::outside::pauseFor(kStartPauseSeconds);
    (void)record_log_act("frr_ospf:%d: zebra_enable\n", kZebraStartedLine);
    return 0;
}

int32_t ospf_enable(const char *router_id_text) {
    (void)zebra_enable(); // has no result
    if (process_exist("ospfd", 0) != 0) {
        (void)record_log_act("frr_ospf:%d: ospf process exist\n", kOspfFoundLine);
        return setRouterId(router_id_text);
    }
    frruci::common::runShell("conntrack -D -p ospf");
    (void)record_log_act("frr_ospf:%d: ospf_enable router_id %s\n", kOspfStartLine,
                         router_id_text == nullptr ? "" : router_id_text);
    (void)swOspfEnableProcess(kWanProcess, kWanSelector); // the exchange below tells
    frruci::outside::pauseFor(kStartPauseSeconds);
    const int32_t result = setRouterId(router_id_text);
    frruci::outside::pauseFor(kStartPauseSeconds);
    return result;
}

int32_t sysn_network(uint16_t process_id, uint32_t area_id, int32_t instance_selector) {
    const int side = instance_selector != 0 ? 1 : 0;
    const LinkEnd &end = kLinkEnds[side];
    int32_t result = sendLink(process_id, end, announcedAreas[side], kUnset, instance_selector);
    if (result != 0) {
        return result;
    }
    result = sendLink(process_id, end, area_id, kSet, instance_selector);
    if (result == 0) {
        announcedAreas[side] = area_id;
    }
    return result;
}
