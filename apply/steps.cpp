// SPDX-License-Identifier: Apache-2.0
// Puts changes into the order in which a daemon takes them with the least harm, and finds the way
// from context to context.

#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "apply/difference.h"

namespace frruci::apply {

namespace {

/// A command and where it belongs.
struct Operation {
    const Setting *setting;
    const char *path; ///< the context to be in; of an opener that is set, its own
    bool isRemoval;
    std::uint8_t rank;
    std::uint8_t phase;
    std::uint32_t order;
};

struct Operations {
    Operation *items;
    std::uint32_t count = 0;
};

enum Phase : std::uint8_t { kMakesRoom, kSets, kGoesLast };

/// A network statement's address range and area.
struct Network {
    std::uint32_t address;
    std::uint32_t mask;
    unsigned long area;
};

/// "network 10.0.0.0/8 area 5", as it is written in a setting.
bool readNetwork(const Setting &setting, Network &network) {
    static constexpr const char *kHead = "network ";
    const char *address = setting.text + strlen(kHead);
    if (setting.kind->target != Target::Ospfd || strncmp(setting.text, kHead, strlen(kHead)) != 0) {
        return false;
    }
    char text[INET_ADDRSTRLEN];
    in_addr bytes = {};
    (void)snprintf(text, sizeof text, "%.*s", static_cast<int>(strcspn(address, "/")), address);
    (void)inet_pton(AF_INET, text, &bytes); // recognised before
    const unsigned long length = strtoul(strchr(address, '/') + 1, nullptr, 10);
    network.address = ntohl(bytes.s_addr);
    network.mask = length == 0 ? 0 : ~std::uint32_t{0} << (32 - length);
    network.area = strtoul(strrchr(address, ' ') + 1, nullptr, 10);
    return true;
}

/// While an interface is in two networks of different areas, ospfd 8.4 hangs in any "no network".
bool isInOtherArea(const Setting &old, const Settings &wanted) {
    Network mine = {};
    if (!readNetwork(old, mine)) {
        return false;
    }
    for (const Setting &setting : wanted) {
        Network other = {};
        if (readNetwork(setting, other) && other.area != mine.area &&
            ((mine.address ^ other.address) & mine.mask & other.mask) == 0) {
            return true;
        }
    }
    return false;
}

/// What is removed makes room for what comes, a text key for a key chain. Of a router's lines those
/// wait that need not: a network that covers another one's interfaces goes when the other is there.
Phase phaseOfRemoval(const Setting &old, const Settings &wanted) {
    const bool mustBeFirst = (old.kind->traits & kRemoveFirst) != 0 && isInOtherArea(old, wanted);
    const bool mayWait = placeOf(old.kind->target, old.where) == Place::Router;
    return mayWait && !mustBeFirst ? kGoesLast : kMakesRoom;
}

void addRemoval(Operations &operations, const Setting &old, Phase phase) {
    operations.items[operations.count] = {
        &old, old.where, true, rankOf(old.kind->target, old.where), phase, operations.count};
    ++operations.count;
}

void addSetting(Operations &operations, const Setting &now) {
    operations.items[operations.count] = {&now, now.path, false, now.rank, kSets, operations.count};
    ++operations.count;
}

int compareOperations(const void *left, const void *right) {
    const auto &a = *static_cast<const Operation *>(left);
    const auto &b = *static_cast<const Operation *>(right);
    if (a.rank != b.rank) {
        return static_cast<int>(a.rank) - static_cast<int>(b.rank);
    }
    const int paths = a.path == b.path ? 0 : strcmp(a.path, b.path);
    if (paths != 0) {
        return paths;
    }
    if (a.phase != b.phase) {
        return static_cast<int>(a.phase) - static_cast<int>(b.phase);
    }
    return a.order < b.order ? -1 : 1;
}

Operations operationsFor(Arena &arena, const Changes &changes, const Settings &wanted) {
    Operations operations = {
        static_cast<Operation *>(arena.take(2 * changes.count * sizeof(Operation)))};
    for (std::size_t i = 0; i < changes.count; ++i) {
        const Change &change = changes.items[i];
        const bool isReplaced = change.old != nullptr && change.now != nullptr;
        if (isReplaced && (change.old->kind->traits & kRemoveFirst) != 0) {
            addRemoval(operations, *change.old, kMakesRoom);
        } else if (change.old != nullptr && !isReplaced && !change.implied) {
            addRemoval(operations, *change.old, phaseOfRemoval(*change.old, wanted));
        }
        if (change.now != nullptr) {
            addSetting(operations, *change.now);
        }
    }
    qsort(operations.items, operations.count, sizeof(Operation), compareOperations);
    return operations;
}

/// Writes steps, and the way between their contexts.
class Walk {
public:
    Walk(Arena &arena, Steps &steps) : arena_(arena), steps_(steps) {}

    void go(const char *path) {
        while (!isBelow(path, at_)) {
            leave();
        }
        while (strcmp(at_, path) != 0) {
            enter(path);
        }
    }

    void add(Step::Does does, const char *text, const Kind *kind) {
        steps_.items[steps_.count++] = {does, text, kind};
    }

private:
    void leave() {
        add(Step::Does::Leave, "exit", nullptr);
        const char *last = strrchr(at_, '\n');
        at_ = last == nullptr ? "" : arena_.copy(at_, static_cast<std::size_t>(last - at_));
    }

    void enter(const char *path) {
        const std::size_t here = strlen(at_);
        const char *step = path + here + (here == 0 ? 0 : 1);
        const std::size_t bytes = strcspn(step, "\n");
        add(Step::Does::Enter, arena_.copy(step, bytes), nullptr);
        at_ = arena_.copy(path, static_cast<std::size_t>(step - path) + bytes);
    }

    Arena &arena_;
    Steps &steps_;
    const char *at_ = "";
};

const char *removalText(Arena &arena, const Setting &setting) {
    char command[kLineBytes];
    formatRemoval(*setting.kind, setting.text, setting.nameAt, setting.nameBytes, command);
    return arena.copy(command);
}

} // namespace

Steps stepsFor(Arena &arena, const Changes &changes, const Settings &wanted) {
    const Operations operations = operationsFor(arena, changes, wanted);
    Steps steps;
    // Each command may need a way of at most two steps out and two in.
    steps.items = static_cast<Step *>(arena.take(std::size_t{5} * operations.count * sizeof(Step)));
    Walk walk(arena, steps);
    for (std::uint32_t i = 0; i < operations.count; ++i) {
        const Operation &operation = operations.items[i];
        const Setting &setting = *operation.setting;
        walk.go(operation.path);
        if (operation.isRemoval) {
            walk.add(Step::Does::Remove, removalText(arena, setting), setting.kind);
        } else if ((setting.kind->traits & kOpens) == 0) {
            walk.add(Step::Does::Set, setting.text, setting.kind);
        }
    }
    return steps;
}

} // namespace frruci::apply
