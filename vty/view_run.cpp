// SPDX-License-Identifier: Apache-2.0
// A command inside a view: the expansion of the view's entry text, and the walk through it.

#include <cstddef>
#include <cstring>

#include "common/front_end.h"
#include "common/status.h"
#include "common/text.h"
#include "vty/session.h"
#include "vty/view_registry.h"

namespace {

using frruci::common::format;
using frruci::common::kFailed;
using frruci::common::kSuccess;
using frruci::vty::Session;

constexpr std::size_t kNameBytes = sizeof(FrrVtyParam::key);
constexpr std::size_t kValueBytes = sizeof(FrrVtyParam::value);
constexpr std::size_t kEntryBytes = 255;
constexpr int32_t kLongestExpansion = 255;

// Lines of one character each, with a newline between them, and the command.
constexpr std::size_t kMostSteps = (kLongestExpansion + 1) / 2 + 1;

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
/// the placeholder cannot be filled. Fixed by the interface: a name that the entry text ends in is
/// left out.
const char *expandPlaceholder(const char *text, dlist **holder, Expansion &expansion) {
    char name[kNameBytes] = {};
    const std::size_t length = strcspn(text, "<>");
    if (text[length] == '<' || length >= sizeof name) {
        return nullptr;
    }
    if (text[length] == '\0') {
        return text + length;
    }
    memcpy(name, text, length);
    char value[kValueBytes] = {};
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

/// Sends the lines of commands, which it splits in place, and then cmd.
int32_t walkThrough(Session &session, char *commands, const char *cmd,
                    const frruci::vty::Reply &reply) {
    const char *steps[kMostSteps];
    std::size_t count = 0;
    char *rest = nullptr;
    for (const char *line = strtok_r(commands, "\n", &rest); line != nullptr;
         line = strtok_r(nullptr, "\n", &rest)) {
        steps[count++] = line;
    }
    steps[count++] = cmd;
    return frruci::vty::walk(session, std::span(steps, count), reply);
}

void logRun(const char *viewName, const char *cmd, dlist *parameters) {
    if (parameters != nullptr) {
        (void)record_log_act("frr_util:%d: frrVtyAutoRun : view: %s, cmd: %s param count %d\n",
                             __LINE__, viewName, cmd, static_cast<int>(dlistLength(parameters)));
    } else {
        (void)record_log_act("frr_util:%d: frrVtyAutoRun : view: %s, cmd: %s\n", __LINE__, viewName,
                             cmd);
    }
}

int32_t runInView(const char *viewName, const char *socketPath, const char *cmd, dlist **holder,
                  const frruci::vty::Reply &reply) {
    if (viewName == nullptr || socketPath == nullptr || cmd == nullptr || reply.text == nullptr) {
        return kFailed;
    }
    Session session(socketPath);
    if (!session.isOpen()) {
        return kFailed;
    }
    logRun(viewName, cmd, holder != nullptr ? *holder : nullptr);
    char commands[kLongestExpansion + 1] = {};
    int32_t result = frrVtyFPreCmdParse(viewName, holder, kLongestExpansion, commands);
    (void)record_log_act("frr_util:%d: frrVtyAutoRun precmd %s\n", __LINE__, commands);
    if (result == kSuccess) {
        result = walkThrough(session, commands, cmd, reply);
    }
    if (result != kSuccess) {
        session.leaveOpen(); // Fixed by the interface.
    }
    return result;
}

} // namespace

int32_t frrVtyFPreCmdParse(const char *view_name, dlist **holder, int32_t max_len, char *out) {
    if (view_name == nullptr || out == nullptr) {
        return kFailed;
    }
    const FrrVtyView *view = frruci::vty::findView(view_name);
    char entry[kEntryBytes] = {};
    if (view != nullptr && view->entry_text != nullptr) {
        format(entry, "%s", view->entry_text);
    }
    (void)record_log_act("frr_util:%d: frrVtyAutoRun %s, %s\n", __LINE__, view_name, entry);
    if (view == nullptr) {
        return kFailed;
    }
    const std::size_t capacity = max_len > 0 ? static_cast<std::size_t>(max_len) : 0;
    return expand(entry, holder, {out, capacity, 0});
}

int32_t frrVtyAutoRun(const char *view_name, const char *socket_path, const char *cmd,
                      dlist **holder, int32_t reply_size, char *reply) {
    const int32_t result = runInView(view_name, socket_path, cmd, holder, {reply, reply_size});
    (void)frrVtyParamFini(holder); // without a holder there is nothing to finish
    return result;
}
