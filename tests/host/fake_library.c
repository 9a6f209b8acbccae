/* SPDX-License-Identifier: Apache-2.0 */
/* A library in frruci's place, to see the host program deal with every kind of handler. The first
 * word of a request says what the handler does. */
#include <fcntl.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#define EXPORT __attribute__((visibility("default")))

static int calls;

static void answer(const char *pipe, const char *text) {
    char path[128];
    snprintf(path, sizeof path, "/tmp/tmp/%s", pipe);
    const int fd = open(path, O_WRONLY);
    if (fd < 0 || write(fd, text, strlen(text)) < 0) {
        abort();
    }
    close(fd);
}

EXPORT int32_t frrVtyInit(void) {
    return 0;
}
EXPORT uint32_t swRipInit(void) {
    return 0;
}
EXPORT uint32_t swOspfInit(void) {
    return 0;
}
EXPORT uint32_t ucOspfEnableProcess(uint16_t process) {
    return process != 1;
}
EXPORT uint32_t ucRipVrfAppend(const char *name, void **out) {
    return name == NULL || out != NULL;
}
EXPORT int32_t frrVtyDisconnect(int32_t fd) {
    return fd < 1;
}
EXPORT int32_t frrVtyConnect(const char *path, int32_t *fd) {
    (void)path;
    (void)fd;
    return -1;
}

EXPORT void process_ospf_interface(int32_t count, char **words) {
    const char *what = count > 0 ? words[0] : "";
    ++calls;
    printf("the library says %d words, call %d\n", count, calls);
    for (int32_t i = 0; i < count; ++i) {
        printf("word %d is <%s>\n", i, words[i]);
    }
    if (words[count] != NULL) {
        abort();
    }
    if (strcmp(what, "hang") == 0) {
        pause();
    } else if (strcmp(what, "crash") == 0) {
        abort();
    } else if (strcmp(what, "none") != 0) {
        answer("ospf_pipe_c2lua", what);
    }
}

EXPORT void process_ospf_neighbor(void) {
    for (int i = 0; i < 5000; ++i) {
        char row[64];
        snprintf(row, sizeof row, "10.0.%d.%d row\r\n", i / 250, i % 250);
        answer("ospf_pipe_c2lua_neighbor", row);
    }
    answer("ospf_pipe_c2lua_neighbor", "ok");
}

EXPORT void process_nhrp_show(int32_t count, char **words) {
    if (count != 4 || strcmp(words[1], "ip") != 0 || strcmp(words[2], "nhrp") != 0 ||
        strcmp(words[3], "cache") != 0) {
        abort();
    }
    const char *text = getenv("FAKE_CACHE");
    answer("nhrp_pipe_c2lua_cache", text == NULL ? "" : text);
}

EXPORT int32_t ospf_cfg_recovery(void) {
    return puts("ospf recovered");
}
EXPORT void rip_cfg_recovery(void) {
    puts("rip recovered");
}
EXPORT int32_t frr_process_init(void) {
    return puts("folders made") < 0;
}
EXPORT void swShowOspfConfig(void) {
    printf("report after %d calls\n", calls);
}
EXPORT uint32_t swRipShowIpRipStatus(void) {
    return puts("status") < 0;
}
EXPORT uint32_t swRipShowIpRip(void) {
    return getenv("FAKE_NO_ROUTES") != NULL;
}
