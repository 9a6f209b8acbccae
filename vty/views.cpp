// SPDX-License-Identifier: Apache-2.0
// Views: the registry, parameter lists, expansion, and the run of a command inside a view.

#include "vty/views.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "common/front_end.h"
#include "common/status.h"
#include "common/text.h"
#include "vty/frr_util.h"

dlist *gPreCmdEntryList = nullptr;

namespace {

using frruci::common::format;
using frruci::common::kFailed;
using frruci::common::kOutOfMemory;
using frruci::common::kSuccess;

constexpr int32_t kNoParameter = -1;

constexpr std::size_t kFieldBytes = 32;
constexpr std::size_t kLongestUnregistered = 254;
constexpr std::size_t kEntryBytes = 255;
constexpr int32_t kLongestExpansion = 255;

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

/// The bounded text that an expansion is built in.
struct Expansion {
    char *out;
    std::size_t capacity;
    std::size_t length;

    bool isFull() const { return length >= capacity; }

    void append(const char *text, std::size_t count) {
        const std::size_t room = capacity - length;
        const std::size_t copied = count < room ? count : room;
        memcpy(out + length, text, copied);
        length += copied;
    }
};

/// Fills in the placeholder whose name starts at text; returns its closing bracket, or null when
/// the placeholder cannot be filled. Fixed by the interface: a name that the
/// entry text ends in is left out.
const char *expandPlaceholder(const char *text, dlist **holder, Expansion &expansion) {
    char name[kFieldBytes] = {};
    const std::size_t length = strcspn(text, "<>");
    if (text[length] == '<' || length >= sizeof name) {
        return nullptr;
    }
    if (text[length] == '\0') {
        return text + length;
    }
    memcpy(name, text, length);
    char value[kFieldBytes] = {};
    const int32_t valueLength = frrVtyParamGet(holder, name, value);
    if (valueLength < 1) {
        return nullptr;
    }
    expansion.append(value, static_cast<std::size_t>(valueLength));
    return text + length;
}

int32_t expand(const char *entryText, dlist **holder, Expansion expansion) {
    for (const char *at = entryText; *at != '\0' && !expansion.isFull(); ++at) {
        if (*at == '>') {
            return kFailed;
        }
        if (*at != '<') {
            expansion.append(at, 1);
            continue;
        }
        at = expandPlaceholder(at + 1, holder, expansion);
        if (at == nullptr) {
            return kFailed;
        }
        if (*at == '\0') {
            break;
        }
    }
    return kSuccess;
}

/// One exchange after another on a session, into the caller's buffer.
struct Exchange {
    int32_t fd;
    char *reply;
    int32_t replySize;

    int32_t run(const char *command) const {
        uint8_t code = 0;
        return frrVtyRun(fd, command, &code, reply, replySize);
    }
};

/// Sends the lines of commands and then cmd, up to the first that fails.
int32_t runLines(const Exchange &exchange, char *commands, const char *cmd) {
    char *rest = nullptr;
    for (const char *line = strtok_r(commands, "\n", &rest); line != nullptr;
         line = strtok_r(nullptr, "\n", &rest)) {
        const int32_t result = exchange.run(line);
        if (result != kSuccess) {
            return result;
        }
    }
    return exchange.run(cmd);
}

void logRun(const char *viewName, const char *cmd, dlist *const *holder) {
    if (hasList(holder)) {
        (void)record_log_act("frr_util:%d: frrVtyAutoRun : view: %s, cmd: %s param count %d\n",
                             __LINE__, viewName, cmd, static_cast<int>(dlistLength(*holder)));
    } else {
        (void)record_log_act("frr_util:%d: frrVtyAutoRun : view: %s, cmd: %s\n", __LINE__, viewName,
                             cmd);
    }
}

int32_t runInView(const char *viewName, const char *socketPath, const char *cmd, dlist **holder,
                  int32_t replySize, char *reply) {
    int32_t fd = 0;
    if (viewName == nullptr || socketPath == nullptr || cmd == nullptr || reply == nullptr ||
        frrVtyConnect(socketPath, &fd) != kSuccess) {
        return kFailed;
    }
    logRun(viewName, cmd, holder);
    char commands[kLongestExpansion + 1] = {};
    const int32_t expanded = frrVtyFPreCmdParse(viewName, holder, kLongestExpansion, commands);
    (void)record_log_act("frr_util:%d: frrVtyAutoRun precmd %s\n", __LINE__, commands);
    // Fixed by the interface: from here on a failure leaves the descriptor open.
    if (expanded != kSuccess) {
        return kFailed;
    }
    const int32_t result = runLines({fd, reply, replySize}, commands, cmd);
    if (result != kSuccess) {
        return result;
    }
    return frrVtyDisconnect(fd) == kSuccess ? kSuccess : kFailed;
}

} // namespace

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
    memcpy(out, value, length);
    if (dlistDelete(*holder, node) != kSuccess) {
        return kNoParameter;
    }
    (void)record_log_act("frr_util:%d: argkey %s, argval %s\n", __LINE__, key, out);
    return static_cast<int32_t>(length);
}

int32_t frrVtyFPreCmdParse(const char *view_name, dlist **holder, int32_t max_len, char *out) {
    if (view_name == nullptr || out == nullptr) {
        return kFailed;
    }
    const dlist_node *node =
        fitsField(view_name) ? findByName(gPreCmdEntryList, view_name) : nullptr;
    char entry[kEntryBytes] = {};
    if (node != nullptr) {
        const char *text = static_cast<const FrrVtyView *>(node->data)->entry_text;
        format(entry, "%s", text == nullptr ? "" : text);
    }
    (void)record_log_act("frr_util:%d: frrVtyAutoRun %s, %s\n", __LINE__, view_name, entry);
    if (node == nullptr) {
        return kFailed;
    }
    const std::size_t capacity = max_len > 0 ? static_cast<std::size_t>(max_len) : 0;
    return expand(entry, holder, {out, capacity, 0});
}

int32_t frrVtyAutoRun(const char *view_name, const char *socket_path, const char *cmd,
                      dlist **holder, int32_t reply_size, char *reply) {
    const int32_t result = runInView(view_name, socket_path, cmd, holder, reply_size, reply);
    (void)frrVtyParamFini(holder); // without a holder there is nothing to finish
    return result;
}
