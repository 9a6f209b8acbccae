// SPDX-License-Identifier: Apache-2.0
// One request on the command line, from the shell to its answer, against vtysh. Wants a running
// ospfd with its socket in /var; run it in the sandbox.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/measure.h"

namespace {

constexpr int kRuns = 200;
constexpr double kLongestUs = 10000;

} // namespace

int main() {
    setenv("FRRUCI_LIBRARY", LIBRARY, 1);
    bench::Way ours = {"frruci call", {}};
    bench::Way words = {"vtysh -c", {}};
    for (int i = 0; i < kRuns; ++i) {
        const std::string seconds = std::to_string(1 + i);
        ours.times.push_back(
            bench::shell(HOST_PROGRAM " call process_ospf_interface eth1.2 wan hello " + seconds));
        words.times.push_back(bench::shell(
            "vtysh -d ospfd -c configure -c 'interface eth1.2' -c 'ip ospf hello-interval " +
            seconds + "'"));
    }
    bench::printTable("One request on the command line", {ours, words}, 1);
    if (bench::median(ours.times) >= kLongestUs) {
        (void)fprintf(stderr, "a call takes %.0f us or more\n", kLongestUs);
        return 1;
    }
    return 0;
}
