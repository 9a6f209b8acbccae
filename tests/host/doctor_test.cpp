// SPDX-License-Identifier: Apache-2.0
// What the doctor says about a router in one state or another.

#include <cstdlib>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/host/program.h"
#include "tests/support/stage.h"

namespace {

using program::frruci;
using program::has;
using program::Outcome;
using program::Running;

void writeStores() {
    for (const char *package : {"ospf", "rip", "nhrp"}) {
        stage::writeFile((std::string("/etc/config/") + package).c_str(),
                         "config global 'global'\n");
    }
}

class Doctor : public testing::Test {
protected:
    void SetUp() override { writeStores(); }

    /// Whether the doctor has a line of this level and subject that holds the text.
    static bool says(const std::string &level, const std::string &what, const std::string &text) {
        const std::string output = frruci({"doctor"}).output;
        std::size_t at = 0;
        for (std::size_t end = 0; (end = output.find('\n', at)) != std::string::npos;
             at = end + 1) {
            const std::string line = output.substr(at, end - at);
            if (line.find(level + " ") == 0 && has(line, " " + what + " ") && has(line, text)) {
                return true;
            }
        }
        ADD_FAILURE() << output;
        return false;
    }

    stage::Stage stage_;
};

TEST_F(Doctor, AHealthyRouterHasNoFault) {
    stage_.answerAll("zebra", {.text = "FRRouting 8.4.4 (router).\nCopyright\n"});
    const Outcome outcome = frruci({"doctor"});
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_FALSE(has(outcome.output, "fault"));
    EXPECT_TRUE(says("ok", "zebra", "answers, FRRouting 8.4.4"));
    EXPECT_TRUE(says("ok", "/etc/config", "KiB left"));
    EXPECT_TRUE(says("ok", "iptables", "is there"));
    EXPECT_TRUE(says("ok", "watchfrr", "does not run"));
    EXPECT_FALSE(has(stage_.log(), "show version")); // by an exchange of its own
}

TEST_F(Doctor, SocketsThatAreMissingStaleOrSilent) {
    stage_.absent("ospfd");
    stage_.deaf("ripd");
    stage_.answerAll("nhrpd", {.silent = true});
    EXPECT_TRUE(says("ok", "ospfd", "does not run"));
    EXPECT_TRUE(says("ok", "ripd", "does not run; its old socket is harmless"));
    EXPECT_TRUE(says("fault", "nhrpd", "does not answer on /var/nhrpd.vty"));
    const Running ospfd("ospfd");
    const Running ripd("ripd");
    EXPECT_TRUE(says("fault", "ospfd", "runs, but has no /var/ospfd.vty"));
    EXPECT_TRUE(says("fault", "ripd", "runs, but does not listen on /var/ripd.vty"));
    EXPECT_EQ(frruci({"doctor"}).status, 4);
}

TEST_F(Doctor, FrrTenNeedsMgmtd) {
    stage_.answerAll("ospfd", {.text = "FRRouting 10.3 (router).\n"});
    EXPECT_TRUE(says("fault", "mgmtd", "FRR 10 refuses RIP and address settings without it"));
    const Running mgmtd("mgmtd");
    EXPECT_TRUE(says("ok", "mgmtd", "runs"));
}

TEST_F(Doctor, FrrsOwnService) {
    stage::writeFile("/etc/rc.d/S95frr", "");
    EXPECT_TRUE(says("warning", "watchfrr",
                     "comes with the next boot, and then frruci watch starts no daemon: switch "
                     "FRR's own service off (service frr disable)"));
    const Running watchfrr("watchfrr");
    EXPECT_TRUE(says("warning", "watchfrr",
                     "restarts what frruci stops, and frruci watch starts no daemon beside it: "
                     "switch FRR's own service off (service frr disable; reboot)"));
    unlink("/etc/rc.d/S95frr");
}

TEST_F(Doctor, OthersAtWork) {
    const Running bgpd("bgpd");
    EXPECT_TRUE(says("warning", "bgpd", "lives on zebra"));
}

TEST_F(Doctor, ProgramsAndModules) {
    const std::string path = getenv("PATH");
    setenv("PATH", "/tmp/no-programs", 1);
    for (const char *tool :
         {"iptables", "conntrack", "lua", "ps", "killall", "ifconfig", "vnete"}) {
        EXPECT_TRUE(says("warning", tool, "is missing: "));
    }
    EXPECT_TRUE(says("warning", "VLAN questions", "luci.controller.admin.lan is missing"));
    EXPECT_TRUE(
        says("warning", "VLAN questions", "luci.controller.admin.interface_wan is missing"));
    setenv("PATH", path.c_str(), 1);
    setenv("LUA_PATH", "/tmp/lua/?.lua", 1);
    ASSERT_EQ(mkdir("/tmp/lua", 0755), 0);
    stage::writeFile("/tmp/lua/luci/controller/admin/lan.lua", "return {}\n");
    EXPECT_TRUE(says("ok", "VLAN questions", "luci.controller.admin.lan is there"));
    unsetenv("LUA_PATH");
    for (const char *tool : {"/tmp/tools/nft", "/tmp/tools/fw4"}) {
        stage::writeFile(tool, "#!/bin/sh\n");
        chmod(tool, 0755);
    }
    setenv("PATH", (path + ":/tmp/tools").c_str(), 1);
    EXPECT_TRUE(says("warning", "nftables", "open UDP port 520 there"));
    setenv("PATH", path.c_str(), 1);
}

TEST_F(Doctor, InterfacesWhoseSideCannotBeTold) {
    stage::writeFile("/etc/config/ospf", "config interface\n\toption interface 'eth1.2'\n"
                                         "config interface\n\toption interface 'br-lan'\n");
    EXPECT_TRUE(says("warning", "interfaces", "/etc/config/ospf has br-lan"));
    EXPECT_FALSE(has(frruci({"doctor"}).output, "has eth1.2"));
}

TEST_F(Doctor, FoldersPipesStoreAndLog) {
    chmod("/tmp/tmp", 0777);
    EXPECT_TRUE(says("warning", "/tmp/tmp", "others may write there"));
    chmod("/tmp/tmp", 0755);
    EXPECT_TRUE(says("ok", "/tmp/tmp", "is root's"));
    stage_.noPipe("nhrp_pipe_c2lua");
    stage::writeFile("/tmp/tmp/nhrp_pipe_c2lua", "text");
    EXPECT_TRUE(says("fault", "nhrp_pipe_c2lua", "is no pipe: remove it"));
    unlink("/tmp/tmp/nhrp_pipe_c2lua");
    unlink("/etc/config/rip");
    EXPECT_TRUE(says("fault", "rip", "/etc/config/rip: No such file"));
    stage::writeFile("/tmp/tmp/data", std::string(3000, 'x').c_str());
    EXPECT_TRUE(says("ok", "log", "/tmp/tmp/data has 2 KiB"));
    unlink("/tmp/tmp/data");
    ASSERT_EQ(mkfifo("/tmp/tmp/data", 0600), 0);
    EXPECT_TRUE(says("fault", "log", "is no file"));
    unlink("/tmp/tmp/data");
}

TEST_F(Doctor, OpenVtyPorts) {
    EXPECT_FALSE(has(frruci({"doctor"}).output, "vty ports"));
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(2604);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listener, 1), 0);
    EXPECT_TRUE(says("warning", "vty ports", "ospfd listens on TCP port 2604"));
    close(listener);
}

} // namespace
