// SPDX-License-Identifier: Apache-2.0
// Recovery of a stored OSPF configuration into a running ospfd, against a bare loop of the same
// exchanges and log lines, against vtysh and against FRRouting's own reload script. Wants zebra and
// ospfd with their sockets in /var; run it in the sandbox.
//
//   ospf_recovery_bench INTERFACES NETWORKS ROUNDS [RELOAD-SCRIPT]

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string>
#include <sys/resource.h>
#include <vector>

#include "bench/measure.h"
#include "bench/replay.h"
#include "bench/settings.h"
#include "ospf/frr_ospf_recovery.h"
#include "ospf/sw_ospf.h"

namespace {

using bench::networkAddress;
using bench::option;
using bench::writeText;

constexpr int kInterfaceSettings = 11;
constexpr int kRouterSettings = 7;
constexpr const char *kSettings = "/tmp/settings.conf";

/// The time spent in process listings so far.
double listed = 0;
std::chrono::steady_clock::time_point listingBegan;

std::string store(int interfaces, int networks) {
    std::string text =
        "\nconfig global 'global'\n" + option("status", "on") + option("router_id", "10.9.9.9") +
        "\nconfig advertise_cfg 'advertise_cfg'\n" + option("originate", "enable") +
        option("always", "enable") + option("metric", "20") + option("metric_type", "1") +
        "\nconfig ospf_cfg 'ospf_cfg'\n" + option("distance", "110") +
        option("rfc_compatible", "enable") + option("spf_delay", "10") +
        option("spf_hold_init", "100") + option("spf_hold_max", "6000") + option("max_path", "8") +
        option("passive_def", "disable");
    for (int i = 0; i < networks; ++i) {
        text += "\nconfig network\n" + option("ip", networkAddress(i)) +
                option("wildcard_mask", "0.0.0.255") + option("area_id", std::to_string(i % 3));
    }
    for (int i = 0; i < interfaces; ++i) {
        text += "\nconfig interface\n" + option("ns", "wan") +
                option("interface", "eth1." + std::to_string(100 + i)) + option("cost", "30") +
                option("retransmit", "6") + option("transmit", "2") + option("priority", "3") +
                option("hello", "12") + option("dead", "48") + option("network_type", "1") +
                option("mtu_ignore", "1") + option("passive", "1") + option("auto_type", "2") +
                option("md5_key_id", "1") + option("md5_key", "secret" + std::to_string(i));
    }
    return text + "\n";
}

/// The same settings as vtysh takes them from a file.
std::string settings(int interfaces, int networks) {
    std::string text;
    for (int i = 0; i < interfaces; ++i) {
        text += "interface eth1." + std::to_string(100 + i) +
                "\n ip ospf cost 30\n ip ospf retransmit-interval 6\n ip ospf transmit-delay 2\n"
                " ip ospf priority 3\n ip ospf hello-interval 12\n ip ospf dead-interval 48\n"
                " ip ospf network point-to-point\n ip ospf mtu-ignore\n ip ospf passive\n"
                " ip ospf authentication message-digest\n ip ospf message-digest-key 1 md5 secret" +
                std::to_string(i) + "\n";
    }
    text += "router ospf\n ospf router-id 10.9.9.9\n"
            " default-information originate always metric 20 metric-type 1\n distance 110\n"
            " compatible rfc1583\n timers throttle spf 10 100 6000\n maximum-paths 8\n"
            " no passive-interface default\n";
    for (int i = 0; i < networks; ++i) {
        text += " network " + networkAddress(i) + "/24 area " + std::to_string(i % 3) + "\n";
    }
    return text;
}

long peakKiB() {
    rusage usage = {};
    (void)getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

// In the C library's place, for the library's calls too: the listings' time is kept apart.
#pragma GCC visibility push(default)
extern "C" {

FILE *popen(const char *command, const char *mode) {
    static const auto real =
        reinterpret_cast<FILE *(*)(const char *, const char *)>(dlsym(RTLD_NEXT, "popen"));
    listingBegan = std::chrono::steady_clock::now();
    return real(command, mode);
}

int pclose(FILE *stream) {
    static const auto real = reinterpret_cast<int (*)(FILE *)>(dlsym(RTLD_NEXT, "pclose"));
    const int status = real(stream);
    const std::chrono::duration<double, std::micro> took =
        std::chrono::steady_clock::now() - listingBegan;
    listed += took.count();
    return status;
}
}
#pragma GCC visibility pop

int main(int argc, char **argv) {
    if (argc < 4) {
        (void)fprintf(stderr, "usage: %s INTERFACES NETWORKS ROUNDS [RELOAD-SCRIPT]\n", argv[0]);
        return 2;
    }
    const int interfaces = atoi(argv[1]);
    const int networks = atoi(argv[2]);
    const int rounds = atoi(argv[3]);
    writeText("/etc/config/ospf", store(interfaces, networks));
    writeText(kSettings, settings(interfaces, networks));
    if (swOspfInit() != 0) {
        return 1;
    }
    bench::startRecording();
    ospf_cfg_recovery();
    const std::vector<bench::Step> steps = bench::stopRecording();

    bench::Way ours = {"frruci, mandated pauses left out", {}};
    bench::Way commands = {"frruci, process listings left out too", {}};
    bench::Way bare = {"bare loop, same exchanges and log", {}};
    bench::Way vtysh = {"vtysh -f", {}};
    bench::Way reload = {"reload script", {}};
    const auto runOurs = [&] {
        const double listedBefore = listed;
        ours.times.push_back(bench::microseconds([] { ospf_cfg_recovery(); }));
        commands.times.push_back(ours.times.back() - (listed - listedBefore));
    };
    const auto runBare = [&] {
        bare.times.push_back(bench::microseconds([&] { bench::play(steps); }));
    };
    for (int i = 0; i < rounds; ++i) {
        // Who comes second meets what the daemon still does for the first.
        if (i % 2 == 0) {
            runOurs();
            runBare();
        } else {
            runBare();
            runOurs();
        }
        vtysh.times.push_back(bench::shell(std::string("vtysh -f ") + kSettings));
        if (argc > 4) {
            reload.times.push_back(bench::shell(std::string(argv[4]) + " " + kSettings));
        }
    }
    std::vector<bench::Way> ways = {commands, ours, bare, vtysh};
    if (argc > 4) {
        ways.push_back(reload);
    }
    const auto settingCount =
        static_cast<std::size_t>(interfaces * kInterfaceSettings + networks + kRouterSettings);
    bench::printTable("Recovery of " + std::to_string(interfaces) + " interfaces and " +
                          std::to_string(networks) + " networks: " + std::to_string(settingCount) +
                          " settings, " + std::to_string(bench::exchanges(steps)) + " exchanges",
                      ways, settingCount);
    std::printf("Peak memory of the recovering process: %ld KiB.\n\n", peakKiB());
    return 0;
}
