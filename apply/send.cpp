// SPDX-License-Identifier: Apache-2.0
// One session a daemon, a context entered once.

#include "apply/send.h"

#include <cstring>
#include <poll.h>
#include <unistd.h>

#include "apply/refusals.h"
#include "apply/report.h"
#include "apply/session.h"
#include "host/streams.h"

namespace frruci::apply {

namespace {

constexpr const char *kBegin[] = {"enable", "configure"};
constexpr const char *kEnd = "end";
constexpr const char *kClear = "clear ip ospf process";
constexpr const char *kShowOspf = "show ip ospf";
// What mgmtd says of a context whose daemon it has only just met.
constexpr const char *kEarly = "object was deleted by another process";
constexpr int kEarlyTries = 20;
constexpr int kEarlyPauseMs = 100;
constexpr std::size_t kProgressSteps = 50;
// A daemon works on so many in a few milliseconds.
constexpr std::size_t kMostAtOnce = 64;

/// A daemon's text as one line. It may repeat the command.
void formatReason(const char *text, const char *secret, char (&line)[kLineBytes]) {
    const std::size_t hidden = strlen(secret);
    std::size_t count = 0;
    text += strspn(text, " \r\n");
    while (*text != '\0' && count + strlen(kMask) + 1 < sizeof line) {
        if (hidden > 0 && strncmp(text, secret, hidden) == 0) {
            count += static_cast<std::size_t>(snprintf(line + count, sizeof line - count, kMask));
            text += hidden;
            continue;
        }
        const std::size_t blanks = strspn(text, " \r\n");
        line[count++] = blanks > 0 ? ' ' : *text;
        text += blanks > 0 ? blanks : 1;
    }
    while (count > 0 && line[count - 1] == ' ') {
        --count;
    }
    line[count] = '\0';
}

class Sender {
public:
    Sender(Part &part, bool showKeys) : part_(part), showKeys_(showKeys), session_(part.holder) {}

    Sent run() {
        const Steps steps = stepsFor(part_.arena, part_.changes, part_.wanted);
        if (!begin()) {
            return sent_;
        }
        for (std::size_t i = 0; i < steps.count && sent_.answered;) {
            progress(i, steps.count);
            i += closedAt_ != 0 ? pass(steps.items[i]) : take(steps, i);
        }
        progress(steps.count, steps.count);
        if (sent_.answered) {
            end();
        }
        return sent_;
    }

private:
    bool begin() {
        for (const char *word : kBegin) {
            if (session_.run(word) != 0) {
                sent_.answered = false;
                report("%s does not answer", part_.holder);
                return false;
            }
        }
        return true;
    }

    /// Goes past a step inside of a context that could not be entered: the daemon would take the
    /// settings for another one's.
    std::size_t pass(const Step &step) {
        if (step.does == Step::Does::Enter) {
            ++depth_;
        } else if (step.does != Step::Does::Leave) {
            ++sent_.refused;
        } else if (depth_-- == closedAt_) {
            closedAt_ = 0;
        }
        return 1;
    }

    /// Takes the steps up to the next context, or what the daemon takes at once of them; how many.
    std::size_t take(const Steps &steps, std::size_t first) {
        const std::size_t count = countAtOnce(steps, first);
        if (count > 1) {
            for (std::size_t i = 0; i < count; ++i) {
                session_.post(steps.items[first + i].text);
            }
        }
        for (std::size_t i = 0; i < count && sent_.answered; ++i) {
            const Step &step = steps.items[first + i];
            hear(step, count > 1 ? session_.take() : session_.run(step.text));
        }
        return count;
    }

    /// Whether a context is open must be known before its settings leave.
    std::size_t countAtOnce(const Steps &steps, std::size_t first) const {
        const std::size_t left = steps.count - first;
        const std::size_t most = !session_.takesMany() ? 1
                                 : left < kMostAtOnce  ? left
                                                       : kMostAtOnce;
        std::size_t count = 1;
        while (count < most && steps.items[first + count - 1].does != Step::Does::Enter) {
            ++count;
        }
        return count;
    }

    void hear(const Step &step, int code) {
        if (code == kNoReply) {
            sent_.answered = false;
            report("%s went away", part_.holder);
            return;
        }
        if (step.does == Step::Does::Enter) {
            ++depth_;
            context_ = step.text;
        }
        judge(step, code);
        if (step.does == Step::Does::Leave) {
            --depth_;
        }
    }

