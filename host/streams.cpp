// SPDX-License-Identifier: Apache-2.0
// Moves the standard streams out of the reach of programs that the library starts.

#include "host/streams.h"

#include <cstdarg>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace frruci::host {

FILE *in = nullptr;
FILE *out = nullptr;
FILE *err = nullptr;

namespace {

/// A stream of our own on what descriptor leads to now; one that is closed leads nowhere.
FILE *streamOn(int descriptor, const char *mode, int nowhere) {
    int own = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (own < 0) {
        own = fcntl(nowhere, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    }
    return own < 0 ? nullptr : fdopen(own, mode);
}

void complainWith(const char *format, va_list arguments) {
    (void)fflush(out); // so that the two come in order where they end up in one place
    (void)fputs("frruci: ", err);
    (void)vfprintf(err, format, arguments);
    (void)fputc('\n', err);
    (void)fflush(err);
}

} // namespace

bool takeStreams() {
    const int opened = open("/dev/null", O_RDWR | O_CLOEXEC);
    const int nowhere = fcntl(opened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (nowhere < 0) {
        return false;
    }
    in = streamOn(STDIN_FILENO, "r", nowhere);
    out = streamOn(STDOUT_FILENO, "w", nowhere);
    err = streamOn(STDERR_FILENO, "w", nowhere);
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        (void)dup2(nowhere, descriptor); // can only fail for a closed source
    }
    (void)close(nowhere);
    if (opened > STDERR_FILENO) {
        (void)close(opened);
    }
    return in != nullptr && out != nullptr && err != nullptr;
}

void complain(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    complainWith(format, arguments);
    va_end(arguments);
}

Status wrongUsage(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    complainWith(format, arguments);
    va_end(arguments);
    return kWrongUsage;
}

FILE *scratchFile() {
    const int file = memfd_create("frruci", MFD_CLOEXEC);
    return file < 0 ? nullptr : fdopen(file, "w+");
}

LibraryPrints::LibraryPrints(int descriptor) : nowhere_(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)) {
    (void)fflush(stdout);
    (void)fflush(out);
    (void)dup2(descriptor, STDOUT_FILENO);
}

LibraryPrints::~LibraryPrints() {
    (void)fflush(stdout);
    (void)dup2(nowhere_, STDOUT_FILENO);
    (void)close(nowhere_);
}

} // namespace frruci::host
