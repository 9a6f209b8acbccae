/* SPDX-License-Identifier: Apache-2.0 */
/* Nothing but the system calls that the exchanges and the log lines themselves need. */
#include "bench/bare.h"

#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

static void logLine(const char *command) {
    char line[512];
    const int length =
        snprintf(line, sizeof line, "frr_util:%d: frrVtyRun: %s\n", __LINE__, command);
    const int file = open("/tmp/tmp/data", O_WRONLY | O_APPEND | O_CREAT, 0666);
    if (file >= 0) {
        if (write(file, line, (size_t)length) < 0) {
            perror("log");
        }
        close(file);
    }
}

static int exchange(int session, const char *command) {
    char reply[512];
    logLine(command);
    if (send(session, command, strlen(command) + 1, 0) < 0) {
        return -1;
    }
    const ssize_t received = recv(session, reply, sizeof reply, 0);
    return received >= 4 && reply[received - 1] == 0 ? 0 : -1;
}

int bareDeliver(const char *path, const char *const *commands, size_t count) {
    struct sockaddr_un address = {.sun_family = AF_UNIX};
    strncpy(address.sun_path, path, sizeof address.sun_path - 1);
    const int session = socket(AF_UNIX, SOCK_STREAM, 0);
    int result = connect(session, (const struct sockaddr *)&address, sizeof address);
    for (size_t i = 0; i < count && result == 0; ++i) {
        result = exchange(session, commands[i]);
    }
    close(session);
    return result;
}
