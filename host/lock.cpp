// SPDX-License-Identifier: Apache-2.0
// What processes of this program share on the disk.

#include "host/lock.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/streams.h"
#include "host/timeout.h"
#include "host/traffic.h"

namespace frruci::host {

namespace {

constexpr const char *kLock = "/tmp/tmp/frruci.lock";
constexpr const char *kLog = "/tmp/tmp/data";
constexpr const char *kOldLog = "/tmp/tmp/data.1";
constexpr off_t kLongestLog = 512L * 1024;
constexpr mode_t kFolderMode = 0755;

bool ownFolder(int folder) {
    struct stat found = {};
    if (fstat(folder, &found) != 0) {
        return false;
    }
    if (geteuid() != 0) {
        return true;
    }
    return (found.st_uid == 0 || fchown(folder, 0, 0) == 0) &&
           ((found.st_mode & 07777) == kFolderMode || fchmod(folder, kFolderMode) == 0);
}

} // namespace

// Two processes that find the log too long move it once: the lock is on the file itself.
void moveLongLog() {
    const int log = open(kLog, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (log < 0) {
        return;
    }
    struct stat mine = {};
    struct stat named = {};
    if (flock(log, LOCK_EX | LOCK_NB) == 0 && fstat(log, &mine) == 0 && S_ISREG(mine.st_mode) &&
        mine.st_size > kLongestLog && lstat(kLog, &named) == 0 && named.st_ino == mine.st_ino &&
        rename(kLog, kOldLog) != 0) {
        complain("%s: %s", kOldLog, strerror(errno));
    }
    (void)close(log); // only looked at
}

bool readyFolder() {
    (void)mkdir(kFolder, kFolderMode); // usually there
    const int folder = open(kFolder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    const bool usable = folder >= 0 && ownFolder(folder);
    if (!usable) {
        complain("%s cannot be used: %s", kFolder, strerror(errno));
    }
    if (folder >= 0) {
        (void)close(folder); // only looked at
    }
    return usable;
}

Lock::Lock() : fd_(-1) {
    if (!readyFolder()) {
        return;
    }
    fd_ = open(kLock, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd_ < 0) {
        complain("%s: %s", kLock, strerror(errno));
        return;
    }
    setActivity("another request", "did not end");
    const Waiting waiting(Waiting::kForOthers);
    while (flock(fd_, LOCK_EX) != 0) {
        if (errno != EINTR) {
            complain("%s: %s", kLock, strerror(errno));
            (void)close(fd_);
            fd_ = -1;
            return;
        }
    }
}

Lock::~Lock() {
    if (fd_ >= 0) {
        (void)close(fd_); // ends the lock
    }
}

} // namespace frruci::host
