// SPDX-License-Identifier: Apache-2.0
// Files of the store: opened under a lock, read whole, replaced in one step.

#include "store_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace frruci::uci {

namespace {

/// So often may a file be replaced between its opening and its lock before the open fails.
constexpr int kMaxReplacements = 1000;
constexpr std::size_t kReadStep = 16384;

int lockWaiting(int descriptor, int lock) {
    int result = 0;
    do {
        result = flock(descriptor, lock);
    } while (result != 0 && errno == EINTR);
    return result;
}

/// True when path still names the open file.
bool isCurrent(int descriptor, const char *path) {
    struct stat opened;
    struct stat named;
    return fstat(descriptor, &opened) == 0 && stat(path, &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

int writeAll(int descriptor, const char *bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = write(descriptor, bytes, count);
        if (written < 0 && errno != EINTR) {
            return UCI_ERR_IO;
        }
        if (written > 0) {
            bytes += written;
            count -= static_cast<std::size_t>(written);
        }
    }
    return UCI_OK;
}

/// Fills the temporary file and gives it its final mode, all of it on the disk.
int fill(int descriptor, mode_t mode, const Text &content) {
    if (writeAll(descriptor, content.data(), content.size()) != UCI_OK ||
        fchmod(descriptor, mode) != 0 || fsync(descriptor) != 0) {
        return UCI_ERR_IO;
    }
    return UCI_OK;
}

/// Makes the rename last over a power cut, where the file system lets folders be synced.
void syncFolder(const char *folder) {
    const int descriptor = ::open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        (void)fsync(descriptor);
        (void)close(descriptor);
    }
}

/// The part of path up to and including its last slash.
std::size_t folderLength(const char *path) {
    const char *slash = strrchr(path, '/');
    return slash == nullptr ? 0 : static_cast<std::size_t>(slash - path) + 1;
}

/// Removes the temporary files of writers that were killed. The file's lock is held, so that no
/// other writer has one now.
void removeLeftovers(const char *folder, const char *name) {
    DIR *const entries = opendir(folder);
    if (entries == nullptr) {
        return;
    }
    const std::size_t length = strlen(name);
    while (const dirent *entry = readdir(entries)) {
        const char *at = entry->d_name;
        if (at[0] == '.' && strncmp(at + 1, name, length) == 0 &&
            strncmp(at + 1 + length, ".uci-", 5) == 0 && strlen(at + 1 + length) == 5 + 6) {
            (void)unlinkat(dirfd(entries), at, 0); // a later commit tries again
        }
    }
    (void)closedir(entries);
}

int replaceResolved(const char *target, const char *name, mode_t mode, const Text &content) {
    Text folder;
    folder.append(target, folderLength(target));
    char *temporary = nullptr;
    if (folder.failed() || asprintf(&temporary, "%s.%s.uci-XXXXXX", folder.data(), name) < 0) {
        return UCI_ERR_MEM;
    }
    removeLeftovers(folder.data(), name);
    int code = UCI_ERR_IO;
    const int descriptor = mkostemp(temporary, O_CLOEXEC);
    if (descriptor >= 0) {
        code = fill(descriptor, mode, content);
        if (close(descriptor) != 0 || (code == UCI_OK && rename(temporary, target) != 0)) {
            code = UCI_ERR_IO;
        }
        if (code == UCI_OK) {
            syncFolder(folder.data());
        } else {
            (void)unlink(temporary); // what is left of a failed write is of no use
        }
    }
    free(temporary);
    return code;
}

} // namespace

LockedFile::~LockedFile() {
    if (descriptor_ >= 0) {
        (void)close(descriptor_); // everything that matters was written and synced before
    }
}

int LockedFile::lockOnce(const char *path, int flags, mode_t mode, int lock, bool &current) {
    descriptor_ = ::open(path, flags | O_CLOEXEC, mode);
    if (descriptor_ < 0) {
        return errno == ENOENT ? UCI_ERR_NOTFOUND : UCI_ERR_IO;
    }
    if (lockWaiting(descriptor_, lock) != 0) {
        return UCI_ERR_IO;
    }
    current = isCurrent(descriptor_, path);
    if (!current) {
        (void)close(descriptor_);
        descriptor_ = -1;
    }
    return UCI_OK;
}

int LockedFile::open(const char *path, int flags, mode_t mode, int lock) {
    bool current = false;
    for (int tries = 0; tries <= kMaxReplacements && !current; ++tries) {
        const int code = lockOnce(path, flags, mode, lock, current);
        if (code != UCI_OK) {
            return code;
        }
    }
    return current ? UCI_OK : UCI_ERR_IO;
}

int LockedFile::read(Text &content) const {
    off_t offset = 0;
    for (;;) {
        char *place = content.extend(kReadStep);
        if (place == nullptr) {
            return UCI_ERR_MEM;
        }
        const ssize_t count = pread(descriptor_, place, kReadStep, offset);
        if (count == 0) {
            return UCI_OK;
        }
        if (count < 0 && errno != EINTR) {
            return UCI_ERR_IO;
        }
        if (count > 0) {
            content.grow(static_cast<std::size_t>(count));
            offset += count;
        }
    }
}

int LockedFile::append(const Text &lines) const {
    const off_t before = lseek(descriptor_, 0, SEEK_END);
    if (before < 0) {
        return UCI_ERR_IO;
    }
    char last = '\n';
    if (before > 0 && pread(descriptor_, &last, 1, before - 1) != 1) {
        return UCI_ERR_IO;
    }
    // A writer that was killed may have left half a line: it must not swallow the next one.
    if ((last != '\n' && writeAll(descriptor_, "\n", 1) != UCI_OK) ||
        writeAll(descriptor_, lines.data(), lines.size()) != UCI_OK) {
        (void)ftruncate(descriptor_, before); // failing already
        return UCI_ERR_IO;
    }
    return UCI_OK;
}

int LockedFile::truncate(off_t size) const {
    return ftruncate(descriptor_, size) == 0 ? UCI_OK : UCI_ERR_IO;
}

mode_t LockedFile::mode() const {
    struct stat status;
    return fstat(descriptor_, &status) == 0 ? status.st_mode & 07777 : 0600;
}

int replaceFile(const char *path, mode_t mode, const Text &content) {
    if (content.failed()) {
        return UCI_ERR_MEM;
    }
    char *target = realpath(path, nullptr);
    if (target == nullptr) {
        return errno == ENOMEM ? UCI_ERR_MEM : UCI_ERR_IO;
    }
    const int code = replaceResolved(target, path + folderLength(path), mode, content);
    free(target);
    return code;
}

} // namespace frruci::uci
