/* SPDX-License-Identifier: Apache-2.0 */
/* Stand-in for libuci on machines that are not OpenWrt: the records and the nine functions that
 * frruci uses, binary compatible with libuci, so that a program built with this header runs on
 * either library.
 *
 * A package is one configuration file, /var/run/uci/NAME if that exists, else /etc/config/NAME.
 * Changes are first kept as deltas: recorded in the package by uci_set and uci_add_section,
 * appended to /tmp/.uci/NAME by uci_save, merged into the configuration file by uci_commit. A
 * package that is named by a path ("/..." or "./...") has no deltas; its file is written as it is
 * in memory.
 *
 * Where libuci leaves room for loss this library is stricter: a commit drops the deltas only when
 * the new file is in place, locks the file that the path names when the lock is granted, gives
 * every added section of two writers a place of its own, and quotes a section type that would spoil
 * the file. A commit that is killed may leave a temporary file /etc/config/.NAME.uci-XXXXXX, which
 * the next one removes.
 *
 * Every int result is one of the UCI_ERR codes and is also kept in the context's err. A null
 * context gives UCI_ERR_INVAL. A context and its packages belong to one thread at a time. */
#ifndef FRRUCI_COMPAT_UCI_H
#define FRRUCI_COMPAT_UCI_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

enum {
    UCI_OK = 0,
    UCI_ERR_MEM,
    UCI_ERR_INVAL,
    UCI_ERR_NOTFOUND,
    UCI_ERR_IO,
    UCI_ERR_PARSE,
    UCI_ERR_DUPLICATE,
    UCI_ERR_UNKNOWN,
    UCI_ERR_LAST
};

enum uci_type {
    UCI_TYPE_UNSPEC = 0,
    UCI_TYPE_DELTA,
    UCI_TYPE_PACKAGE,
    UCI_TYPE_SECTION,
    UCI_TYPE_OPTION,
    UCI_TYPE_PATH,
    UCI_TYPE_BACKEND,
    UCI_TYPE_ITEM,
    UCI_TYPE_HOOK
};

enum uci_option_type { UCI_TYPE_STRING = 0, UCI_TYPE_LIST };

enum uci_flags {
    UCI_FLAG_STRICT = 1,      /* reject malformed files */
    UCI_FLAG_PERROR = 2,      /* print parse errors; without effect here */
    UCI_FLAG_EXPORT_NAME = 4, /* write the made-up names of unnamed sections */
    UCI_FLAG_SAVED_DELTA = 8  /* keep loaded deltas; without effect here */
};

/* Lists are circular; a head points at itself when empty. An element begins with its list record,
 * so that their addresses are the same. */
struct uci_list {
    struct uci_list *next;
    struct uci_list *prev;
};

struct uci_element {
    struct uci_list list;
    enum uci_type type;
    char *name;
};

struct uci_backend;
struct uci_parse_context;
struct uci_context;

struct uci_package {
    struct uci_element e;
    struct uci_list sections;
    struct uci_context *ctx;
    bool has_delta;
    bool uses_conf2; /* the file is the one in /var/run/uci */
    char *path;
    /* private */
    struct uci_backend *backend;
    void *priv;
    int n_section; /* sections allocated so far, for made-up names */
    struct uci_list delta;
    struct uci_list saved_delta;
};

struct uci_section {
    struct uci_element e; /* the name is never null */
    struct uci_list options;
    struct uci_package *package;
    bool anonymous;
    char *type;
};

struct uci_option {
    struct uci_element e;
    struct uci_section *section;
    enum uci_option_type type;
    union {
        struct uci_list list; /* of elements UCI_TYPE_ITEM, whose text is their name */
        char *string;
    } v;
};

enum uci_lookup_flags { UCI_LOOKUP_DONE = 1, UCI_LOOKUP_COMPLETE = 2, UCI_LOOKUP_EXTENDED = 4 };

