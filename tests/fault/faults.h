/* SPDX-License-Identifier: Apache-2.0 */
/* Calls that fail when they are told to; linked into a program they take the place of the C
 * library's, also for the libraries' own calls. */
#ifndef FRRUCI_TESTS_FAULT_FAULTS_H
#define FRRUCI_TESTS_FAULT_FAULTS_H

#include <array>
#include <cerrno>
#include <iterator>

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
    kOpenInterrupted,
    kReadInterrupted,
    kWriteInterrupted,
    kFileLockInterrupted,
    kConnectInterrupted,
    kSendInterrupted,
    kReceiveInterrupted,
    kCalls
};

struct Fault {
    Call call;
    const char *name;
    int error; ///< what errno tells after it; 0: it does not fail, it does less
};

/// By Call.
inline constexpr Fault kFaults[] = {
    {kMalloc,              "malloc",              ENOMEM      },
    {kOpen,                "open",                EMFILE      },
    {kStream,              "stream",              ENOMEM      },
    {kRead,                "read",                EIO         },
    {kWrite,               "write",               ENOSPC      },
    {kShortWrite,          "short write",         0           },
    {kSync,                "fsync",               EIO         },
    {kRename,              "rename",              EIO         },
    {kTemporary,           "mkostemp",            EEXIST      },
    {kTruncate,            "ftruncate",           ENOSPC      },
    {kMode,                "fchmod",              EPERM       },
    {kFileLock,            "flock",               ENOLCK      },
    {kClose,               "close",               EIO         },
    {kSocket,              "socket",              EMFILE      },
    {kConnect,             "connect",             ECONNREFUSED},
    {kSend,                "send",                EPIPE       },
    {kShortSend,           "short send",          0           },
    {kReceive,             "recv",                ECONNRESET  },
    {kEndOfStream,         "end of stream",       0           },
    {kListing,             "popen",               EMFILE      },
    {kShell,               "system",              EAGAIN      },
    {kSpawn,               "posix_spawn",         ENOMEM      },
    {kMutex,               "mutex",               EINVAL      },
    {kOpenInterrupted,     "interrupted open",    EINTR       },
    {kReadInterrupted,     "interrupted read",    EINTR       },
    {kWriteInterrupted,    "interrupted write",   EINTR       },
    {kFileLockInterrupted, "interrupted flock",   EINTR       },
    {kConnectInterrupted,  "interrupted connect", EINTR       },
    {kSendInterrupted,     "interrupted send",    EINTR       },
    {kReceiveInterrupted,  "interrupted recv",    EINTR       },
};

static_assert(std::size(kFaults) == kCalls && [] {
    for (int call = 0; call < kCalls; ++call) {
        if (kFaults[call].call != call) {
            return false;
        }
    }
    return true;
}());

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
