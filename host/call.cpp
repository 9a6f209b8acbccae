// SPDX-License-Identifier: Apache-2.0
// The handler runs in this process, so that the models live on; a child reads the pipe meanwhile.

#include "host/call.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/library.h"

namespace frruci::host {

namespace {

constexpr const char *kPipeFolder = "/tmp/tmp";

/// Opens the pipe for both ways, so that neither side ever waits in open. Makes it where missing.
int openPipe(const char *name) {
    char path[128];
    (void)snprintf(path, sizeof path, "%s/%s", kPipeFolder, name);
    (void)mkdir(kPipeFolder, 0755); // usually there, as the pipe may be: the open tells
    (void)mkfifo(path, 0666);
    const int pipe = open(path, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (pipe < 0) {
        perror(path);
    }
    return pipe;
}

void drain(int pipe, Answer &answer) {
    char bytes[4096];
    ssize_t count = 0;
    while ((count = read(pipe, bytes, sizeof bytes)) > 0) {
        answer.take(bytes, static_cast<std::size_t>(count));
    }
}

/// The child: reads until the handler's side closes its end of done.
[[noreturn]] void readAnswer(int pipe, int done, Ending ending) {
    (void)alarm(0);
    Answer answer(ending);
    pollfd watched[] = {
        {pipe, POLLIN, 0},
        {done, POLLIN, 0},
    };
    while (watched[1].revents == 0) {
        if (poll(watched, 2, -1) < 0 && errno != EINTR) {
            break;
        }
        drain(pipe, answer);
    }
    drain(pipe, answer);
    _exit(answer.finish());
}

void giveUp(int) {
    static constexpr char kMessage[] = "frruci: the handler did not return in time\n";
    if (write(STDERR_FILENO, kMessage, sizeof kMessage - 1) < 0) {
        // Nothing is left to say it with.
    }
    _exit(kNoAnswer);
}

void run(const Handler &handler, void *function, int count, char **words) {
    (void)fflush(stdout);
    // Not for a daemon that the handler starts: whoever reads our output would wait for its end.
    const int answers = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
    (void)dup2(STDERR_FILENO, STDOUT_FILENO);
    if (handler.takesWords) {
        reinterpret_cast<void (*)(int32_t, char **)>(function)(count, words);
    } else {
        reinterpret_cast<void (*)()>(function)();
    }
    (void)fflush(stdout);
    (void)dup2(answers, STDOUT_FILENO);
    (void)close(answers);
}

} // namespace

Status callHandler(const Handler &handler, int count, char **words, unsigned timeoutSeconds) {
    void *function = find(handler.name);
    int done[2];
    const int pipe = openPipe(handler.pipe);
    if (function == nullptr || pipe < 0 || pipe2(done, O_CLOEXEC) < 0) {
        return kNoLibrary;
    }
    (void)fflush(stdout);
    const pid_t reader = fork();
    if (reader == 0) {
        (void)close(done[1]);
        readAnswer(pipe, done[0], handler.ending);
    }
    (void)close(done[0]);
    (void)signal(SIGALRM, giveUp);
    (void)alarm(timeoutSeconds);
    run(handler, function, count, words);
    (void)alarm(0);
    (void)close(done[1]);
    int status = 0;
    if (waitpid(reader, &status, 0) != reader || !WIFEXITED(status)) {
        status = kNoAnswer << 8;
    }
    (void)close(pipe);
    if (WEXITSTATUS(status) == kNoAnswer) {
        (void)fprintf(stderr, "frruci: %s wrote no answer\n", handler.name);
    }
    return static_cast<Status>(WEXITSTATUS(status));
}

} // namespace frruci::host
