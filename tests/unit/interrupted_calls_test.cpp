// SPDX-License-Identifier: Apache-2.0
// Every call that waits, while a timer's signal interrupts it again and again: it goes on as if
// nothing had happened. Sockets, pipes, pauses and shell commands are real here.

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "nhrp/vty_nhrp.h"
#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_enable.h"
#include "ospf/frr_ospf_process.h"
#include "ospf/sw_ospf.h"
#include "rip/frr_rip.h"
#include "rip/sw_rip.h"
#include "tests/support/interruptions.h"
#include "vty/frr_util.h"
#include "vty/startup.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr const char *kReply = "/tmp/tmp/ospf_pipe_c2lua";
constexpr const char *kCachePipe = "/tmp/tmp/nhrp_pipe_c2lua_cache";
constexpr int kSeveral = 20;
constexpr std::size_t kMoreThanABuffer = 1 << 20; // of a pipe or a socket
constexpr milliseconds kReplyDeadline = std::chrono::seconds(5);
constexpr milliseconds kDeadline = std::chrono::seconds(20);

/// Waits until the timer has struck several times more; the test ends when it does not.
void letItStrike() {
    const int from = interruptions::count;
    const auto begun = steady_clock::now();
    while (interruptions::count - from < kSeveral) {
        if (steady_clock::now() - begun > kDeadline) {
            abort();
        }
        std::this_thread::sleep_for(milliseconds(1));
    }
}

/// The other side of a call: does its part only after the call was interrupted several times.
class Other {
public:
    explicit Other(std::function<void()> part)
        : thread_([part = std::move(part)] {
              interruptions::keepAway();
              letItStrike();
              part();
          }) {}
    ~Other() { thread_.join(); }
    Other(const Other &) = delete;
    Other &operator=(const Other &) = delete;

private:
    std::thread thread_;
};

std::string readAll(int fd) {
    std::string text;
    char bytes[65536];
    for (ssize_t count = 0; (count = read(fd, bytes, sizeof bytes)) > 0;) {
        text.append(bytes, static_cast<std::size_t>(count));
    }
    return text;
}

std::string fileText(const char *path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

void writeFile(const std::string &path, const std::string &text) {
    std::ofstream(path) << text;
}

class Interrupted : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(getenv("FRRUCI_SANDBOX"), nullptr); }
    void TearDown() override { EXPECT_GT(interruptions::count, 0); }
};

// ---- the sockets ----

class InterruptedSession : public Interrupted {
protected:
    void SetUp() override {
        Interrupted::SetUp();
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends_), 0);
    }
    void TearDown() override {
        close(ends_[0]);
        close(ends_[1]);
        Interrupted::TearDown();
    }

    void say(const std::string &bytes) const {
        EXPECT_EQ(send(ends_[1], bytes.data(), bytes.size(), 0),
                  static_cast<ssize_t>(bytes.size()));
    }
    /// Takes a command with its NUL.
    std::string hear() const {
        std::string command;
        for (char byte = 'x'; byte != '\0' && recv(ends_[1], &byte, 1, 0) == 1;) {
            command += byte;
        }
        return command;
    }

    int ends_[2] = {-1, -1};
    uint8_t code_ = 77;
    char reply_[512] = {};
};

std::string marker(char code) {
    return std::string(3, '\0') + code;
}

TEST_F(InterruptedSession, AnAnswerIsWaitedFor) {
    const interruptions::Timer timer;
    const Other daemon([this] { say("text" + marker(7)); });
    EXPECT_EQ(frrVtyRun(ends_[0], "x", &code_, reply_, sizeof reply_), 7);
}

