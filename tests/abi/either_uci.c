/* SPDX-License-Identifier: Apache-2.0 */
/* usage: either_uci CODE: reads from a package that does not exist and expects that code, which
 * tells the libraries apart: 3 from a libuci, 6 from the test's other one. */

#include <stdio.h>
#include <stdlib.h>

#include <common/frr_uci.h>

int main(int argc, char **argv) {
    char value[64];
    const int code = frr_uci_get("nosuch", "global", "enable", value, sizeof value);
    printf("code %d\n", code);
    return argc == 2 && code == (int)strtol(argv[1], NULL, 10) ? EXIT_SUCCESS : EXIT_FAILURE;
}
