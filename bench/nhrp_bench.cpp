// SPDX-License-Identifier: Apache-2.0
// One NHRP phrase on a real daemon, and how its time splits into store write, delivery and reply.
// Wants nhrpd and zebra running with their sockets in /var; run it in the sandbox, whose folders
// are in memory: the disk has no part in the figures.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

#include "bench/bare.h"
#include "bench/measure.h"
#include "common/front_end.h"
#include "nhrp/frr_nhrp.h"

namespace {

using Clock = std::chrono::steady_clock;

/// When the library turned from the store to the daemon.
Clock::time_point connected;

} // namespace

// Takes the C library's place, to see where the store write ends.
extern "C" int connect(int fd, const sockaddr *address, socklen_t length) {
    connected = Clock::now();
    const long result = syscall(SYS_connect, fd, address, length);
    return static_cast<int>(result);
}

namespace {

constexpr const char *kReplyPipe = "/tmp/tmp/nhrp_pipe_c2lua";
constexpr int kRuns = 2000;

[[noreturn]] void fail(const std::string &what) {
    perror(what.c_str());
    exit(1);
}

struct Phrase {
    const char *daemon;
    std::vector<std::string> words; // "#" stands for a number that changes from run to run
};

const std::vector<Phrase> &phrases() {
    static const std::vector<Phrase> kAll = {
        {"nhrpd", {"ip", "nhrp", "network-id", "#"}                         },
        {"nhrpd", {"ip", "nhrp", "shortcut"}                                },
        {"nhrpd", {"no", "ip", "nhrp", "shortcut"}                          },
        {"nhrpd", {"ip", "nhrp", "registration", "no-unique"}               },
        {"nhrpd", {"ip", "nhrp", "nhs", "dynamic", "nbma", "10.1.2.#"}      },
        {"nhrpd", {"no", "ip", "nhrp", "nhs", "dynamic", "nbma", "10.1.2.#"}},
        {"nhrpd", {"tunnel", "protection", "vici", "profile", "profile#"}   },
        {"nhrpd", {"tunnel", "source", "eth0.2"}                            },
        {"zebra", {"ip", "address", "10.9.#.1/24"}                          },
        {"zebra", {"no", "ip", "address", "10.9.#.1/24"}                    },
    };
    return kAll;
}

std::vector<std::string> wordsOf(const Phrase &phrase, int number) {
    std::vector<std::string> words = phrase.words;
    for (std::string &word : words) {
        const std::size_t at = word.find('#');
        if (at != std::string::npos) {
            word.replace(at, 1, std::to_string(number));
        }
    }
    return words;
}

std::string joined(const std::vector<std::string> &words) {
    std::string text;
    for (const std::string &word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

void expectReply(int pipe, const std::string &phrase) {
    char reply[8] = {};
    if (read(pipe, reply, sizeof reply - 1) != 2 || std::string(reply) != "ok") {
        fail(phrase);
    }
}

struct Times {
    std::vector<double> whole;
    std::vector<double> store;
    std::vector<double> reply;
    std::vector<double> bare;
};

double since(Clock::time_point begin, Clock::time_point end) {
    return std::chrono::duration<double, std::micro>(end - begin).count();
}

void run(const Phrase &phrase, int pipe, int number, Times &times) {
    std::vector<std::string> words = wordsOf(phrase, number);
    const std::string command = joined(words);
    words.insert(words.begin(), {"x", "tun0"});
    std::vector<char *> vector;
    for (std::string &word : words) {
        vector.push_back(word.data());
    }
    vector.push_back(nullptr);
    const auto begin = Clock::now();
    process_nhrp_interface(static_cast<int32_t>(words.size()), vector.data());
    times.whole.push_back(since(begin, Clock::now()));
    times.store.push_back(since(begin, connected));
    expectReply(pipe, command);
    times.reply.push_back(bench::microseconds([] { (void)write_pipe_to_lua("ok", kReplyPipe); }));
    expectReply(pipe, command);
    // The same exchanges by the shortest program there is. The daemon may refuse to do it again.
    const char *const commands[] = {"enable", "configure", "interface tun0", command.c_str()};
    const std::string socket = std::string("/var/") + phrase.daemon + ".vty";
    times.bare.push_back(
        bench::microseconds([&] { (void)bareDeliver(socket.c_str(), commands, 4); }));
}

void print(const Phrase &phrase, const Times &times) {
    const double whole = bench::median(times.whole);
    const double store = bench::median(times.store);
    const double reply = bench::median(times.reply);
    std::printf("| %s | %s | %.0f | %.0f | %.0f | %.0f | %.0f |\n", joined(phrase.words).c_str(),
                phrase.daemon, whole, store, whole - store - reply, reply,
                bench::median(times.bare));
}

} // namespace

int main() {
    (void)mkdir("/tmp/tmp", 0755); // may be there
    (void)mkfifo(kReplyPipe, 0666);
    const int pipe = open(kReplyPipe, O_RDWR | O_NONBLOCK);
    if (pipe < 0) {
        fail(kReplyPipe);
    }
    std::ofstream("/etc/config/nhrp") << "config nhrp 'sdwan'\n";
    std::vector<Times> times(phrases().size());
    for (int i = 0; i < kRuns; ++i) {
        for (std::size_t at = 0; at < phrases().size(); ++at) {
            run(phrases()[at], pipe, 1 + i % 250, times[at]);
        }
    }
    std::printf("## One NHRP phrase\n\n%d interleaved runs, medians in us. Store write: until the "
                "daemon's socket is called, logs included. Bare: the same exchanges by a plain "
                "loop.\n\n"
                "| phrase | daemon | whole | store write | delivery | reply | bare |\n"
                "|---|---|--:|--:|--:|--:|--:|\n",
                kRuns);
    for (std::size_t at = 0; at < phrases().size(); ++at) {
        print(phrases()[at], times[at]);
    }
    std::printf("\n");
    return 0;
}
