// SPDX-License-Identifier: Apache-2.0
// Views, daemon start-up and process control against real daemons.

#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

#include "ospf/frr_ospf_enable.h"
#include "ospf/frr_ospf_process.h"
#include "ospf/sw_ospf.h"
#include "rip/sw_rip.h"
#include "tests/support/real_daemons.h"
#include "vty/frr_util.h"

namespace {

using routers::Router;
using routers::waitFor;

constexpr const char *kOspfd = "/var/ospfd.vty";
constexpr const char *kRipd = "/var/ripd.vty";

class Services : public testing::Test {
protected:
    static void SetUpTestSuite() {
        ASSERT_EQ(frrVtyInit(), 0);
        ASSERT_EQ(swRipInit(), 0U);
        ASSERT_EQ(swOspfInit(), 0U);
    }
    void SetUp() override { ASSERT_TRUE(router.startManagement()); }
    /// A killed process is listed, and counts for the library, until its parent has taken note.
    void TearDown() override {
        for (const char *daemon : {"ospfd", "ripd", "zebra", "mgmtd"}) {
            EXPECT_TRUE(router.stop(daemon)) << daemon;
            EXPECT_TRUE(waitFor([daemon] { return process_exist(daemon, 0) == 0; })) << daemon;
        }
    }

    void start(const char *daemon) const {
        ASSERT_TRUE(router.start("zebra"));
        ASSERT_TRUE(router.start(daemon));
    }
    /// Runs a command in a view whose placeholders the list fills; the list is used up.
    int32_t run(const char *view, const char *path, const char *cmd) {
        char reply[512] = {};
        const int32_t result = frrVtyAutoRun(view, path, cmd, &parameters, sizeof reply, reply);
        EXPECT_EQ(parameters, nullptr);
        return result;
    }
    void set(const char *key, const char *value) {
        if (parameters == nullptr) {
            ASSERT_EQ(frrVtyParamInit(&parameters), 0);
        }
        ASSERT_GT(frrVtyParamStrSet(&parameters, key, value), 0);
    }
    bool configured(const char *daemon, const char *text) const {
        return router.runningConfig(daemon).find(text) != std::string::npos;
    }

