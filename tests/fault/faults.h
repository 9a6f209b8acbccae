/* SPDX-License-Identifier: Apache-2.0 */
/* Calls that fail when they are told to; linked into a program they take the place of the C
 * library's, also for the libraries' own calls. */
#ifndef FRRUCI_TESTS_FAULT_FAULTS_H
#define FRRUCI_TESTS_FAULT_FAULTS_H

#include <array>

namespace fault {

enum Call {
    kMalloc,
    kOpen,
    kStream,
    kRead,
    kWrite,
    kShortWrite,
    kSync,
    kRename,
    kTemporary,
    kTruncate,
    kMode,
    kFileLock,
    kClose,
    kSocket,
    kConnect,
    kSend,
    kShortSend,
    kReceive,
    kEndOfStream,
    kListing,
    kShell,
    kSpawn,
    kMutex,
    kCalls
};

/// By Call.
inline constexpr std::array<const char *, kCalls> kNames = {
    "malloc",        "open",   "stream",   "read",        "write",      "short write",
    "fsync",         "rename", "mkostemp", "ftruncate",   "fchmod",     "flock",
    "close",         "socket", "connect",  "send",        "short send", "recv",
    "end of stream", "popen",  "system",   "posix_spawn", "mutex"};

using Counts = std::array<int, kCalls>;

/// From now on the call of that number (1 is the next) of this kind fails, all others succeed; with
/// number 0 none fails.
void arm(Call call, int number);
/// All calls succeed and are not counted any more; how many of each kind there were.
Counts disarm();

/// What popen's command prints.
void setListing(const char *(*listing)(const char *command));

} // namespace fault

#endif