TEST_F(InterruptedSession, ALongCommandIsSentWhole) {
    const std::string command(kMoreThanABuffer, 'c');
    std::string heard;
    const interruptions::Timer timer;
    {
        const Other daemon([this, &heard] {
            heard = hear();
            say(marker(0));
        });
        EXPECT_EQ(frrVtyRun(ends_[0], command.c_str(), &code_, reply_, sizeof reply_), 0);
        shutdown(ends_[0], SHUT_WR); // a daemon that still waits for more must not do so for ever
    }
    EXPECT_EQ(heard.size(), command.size() + 1);
}

TEST_F(InterruptedSession, ALongShowCommandIsSentWhole) {
    const std::string command(kMoreThanABuffer, 'c');
    std::string heard;
    const interruptions::Timer timer;
    {
        const Other daemon([this, &heard] {
            heard = hear();
            say(marker(0));
        });
        EXPECT_EQ(frrVtyPrint(ends_[0], command.c_str(), &code_, 0, 0, 2), 0);
        shutdown(ends_[0], SHUT_WR);
    }
    EXPECT_EQ(heard.size(), command.size() + 1);
}

TEST_F(InterruptedSession, TheCodeOfAShowIsWaitedFor) {
    say(std::string(253, 'x') + std::string(3, '\0')); // a whole chunk, the code alone after it
    const interruptions::Timer timer;
    const Other daemon([this] { say("\5"); });
    EXPECT_EQ(frrVtyPrint(ends_[0], "show x", &code_, 0, 0, 2), 5);
    EXPECT_EQ(code_, 5);
}

TEST_F(InterruptedSession, TheCacheIsWaitedFor) {
    ASSERT_EQ(mkfifo(kCachePipe, 0600), 0);
    const int reader = open(kCachePipe, O_RDWR | O_NONBLOCK);
    const interruptions::Timer timer;
    {
        const Other daemon([this] { say("{ }" + marker(0)); });
        EXPECT_EQ(frrVtyNhrpPrint(ends_[0], "show ip nhrp cache json"), 0U);
    }
    EXPECT_EQ(readAll(reader), "{}");
    close(reader);
    unlink(kCachePipe);
}

TEST_F(InterruptedSession, ALongCacheCommandIsSentWhole) {
    ASSERT_EQ(mkfifo(kCachePipe, 0600), 0);
    const int reader = open(kCachePipe, O_RDWR | O_NONBLOCK);
    const std::string command(kMoreThanABuffer, 'c');
    std::string heard;
    const interruptions::Timer timer;
    {
        const Other daemon([this, &heard] {
            heard = hear();
            say(marker(0));
        });
        EXPECT_EQ(frrVtyNhrpPrint(ends_[0], command.c_str()), 0U);
        shutdown(ends_[0], SHUT_WR);
    }
    EXPECT_EQ(heard.size(), command.size() + 1);
    close(reader);
    unlink(kCachePipe);
}

TEST_F(InterruptedSession, AConnectionIsWaitedFor) {
    constexpr const char *kBusy = "/var/busy.vty";
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    strcpy(address.sun_path, kBusy);
    const auto *bare = reinterpret_cast<const sockaddr *>(&address);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(listener, bare, sizeof address), 0);
    ASSERT_EQ(listen(listener, 0), 0);
    // Until no further connection fits into the queue.
    const int earlier = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(connect(earlier, bare, sizeof address), 0);

    const interruptions::Timer timer;
    int32_t fd = -1;
    {
        const Other daemon([listener] { close(accept(listener, nullptr, nullptr)); });
        EXPECT_EQ(frrVtyConnect(kBusy, &fd), 0);
    }
    const int session = accept4(listener, nullptr, nullptr, SOCK_NONBLOCK);
    EXPECT_EQ(send(fd, "x", 1, MSG_NOSIGNAL), 1);
    char byte = 0;
    EXPECT_EQ(recv(session, &byte, 1, 0), 1);
    for (const int open : {listener, earlier, fd, session}) {
        close(open);
    }
    unlink(kBusy);
}

// ---- the reply pipe ----

