/* SPDX-License-Identifier: Apache-2.0 */
/* vty/frr_util.h alone gives a host the exchange, the views and what runs once at start. */
#include <vty/frr_util.h>

int32_t throughOneHeader(void) {
    char out[256] = {0};
    uint8_t code = 0;
    int32_t fd = 0;
    FrrVtyView view = {"name", 0};
    FrrVtyParam parameter = {"key", "value"};
    dlist *parameters = gPreCmdEntryList;
    int32_t sum = frr_process_init() + frrVtyInit();
    sum += frrVtyConnect("/var/ripd.vty", &fd) + frrVtyRun(fd, "enable", &code, out, sizeof out);
    sum += frrVtyPrint(fd, "show", &code, 0, 0, 0) + frrVtyDisconnect(fd);
    sum += frrVtyViewReg(view.name, "enable") + frrVtyViewUnreg(view.name);
    sum += frrVtyParamInit(&parameters) + frrVtyParamFini(&parameters);
    sum += frrVtyParamStrSet(&parameters, parameter.key, parameter.value);
    sum += frrVtyParamIntSet(&parameters, parameter.key, 1);
    sum += frrVtyParamGet(&parameters, parameter.key, out);
    sum += frrVtyFPreCmdParse(view.name, &parameters, sizeof out - 1, out);
    sum += frrVtyAutoRun(view.name, "/var/ripd.vty", "version 2", &parameters, sizeof out, out);
    return sum;
}
