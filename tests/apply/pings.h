/* SPDX-License-Identifier: Apache-2.0 */
/* Asks a router over and over whether it is there. */
#ifndef FRRUCI_TESTS_APPLY_PINGS_H
#define FRRUCI_TESTS_APPLY_PINGS_H

#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <netinet/ip.h>
#include <netinet/ip_icmp.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace pings {

/// Sends an echo request every 50 ms from construction to stop().
class Pings {
public:
    explicit Pings(const char *address)
        : fd_(socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_ICMP)) {
        target_.sin_family = AF_INET;
        (void)inet_pton(AF_INET, address, &target_.sin_addr);
        thread_ = std::thread([this] {
            while (!stopped_) {
                ask(static_cast<uint16_t>(++sent_));
            }
        });
    }
    ~Pings() {
        stop();
        (void)close(fd_);
    }
    Pings(const Pings &) = delete;
    Pings &operator=(const Pings &) = delete;

    void stop() {
        stopped_ = true;
        if (thread_.joinable()) {
            thread_.join();
        }
    }
    int sent() const { return sent_; }
    int lost() const { return sent_ - answered_; }

private:
    static constexpr int kPeriodMs = 50;
    static constexpr int kPatienceMs = 1000;

    /// One request; an answer that comes within the patience counts.
    void ask(uint16_t number) {
        const auto begun = std::chrono::steady_clock::now();
        icmphdr request = {};
        request.type = ICMP_ECHO;
        request.un.echo.sequence = htons(number);
        // The sum of all its words with carry, of which only two are not zero.
        request.checksum = static_cast<uint16_t>(~(htons(ICMP_ECHO << 8) + htons(number)));
        (void)sendto(fd_, &request, sizeof request, 0, reinterpret_cast<sockaddr *>(&target_),
                     sizeof target_);
        const auto elapsed = [&] {
            return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                        std::chrono::steady_clock::now() - begun)
                                        .count());
        };
        bool answered = false;
        while (!answered && elapsed() < kPatienceMs) {
            pollfd readable = {fd_, POLLIN, 0};
            answered = poll(&readable, 1, kPatienceMs - elapsed()) > 0 && isAnswer(number);
        }
        answered_ += answered ? 1 : 0;
        if (elapsed() < kPeriodMs) {
            std::this_thread::sleep_for(std::chrono::milliseconds(kPeriodMs - elapsed()));
        }
    }

    bool isAnswer(uint16_t number) const {
        alignas(iphdr) char packet[512];
        const ssize_t bytes = recv(fd_, packet, sizeof packet, 0);
        const auto *ip = reinterpret_cast<const iphdr *>(packet);
        if (bytes < static_cast<ssize_t>(sizeof(iphdr) + sizeof(icmphdr))) {
            return false;
        }
        const auto *reply = reinterpret_cast<const icmphdr *>(packet + ip->ihl * 4);
        return ip->saddr == target_.sin_addr.s_addr && reply->type == ICMP_ECHOREPLY &&
               reply->un.echo.sequence == htons(number);
    }

    int fd_;
    sockaddr_in target_ = {};
    std::atomic<bool> stopped_ = false;
    std::atomic<int> sent_ = 0;
    std::atomic<int> answered_ = 0;
    std::thread thread_;
};

} // namespace pings

#endif
