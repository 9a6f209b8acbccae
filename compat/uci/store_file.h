// SPDX-License-Identifier: Apache-2.0
// Files of the store: opened under a lock, read whole, replaced in one step.
#ifndef FRRUCI_COMPAT_UCI_STORE_FILE_H
#define FRRUCI_COMPAT_UCI_STORE_FILE_H

#include <sys/types.h>

#include "text.h"
#include "uci.h"

namespace frruci::uci {

/// An open, locked file; closing it releases the lock. Functions give UCI_ERR codes.
class LockedFile {
public:
    LockedFile() = default;
    ~LockedFile();
    LockedFile(const LockedFile &) = delete;
    LockedFile &operator=(const LockedFile &) = delete;

    /// Opens path as open does and waits for the lock (LOCK_SH or LOCK_EX). The lock holds for the
    /// file that path names when it is granted, not for one that was replaced meanwhile.
    /// UCI_ERR_NOTFOUND when there is none.
    int open(const char *path, int flags, mode_t mode, int lock);
    /// Reads the file from its start to its end.
    int read(Text &content) const;
    /// Appends all of lines, or nothing; on lines of their own, even after an unfinished one.
    int append(const Text &lines) const;
    int truncate(off_t size) const;
    bool isOpen() const { return descriptor_ >= 0; }
    mode_t mode() const;

private:
    int lockOnce(const char *path, int flags, mode_t mode, int lock, bool &current);

    int descriptor_ = -1;
};

/// Writes content beside the file that path names (symbolic links followed) and renames it over
/// that file, which is never seen half written. The caller holds the file's lock.
int replaceFile(const char *path, mode_t mode, const Text &content);

} // namespace frruci::uci

#endif
