// SPDX-License-Identifier: Apache-2.0
// The table of requests: every handler, both recoveries, every call of the store, and the start.

#include "tests/fault/requests.h"

#include <cstdlib>

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "nhrp/frr_nhrp.h"
#include "nhrp/sw_nhrp.h"
#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_process.h"
#include "ospf/frr_ospf_recovery.h"
#include "ospf/sw_ospf.h"
#include "ospf/vty_ospf.h"
#include "rip/frr_rip.h"
#include "rip/frr_rip_recovery.h"
#include "rip/sw_rip.h"
#include "vty/frr_util.h"
#include "vty/startup.h"
#include "vty/views.h"

namespace fault {

namespace {

/// A function with another form than a handler's; its result is not looked at.
template <auto function> void call(int32_t /*argc*/, char ** /*argv*/) {
    (void)function();
}

/// A handler that has a result.
template <auto function> void handle(int32_t argc, char **argv) {
    (void)function(argc, argv);
}

void storeSet(int32_t argc, char **argv) {
    (void)frr_uci_set(argv[0], argv[1], argv[2], argc > 3 ? argv[3] : "");
}

void storeGet(int32_t /*argc*/, char **argv) {
    char text[16];
    (void)frr_uci_get(argv[0], argv[1], argv[2], text, sizeof text);
}

void storeAdd(int32_t /*argc*/, char **argv) {
    (void)frr_uci_add_section(argv[0], argv[1], argv[2]);
}

int32_t visit(uci_context * /*context*/, uci_section * /*section*/) {
    return 0;
}

void storeWalk(int32_t /*argc*/, char **argv) {
    frr_uci_foreach_section(argv[0], argv[1], visit);
}

void ask(int32_t /*argc*/, char **argv) {
    (void)check_network_ip(argv[0]);
}

void askVlans(int32_t /*argc*/, char **argv) {
    (void)sw_is_lan_vid(atoi(argv[0]));
    (void)sw_is_wan_vid(atoi(argv[0]));
}

void reply(int32_t /*argc*/, char **argv) {
    (void)write_pipe_to_lua(argv[0], "/tmp/tmp/ospf_pipe_c2lua");
}

void exists(int32_t argc, char **argv) {
    (void)process_exist(argv[0], argc - 1);
}

void runInView(int32_t /*argc*/, char **argv) {
    dlist *parameters = nullptr;
    char answer[513] = {};
    if (frrVtyParamInit(&parameters) == 0) {
        (void)frrVtyParamStrSet(&parameters, "vid", argv[0]);
        (void)frrVtyAutoRun("interface_view", "/var/zebra.vty", argv[1], &parameters, 512, answer);
    }
}

void viewTwice(int32_t /*argc*/, char **argv) {
    (void)frrVtyViewReg(argv[0], argv[1]);
    (void)frrVtyViewReg(argv[0], argv[1]);
    (void)frrVtyViewUnreg(argv[0]);
}

constexpr Request kRequests[] = {
  // ---- start-up ----
    {"frrVtyInit",                call<frrVtyInit>,                                              "",                                                                                kCold},
    {"swOspfInit",                           call<swOspfInit>,                                                                             "",                                                                                                                    kCold},
    {"swRipInit",                      call<swRipInit>,                                                                                   "",                                       kCold},
    {"frr_process_init",                         call<frr_process_init>,"",                                          kCold},
    {"frr_uci_init",call<frr_uci_init>                                         },
 // ---- the store ----
    {"store: change",              storeSet,                                                                             "ospf global status off"                                                                            },
    {"store: change by path",      storeSet,"/etc/config/ospf global status off"                                                                                                                    },
    {"store: new option",              storeSet,                                                                         "nhrp sdwan added 1"},
    {"store: remove option",      storeSet,"ospf global router_id"                                     },
    {"store: no section",              storeSet,                                                                              "ospf none status off"                                                                                    },
    {"store: no package",      storeSet,"none none status off"                                                                                                                         },
    {"store: read",              storeGet,                                                                                      "ospf global status"},
    {"store: read by path",      storeGet,"/etc/config/nhrp sdwan enable"                                             },
    {"store: add section",              storeAdd,                                                                                   "ospf added cfg"                                                                              },
    {"store: walk",      storeWalk,"ospf interface"                                                                                                                      },
 // ---- the front-end and the processes ----
    {"reply",             reply,                                                                                          "ok"},
    {"address",          ask,"10.1.2.3"                                                    },
    {"address of a VLAN",               ask,                                                                                         "10.1.2.3",                                                                                        kStopped},
    {"VLANs",          askVlans,"10"                                                                                                                     },
    {"process_exist",                     exists,                                                                 "ospfd"},
    {"process_exist, kill",             exists,                                                "ospfd kill"                                                                                                                                                                         },
    {"zebra_enable",       call<zebra_enable>,                                                  "",                                                          kStopped},
    {"zebra_enable, managed",              call<zebra_enable>,                                                   "",                                                                        kStopped | kManaged},
    {"nhrp_enable",                           call<nhrp_enable>,                                                                  "",                                                                                 kStopped},
    {"nhrp_enable, managed",        call<nhrp_enable>,                                                                     "",                                                                                                                    kStopped | kManaged},
    {"view",                         runInView,             "10 shutdown",                                                                   kView},
    {"view, managed",   runInView,"10 shutdown",              kView | kManaged},
    {"register a view",                      viewTwice,                                                  "mine enable"},
 // ---- OSPF ----
    {"ospf on",                           process_ospf_global,                                                                          "on 1.1.1.1"                                                                                                         },
    {"ospf on, from nothing",           process_ospf_global,                                                                        "on 1.1.1.1",                                                                                                                                                kStopped},
    {"ospf on, managed",              process_ospf_global,                          "on 1.1.1.1",                                                                                                                            kStopped | kManaged},
    {"ospf off",               process_ospf_global,   "off 1.1.1.1"                                                                                                                                                              },
    {"ospf network add",               process_ospf_network,"add 10.0.0.0 255.0.0.0 5"},
    {"ospf network del",process_ospf_network,                   "del 10.0.0.0 255.0.0.0 5"},
    {"ospf cost",                  process_ospf_interface,                                              "eth1.2 wan cost 20"},
    {"ospf hello",          process_ospf_interface,                                     "eth1.2 wan hello 15"                                                                                                               },
    {"ospf dead",          process_ospf_interface,                                                         "eth1.2 wan dead 60"                                                                                               },
    {"ospf retransmit",                 process_ospf_interface,                                       "eth1.2 wan retransmit 6"                                                                                             },
    {"ospf transmit",                process_ospf_interface,                                              "eth1.2 wan transmit 2"                                                      },
    {"ospf priority",                 process_ospf_interface,                                               "eth1.2 wan priority 9"                                                                     },
    {"ospf mtu_ignore",           process_ospf_interface,                                  "eth1.2 wan mtu_ignore 0"                                                   },
    {"ospf passive",             process_ospf_interface,                                     "eth1.2 wan passive 1"                                                   },
    {"ospf network_type",             process_ospf_interface,                                    "eth1.2 wan network_type 1"                                                 },
    {"ospf password",           process_ospf_interface,                                        "eth1.2 lan auto_type 1 secret"                                               },
    {"ospf digest",              process_ospf_interface,                                         "eth1.2 lan auto_type 2 5 abc"                                                              },
    {"ospf show",         process_ospf_interface,                                    "show"                                                               },
    {"ospf advertise",             process_ospf_advertise_cfg,                                          "enable enable 20 1"                                                      },
    {"ospf cfg",               process_ospf_ospf_cfg,                                         "120 enable 10 100 2000 8 enable"                                                    },
    {"ospf neighbors",                 call<process_ospf_neighbor>                                               },
    {"ospf database",            call<process_ospf_lsdb>                                  },
    {"ospf recovery",                  call<ospf_cfg_recovery>                                           },
    {"ospf recovery, stopped",            call<ospf_cfg_recovery>,                              "",                                                    kStopped},
 // ---- RIP ----
    {"rip on",process_rip_global,                    "on",                                                                                        kView},
    {"rip on, from nothing",                           process_rip_global,                      "on",                                                       kView | kStopped},
    {"rip on, managed",                   process_rip_global,                                                                                "on",                                                    kView | kStopped | kManaged},
    {"rip off",                       process_rip_global,                                                            "off",                                                                kView},
    {"rip version",process_rip_config,                   "rip_version ripv1",                                                                                       kView},
    {"rip version, managed",           process_rip_config,                                    "rip_version ripv1",                                                                     kView | kManaged},
    {"rip distance",                           process_rip_config,                                                                                "rip_distance 77",                                                                                                       kView},
    {"rip auto_summary",                      process_rip_config,                                                                                   "auto_summary enable",                                                      kView},
    {"rip default_metric",        process_rip_config,                                              "default_metric 16",                              kView},
    {"rip static",process_rip_config,      "redistribute_static enable 5",                                  kView},
    {"rip ospf",              process_rip_config,                               "redistribute_ospf disable 0",                                                                                                                         kView},
    {"rip update_timer",                           process_rip_config,                                                                       "update_timer 100",                                                                                         kView},
    {"rip timeout_timer",                      process_rip_config,                                                                                   "timeout_timer 300",                                         kView},
    {"rip garbage_timer",        process_rip_config,                   "garbage_timer 500",   kView},
    {"rip split horizon",           process_rip_interface,                                     "split_horizon_mode eth1.10 poison_reverse"               },
    {"rip send",                  process_rip_interface,                                                "send_version eth1.10 ripv2"                                                                                                                },
    {"rip receive",                           process_rip_interface,                                                                       "receive_version eth1.10 both"                                                                                           },
    {"rip md5",                      process_rip_interface,                                                                                   "authen_mode eth1.10 md5 255 secret",                                                                       kView},
    {"rip simple",        process_rip_interface,"authen_mode eth1.10 simple 7 secret",                                                                                kView},
    {"rip no authentication",  process_rip_interface,                          "authen_mode eth1.10 none",                                                                      kView},
    {"rip show",         process_rip_interface,                                       "show any"                                                                                                           },
    {"rip network add",                  process_rip_network,                                         "add 10.0.0.0 255.0.0.0",                                                          kView},
    {"rip network delete",               process_rip_network,                             "delete 10.0.0.0 255.0.0.0",                       kView},
    {"rip recovery",                   call<rip_cfg_recovery>,                                      "",                                                                                                    kView},
    {"rip recovery, stopped",                           call<rip_cfg_recovery>,                                                                             "",                                         kView | kStopped},
 // ---- NHRP ----
    {"nhrp restart",                      process_nhrp_global,                                                                                   "nhrp"                                              },
    {"nhrp nflog-group", process_nhrp_global,                                "x nflog-group 3"         },
    {"nhrp multicast group",process_nhrp_global,           "x multicast-nflog-group 3"},
    {"nhrp address",process_nhrp_interface,"x tun0 ip address 10.9.0.1/24"                                                                                                                                 },
    {"nhrp no address",        process_nhrp_interface,                                    "x tun0 no ip address 10.9.0.1/24"                                                              },
    {"nhrp map",                           process_nhrp_interface,                                                                           "x tun0 ip nhrp map multicast 10.9.0.1"                                           },
    {"nhrp no map",                      process_nhrp_interface,                                                                                   "x tun0 no ip nhrp map multicast 10.9.0.1"},
    {"nhrp network-id",                         process_nhrp_interface,"x tun0 ip nhrp network-id 5"      },
    {"nhrp nhs",process_nhrp_interface,"x tun0 ip nhrp nhs dynamic nbma 10.9.0.1"                                                             },
    {"nhrp no nhs",        process_nhrp_interface,                     "x tun0 no ip nhrp nhs dynamic nbma 10.9.0.1"                                                                                                                   },
    {"nhrp redirect",           process_nhrp_interface,                                   "x tun0 ip nhrp redirect"                                          },
    {"nhrp no-unique",               process_nhrp_interface,                                                          "x tun0 ip nhrp registration no-unique"                                  },
    {"nhrp shortcut",process_nhrp_interface,"x tun0 ip nhrp shortcut"},
    {"nhrp no shortcut",process_nhrp_interface,"x tun0 no ip nhrp shortcut"                                                                                            },
    {"nhrp no link-detect",process_nhrp_interface,"x tun0 no link-detect"                                                                                                                   },
    {"nhrp tunnel add",process_nhrp_interface,                    "x tun0 tunnel add 10.9.0.1 b"         },
    {"nhrp tunnel connect",                   process_nhrp_interface,                                                                               "x tun0 tunnel connect 10.9.0.1 b"        },
    {"nhrp tunnel del",process_nhrp_interface,"x tun0 tunnel del 10.9.0.1 b"},
    {"nhrp profile",process_nhrp_interface,"x tun0 tunnel protection vici profile overlay"                 },
    {"nhrp source",process_nhrp_interface,"x tun0 tunnel source eth0.2"                                                                                              },
    {"nhrp cache",        process_nhrp_show,                                                       "x ip nhrp cache"                                                                                                  },
};

} // namespace

std::span<const Request> requests() {
    return kRequests;
}

} // namespace fault
