// SPDX-License-Identifier: Apache-2.0
// Fake daemons on the vty sockets: they record what they are sent and answer from the rules.

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "tests/support/world.h"

namespace stage {

namespace {

constexpr int kDeliveryDeadlineMs = 2000;

void pauseMs(int ms) {
    timespec rest = {ms / 1000, (ms % 1000) * 1000000L};
    while (nanosleep(&rest, &rest) < 0 && errno == EINTR) {
    }
}

/// Waits until the peer has taken what was sent, so that the next segment comes on its own.
void waitUntilTaken(int fd) {
    for (int waited = 0; waited < kDeliveryDeadlineMs; ++waited) {
        int pending = 0;
        if (ioctl(fd, TIOCOUTQ, &pending) < 0 || pending == 0) {
            return;
        }
        pauseMs(1);
    }
}

void drainPipe(int pipe) {
    char bytes[4096];
    for (;;) {
        const ssize_t count = read(world->pipes[pipe], bytes, sizeof bytes);
        if (count <= 0) {
            return;
        }
        Event *last = world->eventCount == 0 ? nullptr : world->events[world->eventCount - 1];
        const bool goesOn =
            last != nullptr && last->kind == Event::Kind::Reply && last->index == pipe;
        Event &event = goesOn ? *last : newEvent(Event::Kind::Reply, pipe);
        event.text.append(bytes, static_cast<std::size_t>(count));
    }
}

/// Goes on reading the reply pipes meanwhile: a library that is writing rows takes nothing.
void sendAll(int fd, const char *bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t sent = send(fd, bytes, count, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0 && errno == EAGAIN) {
            for (int pipe = 0; pipe < kPipeCount; ++pipe) {
                drainPipe(pipe);
            }
            pollfd room = {fd, POLLOUT, 0};
            (void)poll(&room, 1, 1);
            continue;
        }
        if (sent <= 0) {
            return; // the library closed the session meanwhile
        }
        bytes += sent;
        count -= static_cast<std::size_t>(sent);
    }
}

Answer *findAnswer(int daemon, const char *command) {
    for (int pass = 0; pass < 2; ++pass) { // rules for the very command go before those for any
        for (int i = world->answerCount - 1; i >= 0; --i) {
            AnswerRule &rule = world->answers[i];
            const bool matches = pass == 0
                                     ? rule.command != nullptr && strcmp(rule.command, command) == 0
                                     : rule.command == nullptr;
            if (rule.daemon == daemon && matches && rule.answer.times != 0) {
                return &rule.answer;
            }
        }
    }
    return nullptr;
}

void render(const Answer &answer, Buffer &bytes) {
    if (answer.rawBytes != nullptr) {
        bytes.append(answer.rawBytes, static_cast<std::size_t>(answer.rawSize));
        return;
    }
    bytes.append(answer.text);
    bytes.append("\0\0\0", 3);
    bytes.append(static_cast<char>(answer.code));
}

void giveAnswer(Session &session, const Answer &answer) {
    if (answer.silent) {
        return;
    }
    if (answer.delayMs > 0) {
        pauseMs(answer.delayMs);
    }
    if (answer.closeEarly) {
        hangUp(session);
        return;
    }
    Buffer bytes;
    render(answer, bytes);
    if (answer.truncateTo >= 0) {
        sendAll(session.fd, bytes.text(), static_cast<std::size_t>(answer.truncateTo));
        hangUp(session);
        return;
    }
    const auto split = static_cast<std::size_t>(answer.splitAt);
    if (answer.splitAt > 0 && split < bytes.size()) {
        sendAll(session.fd, bytes.text(), split);
        waitUntilTaken(session.fd);
        sendAll(session.fd, bytes.text() + split, bytes.size() - split);
        return;
    }
    sendAll(session.fd, bytes.text(), bytes.size());
}

void takeCommand(Session &session, const char *command) {
    if (session.commands.size() > 0) {
        session.commands.append(" | ");
    }
    session.commands.appendVisible(command);
    static const Answer kAccepted;
    Answer *answer = findAnswer(session.daemon, command);
    if (answer != nullptr && answer->times > 0) {
        --answer->times;
    }
    giveAnswer(session, answer == nullptr ? kAccepted : *answer);
}

void readSession(Session &session) {
    char bytes[4096];
    for (;;) {
        const ssize_t count = recv(session.fd, bytes, sizeof bytes, MSG_DONTWAIT);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
            return;
        }
        if (count <= 0) { // a peer that closed with bytes unread shows as a reset
            hangUp(session);
            return;
        }
        for (ssize_t i = 0; i < count; ++i) {
            session.received.append(bytes[i]);
            if (bytes[i] == '\0') {
                takeCommand(session, session.received.text());
                session.received.clear();
                if (session.fd < 0) {
                    return;
                }
            }
        }
    }
}

