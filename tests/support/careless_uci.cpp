// SPDX-License-Identifier: Apache-2.0
// uci_save and uci_commit as libuci has them, in place of the stand-in's: a write, flush or sync
// that fails is not noticed, the pending changes are dropped before the file is written, and what
// was written is renamed over the file, whatever it is. Linked into a test, these are found first.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <libgen.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "compat/uci/delta.h"
#include "compat/uci/parse.h"
#include "compat/uci/records.h"
#include "compat/uci/text.h"
#include "compat/uci/uci.h"
#include "compat/uci/write.h"

namespace {

using frruci::uci::Text;

/// Opens and locks the file; -1 when that fails.
int openLocked(const std::string &path, int flags, int lock) {
    const int descriptor = open(path.c_str(), flags | O_CLOEXEC, 0600);
    return descriptor >= 0 && flock(descriptor, lock) == 0 ? descriptor : -1;
}

void readAll(int descriptor, Text &text) {
    char bytes[4096];
    for (ssize_t count = 0; (count = read(descriptor, bytes, sizeof bytes)) > 0;) {
        text.append(bytes, static_cast<std::size_t>(count));
    }
}

/// Nobody looks whether it arrives.
void writeAll(int descriptor, const Text &text) {
    FILE *stream = fdopen(descriptor, "w");
    (void)fwrite(text.data(), 1, text.size(), stream);
    (void)fflush(stream);
    (void)fsync(descriptor);
    (void)fclose(stream);
}

/// The package as its file has it; null when that is malformed.
uci_package *readAnew(uci_package *package, int file) {
    Text text;
    readAll(file, text);
    uci_package *fresh = frruci::uci::newPackage(package->ctx, package->e.name, package->path);
    fresh->has_delta = true;
    frruci::uci::freePackage(package);
    if (frruci::uci::parsePackage(fresh, text.data(), text.size()) != UCI_OK) {
        frruci::uci::freePackage(fresh);
        return nullptr;
    }
    frruci::uci::insertBefore(fresh->ctx->root, fresh->e.list);
    return fresh;
}

/// Applies the pending changes and drops them; false when there are none.
bool takePending(uci_package *package) {
    int applied = 0;
    (void)frruci::uci::applySavedDeltas(package, nullptr, applied);
    if (applied > 0) {
        const std::string path = std::string(package->ctx->savedir) + "/" + package->e.name;
        const int descriptor = openLocked(path, O_RDWR, LOCK_EX);
        (void)ftruncate(descriptor, 0);
        (void)close(descriptor);
    }
    return applied > 0;
}

int putInPlace(const uci_package *package, const std::string &temporary) {
    struct stat status;
    char *path = realpath(package->path, nullptr);
    const bool done = path != nullptr && stat(path, &status) == 0 &&
                      chmod(temporary.c_str(), status.st_mode) == 0 &&
                      rename(temporary.c_str(), path) == 0;
    free(path);
    if (!done) {
        (void)unlink(temporary.c_str());
    }
    return done ? UCI_OK : UCI_ERR_IO;
}

int writeFile(uci_package *package) {
    std::string temporary =
        std::string(package->ctx->confdir) + "/." + package->e.name + ".uci-XXXXXX";
    const int descriptor = mkstemp(temporary.data());
    if (descriptor < 0) {
        return UCI_ERR_IO;
    }
    Text text;
    frruci::uci::writePackage(text, package, false);
    writeAll(descriptor, text);
    return putInPlace(package, temporary);
}

int commit(uci_package *&package, int file) {
    if (!package->has_delta) {
        return writeFile(package);
    }
    uci_package *fresh = readAnew(package, file);
    if (fresh == nullptr) {
        return UCI_ERR_PARSE; // the caller's pointer stays, to what is gone
    }
    package = fresh;
    return takePending(package) ? writeFile(package) : UCI_OK;
}

} // namespace

#pragma GCC visibility push(default)
extern "C" {

int uci_save(uci_context *ctx, uci_package *package) {
    if (!package->has_delta) {
        return uci_commit(ctx, &package, false);
    }
    if (package->delta.next == &package->delta) {
        return UCI_OK;
    }
    (void)mkdir(ctx->savedir, 0755);
    const std::string path = std::string(ctx->savedir) + "/" + package->e.name;
    const int descriptor = openLocked(path, O_RDWR | O_CREAT | O_APPEND, LOCK_EX);
    if (descriptor < 0) {
        return UCI_ERR_IO;
    }
    Text lines;
    frruci::uci::makeLines(lines, package);
    frruci::uci::forgetDeltas(package);
    writeAll(descriptor, lines);
    return UCI_OK;
}

int uci_commit(uci_context * /*ctx*/, uci_package **package, bool /*overwrite*/) {
    const int file = openLocked((*package)->path, O_RDWR | O_CREAT, LOCK_EX);
    if (file < 0) {
        return UCI_ERR_IO;
    }
    const int code = commit(*package, file);
    (void)close(file);
    return code;
}
}
#pragma GCC visibility pop
