// SPDX-License-Identifier: Apache-2.0
// Starts, stops and questions the real daemons of the sandbox's routers.
#include "tests/support/real_daemons.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace routers {
namespace {

constexpr milliseconds kPollPause{20};
constexpr time_t kAnswerSeconds = 10;
constexpr const char *kBusy = "could not lock "; // mgmtd, while a daemon of its has just started
constexpr const char *kSecondRouter = FRRUCI_SUPPORT_FOLDER "/second_router";

[[noreturn]] void giveUp(const std::string &why) {
    (void)std::fprintf(stderr, "real daemons: %s\n", why.c_str());
    std::abort();
}

/// A vty session of the test's own, so that a fault in the library's is not hidden by itself.
class VtySession {
public:
    explicit VtySession(const std::string &path)
        : fd_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (path.size() >= sizeof address.sun_path) {
            giveUp("socket path too long: " + path);
        }
        std::memcpy(address.sun_path, path.c_str(), path.size());
        const timeval limit{kAnswerSeconds, 0};
        (void)setsockopt(fd_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        open_ = connect(fd_, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    }
    ~VtySession() { close(fd_); }
    VtySession(const VtySession &) = delete;
    VtySession &operator=(const VtySession &) = delete;

    Reply run(const std::string &command) const {
        const size_t size = command.size() + 1;
        if (!open_ ||
            send(fd_, command.c_str(), size, MSG_NOSIGNAL) != static_cast<ssize_t>(size)) {
            return {};
        }
        return answer();
    }

private:
    /// Output, three NUL bytes, completion code.
    Reply answer() const {
        static const std::string kMarker(3, '\0');
        Reply reply;
        std::string received;
        char chunk[4096];
        for (;;) {
            const size_t end = received.find(kMarker);
            if (end != std::string::npos && received.size() > end + kMarker.size()) {
                reply.code = static_cast<unsigned char>(received[end + kMarker.size()]);
                reply.text = received.substr(0, end);
                return reply;
            }
            const ssize_t got = recv(fd_, chunk, sizeof chunk, 0);
            if (got <= 0) {
                reply.text = received;
                return reply;
            }
            received.append(chunk, static_cast<size_t>(got));
        }
    }

    int fd_;
    bool open_ = false;
};

std::string quoted(const std::string &text) {
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return result + "'";
}

} // namespace

bool waitFor(const std::function<bool()> &condition, milliseconds deadline) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(kPollPause);
    }
    return true;
}

int frrVersion() {
    static const int kVersion = [] {
        int major = 0;
        int minor = 0;
        const std::string text = Router::first().output("zebra --version");
        if (std::sscanf(text.c_str(), "zebra version %d.%d", &major, &minor) != 2) {
            giveUp("no version in: " + text);
        }
        return major * 100 + minor;
    }();
    return kVersion;
}

Router::Router(std::string launcher, std::string root)
    : launcher_(std::move(launcher)), root_(std::move(root)) {}

Router Router::first() {
    if (std::getenv("FRRUCI_SANDBOX") == nullptr) {
        giveUp("outside the sandbox");
    }
    return {"", ""};
}

Router Router::second() {
    const std::string launcher = quoted(kSecondRouter) + " ";
    if (std::system((launcher + "true").c_str()) != 0) {
        giveUp("the second router does not start");
    }
    std::ifstream state("/run/sandbox/second/init");
    std::string process;
    state >> process;
    return {launcher, "/proc/" + process + "/root"};
}

bool Router::start(const std::string &daemon) const {
    return run(daemon + " -d") == 0 && waitFor([&] { return answers(daemon); });
}

bool Router::startManagement() const {
    return frrVersion() < 1000 || start("mgmtd");
}

bool Router::stop(const std::string &daemon) const {
    (void)run("killall -q -KILL " + daemon); // fails when none runs, which is as good
    return waitFor([&] { return processCount(daemon) == 0; });
}

bool Router::answers(const std::string &daemon) const {
    return session(daemon, {"enable"}).code == 0;
}

int Router::processCount(const std::string &name) const {
    std::istringstream lines(output("ps -w"));
    int count = 0;
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        std::string id;
        std::string user;
        std::string size;
        std::string state;
        std::string program;
        fields >> id >> user >> size >> state >> program;
        program = program.substr(program.rfind('/') + 1);
        // One that is ending has lost its words while its other threads still hold its lock; it is
        // gone when it is listed no more.
        const bool isEnding = program == "[" + name + "]";
        count += program == name || isEnding ? 1 : 0;
    }
    return count;
}

Reply Router::session(const std::string &daemon, const std::vector<std::string> &commands) const {
    const VtySession session(root_ + "/var/" + daemon + ".vty");
    Reply reply;
    for (const std::string &command : commands) {
        reply = session.run(command);
        if (reply.code != 0) {
            break;
        }
    }
    return reply;
}

Reply Router::vty(const std::string &daemon, const std::string &command) const {
    return session(daemon, {"enable", command});
}

Reply Router::configure(const std::string &daemon, const std::vector<std::string> &commands) const {
    std::vector<std::string> all{"enable", "configure terminal"};
    all.insert(all.end(), commands.begin(), commands.end());
    Reply reply;
    (void)waitFor([&] {
        reply = session(holder(daemon), all);
        return reply.text.find(kBusy) == std::string::npos;
    });
    return reply;
}

std::string Router::runningConfig(const std::string &daemon) const {
    std::istringstream lines(vty(holder(daemon), "show running-config").text);
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        // A daemon writes one for every interface that it has heard of, in use or not.
        if (line != "!") {
            result += line + "\n";
        }
    }
    return result;
}

std::string Router::block(const std::string &daemon, const std::string &heading) const {
    std::istringstream lines(vty(holder(daemon), "show running-config").text);
    std::string result;
    std::string line;
    bool inside = false;
    while (std::getline(lines, line)) {
        if (inside && (line == "exit" || line == "!")) {
            break;
        }
        if (inside) {
            result += line + "\n";
        }
        inside = inside || line == heading;
    }
    return result;
}

std::string Router::holder(const std::string &daemon) const {
    const bool managed = daemon == "zebra" || daemon == "ripd";
    return managed && answers("mgmtd") ? "mgmtd" : daemon;
}

std::string Router::shell(const std::string &command) const {
    return launcher_.empty() ? command : launcher_ + "sh -c " + quoted(command);
}

int Router::run(const std::string &command) const {
    const int status = std::system(shell(command).c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string Router::output(const std::string &command) const {
    FILE *stream = popen(shell(command).c_str(), "r");
    if (stream == nullptr) {
        giveUp("cannot run " + command);
    }
    std::string result;
    char chunk[4096];
    size_t got = 0;
    while ((got = std::fread(chunk, 1, sizeof chunk, stream)) > 0) {
        result.append(chunk, got);
    }
    (void)pclose(stream); // the output is what was asked for
    return result;
}

ReplyPipe::ReplyPipe(const std::string &path) : path_(path) {
    (void)unlink(path.c_str()); // usually absent
    if (mkfifo(path.c_str(), 0600) != 0) {
        giveUp("cannot make " + path + ": " + std::strerror(errno));
    }
    fd_ = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
}

ReplyPipe::~ReplyPipe() {
    close(fd_);
    (void)unlink(path_.c_str()); // a test may have removed it
}

std::string ReplyPipe::take() {
    std::string result;
    char chunk[4096];
    ssize_t got = 0;
    while ((got = read(fd_, chunk, sizeof chunk)) > 0) {
        result.append(chunk, static_cast<size_t>(got));
    }
    return result;
}

} // namespace routers
