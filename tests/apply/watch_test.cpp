// SPDX-License-Identifier: Apache-2.0
// Under watch the configuration comes back whatever becomes of the daemons.

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/apply/program.h"
#include "tests/apply/stores.h"

namespace {

using namespace program;

constexpr unsigned kSeed = 7000;
// A daemon that crashes again and again is waited for longer and longer.
constexpr auto kBack = std::chrono::seconds(40);
// What watch says when mgmtd does not give its lock back, and after how many it is over.
constexpr const char *kLocked = "could not lock running DS";
constexpr int kManyLocked = 3;

int kills() {
    const char *wanted = std::getenv("FRRUCI_WATCH_KILLS");
    return wanted == nullptr ? 5 : std::atoi(wanted);
}

/// "frruci watch" for as long as this lives.
class Watch {
public:
    Watch() {
        (void)unlink("/tmp/watch.log");
        child_ = fork();
        if (child_ == 0) {
            const int log = open("/tmp/watch.log", O_WRONLY | O_CREAT | O_APPEND, 0600);
            (void)dup2(log, STDOUT_FILENO);
            (void)dup2(log, STDERR_FILENO);
            (void)setenv("FRRUCI_LIBRARY", FRRUCI_LIBRARY, 1);
            (void)execl(FRRUCI_HOST, FRRUCI_HOST, "watch", nullptr);
            _exit(127);
        }
        EXPECT_TRUE(routers::waitFor([] { return said("watching"); }));
    }
    ~Watch() { (void)end(); }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    void reload() const { (void)kill(child_, SIGHUP); }
    /// The exit status; -1 when a signal ended it, or it had ended before.
    int end() {
        if (child_ <= 0) {
            return -1;
        }
        int status = 0;
        (void)kill(child_, SIGTERM);
        (void)waitpid(child_, &status, 0);
        child_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    static bool said(const std::string &text) {
        return router().output("cat /tmp/watch.log").find(text) != std::string::npos;
    }

    /// Processes that it has started and not waited for.
    int children() const {
        return std::atoi(router()
                             .output("grep -lx 'PPid:\t" + std::to_string(child_) +
                                     "' /proc/[0-9]*/status 2>/dev/null | wc -l")
                             .c_str());
    }

    static int count(const std::string &text) {
        return std::atoi(router().output("grep -c '" + text + "' /tmp/watch.log").c_str());
    }

private:
    pid_t child_ = -1;
};

class Watching : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(router().startManagement());
        hasManagement_ = router().answers("mgmtd");
    }

    void TearDown() override {
        stopAll();
        (void)router().run("rm -f /etc/config/*");
    }

    /// Whether the configuration comes while mgmtd is started again, as by its service or by hand:
    /// that of 10.3 may crash when ripd is killed, and may keep its lock when ripd has hung up in
    /// the middle of a change.
    bool comesBackTo(const std::string &daemon, const std::set<std::string> &expected) {
        return routers::waitFor(
            [&] {
                const bool crashed = hasManagement_ && !router().answers("mgmtd");
                if (crashed || Watch::count(kLocked) >= kManyLocked * (locksOfMgmtd_ + 1)) {
                    ++(crashed ? crashesOfMgmtd_ : locksOfMgmtd_);
                    EXPECT_TRUE(router().stop("mgmtd") && router().startManagement());
                }
                return running(daemon) == expected;
            },
            kBack);
    }

    /// Kills the daemon over and over; whoever starts it, its configuration comes back.
    void killed(const std::string &daemon, const std::string &protocol, int times,
                bool startAtOnce) {
        ASSERT_EQ(frruci("apply " + protocol).status, 0);
        const auto complete = running(daemon);
        Watch watch;
        for (int i = 0; i < times; ++i) {
            ASSERT_TRUE(router().stop(daemon));
            if (startAtOnce) {
                ASSERT_TRUE(router().start(daemon));
            }
            ASSERT_TRUE(comesBackTo(daemon, complete))
                << missing(running(daemon), complete) << router().output("cat /tmp/watch.log");
        }
        EXPECT_EQ(watch.end(), 0);
        // Not more often: after each crash in a row watch waits longer.
        const int losses = Watch::count("frruci: " + daemon + " is gone");
        EXPECT_GT(losses, 0);
        EXPECT_LE(losses, times) << router().output("cat /tmp/watch.log");
        EXPECT_TRUE(startAtOnce != Watch::said("starting " + daemon) ||
                    crashesOfMgmtd_ + locksOfMgmtd_ > 0)
            << router().output("grep -v gone /tmp/watch.log");
        std::printf("%d kills of %s, %d crashes and %d kept locks of mgmtd\n", times,
                    daemon.c_str(), crashesOfMgmtd_, locksOfMgmtd_);
    }

    bool hasManagement_ = false;
    int crashesOfMgmtd_ = 0;
    int locksOfMgmtd_ = 0;
};

TEST_F(Watching, OspfComesBack) {
    write("ospf", stores::ospf(kSeed));
    killed("ospfd", "ospf", kills(), true);
}

TEST_F(Watching, RipComesBack) {
    write("rip", stores::rip(kSeed));
    killed("ripd", "rip", kills(), true);
}

