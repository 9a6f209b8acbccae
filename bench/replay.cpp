// SPDX-License-Identifier: Apache-2.0
// Recording by taking the place of the C library's socket and file calls; playing without them.

#include "bench/replay.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr const char *kLog = "/tmp/tmp/data";

bool recording = false;
std::vector<Step> recorded;
int session = -1; // the library has one at a time
int logFile = -1;

void note(Step::Kind kind, const std::string &text) {
    if (recording) {
        recorded.push_back({kind, text});
    }
}

[[noreturn]] void fail(const char *what) {
    perror(what);
    exit(1);
}

int connectTo(const std::string &path) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    memcpy(address.sun_path, path.c_str(), path.size());
    const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    if (connect(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) < 0) {
        fail(path.c_str());
    }
    return fd;
}

void exchange(int fd, const std::string &command) {
    char reply[512];
    if (send(fd, command.c_str(), command.size() + 1, 0) < 0 ||
        recv(fd, reply, sizeof reply, 0) < 4) {
        fail(command.c_str());
    }
}

void log(const std::string &line) {
    const int fd = open(kLog, O_WRONLY | O_APPEND | O_CREAT, 0666);
    if (write(fd, line.data(), line.size()) < 0) {
        fail(kLog);
    }
    close(fd);
}

} // namespace

void startRecording() {
    recorded.clear();
    recording = true;
}

std::vector<Step> stopRecording() {
    recording = false;
    return recorded;
}

void play(const std::vector<Step> &steps) {
    int fd = -1;
    for (const Step &step : steps) {
        switch (step.kind) {
        case Step::Kind::Connect:
            fd = connectTo(step.text);
            break;
        case Step::Kind::Exchange:
            exchange(fd, step.text);
            break;
        case Step::Kind::Close:
            close(fd);
            break;
        case Step::Kind::Log:
            log(step.text);
            break;
        }
    }
}

std::size_t exchanges(const std::vector<Step> &steps) {
    std::size_t count = 0;
    for (const Step &step : steps) {
        count += step.kind == Step::Kind::Exchange ? 1 : 0;
    }
    return count;
}

} // namespace bench

// These take the C library's place, for the library's calls too; each does what it records.
#pragma GCC visibility push(default)
extern "C" {

int connect(int fd, const sockaddr *address, socklen_t size) {
    const long result = syscall(SYS_connect, fd, address, size);
    if (result == 0 && address->sa_family == AF_UNIX) {
        bench::session = fd;
        bench::note(bench::Step::Kind::Connect,
                    reinterpret_cast<const sockaddr_un *>(address)->sun_path);
    }
    return static_cast<int>(result);
}

ssize_t send(int fd, const void *bytes, size_t size, int flags) {
    if (fd == bench::session) {
        bench::note(bench::Step::Kind::Exchange, static_cast<const char *>(bytes));
    }
    return syscall(SYS_sendto, fd, bytes, size, flags, nullptr, 0);
}

int open(const char *path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(arguments, int) : 0;
    va_end(arguments);
    const long fd = syscall(SYS_openat, AT_FDCWD, path, flags, mode);
    if (strcmp(path, bench::kLog) == 0) {
        bench::logFile = static_cast<int>(fd);
    }
    return static_cast<int>(fd);
}

ssize_t write(int fd, const void *bytes, size_t size) {
    if (fd == bench::logFile) {
        bench::note(bench::Step::Kind::Log, {static_cast<const char *>(bytes), size});
    }
    return syscall(SYS_write, fd, bytes, size);
}

int close(int fd) {
    if (fd == bench::session) {
        bench::note(bench::Step::Kind::Close, "");
        bench::session = -1;
    }
    if (fd == bench::logFile) {
        bench::logFile = -1;
    }
    return static_cast<int>(syscall(SYS_close, fd));
}

// The mandated pauses are not what is measured.
unsigned int sleep(unsigned int) {
    return 0;
}
int usleep(useconds_t) {
    return 0;
}
}
#pragma GCC visibility pop
