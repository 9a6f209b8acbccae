// SPDX-License-Identifier: Apache-2.0
// Any argument vector for any OSPF handler. The input is lines: the handler's letter (g, n, i, a or
// o), what argc says more than there are words, then a word each; "~" alone is a null entry. What
// lies below the handlers is this program's own: it looks at what would be sent and replied.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "common/front_end.h"
#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_enable.h"
#include "ospf/frr_ospf_process.h"
#include "ospf/sw_ospf.h"
#include "ospf/vty_ospf.h"
#include "tests/fuzz/request.h"

namespace {

using namespace fuzz;

constexpr std::size_t kMostCommand = 255;

int replies = 0;
int commands = 0;
int calls = 0;

bool begins(const char *text, const char *prefix) {
    return strncmp(text, prefix, strlen(prefix)) == 0;
}

/// Half of what is sent fails.
uint32_t outcome() {
    return static_cast<uint32_t>(++calls % 2);
}

} // namespace

uint32_t doVtyOspfConfigInterface(uint32_t, const char *name, uint32_t wan, const char *command) {
    insist(name != nullptr && wan <= 1);
    insist(strlen(command) <= kMostCommand);
    insist(command[0] == '\0' || begins(command, "ip ospf ") || begins(command, "no ip ospf "));
    ++commands;
    return outcome();
}

int32_t write_pipe_to_lua(const char *text, const char *path) {
    insist(strcmp(text, "ok") == 0 && strcmp(path, "/tmp/tmp/ospf_pipe_c2lua") == 0);
    ++replies;
    return 0;
}

int32_t record_log_act(const char *format, ...) {
    insist(begins(format, "frr_ospf:%d: "));
    return 0;
}

int32_t ospf_enable(const char *router_id_text) {
    insist(router_id_text != nullptr);
    return static_cast<int32_t>(outcome());
}

int32_t process_exist(const char *name, int32_t kill_flag) {
    insist(name != nullptr && (kill_flag == 0 || kill_flag == 1));
    return static_cast<int32_t>(outcome());
}

uint32_t swOspfNetwork(uint32_t, const char *address, const char *mask, uint32_t, uint32_t set,
                       uint32_t selector) {
    insist(address != nullptr && mask != nullptr && set <= 1 && selector <= 1);
    ++commands;
    return outcome();
}

uint32_t swOspfOrignate(uint32_t, uint32_t always, int32_t, uint32_t hasMetric, int32_t,
                        uint32_t hasMetricType, uint32_t set) {
    insist(always <= 1 && hasMetric == 1 && hasMetricType == 1 && set <= 1);
    ++commands;
    return outcome();
}

uint32_t swOspfdistance(uint32_t, uint32_t set, int32_t) {
    insist(set == 1);
    ++commands;
    return outcome();
}

uint32_t swOspfRfc1583Compa(uint32_t, uint32_t set) {
    insist(set <= 1);
    ++commands;
    return outcome();
}

uint32_t swOspfTimerThrottleSpf(uint32_t, uint32_t set, int32_t, int32_t, int32_t) {
    insist(set == 1);
    ++commands;
    return outcome();
}

uint32_t swOspfMaxPaths(uint32_t, uint32_t set, int32_t) {
    insist(set == 1);
    ++commands;
    return outcome();
}

uint32_t swOspfPassiveInterface(uint32_t, uint32_t set) {
    insist(set <= 1);
    ++commands;
    return outcome();
}

int32_t swOspfShowOspf(uint16_t, const char *what, int32_t mode) {
    insist(strcmp(what, "interface") == 0 && mode == 1);
    return static_cast<int32_t>(outcome());
}

namespace {

struct Handler {
    char letter;
    void (*call)(int32_t, char **);
    int words;    ///< it needs at the least
    int commands; ///< it sends at the most
    int replies;  ///< it writes at the most
};

constexpr Handler kHandlers[] = {
    {'g', process_ospf_global,        1, 0, 1},
    {'n', process_ospf_network,       4, 2, 1},
    {'i', process_ospf_interface,     1, 2, 1},
    {'a', process_ospf_advertise_cfg, 4, 1, 0},
    {'o', process_ospf_ospf_cfg,      7, 5, 1},
};

int wordsOf(const Request &request, int32_t argc) {
    int count = 0;
    while (count < argc && request.words[count] != nullptr) {
        ++count;
    }
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    static Request request;
    read(data, size, request);
    const int32_t argc = argcOf(request);
    for (const Handler &handler : kHandlers) {
        if (handler.letter != request.head[0]) {
            continue;
        }
        replies = 0;
        commands = 0;
        calls = size % 2 == 0 ? 0 : 1;
        handler.call(argc, request.words);
        const bool works = wordsOf(request, argc) >= handler.words;
        insist(commands <= (works ? handler.commands : 0));
        insist(replies <= (works ? handler.replies : 0));
        handler.call(argc, nullptr);
    }
    return 0;
}
