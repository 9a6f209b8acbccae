// SPDX-License-Identifier: Apache-2.0
// Adds, removes and sorts settings.

#include "apply/settings.h"

#include <cstdlib>
#include <cstring>

#include "host/text.h"

namespace frruci::apply {

namespace {

constexpr const char *kChainHead = "key chain ";
constexpr const char *kInterfaceHead = "interface ";
// The router's own link between its two networks, which it looks after itself.
constexpr const char *kInnerLink[] = {"interface br-lan", "interface veth1"};

struct RouterContext {
    Target target;
    const char *where;
};

constexpr RouterContext kRouterContexts[] = {
    {Target::Ospfd, "router ospf"},
    {Target::Ripd,  "router rip" }
};

const char *after(const char *text, const char *head) {
    const std::size_t bytes = strlen(head);
    return strncmp(text, head, bytes) == 0 ? text + bytes : nullptr;
}

Place placeOfInterface(const char *where) {
    for (const char *link : kInnerLink) {
        if (strcmp(where, link) == 0) {
            return Place::Foreign;
        }
    }
    return Place::Interface;
}

Place placeOfChain(const char *where) {
    const std::size_t bytes = strcspn(where, "\n");
    char chain[kLineBytes];
    if (bytes >= sizeof chain) {
        return Place::Foreign;
    }
    memcpy(chain, where, bytes);
    chain[bytes] = '\0';
    Line line;
    if (recognise(Target::Ripd, Place::Top, chain, line) != Found::Yes) {
        return Place::Foreign; // somebody else's
    }
    const char *key = where + bytes;
    if (*key == '\0') {
        return Place::Chain;
    }
    return strchr(key + 1, '\n') == nullptr ? Place::Key : Place::Foreign;
}

int compareNames(const Setting &a, const Setting &b) {
    const std::size_t common = a.nameBytes < b.nameBytes ? a.nameBytes : b.nameBytes;
    const int order = memcmp(a.text + a.nameAt, b.text + b.nameAt, common);
    return order != 0 ? order : static_cast<int>(a.nameBytes) - static_cast<int>(b.nameBytes);
}

int compareAges(const void *left, const void *right) {
    const auto &a = *static_cast<const Setting *>(left);
    const auto &b = *static_cast<const Setting *>(right);
    const int order = compare(a, b);
    if (order != 0) {
        return order;
    }
    return a.order < b.order ? -1 : 1;
}

} // namespace

Place placeOf(Target target, const char *where) {
    if (where[0] == '\0') {
        return Place::Top;
    }
    for (const RouterContext &router : kRouterContexts) {
        if (router.target == target && strcmp(where, router.where) == 0) {
            return Place::Router;
        }
    }
    const char *name = after(where, kInterfaceHead);
    if (name != nullptr && strpbrk(name, " \n") == nullptr) {
        return placeOfInterface(where);
    }
    return target == Target::Ripd && after(where, kChainHead) != nullptr ? placeOfChain(where)
                                                                         : Place::Foreign;
}

std::uint8_t rankOf(Target target, const char *where) {
    const Place place = placeOf(target, where);
    return static_cast<std::uint8_t>(place == Place::Key ? Place::Chain : place); // inside of it
}

const char *pathBelow(Arena &arena, const char *where, const char *line) {
    if (where[0] == '\0') {
        return arena.copy(line);
    }
    const std::size_t head = strlen(where);
    const std::size_t tail = strlen(line);
    auto *path = static_cast<char *>(arena.take(head + 1 + tail + 1));
    memcpy(path, where, head);
    path[head] = '\n';
    memcpy(path + head + 1, line, tail);
    path[head + 1 + tail] = '\0';
    return path;
}

bool isBelow(const char *where, const char *context) {
    if (context[0] == '\0') {
        return true;
    }
    const char *rest = after(where, context);
    return rest != nullptr && (*rest == '\0' || *rest == '\n');
}

bool beginsWithWords(const char *text, const char *words) {
    const char *rest = after(text, words);
    return rest != nullptr && (*rest == '\0' || *rest == ' ');
}

int compare(const Setting &a, const Setting &b) {
    if (a.rank != b.rank) {
        return static_cast<int>(a.rank) - static_cast<int>(b.rank);
    }
    const int paths = a.path == b.path ? 0 : strcmp(a.path, b.path);
    if (paths != 0) {
        return paths;
    }
    if (a.kind != b.kind) {
        return a.kind < b.kind ? -1 : 1;
    }
    return compareNames(a, b);
}

Settings::~Settings() {
    free(items_);
}

void Settings::add(const char *where, const Line &line) {
    if (count_ == room_) {
        room_ = room_ == 0 ? 64 : room_ * 2;
        items_ = static_cast<Setting *>(host::grow(items_, room_ * sizeof *items_));
    }
    const bool opens = (line.kind->traits & kOpens) != 0;
    const char *path = opens ? pathBelow(arena_, where, line.text) : where;
    items_[count_] = {line.kind,
                      where,
                      path,
                      arena_.copy(line.text),
                      static_cast<std::uint32_t>(line.nameAt),
                      static_cast<std::uint32_t>(line.nameBytes),
                      static_cast<std::uint32_t>(count_),
                      rankOf(line.kind->target, path),
                      false};
    ++count_;
}

void Settings::remove(const char *where, const char *words) {
    const char *context = pathBelow(arena_, where, words);
    for (Setting &setting : *this) {
        if ((strcmp(setting.where, where) == 0 && beginsWithWords(setting.text, words)) ||
            isBelow(setting.where, context)) {
            setting.gone = true;
        }
    }
}

void Settings::sweep() {
    std::size_t kept = 0;
    for (const Setting &setting : *this) {
        if (!setting.gone) {
            items_[kept++] = setting;
        }
    }
    count_ = kept;
}

void Settings::settle() {
    sweep();
    if (count_ == 0) {
        return;
    }
    qsort(items_, count_, sizeof *items_, compareAges);
    std::size_t kept = 0;
    for (std::size_t i = 1; i < count_; ++i) {
        if (compare(items_[kept], items_[i]) != 0) {
            kept = i;
        } else if ((items_[i].kind->traits & kRemoveFirst) != 0) {
            items_[i].gone = true; // refused while the first is there
        } else {
            items_[kept].gone = true;
            kept = i;
        }
    }
    sweep();
}

} // namespace frruci::apply
