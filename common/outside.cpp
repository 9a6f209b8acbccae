// SPDX-License-Identifier: Apache-2.0
// The observer, and the leaving points that it sees.

#include "common/outside.h"

#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "common/store_reading.h"
#include "common/uninterrupted.h"
#include "frruci/observe.h"

namespace {

constexpr uint32_t kFirstObserverBytes = 24;
constexpr uint32_t kEndingBytes = 4; // three NULs and the completion code
constexpr uint64_t kMicroseconds = 1000000;

// Hosts are built with these layouts; fields are only added after these.
static_assert(sizeof(FrruciObserver) == kFirstObserverBytes && sizeof(FrruciEvent) == 80 &&
              offsetof(FrruciEvent, number) == 48 && offsetof(FrruciEvent, code) == 64 &&
              offsetof(FrruciEvent, answer) == 72);

FrruciObserver observer = {};
FrruciEvent current = {};

/// Bytes received of what ends the answer to the command sent last.
uint32_t ending = 0;

/// What the host gave as that answer, without what was received of it.
const char *given = nullptr;
std::size_t givenBytes = 0;

bool isObserved() {
    return observer.see != nullptr;
}

/// Once in the router's build: inlined, it would cost more than all the calls of it.
[[gnu::noinline]] void describe(int kind, const char *place, const char *text, int fd) {
    current = {};
    current.size = sizeof current;
    current.kind = kind;
    current.fd = fd;
    current.place = place;
    current.text = text;
}

[[gnu::noinline]] void show() {
    observer.see(&current, observer.context);
}

/// Shows a piece of an answer: its text, and the completion code when this piece holds it.
void showAnswer(int fd, const char *bytes, ssize_t received) {
    if (!isObserved()) {
        return;
    }
    describe(FRRUCI_ANSWER, nullptr, bytes, fd);
    current.done = 1;
    current.result = static_cast<int32_t>(received);
    current.code = -1;
    if (received > 0) {
        const auto count = static_cast<uint32_t>(received);
        current.text_size = static_cast<uint32_t>(ending != 0 ? 0 : strnlen(bytes, count));
        const uint32_t before = ending;
        ending += count - current.text_size;
        // Bytes may come after the code.
        if (before < kEndingBytes && ending >= kEndingBytes) {
            const uint32_t position = current.text_size + kEndingBytes - before - 1;
            current.code = static_cast<uint8_t>(bytes[position]);
        }
    }
    show();
}

ssize_t receiveGiven(char *bytes, std::size_t room) {
    const std::size_t count = givenBytes < room ? givenBytes : room;
    memcpy(bytes, given, count);
    given += count;
    givenBytes -= count;
    return static_cast<ssize_t>(count);
}

/// What there is to read from; null when there is nothing.
FILE *openGiven() {
    FILE *stream = current.fd < 0 ? nullptr : fdopen(current.fd, "r");
    if (stream == nullptr && current.fd >= 0) {
        (void)close(current.fd);
    }
    return stream;
}

} // namespace

int32_t frruciObserve(const FrruciObserver *set) {
    static constexpr FrruciObserver kNobody = {};
    if (set != nullptr && (set->size < kFirstObserverBytes || set->see == nullptr)) {
        return 1;
    }
    observer = set == nullptr ? kNobody : *set;
    givenBytes = 0;
    frruci::common::forgetReadings(); // the rehearsal that has read them is over
    return 0;
}

namespace frruci::outside {

using common::uninterrupted;

bool happens(int kind, const char *place, const char *text, int fd, uint64_t number,
             const char *section, const char *option) {
    if (!isObserved()) {
        return true;
    }
    describe(kind, place, text, fd);
    current.section = section;
    current.option = option;
    current.number = number;
    show();
    return !isRehearsal();
}

int32_t happened(int32_t result) {
    if (isObserved()) {
        current.done = 1;
        current.result = result;
        show();
    }
    return result;
}

int32_t rehearsed() {
    return current.result;
}

bool isRehearsal() {
    return observer.rehearsal != 0;
}

int openSession(const sockaddr_un &address, unsigned length) {
    if (!happens(FRRUCI_CONNECT, address.sun_path, nullptr)) {
        return current.fd;
    }
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    // Fixed by the interface: a descriptor that could not be connected is not closed.
    // An interrupted connect of a Unix socket leaves nothing under way: it starts over.
    const int result = uninterrupted(
        [&] { return connect(fd, reinterpret_cast<const sockaddr *>(&address), length); });
    current.fd = fd;
    return happened(result) < 0 ? -1 : fd;
}

void opened(const char *place, int fd) {
    (void)happens(FRRUCI_CONNECT, place, nullptr); // it has happened
    current.fd = fd;
    (void)happened(0);
}

int sendCommand(int fd, const char *command) {
    ending = 0;
    if (!happens(FRRUCI_COMMAND, nullptr, command, fd)) {
        given = current.answer;
        givenBytes = given == nullptr ? 0 : current.answer_size;
        return rehearsed();
    }
    return common::sendAll(fd, command, strlen(command) + 1) ? 0 : -1;
}

ssize_t receive(int fd, char *bytes, std::size_t room) {
    const ssize_t received = givenBytes > 0
                                 ? receiveGiven(bytes, room)
                                 : uninterrupted([=] { return recv(fd, bytes, room, 0); });
    const int error = errno;
    showAnswer(fd, bytes, received);
    errno = error;
    return received;
}

int run(const char *command) {
    return happens(FRRUCI_SHELL, nullptr, command) ? happened(system(command)) : rehearsed();
}

FILE *openListing(const char *command) {
    return happens(FRRUCI_LISTING, nullptr, command) ? popen(command, "r") : openGiven();
}

void closeListing(FILE *listing) {
    // What a listing's command returns says nothing that its lines do not.
    (void)(isRehearsal() ? fclose(listing) : pclose(listing));
}

FILE *openAnswer(const char *path) {
    if (happens(FRRUCI_FILE, path, nullptr)) {
        current.fd = common::openPlainFile(path, O_RDONLY);
    }
    return openGiven();
}

void pauseFor(unsigned seconds, unsigned microseconds) {
    if (!happens(FRRUCI_PAUSE, nullptr, nullptr, -1, seconds * kMicroseconds + microseconds)) {
        return;
    }
    common::pauseFor(seconds, microseconds);
    (void)happened(0);
}

void killProcess(int32_t processId) {
    if (happens(FRRUCI_KILL, nullptr, nullptr, -1, static_cast<uint64_t>(processId))) {
        (void)happened(kill(processId, SIGKILL)); // one that is gone already is just as well
    }
}

} // namespace frruci::outside
