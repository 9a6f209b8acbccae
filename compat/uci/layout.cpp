// SPDX-License-Identifier: Apache-2.0
// Pins the records to libuci's layout on 64-bit machines: programs built with either header read
// them.

#include "uci.h"

static_assert(sizeof(void *) == 8, "the records are laid out for LP64");

static_assert(sizeof(uci_list) == 16);
static_assert(offsetof(uci_list, next) == 0);
static_assert(offsetof(uci_list, prev) == 8);

static_assert(sizeof(uci_element) == 32);
static_assert(offsetof(uci_element, list) == 0);
static_assert(offsetof(uci_element, type) == 16);
static_assert(offsetof(uci_element, name) == 24);

static_assert(sizeof(uci_package) == 128);
static_assert(offsetof(uci_package, e) == 0);
static_assert(offsetof(uci_package, sections) == 32);
static_assert(offsetof(uci_package, ctx) == 48);
static_assert(offsetof(uci_package, has_delta) == 56);
static_assert(offsetof(uci_package, uses_conf2) == 57);
static_assert(offsetof(uci_package, path) == 64);
static_assert(offsetof(uci_package, backend) == 72);
static_assert(offsetof(uci_package, priv) == 80);
static_assert(offsetof(uci_package, n_section) == 88);
static_assert(offsetof(uci_package, delta) == 96);
static_assert(offsetof(uci_package, saved_delta) == 112);

static_assert(sizeof(uci_section) == 72);
static_assert(offsetof(uci_section, e) == 0);
static_assert(offsetof(uci_section, options) == 32);
static_assert(offsetof(uci_section, package) == 48);
static_assert(offsetof(uci_section, anonymous) == 56);
static_assert(offsetof(uci_section, type) == 64);

static_assert(sizeof(uci_option) == 64);
static_assert(offsetof(uci_option, e) == 0);
static_assert(offsetof(uci_option, section) == 32);
static_assert(offsetof(uci_option, type) == 40);
static_assert(offsetof(uci_option, v) == 48);

static_assert(sizeof(uci_ptr) == 72);
static_assert(offsetof(uci_ptr, target) == 0);
static_assert(offsetof(uci_ptr, flags) == 4);
static_assert(offsetof(uci_ptr, p) == 8);
static_assert(offsetof(uci_ptr, s) == 16);
static_assert(offsetof(uci_ptr, o) == 24);
static_assert(offsetof(uci_ptr, last) == 32);
static_assert(offsetof(uci_ptr, package) == 40);
static_assert(offsetof(uci_ptr, section) == 48);
static_assert(offsetof(uci_ptr, option) == 56);
static_assert(offsetof(uci_ptr, value) == 64);

static_assert(sizeof(uci_context) == 336);
static_assert(offsetof(uci_context, root) == 0);
static_assert(offsetof(uci_context, pctx) == 16);
static_assert(offsetof(uci_context, backend) == 24);
static_assert(offsetof(uci_context, backends) == 32);
static_assert(offsetof(uci_context, flags) == 48);
static_assert(offsetof(uci_context, confdir) == 56);
static_assert(offsetof(uci_context, savedir) == 64);
static_assert(offsetof(uci_context, conf2dir) == 72);
static_assert(offsetof(uci_context, delta_path) == 80);
static_assert(offsetof(uci_context, err) == 96);
static_assert(offsetof(uci_context, func) == 104);

static_assert(sizeof(uci_type) == 4);
static_assert(sizeof(uci_option_type) == 4);
static_assert(sizeof(uci_flags) == 4);