class InterruptedReply : public Interrupted {
protected:
    void SetUp() override {
        Interrupted::SetUp();
        ASSERT_EQ(mkfifo(kReply, 0600), 0);
    }
    void TearDown() override {
        unlink(kReply);
        Interrupted::TearDown();
    }

    /// What the front-end reads: it opens the pipe late, and reads later still.
    static std::string readLate(std::size_t size) {
        const int fd = open(kReply, O_RDONLY | O_NONBLOCK); // waits for no reply that never comes
        letItStrike();
        std::string text;
        for (const auto begun = steady_clock::now();
             text.size() < size && steady_clock::now() - begun < kReplyDeadline;) {
            text += readAll(fd);
        }
        close(fd);
        return text;
    }

    static std::string replied(const std::string &text) {
        std::string taken;
        const interruptions::Timer timer;
        const Other frontEnd([&taken, &text] { taken = readLate(text.size()); });
        EXPECT_EQ(write_pipe_to_lua(text.c_str(), kReply), 0);
        return taken;
    }
};

TEST_F(InterruptedReply, ItsReaderIsWaitedFor) {
    EXPECT_EQ(replied("ok"), "ok");
}

TEST_F(InterruptedReply, ALongTextArrivesWhole) {
    const std::string text(kMoreThanABuffer, 't');
    EXPECT_EQ(replied(text).size(), text.size());
}

// ---- commands of the shell ----

/// Commands that take their time, first in PATH.
class InterruptedShell : public Interrupted {
protected:
    void SetUp() override {
        Interrupted::SetUp();
        ASSERT_EQ(mkdir("/tmp/slow", 0755), 0);
        ASSERT_EQ(setenv("PATH", ("/tmp/slow:" + path_).c_str(), 1), 0);
        for (const char *command : {"ps", "ifconfig", "iptables", "lua", "zebra", "ospfd", "ripd",
                                    "conntrack", "vnete"}) {
            slow(command, "true");
        }
    }
    void TearDown() override {
        ASSERT_EQ(setenv("PATH", path_.c_str(), 1), 0);
        ASSERT_EQ(system("rm -rf /tmp/slow /tmp/cli_vid /tmp/cli_ipaddr"), 0);
        (void)remove("/tmp/tmp/data");
        Interrupted::TearDown();
    }

    static void slow(const std::string &name, const std::string &script) {
        const std::string path = "/tmp/slow/" + name;
        writeFile(path, "#!/bin/sh\nsleep 0.05\n" + script + "\n");
        ASSERT_EQ(chmod(path.c_str(), 0755), 0);
    }

    const std::string path_ = getenv("PATH");
};

TEST_F(InterruptedShell, EveryProcessIsListed) {
    slow("ps", "for pid in 11 22 33; do echo \" $pid root zebra -d\"; done");
    const interruptions::Timer timer;
    EXPECT_EQ(process_exist("zebra", 0), 3);
}

TEST_F(InterruptedShell, EveryProcessIsKilled) {
    const pid_t child = fork();
    if (child == 0) {
        for (;;) {
            pause();
        }
    }
    slow("ps", "echo \"" + std::to_string(child) + " root ospfd\"");
    const interruptions::Timer timer;
    EXPECT_EQ(process_exist("ospfd", 1), 1);
    (void)kill(child, SIGTERM); // where it was not killed already
    int status = 0;
    while (waitpid(child, &status, 0) != child) {
    }
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
}

TEST_F(InterruptedShell, TheFirewallIsNotOpenedTwice) {
    slow("iptables", "echo \"$@\" >> /tmp/slow/asked; echo ACCEPT udp dpt:520");
    slow("ps", "echo 11 root zebra; echo 12 root ripd");
    const interruptions::Timer timer;
    rip_enable();
    EXPECT_EQ(fileText("/tmp/slow/asked"), "-t filter -nvL INPUT\n");
}

