// SPDX-License-Identifier: Apache-2.0
// The nine functions of the interface.

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "change.h"
#include "delta.h"
#include "parse.h"
#include "records.h"
#include "store_file.h"
#include "uci.h"
#include "write.h"

namespace {

using namespace frruci::uci;

char configFolder[] = "/etc/config";
char volatileFolder[] = "/var/run/uci";
char deltaFolder[] = "/tmp/.uci";

constexpr mode_t kNewFileMode = 0600;

int keep(uci_context *context, int code) {
    if (context != nullptr) {
        context->err = code;
    }
    return code;
}

bool isPath(const char *name) {
    return name[0] == '/' || (name[0] == '.' && name[1] == '/');
}

bool isRegularFile(const char *path) {
    struct stat status;
    return stat(path, &status) == 0 && S_ISREG(status.st_mode);
}

void joinPath(Text &path, const char *folder, const char *name) {
    path.clear();
    path.append(folder);
    path.append('/');
    path.append(name);
}

/// Where a package is read from, and how it is treated.
struct Source {
    Text path;
    const char *name;
    bool hasDelta;
    bool inVolatileFolder;
};

int findSource(const uci_context *context, const char *name, Source &source) {
    source.name = name;
    if (isPath(name)) {
        source.name = strrchr(name, '/') + 1;
        source.path.append(name);
    } else if (name[0] == '.') {
        return UCI_ERR_NOTFOUND;
    } else if (!isWord(name)) {
        return UCI_ERR_INVAL;
    } else {
        source.hasDelta = true;
        joinPath(source.path, context->conf2dir, name);
        source.inVolatileFolder = isRegularFile(source.path.data());
        if (!source.inVolatileFolder) {
            joinPath(source.path, context->confdir, name);
        }
    }
    if (source.path.failed()) {
        return UCI_ERR_MEM;
    }
    return isRegularFile(source.path.data()) ? UCI_OK : UCI_ERR_NOTFOUND;
}

/// Reads the open file into a new package without its deltas; package stays as it is on failure.
int readFile(uci_context *context, const Source &source, const LockedFile &file,
             uci_package *&package) {
    Text content;
    int code = file.read(content);
    if (code != UCI_OK) {
        return code;
    }
    uci_package *made = newPackage(context, source.name, source.path.data());
    if (made == nullptr) {
        return UCI_ERR_MEM;
    }
    made->has_delta = source.hasDelta;
    made->uses_conf2 = source.inVolatileFolder;
    code = parsePackage(made, content.data(), content.size());
    if (code != UCI_OK) {
        freePackage(made);
        return code;
    }
    insertBefore(context->root, made->e.list);
    package = made;
    return UCI_OK;
}

/// Applies the saved deltas in memory; on failure the package is gone.
int showPending(uci_package *&package) {
    int applied = 0;
    const int code = applySavedDeltas(package, nullptr, applied);
    if (code == UCI_ERR_MEM) {
        freePackage(package);
        package = nullptr;
        return code;
    }
    return UCI_OK; // pending changes that cannot be read do not hide what is committed
}

int load(uci_context *context, const char *name, uci_package *&package) {
    Source source = {};
    int code = findSource(context, name, source);
    if (code != UCI_OK) {
        return code;
    }
    LockedFile file;
    if (file.open(source.path.data(), O_RDONLY, 0, LOCK_SH) != UCI_OK) {
        return UCI_ERR_IO;
    }
    if (findFirst(context->root, source.name) != nullptr) {
        return UCI_ERR_DUPLICATE;
    }
    code = readFile(context, source, file, package);
    return code == UCI_OK && package->has_delta ? showPending(package) : code;
}

int writeFile(uci_package *package, const LockedFile &file) {
    Text content;
    writePackage(content, package, (package->ctx->flags & UCI_FLAG_EXPORT_NAME) != 0);
    return replaceFile(package->path, file.mode(), content);
}

/// Reads the package anew from its locked file; null when that fails.
int reload(uci_package *&package, const LockedFile &file) {
    uci_context *context = package->ctx;
    Text name;
    name.append(package->e.name);
    Source source = {};
    source.path.append(package->path);
    source.name = name.data();
    source.hasDelta = package->has_delta;
    source.inVolatileFolder = package->uses_conf2;
    freePackage(package);
    package = nullptr;
    if (name.failed() || source.path.failed()) {
        return UCI_ERR_MEM;
    }
    return readFile(context, source, file, package);
}

/// Writes what the deltas make of the locked file. They are given up only when it is in place: a
/// commit that is cut short must not lose what other writers were told is saved.
int mergeDeltas(uci_package *package, const LockedFile &file) {
    LockedFile deltas;
    int applied = 0;
    int code = applySavedDeltas(package, &deltas, applied);
    if (code != UCI_OK || applied == 0) {
        return code;
    }
    code = writeFile(package, file);
    return code == UCI_OK && deltas.isOpen() ? deltas.truncate(0) : code;
}

int commit(uci_package *&package, bool overwrite) {
    LockedFile file;
    if (file.open(package->path, O_RDWR | O_CREAT, kNewFileMode, LOCK_EX) != UCI_OK) {
        return UCI_ERR_IO;
    }
    if (!package->has_delta) {
        return writeFile(package, file);
    }
    int code = saveDeltas(package);
    if (code == UCI_OK && !overwrite) {
        code = reload(package, file);
    }
    return code == UCI_OK ? mergeDeltas(package, file) : code;
}

/// Fills the records that the names stand for, loading the package where it must be.
int lookUp(uci_context *context, uci_ptr &pointer) {
    if (pointer.p == nullptr) {
        if (pointer.package == nullptr) {
            return UCI_ERR_INVAL;
        }
        uci_element *known = findFirst(context->root, pointer.package);
        pointer.p = known == nullptr ? nullptr : packageOf(known);
    }
    const int code = pointer.p != nullptr ? UCI_OK : load(context, pointer.package, pointer.p);
    if (code != UCI_OK) {
        return code;
    }
    pointer.last = &pointer.p->e;
    bool complete = true;
    if (pointer.section != nullptr) {
        uci_element *found = findFirst(pointer.p->sections, pointer.section);
        pointer.s = found == nullptr ? nullptr : sectionOf(found);
        pointer.last = found == nullptr ? pointer.last : found;
        complete = found != nullptr;
    }
    if (pointer.option != nullptr) {
        uci_element *found =
            pointer.s == nullptr ? nullptr : findFirst(pointer.s->options, pointer.option);
        pointer.o = found == nullptr ? nullptr : optionOf(found);
        pointer.last = found == nullptr ? pointer.last : found;
        complete = found != nullptr;
    }
    const int flags = pointer.flags | UCI_LOOKUP_DONE | (complete ? UCI_LOOKUP_COMPLETE : 0);
    pointer.flags = static_cast<uci_lookup_flags>(flags);
    return UCI_OK;
}

/// Changes what was looked up and records the delta.
int set(uci_ptr &pointer) {
    if (pointer.value == nullptr || (pointer.section == nullptr && pointer.s == nullptr)) {
        return UCI_ERR_INVAL;
    }
    Text sectionName; // a removal frees the record's own
    sectionName.append(pointer.section != nullptr ? pointer.section : pointer.s->e.name);
    if (sectionName.failed()) {
        return UCI_ERR_MEM;
    }
    Target target = {pointer.p, pointer.s, pointer.o, sectionName.data(), pointer.option};
    bool changed = false;
    int code = setValue(target, pointer.value, changed);
    pointer.s = target.section;
    pointer.o = target.option;
    if (code == UCI_OK && changed && pointer.p->has_delta) {
        const bool removed = *pointer.value == '\0';
        code = recordDelta(pointer.p, removed ? Change::Remove : Change::Set, target.sectionName,
                           pointer.option, removed ? nullptr : pointer.value);
    }
    return code;
}

} // namespace

