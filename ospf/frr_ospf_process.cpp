// SPDX-License-Identifier: Apache-2.0
// Finds and kills daemon processes, and starts zebra, through the shell. Line numbers in messages
// are fixed by the interface.

#include "ospf/frr_ospf_process.h"

#include <cstdio>
#include <cstring>

#include "common/front_end.h"
#include "common/outside.h"
#include "common/text.h"
#include "common/uninterrupted.h"
#include "vty/manager.h"

namespace {

constexpr unsigned kStartPauseSeconds = 1;

} // namespace

int32_t process_exist(const char *name, int32_t kill_flag) {
    if (name == nullptr) {
        return 0;
    }
    if (check_safe_string(name) == 0) {
        (void)puts("process_exist 225: check safe string failed!"); // for whoever reads it
        return 0;
    }
    char command[128];
    frruci::common::format(command, "ps -w | grep -v grep | grep %s", name);
    FILE *listing = frruci::outside::openListing(command);
    if (listing == nullptr) {
        return 0;
    }
    (void)record_log_act("frr_ospf:%d: popen\n", 213);
    int32_t count = 0;
    char line[512];
    while (frruci::common::readLine(listing, line)) {
        ++count;
        (void)record_log_act("frr_ospf:%d: popen %s\n", 215, line);
        if (kill_flag != 0) {
            (void)kill_process(line); // has no result
        }
    }
    frruci::outside::closeListing(listing);
    return count;
}

int32_t kill_process(char *ps_line) {
    char *rest = nullptr;
    const char *field = ps_line == nullptr ? nullptr : strtok_r(ps_line, " ", &rest);
    (void)record_log_act("frr_ospf:%d: strtok ret %s\n", 192, field == nullptr ? "(null)" : field);
    if (field == nullptr) {
        return 0;
    }
    const int32_t processId = frruci::common::number(field);
    (void)record_log_act("frr_ospf:%d: pid = %d\n", 195, processId);
    if (processId >= 1) {
        frruci::outside::killProcess(processId);
    }
    return 0;
}

int32_t zebra_enable(void) {
    if (process_exist("zebra", 0) != 0) {
        (void)record_log_act("frr_ospf:%d: zebra process exist\n", 180);
        return 0;
    }
    (void)frruci::vty::startDaemon("zebra -d "); // the next exchange tells
    frruci::outside::pauseFor(kStartPauseSeconds);
    (void)record_log_act("frr_ospf:%d: zebra_enable\n", 185);
    return 0;
}
