// SPDX-License-Identifier: Apache-2.0
// Commits to the UCI store that lose nothing, whatever fails.

#include "common/store_commit.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/text.h"
#include "common/uninterrupted.h"

namespace frruci::common {

namespace {

constexpr std::size_t kPathSize = 300; ///< a folder of libuci's and the longest file name
constexpr std::size_t kCopyStep = 1024;
constexpr int kMaxDescriptors = 1024;

// libuci's folders, and one on a file system in memory.
constexpr char kConfigFolder[] = "/etc/config/";
constexpr char kPendingFolder[] = "/tmp/.uci/";
char memoryFolder[] = "/tmp"; // libuci's records have no const

bool isSameFile(const struct stat &a, const struct stat &b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// -1 without a file.
off_t sizeOf(int descriptor) {
    struct stat status;
    return fstat(descriptor, &status) == 0 ? status.st_size : -1;
}

/// Opens path with these flags and waits for the lock (LOCK_SH or LOCK_EX) of the file that path
/// names when the lock is granted, not of one that was replaced meanwhile; -1 when that fails.
int openLocked(const char *path, int flags, int lock) {
    for (;;) {
        const int descriptor = open(path, flags | O_CLOEXEC);
        struct stat opened;
        struct stat named;
        if (descriptor < 0) {
            return -1;
        }
        const bool locked = uninterrupted([=] { return flock(descriptor, lock); }) == 0 &&
                            fstat(descriptor, &opened) == 0;
        if (locked && stat(path, &named) == 0 && isSameFile(opened, named)) {
            return descriptor;
        }
        (void)close(descriptor);
        if (!locked) {
            return -1;
        }
    }
}

/// Copies the rest of one file to the other; false unless all of it arrived.
bool copyRest(int from, int to) {
    char bytes[kCopyStep];
    for (;;) {
        const ssize_t count = read(from, bytes, sizeof bytes);
        if (count <= 0) {
            return count == 0;
        }
        if (write(to, bytes, static_cast<std::size_t>(count)) != count) {
            return false;
        }
    }
}

// ---- How long libuci's texts are ----

/// An apostrophe takes four characters between quotes.
std::size_t quotedLength(const char *text) {
    std::size_t length = 0;
    for (; *text != '\0'; ++text) {
        length += *text == '\'' ? 4 : 1;
    }
    return length;
}

std::size_t lengthOf(const PendingLine &line, const char *package) {
    std::size_t length = line.mark + strlen(package) + strlen(".") + strlen(line.section);
    length += line.option == nullptr ? 0 : strlen(".") + strlen(line.option);
    length += *line.value == '\0' ? 0 : strlen("=''") + quotedLength(line.value);
    return length + strlen("\n");
}

template <typename Record, typename Length>
std::size_t sumOf(const uci_list &head, const Length &length) {
    std::size_t sum = 0;
    for (const uci_list *entry = head.next; entry != &head; entry = entry->next) {
        sum += length(*reinterpret_cast<const Record *>(entry)); // begins with its list record
    }
    return sum;
}

std::size_t lengthOf(const uci_option &option) {
    const std::size_t name = quotedLength(option.e.name);
    if (option.type != UCI_TYPE_LIST) {
        return strlen("\toption  ''\n") + name + quotedLength(option.v.string);
    }
    return sumOf<uci_element>(option.v.list, [name](const uci_element &item) {
        return strlen("\tlist  ''\n") + name + quotedLength(item.name);
    });
}

std::size_t lengthOf(const uci_section &section) {
    std::size_t length = strlen("\nconfig \n") + quotedLength(section.type);
    length += section.anonymous ? 0 : strlen(" ''") + quotedLength(section.e.name);
    return length + sumOf<uci_option>(section.options,
                                      [](const uci_option &option) { return lengthOf(option); });
}

/// The package's text is not shorter than this.
std::size_t lengthOf(const uci_package &package) {
    return strlen("\n") + sumOf<uci_section>(package.sections, [](const uci_section &section) {
               return lengthOf(section);
           });
}

// ---- The file that takes the old one's place ----

/// A file in memory, gone at the end of its scope.
struct Scratch {
    char path[24] = "/tmp/.frruci-XXXXXX";
    int descriptor = mkostemp(path, O_CLOEXEC);

    Scratch() = default;
    ~Scratch() {
        if (descriptor >= 0) {
            (void)unlink(path);
            (void)close(descriptor);
        }
    }
    Scratch(const Scratch &) = delete;
    Scratch &operator=(const Scratch &) = delete;
};

/// Makes the rename last over a power cut. What cannot be synced is as libuci leaves it.
void syncFolder(const char *folder) {
    const Descriptor opened(open(folder, O_RDONLY | O_CLOEXEC));
    (void)fsync(opened.number());
}

/// A package's files while it is committed.
struct Files {
    char *target; ///< its path without symbolic links
    int old;      ///< open and locked
    int pending;  ///< the locked file of pending changes, or -1
};

/// Fills the new file beside the old one and lets it take its place.
bool replace(const Files &files, const char *beside, int text, int fresh) {
    struct stat status;
    // Who waits for the old file's lock goes on to the new one, and waits there.
    if (flock(fresh, LOCK_EX) == 0 && copyRest(text, fresh) && fstat(files.old, &status) == 0 &&
        fchmod(fresh, status.st_mode & 07777) == 0 && fsync(fresh) == 0 &&
        rename(beside, files.target) == 0) {
        return true;
    }
    (void)unlink(beside);
    return false;
}

/// Replaces the old file by text; the pending changes are part of it and are given up.
int32_t replaceAndForget(const Files &files, int text) {
    const std::size_t size = strlen(files.target) + sizeof "..frruci";
    auto *beside = static_cast<char *>(malloc(size));
    if (beside == nullptr) {
        return UCI_ERR_MEM;
    }
    char *const name = strrchr(files.target, '/') + 1;
    const auto folder = static_cast<int>(name - files.target);
    // As the old file is locked, what has this name already was left by a killed writer.
    (void)snprintf(beside, size, "%.*s.%s.frruci", folder, files.target, name);
    const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC;
    const Descriptor fresh(open(beside, flags, 0600));
    const bool replaced = replace(files, beside, text, fresh.number());
    if (replaced) {
        beside[folder] = '\0';
        syncFolder(beside);
        (void)ftruncate(files.pending, 0); // at worst they are applied once more
    }
    free(beside);
    return replaced ? UCI_OK : UCI_ERR_IO;
}

// ---- libuci's part ----

/// Newer libucis write a package of their second folder there.
template <typename Package> void useFirstFolder(Package &package) {
    if constexpr (requires { package.uses_conf2; }) {
        package.uses_conf2 = false;
    }
}

/// Lets libuci commit into the scratch file, and find no pending changes that it could drop.
int32_t commitInto(Scratch &scratch, uci_context *context, uci_package *&package,
                   bool evenUnsaved) {
    char *const path = package->path;
    char *const configFolder = context->confdir;
    char *const pendingFolder = context->savedir;
    char *const scratchPath = realpath(scratch.path, nullptr); // a copy that can be freed
    if (scratchPath == nullptr) {
        return UCI_ERR_MEM;
    }
    package->path = scratchPath; // libuci's from here
    useFirstFolder(*package);
    context->confdir = memoryFolder;
    context->savedir = scratch.path; // not a folder
    // Without pending changes, to save is to commit.
    int32_t code = package->has_delta ? UCI_OK : uci_save(context, package);
    if (code == UCI_OK || evenUnsaved) {
        code = uci_commit(context, &package, false);
    }
    context->confdir = configFolder;
    context->savedir = pendingFolder;
    free(path);
    return code;
}

int32_t commit(uci_context *context, uci_package *&package, const Files &files, bool evenUnsaved) {
    Scratch scratch;
    if (scratch.descriptor < 0 ||
        (package->has_delta && !copyRest(files.old, scratch.descriptor))) {
        return UCI_ERR_IO;
    }
    const int32_t code = commitInto(scratch, context, package, evenUnsaved);
    struct stat status;
    if (code != UCI_OK || fstat(scratch.descriptor, &status) != 0 || status.st_nlink != 0) {
        return code; // without a failure: nothing to write, the scratch file is still there
    }
    const Descriptor text(open(scratch.path, O_RDONLY | O_CLOEXEC));
    if (sizeOf(text.number()) < static_cast<off_t>(lengthOf(*package))) {
        return UCI_ERR_IO;
    }
    return replaceAndForget(files, text.number());
}

/// Saves the change and looks whether it is there. From then on nobody else changes the file of
/// pending changes, which is left open and locked.
int32_t save(uci_context *context, uci_package *package, const PendingLine &line,
             Descriptor &pending) {
    char path[kPathSize];
    format(path, "%s/%s", context->savedir, package->e.name);
    struct stat status;
    const off_t before = stat(path, &status) == 0 ? status.st_size : 0;
    const bool isChanged = package->delta.next != &package->delta;
    const int32_t code = uci_save(context, package);
    pending.take(openLocked(path, O_RDWR, LOCK_SH));
    if (code != UCI_OK || !isChanged) {
        return code;
    }
    const off_t size = sizeOf(pending.number());
    if (size >= before + static_cast<off_t>(lengthOf(line, package->e.name))) {
        return UCI_OK;
    }
    if (size > before) {
        (void)ftruncate(pending.number(), before); // half a line would spoil the next one
    }
    return UCI_ERR_IO;
}

/// The same for a package whose file is target.
int32_t saveAndCommit(uci_context *context, uci_package *&package, char *target,
                      const PendingLine &line, bool evenUnsaved) {
    const Descriptor old(openLocked(target, O_RDWR, LOCK_EX));
    Descriptor pending(-1);
    int32_t code = UCI_OK;
    if (package->has_delta) {
        code = save(context, package, line, pending);
    }
    if (code != UCI_OK && !evenUnsaved) {
        return code;
    }
    const Files files = {target, old.number(), pending.number()};
    return old.number() < 0 ? UCI_ERR_IO : commit(context, package, files, evenUnsaved);
}

/// Releases what locks this process has on the file of that name.
void releaseLocksOf(const char *path) {
    struct stat wanted;
    if (stat(path, &wanted) != 0) {
        return;
    }
    for (int descriptor = 0; descriptor < kMaxDescriptors; ++descriptor) {
        struct stat opened;
        if (fstat(descriptor, &opened) == 0 && isSameFile(opened, wanted)) {
            (void)flock(descriptor, LOCK_UN);
        }
    }
}

/// The file of a package given by name in that folder, or by path.
void makePath(char (&path)[kPathSize], const char *folder, const char *package) {
    format(path, "%s%s", *package == '/' ? "" : folder, package);
}

} // namespace

void Descriptor::take(int number) {
    if (number_ >= 0) {
        (void)close(number_); // everything that matters was synced before
    }
    number_ = number;
}

ReadLock::ReadLock(const char *package) : file_(-1) {
    char path[kPathSize];
    makePath(path, kConfigFolder, package);
    file_.take(openLocked(path, O_RDONLY | O_NONBLOCK, LOCK_SH)); // a pipe would keep it waiting
}

void releaseLocks(const char *package) {
    char path[kPathSize];
    makePath(path, kConfigFolder, package);
    releaseLocksOf(path);
    makePath(path, kPendingFolder, package);
    releaseLocksOf(path);
}

int32_t saveAndCommit(uci_context *context, uci_package *&package, const PendingLine &line,
                      bool evenUnsaved) {
    char *const target = realpath(package->path, nullptr);
    if (target == nullptr) {
        return errno == ENOMEM ? UCI_ERR_MEM : UCI_ERR_IO;
    }
    const int32_t code = saveAndCommit(context, package, target, line, evenUnsaved);
    free(target);
    return code;
}

} // namespace frruci::common
