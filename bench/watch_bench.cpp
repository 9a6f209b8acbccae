// SPDX-License-Identifier: Apache-2.0
// How long an ospfd that was started anew has no configuration under "frruci watch": from the first
// connection to its socket to the whole configuration of 40 interfaces and 60 networks.
// watch_bench FRRUCI RUNS; run it in the sandbox, with zebra and ospfd.

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "bench/measure.h"
#include "bench/settings.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kDeadline{20};
constexpr std::chrono::milliseconds kPoll{1};

template <typename Condition> void await(const char *what, Condition condition) {
    const auto end = Clock::now() + kDeadline;
    while (!condition()) {
        if (Clock::now() >= end) {
            (void)fprintf(stderr, "watch_bench: no %s\n", what);
            exit(1);
        }
        std::this_thread::sleep_for(kPoll);
    }
}

/// A session with ospfd; negative when it accepts none.
int openSession() {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    (void)snprintf(address.sun_path, sizeof address.sun_path, "/var/ospfd.vty");
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (connect(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        (void)close(fd);
        return -1;
    }
    return fd;
}

bool isOpen() {
    const int fd = openSession();
    (void)close(fd);
    return fd >= 0;
}

/// The answer's text, up to its three NULs.
std::string ask(int fd, const char *command) {
    static constexpr char kEnd[] = {0, 0, 0};
    std::string answer;
    char bytes[4096];
    ssize_t count = send(fd, command, strlen(command) + 1, MSG_NOSIGNAL);
    while (count > 0 && answer.find(kEnd, 0, sizeof kEnd) == std::string::npos) {
        count = recv(fd, bytes, sizeof bytes, 0);
        answer.append(bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return answer.substr(0, answer.find(kEnd, 0, sizeof kEnd));
}

/// The settings that ospfd shows, in a text.
std::string settings() {
    const int fd = openSession();
    (void)ask(fd, "enable");
    std::istringstream lines(ask(fd, "show running-config"));
    (void)close(fd);
    std::string all;
    for (std::string line; std::getline(lines, line);) {
        all += line.empty() || line[0] == '!' ? "" : line + "\n";
    }
    return all;
}

void killDaemon() {
    pid_t pid = 0;
    std::ifstream("/var/ospfd.pid") >> pid;
    if (pid > 0) {
        (void)kill(pid, SIGKILL);
    }
    await("end of ospfd", [&] { return kill(pid, 0) != 0; });
}

pid_t startWatch(const char *frruci) {
    const pid_t child = fork();
    if (child == 0) {
        const int nowhere = open("/dev/null", O_RDWR);
        (void)dup2(nowhere, STDOUT_FILENO);
        (void)dup2(nowhere, STDERR_FILENO);
        (void)execl(frruci, frruci, "watch", nullptr);
        _exit(127);
    }
    return child;
}

/// Each time with a watch of its own: one that has seen a crash waits after the next.
double measureOnce(const char *frruci, const std::string &complete) {
    const pid_t watch = startWatch(frruci);
    await("first configuration", [&] { return settings() == complete; });
    killDaemon();
    (void)bench::shell("ospfd -d");
    await("socket", isOpen);
    const double took = bench::microseconds(
        [&] { await("configuration", [&] { return settings() == complete; }); });
    (void)kill(watch, SIGTERM);
    (void)waitpid(watch, nullptr, 0);
    killDaemon();
    (void)bench::shell("ospfd -d");
    await("socket", isOpen);
    return took;
}

} // namespace

int main(int argc, char **argv) {
    const int runs = argc == 3 ? static_cast<int>(strtol(argv[2], nullptr, 10)) : 0;
    if (runs < 1) {
        (void)fprintf(stderr, "usage: watch_bench FRRUCI RUNS\n");
        return 2;
    }
    bench::writeText("/etc/config/ospf", bench::ospfStore(40, 60));
    (void)bench::shell(std::string(argv[1]) + " apply ospf");
    const std::string complete = settings();
    killDaemon();
    (void)bench::shell("ospfd -d");
    await("socket", isOpen);
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        times.push_back(measureOnce(argv[1], complete));
    }
    std::printf("## Watch: from a new ospfd's socket to 40 interfaces and 60 networks\n\n"
                "| runs | median, ms | worst, ms |\n|--:|--:|--:|\n| %d | %.0f | %.0f |\n\n",
                runs, bench::median(times) / 1000,
                *std::max_element(times.begin(), times.end()) / 1000);
    return 0;
}
