// SPDX-License-Identifier: Apache-2.0
// Stand-ins for the shell, the pauses and kill: linked into a test program they take the place of
// the C library's, also for the library's own calls. They record, and do only what a rule says.

#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <spawn.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/support/world.h"

namespace stage {

namespace {

[[gnu::format(printf, 1, 2)]] void record(const char *format, ...) {
    char text[64];
    va_list arguments;
    va_start(arguments, format);
    (void)vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (world == nullptr) {
        return;
    }
    const WorldLock lock;
    pump();
    newEvent(Event::Kind::Text, 0).text.append(text);
}

void recordShell(const char *function, const char *command) {
    const WorldLock lock;
    pump();
    Buffer &text = newEvent(Event::Kind::Text, 0).text;
    text.append(function);
    text.append(": ");
    text.appendVisible(command);
}

Shell takeRule(const char *command) {
    const WorldLock lock;
    for (int i = world->shellCount - 1; i >= 0; --i) {
        ShellRule &rule = world->shells[i];
        if (rule.shell.times != 0 && strstr(command, rule.containing) != nullptr) {
            if (rule.shell.times > 0) {
                --rule.shell.times;
            }
            return rule.shell;
        }
    }
    return {};
}

void insistOnWorld(const char *function) {
    if (world == nullptr) {
        (void)fprintf(stderr, "stage: %s called without a stage\n", function);
        abort();
    }
}

} // namespace

void pass(int64_t microseconds) {
    if (world != nullptr) {
        const WorldLock lock;
        world->pausedMicroseconds += microseconds;
    }
}

void useStandIns() {}

} // namespace stage

// Default visibility, so that the library finds these before the C library's.
#pragma GCC visibility push(default)
extern "C" {

int system(const char *command) {
    stage::insistOnWorld("system");
    stage::recordShell("system", command);
    const stage::Shell shell = stage::takeRule(command);
    if (shell.writeTo != nullptr) {
        stage::writeFile(shell.writeTo, shell.text);
    }
    return shell.status;
}

FILE *popen(const char *command, const char *) {
    stage::insistOnWorld("popen");
    stage::recordShell("popen", command);
    const stage::Shell shell = stage::takeRule(command);
    if (shell.fails) {
        return nullptr;
    }
    FILE *stream = tmpfile();
    if (stream == nullptr || fputs(shell.text, stream) < 0 || fseek(stream, 0, SEEK_SET) != 0) {
        abort();
    }
    return stream;
}

int pclose(FILE *stream) {
    return fclose(stream);
}

unsigned int sleep(unsigned int seconds) {
    stage::record("sleep: %u", seconds);
    stage::pass(seconds * 1000000LL);
    return 0;
}

int usleep(useconds_t microseconds) {
    stage::record("usleep: %u", static_cast<unsigned>(microseconds));
    stage::pass(microseconds);
    return 0;
}

int clock_gettime(clockid_t clock, timespec *time) noexcept(noexcept(::kill(0, 0))) {
    const long result = syscall(SYS_clock_gettime, clock, time);
    if (clock == CLOCK_MONOTONIC && stage::world != nullptr) {
        const int64_t microseconds = time->tv_nsec / 1000 + stage::world->pausedMicroseconds;
        time->tv_sec += microseconds / 1000000;
        time->tv_nsec = microseconds % 1000000 * 1000;
    }
    return static_cast<int>(result);
}

/// Records the shell's command, and starts a process that only has its status.
int posix_spawn(pid_t *child, const char *, const posix_spawn_file_actions_t *,
                const posix_spawnattr_t *, char *const words[], char *const[]) {
    stage::insistOnWorld("posix_spawn");
    stage::recordShell("silently", words[2]);
    const stage::Shell shell = stage::takeRule(words[2]);
    *child = fork();
    if (*child == 0) {
        _exit(shell.status >> 8);
    }
    return 0;
}

int kill(pid_t pid, int signal) noexcept(noexcept(::kill(0, 0))) {
    stage::record("kill: %d %d", static_cast<int>(pid), signal);
    return 0;
}
}
#pragma GCC visibility pop