uci_context *uci_alloc_context(void) {
    auto *context = static_cast<uci_context *>(calloc(1, sizeof(uci_context)));
    if (context == nullptr) {
        return nullptr;
    }
    initList(context->root);
    initList(context->backends);
    initList(context->delta_path);
    uci_element *folder = newElement(UCI_TYPE_PATH, deltaFolder);
    if (folder == nullptr) {
        free(context);
        return nullptr;
    }
    insertBefore(context->delta_path, folder->list);
    context->flags = static_cast<uci_flags>(UCI_FLAG_STRICT | UCI_FLAG_SAVED_DELTA);
    context->confdir = configFolder;
    context->savedir = deltaFolder;
    context->conf2dir = volatileFolder;
    return context;
}

void uci_free_context(uci_context *ctx) {
    if (ctx == nullptr) {
        return;
    }
    drain(ctx->root, [](uci_list *entry) { freePackage(packageOf(elementOf(entry))); });
    drain(ctx->delta_path, [](uci_list *entry) { freeElement(elementOf(entry)); });
    free(ctx);
}

int uci_load(uci_context *ctx, const char *name, uci_package **package) {
    if (ctx == nullptr || name == nullptr) {
        return keep(ctx, UCI_ERR_INVAL);
    }
    uci_package *loaded = nullptr;
    const int code = load(ctx, name, loaded);
    if (code == UCI_OK && package != nullptr) {
        *package = loaded;
    }
    return keep(ctx, code);
}

int uci_unload(uci_context *ctx, uci_package *package) {
    if (ctx == nullptr || package == nullptr) {
        return keep(ctx, UCI_ERR_INVAL);
    }
    freePackage(package);
    return keep(ctx, UCI_OK);
}

int uci_lookup_next(uci_context *ctx, uci_element **e, uci_list *list, const char *name) {
    if (ctx == nullptr || e == nullptr || list == nullptr || name == nullptr) {
        return keep(ctx, UCI_ERR_INVAL);
    }
    *e = findFirst(*list, name);
    return keep(ctx, *e != nullptr ? UCI_OK : UCI_ERR_NOTFOUND);
}

int uci_set(uci_context *ctx, uci_ptr *ptr) {
    if (ctx == nullptr || ptr == nullptr) {
        return keep(ctx, UCI_ERR_INVAL);
    }
    const int code = lookUp(ctx, *ptr);
    return keep(ctx, code == UCI_OK ? set(*ptr) : code);
}

int uci_add_section(uci_context *ctx, uci_package *package, const char *type,
                    uci_section **section) {
    if (ctx == nullptr || package == nullptr || type == nullptr || section == nullptr) {
        return keep(ctx, UCI_ERR_INVAL);
    }
    uci_section *made = appendSection(package, type, nullptr);
    if (made == nullptr) {
        return keep(ctx, UCI_ERR_MEM);
    }
    *section = made;
    if (!package->has_delta) {
        return keep(ctx, UCI_OK);
    }
    return keep(ctx, recordDelta(package, Change::Add, made->e.name, nullptr, type));
}

int uci_save(uci_context *ctx, uci_package *package) {
    if (ctx == nullptr || package == nullptr) {
        return keep(ctx, UCI_ERR_INVAL);
    }
    return keep(ctx, package->has_delta ? saveDeltas(package) : commit(package, false));
}

int uci_commit(uci_context *ctx, uci_package **package, bool overwrite) {
    if (ctx == nullptr || package == nullptr || *package == nullptr) {
        return keep(ctx, UCI_ERR_INVAL);
    }
    return keep(ctx, commit(*package, overwrite));
}
