// SPDX-License-Identifier: Apache-2.0
// The registry of views, and the lists of parameters for their placeholders.

#include "vty/views.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "common/front_end.h"
#include "common/status.h"
#include "common/text.h"
#include "vty/view_registry.h"

dlist *gPreCmdEntryList = nullptr;

namespace {

using frruci::common::format;
using frruci::common::kFailed;
using frruci::common::kOutOfMemory;
using frruci::common::kSuccess;

constexpr int32_t kNoParameter = -1;

constexpr std::size_t kFieldBytes = 32;
constexpr std::size_t kLongestUnregistered = 254;

// Hosts read these records directly; the lookup below takes either by the name in front.
static_assert(sizeof(FrrVtyView) == 40 && offsetof(FrrVtyView, name) == 0 &&
              sizeof(FrrVtyView::name) == kFieldBytes && offsetof(FrrVtyView, entry_text) == 32);
static_assert(sizeof(FrrVtyParam) == 64 && offsetof(FrrVtyParam, key) == 0 &&
              sizeof(FrrVtyParam::key) == kFieldBytes && offsetof(FrrVtyParam, value) == 32);

int32_t compareName(void *key, void *data) {
    if (key == nullptr || data == nullptr) {
        return -1;
    }
    return strcmp(static_cast<const char *>(key), static_cast<const char *>(data));
}

dlist_node *findByName(dlist *list, const char *name) {
    // The list hands the key through to compareName, which only reads it.
    return dlistFindByKey(list, compareName, const_cast<char *>(name));
}

bool fitsField(const char *text) {
    return text != nullptr && strlen(text) < kFieldBytes;
}

FrrVtyView *makeView(const char *name, const char *entryText) {
    auto *view = static_cast<FrrVtyView *>(calloc(1, sizeof(FrrVtyView)));
    if (view == nullptr) {
        return nullptr;
    }
    const std::size_t entryBytes = strlen(entryText) + 1;
    view->entry_text = static_cast<char *>(malloc(entryBytes));
    if (view->entry_text == nullptr) {
        free(view);
        return nullptr;
    }
    memcpy(view->entry_text, entryText, entryBytes);
    format(view->name, "%s", name);
    return view;
}

bool hasList(dlist *const *holder) {
    return holder != nullptr && *holder != nullptr;
}

/// A record for a parameter that may be added; null when it may not or memory is exhausted.
FrrVtyParam *makeParameter(dlist **holder, const char *key) {
    if (!hasList(holder) || !fitsField(key) || findByName(*holder, key) != nullptr) {
        return nullptr;
    }
    auto *parameter = static_cast<FrrVtyParam *>(calloc(1, sizeof(FrrVtyParam)));
    if (parameter != nullptr) {
        format(parameter->key, "%s", key);
    }
    return parameter;
}

} // namespace

const FrrVtyView *frruci::vty::findView(const char *name) {
    const dlist_node *node = fitsField(name) ? findByName(gPreCmdEntryList, name) : nullptr;
    return node != nullptr ? static_cast<const FrrVtyView *>(node->data) : nullptr;
}

int32_t frrVtyViewReg(const char *name, const char *entry_text) {
    if (!fitsField(name) || entry_text == nullptr ||
        findByName(gPreCmdEntryList, name) != nullptr) {
        return kFailed;
    }
    FrrVtyView *view = makeView(name, entry_text);
    if (view == nullptr) {
        return kOutOfMemory;
    }
    (void)dlistAppend(gPreCmdEntryList, view); // registering before frrVtyInit is not an error
    return kSuccess;
}

int32_t frrVtyViewUnreg(const char *name) {
    if (name == nullptr || strlen(name) > kLongestUnregistered) {
        return kFailed;
    }
    dlist_node *node = findByName(gPreCmdEntryList, name);
    if (node == nullptr) {
        return kFailed;
    }
    free(static_cast<FrrVtyView *>(node->data)->entry_text);
    (void)dlistDelete(gPreCmdEntryList, node); // neither is null
    return kSuccess;
}

int32_t frrVtyParamInit(dlist **holder) {
    if (holder == nullptr) {
        return kFailed;
    }
    *holder = dlistCreate(free, nullptr);
    return *holder != nullptr ? kSuccess : kOutOfMemory;
}

int32_t frrVtyParamFini(dlist **holder) {
    if (holder == nullptr) {
        return kFailed;
    }
    if (*holder != nullptr) {
        dlistDestroy(*holder);
        *holder = nullptr;
    }
    return kSuccess;
}

int32_t frrVtyParamStrSet(dlist **holder, const char *key, const char *value) {
    FrrVtyParam *parameter = fitsField(value) ? makeParameter(holder, key) : nullptr;
    if (parameter == nullptr) {
        return kNoParameter;
    }
    format(parameter->value, "%s", value);
    // Fixed by the interface: unlike below, a record that cannot be appended stays in memory.
    if (dlistAppend(*holder, parameter) != kSuccess) {
        return kNoParameter;
    }
    return static_cast<int32_t>(strlen(value));
}

int32_t frrVtyParamIntSet(dlist **holder, const char *key, int32_t number) {
    FrrVtyParam *parameter = makeParameter(holder, key);
    if (parameter == nullptr) {
        return kNoParameter;
    }
    format(parameter->value, "%d", number);
    if (dlistAppend(*holder, parameter) != kSuccess) {
        free(parameter);
        return kNoParameter;
    }
    return static_cast<int32_t>(strlen(parameter->value));
}

int32_t frrVtyParamGet(dlist **holder, const char *key, char *out) {
    if (!hasList(holder) || key == nullptr || out == nullptr) {
        return kNoParameter;
    }
    dlist_node *node = findByName(*holder, key);
    if (node == nullptr) {
        return kNoParameter;
    }
    const char *value = static_cast<const FrrVtyParam *>(node->data)->value;
    const std::size_t length = strlen(value);
    std::copy_n(value, length, out); // no NUL
    if (dlistDelete(*holder, node) != kSuccess) {
        return kNoParameter;
    }
    (void)record_log_act("frr_util:%d: argkey %s, argval %s\n", __LINE__, key, out);
    return static_cast<int32_t>(length);
}
