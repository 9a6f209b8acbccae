// SPDX-License-Identifier: Apache-2.0
// RIP where mgmtd takes its configuration, and the same requests where it does not: mgmtd or ripd
// dead, several processes at once, and a ripd that comes up empty. What differs by version stands
// in the test.

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "frruci/frruci.h"
#include "tests/support/real_daemons.h"
#include "tests/system/handler_call.h"

namespace {

using routers::call;
using routers::frrVersion;
using routers::ReplyPipe;
using routers::Router;
using routers::waitFor;

using Lines = std::vector<std::string>;

constexpr const char *kVrf = "default";
constexpr int kSinceManagement = 1000;

/// A socket file without a listener, as a killed mgmtd leaves it.
void leaveSocket() {
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    (void)strcpy(address.sun_path, "/var/mgmtd.vty");
    ASSERT_EQ(bind(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    close(fd);
}

Lines sortedLines(const std::string &text) {
    std::istringstream stream(text);
    Lines lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

class Management : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(frrVtyInit(), 0);
        ASSERT_EQ(swRipInit(), 0U);
        ASSERT_TRUE(router_.startManagement());
    }

    void TearDown() override {
        for (const char *daemon : {"ripd", "zebra", "mgmtd"}) {
            EXPECT_TRUE(router_.stop(daemon)) << daemon;
        }
        (void)unlink("/var/mgmtd.vty"); // the next one makes its own
    }

    void handle(routers::Handler handler, const std::string &words) {
        call(handler, words);
        EXPECT_EQ(reply_.take(), "ok") << words;
    }

    void switchOn() {
        handle(process_rip_global, "on");
        ASSERT_TRUE(router_.answers("ripd"));
    }

    /// Waits until the processes are listed no more: until then they count as running.
    void switchOff() {
        handle(process_rip_global, "off");
        for (const char *daemon : {"ripd", "zebra"}) {
            ASSERT_TRUE(waitFor([&] { return process_exist(daemon, 0) == 0; })) << daemon;
        }
    }

    Lines instance() const { return sortedLines(router_.block("ripd", "router rip")); }
    Lines interface(const std::string &name) const {
        return sortedLines(router_.block("ripd", "interface " + name));
    }

    Router router_ = Router::first();
    ReplyPipe reply_{"/tmp/tmp/ospf_pipe_c2lua"};
};

TEST_F(Management, WithADeadMgmtdRipdIsAsked) {
    switchOn();
    if (frrVersion() < kSinceManagement) {
        leaveSocket();
    } else {
        ASSERT_TRUE(router_.stop("mgmtd"));
        ASSERT_EQ(access("/var/mgmtd.vty", F_OK), 0);
    }
    // Where mgmtd should take them, ripd refuses its settings.
    const bool taken = frrVersion() < kSinceManagement;
    EXPECT_EQ(swRipDistanceSet(kVrf, 77, 1) == 0, taken);
    EXPECT_EQ(routers::occurrences(router_.runningConfig("ripd"), " distance 77\n"),
              taken ? 1U : 0U);
}

TEST_F(Management, ANewMgmtdTakesSettings) {
    switchOn();
    ASSERT_EQ(swRipDistanceSet(kVrf, 77, 1), 0U);
    if (frrVersion() >= kSinceManagement) {
        ASSERT_TRUE(router_.stop("mgmtd") && router_.startManagement());
    }
    EXPECT_EQ(swRipDistanceSet(kVrf, 78, 1), 0U);
    EXPECT_EQ(instance(), Lines{" distance 78"});
}

TEST_F(Management, WithADeadRipdSettingsFailAndAreNotKept) {
    switchOn();
    ASSERT_EQ(swRipDistanceSet(kVrf, 77, 1), 0U);
    ASSERT_TRUE(router_.stop("ripd"));
    EXPECT_NE(swRipDistanceSet(kVrf, 78, 1), 0U);
    EXPECT_NE(doVtyRipConfigInterface("eth1.2", 1, "ip rip send version 1"), 0U);
    const std::string config = router_.runningConfig("ripd");
    EXPECT_EQ(config.find("distance 78"), std::string::npos) << config;
    EXPECT_EQ(config.find("send version"), std::string::npos) << config;
    ASSERT_TRUE(router_.start("ripd"));
    EXPECT_EQ(doVtyRipConfigInterface("eth1.2", 1, "ip rip send version 1"), 0U);
    EXPECT_EQ(interface("eth1.2"), Lines{" ip rip send version 1"});
}

/// Sets and takes back, so that each step changes something; the number of failures.
int keepSetting(const std::string &interface, int steps) {
    int failures = 0;
    for (int i = 0; i < steps; ++i) {
        const char *command = i % 2 == 0 ? "ip rip v2-broadcast" : "no ip rip v2-broadcast";
        failures += doVtyRipConfigInterface(interface.c_str(), 1, command) != 0 ? 1 : 0;
        (void)fflush(stdout); // what mgmtd says
    }
    return failures;
}

TEST_F(Management, ProcessesDoNotDisturbEachOther) {
    constexpr int kWorkers = 3;
    switchOn();
    std::array<pid_t, kWorkers> workers = {};
    for (int i = 0; i < kWorkers; ++i) {
        workers[static_cast<std::size_t>(i)] = fork();
        if (workers[static_cast<std::size_t>(i)] == 0) {
            _exit(keepSetting("eth1." + std::to_string(2 + i), 61));
        }
    }
    for (int i = 0; i < kWorkers; ++i) {
        int status = -1;
        ASSERT_EQ(waitpid(workers[static_cast<std::size_t>(i)], &status, 0),
                  workers[static_cast<std::size_t>(i)]);
        EXPECT_EQ(status, 0) << "failures of one process: " << WEXITSTATUS(status);
        EXPECT_EQ(interface("eth1." + std::to_string(2 + i)), Lines{" ip rip v2-broadcast"});
    }
}

TEST_F(Management, AProcessThatIsKilledInTheMiddleBlocksNobody) {
    switchOn();
    for (int i = 0; i < 20; ++i) {
        const pid_t victim = fork();
        if (victim == 0) {
            _exit(keepSetting("eth0.2", 1000));
        }
        (void)usleep(static_cast<useconds_t>(1000 + 700 * i));
        ASSERT_EQ(kill(victim, SIGKILL), 0);
        ASSERT_EQ(waitpid(victim, nullptr, 0), victim);
        // What mgmtd still does for the dead may cost another one its context, once.
        ASSERT_TRUE(waitFor([] { return keepSetting("eth1.2", 1) == 0; })) << i;
    }
}

/// True when nobody holds the other end open any more.
bool ends(int fd) {
    pollfd watched = {fd, POLLIN, 0};
    char bytes[4096];
    while (poll(&watched, 1, 10000) == 1) {
        if (read(fd, bytes, sizeof bytes) <= 0) {
            return true;
        }
    }
    return false;
}

TEST_F(Management, DaemonsDoNotKeepTheOutputOfTheirStarter) {
    int output[2];
    ASSERT_EQ(pipe2(output, O_CLOEXEC), 0);
    const pid_t starter = fork();
    if (starter == 0) {
        (void)dup2(output[1], STDOUT_FILENO);
        (void)dup2(output[1], STDERR_FILENO);
        rip_enable();
        (void)swOspfProcessCreateById(1, 1);
        _exit(0);
    }
    close(output[1]);
    ASSERT_EQ(waitpid(starter, nullptr, 0), starter);
    EXPECT_TRUE(ends(output[0]));
    close(output[0]);
    EXPECT_TRUE(waitFor([&] { return router_.answers("ripd") && router_.answers("ospfd"); }));
    EXPECT_TRUE(router_.answers("zebra"));
    EXPECT_TRUE(router_.stop("ospfd"));
}

/// What one round between on and off sets, and all that is to be shown then.
struct Round {
    Lines instanceWords;
    Lines interfaceWords;
    Lines instance;
    Lines interface; ///< of eth1.2
};

const Round kRounds[] = {
    {{"rip_distance 77", "update_timer 10"},
     {"send_version eth1.2 ripv1"},
     {" distance 77", " timers basic 10 180 120"},
     {" ip rip send version 1"}                                                             },
    {{"rip_version ripv2"},
     {"authen_mode eth1.2 md5 3 secret", "split_horizon_mode eth1.2 poison_reverse"},
     {" version 2"},
     {" ip rip authentication key-chain app_rip_3", " ip rip authentication mode md5",
      " ip rip split-horizon poisoned-reverse"}                                             },
    {{},                                                   {},                        {}, {}},
    {{"default_metric 5", "redistribute_static enable 4"},
     {"authen_mode eth1.2 simple 1 plain", "receive_version eth1.2 both"},
     {" default-metric 5", " redistribute static metric 4"},
     {" ip rip authentication mode text", " ip rip authentication string plain",
      " ip rip receive version 1 2"}                                                        },
};

TEST_F(Management, RoundsOfOffAndOnLeaveNothingBehind) {
    for (int number = 0; number < 20; ++number) {
        SCOPED_TRACE(number);
        ASSERT_EQ(frrVtyInit(), 0); // as after a restart of the host
        ASSERT_EQ(swRipInit(), 0U);
        switchOn();
        ASSERT_EQ(instance(), Lines{});
        ASSERT_EQ(interface("eth1.2"), Lines{});
        const Round &round = kRounds[static_cast<std::size_t>(number) % std::size(kRounds)];
        for (const std::string &words : round.instanceWords) {
            handle(process_rip_config, words);
        }
        for (const std::string &words : round.interfaceWords) {
            handle(process_rip_interface, words);
        }
        EXPECT_EQ(instance(), round.instance);
        EXPECT_EQ(interface("eth1.2"), round.interface);
        switchOff();
    }
}

} // namespace
