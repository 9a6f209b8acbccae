// SPDX-License-Identifier: Apache-2.0
// The log line, the reply pipe, the shell-safety check and the questions to the Lua side.
// The line numbers in messages: Fixed by the interface.

#include "common/front_end.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

#include "common/outside.h"
#include "common/text.h"
#include "common/uninterrupted.h"
#include "frruci/observe.h"

namespace {

using frruci::common::format;
using frruci::outside::runShell;

constexpr const char *kLogPath = "/tmp/tmp/data";
constexpr const char *kVidAnswer = "/tmp/cli_vid";
constexpr const char *kAddressAnswer = "/tmp/cli_ipaddr";
constexpr const char *kRefusedCharacters = "|\"$&'();<>[\\`";

constexpr int kNotOpened = -1;

/// Holds SIGPIPE back: a reader that went away must not end the host.
class PipeSignalHeld {
public:
    PipeSignalHeld() {
        sigset_t pending;
        (void)sigpending(&pending); // cannot fail with a valid set
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        (void)sigemptyset(&held_);
        (void)sigaddset(&held_, SIGPIPE);
        (void)pthread_sigmask(SIG_BLOCK, &held_, &before_);
    }
    ~PipeSignalHeld() {
        if (!wasPending_) {
            const timespec none = {};
            while (sigtimedwait(&held_, nullptr, &none) < 0 && errno == EINTR) {
            }
        }
        (void)pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    PipeSignalHeld(const PipeSignalHeld &) = delete;
    PipeSignalHeld &operator=(const PipeSignalHeld &) = delete;

private:
    sigset_t held_;
    sigset_t before_;
    bool wasPending_;
};

void dropNewline(char *line) {
    const std::size_t length = strlen(line);
    if (length > 0 && line[length - 1] == '\n') {
        line[length - 1] = '\0';
    }
}

/// Reads the first line of an answer file, its newline removed; false when it cannot be opened.
template <std::size_t N> bool readAnswer(const char *path, char (&line)[N]) {
    FILE *file = frruci::outside::openAnswer(path);
    if (file == nullptr) {
        return false;
    }
    (void)frruci::common::readStart(file, line, N); // an empty file is an empty answer
    (void)fclose(file);                             // only read from
    dropNewline(line);
    return true;
}

/// Asks a VLAN question; ifUnanswered is the result without an answer file.
int32_t askVlan(const char *module, const char *question, int32_t vid, int32_t ifUnanswered) {
    char command[256];
    format(command, "lua -e 'require \"luci.controller.admin.%s\".%s(\"%d\")'", module, question,
           vid);
    runShell(command);
    char answer[32];
    if (!readAnswer(kVidAnswer, answer)) {
        return ifUnanswered;
    }
    return frruci::common::number(answer);
}

void askAddress(const char *module, const char *question, const char *ipText, const char *asker,
                int line) {
    if (check_safe_string(ipText) == 0) {
        (void)printf("%s %d: check safe string failed!\n", asker, line);
        return;
    }
    char command[128];
    format(command, "lua -e 'require \"luci.controller.admin.%s\".%s(\"%s\")'", module, question,
           ipText);
    runShell(command);
}

bool isWanAddress(const char *ipText) {
    askAddress("interface_wan", "is_wan_ip_addr", ipText, "get_wan_ip_addr", 69);
    char answer[64];
    return readAnswer(kAddressAnswer, answer) && !frruci::common::equals(answer, "none");
}

bool is_local_ip_addr(const char *ipText) {
    FILE *addresses =
        frruci::outside::openListing("ifconfig | awk '/inet/{print $2}' | awk -F: '{print $2}'");
    if (addresses == nullptr) {
        return false;
    }
    char line[512];
    bool found = false;
    while (!found && frruci::common::readLine(addresses, line)) {
        dropNewline(line);
        found = line[0] != '\0' && frruci::common::equals(line, ipText);
    }
    frruci::outside::closeListing(addresses);
    return found;
}

bool isInLanVlan(const char *ipText) {
    askAddress("lan", "is_vlan_ipaddr", ipText, "get_vid_by_ip_addr", 103);
    char answer[1024];
    if (!readAnswer(kVidAnswer, answer)) {
        return false;
    }
    if (frruci::common::equals(answer, "0")) {
        (void)puts("Is not lan ip.");
        return false;
    }
    return true;
}

int32_t writePipe(const char *text, const char *path) {
    if (path == nullptr) {
        return kNotOpened;
    }
    const int pipe = frruci::common::uninterrupted(
        [=] { return open(path, O_WRONLY | O_NOFOLLOW | O_CLOEXEC); });
    if (pipe < 0) {
        return pipe;
    }
    const PipeSignalHeld held;
    // Where the reader went away there is nobody left to tell.
    (void)frruci::common::writeAll(pipe, text, strlen(text));
    return close(pipe);
}

} // namespace

namespace outside = frruci::outside;

int32_t record_log_act(const char *format, ...) {
    if (outside::isRehearsal()) {
        return -1;
    }
    char message[512];
    va_list arguments;
    va_start(arguments, format);
    const int formatted = vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    if (formatted < 0) {
        return -1;
    }
    const int file = frruci::common::openPlainFile(kLogPath, O_WRONLY | O_APPEND | O_CREAT);
    if (file < 0) {
        return kNotOpened;
    }
    const bool written = frruci::common::writeAll(file, message, strlen(message));
    (void)close(file); // nothing is buffered that a close could still lose
    return written ? 0 : -1;
}

int32_t write_pipe_to_lua(const char *text, const char *path) {
    if (text == nullptr) {
        text = "";
    }
    return outside::happens(FRRUCI_REPLY, path, text) ? outside::happened(writePipe(text, path))
                                                      : outside::rehearsed();
}

int32_t check_safe_string(const char *text) {
    return text == nullptr || strpbrk(text, kRefusedCharacters) == nullptr ? 1 : 0;
}

int32_t sw_is_lan_vid(int32_t vid) {
    return askVlan("lan", "is_vlan_id", vid, 0);
}

// Fixed by the interface: without an answer a VLAN counts as WAN.
int32_t sw_is_wan_vid(int32_t vid) {
    return askVlan("interface_wan", "is_wan_vlan_id", vid, 1);
}

int32_t check_network_ip(const char *ip_text) {
    if (ip_text == nullptr) {
        ip_text = "";
    }
    if (isWanAddress(ip_text) || is_local_ip_addr(ip_text)) {
        return 1;
    }
    return isInLanVlan(ip_text) ? 0 : -1;
}
