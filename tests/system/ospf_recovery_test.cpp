// SPDX-License-Identifier: Apache-2.0
// The stored configuration comes back into fresh daemons, and a daemon that dies meanwhile does no
// harm.

#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_recovery.h"
#include "ospf/sw_ospf.h"
#include "tests/support/real_daemons.h"
#include "tests/system/handler_call.h"
#include "vty/frr_util.h"

namespace {

using routers::call;
using routers::logText;
using routers::occurrences;
using routers::ReplyPipe;
using routers::Router;

/// The command before which ospfd is killed; null for none.
const char *fatalCommand = nullptr;

} // namespace

/// Goes before the library's own, so that a daemon dies in the middle of a session.
int32_t frrVtyRun(int32_t fd, const char *cmd, uint8_t *out_code, char *reply, int32_t reply_size) {
    using Exchange = int32_t (*)(int32_t, const char *, uint8_t *, char *, int32_t);
    static const auto kNext = reinterpret_cast<Exchange>(dlsym(RTLD_NEXT, "frrVtyRun"));
    if (fatalCommand != nullptr && strcmp(cmd, fatalCommand) == 0) {
        fatalCommand = nullptr;
        EXPECT_TRUE(Router::first().stop("ospfd"));
    }
    return kNext(fd, cmd, out_code, reply, reply_size);
}

namespace {

constexpr int kInterfaces = 40;
constexpr int kNetworks = 60;

/// The stored settings of interface number i, each as a keyword with its value.
struct Setting {
    const char *word;
    int value;
};

std::vector<Setting> settingsOf(int i) {
    return {
        {"cost",         10 + i   },
        {"retransmit",   5 + i % 7},
        {"transmit",     1 + i % 3},
        {"priority",     i        },
        {"hello",        5 + i    },
        {"dead",         40 + i   },
        {"network_type", i % 3    },
        {"mtu_ignore",   i % 2    }
    };
}

std::string nameOf(int i) {
    return "eth" + std::to_string(i % 2) + "." + std::to_string(100 + i);
}

std::string networkOf(int i) {
    return "10." + std::to_string(50 + i) + ".0.0";
}

class OspfRecovery : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(swOspfInit(), 0u);
        (void)remove("/tmp/tmp/data");
    }

    void TearDown() override {
        for (const char *daemon : {"ospfd", "zebra"}) {
            EXPECT_TRUE(router_.stop(daemon)) << daemon;
        }
    }

    static void writeStore() {
        std::ofstream store("/etc/config/ospf");
        store << "config global 'global'\n\toption status 'on'\n\toption router_id '1.2.3.4'\n"
                 "config advertise_cfg 'advertise_cfg'\n\toption originate 'enable'\n"
                 "\toption always 'enable'\n\toption metric '20'\n\toption metric_type '1'\n"
                 "config ospf_cfg 'ospf_cfg'\n\toption distance '120'\n"
                 "\toption rfc_compatible 'enable'\n\toption spf_delay '10'\n"
                 "\toption spf_hold_init '100'\n\toption spf_hold_max '2000'\n"
                 "\toption max_path '8'\n\toption passive_def 'enable'\n";
        for (int i = 0; i < kNetworks; ++i) {
            store << "config network\n\toption ip '" << networkOf(i)
                  << "'\n\toption wildcard_mask '0.0.255.255'\n\toption area_id '" << i % 4
                  << "'\n";
        }
        for (int i = 0; i < kInterfaces; ++i) {
            store << "config interface\n\toption interface '" << nameOf(i) << "'\n";
            for (const Setting &setting : settingsOf(i)) {
                store << "\toption " << setting.word << " '" << setting.value << "'\n";
            }
            store << "\toption passive '" << (i % 5 == 0 ? 1 : 0) << "'\n\toption auto_type '"
                  << i % 3 << "'\n\toption simple_key 'key" << i << "'\n\toption md5_key_id '"
                  << 1 + i << "'\n\toption md5_key 'digest" << i << "'\n";
        }
    }

    /// The same settings, one by one as the front-end gives them.
    void setByHand() {
        call(process_ospf_global, "on 1.2.3.4");
        call(process_ospf_advertise_cfg, "enable enable 20 1");
        call(process_ospf_ospf_cfg, "120 enable 10 100 2000 8 enable");
        for (int i = 0; i < kNetworks; ++i) {
            call(process_ospf_network,
                 "add " + networkOf(i) + " 0.0.255.255 " + std::to_string(i % 4));
        }
        for (int i = 0; i < kInterfaces; ++i) {
            setInterfaceByHand(i);
        }
        (void)reply_.take();
    }

    static void setInterfaceByHand(int i) {
        const std::string target = nameOf(i) + (i % 2 == 1 ? " wan " : " lan ");
        const std::string number = std::to_string(i);
        for (const Setting &setting : settingsOf(i)) {
            call(process_ospf_interface,
                 target + setting.word + " " + std::to_string(setting.value));
        }
        if (i % 5 == 0) {
            call(process_ospf_interface, target + "passive 1");
        }
        const std::string authentications[] = {"auto_type 0", "auto_type 1 key" + number,
                                               "auto_type 2 " + std::to_string(1 + i) + " digest" +
                                                   number};
        call(process_ospf_interface, target + authentications[i % 3]);
    }

    std::string config() const { return router_.runningConfig("ospfd"); }

    Router router_ = Router::first();
    ReplyPipe reply_{"/tmp/tmp/ospf_pipe_c2lua"};
};

