/* SPDX-License-Identifier: Apache-2.0 */
/* The places where something leaves the library. Each call is the C library's own while nobody
 * observes, and goes on when a signal interrupts it; else the observer sees it, and in a rehearsal
 * stands in for it. */
#ifndef FRRUCI_COMMON_OUTSIDE_H
#define FRRUCI_COMMON_OUTSIDE_H

#include <cstdint>
#include <cstdio>
#include <sys/types.h>
#include <unistd.h>

struct sockaddr_un;

namespace frruci::outside {

/// Shows what is about to happen; true when it really shall.
bool happens(int kind, const char *place, const char *text, int fd = -1, uint64_t number = 0,
             const char *section = nullptr, const char *option = nullptr);

/// Shows how it went, and hands the result on.
int32_t happened(int32_t result);

/// In place of the result of what happens told not to do: the host's.
int32_t rehearsed();

bool isRehearsal();

// ---- sessions ----

/// A descriptor connected to address; -1 when that failed.
int openSession(const sockaddr_un &address, unsigned length);

/// Shows a session that was opened without openSession.
void opened(const char *place, int fd);

/// Sends a command with its terminating zero; negative when that failed. A daemon that went away
/// raises no SIGPIPE.
int sendCommand(int fd, const char *command);

/// As recv, errno included.
ssize_t receive(int fd, char *bytes, std::size_t room);

// ---- the shell ----

/// As system.
int run(const char *command);

/// The same for a command whose status nobody looks at: what went wrong shows in the answer file or
/// in the next exchange with the daemon.
inline void runShell(const char *command) {
    (void)run(command); // as said above
}

/// As popen for reading.
FILE *openListing(const char *command);
void closeListing(FILE *listing);

/// Opens a file in which a shell command left its answer, for reading; a link or a pipe is none.
FILE *openAnswer(const char *path);

// ---- processes and pauses ----

/// Lasts its full time.
void pauseFor(unsigned seconds, unsigned microseconds = 0);

/// Sends signal 9.
void killProcess(int32_t processId);

} // namespace frruci::outside

#endif