    Router router = Router::first();
    dlist *parameters = nullptr;
};

TEST_F(Services, ANetworkStatementGoesThroughTheRipView) {
    start("ripd");
    set("vrf", "default");
    ASSERT_EQ(run("view_rip", kRipd, "network 10.0.0.0/8"), 0);
    EXPECT_EQ(router.block("ripd", "router rip"), " network 10.0.0.0/8\n");
    set("vrf", "default");
    ASSERT_EQ(run("view_rip", kRipd, "no network 10.0.0.0/8"), 0);
    EXPECT_FALSE(configured("ripd", "network 10.0.0.0/8"));
}

TEST_F(Services, AKeyGoesThroughTheKeyChainView) {
    start("ripd");
    set("keychain", "k1");
    ASSERT_EQ(frrVtyParamIntSet(&parameters, "keyid", 5), 1);
    ASSERT_EQ(run("keychain_keyid_keystr_view", kRipd, "key-string secret"), 0);
    const std::string chain = router.block("ripd", "key chain k1");
    EXPECT_NE(chain.find(" key 5\n"), std::string::npos) << chain;
    EXPECT_NE(chain.find("key-string secret\n"), std::string::npos) << chain;
}

TEST_F(Services, InterfaceViewsReachBothSides) {
    start("ospfd");
    for (const char *view : {"interface_view", "interface_v_view"}) {
        ASSERT_EQ(frrVtyParamInit(&parameters), 0);
        ASSERT_EQ(frrVtyParamIntSet(&parameters, "vid", 2), 1);
        ASSERT_EQ(run(view, kOspfd, "ip ospf cost 7"), 0);
    }
    EXPECT_EQ(router.block("ospfd", "interface eth1.2"), " ip ospf cost 7\n");
    EXPECT_EQ(router.block("ospfd", "interface eth0.2"), " ip ospf cost 7\n");
}

TEST_F(Services, ARefusedContextSendsNothingFurther) {
    start("ospfd");
    ASSERT_EQ(frrVtyViewReg("refused", "enable\nconfigure\nno such context\nhostname inside"), 0);
    EXPECT_EQ(run("refused", kOspfd, "hostname behind"), -1);
    const std::string config = router.runningConfig("ospfd");
    ASSERT_NE(config, "");
    EXPECT_EQ(config.find("hostname inside"), std::string::npos) << config;
    EXPECT_EQ(config.find("hostname behind"), std::string::npos) << config;
    EXPECT_EQ(frrVtyViewUnreg("refused"), 0);
    // The same command is welcome where the context is.
    EXPECT_EQ(run("configure_view", kOspfd, "hostname behind"), 0);
    EXPECT_TRUE(configured("ospfd", "hostname behind"));
}

TEST_F(Services, AMissingParameterSendsNothing) {
    start("ospfd");
    EXPECT_EQ(run("interface_view", kOspfd, "ip ospf cost 7"), 1);
    EXPECT_FALSE(configured("ospfd", "interface"));
    EXPECT_FALSE(configured("ospfd", "cost"));
}

TEST_F(Services, ZebraIsStartedOnceAndEndsByKill) {
    ASSERT_EQ(process_exist("zebra", 0), 0);
    (void)zebra_enable();
    EXPECT_TRUE(waitFor([this] { return router.answers("zebra"); }));
    EXPECT_EQ(router.processCount("zebra"), 1);
    const std::string first = router.output("pidof zebra");
    (void)zebra_enable();
    EXPECT_EQ(router.output("pidof zebra"), first);
    EXPECT_EQ(process_exist("zebra", 0), 1);
    EXPECT_EQ(router.processCount("zebra"), 1); // counting kills nobody
    EXPECT_EQ(process_exist("zebra", 1), 1);
    EXPECT_TRUE(waitFor([] { return process_exist("zebra", 0) == 0; }));
    EXPECT_EQ(router.processCount("zebra"), 0);
}

TEST_F(Services, OspfIsSwitchedOnOnce) {
    ASSERT_EQ(ospf_enable("1.1.1.1"), 0);
    EXPECT_EQ(router.processCount("zebra"), 1);
    EXPECT_EQ(router.processCount("ospfd"), 1);
    EXPECT_TRUE(configured("ospfd", " ospf router-id 1.1.1.1\n"));
    const std::string first = router.output("pidof zebra ospfd");
    ASSERT_EQ(ospf_enable("2.2.2.2"), 0);
    EXPECT_EQ(router.output("pidof zebra ospfd"), first);
    EXPECT_TRUE(configured("ospfd", " ospf router-id 2.2.2.2\n"));
    EXPECT_NE(ospf_enable("no router id"), 0);
    EXPECT_TRUE(configured("ospfd", " ospf router-id 2.2.2.2\n"));
    EXPECT_EQ(process_exist("ospfd", 1), 1);
    EXPECT_TRUE(waitFor([this] { return router.processCount("ospfd") == 0; }));
    EXPECT_EQ(router.processCount("zebra"), 1);
}

TEST_F(Services, TheInnerLinkMovesBetweenAreas) {
    start("ospfd");
    // Nothing has announced the link yet, so there is nothing to withdraw.
    EXPECT_NE(sysn_network(1, 5, 1), 0);
    EXPECT_FALSE(configured("ospfd", "network 169.254"));
    ASSERT_EQ(router.configure("ospfd", {"router ospf", "network 169.254.11.21/30 area 0"}).code,
              0);
    EXPECT_EQ(sysn_network(1, 5, 1), 0);
    EXPECT_EQ(sysn_network(1, 7, 1), 0);
    EXPECT_TRUE(configured("ospfd", " network 169.254.11.20/30 area 7\n"));
    EXPECT_FALSE(configured("ospfd", "area 0"));
    EXPECT_FALSE(configured("ospfd", "area 5"));
}

TEST_F(Services, FoldersAndPermissionsAreMade) {
    ASSERT_EQ(router.run("rm -rf /var/tmp/frr && touch /tmp/zebra.api /tmp/ripd.vty && "
                         "chmod 600 /tmp/zebra.api /tmp/ripd.vty"),
              0);
    EXPECT_EQ(frr_process_init(), 0);
    for (const char *path : {"/tmp/zebra.api", "/tmp/ripd.vty", "/var/tmp/frr"}) {
        struct stat found = {};
        ASSERT_EQ(stat(path, &found), 0) << path;
        EXPECT_EQ(found.st_mode & 07777U, 0755U) << path;
    }
}

} // namespace
