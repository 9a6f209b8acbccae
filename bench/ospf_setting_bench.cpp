// SPDX-License-Identifier: Apache-2.0
// One OSPF interface setting, reply included, against the bare loop with the same exchanges. Wants
// a running ospfd with its socket in /var; run it in the sandbox.

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "bench/bare.h"
#include "bench/measure.h"
#include "ospf/frr_ospf.h"

namespace {

constexpr const char *kSettingFile = "/tmp/setting.conf";
constexpr const char *kReplyPipe = "/tmp/tmp/ospf_pipe_c2lua";
constexpr int kRuns = 4000;
constexpr int kRunsBetweenShells = 40; // vtysh takes long: once for so many of the others

[[noreturn]] void fail(const char *what) {
    perror(what);
    exit(1);
}

void setHello(int pipe, int seconds) {
    std::string name = "eth1.2";
    std::string side = "lan";
    std::string keyword = "hello";
    std::string value = std::to_string(seconds);
    char *words[] = {name.data(), side.data(), keyword.data(), value.data(), nullptr};
    process_ospf_interface(4, words);
    char reply[8];
    if (read(pipe, reply, sizeof reply) != 2) {
        fail("reply");
    }
}

void setHelloBare(int seconds) {
    char command[256];
    (void)snprintf(command, sizeof command, "ip ospf hello-interval %d", seconds);
    const char *const commands[] = {"en", "configure", "interface eth1.2", command};
    if (bareDeliver("/var/ospfd.vty", commands, 4) != 0) {
        fail("bare loop");
    }
}

void writeSetting(const std::string &setting) {
    FILE *file = fopen(kSettingFile, "w");
    if (file == nullptr || fprintf(file, "interface eth1.2\n %s\n", setting.c_str()) < 0 ||
        fclose(file) != 0) {
        fail(kSettingFile);
    }
}

} // namespace

int main() {
    (void)mkdir("/tmp/tmp", 0755);
    (void)mkfifo(kReplyPipe, 0666);
    const int pipe = open(kReplyPipe, O_RDWR | O_NONBLOCK);
    if (pipe < 0) {
        fail(kReplyPipe);
    }
    bench::Way ours = {"frruci, with the reply", {}};
    bench::Way bare = {"bare loop, same exchanges and log", {}};
    bench::Way words = {"vtysh -c", {}};
    bench::Way file = {"vtysh -f", {}};
    for (int i = 0; i < kRuns; ++i) {
        const int seconds = 1 + i % 200;
        ours.times.push_back(bench::microseconds([&] { setHello(pipe, seconds); }));
        bare.times.push_back(bench::microseconds([&] { setHelloBare(seconds + 1); }));
        if (i % kRunsBetweenShells == 0) {
            const std::string setting = "ip ospf hello-interval " + std::to_string(seconds + 2);
            words.times.push_back(bench::shell(
                "vtysh -d ospfd -c configure -c 'interface eth1.2' -c '" + setting + "'"));
            writeSetting(setting);
            file.times.push_back(bench::shell(std::string("vtysh -f ") + kSettingFile));
        }
    }
    bench::printTable("One OSPF interface setting", {ours, bare, words, file}, 1);
    return 0;
}
