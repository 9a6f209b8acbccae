/* SPDX-License-Identifier: Apache-2.0 */
/* Another libuci, which knows one answer. */

#include <uci.h>

static struct uci_context only;

struct uci_context *uci_alloc_context(void) {
    return &only;
}

void uci_free_context(struct uci_context *ctx) {
    (void)ctx;
}

int uci_load(struct uci_context *ctx, const char *name, struct uci_package **package) {
    (void)ctx, (void)name, (void)package;
    return UCI_ERR_DUPLICATE;
}

int uci_unload(struct uci_context *ctx, struct uci_package *package) {
    (void)ctx, (void)package;
    return UCI_ERR_UNKNOWN;
}

int uci_lookup_next(struct uci_context *ctx, struct uci_element **e, struct uci_list *list,
                    const char *name) {
    (void)ctx, (void)e, (void)list, (void)name;
    return UCI_ERR_UNKNOWN;
}

int uci_set(struct uci_context *ctx, struct uci_ptr *ptr) {
    (void)ctx, (void)ptr;
    return UCI_ERR_UNKNOWN;
}

int uci_add_section(struct uci_context *ctx, struct uci_package *package, const char *type,
                    struct uci_section **section) {
    (void)ctx, (void)package, (void)type, (void)section;
    return UCI_ERR_UNKNOWN;
}

int uci_save(struct uci_context *ctx, struct uci_package *package) {
    (void)ctx, (void)package;
    return UCI_ERR_UNKNOWN;
}

int uci_commit(struct uci_context *ctx, struct uci_package **package, bool overwrite) {
    (void)ctx, (void)package, (void)overwrite;
    return UCI_ERR_UNKNOWN;
}
