// SPDX-License-Identifier: Apache-2.0
// Judges deliveries, and knows the required commands whose refusal leaves nothing missing.

#include "host/judge.h"

#include <iterator>

#include "host/secrets.h"
#include "host/streams.h"

namespace frruci::host {

namespace {

constexpr int kWarned = 1;      // the completion code for what was done and is worth a word
constexpr int kUnknown = 2;     // the completion code for what a daemon does not know
constexpr int kImpossible = 13; // and for what it knows and cannot do

/// A command that may be refused in this way, whichever daemon it goes to. A "*" stands for
/// anything.
struct Harmless {
    const char *command;
    const char *why; ///< null where it is no refusal at all
    int code;
    bool onlyInReplay;
};

constexpr const char *kNoChain = "there was no such key chain";
constexpr const char *kNoSummary = "ripd does not know it";
constexpr const char *kNoOption = "the store has no value for it";

constexpr Harmless kHarmless[] = {
    {"show ip nhrp cache json",                      nullptr,    kWarned,     false}, // it is empty
    {"no key chain app_rip_*",                       kNoChain,   kImpossible, false},
    {"autosummary",                                  kNoSummary, kUnknown,    false},
    {"no autosummary",                               kNoSummary, kUnknown,    false},
    {"ip ospf cost 0",                               kNoOption,  kUnknown,    true },
    {"ip ospf retransmit-interval 0",                kNoOption,  kUnknown,    true },
    {"ip ospf transmit-delay 0",                     kNoOption,  kUnknown,    true },
    {"ip ospf hello-interval 0",                     kNoOption,  kUnknown,    true },
    {"ip ospf dead-interval 0",                      kNoOption,  kUnknown,    true },
    {"ip ospf message-digest-key 0 *",               kNoOption,  kUnknown,    true },
    {"distance 0",                                   kNoOption,  kUnknown,    true },
    {"maximum-paths 0",                              kNoOption,  kUnknown,    true },
    {"default-information originate *metric-type 0", kNoOption,  kUnknown,    true },
    {"default-metric 0",                             kNoOption,  kUnknown,    true },
};

/// Whether a text is the pattern, in which one "*" stands for anything.
bool matches(const char *pattern, const char *text) {
    const std::size_t star = strcspn(pattern, "*");
    if (pattern[star] == '\0') {
        return equals(pattern, text);
    }
    const char *end = pattern + star + 1;
    const std::size_t endSize = strlen(end);
    const std::size_t size = strlen(text);
    return size >= star + endSize && strncmp(pattern, text, star) == 0 &&
           equals(text + size - endSize, end);
}

const Harmless *findHarmless(const Command &command, Scene scene) {
    for (const Harmless &row : kHarmless) {
        if (row.code == command.code && matches(row.command, command.text) &&
            (scene == Scene::kReplay || !row.onlyInReplay)) {
            return &row;
        }
    }
    return nullptr;
}

bool isSameSession(const Step &a, const Step &b) {
    if (!equals(a.daemon, b.daemon) || a.commands->count() != b.commands->count()) {
        return false;
    }
    for (std::size_t i = 0; i < a.commands->count(); ++i) {
        if (!equals((*a.commands)[i].text, (*b.commands)[i].text)) {
            return false;
        }
    }
    return true;
}

constexpr const char *kOutcomeNames[] = {"",           "accepted",    "noted",     "refused",
                                         "unanswered", "unreachable", "not stored"};

constexpr Status kStatusOf[] = {kAccepted, kAccepted,  kAccepted, kRefused,
                                kNoAnswer, kNotUsable, kNotUsable};
static_assert(std::size(kOutcomeNames) == std::size(kStatusOf));

} // namespace

const char *nameOf(Outcome outcome) {
    return kOutcomeNames[static_cast<int>(outcome)];
}

const Command *decisive(const Step &step) {
    return step.commands == nullptr || step.commands->isEmpty() ? nullptr : &step.commands->last();
}

void addContext(const Step &step, Text &text) {
    const List<Command> &commands = *step.commands;
    // The first two only lead into the configuration.
    for (std::size_t i = 2; i + 1 < commands.count(); ++i) {
        text.add(i > 2 ? ": " : "");
        addMasked(commands[i].text, text);
    }
}

void addPlace(const Step &step, Text &text) {
    addContext(step, text);
    const Command *last = decisive(step);
    if (last != nullptr) {
        text.add(step.commands->count() > 3 ? ": " : "");
        addMasked(last->text, text);
    }
}

Judgement::Judgement(const List<Step> &steps, Scene scene) : steps_(steps), scene_(scene) {
    for (const Step &step : steps_) {
        const Verdict verdict = judge(step);
        if (verdict.outcome != Outcome::kNothing) {
            verdicts_.add(verdict);
        }
    }
}

bool Judgement::wasAcceptedOnce(const Step &step) const {
    for (const Step &other : steps_) {
        if (other.kind == StepKind::kSession && other.result >= 0 && !other.commands->isEmpty() &&
            other.commands->last().code == 0 && isSameSession(step, other)) {
            return true;
        }
    }
    return false;
}

Outcome Judgement::judgeSession(const Step &step, const char *&why) const {
    if (step.result < 0) {
        return Outcome::kUnreachable;
    }
    const Command *last = decisive(step);
    if (last == nullptr) {
        return Outcome::kNothing;
    }
    if (last->code == 0 || wasAcceptedOnce(step)) {
        return Outcome::kAccepted;
    }
    if (last->code == kNoCode) {
        return Outcome::kUnanswered;
    }
    if (scene_ == Scene::kNhrpReplay && strstr(last->answer, "exists already") != nullptr) {
        return Outcome::kAccepted;
    }
    const Harmless *harmless = findHarmless(*last, scene_);
    if (harmless == nullptr) {
        return Outcome::kRefused;
    }
    why = harmless->why;
    return why != nullptr ? Outcome::kNoted : Outcome::kAccepted;
}

Verdict Judgement::judge(const Step &step) const {
    Verdict verdict = {&step, Outcome::kNothing, nullptr};
    if (step.kind == StepKind::kSession) {
        verdict.outcome = judgeSession(step, verdict.why);
    } else if (step.kind == StepKind::kStore && step.result != 0) {
        // Displays mirror what they see into sections that a router may not have.
        const bool mirrored = !startsWith(step.text, "/etc/config/nhrp.");
        verdict.outcome = mirrored ? Outcome::kNoted : Outcome::kNotStored;
        verdict.why = mirrored ? "the store has no such section" : nullptr;
    }
    return verdict;
}

std::size_t Judgement::count(Outcome outcome) const {
    std::size_t count = 0;
    for (const Verdict &verdict : verdicts_) {
        count += verdict.outcome == outcome ? 1 : 0;
    }
    return count;
}

std::size_t Judgement::sent() const {
    std::size_t count = 0;
    for (const Verdict &verdict : verdicts_) {
        count += verdict.step->kind == StepKind::kSession ? 1 : 0;
    }
    return count;
}

Status Judgement::status() const {
    Status status = kAccepted;
    for (const Verdict &verdict : verdicts_) {
        status = worse(status, kStatusOf[static_cast<int>(verdict.outcome)]);
    }
    return status;
}

void addAnswer(const Command &command, Text &text) {
    Text masked;
    addMasked(command.answer, masked);
    const char *between = "";
    const char *at = masked.get();
    while (*(at += strspn(at, "\r\n ")) != '\0') {
        const std::size_t length = strcspn(at, "\r\n");
        text.add(between);
        text.add(at, length);
        at += length;
        between = " ";
    }
    if (*command.answer == '\0') {
        text.addf("code %d", command.code);
    }
}

namespace {

void addLine(const Verdict &verdict, Text &text) {
    const Step &step = *verdict.step;
    if (step.kind == StepKind::kStore) {
        Text masked;
        addMasked(step.text, masked);
        text.addf("%s is not stored (%d)", masked.get(), step.result);
        return;
    }
    text.add(step.daemon);
    switch (verdict.outcome) {
    case Outcome::kUnreachable:
        return text.add(" cannot be reached");
    case Outcome::kUnanswered:
        text.add(" did not answer \"");
        addPlace(step, text);
        return text.add("\"");
    default:
        text.add(" refused \"");
        addPlace(step, text);
        text.add("\": ");
        return addAnswer(step.commands->last(), text);
    }
}

/// A verdict as a line for people: a note with its reason, a refusal, or what else went wrong.
void addTold(const Verdict &verdict, Text &text) {
    const bool noted = verdict.outcome == Outcome::kNoted;
    text.add(noted ? "note: " : "");
    addLine(verdict, text);
    if (noted) {
        text.addf(" (%s)", verdict.why);
    }
}

} // namespace

void Judgement::visitTold(void (*hear)(const Verdict &verdict, const char *line, void *context),
                          void *context) const {
    Text told;
    for (const Verdict &verdict : verdicts_) {
        if (verdict.outcome == Outcome::kAccepted) {
            continue;
        }
        Text line;
        addTold(verdict, line);
        Text whole;
        whole.addf("%s\n", line.get());
        if (strstr(told.get(), whole.get()) == nullptr) {
            told.add(whole.get());
            hear(verdict, line.get(), context);
        }
    }
}

void Judgement::tell() const {
    visitTold([](const Verdict &, const char *line, void *) { complain("%s", line); }, nullptr);
}

} // namespace frruci::host
