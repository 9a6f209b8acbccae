/* SPDX-License-Identifier: Apache-2.0 */
/* Calls inside a host whose signals interrupt them: a call that was interrupted has no result yet
 * and goes on before anybody looks at one. And opening a file without waiting. */
#ifndef FRRUCI_COMMON_UNINTERRUPTED_H
#define FRRUCI_COMMON_UNINTERRUPTED_H

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <sys/types.h>

namespace frruci::common {

/// Makes a call again as long as a signal interrupts it. Not for close: an interrupted one has
/// closed its descriptor.
template <typename Call> auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// Sends all bytes; false on an error. A peer that went away raises no SIGPIPE.
bool sendAll(int socket, const char *bytes, std::size_t count);

/// Writes all bytes, no bytes in one call too; false on an error.
bool writeAll(int fd, const char *bytes, std::size_t count);

/// As sleep, or as usleep where seconds is 0, for the full time.
void pauseFor(unsigned seconds, unsigned microseconds);

/// Opens a plain file in a folder that everybody may write to, for its owner alone where it makes
/// it. A link or a pipe in its place fails; none is followed, and none is waited at.
int openPlainFile(const char *path, int flags);

/// The start of a line, as much of it as fits, its newline included. False at the end.
bool readStart(FILE *from, char *line, std::size_t size);

/// One line, its newline included; what does not fit is dropped, so that it never counts as a line
/// of its own. False at the end.
bool readLine(FILE *from, char *line, std::size_t size);

template <std::size_t N> bool readLine(FILE *from, char (&line)[N]) {
    return readLine(from, line, N);
}

} // namespace frruci::common

#endif
