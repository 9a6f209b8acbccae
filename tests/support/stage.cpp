// SPDX-License-Identifier: Apache-2.0
// The life of a stage, its rules, and what it shows of the trace, the log and standard output.

#include "tests/support/stage.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <initializer_list>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/world.h"

namespace stage {

World *world = nullptr;

namespace {

constexpr const char *kLogPath = "/tmp/tmp/data";
constexpr const char *kStores[] = {"iptv", "nhrp", "ospf", "rip"};

void pipePath(int pipe, char (&path)[64]) {
    (void)snprintf(path, sizeof path, "/tmp/tmp/%s", kPipes[pipe]);
}

void socketPath(int daemon, char (&path)[64]) {
    (void)snprintf(path, sizeof path, "/var/%s.vty", kDaemons[daemon]);
}

int indexOf(const char *name, const char *const *names, int count) {
    for (int i = 0; i < count; ++i) {
        if (strcmp(names[i], name) == 0) {
            return i;
        }
    }
    (void)fprintf(stderr, "stage: unknown name %s\n", name);
    abort();
}

int daemonIndex(const char *name) {
    return indexOf(name, kDaemons, kDaemonCount);
}

/// The stage would otherwise take over the machine's own routing sockets and settings.
void insistOnSandbox() {
    if (getenv("FRRUCI_SANDBOX") == nullptr) {
        (void)fprintf(stderr, "stage: run this test in the sandbox: tests/support/sandbox %s\n",
                      program_invocation_name);
        _exit(99);
    }
}

void makePipe(int pipe) {
    char path[64];
    pipePath(pipe, path);
    unlink(path);
    if (mkfifo(path, 0666) < 0) {
        perror(path);
        abort();
    }
    // Open for both ways, so that neither side ever waits for the other.
    world->pipes[pipe] = open(path, O_RDWR | O_NONBLOCK | O_CLOEXEC);
}

/// The store files of the case before, and what was saved but not committed.
void dropStores() {
    for (const char *store : kStores) {
        for (const char *folder : {"/etc/config", "/tmp/.uci"}) {
            char path[64];
            (void)snprintf(path, sizeof path, "%s/%s", folder, store);
            unlink(path);
        }
    }
}

void closeFd(int &fd) {
    if (fd >= 0) {
        close(fd);
        fd = -1;
    }
}

void wakeThread() {
    if (write(world->wake[1], "", 1) < 0) {
        abort();
    }
}

void copyAnswer(Answer &to, const Answer &from) {
    to = from;
    to.text = copyText(from.text);
    if (from.rawBytes != nullptr) {
        const auto size = static_cast<std::size_t>(from.rawSize);
        char *bytes = static_cast<char *>(malloc(size + 1));
        memcpy(bytes, from.rawBytes, size);
        to.rawBytes = bytes;
    }
}

void addAnswer(int daemon, const char *command, const Answer &answer) {
    const WorldLock lock;
    if (world->answerCount == kMaxRules) {
        abort();
    }
    AnswerRule &rule = world->answers[world->answerCount++];
    rule.daemon = daemon;
    rule.command = command == nullptr ? nullptr : copyText(command);
    copyAnswer(rule.answer, answer);
}

/// A reply shows a line of the trace for each of its own lines.
void showReply(const Event &event, Buffer &out) {
    const char *line = event.text.text();
    const char *end = line + event.text.size();
    while (line < end) {
        const void *newline = memchr(line, '\n', static_cast<std::size_t>(end - line));
        const char *next = newline == nullptr ? end : static_cast<const char *>(newline) + 1;
        out.append("reply ");
        out.append(kPipes[event.index]);
        out.append(": ");
        out.appendVisible(line, static_cast<std::size_t>(next - line));
        out.append('\n');
        line = next;
    }
}

void showSession(const Session &session, Buffer &out) {
    out.append(kDaemons[session.daemon]);
    out.append(session.commands.size() == 0 ? ":" : ": ");
    out.append(session.commands.text());
    if (session.fd >= 0) {
        out.append(" | (left open)");
    }
    out.append('\n');
}

void showEvent(const Event &event, Buffer &out) {
    switch (event.kind) {
    case Event::Kind::Text:
        out.append(event.text.text());
        out.append('\n');
        break;
    case Event::Kind::Session:
        showSession(*world->sessions[event.index], out);
        break;
    case Event::Kind::Reply:
        showReply(event, out);
        break;
    }
}

void dropEvents() {
    for (int i = 0; i < world->eventCount; ++i) {
        world->events[i]->~Event();
        free(world->events[i]);
    }
    world->eventCount = 0;
}

void readFrom(const char *path, long &position, Buffer &out) {
    out.clear();
    FILE *file = fopen(path, "r");
    if (file == nullptr) {
        return;
    }
    char bytes[4096];
    std::size_t count = 0;
    (void)fseek(file, position, SEEK_SET);
    while ((count = fread(bytes, 1, sizeof bytes, file)) > 0) {
        out.append(bytes, count);
    }
    position += static_cast<long>(out.size());
    (void)fclose(file);
}

void captureStdout() {
    char path[] = "/tmp/stage-stdout-XXXXXX";
    world->capturedStdout = mkstemp(path);
    unlink(path);
    (void)fflush(stdout);
    world->realStdout = dup(STDOUT_FILENO);
    dup2(world->capturedStdout, STDOUT_FILENO);
}

/// What was captured since the last time.
void takeStdout(Buffer &out) {
    out.clear();
    (void)fflush(stdout);
    char bytes[4096];
    ssize_t count = 0;
    static_assert(sizeof(off_t) == 8);
    const off_t end = lseek(world->capturedStdout, 0, SEEK_END);
    lseek(world->capturedStdout, 0, SEEK_SET);
    for (off_t taken = 0; taken < end; taken += count) {
        count = read(world->capturedStdout, bytes, sizeof bytes);
        if (count <= 0) {
            break;
        }
        out.append(bytes, static_cast<std::size_t>(count));
    }
    if (ftruncate(world->capturedStdout, 0) < 0) {
        abort();
    }
    lseek(world->capturedStdout, 0, SEEK_SET);
}

/// What nobody asked for may hold a test's own messages: pass it on.
void releaseStdout() {
    takeStdout(world->outputText);
    dup2(world->realStdout, STDOUT_FILENO);
    closeFd(world->realStdout);
    closeFd(world->capturedStdout);
    (void)fputs(world->outputText.text(), stdout);
    (void)fflush(stdout);
}

void freeRules() {
    for (int i = 0; i < world->answerCount; ++i) {
        free(world->answers[i].command);
        free(const_cast<char *>(world->answers[i].answer.text));
        free(const_cast<char *>(world->answers[i].answer.rawBytes));
    }
    for (int i = 0; i < world->shellCount; ++i) {
        free(world->shells[i].containing);
        free(const_cast<char *>(world->shells[i].shell.text));
        free(const_cast<char *>(world->shells[i].shell.writeTo));
    }
}

void makeFolders(const char *path) {
    char folder[256];
    for (const char *slash = strchr(path + 1, '/'); slash != nullptr;
         slash = strchr(slash + 1, '/')) {
        (void)snprintf(folder, sizeof folder, "%.*s", static_cast<int>(slash - path), path);
        mkdir(folder, 0755);
    }
}

} // namespace

char *copyText(const char *text) {
    char *copy = strdup(text);
    if (copy == nullptr) {
        abort();
    }
    return copy;
}

WorldLock::WorldLock() {
    pthread_mutex_lock(&world->mutex);
}
WorldLock::~WorldLock() {
    pthread_mutex_unlock(&world->mutex);
}

Event &newEvent(Event::Kind kind, int index) {
    if (world->eventCount == kMaxEvents) {
        abort();
    }
    auto *event = make<Event>();
    event->kind = kind;
    event->index = index;
    world->events[world->eventCount++] = event;
    return *event;
}

Stage::Stage() {
    insistOnSandbox();
    useStandIns();
    world = make<World>();
    pthread_mutex_init(&world->mutex, nullptr);
    makeFolders(kLogPath);
    unlink(kLogPath);
    unlink("/tmp/cli_vid");
    unlink("/tmp/cli_ipaddr");
    dropStores();
    for (int i = 0; i < kAlwaysThere; ++i) {
        listenAs(i);
    }
    world->listeners[daemonIndex("mgmtd")] = -1;
    unlink("/var/mgmtd.vty");
    for (int i = 0; i < kPipeCount; ++i) {
        makePipe(i);
    }
    if (pipe2(world->wake, O_NONBLOCK | O_CLOEXEC) < 0) {
        abort();
    }
    captureStdout();
    // Signals of a test's timer are for the library's thread.
    sigset_t all;
    sigset_t before;
    (void)sigfillset(&all);
    (void)pthread_sigmask(SIG_SETMASK, &all, &before);
    pthread_create(&world->thread, nullptr, serve, nullptr);
    (void)pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Stage::~Stage() {
    {
        const WorldLock lock;
        world->stopping = true;
    }
    wakeThread();
    pthread_join(world->thread, nullptr);
    releaseStdout();
    for (int i = 0; i < world->sessionCount; ++i) {
        hangUp(*world->sessions[i]);
        world->sessions[i]->~Session();
        free(world->sessions[i]);
    }
    dropEvents();
    freeRules();
    for (int &fd : world->listeners) {
        closeFd(fd);
    }
    for (int &fd : world->pipes) {
        closeFd(fd);
    }
    closeFd(world->wake[0]);
    closeFd(world->wake[1]);
    pthread_mutex_destroy(&world->mutex);
    world->~World();
    free(world);
    world = nullptr;
}

void Stage::answer(const char *daemon, const char *command, const Answer &answer) {
    addAnswer(daemonIndex(daemon), command, answer);
}

void Stage::answerAll(const char *daemon, const Answer &answer) {
    addAnswer(daemonIndex(daemon), nullptr, answer);
}

void Stage::present(const char *daemon) {
    const WorldLock lock;
    listenAs(daemonIndex(daemon));
    wakeThread();
}

void Stage::deaf(const char *daemon) {
    const WorldLock lock;
    int &listener = world->listeners[daemonIndex(daemon)];
    shutdown(listener, SHUT_RDWR); // at once: the thread's poll holds a closed socket for a while
    closeFd(listener);
    wakeThread();
}

void Stage::absent(const char *daemon) {
    deaf(daemon);
    char path[64];
    socketPath(daemonIndex(daemon), path);
    unlink(path);
}

void Stage::shell(const char *containing, const Shell &shell) {
    const WorldLock lock;
    if (world->shellCount == kMaxRules) {
        abort();
    }
    ShellRule &rule = world->shells[world->shellCount++];
    rule.containing = copyText(containing);
    rule.shell = shell;
    rule.shell.text = copyText(shell.text);
    rule.shell.writeTo = shell.writeTo == nullptr ? nullptr : copyText(shell.writeTo);
}

void Stage::noPipe(const char *name) {
    const WorldLock lock;
    const int pipe = indexOf(name, kPipes, kPipeCount);
    char path[64];
    pipePath(pipe, path);
    unlink(path);
    closeFd(world->pipes[pipe]);
    wakeThread();
}

const char *Stage::trace() {
    const WorldLock lock;
    pump();
    world->shown.clear();
    for (int i = 0; i < world->eventCount; ++i) {
        showEvent(*world->events[i], world->shown);
    }
    dropEvents();
    return world->shown.text();
}

const char *Stage::log() {
    readFrom(kLogPath, world->logRead, world->logText);
    return world->logText.text();
}

const char *Stage::output() {
    takeStdout(world->outputText);
    return world->outputText.text();
}

int Stage::openDescriptors() {
    const WorldLock lock;
    pump();
    int count = 0;
    DIR *folder = opendir("/proc/self/fd");
    if (folder == nullptr) {
        abort();
    }
    for (const dirent *entry = readdir(folder); entry != nullptr; entry = readdir(folder)) {
        count += entry->d_name[0] != '.' ? 1 : 0;
    }
    closedir(folder);
    for (int i = 0; i < world->sessionCount; ++i) {
        count -= world->sessions[i]->fd >= 0 ? 1 : 0; // the fake daemon's end
    }
    return count;
}

void writeFile(const char *path, const char *text, std::size_t size) {
    makeFolders(path);
    FILE *file = fopen(path, "w");
    if (file == nullptr || fwrite(text, 1, size, file) != size || fclose(file) != 0) {
        perror(path);
        abort();
    }
}

void writeFile(const char *path, const char *text) {
    writeFile(path, text, strlen(text));
}

} // namespace stage
