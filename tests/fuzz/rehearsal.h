/* SPDX-License-Identifier: Apache-2.0 */
/* A rehearsal for fuzz targets: nothing leaves the library, and what would is looked at and
 * answered. No pipe, thread, shell or pause, so thousands of inputs a second. */
#ifndef FRRUCI_TESTS_FUZZ_REHEARSAL_H
#define FRRUCI_TESTS_FUZZ_REHEARSAL_H

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include "frruci/observe.h"
#include "tests/fuzz/request.h"

namespace fuzz {

/// A descriptor that the library got, and the end that stays here.
struct Line {
    std::string commands; ///< of a session, with " | " between them; empty for a listing or a file
    int given;
    int kept;
};

class Rehearsal {
public:
    uint8_t code = 0;          ///< every command's completion code
    std::string answerTo;      ///< commands that begin so are answered by bytes
    std::string bytes;         ///< before the marker and the code
    std::size_t pieceSize = 1; ///< so many bytes of an answer come at once
    std::string listing;       ///< of a command that is read from
    std::string file;          ///< that a shell command has left
    std::vector<std::string> shells;
    std::vector<std::string> replies;
    std::vector<Line> lines;
    int stored = 0;

    Rehearsal() {
        const FrruciObserver observer = {sizeof observer, 1, see, this};
        insist(frruciObserve(&observer) == 0);
    }
    ~Rehearsal() {
        (void)leftOpen();
        (void)frruciObserve(nullptr);
    }
    Rehearsal(const Rehearsal &) = delete;
    Rehearsal &operator=(const Rehearsal &) = delete;

    /// How many descriptors the library has not closed; they are closed now.
    int leftOpen() {
        int count = 0;
        for (Line &line : lines) {
            if (line.kept < 0) {
                continue;
            }
            if (!isClosed(line.kept)) {
                ++count;
                (void)close(line.given);
            }
            (void)close(line.kept);
            line.kept = -1;
        }
        return count;
    }

private:
    /// The other end is gone when all its bytes have been read and none can come.
    static bool isClosed(int kept) {
        char bytes[512];
        ssize_t count = 0;
        while ((count = recv(kept, bytes, sizeof bytes, MSG_DONTWAIT)) > 0) {
        }
        return count == 0 || errno == ECONNRESET; // the latter where an answer was not read
    }

    static void see(FrruciEvent *event, void *context) {
        static_cast<Rehearsal *>(context)->take(*event);
    }

    void take(FrruciEvent &event) {
        switch (event.kind) {
        case FRRUCI_CONNECT:
            event.fd = give(event.place);
            break;
        case FRRUCI_COMMAND:
            answer(event);
            break;
        case FRRUCI_SHELL:
            shells.emplace_back(event.text);
            break;
        case FRRUCI_LISTING:
            shells.emplace_back(event.text);
            event.fd = giveText(listing);
            break;
        case FRRUCI_FILE:
            event.fd = giveText(file);
            break;
        case FRRUCI_STORE:
            insist(event.place != nullptr);
            ++stored;
            break;
        case FRRUCI_REPLY:
            replies.emplace_back(std::string(event.place == nullptr ? "" : event.place) + ": " +
                                 event.text);
            break;
        default:
            break;
        }
    }

    /// One message is one recv.
    int give(const char *name) {
        int ends[2];
        insist(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0);
        lines.push_back({name, ends[0], ends[1]});
        return ends[0];
    }

    int giveText(const std::string &text) {
        int ends[2];
        insist(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0);
        lines.push_back({"", ends[0], ends[1]});
        put(ends[1], text);
        (void)shutdown(ends[1], SHUT_WR);
        return ends[0];
    }

    static void put(int kept, const std::string &bytes) {
        if (!bytes.empty()) { // an empty message reads as the end of the stream
            insist(send(kept, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL) >= 0);
        }
    }

    void answer(const FrruciEvent &event) {
        for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
            if (line->given != event.fd || line->kept < 0) {
                continue;
            }
            line->commands += std::string(" | ") + event.text;
            const bool shown = line->commands.compare(line->commands.size() - strlen(event.text),
                                                      answerTo.size(), answerTo) == 0;
            for (std::size_t at = 0; shown && at < bytes.size(); at += pieceSize) {
                put(line->kept, bytes.substr(at, pieceSize));
            }
            put(line->kept, {'\0', '\0', '\0', static_cast<char>(code)});
            return;
        }
        abort(); // a command without a session
    }
};

/// No word of a request may reach a shell: only commands without a part that varies are allowed,
/// apart from the number in a question about a VLAN.
inline bool isKnownShell(const std::string &command) {
    static constexpr const char *kFixed[] = {
        "iptables -t filter -nvL INPUT | grep dpt:520",
        "iptables -w -t filter -I INPUT -p udp --dport 520 -j ACCEPT",
        "ps -w | grep -v grep | grep nhrpd",
        "ps -w | grep -v grep | grep ospfd",
        "ps -w | grep -v grep | grep ripd",
        "ps -w | grep -v grep | grep zebra",
        "killall nhrpd;nhrpd -d",
        "nhrpd -d ",
        "conntrack -D -p ospf",
        "ospfd -d",
        "ospfd -d ",
        "ripd -d ",
        "zebra -d ",
    };
    for (const char *fixed : kFixed) {
        if (command == fixed) {
            return true;
        }
    }
    static constexpr char kQuestion[] =
        "lua -e 'require \"luci.controller.admin.lan\".is_vlan_id(\"";
    if (command.rfind(kQuestion, 0) != 0) {
        return false;
    }
    const char *number = command.c_str() + sizeof kQuestion - 1;
    number += *number == '-' ? 1 : 0;
    const std::size_t digits = strspn(number, "0123456789");
    return digits > 0 && strcmp(number + digits, "\")'") == 0;
}

} // namespace fuzz

#endif
