// SPDX-License-Identifier: Apache-2.0
// Settings a second of each family, as a builder or a command delivers one: every setting changes
// something. Wants zebra, ospfd, ripd and nhrpd running with their sockets in /var, and mgmtd where
// they need it; run it in the sandbox.

#include <cstdio>
#include <string>

#include "bench/measure.h"
#include "frruci/frruci.h"

namespace {

constexpr int kWarmUp = 20;
constexpr int kSettings = 400;

/// The command of every other setting, and of those between.
struct Family {
    const char *name;
    uint32_t (*deliver)(const char *command);
    const char *commands[2];
};

uint32_t toRipInstance(const char *command) {
    char reply[512] = {};
    return swRipAutoRun("default", command, sizeof reply, 1, reply);
}

const Family kFamilies[] = {
    {"OSPF, an interface",
     [](const char *command) { return doVtyOspfConfigInterface(0, "eth1.2", 0, command); },
     {"ip ospf cost 7", "ip ospf cost 8"}                                                                                 },
    {"RIP, the instance",             toRipInstance,                                        {"distance 77", "distance 78"}},
    {"RIP, an interface",
     [](const char *command) { return doVtyRipConfigInterface("eth1.2", 0, command); },
     {"ip rip v2-broadcast", "no ip rip v2-broadcast"}                                                                    },
    {"NHRP, an interface",
     [](const char *command) { return doVtyNhrpConfigInterface(0, "tun0", command); },
     {"ip nhrp network-id 5", "ip nhrp network-id 6"}                                                                     },
    {"NHRP, link detection in zebra",
     [](const char *command) { return doVtyZebraConfigInterface(0, "tun0", command); },
     {"no link-detect", "link-detect"}                                                                                    },
};

/// The median time of one setting; ends the process when one is refused.
double measure(const Family &family) {
    std::vector<double> times;
    for (int i = 0; i < kWarmUp + kSettings; ++i) {
        uint32_t result = 0;
        const double time =
            bench::microseconds([&] { result = family.deliver(family.commands[i % 2]); });
        if (result != 0) {
            (void)fprintf(stderr, "refused: %s\n", family.commands[i % 2]);
            exit(1);
        }
        if (i >= kWarmUp) {
            times.push_back(time);
        }
    }
    return bench::median(times);
}

} // namespace

int main() {
    if (frrVtyInit() != 0 || swRipInit() != 0) {
        return 1;
    }
    std::printf(
        "## Settings one after the other\n\n| family | median, us | a second |\n|---|--:|--:|\n");
    for (const Family &family : kFamilies) {
        const double time = measure(family);
        std::printf("| %s | %.0f | %.0f |\n", family.name, time, 1000000 / time);
    }
    std::printf("\n");
    return 0;
}