TEST_F(OspfRecovery, RestoresWhatTheHandlersHadSet) {
    writeStore();
    setByHand();
    const std::string before = config();
    ASSERT_EQ(occurrences(before, " network 10."), static_cast<std::size_t>(kNetworks)) << before;
    ASSERT_EQ(occurrences(before, "\ninterface eth"), static_cast<std::size_t>(kInterfaces));
    ASSERT_EQ(occurrences(before, " ip ospf cost "), static_cast<std::size_t>(kInterfaces));
    ASSERT_TRUE(router_.stop("ospfd") && router_.stop("zebra"));

    (void)remove("/tmp/tmp/data");
    (void)ospf_cfg_recovery();
    EXPECT_EQ(config(), before);
    EXPECT_EQ(occurrences(logText(), "failed"), 0u) << logText();
    EXPECT_EQ(reply_.take(), "");
    EXPECT_EQ(router_.processCount("zebra"), 1);
    EXPECT_EQ(router_.processCount("ospfd"), 1);
}

TEST_F(OspfRecovery, MayBeRepeated) {
    writeStore();
    (void)ospf_cfg_recovery();
    const std::string before = config();
    (void)ospf_cfg_recovery();
    EXPECT_EQ(config(), before);
    EXPECT_EQ(router_.processCount("ospfd"), 1);
}

TEST_F(OspfRecovery, StartsNothingWhenOspfIsOff) {
    writeStore();
    ASSERT_EQ(router_.run("sed -i \"s/status 'on'/status 'off'/\" /etc/config/ospf"), 0);
    (void)ospf_cfg_recovery();
    EXPECT_EQ(router_.processCount("zebra"), 0);
    EXPECT_EQ(router_.processCount("ospfd"), 0);
}

TEST_F(OspfRecovery, ADaemonThatIsKilledMeanwhileDoesNoHarm) {
    writeStore();
    const int victim = kInterfaces / 2;
    const std::string hello = "ip ospf hello-interval " + std::to_string(5 + victim);
    fatalCommand = hello.c_str();
    (void)ospf_cfg_recovery();
    ASSERT_EQ(fatalCommand, nullptr) << "the daemon was not killed";
    const std::string log = logText();
    // Hello and what follows it of this interface, and everything of the interfaces after it.
    std::size_t lost = 0;
    for (int i = victim; i < kInterfaces; ++i) {
        lost += (i == victim ? 4u : 8u) + (i % 5 == 0 ? 1u : 0u) + 1u;
    }
    EXPECT_EQ(occurrences(log, "ip_ospf_cost, failed"), lost);
    EXPECT_EQ(occurrences(log, "interface is eth"), static_cast<std::size_t>(kInterfaces));
    EXPECT_EQ(occurrences(log, "ospf_cfg_recovery end"), 1u);

    // Whatever was lost comes back with the next replay.
    (void)remove("/tmp/tmp/data");
    (void)ospf_cfg_recovery();
    EXPECT_EQ(occurrences(logText(), "failed"), 0u) << logText();
    EXPECT_EQ(occurrences(config(), " ip ospf cost "), static_cast<std::size_t>(kInterfaces));
    EXPECT_EQ(occurrences(config(), " network 10."), static_cast<std::size_t>(kNetworks));
}

} // namespace
