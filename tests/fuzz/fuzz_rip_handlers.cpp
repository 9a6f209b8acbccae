// SPDX-License-Identifier: Apache-2.0
// Any argument vector for any RIP handler. The input is lines: the handler's letter (see kHandlers)
// and ripd's completion code as one digit, what argc says more than there are words, then a word
// each; "~" alone is a null entry.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "rip/frr_rip.h"
#include "rip/sw_rip.h"
#include "tests/fuzz/rehearsal.h"
#include "tests/fuzz/request.h"
#include "vty/startup.h"

namespace {

using namespace fuzz;

void clear(dlist *list) {
    while (list->head != nullptr) {
        insist(dlistDelete(list, list->head) == 0);
    }
}

} // namespace

// In place of the library's own, which keeps the list: a leak with every input would be looked into
// with every input.
void dlistDestroy(dlist *list) {
    clear(list);
    free(list);
}

namespace {

struct Handler {
    char letter;
    void (*dispatch)(int32_t, char **);  // replies when its words are there
    int32_t minimum;                     // of argc
    int32_t present;                     // words that must not be null
    int32_t (*handle)(int32_t, char **); // never replies
};

constexpr Handler kHandlers[] = {
    {'g', process_rip_global,    1, 1, nullptr                                 },
    {'c', process_rip_config,    1, 1, nullptr                                 },
    {'i', process_rip_interface, 2, 1, nullptr                                 },
    {'n', process_rip_network,   3, 3, nullptr                                 },
    {'A', nullptr,               0, 0, process_rip_config_version              },
    {'B', nullptr,               0, 0, process_rip_config_distance             },
    {'C', nullptr,               0, 0, process_rip_config_auto_summary         },
    {'D', nullptr,               0, 0, process_rip_config_default_metric       },
    {'E', nullptr,               0, 0, process_rip_config_redistribute_static  },
    {'F', nullptr,               0, 0, process_rip_config_redistribute_ospf    },
    {'G', nullptr,               0, 0, process_rip_config_update_timer         },
    {'H', nullptr,               0, 0, process_rip_config_timeout_timer        },
    {'I', nullptr,               0, 0, process_rip_config_garbage_timer        },
    {'J', nullptr,               0, 0, process_rip_interface_split_horizon_mode},
    {'K', nullptr,               0, 0, process_rip_interface_send_version      },
    {'L', nullptr,               0, 0, process_rip_interface_recv_version      },
    {'M', nullptr,               0, 0, process_rip_interface_authen            },
    {'N', nullptr,               0, 0, process_rip_interface_show              },
};

/// The digit after the handler's letter.
uint8_t codeOf(const Request &request) {
    const char digit = request.head[0] != '\0' ? request.head[1] : '\0';
    return digit >= '0' && digit <= '9' ? static_cast<uint8_t>(digit - '0') : 0;
}

bool isAnswered(const Handler &handler, const Request &request, int32_t argc) {
    return handler.dispatch != nullptr && argc >= handler.minimum &&
           std::all_of(request.words, request.words + handler.present,
                       [](char *word) { return word != nullptr; });
}

void checkSessions(const Rehearsal &rehearsal) {
    for (const Line &line : rehearsal.lines) {
        // Not a session; or the walk begins as it must.
        insist(line.commands.empty() || line.commands == "/var/ripd.vty" ||
               line.commands.rfind("/var/ripd.vty | enable", 0) == 0 ||
               line.commands == "/var/ripd.vty | show ip rip status");
    }
}

void checkReplies(const Rehearsal &rehearsal, bool answered) {
    insist(rehearsal.replies.size() == (answered ? 1U : 0U));
    for (const std::string &reply : rehearsal.replies) {
        insist(reply == "/tmp/tmp/ospf_pipe_c2lua: ok");
    }
    for (const std::string &command : rehearsal.shells) {
        insist(isKnownShell(command));
    }
}

void checkInterfaces() {
    for (const dlist_node *entry = gRipIfList->head; entry != nullptr; entry = entry->next) {
        const auto &interface = *static_cast<const RipInterfaceNode *>(entry->data);
        insist(interface.send_version <= 3 && interface.recv_version <= 3);
        insist(interface.auth_type <= 2 && interface.auth_keyid >= 1 &&
               interface.auth_keyid <= 255);
        insist(interface.split_horizon <= 1 && interface.poison_reverse == 0);
        insist(interface.auth_str[16] == '\0');
        insist(interface.vlan_id == (interface.key.type == 1 ? interface.key.vid : 0));
    }
}

void checkInstance(const RipVrfNode &vrf) {
    insist(vrf.version <= 2 && vrf.auto_summary <= 1 && vrf.default_metric <= 16);
    insist(vrf.distance >= 1 && vrf.update_timer >= 5 && vrf.update_timer <= 100);
    insist(vrf.timeout_timer >= 5 && vrf.timeout_timer <= 300);
    insist(vrf.garbage_timer >= 5 && vrf.garbage_timer <= 500);
}

/// The instance that every request works on; made once, as its model stays for the process's life.
RipVrfNode *prepare() {
    static RipVrfNode *vrf = nullptr;
    if (vrf == nullptr) {
        insist(frrVtyInit() == 0 && swRipInit() == 0 && ucRipVrfAppend("default", &vrf) == 0);
    }
    clear(vrf->networks);
    clear(gRipIfList);
    return vrf;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    static Request request;
    read(data, size, request);
    const int32_t argc = argcOf(request, kMaxWords);
    const auto *handler =
        std::find_if(std::begin(kHandlers), std::end(kHandlers),
                     [](const Handler &each) { return each.letter == request.head[0]; });
    if (handler == std::end(kHandlers)) {
        return 0;
    }
    const RipVrfNode *vrf = prepare();
    Rehearsal rehearsal;
    rehearsal.code = codeOf(request);
    if (handler->dispatch != nullptr) {
        handler->dispatch(argc, request.words);
    } else {
        (void)handler->handle(argc, request.words);
    }
    checkSessions(rehearsal);
    checkReplies(rehearsal, isAnswered(*handler, request, argc));
    // A view whose step was refused leaves its session open.
    insist(rehearsal.leftOpen() == 0 || rehearsal.code != 0);
    checkInstance(*vrf);
    checkInterfaces();
    return 0;
}
