// SPDX-License-Identifier: Apache-2.0
// Follows a replay's sessions through their contexts.

#include "apply/wanted.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace frruci::apply {

namespace {

constexpr const char *kConfigureWords[] = {"configure", "config", "configure terminal"};
constexpr int kFirstThatShowsOwnType = 10;

bool entersConfiguration(const char *text) {
    for (const char *word : kConfigureWords) {
        if (strcmp(text, word) == 0) {
            return true;
        }
    }
    return false;
}

/// The type that an interface has without a line.
const char *ownType(const char *where, const Surroundings &surroundings) {
    const char *name = strchr(where, ' ');
    const bool isPointToPoint = name != nullptr && surroundings.isPointToPoint != nullptr &&
                                surroundings.isPointToPoint(name + 1);
    return isPointToPoint ? "point-to-point" : "broadcast";
}

const char *lastWord(const char *text) {
    const char *blank = strrchr(text, ' ');
    return blank == nullptr ? text : blank + 1;
}

const Setting *findName(const Settings &among, const Setting &wanted) {
    if (among.count() == 0) {
        return nullptr;
    }
    return static_cast<const Setting *>(bsearch(
        &wanted, among.begin(), among.count(), sizeof wanted, [](const void *a, const void *b) {
            return compare(*static_cast<const Setting *>(a), *static_cast<const Setting *>(b));
        }));
}

bool isHidden(const Setting &setting, const Settings &running, const Surroundings &surroundings) {
    const Kind &kind = *setting.kind;
    if (kind.omitted != nullptr && strcmp(setting.text, kind.omitted) == 0) {
        return true;
    }
    if ((kind.traits & kOwnType) != 0 && surroundings.majorVersion < kFirstThatShowsOwnType) {
        return strcmp(lastWord(setting.text), ownType(setting.where, surroundings)) == 0;
    }
    // In use, and yet not shown: then it is the greatest that there is.
    return (kind.traits & kMaximum) != 0 && findName(running, setting) == nullptr &&
           strtoul(lastWord(setting.text), nullptr, 10) == surroundings.maximumPaths;
}

} // namespace

void Replay::command(const char *text) {
    if (where_ == nullptr) {
        where_ = entersConfiguration(text) ? "" : nullptr;
        return;
    }
    if (repeats(text)) {
        return;
    }
    const Place place = placeOf(target_, where_);
    if (place == Place::Foreign) {
        return;
    }
    Line line;
    const Found found = recognise(target_, place, text, line);
    if (found == Found::Yes) {
        take(text, line);
    } else if (found == Found::Invalid) {
        note(text, line);
    } else if (strncmp(text, "no ", 3) == 0) {
        wanted_.remove(where_, text + 3);
        opener_.where = line_.where = nullptr; // these may be gone
    } else if (place == Place::Top && strncmp(text, "interface ", 10) == 0) {
        where_ = wanted_.arena().copy(text, strcspn(text, "\r\n"));
    }
}

void Replay::command(const char *where, const char *text) {
    where_ = where;
    command(text);
}

bool Replay::repeats(const char *text) {
    for (const Taken *taken : {&line_, &opener_}) {
        if (taken->where != nullptr && strcmp(taken->where, where_) == 0 &&
            strcmp(taken->text, text) == 0) {
            where_ = taken->path;
            return true;
        }
    }
    return false;
}

void Replay::take(const char *text, const Line &line) {
    const bool opens = (line.kind->traits & kOpens) != 0;
    Taken &taken = opens ? opener_ : line_;
    wanted_.add(where_, line);
    taken.where = where_;
    where_ = (wanted_.end() - 1)->path;
    taken.path = where_;
    (void)snprintf(taken.text, sizeof taken.text, "%s", text); // a longer one is not found again
}

void Replay::note(const char *text, const Line &line) {
    const Kind &kind = *line.kind;
    auto *noted = static_cast<Impossible *>(wanted_.arena().take(sizeof(Impossible)));
    *noted = {where_, wanted_.arena().copy(hasSecret(kind) ? kind.pattern : text), impossible_};
    impossible_ = noted;
}

void settleWanted(Settings &wanted, const Settings &running, const Surroundings &surroundings) {
    wanted.settle();
    for (Setting &setting : wanted) {
        setting.gone = isHidden(setting, running, surroundings);
    }
    wanted.sweep();
}

bool isOnlyAddedTo(Target target) {
    return target == Target::Nhrpd || target == Target::Zebra;
}

void keepOthers(Settings &running, const Settings &wanted, const Unwanted *unwanted,
                std::size_t count) {
    for (Setting &setting : running) {
        setting.gone = findName(wanted, setting) == nullptr;
        for (std::size_t i = 0; i < count && setting.gone; ++i) {
            setting.gone = strcmp(setting.where, unwanted[i].where) != 0 ||
                           !beginsWithWords(setting.text, unwanted[i].words);
        }
    }
    running.sweep();
}

} // namespace frruci::apply