/* What uci_set works on. Only names given by the caller are read; texts are borrowed. */
struct uci_ptr {
    enum uci_type target;
    enum uci_lookup_flags flags;
    struct uci_package *p;
    struct uci_section *s;
    struct uci_option *o;
    struct uci_element *last;
    const char *package;
    const char *section;
    const char *option;
    const char *value;
};

struct uci_context {
    struct uci_list root; /* loaded packages */
    struct uci_parse_context *pctx;
    struct uci_backend *backend;
    struct uci_list backends;
    enum uci_flags flags;
    char *confdir;
    char *savedir;
    char *conf2dir;
    struct uci_list delta_path;
    int err;
    const char *func;
    uint64_t internal[28];
};

/* Makes a context with the default folders and UCI_FLAG_STRICT | UCI_FLAG_SAVED_DELTA. Reads
 * nothing. Result: the context, the caller's until uci_free_context; null without memory. */
struct uci_context *uci_alloc_context(void);

/* Frees the context and every package still loaded in it. Saves nothing. */
void uci_free_context(struct uci_context *ctx);

/* Reads package name (a name or a path) under a shared lock, with its saved deltas applied on top
 * for a name. The package belongs to the context; *package (may be null) is set only on success.
 * Result: 0; UCI_ERR_INVAL a bad name; UCI_ERR_NOTFOUND no such regular file, or a name that begins
 * with a dot; UCI_ERR_IO it cannot be opened or locked; UCI_ERR_PARSE malformed; UCI_ERR_DUPLICATE
 * already loaded in ctx; UCI_ERR_MEM. */
int uci_load(struct uci_context *ctx, const char *name, struct uci_package **package);

/* Frees package with everything in it. Result: 0; UCI_ERR_INVAL package is null. */
int uci_unload(struct uci_context *ctx, struct uci_package *package);

/* Stores the first element of list with exactly that name in *e, null when there is none.
 * Result: 0; UCI_ERR_NOTFOUND; UCI_ERR_INVAL a null argument. */
int uci_lookup_next(struct uci_context *ctx, struct uci_element **e, struct uci_list *list,
                    const char *name);

/* Sets ptr->option of ptr->section in ptr->package to ptr->value; without an option the section's
 * type, adding the section at the end where it is missing. An empty value removes what is named.
 * Loads the package when the context does not have it yet. Fills p, s, o, last and flags.
 * Result: 0; UCI_ERR_INVAL no value, no section, an option of a missing section, an illegal type;
 * uci_load's codes; UCI_ERR_MEM. */
int uci_set(struct uci_context *ctx, struct uci_ptr *ptr);

/* Appends an anonymous section with a made-up name and stores it in *section.
 * Result: 0; UCI_ERR_INVAL a null argument; UCI_ERR_MEM. */
int uci_add_section(struct uci_context *ctx, struct uci_package *package, const char *type,
                    struct uci_section **section);

/* Appends the package's recorded deltas to /tmp/.uci/NAME under an exclusive lock and forgets them.
 * A package that was loaded by path is committed instead.
 * Result: 0; UCI_ERR_INVAL package is null; UCI_ERR_IO; UCI_ERR_MEM. */
int uci_save(struct uci_context *ctx, struct uci_package *package);

/* Merges all deltas, saved by whichever process, into the configuration file: under an exclusive
 * lock the file is read anew (not with overwrite), the deltas applied, the result written to a
 * temporary file, synced and renamed over the old one. *package is replaced, older pointers into it
 * are dead; it is null when the file could not be read anew. Without an applicable delta the file
 * keeps its bytes. A package that was loaded by path is written as it is in memory.
 * Result: 0; UCI_ERR_INVAL package or *package is null; UCI_ERR_IO; UCI_ERR_PARSE the file has
 * become malformed, it is left alone; UCI_ERR_MEM. */
int uci_commit(struct uci_context *ctx, struct uci_package **package, bool overwrite);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
