// SPDX-License-Identifier: Apache-2.0
// Times of "frruci apply" against FRRouting's reload script and vtysh, on the real ospfd of the
// sandbox: apply_bench FRRUCI RELOAD-SCRIPT RUNS. Between runs, untimed, apply makes the state
// anew.

#include <cstdlib>

#include "bench/measure.h"
#include "bench/settings.h"

namespace {

using bench::ospfStore;

constexpr const char *kStore = "/etc/config/ospf";
constexpr int kReloadEvery = 3; // it takes seconds

std::string frruci;
std::string reload;
int runs = 0;

void apply(const std::string &text) {
    bench::writeText(kStore, text);
    (void)bench::shell(frruci + " apply ospf");
}

/// The running configuration as files for the others, without what vtysh says in front of it.
void save() {
    (void)bench::shell("vtysh -c 'show running-config' | sed 1,3d | tee /tmp/to.all");
    (void)bench::shell("vtysh -d ospfd -c 'show running-config' | sed 1,3d | tee /tmp/to.ospfd");
}

/// From one store to another, by each way.
void compare(const std::string &title, const std::string &from, const std::string &to,
             bool byVtysh) {
    apply(to);
    save();
    std::vector<bench::Way> ways = {
        {"frruci apply",  {}},
        {"reload script", {}}
    };
    if (byVtysh) {
        ways.push_back({"vtysh -f", {}});
    }
    for (int i = 0; i < runs; ++i) {
        apply(from);
        bench::writeText(kStore, to);
        ways[0].times.push_back(bench::shell(frruci + " apply ospf"));
        if (i % kReloadEvery == 0) {
            apply(from);
            ways[1].times.push_back(bench::shell(reload + " /tmp/to.all"));
        }
        if (byVtysh) {
            apply(from);
            ways[2].times.push_back(bench::shell("vtysh -d ospfd -f /tmp/to.ospfd"));
        }
    }
    apply(to); // whatever the others left
    bench::printTable(title, ways, 1);
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 4) {
        (void)fprintf(stderr, "usage: apply_bench FRRUCI RELOAD-SCRIPT RUNS\n");
        return 2;
    }
    frruci = argv[1];
    reload = argv[2];
    runs = static_cast<int>(strtol(argv[3], nullptr, 10));
    const std::string empty = ospfStore(0, 0);
    const std::string router = ospfStore(40, 60);
    compare("Apply: no change, 40 interfaces and 60 networks", router, router, true);
    compare("Apply: one change among 40 interfaces and 60 networks", router, ospfStore(40, 60, 11),
            true);
    compare("Apply: 40 interfaces and 60 networks into an empty daemon", empty, router, true);
    compare("Apply: 1000 networks into an empty daemon", empty, ospfStore(0, 1000), true);
    compare("Apply: one of 1000 networks removed", ospfStore(0, 1000), ospfStore(0, 999), false);
    apply(empty);
    return 0;
}
