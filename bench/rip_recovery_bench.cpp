// SPDX-License-Identifier: Apache-2.0
// Recovery of a stored RIP configuration into a running ripd, against a bare loop of the same
// exchanges and log lines and against vtysh. Wants zebra and ripd with their sockets in /var; run
// it in the sandbox.
//
//   rip_recovery_bench [INTERFACES NETWORKS ROUNDS]       (40 60 31)
//
// The shell commands of a recovery (questions to the front-end, process and firewall listings) are
// left out like the mandated pauses: they take many times as long as everything else and are the
// same whoever runs them. The last line says how long.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "bench/measure.h"
#include "bench/replay.h"
#include "bench/settings.h"
#include "rip/frr_rip_recovery.h"
#include "rip/sw_rip.h"
#include "vty/frr_util.h"

namespace {

using bench::networkAddress;
using bench::option;
using bench::writeText;

constexpr const char *kSettings = "/tmp/settings.conf";
constexpr int kInstanceSettings = 9;
constexpr int kInterfaceSettings = 4;
constexpr int kRoundsWithShell = 5;

bool withShell = false;
std::size_t shellCommands = 0;

std::string interfaceName(int index) {
    return "eth1." + std::to_string(100 + index);
}

std::string keyId(int index) {
    return std::to_string(1 + index % 255);
}

std::string store(int interfaces, int networks) {
    std::string text = "config global 'global'\n" + option("status", "on") +
                       "\nconfig config 'config'\n" + option("rip_version", "ripv2") +
                       option("rip_distance", "99") + option("auto_summary", "disable") +
                       option("default_metric", "3") + option("redistribute_static", "enable") +
                       option("redistribute_static_metric", "4") +
                       option("redistribute_ospf", "enable") +
                       option("redistribute_ospf_metric", "5") + option("update_timer", "10") +
                       option("timeout_timer", "60") + option("garbage_timer", "40");
    for (int i = 0; i < networks; ++i) {
        text += "\nconfig network\n" + option("ipaddress", networkAddress(i)) +
                option("mask", "255.255.255.0");
    }
    for (int i = 0; i < interfaces; ++i) {
        text += "\nconfig interface\n" + option("interface", interfaceName(i)) +
                option("split_horizon_mode", "poison_reverse") + option("send_version", "ripv2") +
                option("receive_version", "both") + option("authen_mode", "md5") +
                option("key_id", keyId(i)) + option("key", "secret" + std::to_string(i));
    }
    return text;
}

/// The same settings as vtysh takes them from a file; ripd has no auto summary.
std::string settings(int interfaces, int networks) {
    std::string text;
    for (int i = 0; i < interfaces; ++i) {
        text += "key chain app_rip_" + keyId(i) + "\n key " + keyId(i) + "\n  key-string secret" +
                std::to_string(i) + "\n";
    }
    for (int i = 0; i < interfaces; ++i) {
        text += "interface " + interfaceName(i) +
                "\n ip rip split-horizon poisoned-reverse\n ip rip send version 2\n"
                " ip rip receive version 1 2\n ip rip authentication key-chain app_rip_" +
                keyId(i) + "\n ip rip authentication mode md5\n";
    }
    text += "router rip\n version 2\n distance 99\n default-metric 3\n"
            " redistribute static metric 4\n redistribute ospf metric 5\n timers basic 10 60 40\n";
    for (int i = 0; i < networks; ++i) {
        text += " network " + networkAddress(i) + "/24\n";
    }
    return text;
}

/// Sends a stream nowhere: ripd's remarks, and what a shell without a front-end complains about,
/// are no part of the tables.
class Quiet {
public:
    explicit Quiet(FILE *stream) : stream_(stream), kept_(dup(fileno(stream))) {
        (void)fflush(stream_);
        if (kept_ < 0 || freopen("/dev/null", "w", stream_) == nullptr) {
            exit(1);
        }
    }
    ~Quiet() {
        (void)fflush(stream_);
        (void)dup2(kept_, fileno(stream_));
        (void)close(kept_);
    }
    Quiet(const Quiet &) = delete;
    Quiet &operator=(const Quiet &) = delete;

private:
    FILE *stream_;
    int kept_;
};

template <class Function> Function libraryFunction(const char *name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// What each shell command of a recovery takes.
void measureShell(const bench::Way &without) {
    std::vector<double> times;
    withShell = true;
    {
        const Quiet quietOutput(stdout);
        const Quiet quietErrors(stderr);
        for (int i = 0; i < kRoundsWithShell; ++i) {
            shellCommands = 0;
            times.push_back(bench::microseconds([] { rip_cfg_recovery(); }));
        }
    }
    withShell = false;
    std::printf("The %zu shell commands of the recovery take %.0f us each.\n\n", shellCommands,
                (bench::median(times) - bench::median(without.times)) /
                    static_cast<double>(shellCommands));
}

} // namespace

// In place of the C library's, for the library's calls too.
#pragma GCC visibility push(default)
extern "C" {

int system(const char *command) {
    if (!withShell && strncmp(command, "vtysh", 5) != 0) {
        return 0;
    }
    ++shellCommands;
    return libraryFunction<int (*)(const char *)>("system")(command);
}

FILE *popen(const char *command, const char *mode) {
    if (!withShell) {
        return fopen("/dev/null", mode);
    }
    ++shellCommands;
    return libraryFunction<FILE *(*)(const char *, const char *)>("popen")(command, mode);
}

int pclose(FILE *stream) {
    return withShell ? libraryFunction<int (*)(FILE *)>("pclose")(stream) : fclose(stream);
}
}
#pragma GCC visibility pop

int main(int argc, char **argv) {
    if (argc != 1 && argc != 4) {
        (void)fprintf(stderr, "usage: %s [INTERFACES NETWORKS ROUNDS]\n", argv[0]);
        return 2;
    }
    const int interfaces = argc == 4 ? atoi(argv[1]) : 40;
    const int networks = argc == 4 ? atoi(argv[2]) : 60;
    const int rounds = argc == 4 ? atoi(argv[3]) : 31;
    writeText("/etc/config/rip", store(interfaces, networks));
    writeText(kSettings, settings(interfaces, networks));
    if (frrVtyInit() != 0 || swRipInit() != 0) {
        return 1;
    }
    bench::Way ours = {"frruci, mandated pauses left out", {}};
    bench::Way bare = {"bare loop, same exchanges and log", {}};
    bench::Way vtysh = {"vtysh -f", {}};
    std::size_t commands = 0;
    {
        const Quiet quiet(stdout);
        rip_cfg_recovery(); // makes the instance, which later recoveries find in the model
        bench::startRecording();
        rip_cfg_recovery();
        const std::vector<bench::Step> steps = bench::stopRecording();
        commands = bench::exchanges(steps);
        for (int i = 0; i < rounds; ++i) {
            ours.times.push_back(bench::microseconds([] { rip_cfg_recovery(); }));
            bare.times.push_back(bench::microseconds([&] { bench::play(steps); }));
            vtysh.times.push_back(bench::shell(std::string("vtysh -f ") + kSettings));
        }
    }
    const int settingCount = interfaces * kInterfaceSettings + networks + kInstanceSettings;
    bench::printTable("RIP recovery of " + std::to_string(interfaces) + " interfaces and " +
                          std::to_string(networks) + " networks: " + std::to_string(settingCount) +
                          " settings, " + std::to_string(commands) + " commands",
                      {ours, bare, vtysh}, static_cast<std::size_t>(settingCount));
    std::printf("A command: frruci %.1f us, bare loop %.1f us.\n\n",
                bench::median(ours.times) / static_cast<double>(commands),
                bench::median(bare.times) / static_cast<double>(commands));
    measureShell(ours);
    return 0;
}
