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

constexpr const char *kReplyPipe = "/tmp/tmp/ospf_pipe_c2lua";
constexpr int kRuns = 4000;

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

} // namespace

int main() {
    (void)mkdir("/tmp/tmp", 0755);
    (void)mkfifo(kReplyPipe, 0666);
    const int pipe = open(kReplyPipe, O_RDWR | O_NONBLOCK);
    if (pipe < 0) {
        fail(kReplyPipe);
    }
    std::vector<double> ours;
    std::vector<double> bare;
    for (int i = 0; i < kRuns; ++i) {
        const int seconds = 1 + i % 200;
        ours.push_back(bench::microseconds([&] { setHello(pipe, seconds); }));
        bare.push_back(bench::microseconds([&] { setHelloBare(seconds + 1); }));
    }
    const double a = bench::median(ours);
    const double b = bench::median(bare);
    std::printf(
        "one OSPF interface setting, %d runs interleaved, medians:\n"
        "  frruci     %8.1f us (reply included)\n  bare loop  %8.1f us\n  ratio      %8.3f\n",
        kRuns, a, b, a / b);
    return 0;
}
