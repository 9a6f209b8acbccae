// SPDX-License-Identifier: Apache-2.0
// Walks through two sorted configurations at once, and shows what it finds.

#include "apply/difference.h"

#include <cstring>

namespace frruci::apply {

namespace {

void copyMasked(const char *text, bool masked, char (&room)[kLineBytes]) {
    const char *blank = masked ? strrchr(text, ' ') : nullptr;
    if (blank == nullptr) {
        (void)snprintf(room, kLineBytes, "%s", text);
        return;
    }
    (void)snprintf(room, kLineBytes, "%.*s %s", static_cast<int>(blank - text), text, kMask);
}

/// Prints lines with the contexts that they need.
class Printer {
public:
    Printer(FILE *out, bool showKeys) : out_(out), showKeys_(showKeys) {}

    void print(char sign, const Setting &setting) {
        const int depth = open(setting.where);
        char text[kLineBytes];
        (void)fprintf(out_, "%c%*s%s\n", sign, depth, "", maskedText(setting, showKeys_, text));
        shown_ = setting.path;
    }

private:
    /// Prints the steps into a context that were not printed yet; how deep the context is.
    int open(const char *where) {
        int depth = 0;
        const char *step = where;
        while (*step != '\0') {
            const std::size_t bytes = strcspn(step, "\n");
            const std::size_t whole = static_cast<std::size_t>(step - where) + bytes;
            if (!isShown(where, whole)) {
                (void)fprintf(out_, " %*s%.*s\n", depth, "", static_cast<int>(bytes), step);
            }
            ++depth;
            step += bytes + (step[bytes] == '\n' ? 1 : 0);
        }
        return depth;
    }

    bool isShown(const char *where, std::size_t bytes) const {
        return strncmp(shown_, where, bytes) == 0 &&
               (shown_[bytes] == '\0' || shown_[bytes] == '\n');
    }

    FILE *out_;
    bool showKeys_;
    const char *shown_ = "";
};

} // namespace

Changes difference(Arena &arena, const Settings &running, const Settings &wanted) {
    Changes changes;
    changes.items =
        static_cast<Change *>(arena.take((running.count() + wanted.count()) * sizeof(Change)));
    const Setting *old = running.begin();
    const Setting *now = wanted.begin();
    const char *removed = nullptr; // the context that went last
    while (old != running.end() || now != wanted.end()) {
        int order = 0;
        if (old == running.end() || now == wanted.end()) {
            order = now == wanted.end() ? -1 : 1;
        } else {
            order = compare(*old, *now);
        }
        if (order == 0) {
            if (strcmp(old->text, now->text) != 0) {
                changes.items[changes.count++] = {old, now, false};
            }
            ++old;
            ++now;
        } else if (order < 0) {
            const bool implied = removed != nullptr && isBelow(old->where, removed);
            changes.items[changes.count++] = {old, nullptr, implied};
            if ((old->kind->traits & kOpens) != 0 && !implied) {
                removed = old->path;
            }
            ++old;
        } else {
            changes.items[changes.count++] = {nullptr, now, false};
            ++now;
        }
    }
    return changes;
}

void printChanges(FILE *out, const Changes &changes, bool showKeys) {
    Printer printer(out, showKeys);
    for (std::size_t i = 0; i < changes.count; ++i) {
        const Change &change = changes.items[i];
        if (change.old != nullptr) {
            printer.print('-', *change.old);
        }
        if (change.now != nullptr) {
            printer.print('+', *change.now);
        }
    }
}

const char *maskedText(const Step &step, bool showKeys, char (&room)[kLineBytes]) {
    const bool isSecret =
        step.does == Step::Does::Set && step.kind != nullptr && hasSecret(*step.kind);
    copyMasked(step.text, isSecret && !showKeys, room);
    return room;
}

const char *maskedText(const Setting &setting, bool showKeys, char (&room)[kLineBytes]) {
    copyMasked(setting.text, !showKeys && hasSecret(*setting.kind), room);
    return room;
}

} // namespace frruci::apply
