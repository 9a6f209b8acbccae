// SPDX-License-Identifier: Apache-2.0
// The table of handlers.

#include "host/handlers.h"

#include <cstring>

namespace frruci::host {

namespace {

constexpr const char *kReplyPipe = "ospf_pipe_c2lua"; // RIP answers here too
constexpr const char *kNeighborPipe = "ospf_pipe_c2lua_neighbor";
constexpr const char *kDatabasePipe = "ospf_pipe_c2lua_database";
constexpr const char *kNhrpPipe = "nhrp_pipe_c2lua";
constexpr const char *kCachePipe = "nhrp_pipe_c2lua_cache";

constexpr Handler kHandlers[] = {
    {"process_ospf_global",        "on|off ROUTER-ID",                                              kReplyPipe,    Ending::Word,   true },
    {"process_ospf_network",       "add|del ADDRESS MASK AREA",                                     kReplyPipe,    Ending::Word,   true },
    {"process_ospf_interface",     "show | NAME wan|lan KEYWORD VALUE [KEY-ID] [KEY]",              kReplyPipe,
     Ending::Word,                                                                                                                 true },
    {"process_ospf_advertise_cfg", "ORIGINATE ALWAYS METRIC METRIC-TYPE (answers nothing)",
     kReplyPipe,                                                                                                   Ending::Word,   true },
    {"process_ospf_ospf_cfg",      "DISTANCE RFC1583 SPF-DELAY SPF-HOLD SPF-MAX MAX-PATHS PASSIVE",
     kReplyPipe,                                                                                                   Ending::Word,   true },
    {"process_ospf_neighbor",      "",                                                              kNeighborPipe, Ending::Rows,   false},
    {"process_ospf_lsdb",          "",                                                              kDatabasePipe, Ending::Rows,   false},
    {"process_rip_global",         "on|off",                                                        kReplyPipe,    Ending::Word,   true },
    {"process_rip_config",         "KEYWORD VALUE [METRIC]",                                        kReplyPipe,    Ending::Word,   true },
    {"process_rip_interface",      "KEYWORD NAME [VALUE…] | show NAME",                           kReplyPipe,    Ending::Word,   true },
    {"process_rip_network",        "add|del ADDRESS MASK",                                          kReplyPipe,    Ending::Word,   true },
    {"process_nhrp_interface",     "ANY TUNNEL PHRASE…",                                          kNhrpPipe,     Ending::Word,   true },
    {"process_nhrp_global",        "ANY nflog-group|multicast-nflog-group GROUP",                   kNhrpPipe,     Ending::Word,
     true                                                                                                                               },
    {"process_nhrp_show",          "ANY ip nhrp cache",                                             kCachePipe,    Ending::Stream, true },
};

} // namespace

const Handler *findHandler(const char *name) {
    for (const Handler &handler : kHandlers) {
        if (strcmp(handler.name, name) == 0) {
            return &handler;
        }
    }
    return nullptr;
}

void listHandlers(FILE *out) {
    for (const Handler &handler : kHandlers) {
        (void)fprintf(out, "  %-27s %s\n", handler.name, handler.words);
    }
}

} // namespace frruci::host
