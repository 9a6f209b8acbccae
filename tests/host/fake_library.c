/* SPDX-License-Identifier: Apache-2.0 */
/* A library in frruci's place, to see the host program deal with every kind of handler. The second
 * word of a RIP display says what it does. */
#include <fcntl.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <frruci/observe.h>

#define EXPORT __attribute__((visibility("default")))

static FrruciObserver observer;
static int calls;

EXPORT int32_t frruciObserve(const FrruciObserver *set) {
    memset(&observer, 0, sizeof observer);
    if (set != NULL) {
        observer = *set;
    }
    return 0;
}

/* Shows an event; true when it shall happen. */
static int show(FrruciEvent *event, int kind, const char *place, const char *text) {
    memset(event, 0, sizeof *event);
    event->size = sizeof *event;
    event->kind = kind;
    event->fd = -1;
    event->place = place;
    event->text = text;
    if (observer.see != NULL) {
        observer.see(event, observer.context);
    }
    return !observer.rehearsal;
}

static void done(FrruciEvent *event, int result) {
    event->done = 1;
    event->result = result;
    if (observer.see != NULL) {
        observer.see(event, observer.context);
    }
}

static void answer(const char *pipe, const char *text) {
    FrruciEvent event;
    char path[128];
    snprintf(path, sizeof path, "/tmp/tmp/%s", pipe);
    if (!show(&event, FRRUCI_REPLY, path, text)) {
        return;
    }
    const int fd = open(path, O_WRONLY);
    if (fd < 0 || write(fd, text, strlen(text)) < 0) {
        abort();
    }
    done(&event, close(fd));
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

static void writeWords(int32_t count, char **words) {
    FILE *file = fopen("/tmp/words", "w");
    if (file == NULL || words[count] != NULL) {
        abort();
    }
    for (int32_t i = 0; i < count; ++i) {
        fprintf(file, "<%s>", words[i]);
    }
    fclose(file);
}

/* In earnest the command never ends. */
static void hangInShell(void) {
    FrruciEvent event;
    if (show(&event, FRRUCI_SHELL, NULL, "sleeper -d")) {
        pause();
    }
}

static void runShell(const char *command) {
    FrruciEvent event;
    if (show(&event, FRRUCI_SHELL, NULL, command)) {
        done(&event, system(command));
    }
}

EXPORT void process_rip_interface(int32_t count, char **words) {
    const char *what = words[count - 1];
    runShell("true");
    ++calls;
    printf("the library prints this\n");
    writeWords(count, words);
    if (strcmp(what, "hang") == 0) {
        hangInShell();
    } else if (strcmp(what, "crash") == 0) {
        abort();
    } else if (strcmp(what, "daemon") == 0) {
        /* As a daemon that closes nothing. */
        runShell("sleep 1000 &");
        answer("ospf_pipe_c2lua", "ok");
    } else if (strcmp(what, "none") != 0) {
        answer("ospf_pipe_c2lua", strcmp(what, "fail") == 0 ? "fail" : "ok");
    }
}

EXPORT void process_ospf_neighbor(void) {
    runShell("true");
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
    runShell("true");
    answer("nhrp_pipe_c2lua_cache", "{\"a\":[1,2]}");
}

EXPORT int32_t frr_process_init(void) {
    FrruciEvent event;
    if (show(&event, FRRUCI_SHELL, NULL, "make folders")) {
        done(&event, 0);
    }
    return 0;
}
EXPORT void swShowOspfConfig(void) {
    printf("report after %d calls\n", calls);
}
