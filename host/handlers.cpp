// SPDX-License-Identifier: Apache-2.0
// The tables of handlers and of their words.

#include "host/handlers.h"

#include <iterator>

#include "host/streams.h"
#include "host/words.h"

namespace frruci::host {

namespace {

constexpr const char *kReplyPipe = "ospf_pipe_c2lua"; // RIP answers here too
constexpr const char *kNeighborPipe = "ospf_pipe_c2lua_neighbor";
constexpr const char *kDatabasePipe = "ospf_pipe_c2lua_database";
constexpr const char *kNhrpPipe = "nhrp_pipe_c2lua";
constexpr const char *kCachePipe = "nhrp_pipe_c2lua_cache";

constexpr const char *kOspfSwitch = "process_ospf_global";
constexpr const char *kOspfNetwork = "process_ospf_network";
constexpr const char *kOspfInterface = "process_ospf_interface";
constexpr const char *kOspfDefault = "process_ospf_advertise_cfg";
constexpr const char *kOspfOptions = "process_ospf_ospf_cfg";
constexpr const char *kOspfNeighbors = "process_ospf_neighbor";
constexpr const char *kOspfDatabase = "process_ospf_lsdb";
constexpr const char *kRipSwitch = "process_rip_global";
constexpr const char *kRipConfig = "process_rip_config";
constexpr const char *kRipInterface = "process_rip_interface";
constexpr const char *kRipNetwork = "process_rip_network";
constexpr const char *kNhrpInterface = "process_nhrp_interface";
constexpr const char *kNhrpGlobal = "process_nhrp_global";
constexpr const char *kNhrpShow = "process_nhrp_show";

using enum Ending;

} // namespace

constexpr Handler kHandlers[] = {
    {kOspfSwitch,    kReplyPipe,    kWord,   true,  true,  "switch OSPF on or off"               },
    {kOspfNetwork,   kReplyPipe,    kWord,   true,  false, "announce a network by OSPF"          },
    {kOspfInterface, kReplyPipe,    kWord,   true,  false, "set OSPF on an interface"            },
    {kOspfDefault,   kReplyPipe,    kNone,   true,  false, "originate a default route by OSPF"   },
    {kOspfOptions,   kReplyPipe,    kWord,   true,  false, "set the options of OSPF"             },
    {kOspfNeighbors, kNeighborPipe, kRows,   false, false, "the neighbours' rows of the web page"},
    {kOspfDatabase,  kDatabasePipe, kRows,   false, false, "the database's rows of the web page" },
    {kRipSwitch,     kReplyPipe,    kWord,   true,  true,  "switch RIP on or off"                },
    {kRipConfig,     kReplyPipe,    kWord,   true,  false, "set an option of RIP"                },
    {kRipInterface,  kReplyPipe,    kWord,   true,  false, "set RIP on an interface"             },
    {kRipNetwork,    kReplyPipe,    kWord,   true,  false, "run RIP on a network"                },
    {kNhrpInterface, kNhrpPipe,     kWord,   true,  false, "set NHRP on a tunnel"                },
    {kNhrpGlobal,    kNhrpPipe,     kWord,   true,  false, "set an option of NHRP, or restart it"},
    {kNhrpShow,      kCachePipe,    kStream, true,  false, "the NHRP cache of the web page"      },
};
constexpr std::size_t kHandlerCount = std::size(kHandlers);

constexpr Form kForms[] = {
    {kOspfSwitch,    "on ROUTER-ID=ADDRESS"                                                       },
    {kOspfSwitch,    "off ANY"                                                                    },
    {kOspfNetwork,   "add|del ADDRESS MASK AREA=0..4294967295"                                    },
    {kOspfInterface, "show"                                                                       },
    {kOspfInterface, "IFNAME wan|lan cost COST=1..65535"                                          },
    {kOspfInterface, "IFNAME wan|lan retransmit SECONDS=1..65535"                                 },
    {kOspfInterface, "IFNAME wan|lan transmit SECONDS=1..65535"                                   },
    {kOspfInterface, "IFNAME wan|lan priority PRIORITY=0..255"                                    },
    {kOspfInterface, "IFNAME wan|lan hello SECONDS=1..65535"                                      },
    {kOspfInterface, "IFNAME wan|lan dead SECONDS=1..65535"                                       },
    {kOspfInterface, "IFNAME wan|lan network_type TYPE=0..2"                                      },
    {kOspfInterface, "IFNAME wan|lan mtu_ignore 0|1"                                              },
    {kOspfInterface, "IFNAME wan|lan passive 0|1"                                                 },
    {kOspfInterface, "IFNAME wan|lan auto_type 0"                                                 },
    {kOspfInterface, "IFNAME wan|lan auto_type 1 KEY8"                                            },
    {kOspfInterface, "IFNAME wan|lan auto_type 2 KEY-ID=1..255 KEY16"                             },
    {kOspfDefault,   "ORIGINATE=enable|disable ALWAYS=enable|disable METRIC=0..16777214 TYPE=1..2"},
    {kOspfOptions,   "DISTANCE=1..255 RFC1583=enable|disable DELAY=0..600000 HOLD=0..600000 "
                   "MAXIMUM=0..600000 PATHS=1..256 PASSIVE=enable|disable"      },
    {kOspfNeighbors, ""                                                                           },
    {kOspfDatabase,  ""                                                                           },
    {kRipSwitch,     "on|off"                                                                     },
    {kRipConfig,     "rip_version ripv1|ripv2|default"                                            },
    {kRipConfig,     "rip_distance DISTANCE=1..255"                                               },
    {kRipConfig,     "auto_summary enable|disable"                                                },
    {kRipConfig,     "default_metric METRIC=1..16"                                                },
    {kRipConfig,     "redistribute_static enable|disable METRIC=0..16"                            },
    {kRipConfig,     "redistribute_ospf enable|disable METRIC=0..16"                              },
    {kRipConfig,     "update_timer SECONDS=5..100"                                                },
    {kRipConfig,     "timeout_timer SECONDS=5..300"                                               },
    {kRipConfig,     "garbage_timer SECONDS=5..500"                                               },
    {kRipInterface,  "split_horizon_mode IFNAME none|split_horizon|poison_reverse"                },
    {kRipInterface,  "send_version IFNAME ripv1|ripv2"                                            },
    {kRipInterface,  "receive_version IFNAME ripv1|ripv2|both"                                    },
    {kRipInterface,  "authen_mode IFNAME none"                                                    },
    {kRipInterface,  "authen_mode IFNAME simple ANY KEY16"                                        },
    {kRipInterface,  "authen_mode IFNAME md5 KEY-ID=1..255 KEY16"                                 },
    {kRipInterface,  "show ANY"                                                                   },
    {kRipNetwork,    "add|del ADDRESS NETMASK"                                                    },
    {kNhrpInterface, "ANY IFNAME ip address PREFIX"                                               },
    {kNhrpInterface, "ANY IFNAME ip nhrp network-id ID=1..4294967295"                             },
    {kNhrpInterface, "ANY IFNAME ip nhrp redirect|shortcut"                                       },
    {kNhrpInterface, "ANY IFNAME ip nhrp registration no-unique"                                  },
    {kNhrpInterface, "ANY IFNAME ip nhrp nhs dynamic nbma HOST"                                   },
    {kNhrpInterface, "ANY IFNAME ip nhrp map multicast ADDRESS"                                   },
    {kNhrpInterface, "ANY IFNAME tunnel protection vici profile WORD"                             },
    {kNhrpInterface, "ANY IFNAME tunnel source IFNAME"                                            },
    {kNhrpInterface, "ANY IFNAME tunnel add|connect|del WORD WORD"                                },
    {kNhrpInterface, "ANY IFNAME no link-detect"                                                  },
    {kNhrpInterface, "ANY IFNAME no ip address PREFIX"                                            },
    {kNhrpInterface, "ANY IFNAME no ip nhrp nhs dynamic nbma HOST"                                },
    {kNhrpInterface, "ANY IFNAME no ip nhrp shortcut"                                             },
    {kNhrpInterface, "ANY IFNAME no ip nhrp map multicast ADDRESS"                                },
    {kNhrpGlobal,    "restart"                                                                    },
    {kNhrpGlobal,    "ANY nflog-group GROUP=1..65535"                                             },
    {kNhrpGlobal,    "ANY multicast-nflog-group GROUP=1..65535"                                   },
    {kNhrpShow,      "ANY ip nhrp cache"                                                          },
};
constexpr std::size_t kFormCount = std::size(kForms);

namespace {

/// How many of the words, from the first on, fit the form.
int fitting(const char *form, int count, char **words) {
    int fitted = 0;
    for (Token token; fitted < count && nextToken(form, token) && fits(token, words[fitted]);) {
        ++fitted;
    }
    return fitted;
}

bool isWhole(const char *form, int count, char **words) {
    return tokensOf(form) == count && fitting(form, count, words) == count;
}

/// The form that the words come nearest to: the greatest number of fitting words.
int furthest(const Handler &handler, int count, char **words) {
    int best = 0;
    for (const Form &form : kForms) {
        const int fitted = form.handler == handler.name ? fitting(form.words, count, words) : 0;
        best = fitted > best ? fitted : best;
    }
    return best;
}

/// Whether a form of the handler goes on at a place, after the words before it.
bool goesOn(const Form &form, const Handler &handler, int place, char **words) {
    return form.handler == handler.name && tokensOf(form.words) > place &&
           fitting(form.words, place, words) == place;
}

/// What may stand at a place after the words before it, each once; empty when nothing may.
void addAllowed(const Handler &handler, int place, char **words, Text &text) {
    List<Token> told;
    for (const Form &form : kForms) {
        if (!goesOn(form, handler, place, words)) {
            continue;
        }
        const Token token = tokenAt(form.words, place);
        bool known = false;
        for (const Token &earlier : told) {
            known = known || earlier.allowed == token.allowed;
        }
        if (!known) {
            told.add(token);
            text.add(text.size() == 0 ? "" : ", ");
            describe(token, text);
        }
    }
    told.release();
}

/// Whether the word would be a key if it fitted; then it is not shown.
bool mayBeSecret(const Handler &handler, int place, char **words) {
    for (const Form &form : kForms) {
        if (goesOn(form, handler, place, words) && isSecret(tokenAt(form.words, place))) {
            return true;
        }
    }
    return false;
}

Status refuse(const Handler &handler, int count, char **words) {
    const int place = furthest(handler, count, words);
    Text allowed;
    addAllowed(handler, place, words, allowed);
    if (allowed.size() == 0) {
        return wrongUsage("%s: word %d is one too many", handler.name, place + 1);
    }
    if (place >= count) {
        return wrongUsage("%s: word %d is missing; allowed: %s", handler.name, place + 1,
                          allowed.get());
    }
    return wrongUsage("%s: word %d is \"%s\"; allowed: %s", handler.name, place + 1,
                      mayBeSecret(handler, place, words) ? "***" : words[place], allowed.get());
}

} // namespace

const Handler *findHandler(const char *name) {
    for (const Handler &handler : kHandlers) {
        if (equals(handler.name, name)) {
            return &handler;
        }
    }
    return nullptr;
}

Status checkWords(const Handler &handler, int count, char **words) {
    for (const Form &form : kForms) {
        if (form.handler == handler.name && isWhole(form.words, count, words)) {
            return kAccepted;
        }
    }
    return refuse(handler, count, words);
}

bool isSecretWord(const Handler &handler, int count, char **words, int index) {
    for (const Form &form : kForms) {
        if (form.handler == handler.name && isWhole(form.words, count, words)) {
            return isSecret(tokenAt(form.words, index));
        }
    }
    return false;
}

void addForms(const Handler &handler, Text &text) {
    for (const Form &form : kForms) {
        if (form.handler == handler.name) {
            text.addf("  %s%s%s\n", handler.name, *form.words == '\0' ? "" : " ", form.words);
        }
    }
}

} // namespace frruci::host