TEST_F(Watching, NhrpComesBack) {
    write("nhrp", stores::nhrp(stores::nhrpValues(kSeed)));
    killed("nhrpd", "nhrp", kills(), true);
}

TEST_F(Watching, ADaemonThatStaysGoneIsStarted) {
    write("ospf", stores::ospf(kSeed + 1));
    killed("ospfd", "ospf", 2, false);
}

std::string routerId(const std::string &id) {
    return "config global 'global'\n\toption status 'on'\n\toption router_id '" + id + "'\n";
}

bool hasRouterId(const std::string &id) {
    return running("ospfd").count("router ospf / ospf router-id " + id) > 0;
}

TEST_F(Watching, AChangedStoreIsAppliedOnHangUp) {
    start({"zebra", "ospfd"});
    write("ospf", routerId("7.7.7.1"));
    const Watch watch;
    ASSERT_TRUE(routers::waitFor([] { return hasRouterId("7.7.7.1"); }));
    write("ospf", routerId("7.7.7.2"));
    EXPECT_FALSE(routers::waitFor([] { return hasRouterId("7.7.7.2"); }, std::chrono::seconds(1)));
    watch.reload();
    EXPECT_TRUE(routers::waitFor([] { return hasRouterId("7.7.7.2"); }));

    write("ospf", "config global 'global'\n\toption status 'off'\n");
    watch.reload();
    EXPECT_TRUE(routers::waitFor([] { return router().processCount("ospfd") == 0; }));
    EXPECT_TRUE(Watch::said("ospf: switched off"));
}

TEST_F(Watching, AHangUpInterruptsNothing) {
    start({"zebra", "ospfd"});
    write("ospf", stores::ospf(kSeed));
    const Watch watch;
    for (int i = 0; i < 2000; ++i) {
        watch.reload();
        (void)poll(nullptr, 0, 1);
    }
    EXPECT_TRUE(routers::waitFor([&] { return watch.children() == 0; })) << watch.children();
}

TEST_F(Watching, ADaemonWhoseProtocolWasNeverOnIsLeftAlone) {
    start({"zebra", "ospfd"});
    ASSERT_EQ(router().configure("ospfd", {"interface eth1.2", "ip ospf cost 7"}).code, 0);
    write("ospf", "config global 'global'\n\toption status 'off'\n");
    write("rip", stores::rip(kSeed));
    const Watch watch;
    watch.reload();
    // It looks at OSPF before.
    ASSERT_TRUE(routers::waitFor([] { return running("ripd").count("router rip") > 0; }, kBack))
        << router().output("cat /tmp/watch.log");
    EXPECT_EQ(running("ospfd").count("interface eth1.2 / ip ospf cost 7"), 1u);
}

TEST_F(Watching, MgmtdComesBackEmptyAndRipdIsStartedAnew) {
    write("rip", stores::rip(kSeed));
    start({"zebra", "ripd"});
    ASSERT_EQ(frruci("apply rip").status, 0);
    if (!router().answers("mgmtd")) {
        EXPECT_LT(routers::frrVersion(), 1000); // ripd holds its settings itself
        return;
    }
    const auto complete = running("ripd");
    const Watch watch;
    ASSERT_TRUE(router().stop("mgmtd") && router().startManagement());
    EXPECT_TRUE(routers::waitFor([] { return Watch::said("starting ripd anew"); }));
    EXPECT_TRUE(comesBackTo("ripd", complete))
        << missing(running("ripd"), complete) << router().output("cat /tmp/watch.log")
        << "mgmtd: " << missing(running("mgmtd"), complete);
}

TEST_F(Watching, NothingIsSentToRipdWhileMgmtdIsGone) {
    if (!hasManagement_) {
        EXPECT_LT(routers::frrVersion(), 1000); // ripd holds its settings itself
        return;
    }
    write("rip", stores::rip(kSeed));
    start({"zebra", "ripd"});
    ASSERT_EQ(frruci("apply rip").status, 0);
    const auto complete = running("ripd");
    const Watch watch;
    ASSERT_TRUE(router().stop("mgmtd"));
    ASSERT_TRUE(routers::waitFor([] { return Watch::said("mgmtd is gone"); }));
    watch.reload();
    EXPECT_FALSE(
        routers::waitFor([] { return Watch::said("refuse"); }, std::chrono::milliseconds(1500)));
    ASSERT_TRUE(router().startManagement());
    EXPECT_TRUE(comesBackTo("ripd", complete))
        << missing(running("ripd"), complete) << router().output("cat /tmp/watch.log");
}

TEST_F(Watching, NothingIsStartedWhereAnotherProgramWatches) {
    ASSERT_EQ(router().run("cp /bin/sleep /tmp/watchfrr && /tmp/watchfrr 300 & sleep 0"), 0);
    write("ospf", routerId("7.7.7.1"));
    const Watch watch;
    EXPECT_FALSE(routers::waitFor([] { return router().processCount("ospfd") > 0; },
                                  std::chrono::seconds(5)));
    ASSERT_EQ(router().run("killall watchfrr"), 0);
    EXPECT_TRUE(routers::waitFor([] { return router().answers("ospfd"); }, kBack))
        << router().output("cat /tmp/watch.log");
}

} // namespace
