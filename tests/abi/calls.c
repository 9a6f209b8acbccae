/* SPDX-License-Identifier: Apache-2.0 */
/* A C11 caller: calls through every public header, without any of the library's C++. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <frruci/frruci.h>

static int failures;

#define CHECK(condition)                                                                           \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            printf("%s:%d: %s\n", __FILE__, __LINE__, #condition);                                 \
            ++failures;                                                                            \
        }                                                                                          \
    } while (0)

static void callFrontEnd(void) {
    (void)record_log_act("calls:%d: %s\n", __LINE__, "logged");
    CHECK(write_pipe_to_lua("ok", "/tmp/tmp/no_such_pipe") < 0);
    CHECK(check_safe_string("eth1.10") == 1);
    CHECK(check_safe_string("a;b") == 0);
}

static void callVty(void) {
    int32_t fd = -1;
    uint8_t code = 0;
    char reply[512] = {0};
    CHECK(frrVtyConnect("/var/no_such.vty", &fd) == -1);
    CHECK(frrVtyRun(0, "en", &code, reply, sizeof reply) == 1);
    CHECK(frrVtyPrint(0, "show", &code, 0, 0, 2) == 1);
    CHECK(frrVtyDisconnect(0) == 1);
}

static int32_t countData(void *ctx, void *data) {
    (void)data;
    ++*(int *)ctx;
    return 0;
}

static void callList(void) {
    char first[] = "first";
    int visited = 0;
    dlist *list = dlistCreate(NULL, NULL);
    CHECK(list != NULL);
    CHECK(dlistAppend(list, first) == 0);
    CHECK(dlistHead(list)->data == first);
    CHECK(dlistVisit(list, countData, &visited) == 0 && visited == 1);
    CHECK(dlistDelete(list, dlistTail(list)) == 0);
    CHECK(dlistLength(list) == 0);
    free(list);
}

static void callAddress(void) {
    uint8_t octets[4] = {0};
    char text[16];
    uint32_t value;
    CHECK(IpStr2Int("10.0.0.1", octets) == 0 && octets[3] == 1);
    memcpy(&value, octets, sizeof value);
    CHECK(intIpToStrIp(text, value) == 0 && strcmp(text, "10.0.0.1") == 0);
    CHECK(sw_ospf_inet_aton(text) == value);
    CHECK(rip_atoi(rip_itoa(-7, text, 10)) == -7);
}

static void callViews(void) {
    char out[256] = {0};
    dlist *parameters = NULL;
    CHECK(frrVtyInit() == 0);
    CHECK(dlistLength(gPreCmdEntryList) == 5);
    CHECK(frrVtyParamInit(&parameters) == 0);
    CHECK(frrVtyParamIntSet(&parameters, "vid", 12) == 2);
    CHECK(frrVtyFPreCmdParse("interface_view", &parameters, 255, out) == 0);
    CHECK(strcmp(out, "enable\nconfigure\ninterface eth1.12") == 0);
    CHECK(frrVtyParamFini(&parameters) == 0);
}

static void callStore(void) {
    char text[16] = "";
    CHECK(frr_uci_get("no_such_package", "a", "b", text, sizeof text) == 3);
}

static void callOspf(void) {
    OspfProcessCfg record;
    CHECK(swOspfInit() == 0 && pucOspf != NULL);
    CHECK(ucOspfEnableProcess(1) == 0 && swOspfHasProcessId(1) == 0);
    CHECK(ucOspfGetCfg(0, &record) == 0 && record.adminDistance == 110);
    CHECK(vtyOspfConfigOspf(0, "distance 1", 1) == 1);
    CHECK(swOspfdistance(0, 1, 110) == 1);
    CHECK(ip_ospf_network_type(0, "eth1.2", 0, 1, 3) == UINT32_MAX);
    CHECK(process_exist("a;b", 0) == 0);
    ospf_cfg_recovery();
}

static void callRip(void) {
    RipNetIf key = {0, 0};
    RipVrfNode *instance = NULL;
    CHECK(swRipInit() == 0);
    CHECK(ucRipVrfAppend("default", &instance) == 0 && instance->update_timer == 30);
    CHECK(swRipDistanceSet("default", 0, 1) == 1);
    CHECK(get_vlan_id_from_interface_name("eth1.10", &key) == 0 && key.type == 1 && key.vid == 10);
    rip_cfg_recovery();
}

static void countEvent(FrruciEvent *event, void *context) {
    CHECK(event->size == sizeof *event && event->done == 0);
    ++*(int *)context;
}

static void callObserver(void) {
    int seen = 0;
    const FrruciObserver observer = {sizeof observer, 1, countEvent, &seen};
    CHECK(frruciObserve(&observer) == 0);
    CHECK(zebra_enable() == 0);
    CHECK(frruciObserve(NULL) == 0);
    CHECK(seen == 3); /* a listing, the start, a pause */
}

static void callNhrp(void) {
    CHECK(doVtyNhrpConfig(0, "nhrp nflog-group 1") == 1);
    CHECK(nhrp_set_interface("tun0", 0) != 0);
    CHECK(nhrp_nflog(0, "1") == 1);
}

/* Layouts as a C compiler sees them. */
_Static_assert(sizeof(dlist_node) == 24 && sizeof(dlist) == 40, "lists");
_Static_assert(sizeof(FrrVtyView) == 40 && sizeof(FrrVtyParam) == 64, "views");
_Static_assert(sizeof(OspfModelBlock) == 6080 && sizeof(OspfProcessCfg) == 104 &&
                   sizeof(OspfInterfaceEntry) == 68,
               "OSPF model");
_Static_assert(sizeof(RipVrfNode) == 80 && sizeof(RipInterfaceNode) == 52, "RIP model");
_Static_assert(sizeof(FrruciEvent) == 80 && sizeof(FrruciObserver) == 24, "observer");

int main(void) {
    callFrontEnd();
    callList();
    callAddress();
    callViews();
    callVty();
    callStore();
    callOspf();
    callRip();
    callNhrp();
    callObserver();
    printf(failures == 0 ? "all calls answered as expected\n" : "%d calls did not\n", failures);
    return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
