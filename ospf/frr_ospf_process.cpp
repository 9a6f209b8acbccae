// SPDX-License-Identifier: Apache-2.0
// Finds, kills and starts daemon processes through the shell.

#include "ospf/frr_ospf_process.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <unistd.h>

#include "common/front_end.h"
#include "common/shell.h"
#include "common/text.h"

namespace {

// Line numbers in messages; fixed, as support tools match on them.
constexpr int kZebraFoundLine = 180;
constexpr int kZebraStartedLine = 185;
constexpr int kFieldLine = 192;
constexpr int kProcessIdLine = 195;
constexpr int kListingLine = 213;
constexpr int kListedLine = 215;
constexpr int kUnsafeNameLine = 225;

constexpr unsigned kStartPauseSeconds = 1;

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
    FILE *listing = popen(command, "r");
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
    (void)pclose(listing); // grep's status only repeats the count
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
        (void)kill(processId, SIGKILL); // a process that is gone already is just as well
    }
    return 0;
}

int32_t zebra_enable(void) {
    if (process_exist("zebra", 0) != 0) {
        (void)record_log_act("frr_ospf:%d: zebra process exist\n", kZebraFoundLine);
        return 0;
    }
    frruci::common::runShell("zebra -d ");
    (void)sleep(kStartPauseSeconds);
    (void)record_log_act("frr_ospf:%d: zebra_enable\n", kZebraStartedLine);
    return 0;
}
