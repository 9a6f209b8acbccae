// SPDX-License-Identifier: Apache-2.0
// diff and apply, as the command line has them.

#include "apply/verbs.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "apply/comparison.h"
#include "apply/daemons.h"
#include "apply/library.h"
#include "apply/refusals.h"
#include "apply/report.h"
#include "apply/send.h"
#include "apply/session.h"
#include "host/json.h"
#include "host/secrets.h"
#include "host/streams.h"

namespace frruci::apply {

namespace {

using host::Json;
using host::Status;

constexpr int kMostProtocols = 3;

/// The words of a verb, and its answer for programs.
struct Request {
    bool dryRun = false;
    const Protocol *protocols[kMostProtocols] = {};
    int count = 0;
    Json answer = nullptr;   ///< an array; null for people
    HearLine hear = nullptr; ///< of the lines of diff, for people
    void *context = nullptr;
    std::size_t differences = 0;

    bool names(const Protocol &protocol) const {
        for (int i = 0; i < count; ++i) {
            if (protocols[i] == &protocol) {
                return true;
            }
        }
        return false;
    }
};

bool takeWord(const char *word, bool mayBeDry, Request &request) {
    if (mayBeDry && host::equals(word, "--dry-run")) {
        request.dryRun = true;
        return true;
    }
    const Protocol *protocol = findProtocol(word);
    if (protocol == nullptr) {
        report("%s is none of ospf, rip, nhrp%s", word, mayBeDry ? ", --dry-run" : "");
        return false;
    }
    if (!request.names(*protocol)) {
        request.protocols[request.count++] = protocol;
    }
    return true;
}

/// All protocols when none is named.
bool readWords(int count, char **words, bool mayBeDry, Request &request) {
    for (int i = 0; i < count; ++i) {
        if (!takeWord(words[i], mayBeDry, request)) {
            return false;
        }
    }
    if (request.count == 0) {
        for (const Protocol &protocol : protocols()) {
            request.protocols[request.count++] = &protocol;
        }
    }
    return true;
}

Status cannotRehearse(const Protocol &protocol) {
    report("the store of %s cannot be replayed", protocol.name);
    return host::kNotUsable;
}

/// Reads the words and readies the library; false with the status otherwise.
bool isReady(Request &request, int count, char **words, bool mayBeDry, Status &status) {
    status = host::kWrongUsage;
    if (!readWords(count, words, mayBeDry, request)) {
        return false;
    }
    status = host::kNotUsable;
    return ready();
}

/// For each protocol of the request in turn; the worst result.
Status forEach(Request &request, Status (*run)(const Protocol &, Request &)) {
    Status status = host::kAccepted;
    for (int i = 0; i < request.count; ++i) {
        status = host::worse(status, run(*request.protocols[i], request));
    }
    return status;
}

/// The same for the command line.
Status forVerb(Request &request, int count, char **words, bool mayBeDry,
               Status (*run)(const Protocol &, Request &)) {
    Status status = host::kAccepted;
    if (!isReady(request, count, words, mayBeDry, status)) {
        return status;
    }
    request.answer = host::wantsJson() ? host::jsonArray() : nullptr;
    status = forEach(request, run);
    if (request.answer != nullptr) {
        host::printJson(request.answer);
    }
    return status;
}

/// One more object of the answer.
Json item(const Request &request, const char *key, const char *text) {
    const Json object = host::jsonObject();
    host::put(object, key, text);
    host::append(request.answer, object);
    return object;
}

// ---- diff ----

/// Says that a daemon runs or not, where the store has it otherwise.
Status sayState(const Protocol &protocol, const char *daemon, bool runs, Request &request) {
    ++request.differences;
    if (request.answer != nullptr) {
        host::put(item(request, "daemon", daemon), "stored", runs ? "off" : "on");
        return host::kRefused;
    }
    host::Text line;
    line.addf(runs ? "-%s runs, and %s is off in the store"
                   : "+%s does not answer, and %s is on in the store",
              daemon, protocol.name);
    request.hear(daemon, line.get(), request.context);
    return host::kRefused;
}

/// The part's lines, one after the other.
void sayChanges(const Part &part, const Request &request) {
    char *text = nullptr;
    std::size_t size = 0;
    FILE *memory = open_memstream(&text, &size);
    if (memory == nullptr) {
        return report("no room for the difference");
    }
    printChanges(memory, part.changes, host::keysAreShown());
    (void)fclose(memory); // lacks memory only
    char *rest = text;
    for (char *line = nullptr; (line = strsep(&rest, "\n")) != nullptr;) {
        if (*line != '\0') {
            request.hear(part.holder, line, request.context);
        }
    }
    free(text);
}

void putText(Json object, const char *key, const Setting *setting) {
    if (setting != nullptr) {
        char text[kLineBytes];
        host::put(object, key, maskedText(*setting, host::keysAreShown(), text));
    }
}

void putChanges(const Part &part, const Request &request) {
    for (std::size_t i = 0; i < part.changes.count; ++i) {
        const Change &change = part.changes.items[i];
        const Json object = item(request, "daemon", part.holder);
        host::put(object, "context", change.old != nullptr ? change.old->where : change.now->where);
        putText(object, "removed", change.old);
        putText(object, "added", change.now);
    }
}

Status diffProtocol(const Protocol &protocol, Request &request) {
    Comparison comparison(protocol);
    if (!comparison.run()) {
        return cannotRehearse(protocol);
    }
    if (comparison.stored != Switch::On) {
        return comparison.stored == Switch::Off && accepts(protocol.daemon)
                   ? sayState(protocol, protocol.daemon, true, request)
                   : host::kAccepted;
    }
    request.differences += comparison.changeCount();
    Status status = comparison.changeCount() > 0 ? host::kRefused : host::kAccepted;
    for (int i = 0; i < protocol.targetCount; ++i) {
        const Part &part = *comparison.parts[i];
        if (!part.answered) {
            status = sayState(protocol, part.holder, false, request);
        }
        if (request.answer != nullptr) {
            putChanges(part, request);
        } else {
            sayChanges(part, request);
        }
    }
    return comparison.reportImpossible() > 0 ? host::kRefused : status;
}

// ---- apply ----

void saySwitch(const Protocol &protocol, const char *to, const Request &request) {
    if (request.answer != nullptr) {
        host::put(item(request, "protocol", protocol.name), "switched", to);
        return;
    }
    (void)fprintf(host::out, "%s: %s\n", protocol.name, to);
    (void)fflush(host::out); // a start takes seconds
}

Status applyOff(const Protocol &protocol, const Request &request) {
    saySwitch(protocol, "off", request);
    if (!request.dryRun) {
        switchOff(protocol);
    }
    return host::kAccepted;
}

/// False when the daemon does not come.
bool bringUp(const Protocol &protocol, const Request &request) {
    saySwitch(protocol, "on", request);
    if (request.dryRun || switchOn(protocol)) {
        return true;
    }
    report("%s does not start", protocol.daemon);
    return false;
}

void putSteps(Part &part, const Request &request) {
    const Json commands = host::jsonArray();
    const Steps steps = stepsFor(part.arena, part.changes, part.wanted);
    for (std::size_t i = 0; i < steps.count; ++i) {
        char text[kLineBytes];
        host::append(commands,
                     host::jsonText(maskedText(steps.items[i], host::keysAreShown(), text)));
    }
    host::put(item(request, "daemon", part.holder), "commands", commands);
}

Status planProtocol(const Protocol &protocol, const Request &request) {
    Comparison comparison(protocol);
    if (!comparison.run()) {
        return cannotRehearse(protocol);
    }
    if (comparison.stored != Switch::On) {
        return comparison.stored == Switch::Off ? applyOff(protocol, request) : host::kAccepted;
    }
    for (int i = 0; i < protocol.targetCount; ++i) {
        if (request.answer != nullptr) {
            putSteps(*comparison.parts[i], request);
        } else {
            printSteps(host::out, *comparison.parts[i], host::keysAreShown());
        }
    }
    return comparison.reportImpossible() > 0 ? host::kRefused : host::kAccepted;
}

void saySent(const Part &part, const Sent &sent, void *context) {
    const auto &request = *static_cast<const Request *>(context);
    if (request.answer != nullptr) {
        const Json object = item(request, "daemon", part.holder);
        host::put(object, "changes", static_cast<int64_t>(part.changes.count));
        host::put(object, "refused", static_cast<int64_t>(sent.refused));
        host::put(object, "cleared", static_cast<int64_t>(sent.cleared));
        return;
    }
    (void)fprintf(host::out, "%s: %zu changes, %d refused%s\n", part.holder, part.changes.count,
                  sent.refused, sent.cleared ? kClearedText : "");
}

Status statusOf(const Protocol &protocol, Outcome outcome, const Request &request) {
    switch (outcome) {
    case Outcome::Same:
    case Outcome::Applied:
        return host::kAccepted;
    case Outcome::Off:
        return applyOff(protocol, request);
    case Outcome::Refused:
        return host::kRefused;
    case Outcome::NoStore:
        return cannotRehearse(protocol);
    case Outcome::Lost:
        break;
    }
    return host::kNoAnswer;
}

Status applyProtocol(const Protocol &protocol, Request &request) {
    if (!accepts(protocol.daemon)) {
        if (storedSwitch(protocol) != Switch::On) {
            if (!request.dryRun) {
                noteOff(protocol);
            }
            return host::kAccepted;
        }
        if (!bringUp(protocol, request)) {
            return host::kNotUsable;
        }
    }
    if (request.dryRun) {
        return planProtocol(protocol, request);
    }
    const Outcome outcome = applyStored(protocol, host::keysAreShown(), saySent, &request);
    return statusOf(protocol, outcome, request);
}

} // namespace

Status diffVerb(int count, char **words) {
    Request request;
    request.hear = [](const char *, const char *line, void *) {
        (void)fprintf(host::out, "%s\n", line);
    };
    return forVerb(request, count, words, false, diffProtocol);
}

Status diffLines(int count, char **names, HearLine hear, void *context, std::size_t &differences) {
    Request request;
    request.hear = hear;
    request.context = context;
    Status status = host::kAccepted;
    if (isReady(request, count, names, false, status)) {
        status = forEach(request, diffProtocol);
    }
    differences = request.differences;
    return status;
}

Status applyVerb(int count, char **words) {
    Request request;
    const Status status = forVerb(request, count, words, true, applyProtocol);
    saveNotes();
    return status;
}

Status applyStores(int count, char **names) {
    Request request;
    request.answer = host::jsonArray(); // what people are told is not asked for
    Status status = host::kAccepted;
    return isReady(request, count, names, false, status) ? forEach(request, applyProtocol) : status;
}

} // namespace frruci::apply
