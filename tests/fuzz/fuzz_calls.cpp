// SPDX-License-Identifier: Apache-2.0
// Any sequence of calls of what hosts may call, over all rooms, in a rehearsal. The input is lines:
// a function's name, then a word for each argument (see take); "~" is a null one, and "+" a space.
// The name "!" sets the daemons' completion code, "<" the text of answer files, "|" that of
// listings.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "common/address.h"
#include "common/dlist.h"
#include "common/front_end.h"
#include "common/frr_uci.h"
#include "nhrp/frr_nhrp.h"
#include "nhrp/sw_nhrp.h"
#include "nhrp/vty_nhrp.h"
#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_enable.h"
#include "ospf/frr_ospf_process.h"
#include "ospf/sw_ospf.h"
#include "ospf/uc_ospf.h"
#include "ospf/vty_ospf.h"
#include "rip/frr_rip.h"
#include "rip/sw_rip.h"
#include "rip/uc_rip.h"
#include "tests/fuzz/lists.h"
#include "tests/fuzz/rehearsal.h"
#include "vty/frr_util.h"
#include "vty/startup.h"
#include "vty/views.h"

namespace {

using namespace fuzz;

constexpr int kMaxLines = 96;
constexpr int kMaxArguments = 13;
constexpr std::size_t kRoomBytes = 16384; // for the largest record
constexpr std::size_t kMostSize = 1024;

constexpr char kShown[] = "eth1.2 is up\n  Internet Address 10.1.2.1/24\n"
                          "10.0.0.1 1 Full/DR 38s 10.1.2.2 eth1.2:10.1.2.1\neth1.20 2 1 2\n";

// ---- What the calls work on ----

dlist *parameters = nullptr;
dlist *sorted = nullptr;
int data[8] = {0, 1, 2, 3, 4, 5, 6, 7};

int32_t compareData(void *a, void *b) {
    return *static_cast<int *>(a) - *static_cast<int *>(b);
}

int32_t compareDown(void *a, void *b) {
    return compareData(b, a);
}

int32_t stopAt(void *context, void *item) {
    return *static_cast<int *>(item) == *static_cast<int *>(context) ? 2 : 0;
}

void sortList(dlist *list) {
    (void)dlistSort(list, compareDown);
}

void visitList(dlist *list, int32_t last) {
    (void)dlistVisit(list, stopAt, &last);
}

void insertAfterHead(dlist *list, void *item) {
    (void)dlistInsertAfter(list, list == nullptr ? nullptr : dlistHead(list), item);
    (void)dlistFindByKey(list, compareData, item);
}

void deleteTail(dlist *list) {
    (void)dlistDelete(list, list == nullptr ? nullptr : dlistTail(list));
}

int32_t visitSection(uci_context * /*context*/, uci_section * /*section*/) {
    return 0;
}

void walkSections(const char *package, const char *type) {
    frr_uci_foreach_section(package, type, visitSection);
}

/// What happens before the start-up.
void dropModels() {
    free(pucOspf);
    pucOspf = nullptr;
    gRipVrfList = nullptr;
    gRipIfList = nullptr;
}

void fillInterfaces() {
    for (uint32_t vlan = 100; vlan < 170; ++vlan) {
        (void)ucIpOspfMtuIgnore(vlan, 1);
    }
}

void fillProcesses() {
    for (uint16_t id = 1; id < 20; ++id) {
        (void)ucOspfEnableProcess(id);
    }
}

// ---- The functions ----

struct Call {
    const char *name;
    const char *arguments;
    void (*function)();
};

template <typename Function> void (*any(Function function))() {
    return reinterpret_cast<void (*)()>(function);
}

#define CALL(function, arguments)                                                                  \
    { #function, arguments, any(function) }
// clang-format off
const Call kCalls[] = {
    CALL(intIpToStrIp, "bn"),
    CALL(IpStr2Int, "tb"),
    CALL(ipStrCheck, "t"),
    CALL(maskStr2len, "tb"),
    CALL(mask_to_masklen, "n"),
    CALL(sw_ospf_inet_aton, "t"),
    CALL(rip_itoa, "nbn"),
    CALL(rip_atoi, "t"),
    CALL(check_safe_string, "t"),
    CALL(check_network_ip, "t"),
    CALL(sw_is_lan_vid, "n"),
    CALL(sw_is_wan_vid, "n"),
    CALL(write_pipe_to_lua, "tt"),
    CALL(frr_uci_set, "tttt"),
    CALL(frr_uci_get, "tttbR"),
    CALL(frr_uci_add_section, "ttt"),
    CALL(frr_uci_init, ""),
    CALL(frrVtyViewReg, "tt"),
    CALL(frrVtyViewUnreg, "t"),
    CALL(frrVtyParamInit, "h"),
    CALL(frrVtyParamFini, "h"),
    CALL(frrVtyParamStrSet, "htt"),
    CALL(frrVtyParamIntSet, "htn"),
    CALL(frrVtyParamGet, "htb"),
    CALL(frrVtyFPreCmdParse, "thRb"),
    CALL(frrVtyAutoRun, "ttthRb"),
    CALL(process_exist, "tn"),
    CALL(kill_process, "w"),
    CALL(zebra_enable, ""),
    CALL(ospf_enable, "t"),
    CALL(sysn_network, "nnn"),
    CALL(swOspfHasProcessId, "n"),
    CALL(swOspfGetCfg, "nr"),
    CALL(swOspfGetInEntry, "r"),
    CALL(swOspfProcessIsEnable, "n"),
    CALL(swOspfEnableProcess, "nn"),
    CALL(swOspfDisableProcess, "n"),
    CALL(swOspfGetVlanIdByInf, "nrb"),
    CALL(swOspfRouterId, "nnt"),
    CALL(swOspfGracefulRestart, "nn"),
    CALL(swOspfRfc1583Compa, "nn"),
    CALL(swOspfDefaultMetric, "nnn"),
    CALL(swOspfdistance, "nnn"),
    CALL(swOspfMaxPaths, "nnn"),
    CALL(swOspfAutoCostRef, "nnn"),
    CALL(swOspfPassiveInterface, "nn"),
    CALL(swOspfTimerThrottleSpf, "nnnnn"),
    CALL(swOspfOrignate, "nnnnnnn"),
    CALL(swOspfNetwork, "nttnnn"),
    CALL(swOspfRedistribute, "nnnnnnn"),
    CALL(swOspfArea, "ntnnn"),
    CALL(swOspfAreaSummary, "ntnnn"),
    CALL(swOspfAreaDefaultCost, "ntnnn"),
    CALL(swOspfAreaRange, "ntttnnnnn"),
    CALL(swOspfVirtualLink, "nttnnnnnnnnnn"),
    CALL(swOspfVirtualLinkAuth, "nttnn"),
    CALL(swOspfVirtualLinkAuthKey, "nttkn"),
    CALL(swOspfVirtualLinkMd5Key, "nttnkn"),
    CALL(swIpOspfHelloInterval, "nnnn"),
    CALL(swIpOspfDeadInterval, "nnnn"),
    CALL(swIpOspfRetransmitInterval, "nnnn"),
    CALL(swIpOspfTransmitDelay, "nnnn"),
    CALL(swIpOpsfCost, "nnnn"),
    CALL(swIpOspfPriority, "nnnn"),
    CALL(swIpOspfMtuIgnore, "nnn"),
    CALL(swIpOspfNetwork, "nnnn"),
    CALL(swIpOspfAuth, "nnnn"),
    CALL(swIpOspfAuthKey, "nnnk"),
    CALL(swIpOspfAuthM5dKey, "nnnnk"),
    CALL(swOspfShowOspf, "ntn"),
    CALL(swOspfShowOspfDatabase, "nd"),
    CALL(swShowOspfConfig, ""),
    CALL(ucOspfEnableProcess, "n"),
    CALL(ucOspfDefaultProcessByNum, "n"),
    CALL(ucOspfGetProcessPid, "n"),
    CALL(ucOspfGetCfg, "nr"),
    CALL(ucOspfGetInCfg, "nr"),
    CALL(ucOspfFindFreeInterface, ""),
    CALL(ucOspfFindInterfaceVlan, "n"),
    CALL(ucIpOpsfBasicSetParaByKey, "nnkn"),
    CALL(ucIpOpsfInfSetParaByKey, "nnvn"),
    CALL(ucIpOspfAuth, "nnn"),
    CALL(ucIpOspfAuthKey, "nnk"),
    CALL(ucIpOspfMtuIgnore, "nn"),
    CALL(ucIpOspfNetwork, "nnn"),
    CALL(ucIpOspfAuthM5dKey, "nnnk"),
    CALL(ucOspfDlistGetCfg, "nrrn"),
    CALL(ucOspfDlistSetCfg, "nrrn"),
    CALL(ucOspfAreaGetCfg, "nnr"),
    CALL(ucOspfAreaSetCfg, "nnr"),
    CALL(ucOspfAreaAggGetCfg, "nnnr"),
    CALL(ucOspfAreaAggSetCfg, "nnnr"),
    CALL(ucOspfVirtualLinkGetCfg, "nnr"),
    CALL(ucOspfVirtualLinkSetCfg, "nnr"),
    CALL(ucOspfNetworkGetCfg, "nnr"),
    CALL(ucOspfNetworkSetCfg, "nnr"),
    CALL(ucOspfAreaInsert, "nr"),
    CALL(ucOspfAreaAggInsert, "nr"),
    CALL(ucOspfVirtualLinkInsert, "nr"),
    CALL(ucOspfNetworkInsert, "nr"),
    CALL(ucOspfAreaInit, "r"),
    CALL(ucOspfAreaAggInit, "r"),
    CALL(ucOspfVirtualLinkInit, "r"),
    CALL(ucOspfRedistributeInit, "r"),
    CALL(ucOspfNetworkInit, "r"),
    CALL(ucOspfAreaDelete, "nnn"),
    CALL(ucOspfAreaRangeDelete, "nnn"),
    CALL(ucOspfVirtualLinkDelete, "nn"),
    CALL(ucOspfNetworkDelete, "nn"),
    CALL(ucOspfRedistribute, "nnnnnnnn"),
    CALL(ucOspfAreaIdComp, "rr"),
    CALL(ucOspfAreaAggComp, "rr"),
    CALL(ucOspfVirtualLinkComp, "rr"),
    CALL(ucOspfNetworkComp, "rr"),
    CALL(ucOspfRedistributeComp, "rr"),
    CALL(ucOspfInit, ""),
    CALL(vtyOspfConfigNetwork, "nntn"),
    CALL(ripInit, ""),
    CALL(ripNetworkNodeInit, "rtt"),
    CALL(ripNeighborNodeInit, "rt"),
    CALL(ripInterfaceNodeInit, "ri"),
    CALL(ucRipVrfAppend, "tb"),
    CALL(ucRipVrfRemoveByName, "t"),
    CALL(ucRipVrfFindByName, "tb"),
    CALL(ucRipNeighborAppend, "ttb"),
    CALL(ucRipNeighborRemoveByName, "tt"),
    CALL(ucRipNetworkNodeAppend, "tttb"),
    CALL(ucRipNetworkNodeRemoveByName, "ttt"),
    CALL(ucRipInterfaceNodeAppend, "ib"),
    CALL(ucRipInterfaceNodeRemoveByKey, "i"),
    CALL(ucRipIfFindByNetIf, "ib"),
    CALL(ucRipDefaultVersionGet, "tb"),
    CALL(ucRipDefaultVersionSet, "tn"),
    CALL(ucRipTimerUpdateGet, "tb"),
    CALL(ucRipTimerUpdateSet, "tn"),
    CALL(ucRipTimerTimeoutGet, "tb"),
    CALL(ucRipTimerTimeoutSet, "tn"),
    CALL(ucRipTimerGarbageGet, "tb"),
    CALL(ucRipTimerGarbageSet, "tn"),
    CALL(ucRipDefaultMetricGet, "tb"),
    CALL(ucRipDefaultMetricSet, "tn"),
    CALL(ucRipDistanceGet, "tb"),
    CALL(ucRipDistanceSet, "tn"),
    CALL(ucRipAutosummGet, "tb"),
    CALL(ucRipAutosummSet, "tn"),
    CALL(ucRipInterfaceSendVersionGet, "ib"),
    CALL(ucRipInterfaceSendVersionSet, "in"),
    CALL(ucRipInterfaceRecvVersionGet, "ib"),
    CALL(ucRipInterfaceRecvVersionSet, "in"),
    CALL(ucRipInterfaceV2broadcastGet, "ib"),
    CALL(ucRipInterfaceV2broadcastSet, "in"),
    CALL(ucRipInterfaceAuth_typeGet, "ib"),
    CALL(ucRipInterfaceAuth_typeSet, "in"),
    CALL(ucRipInterfaceAuth_keyidGet, "ib"),
    CALL(ucRipInterfaceAuth_keyidSet, "in"),
    CALL(ucRipInterfaceAuth_strGet, "ib"),
    CALL(ucRipInterfaceAuth_strSet, "it"),
    CALL(ucRipInterfaceSplitHorizonEnableGet, "ib"),
    CALL(ucRipInterfaceSplitHorizonEnableSet, "in"),
    CALL(ucRipInterfacePoisonedReverseEnableGet, "ib"),
    CALL(ucRipInterfacePoisonedReverseEnableSet, "in"),
    CALL(ucRipInterfacePassiveEnableGet, "ib"),
    CALL(ucRipInterfacePassiveEnableSet, "in"),
    CALL(ucRip_setGlobal, ""),
    CALL(ucRip_setIfVlan, ""),
    CALL(swRipIsRunning, "tb"),
    CALL(swRipRouterRipSet, "tn"),
    CALL(swRipNetworkSet, "tttnn"),
    CALL(swRipNeighborSet, "ttnn"),
    CALL(swRipVersionSet, "tnn"),
    CALL(swRipDistanceSet, "tnn"),
    CALL(swRipDefaultMetricSet, "tnn"),
    CALL(swRipAutoSummSet, "tn"),
    CALL(swRipDefaultInformationSet, "tn"),
    CALL(swRipRouteStaticSet, "tttn"),
    CALL(swRipRedistributeSet, "tnnnn"),
    CALL(swRipTimerSet, "tnnn"),
    CALL(swRipIfSplitHorizonSet, "tinn"),
    CALL(swRipIfSendVersionSet, "tinn"),
    CALL(swRipIfReceiveVersionSet, "tinn"),
    CALL(swRipIfV2BroadcastSet, "tin"),
    CALL(swRipIfAuthenticationSet, "tinntn"),
    CALL(swRipIfPassiveInterfaceVlanSet, "in"),
    CALL(swRipKeychainClean, "it"),
    CALL(swRipKeychainAdd, "itnt"),
    CALL(swRipShowIpRip, ""),
    CALL(swRip_setGlobal, ""),
    CALL(swRip_setIfVlan, ""),
    CALL(sw_rip_if_cmd, "ttt"),
    CALL(init_rip_interface, ""),
    CALL(rip_enable, ""),
    CALL(get_vlan_id_from_interface_name, "tb"),
    CALL(handle_rip_show_interface, "w"),
    CALL(handle_ospf_show_interface, "w"),
    CALL(handle_ospf_show_neighbor, "w"),
    CALL(nhrp_enable, ""),
    CALL(nhrp_set_interface, "tn"),
    CALL(nhrp_set_interface_config, "ttttn"),
    CALL(nhrp_set_enable_config, "tttn"),
    CALL(nhrp_ip_address, "ntt"),
    CALL(nhrp_tunnel_set_spoke_link, "nttt"),
    CALL(nhrp_no_link_detect, "nt"),
    CALL(nhrp_nflog, "nt"),
    CALL(swNhrpShow, "nt"),
    CALL(doVtyNhrpEnable, "nt"),
    CALL(doVtyNhrpConfig, "nt"),
    CALL(doVtyZebraConfigInterface, "ntt"),
    CALL(ip_ospf_network_type, "ntnnn"),
    CALL(ip_ospf_mtu_ignore, "ntnn"),
    CALL(dlistAppend, "LD"),
    CALL(dlistPrepend, "LD"),
    CALL(dlistAddSort, "LD"),
    CALL(dlistFindByData, "LD"),
    CALL(dlistHead, "L"),
    CALL(dlistTail, "L"),
    CALL(dlistLength, "L"),
    CALL(sortList, "L"),
    CALL(visitList, "Ln"),
    CALL(insertAfterHead, "LD"),
    CALL(deleteTail, "L"),
    CALL(walkSections, "tt"),
    CALL(dropModels, ""),
    CALL(fillInterfaces, ""),
    CALL(fillProcesses, ""),
};
// clang-format on

const Call *callOf(const char *name) {
    for (const Call &call : kCalls) {
        if (strcmp(call.name, name) == 0) {
            return &call;
        }
    }
    return nullptr;
}

// ---- Arguments ----

/// Room for one argument that is passed by address.
union Room {
    char text[kRoomBytes];
    uint32_t numbers[8];
    OspfDatabaseRequest request;
};

void takeNumbers(const char *word, Room &room) {
    for (uint32_t &number : room.numbers) {
        char *end = nullptr;
        number = static_cast<uint32_t>(strtoul(word, &end, 0));
        if (*end != ',') {
            return;
        }
        word = end + 1;
    }
}

/// Only the router's own files: a package may be any path.
bool isElsewhere(const char *word) {
    return word[0] == '/' && strncmp(word, "/etc/config/", 12) != 0 &&
           strncmp(word, "/var/", 5) != 0 && strncmp(word, "/tmp/", 5) != 0;
}

/// n a number, R one for a size, i an interface "TYPE,VID" by value; t a text, w and k one that may
/// be changed; b room, r numbers "N,N…" in room, d a display request; h the parameters, L a list, D
/// an item of it.
uint64_t take(char kind, char *word, Room &room) {
    const bool isNull = word == nullptr || strcmp(word, "~") == 0;
    const uint64_t number = isNull ? 0 : strtoull(word, nullptr, 0);
    switch (kind) {
    case 'n':
        return number;
    case 'R':
        return number % kMostSize;
    case 'h':
        return isNull ? 0 : reinterpret_cast<uint64_t>(&parameters);
    case 'L':
        return isNull ? 0 : reinterpret_cast<uint64_t>(sorted);
    case 'D':
        return isNull ? 0 : reinterpret_cast<uint64_t>(&data[number % std::size(data)]);
    default:
        break;
    }
    if (isNull || isElsewhere(word)) {
        return 0;
    }
    for (char *space = word; (space = strchr(space, '+')) != nullptr;) {
        *space = ' ';
    }
    memset(room.text, 0, sizeof room.text);
    switch (kind) {
    case 'i':
        takeNumbers(word, room);
        return room.numbers[0] | static_cast<uint64_t>(room.numbers[1]) << 32;
    case 'r':
    case 'v':
        takeNumbers(word, room);
        break;
    case 'd':
        room.request.lsa_type = word;
        room.request.has_link_state_id = number & 1;
        room.request.has_adv_router = number >> 1 & 1;
        room.request.self_originate = number >> 2 & 1;
        break;
    default:
        (void)snprintf(room.text, kind == 'k' ? 16 : 258, "%s", word);
        break;
    }
    return reinterpret_cast<uint64_t>(&room);
}

/// Every argument travels as a 64-bit word, whatever the function takes.
[[clang::no_sanitize("function")]] void play(const Call &call, char *words) {
    static Room rooms[kMaxArguments];
    uint64_t at[kMaxArguments] = {};
    for (int i = 0; call.arguments[i] != '\0'; ++i) {
        at[i] = take(call.arguments[i], words == nullptr ? nullptr : strsep(&words, " "), rooms[i]);
    }
    using Function =
        uint64_t (*)(uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t,
                     uint64_t, uint64_t, uint64_t, uint64_t, uint64_t);
    (void)reinterpret_cast<Function>(call.function)(at[0], at[1], at[2], at[3], at[4], at[5], at[6],
                                                    at[7], at[8], at[9], at[10], at[11], at[12]);
}

// ---- Before and after ----

void writeStore() {
    FILE *file = fopen("/etc/config/ospf", "w");
    insist(file != nullptr &&
           fputs("config global 'global'\n\toption status 'on'\nconfig network\n\tlist ip 'a'\n",
                 file) >= 0 &&
           fclose(file) == 0);
}

void begin() {
    insist(frrVtyInit() == 0 && ucOspfInit() == 0 && swRipInit() == 0);
    insist(frrVtyParamInit(&parameters) == 0);
    sorted = dlistCreate(nullptr, compareData);
}

void checkRip() {
    if (gRipVrfList == nullptr) {
        return;
    }
    for (const dlist_node *entry = gRipVrfList->head; entry != nullptr; entry = entry->next) {
        const auto &vrf = *static_cast<const RipVrfNode *>(entry->data);
        insist(vrf.version <= 3 && vrf.default_metric <= 16 && vrf.update_timer <= 100 &&
               vrf.timeout_timer <= 300 && vrf.garbage_timer <= 500);
    }
    for (const dlist_node *entry = gRipIfList->head; entry != nullptr; entry = entry->next) {
        const auto &interface = *static_cast<const RipInterfaceNode *>(entry->data);
        insist(interface.auth_str[16] == '\0' && interface.auth_type <= 2);
    }
}

void end() {
    while (gPreCmdEntryList->head != nullptr) {
        const auto *view = static_cast<const FrrVtyView *>(gPreCmdEntryList->head->data);
        const std::string name = view->name;
        insist(frrVtyViewUnreg(name.c_str()) == 0);
    }
    releaseLists();
    free(pucOspf);
    pucOspf = nullptr;
    parameters = nullptr;
}

void set(Rehearsal &rehearsal, char what, const char *text) {
    switch (what) {
    case '!':
        rehearsal.code = static_cast<uint8_t>(atoi(text));
        break;
    case '<':
        rehearsal.file = std::string(text) + "\n";
        break;
    default:
        rehearsal.listing = *text == '\0' ? "" : std::string(text) + "\n";
        break;
    }
}

void runLine(Rehearsal &rehearsal, char *words) {
    const char *name = strsep(&words, " ");
    const Call *call = callOf(name);
    if (call != nullptr) {
        play(*call, words);
        (void)rehearsal.leftOpen(); // a walk into a view that was refused
        rehearsal.lines.clear();
    } else if (*name != '\0' && strchr("!<|", *name) != nullptr) {
        set(rehearsal, *name, words == nullptr ? "" : words);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size) {
    static const bool isReady = (writeStore(), true);
    insist(isReady);
    char text[kMaxBytes + 1] = {};
    memcpy(text, bytes, size < kMaxBytes ? size : kMaxBytes);
    Rehearsal rehearsal;
    rehearsal.answerTo = "show";
    rehearsal.bytes = kShown;
    rehearsal.pieceSize = sizeof kShown;
    begin();
    char *rest = text;
    for (int line = 0; line < kMaxLines && rest != nullptr; ++line) {
        runLine(rehearsal, strsep(&rest, "\n"));
    }
    checkLists();
    checkRip();
    end();
    return 0;
}
