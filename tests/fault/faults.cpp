// SPDX-License-Identifier: Apache-2.0
// Calls that fail when they are told to, and stand-ins for the shell, the pauses and kill.

#include "tests/fault/faults.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <optional>
#include <pthread.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/no_memory.h"

namespace fault {

namespace {

constexpr int kNever = INT_MAX;

bool armed = false;
Call failing = kCalls;
int failingNumber = 0;
Counts counts = {};
std::optional<stage::NoMemory> memory;
const char *(*listingOf)(const char *command) = nullptr;

/// Counts a call; true when it is the one that fails.
bool fails(Call call) {
    if (!armed) {
        return false;
    }
    ++counts[call];
    if (call != failing || counts[call] != failingNumber) {
        return false;
    }
    errno = kFaults[call].error;
    return true;
}

} // namespace

void arm(Call call, int number) {
    counts = {};
    failing = call;
    failingNumber = number;
    armed = true;
    memory.emplace(call == kMalloc && number > 0 ? number : kNever);
}

Counts disarm() {
    const int left = stage::NoMemory::left();
    memory.reset();
    armed = false;
    const bool failedOne = failing == kMalloc && failingNumber > 0;
    counts[kMalloc] = failedOne ? failingNumber - left : kNever - 1 - left;
    return counts;
}

void setListing(const char *(*listing)(const char *command)) {
    listingOf = listing;
}

} // namespace fault

namespace {

using namespace fault;

template <class Function> Function *next(const char *name, Function * /*type*/) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

/// The C library's own.
struct Real {
    decltype(&::read) read = next("read", &::read);
    decltype(&::write) write = next("write", &::write);
    decltype(&::fsync) fsync = next("fsync", &::fsync);
    decltype(&::rename) rename = next("rename", &::rename);
    decltype(&::mkostemp) mkostemp = next("mkostemp", &::mkostemp);
    decltype(&::mkstemp) mkstemp = next("mkstemp", &::mkstemp);
    decltype(&::ftruncate) ftruncate = next("ftruncate", &::ftruncate);
    decltype(&::fchmod) fchmod = next("fchmod", &::fchmod);
    decltype(&::flock) flock = next("flock", &::flock);
    decltype(&::close) close = next("close", &::close);
    decltype(&::socket) socket = next("socket", &::socket);
    decltype(&::connect) connect = next("connect", &::connect);
    decltype(&::send) send = next("send", &::send);
    decltype(&::recv) recv = next("recv", &::recv);
    decltype(&::fopen) fopen = next("fopen", &::fopen);
    decltype(&::fdopen) fdopen = next("fdopen", &::fdopen);
    decltype(&::open) open = next("open", &::open);
    decltype(&::pthread_mutex_lock) lock = next("pthread_mutex_lock", &::pthread_mutex_lock);
};

/// The first call looks up all of them, long before memory may be out.
const Real &real() {
    static const Real found;
    return found;
}

std::size_t half(std::size_t count) {
    return count > 1 ? count / 2 : count;
}

} // namespace