    void judge(const Step &step, int code) {
        // 8.4 refuses, without a word, to remove an address that went with another one; and does.
        const bool isDone = step.does == Step::Does::Remove && session_.text()[0] == '\0';
        if (code == 0 || isDone) {
            sent_.accepted += step.does == Step::Does::Leave ? 0 : 1;
            return;
        }
        if (step.does == Step::Does::Enter) {
            closedAt_ = depth_;
        }
        if (strstr(session_.text(), kEarly) != nullptr) {
            sent_.early = true;
            return;
        }
        ++sent_.refused;
        char text[kLineBytes];
        char reason[kLineBytes];
        const bool isSecret = strcmp(maskedText(step, false, text), step.text) != 0;
        const bool isInContext = step.does != Step::Does::Enter && depth_ > 0;
        const char *context = isInContext ? context_ : "";
        formatReason(session_.text(), isSecret ? strrchr(step.text, ' ') + 1 : "", reason);
        const bool isSaid = noteRefusal({part_.holder, context, text, reason});
        if (showKeys_) {
            (void)maskedText(step, true, text);
            formatReason(session_.text(), "", reason);
        }
        if (isSaid) { // without the sign that a daemon puts in front
            report("%s refuses: %s%s%s: %s", part_.holder, context, isInContext ? ": " : "", text,
                   reason + strspn(reason, "% "));
        }
    }

    void end() {
        (void)session_.run(kEnd); // the session ends anyway
        // Asked again: the new id is in use at once where there are no neighbours.
        if (part_.target != Target::Ospfd || session_.run(kShowOspf) != 0) {
            return;
        }
        readOspf(session_.text(), part_.surroundings);
        if (part_.needsClear() && session_.run(kClear) == 0) {
            sent_.cleared = true;
        }
    }

    void progress(std::size_t done, std::size_t all) {
        const bool isDue = done == all || done >= told_ + kProgressSteps;
        if (all < kProgressSteps || !isDue || isatty(fileno(host::err)) == 0) {
            return;
        }
        told_ = done;
        (void)fprintf(host::err, "\r%s: %zu of %zu%s", part_.holder, done, all,
                      done == all ? "\n" : "");
    }

    Part &part_;
    bool showKeys_;
    Session session_;
    Sent sent_;
    const char *context_ = ""; ///< the last one that was entered
    std::size_t told_ = 0;     ///< steps that progress was told of
    int depth_ = 0;
    int closedAt_ = 0; ///< the depth of a context that was refused; 0 for none
};

} // namespace

Sent send(Part &part, bool showKeys) {
    return Sender(part, showKeys).run();
}

namespace {

Outcome applyOnce(const Protocol &protocol, bool showKeys,
                  void (*hear)(const Part &part, const Sent &sent, void *context), void *context,
                  bool &early) {
    Comparison comparison(protocol);
    if (!comparison.run()) {
        return Outcome::NoStore;
    }
    if (comparison.stored != Switch::On) {
        return comparison.stored == Switch::Off ? Outcome::Off : Outcome::Same;
    }
    Outcome worst = comparison.reportImpossible() > 0 ? Outcome::Refused : Outcome::Same;
    for (int i = 0; i < protocol.targetCount; ++i) {
        Part &part = *comparison.parts[i];
        if (part.changes.count == 0 && !part.needsClear()) {
            continue;
        }
        const Sent sent = send(part, showKeys);
        noteChanges(part.target, part.changes.count);
        early = early || sent.early;
        hear(part, sent, context);
        const Outcome outcome = !sent.answered                   ? Outcome::Lost
                                : sent.refused > 0 || sent.early ? Outcome::Refused
                                                                 : Outcome::Applied;
        worst = outcome > worst ? outcome : worst;
    }
    return worst;
}

} // namespace

Outcome applyStored(const Protocol &protocol, bool showKeys,
                    void (*hear)(const Part &part, const Sent &sent, void *context),
                    void *context) {
    beginNotes(protocol);
    bool wasEarly = false;
    for (int i = 1;; ++i) {
        bool early = false;
        const Outcome outcome = applyOnce(protocol, showKeys, hear, context, early);
        wasEarly = wasEarly || early;
        // What a fresh mgmtd has accepted it may lose again.
        const bool isSure = !early && !(wasEarly && outcome == Outcome::Applied);
        if (isSure || i == kEarlyTries) {
            endNotes(outcome);
            return outcome;
        }
        (void)poll(nullptr, 0, kEarlyPauseMs);
        beginTry();
    }
}

void printSteps(FILE *out, Part &part, bool showKeys) {
    const Steps steps = stepsFor(part.arena, part.changes, part.wanted);
    if (steps.count > 0) {
        (void)fprintf(out, "%s:\n  %s\n  %s\n", part.holder, kBegin[0], kBegin[1]);
    }
    for (std::size_t i = 0; i < steps.count; ++i) {
        char text[kLineBytes];
        (void)fprintf(out, "  %s\n", maskedText(steps.items[i], showKeys, text));
    }
    // With full neighbours the daemon goes on with its old id.
    if (part.needsClear()) {
        (void)fprintf(out, "  %s\n  %s\n", kEnd, kClear);
    }
}

} // namespace frruci::apply