TEST_F(InterruptedShell, TheRoutersOwnAddressesAreListed) {
    slow("lua", "echo none > /tmp/cli_ipaddr; echo 2 > /tmp/cli_vid");
    slow("ifconfig", "echo 'inet addr:10.1.0.1'; echo 'inet addr:10.1.0.2'");
    const interruptions::Timer timer;
    EXPECT_EQ(check_network_ip("10.1.0.2"), 1);
    EXPECT_EQ(check_network_ip("10.1.0.3"), 0);
}

TEST_F(InterruptedShell, TheFrontEndsAnswerIsWaitedFor) {
    slow("lua", "echo 17 > /tmp/cli_vid");
    const interruptions::Timer timer;
    EXPECT_EQ(sw_is_lan_vid(2), 17);
    EXPECT_EQ(sw_is_wan_vid(2), 17);
}

// ---- the store ----

TEST_F(Interrupted, AnotherWriterOfTheStoreIsWaitedFor) {
    writeFile("/etc/config/ospf", "config global 'global'\n");
    const int writer = open("/etc/config/ospf", O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(writer, LOCK_EX), 0);
    const interruptions::Timer timer;
    {
        const Other end([writer] { close(writer); });
        EXPECT_EQ(frr_uci_set("ospf", "global", "status", "on"), 0);
    }
    char status[64];
    EXPECT_EQ(frr_uci_get("ospf", "global", "status", status, sizeof status), 0);
    EXPECT_STREQ(status, "on");
    unlink("/etc/config/ospf");
}

// ---- pauses ----

class InterruptedPause : public InterruptedShell {
protected:
    /// How long a call takes while the timer strikes.
    static milliseconds lengthOf(const std::function<void()> &call) {
        const interruptions::Timer timer(200); // the shortest pause lasts 10 ms
        const auto begun = steady_clock::now();
        call();
        return std::chrono::duration_cast<milliseconds>(steady_clock::now() - begun);
    }

    static void callWith(void (*handler)(int32_t, char **), std::vector<std::string> words) {
        std::vector<char *> argv;
        for (std::string &word : words) {
            argv.push_back(word.data());
        }
        handler(static_cast<int32_t>(argv.size()), argv.data());
    }
};

TEST_F(InterruptedPause, BetweenFoldersAndPermissions) {
    EXPECT_GE(lengthOf([] { (void)frr_process_init(); }), milliseconds(1000));
}

TEST_F(InterruptedPause, AfterZebra) {
    EXPECT_GE(lengthOf([] { (void)zebra_enable(); }), milliseconds(1000));
}

TEST_F(InterruptedPause, AfterOspfdAndItsRouterId) {
    slow("ps", "echo 11 root zebra");
    ASSERT_EQ(swOspfInit(), 0U);
    EXPECT_GE(lengthOf([] { (void)ospf_enable("1.2.3.4"); }), milliseconds(2000));
}

TEST_F(InterruptedPause, AroundRipd) {
    slow("ps", "echo 11 root zebra");
    ASSERT_EQ(frrVtyInit(), 0);
    ASSERT_EQ(swRipInit(), 0U);
    EXPECT_GE(lengthOf([] { rip_enable(); }), milliseconds(2000));
}

TEST_F(InterruptedPause, AfterANetworkOfRip) {
    EXPECT_GE(lengthOf([] {
                  callWith(process_rip_network, {"add", "10.0.0.0", "255.0.0.0"});
              }),
              milliseconds(1000));
}

TEST_F(InterruptedPause, AfterTheStatusOfRip) {
    EXPECT_GE(lengthOf([] { (void)process_rip_interface_show(0, nullptr); }), milliseconds(100));
}

TEST_F(InterruptedPause, BeforeTheEndMarkOfRows) {
    for (void (*rows)() : {process_ospf_neighbor, process_ospf_lsdb}) {
        EXPECT_GE(lengthOf(rows), milliseconds(10));
    }
}

} // namespace
