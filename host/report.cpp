// SPDX-License-Identifier: Apache-2.0
// Judgements in words and numbers.

#include "host/report.h"

#include "host/secrets.h"

namespace frruci::host {

namespace {

/// In the order of telling. What cannot be stored is told by its line.
constexpr Outcome kCounted[] = {Outcome::kAccepted,   Outcome::kNoted,       Outcome::kRefused,
                                Outcome::kUnanswered, Outcome::kUnreachable, Outcome::kNotStored};

Json jsonOfVerdict(const Verdict &verdict) {
    Json object = jsonObject();
    put(object, "outcome", nameOf(verdict.outcome));
    Text masked;
    if (verdict.step->kind == StepKind::kStore) {
        addMasked(verdict.step->text, masked);
        put(object, "store", masked.get());
        return object;
    }
    put(object, "daemon", verdict.step->daemon);
    put(object, "commands", commandsOf(*verdict.step));
    const Command *last = decisive(*verdict.step);
    if (last != nullptr) {
        addMasked(last->answer, masked);
        put(object, "code", static_cast<int64_t>(last->code));
        put(object, "text", masked.get());
    }
    if (verdict.why != nullptr) {
        put(object, "why", verdict.why);
    }
    return object;
}

} // namespace

Json linesOf(const char *text) {
    Json lines = jsonArray();
    while (*text != '\0') {
        const std::size_t length = strcspn(text, "\r\n");
        char *line = copyOf(text, length);
        append(lines, jsonText(line));
        free(line);
        text += length;
        text += *text == '\r' ? 1 : 0;
        text += *text == '\n' ? 1 : 0;
    }
    return lines;
}

Json commandsOf(const Step &step) {
    Json array = jsonArray();
    for (const Command &command : *step.commands) {
        Text masked;
        addMasked(command.text, masked);
        append(array, jsonText(masked.get()));
    }
    return array;
}

void putJudgement(Json object, const Judgement &judgement, Status status) {
    put(object, "status", static_cast<int64_t>(status));
    put(object, "sent", static_cast<int64_t>(judgement.sent()));
    put(object, "accepted", static_cast<int64_t>(judgement.count(Outcome::kAccepted)));
    Json others = jsonArray();
    for (const Verdict &verdict : judgement.verdicts()) {
        if (verdict.outcome != Outcome::kAccepted) {
            append(others, jsonOfVerdict(verdict));
        }
    }
    put(object, "others", others);
}

void addSummary(const char *name, const Judgement &judgement, Text &text) {
    text.addf("%s: %zu sent", name, judgement.sent());
    for (const Outcome outcome : kCounted) {
        const std::size_t count = judgement.count(outcome);
        if (count > 0 || outcome <= Outcome::kRefused) {
            text.addf(", %zu %s", count, nameOf(outcome));
        }
    }
}

} // namespace frruci::host
