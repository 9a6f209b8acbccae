// SPDX-License-Identifier: Apache-2.0
// Deltas recorded in a package and saved in the package's delta file.

#include "delta.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "delta_line.h"
#include "records.h"

namespace frruci::uci {

namespace {

constexpr mode_t kFolderMode = 0700; ///< without a configuration folder to copy it from
constexpr mode_t kFileMode = 0600;   ///< without a configuration file to copy it from

/// A recorded change; the element's name is the section's.
struct Delta {
    uci_element e;
    Change change;
    char *option; ///< may be null
    char *value;  ///< may be null
};

/// True when text was null or its copy was made.
bool copyText(const char *text, char *&copy) {
    copy = text == nullptr ? nullptr : strdup(text);
    return text == nullptr || copy != nullptr;
}

void freeDelta(Delta *delta) {
    free(delta->e.name);
    free(delta->option);
    free(delta->value);
    free(delta);
}

mode_t modeOf(const char *path, mode_t otherwise) {
    struct stat status;
    return stat(path, &status) == 0 ? status.st_mode & 07777 : otherwise;
}

/// Makes the folder of the delta files where it is missing.
int makeFolder(const uci_context *context) {
    struct stat status;
    const mode_t mode = modeOf(context->confdir, kFolderMode);
    if (mkdir(context->savedir, mode) != 0 && errno != EEXIST) {
        return UCI_ERR_IO;
    }
    return stat(context->savedir, &status) == 0 && S_ISDIR(status.st_mode) ? UCI_OK : UCI_ERR_IO;
}

void makePath(Text &path, const char *folder, const uci_package *package) {
    path.append(folder);
    path.append('/');
    path.append(package->e.name);
}

int appendToFile(const uci_package *package, const Text &lines) {
    Text path;
    makePath(path, package->ctx->savedir, package);
    if (path.failed() || lines.failed()) {
        return UCI_ERR_MEM;
    }
    LockedFile file;
    const mode_t mode = modeOf(package->path, kFileMode);
    const int code = file.open(path.data(), O_RDWR | O_APPEND | O_CREAT, mode, LOCK_EX);
    if (code != UCI_OK) {
        return UCI_ERR_IO;
    }
    return file.append(lines);
}

/// Applies the deltas of one folder; none when there is no file.
int applyFile(uci_package *package, const char *folder, LockedFile &file, int flags, int lock,
              int &applied) {
    Text path;
    makePath(path, folder, package);
    if (path.failed()) {
        return UCI_ERR_MEM;
    }
    int code = file.open(path.data(), flags, kFileMode, lock);
    if (code != UCI_OK) {
        return code == UCI_ERR_NOTFOUND ? UCI_OK : code;
    }
    Text lines;
    code = file.read(lines);
    return code == UCI_OK ? applyDeltas(package, lines.data(), lines.size(), applied) : code;
}

} // namespace

void makeLines(Text &lines, uci_package *package) {
    const uci_list *const deltas = &package->delta;
    for (uci_list *entry = deltas->next; entry != deltas; entry = entry->next) {
        const auto *delta = reinterpret_cast<Delta *>(entry);
        appendDeltaLine(
            lines, {delta->change, package->e.name, delta->e.name, delta->option, delta->value});
    }
}

int recordDelta(uci_package *package, Change change, const char *section, const char *option,
                const char *value) {
    auto *delta = static_cast<Delta *>(calloc(1, sizeof(Delta)));
    if (delta == nullptr) {
        return UCI_ERR_MEM;
    }
    delta->e.type = UCI_TYPE_DELTA;
    delta->change = change;
    if (!copyText(section, delta->e.name) || !copyText(option, delta->option) ||
        !copyText(value, delta->value)) {
        freeDelta(delta);
        return UCI_ERR_MEM;
    }
    insertBefore(package->delta, delta->e.list);
    return UCI_OK;
}

void forgetDeltas(uci_package *package) {
    drain(package->delta, [](uci_list *entry) { freeDelta(reinterpret_cast<Delta *>(entry)); });
}

int saveDeltas(uci_package *package) {
    if (isEmpty(package->delta)) {
        return UCI_OK;
    }
    Text lines;
    makeLines(lines, package);
    int code = makeFolder(package->ctx);
    if (code == UCI_OK) {
        code = appendToFile(package, lines);
    }
    if (code == UCI_OK) {
        forgetDeltas(package);
    }
    return code;
}

int applySavedDeltas(uci_package *package, LockedFile *dropped, int &applied) {
    const uci_list &folders = package->ctx->delta_path;
    applied = 0;
    for (uci_list *entry = folders.next; entry != &folders; entry = entry->next) {
        const char *folder = elementOf(entry)->name;
        const bool drops = dropped != nullptr && strcmp(folder, package->ctx->savedir) == 0;
        LockedFile read;
        const int code = drops ? applyFile(package, folder, *dropped, O_RDWR, LOCK_EX, applied)
                               : applyFile(package, folder, read, O_RDONLY, LOCK_SH, applied);
        if (code != UCI_OK) {
            return code;
        }
    }
    return UCI_OK;
}

} // namespace frruci::uci
