// SPDX-License-Identifier: Apache-2.0
// One frr_uci_get and one frr_uci_set on a store file of 10 KB. Run it in the sandbox, whose
// folders are in memory: the disk has no part in the figures.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "bench/measure.h"
#include "common/frr_uci.h"

namespace {

constexpr int kRuns = 4000;
constexpr std::size_t kFileSize = 10240;

std::string storeText() {
    std::string text = "\nconfig global 'global'\n\toption enable 'en'\n";
    for (int i = 0; text.size() < kFileSize; ++i) {
        text += "\nconfig interface 'eth1_" + std::to_string(i) +
                "'\n\toption vid '2'\n\toption cost '10'\n\toption hello '15'\n\toption area '0'\n";
    }
    return text + "\nconfig last 'last'\n\toption value '0'\n\n";
}

void insist(int32_t code) {
    if (code != 0) {
        std::fprintf(stderr, "store: code %d\n", code);
        exit(1);
    }
}

void measure(const char *package, const char *name) {
    std::vector<double> gets;
    std::vector<double> sets;
    for (int i = 0; i < kRuns; ++i) {
        char value[64];
        const std::string next = std::to_string(i + 1);
        gets.push_back(bench::microseconds(
            [&] { insist(frr_uci_get(package, "last", "value", value, sizeof value)); }));
        sets.push_back(bench::microseconds(
            [&] { insist(frr_uci_set(package, "last", "value", next.c_str())); }));
    }
    std::printf("| %s | %.1f | %.1f |\n", name, bench::median(gets), bench::median(sets));
}

} // namespace

int main() {
    const std::string text = storeText();
    std::ofstream("/etc/config/bench") << text;
    std::printf("## One store access, file of %zu bytes\n\n%d runs each, medians.\n\n"
                "| package | get, us | set, us |\n|---|--:|--:|\n",
                text.size(), kRuns);
    measure("bench", "by name");
    measure("/etc/config/bench", "by path");
    return 0;
}
