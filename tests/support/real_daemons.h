// SPDX-License-Identifier: Apache-2.0
// Real daemons for system tests, on the router of the sandbox and on a second one that its VLANs
// lead to. Polls with deadlines; works only inside "sandbox --interfaces".
#ifndef FRRUCI_TESTS_SUPPORT_REAL_DAEMONS_H
#define FRRUCI_TESTS_SUPPORT_REAL_DAEMONS_H

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace routers {

using std::chrono::milliseconds;

constexpr milliseconds kDeadline = std::chrono::seconds(20);

/// Polls until the condition holds; false when it does not by the deadline.
bool waitFor(const std::function<bool()> &condition, milliseconds deadline = kDeadline);

/// The version of the daemons, major * 100 + minor: 804 is 8.4, 1003 is 10.3.
int frrVersion();

/// What a daemon said to a command.
struct Reply {
    int code = -1;    ///< completion code; -1 when the daemon did not answer
    std::string text; ///< its output
};

/// One router with its shell and its daemons ("zebra", "ospfd", "ripd", "nhrpd", "mgmtd").
class Router {
public:
    /// The router that the test runs on.
    static Router first();
    /// The one at the far ends of eth0.2 to eth0.4 and eth1.2 to eth1.4; switched on by the first
    /// call.
    static Router second();

    /// Runs the words "DAEMON -d" in the shell and waits for the daemon's vty socket to answer.
    bool start(const std::string &daemon) const;
    /// Starts mgmtd where the daemons have one, which is before all others, as a router does; it
    /// then holds the configuration of zebra and ripd.
    bool startManagement() const;
    /// Kills the daemon, if it runs, and waits until it is gone. False when it stays.
    bool stop(const std::string &daemon) const;
    /// True when the daemon's vty socket answers.
    bool answers(const std::string &daemon) const;
    /// How many processes of this name run; the name is the whole name, not a part of it.
    int processCount(const std::string &name) const;

    /// One command in the enabled view, for example "show ip route".
    Reply vty(const std::string &daemon, const std::string &command) const;
    /// Commands from the configuration view on, in one session; ends at the first that is refused.
    /// Like the next two, asks mgmtd instead where it runs and holds that daemon's configuration.
    Reply configure(const std::string &daemon, const std::vector<std::string> &commands) const;
    /// The text of "show running-config" without its separating lines, whose number changes while
    /// a daemon hears of interfaces.
    std::string runningConfig(const std::string &daemon) const;
    /// The lines of the running configuration from the one that equals the heading (for example
    /// "interface eth1.2") up to the block's end, the heading left out. Empty when there is no
    /// block.
    std::string block(const std::string &daemon, const std::string &heading) const;

    /// A shell command's exit status.
    int run(const std::string &command) const;
    /// A shell command's standard output.
    std::string output(const std::string &command) const;

private:
    Router(std::string launcher, std::string root);
    std::string shell(const std::string &command) const;
    /// Who holds the daemon's configuration.
    std::string holder(const std::string &daemon) const;
    Reply session(const std::string &daemon, const std::vector<std::string> &commands) const;

    std::string launcher_; ///< words before a command that runs there
    std::string root_;     ///< its file system, seen from here
};

/// A named pipe of the front-end, for example "/tmp/tmp/ospf_pipe_c2lua", made for as long as this
/// lives. It is its own reader: a handler never waits for one.
class ReplyPipe {
public:
    explicit ReplyPipe(const std::string &path);
    ~ReplyPipe();
    ReplyPipe(const ReplyPipe &) = delete;
    ReplyPipe &operator=(const ReplyPipe &) = delete;

    /// All that was written since the last call.
    std::string take();

private:
    std::string path_;
    int fd_;
};

} // namespace routers

#endif
