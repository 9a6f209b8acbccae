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

int main(void) {
    callFrontEnd();
    callVty();
    printf(failures == 0 ? "all calls answered as expected\n" : "%d calls did not\n", failures);
    return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
