// SPDX-License-Identifier: Apache-2.0
// Two threads on the RIP model's locked routines; meant for the thread sanitizer.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "rip/uc_rip.h"

namespace {

constexpr int kRounds = 2000;
constexpr const char *kShared = "default";

/// One thread's work: its own instance and interfaces come and go, the shared ones are set and
/// read.
void work(uint32_t self, uint32_t *failures) {
    const std::string own = "vrf" + std::to_string(self);
    const RipNetIf sharedKey = {1, 1};
    for (int round = 0; round < kRounds; ++round) {
        const std::string ip = "10." + std::to_string(self) + ".0." + std::to_string(round % 200);
        const RipNetIf key = {1, 100 * (self + 1) + static_cast<uint32_t>(round) % 7};
        uint32_t value = 0;
        char text[17];
        RipNetworkNode *network = nullptr;
        RipNeighborNode *neighbor = nullptr;
        const uint32_t results[] = {
            ucRipVrfAppend(own.c_str(), nullptr),
            ucRipNetworkNodeAppend(own.c_str(), ip.c_str(), "255.0.0.0", &network),
            ucRipNetworkNodeAppend(kShared, ip.c_str(), "255.0.0.0", &network),
            ucRipNeighborAppend(kShared, ip.c_str(), &neighbor),
            ucRipTimerUpdateSet(kShared, 5 + static_cast<uint32_t>(round) % 90),
            ucRipTimerUpdateGet(kShared, &value),
            ucRipInterfaceNodeAppend(key, nullptr),
            ucRipInterfaceSendVersionSet(sharedKey, self + 1),
            ucRipInterfaceSendVersionGet(sharedKey, &value),
            ucRipInterfaceAuth_strSet(sharedKey, self == 0 ? "first" : "second"),
            ucRipInterfaceAuth_strGet(sharedKey, text),
            ucRipInterfacePassiveEnableSet(key, 1),
            ucRipNeighborRemoveByName(kShared, ip.c_str()),
            ucRipNetworkNodeRemoveByName(kShared, ip.c_str(), "255.0.0.0"),
            ucRipInterfaceNodeRemoveByKey(key),
            round % 10 == 9 ? ucRipVrfRemoveByName(own.c_str()) : 0,
        };
        for (const uint32_t result : results) {
            *failures += result == 0 ? 0 : 1;
        }
        const std::string seen = text;
        *failures += seen == "first" || seen == "second" ? 0 : 1;
        *failures += value == 1 || value == 2 ? 0 : 1;
    }
}

TEST(Threads, BothWorkOnTheModel) {
    ASSERT_EQ(ucRipInit(), 0U);
    RipVrfNode *shared = nullptr;
    ASSERT_EQ(ucRipVrfAppend(kShared, &shared), 0U);
    ASSERT_EQ(ucRipInterfaceNodeAppend({1, 1}, nullptr), 0U);
    uint32_t failures[2] = {};
    std::thread first(work, 0, &failures[0]);
    std::thread second(work, 1, &failures[1]);
    first.join();
    second.join();
    EXPECT_EQ(failures[0], 0U);
    EXPECT_EQ(failures[1], 0U);
    EXPECT_EQ(shared->networks->count, 0U);
    EXPECT_EQ(shared->neighbors->count, 0U);
    EXPECT_EQ(gRipIfList->count, 1U);
    EXPECT_EQ(gRipVrfList->count, 1U);
}

/// Standard output that nobody reads, full to the brim, until drain.
class BlockedOutput {
public:
    BlockedOutput() {
        (void)fflush(stdout);
        kept_ = dup(STDOUT_FILENO);
        if (pipe(pipe_) != 0) {
            abort();
        }
        (void)fcntl(pipe_[1], F_SETFL, O_NONBLOCK);
        const char filler[4096] = {};
        while (write(pipe_[1], filler, sizeof filler) > 0) {
        }
        while (write(pipe_[1], filler, 1) > 0) {
        }
        (void)fcntl(pipe_[1], F_SETFL, 0);
        (void)dup2(pipe_[1], STDOUT_FILENO);
    }
    ~BlockedOutput() {
        (void)dup2(kept_, STDOUT_FILENO);
        for (const int file : {kept_, pipe_[0], pipe_[1]}) {
            (void)close(file);
        }
    }
    BlockedOutput(const BlockedOutput &) = delete;
    BlockedOutput &operator=(const BlockedOutput &) = delete;
    /// Makes room for far more than a dump prints.
    void drain() {
        char taken[65536];
        (void)!read(pipe_[0], taken, sizeof taken);
    }

private:
    int kept_ = -1;
    int pipe_[2] = {-1, -1};
};

bool becomesBusy(pthread_mutex_t &mutex) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < deadline) {
        if (pthread_mutex_trylock(&mutex) != 0) {
            return true;
        }
        pthread_mutex_unlock(&mutex);
        std::this_thread::yield();
    }
    return false;
}

bool becomesFree(pthread_mutex_t &mutex) {
    timespec deadline = {};
    (void)clock_gettime(CLOCK_REALTIME, &deadline);
    deadline.tv_sec += 20;
    if (pthread_mutex_timedlock(&mutex, &deadline) != 0) {
        return false;
    }
    pthread_mutex_unlock(&mutex);
    return true;
}

/// Runs a dump whose output nobody takes and looks whether it holds the mutex meanwhile.
void checkHeld(uint32_t (*dump)(), pthread_mutex_t &mutex, pthread_mutex_t &other) {
    bool held = false;
    bool otherFree = false;
    bool released = false;
    {
        BlockedOutput blocked;
        (void)setvbuf(stdout, nullptr, _IONBF, 0);
        std::thread dumping(dump);
        held = becomesBusy(mutex);
        otherFree = becomesFree(other);
        blocked.drain();
        released = becomesFree(mutex);
        dumping.join();
    }
    EXPECT_TRUE(held);
    EXPECT_TRUE(otherFree);
    EXPECT_TRUE(released);
}

TEST(Threads, DumpsHoldTheirMutex) {
    ASSERT_EQ(ucRipInit(), 0U);
    ASSERT_EQ(ucRipVrfAppend(kShared, nullptr), 0U);
    ASSERT_EQ(ucRipInterfaceNodeAppend({0, 0}, nullptr), 0U);
    checkHeld(ucRip_setGlobal, ucRipVrfListMu, ucRipIfListMu);
    checkHeld(ucRip_setIfVlan, ucRipIfListMu, ucRipVrfListMu);
}

} // namespace