/// The thread's poll does not know of a session that somebody else accepted.
void watchAnew() {
    if (write(world->wake[1], "", 1) < 0 && errno != EAGAIN) {
        abort();
    }
}

void acceptSessions(int daemon) {
    for (;;) {
        const int fd = accept4(world->listeners[daemon], nullptr, nullptr, SOCK_CLOEXEC);
        if (fd < 0) {
            return;
        }
        if (world->sessionCount == kMaxSessions) {
            abort();
        }
        auto *session = make<Session>();
        session->fd = fd;
        session->daemon = daemon;
        newEvent(Event::Kind::Session, world->sessionCount);
        world->sessions[world->sessionCount++] = session;
        watchAnew();
    }
}

} // namespace

void hangUp(Session &session) {
    if (session.fd >= 0) {
        close(session.fd);
        session.fd = -1;
    }
}

void listenAs(int daemon) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    (void)snprintf(address.sun_path, sizeof address.sun_path, "/var/%s.vty", kDaemons[daemon]);
    unlink(address.sun_path);
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (bind(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) < 0 ||
        listen(fd, 64) < 0) {
        perror("stage: vty socket");
        abort();
    }
    world->listeners[daemon] = fd;
}

void pump() {
    for (int i = 0; i < kPipeCount; ++i) {
        if (world->pipes[i] >= 0) {
            drainPipe(i);
        }
    }
    for (int i = 0; i < kDaemonCount; ++i) {
        if (world->listeners[i] >= 0) {
            acceptSessions(i);
        }
    }
    for (int i = 0; i < world->sessionCount; ++i) {
        if (world->sessions[i]->fd >= 0) {
            readSession(*world->sessions[i]);
        }
    }
}

namespace {

nfds_t gather(pollfd *watched) {
    nfds_t count = 0;
    watched[count++] = {world->wake[0], POLLIN, 0};
    for (int fd : world->listeners) {
        if (fd >= 0) {
            watched[count++] = {fd, POLLIN, 0};
        }
    }
    for (int fd : world->pipes) {
        if (fd >= 0) {
            watched[count++] = {fd, POLLIN, 0};
        }
    }
    for (int i = 0; i < world->sessionCount; ++i) {
        if (world->sessions[i]->fd >= 0) {
            watched[count++] = {world->sessions[i]->fd, POLLIN, 0};
        }
    }
    return count;
}

} // namespace

void *serve(void *) {
    static pollfd watched[1 + kDaemonCount + kPipeCount + kMaxSessions];
    // Not before something happens: to accept takes the lowest free descriptor for a moment, even
    // where nobody waits, and a test may have freed that one for the library.
    for (bool isAwake = false;; isAwake = true) {
        nfds_t count = 0;
        {
            const WorldLock lock;
            if (world->stopping) {
                return nullptr;
            }
            if (isAwake) {
                pump();
            }
            count = gather(watched);
        }
        (void)poll(watched, count, -1);
        char byte = 0;
        while (read(watched[0].fd, &byte, 1) == 1) {
        }
    }
}

} // namespace stage
