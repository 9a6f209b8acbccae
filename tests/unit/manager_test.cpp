// SPDX-License-Identifier: Apache-2.0
// Walks that go to mgmtd: turns, patience, what is left behind, and what an observer sees.

#include <cstdint>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <string>
#include <sys/file.h>
#include <unistd.h>

#include "frruci/frruci.h"
#include "tests/support/stage.h"

namespace {

constexpr const char *kCommand = "ip rip send version 1";
constexpr const char *kBusy = "% command failed, could not lock running DS\n";
constexpr const char *kLost = "Current configuration object was deleted by another process.\n\n";
constexpr int kTurnPauseUs = 10000;
constexpr int kBusyPauseUs = 50000;

/// The lock of somebody else's walk.
class OthersTurn {
public:
    explicit OthersTurn(int lock = LOCK_EX)
        : fd_(open("/var", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        EXPECT_EQ(flock(fd_, lock | LOCK_NB), 0);
    }
    ~OthersTurn() { close(fd_); }
    OthersTurn(const OthersTurn &) = delete;
    OthersTurn &operator=(const OthersTurn &) = delete;

private:
    int fd_;
};

bool isFree() {
    const int fd = open("/var", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool free = flock(fd, LOCK_EX | LOCK_NB) == 0;
    close(fd);
    return free;
}

int occurrences(const std::string &text, const std::string &part) {
    int count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

std::string pause(int microseconds) {
    return "usleep: " + std::to_string(microseconds) + "\n";
}

class Mgmtd : public testing::Test {
protected:
    void SetUp() override { stage_.present("mgmtd"); }

    static uint32_t deliver() { return doVtyRipConfigInterface("eth1.2", 1, kCommand); }

    /// mgmtd's refusal of the command, so many times.
    void refuse(uint8_t code, const char *text, int times) {
        stage::Answer answer;
        answer.code = code;
        answer.text = text;
        answer.times = times;
        stage_.answer("mgmtd", kCommand, answer);
    }

    stage::Stage stage_;
};

// ---------------------------------------------------------------- turns

TEST_F(Mgmtd, AWalkThatGetsNoTurnFailsAfterFiveSeconds) {
    const int before = stage::Stage::openDescriptors();
    {
        const OthersTurn others;
        EXPECT_EQ(deliver(), 1U);
    }
    EXPECT_EQ(stage::Stage::openDescriptors(), before);
    const std::string trace = stage_.trace();
    // Each daemon's thread notes its session by itself.
    EXPECT_TRUE(trace.starts_with("ripd:\nmgmtd:\n") || trace.starts_with("mgmtd:\nripd:\n"))
        << trace;
    // Other work of this machine moves the clock too, a little.
    const int pauses = occurrences(trace, pause(kTurnPauseUs));
    EXPECT_LE(pauses * kTurnPauseUs, 5000000);
    EXPECT_GE(pauses * kTurnPauseUs, 2500000);
    EXPECT_EQ(std::string(stage_.log()), "");
}

TEST_F(Mgmtd, AViewThatGetsNoTurnFailsAsWithoutConnection) {
    ASSERT_EQ(frrVtyInit(), 0);
    const int before = stage::Stage::openDescriptors();
    char reply[512] = {};
    {
        const OthersTurn others;
        EXPECT_EQ(frrVtyAutoRun("configure_view", "/var/zebra.vty", "hostname x", nullptr,
                                sizeof reply, reply),
                  1);
    }
    EXPECT_EQ(stage::Stage::openDescriptors(), before);
    EXPECT_EQ(std::string(stage_.trace()).find("enable"), std::string::npos);
}

TEST_F(Mgmtd, AWalkWantsItsTurnForItselfAlone) {
    const OthersTurn others(LOCK_SH);
    EXPECT_EQ(deliver(), 1U);
}

/// What happens in the middle of a walk: at its third pause, and at each of its commands.
struct Meanwhile {
    OthersTurn *others = nullptr; ///< given up at the third pause
    int pauses = 0;
    int commands = 0;
    int freeAtCommands = 0;
};

void meanwhile(FrruciEvent *event, void *context) {
    auto &seen = *static_cast<Meanwhile *>(context);
    if (event->kind == FRRUCI_PAUSE && event->done == 0 && ++seen.pauses == 3) {
        delete seen.others;
    }
    if (event->kind == FRRUCI_COMMAND) {
        ++seen.commands;
        seen.freeAtCommands += isFree() ? 1 : 0;
    }
}

TEST_F(Mgmtd, AWalkWaitsForItsTurnAndThenOthersForItsEnd) {
    Meanwhile seen;
    seen.others = new OthersTurn;
    const FrruciObserver observer = {sizeof observer, 0, meanwhile, &seen};
    ASSERT_EQ(frruciObserve(&observer), 0);
    EXPECT_EQ(deliver(), 0U);
    EXPECT_EQ(frruciObserve(nullptr), 0);
    EXPECT_EQ(seen.pauses, 3);
    EXPECT_EQ(seen.commands, 4);
    EXPECT_EQ(seen.freeAtCommands, 0);
    EXPECT_TRUE(isFree());
}

TEST_F(Mgmtd, ASessionThatIsLeftOpenHoldsNoTurn) {
    ASSERT_EQ(frrVtyInit(), 0);
    refuse(1, "", -1);
    char reply[512] = {};
    EXPECT_EQ(
        frrVtyAutoRun("configure_view", "/var/ripd.vty", kCommand, nullptr, sizeof reply, reply),
        1);
    EXPECT_TRUE(isFree());
    EXPECT_EQ(std::string(stage_.trace()),
              "ripd:\nmgmtd: enable | configure | ip rip send version 1 | (left open)\n");
}

TEST_F(Mgmtd, WithoutItNobodyWaitsAndNothingIsLeftOpen) {
    for (const bool leavesSocket : {true, false}) {
        if (leavesSocket) {
            stage_.deaf("mgmtd");
        } else {
            stage_.absent("mgmtd");
        }
        const int before = stage::Stage::openDescriptors();
        const OthersTurn others;
        EXPECT_EQ(deliver(), 0U);
        EXPECT_EQ(stage::Stage::openDescriptors(), before + 1);
        EXPECT_EQ(std::string(stage_.trace()),
                  "ripd: enable | configure | interface eth1.2 | ip rip send version 1\n");
    }
}

// ---------------------------------------------------------------- patience

TEST_F(Mgmtd, PatienceEndsAfterASecond) {
    refuse(13, kBusy, -1);
    EXPECT_EQ(deliver(), 1U);
    const std::string trace = stage_.trace();
    const int pauses = occurrences(trace, pause(kBusyPauseUs));
    EXPECT_LE(pauses * kBusyPauseUs, 1000000) << trace;
    EXPECT_GE(pauses * kBusyPauseUs, 500000) << trace;
    EXPECT_EQ(occurrences(trace, kCommand), pauses + 1) << trace;
}

TEST_F(Mgmtd, PatienceIsForOneTextOnly) {
    struct {
        uint8_t code;
        const char *text;
        int sent;
    } const cases[] = {
        {255, kBusy,                                                                2},
        {13,  kBusy,                                                                2},
        {13,  "could not lock candidate DS\n",                                      2},
        {1,   "% Running DS is locked by another session (for MESSAGE_EDIT_REQ)\n", 2},
        {255, "% command failed, lock\n",                                           1},
        {13,  "% Configuration failed.\n",                                          1},
        {1,   "",                                                                   1},
        {2,   kBusy,                                                                1},
        {3,   kBusy,                                                                1},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(std::to_string(row.code) + row.text);
        refuse(row.code, row.text, 1);
        EXPECT_EQ(deliver(), row.sent == 2 ? 0U : 1U);
        EXPECT_EQ(occurrences(stage_.trace(), kCommand), row.sent);
        refuse(0, "", -1);
    }
}

TEST_F(Mgmtd, AContextThatWasTakenAwayIsEnteredAgain) {
    refuse(1, kLost, 2);
    EXPECT_EQ(deliver(), 0U);
    std::string trace = stage_.trace();
    EXPECT_EQ(occurrences(trace, "configure"), 1) << trace;
    EXPECT_EQ(occurrences(trace, "interface eth1.2"), 3) << trace;
    EXPECT_EQ(occurrences(trace, kCommand), 3) << trace;

    refuse(1, kLost, -1);
    EXPECT_EQ(deliver(), 1U);
    trace = stage_.trace();
    EXPECT_LE(occurrences(trace, pause(kBusyPauseUs)) * kBusyPauseUs, 1000000) << trace;
}

TEST_F(Mgmtd, AnotherDaemonsLockIsNoReasonForPatience) {
    stage::Answer busy;
    busy.code = 255;
    busy.text = kBusy;
    stage_.answer("nhrpd", "ip nhrp shortcut", busy);
    EXPECT_EQ(doVtyNhrpConfigInterface(0, "tun0", "ip nhrp shortcut"), 1U);
    EXPECT_EQ(occurrences(stage_.trace(), "ip nhrp shortcut"), 1);
}

// ---------------------------------------------------------------- what is left of RIP

std::string removal(const std::string &path) {
    return "mgmtd: enable | configure | mgmt edit remove " + path + " lock commit\n";
}

/// What the handler has mgmtd forget, of the instance and of every interface there is.
std::string removals() {
    std::string all = removal("/frr-ripd:ripd");
    struct if_nameindex *interfaces = if_nameindex();
    for (const auto *each = interfaces; each->if_name != nullptr; ++each) {
        all += "mgmtd:\n" + removal("/frr-interface:lib/interface[name='" +
                                    std::string(each->if_name) + "']/frr-ripd:rip");
    }
    if_freenameindex(interfaces);
    return all;
}

TEST_F(Mgmtd, AFreshRipdComesUpEmpty) {
    ASSERT_EQ(frrVtyInit(), 0);
    ASSERT_EQ(swRipInit(), 0U);
    stage_.shell("grep zebra", {"10 root zebra\n"});
    stage_.shell("dpt:520", {"0 0 ACCEPT udp dpt:520\n"});
    rip_enable();
    EXPECT_EQ(std::string(stage_.trace()),
              "popen: iptables -t filter -nvL INPUT | grep dpt:520\n"
              "popen: ps -w | grep -v grep | grep zebra\n"
              "popen: ps -w | grep -v grep | grep ripd\nsleep: 1\nmgmtd:\nmgmtd:\n" +
                  removals() +
                  "mgmtd:\nsilently: \"ripd -d \"\nsleep: 1\nripd:\n"
                  "mgmtd: enable | configure | router rip vrf default\n");
}

TEST_F(Mgmtd, ARunningRipdKeepsItsSettings) {
    stage_.shell("grep zebra", {"10 root zebra\n"});
    stage_.shell("grep ripd", {"11 root ripd\n"});
    rip_enable();
    EXPECT_EQ(std::string(stage_.trace()).find("mgmtd"), std::string::npos);
}

TEST_F(Mgmtd, WhatCannotBeForgottenDoesNotKeepRipdFromStarting) {
    ASSERT_EQ(frrVtyInit(), 0);
    ASSERT_EQ(swRipInit(), 0U);
    stage::Answer refused;
    refused.code = 13;
    stage_.answer("mgmtd", "mgmt edit remove /frr-ripd:ripd lock commit", refused);
    rip_enable();
    const std::string trace = stage_.trace();
    EXPECT_EQ(occurrences(trace, "mgmt edit"), 1) << trace;
    EXPECT_EQ(occurrences(trace, "silently: \"ripd -d \""), 1) << trace;
}

// ---------------------------------------------------------------- observers

/// The places of sessions that an observer sees, each with how it went.
void see(FrruciEvent *event, void *context) {
    auto &seen = *static_cast<std::string *>(context);
    if (event->kind == FRRUCI_CONNECT && event->done != 0) {
        seen += std::string(event->place) + " " + (event->fd > 0 ? "open" : "failed") + "\n";
    }
    if (event->kind == FRRUCI_SHELL) {
        seen += std::string(event->text) + " " + std::to_string(event->done) + "\n";
    }
}

TEST_F(Mgmtd, AnObserverSeesTheSessionAndTheStart) {
    std::string seen;
    const FrruciObserver observer = {sizeof observer, 0, see, &seen};
    ASSERT_EQ(frruciObserve(&observer), 0);
    EXPECT_EQ(deliver(), 0U);
    EXPECT_EQ(swOspfProcessCreateById(1, 1), 0U);
    EXPECT_EQ(frruciObserve(nullptr), 0);
    EXPECT_EQ(seen, "/var/ripd.vty open\n/var/mgmtd.vty open\nospfd -d 0\nospfd -d 1\n");
}

TEST_F(Mgmtd, ARehearsalLeavesItAlone) {
    std::string seen;
    const FrruciObserver observer = {sizeof observer, 1, see, &seen};
    ASSERT_EQ(frruciObserve(&observer), 0);
    EXPECT_EQ(deliver(), 1U); // no daemon is given
    EXPECT_EQ(swOspfProcessCreateById(1, 1), 0U);
    EXPECT_EQ(frruciObserve(nullptr), 0);
    EXPECT_EQ(seen, "ospfd -d 0\n");
    EXPECT_EQ(std::string(stage_.trace()), "");
}

} // namespace
