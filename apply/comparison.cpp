// SPDX-License-Identifier: Apache-2.0
// Asks the daemons, rehearses the store, and compares.

#include "apply/comparison.h"

#include <cstdlib>
#include <cstring>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "apply/refusals.h"
#include "apply/report.h"
#include "apply/running.h"
#include "host/exchange.h"
#include "host/timeout.h"

namespace frruci::apply {

namespace {

constexpr const char *kRouterIdHead = "Router ID: ";
constexpr const char *kPathsHead = "Maximum multiple paths(ECMP) supported ";
constexpr const char *kNeighboursHead = "Number of fully adjacent neighbors in this area: ";

/// What the kernel says of an interface; one that does not exist counts as a broadcast one.
bool isPointToPoint(const char *name) {
    ifreq request = {};
    (void)snprintf(request.ifr_name, sizeof request.ifr_name, "%s", name);
    const int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool known = fd >= 0 && ioctl(fd, SIOCGIFFLAGS, &request) == 0;
    if (fd >= 0) {
        (void)close(fd);
    }
    return known && (request.ifr_flags & IFF_POINTOPOINT) != 0;
}

/// The text behind the first head; null without one.
const char *behind(const char *text, const char *head) {
    const char *found = strstr(text, head);
    return found == nullptr ? nullptr : found + strlen(head);
}

bool hasFullNeighbours(const char *text) {
    while ((text = behind(text, kNeighboursHead)) != nullptr) {
        if (strtol(text, nullptr, 10) > 0) {
            return true;
        }
    }
    return false;
}

} // namespace

void readOspf(const char *text, Surroundings &surroundings) {
    const char *id = behind(text, kRouterIdHead);
    if (id != nullptr) {
        (void)snprintf(surroundings.routerId, sizeof surroundings.routerId, "%.*s",
                       static_cast<int>(strspn(id, "0123456789.")), id);
    }
    const char *paths = behind(text, kPathsHead);
    surroundings.maximumPaths = paths == nullptr ? 0 : strtoul(paths, nullptr, 10);
    surroundings.hasFullNeighbours = hasFullNeighbours(text);
}

namespace {

Part *partOf(Comparison &comparison, Target target) {
    for (int i = 0; i < comparison.protocol.targetCount; ++i) {
        if (comparison.parts[i]->target == target) {
            return comparison.parts[i];
        }
    }
    return nullptr;
}

void hear(const Word &word, void *context) {
    auto &comparison = *static_cast<Comparison *>(context);
    // A rehearsed protocol has one daemon; NHRP's lines name theirs.
    Part *part = word.told == Told::Session || word.told == Told::Command
                     ? comparison.parts[0]
                     : partOf(comparison, word.target);
    if (part == nullptr) {
        return;
    }
    char command[kLineBytes];
    switch (word.told) {
    case Told::Session:
        part->replay.beginSession();
        return;
    case Told::Command:
        part->replay.command(word.text);
        return;
    case Told::Added:
        part->replay.command(part->arena.copy(word.where), word.text);
        return;
    case Told::Absent:
        (void)snprintf(command, sizeof command, "no %s", word.text);
        part->replay.command(part->arena.copy(word.where), command);
        return;
    case Told::Off:
        if (part->unwantedCount < kMaxUnwanted) {
            part->unwanted[part->unwantedCount++] = {part->arena.copy(word.where),
                                                     part->arena.copy(word.text)};
        }
        return;
    case Told::End:
        return;
    }
}

} // namespace

void Part::ask() {
    holder = holderOf(target);
    surroundings.isPointToPoint = isPointToPoint;
    // Without mgmtd's lock, as nothing is changed: whoever only looks waits for nobody.
    host::Exchange daemon(holder, host::timeoutSeconds());
    host::Text text;
    answered = daemon.ask("enable", text) == 0 && daemon.ask("show running-config", text) == 0;
    if (!answered) {
        return;
    }
    readRunning(target, text.get(), running);
    surroundings.majorVersion = majorVersion(text.get());
    if (target == Target::Ospfd && daemon.ask("show ip ospf", text) == 0) {
        readOspf(text.get(), surroundings);
    }
}

void Part::compare() {
    running.settle();
    settleWanted(wanted, running, surroundings);
    if (isOnlyAddedTo(target)) {
        keepOthers(running, wanted, unwanted, unwantedCount);
    }
    changes = difference(arena, running, wanted);
}

bool Part::needsClear() const {
    if (!surroundings.hasFullNeighbours) {
        return false;
    }
    static constexpr const char *kHead = "ospf router-id ";
    for (const Setting &setting : wanted) {
        if (target == Target::Ospfd && strncmp(setting.text, kHead, strlen(kHead)) == 0) {
            return strcmp(setting.text + strlen(kHead), surroundings.routerId) != 0;
        }
    }
    return false;
}

bool Comparison::run() {
    for (int i = 0; i < protocol.targetCount; ++i) {
        parts[i]->ask();
    }
    if (!rehearse(protocol, stored, hear, this)) {
        return false;
    }
    for (int i = 0; i < protocol.targetCount && stored == Switch::On; ++i) {
        parts[i]->compare();
    }
    return true;
}

std::size_t Comparison::changeCount() const {
    std::size_t count = 0;
    for (int i = 0; i < protocol.targetCount; ++i) {
        count += parts[i]->changes.count;
    }
    return count;
}

int Comparison::reportImpossible() const {
    int count = 0;
    for (int i = 0; i < protocol.targetCount; ++i) {
        for (const Impossible *at = parts[i]->replay.impossible(); at != nullptr; at = at->next) {
            if (noteRefusal({parts[i]->holder, at->where, at->text, kImpossible})) {
                report("no daemon takes: %s: %s", at->where, at->text);
            }
            ++count;
        }
    }
    return count;
}

} // namespace frruci::apply
