// SPDX-License-Identifier: Apache-2.0
// Whole requests while a timer's signal interrupts every exchange: what they leave behind is what
// they leave behind in peace.

#include <algorithm>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "common/frr_uci.h"
#include "nhrp/frr_nhrp.h"
#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_recovery.h"
#include "ospf/sw_ospf.h"
#include "rip/frr_rip.h"
#include "rip/frr_rip_recovery.h"
#include "rip/sw_rip.h"
#include "tests/support/interruptions.h"
#include "tests/support/stage.h"
#include "tests/system/handler_call.h"
#include "vty/startup.h"

namespace {

using routers::call;

int countOf(const std::string &part, const std::string &text) {
    int count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) {
        ++count;
    }
    return count;
}

/// Two replies that the stage's reader found in the pipe at once, in a line each.
std::string apart(std::string traces) {
    for (std::size_t at = 0; (at = traces.find("okok", at)) != std::string::npos;) {
        const std::size_t line = traces.rfind("reply ", at);
        traces.insert(at + 2, "\n" + traces.substr(line, at - line));
    }
    return traces;
}

/// The stage may see a reply and the session after it in either order.
std::vector<std::string> sortedLines(const std::string &text) {
    std::istringstream from(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(from, line);) {
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

/// What a call leaves behind on a fresh stage.
std::string tracesOf(const std::function<void(stage::Stage &)> &call, int answerDelayMs) {
    stage::Stage stage;
    for (const char *daemon : {"zebra", "ospfd", "ripd", "nhrpd"}) {
        stage.answerAll(daemon, {.delayMs = answerDelayMs});
    }
    (void)frrVtyInit();
    (void)swOspfInit();
    (void)swRipInit();
    call(stage);
    (void)stage.output();
    return apart(stage.trace());
}

/// The same in peace and under the timer; the traces of the latter.
std::string interrupted(const std::function<void(stage::Stage &)> &call) {
    const std::string inPeace = tracesOf(call, 0);
    std::string traces;
    {
        const interruptions::Timer timer;
        traces = tracesOf(call, 1); // so that each answer is waited for while the timer strikes
    }
    EXPECT_GT(interruptions::count, 0);
    EXPECT_EQ(sortedLines(traces), sortedLines(inPeace));
    return traces;
}

TEST(InterruptedRequests, FiveHundredSettingsOfOspfArrive) {
    const std::string traces = interrupted([](stage::Stage &) {
        for (int i = 1; i <= 500; ++i) {
            call(process_ospf_interface, "eth1.2 wan cost " + std::to_string(i));
        }
    });
    EXPECT_EQ(countOf("ospfd: en | configure | interface eth1.2 | ip ospf cost ", traces), 500);
    EXPECT_EQ(countOf("reply ospf_pipe_c2lua: ok", traces), 500);
}

TEST(InterruptedRequests, FiveHundredSettingsOfRipArrive) {
    const std::string traces = interrupted([](stage::Stage &) {
        for (int i = 0; i < 500; ++i) {
            call(process_rip_config, "default_metric " + std::to_string(1 + i % 16));
        }
    });
    EXPECT_EQ(countOf("| default-metric ", traces), 1000); // each for both sides
    EXPECT_EQ(countOf("reply ospf_pipe_c2lua: ok", traces), 500);
}

TEST(InterruptedRequests, FiveHundredSettingsOfNhrpArrive) {
    const std::string traces = interrupted([](stage::Stage &) {
        for (int i = 0; i < 500; ++i) {
            call(process_nhrp_interface, "x tun0 ip nhrp shortcut");
        }
    });
    EXPECT_EQ(countOf("nhrpd: enable | configure | interface tun0 | ip nhrp shortcut\n", traces),
              500);
    EXPECT_EQ(countOf("reply nhrp_pipe_c2lua: ok\n", traces), 500);
}

TEST(InterruptedRequests, TheReplayOfOspfIsWhole) {
    const std::string traces = interrupted([](stage::Stage &) {
        std::string store = "config global 'global'\n\toption status 'on'\n"
                            "\toption router_id '1.2.3.4'\n";
        for (int i = 0; i < 20; ++i) {
            const std::string number = std::to_string(i);
            store += "config network\n\toption ip '10." + number +
                     ".0.0'\n\toption wildcard_mask '0.0.255.255'\n\toption area_id '0'\n";
            store +=
                "config interface\n\toption interface 'eth1." + number + "'\n\toption cost '10'\n";
        }
        stage::writeFile("/etc/config/ospf", store.c_str());
        ospf_cfg_recovery();
    });
    EXPECT_EQ(countOf("| ip ospf cost 10\n", traces), 20);
    EXPECT_EQ(countOf("area 0\n", traces), 40); // each network for both instances
}

TEST(InterruptedRequests, TheReplayOfRipIsWhole) {
    const std::string traces = interrupted([](stage::Stage &) {
        std::string store = "config global 'global'\n\toption status 'on'\n"
                            "config config 'config'\n\toption rip_version 'ripv2'\n";
        for (int i = 1; i <= 20; ++i) {
            const std::string number = std::to_string(i);
            store += "config network\n\toption ipaddress '" + number +
                     ".0.0.0'\n\toption mask '255.0.0.0'\n";
            store += "config interface 'eth1_" + number + "'\n\toption interface 'eth1." + number +
                     "'\n\toption send_version 'ripv1'\n";
        }
        stage::writeFile("/etc/config/rip", store.c_str());
        rip_cfg_recovery();
    });
    EXPECT_GE(countOf("| network ", traces), 20);
    EXPECT_GE(countOf("| ip rip send version 1\n", traces), 20);
}

TEST(InterruptedRequests, EveryRowIsShown) {
    std::string rows;
    for (int i = 1; i <= 200; ++i) {
        rows += "10.0.0." + std::to_string(i) + " 1 Full/DR 38s 10.1.2.2 eth1.2:10.1.2.1\n";
    }
    const std::string traces = interrupted([&rows](stage::Stage &stage) {
        stage.answer("ospfd", "show ip ospf neighbor",
                     {.text = rows.c_str(), .splitAt = 300, .delayMs = 5});
        process_ospf_neighbor();
    });
    EXPECT_EQ(countOf("reply ospf_pipe_c2lua_neighbor: \"10.0.0.", traces), 200);
}

TEST(InterruptedRequests, TheStatusOfRipIsStored) {
    const std::string traces = interrupted([](stage::Stage &stage) {
        stage::writeFile("/etc/config/rip", "config interface 'eth1_20'\n");
        stage.answer("ripd", "show ip rip status", {.text = "eth1.20 2 1 2\n", .delayMs = 5});
        (void)process_rip_interface_show(0, nullptr);
        char status[64];
        EXPECT_EQ(frr_uci_get("rip", "eth1_20", "status", status, sizeof status), 0);
        EXPECT_STREQ(status, "up");
    });
    EXPECT_EQ(traces, "ripd: show ip rip status\nusleep: 100000\n");
}

TEST(InterruptedRequests, TheWholeCacheIsShown) {
    std::string cache = "{\n";
    for (int i = 0; i < 50; ++i) {
        cache += "  \"peer\": \"10.0.0." + std::to_string(i) + "\",\n";
    }
    cache += "}\n";
    const std::string traces = interrupted([&cache](stage::Stage &stage) {
        stage.answer("nhrpd", "show ip nhrp cache json", {.text = cache.c_str(), .delayMs = 5});
        call(process_nhrp_show, "x ip nhrp cache");
    });
    EXPECT_EQ(countOf("peer", traces), 50);
}

} // namespace