// Default visibility, so that the libraries find these before the C library's.
#pragma GCC visibility push(default)
extern "C" {

int open(const char *path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return fails(kOpen) || fails(kOpenInterrupted) ? -1 : real().open(path, flags, mode);
}
FILE *fopen(const char *path, const char *mode) {
    return fails(kStream) ? nullptr : real().fopen(path, mode);
}
FILE *fdopen(int descriptor, const char *mode) noexcept(noexcept(::fdopen(0, ""))) {
    return fails(kStream) ? nullptr : real().fdopen(descriptor, mode);
}
ssize_t read(int descriptor, void *bytes, size_t count) {
    return fails(kRead) || fails(kReadInterrupted) ? -1 : real().read(descriptor, bytes, count);
}
ssize_t write(int descriptor, const void *bytes, size_t count) {
    if (fails(kWrite) || fails(kWriteInterrupted)) {
        return -1;
    }
    return real().write(descriptor, bytes, fails(kShortWrite) ? half(count) : count);
}
int fsync(int descriptor) {
    return fails(kSync) ? -1 : real().fsync(descriptor);
}
int rename(const char *from, const char *to) noexcept(noexcept(::rename("", ""))) {
    return fails(kRename) ? -1 : real().rename(from, to);
}
int mkostemp(char *path, int flags) {
    return fails(kTemporary) ? -1 : real().mkostemp(path, flags);
}
int mkstemp(char *path) {
    return fails(kTemporary) ? -1 : real().mkstemp(path);
}
int ftruncate(int descriptor, off_t size) noexcept(noexcept(::ftruncate(0, 0))) {
    return fails(kTruncate) ? -1 : real().ftruncate(descriptor, size);
}
int fchmod(int descriptor, mode_t mode) noexcept(noexcept(::fchmod(0, 0))) {
    return fails(kMode) ? -1 : real().fchmod(descriptor, mode);
}
int flock(int descriptor, int operation) noexcept(noexcept(::flock(0, 0))) {
    return fails(kFileLock) || fails(kFileLockInterrupted) ? -1
                                                           : real().flock(descriptor, operation);
}
/// One that fails has closed all the same, as on Linux.
int close(int descriptor) {
    const bool failed = fails(kClose);
    const int result = real().close(descriptor);
    if (failed) {
        errno = EIO;
    }
    return failed ? -1 : result;
}
int socket(int domain, int type, int protocol) noexcept(noexcept(::socket(0, 0, 0))) {
    return fails(kSocket) ? -1 : real().socket(domain, type, protocol);
}
int connect(int descriptor, const sockaddr *address, socklen_t length) {
    return fails(kConnect) || fails(kConnectInterrupted)
               ? -1
               : real().connect(descriptor, address, length);
}
ssize_t send(int descriptor, const void *bytes, size_t count, int flags) {
    if (fails(kSend) || fails(kSendInterrupted)) {
        return -1;
    }
    return real().send(descriptor, bytes, fails(kShortSend) ? half(count) : count, flags);
}
ssize_t recv(int descriptor, void *bytes, size_t count, int flags) {
    if (fails(kReceive) || fails(kReceiveInterrupted)) {
        return -1;
    }
    return fails(kEndOfStream) ? 0 : real().recv(descriptor, bytes, count, flags);
}
int pthread_mutex_lock(pthread_mutex_t *mutex) noexcept(noexcept(::kill(0, 0))) {
    return fails(kMutex) ? EINVAL : real().lock(mutex);
}

int system(const char * /*command*/) {
    return fails(kShell) ? -1 : 0;
}
FILE *popen(const char *command, const char * /*mode*/) {
    if (fails(kListing)) {
        return nullptr;
    }
    const char *text = listingOf(command);
    const int file = memfd_create("listing", MFD_CLOEXEC);
    if (file < 0 || real().write(file, text, strlen(text)) < 0 || lseek(file, 0, SEEK_SET) != 0) {
        abort();
    }
    FILE *stream = real().fdopen(file, "r");
    if (stream == nullptr) {
        (void)real().close(file); // no memory
    }
    return stream;
}
int pclose(FILE *stream) {
    return fclose(stream);
}
int posix_spawn(pid_t *child, const char *, const posix_spawn_file_actions_t *,
                const posix_spawnattr_t *, char *const[], char *const[]) {
    if (fails(kSpawn)) {
        return ENOMEM;
    }
    *child = fork();
    if (*child == 0) {
        _exit(0);
    }
    return 0;
}

unsigned int sleep(unsigned int /*seconds*/) {
    return 0;
}
int usleep(useconds_t /*microseconds*/) {
    return 0;
}
int kill(pid_t /*pid*/, int /*signal*/) noexcept(noexcept(::kill(0, 0))) {
    return 0;
}
}
#pragma GCC visibility pop
