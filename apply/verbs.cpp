// SPDX-License-Identifier: Apache-2.0
// diff and apply, as the command line has them.

#include "apply/verbs.h"

#include <cstdio>

#include "apply/comparison.h"
#include "apply/daemons.h"
#include "apply/library.h"
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
    Json answer = nullptr; ///< an array; null for people

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

/// For each protocol of the verb in turn; the worst result.
Status forEach(int count, char **words, bool mayBeDry,
               Status (*run)(const Protocol &, const Request &)) {
    Request request;
    if (!readWords(count, words, mayBeDry, request)) {
        return host::kWrongUsage;
    }
    if (!ready()) {
        return host::kNotUsable;
    }
    request.answer = host::wantsJson() ? host::jsonArray() : nullptr;
    Status status = host::kAccepted;
    for (int i = 0; i < request.count; ++i) {
        status = host::worse(status, run(*request.protocols[i], request));
    }
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
Status sayState(const Protocol &protocol, const char *daemon, bool runs, const Request &request) {
    if (request.answer != nullptr) {
        host::put(item(request, "daemon", daemon), "stored", runs ? "off" : "on");
    } else if (runs) {
        (void)fprintf(host::out, "-%s runs, and %s is off in the store\n", daemon, protocol.name);
    } else {
        (void)fprintf(host::out, "+%s does not answer, and %s is on in the store\n", daemon,
                      protocol.name);
    }
    return host::kRefused;
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

Status diffProtocol(const Protocol &protocol, const Request &request) {
    Comparison comparison(protocol);
    if (!comparison.run()) {
        return cannotRehearse(protocol);
    }
    if (comparison.stored != Switch::On) {
        return comparison.stored == Switch::Off && accepts(protocol.daemon)
                   ? sayState(protocol, protocol.daemon, true, request)
                   : host::kAccepted;
    }
    Status status = comparison.changeCount() > 0 ? host::kRefused : host::kAccepted;
    for (int i = 0; i < protocol.targetCount; ++i) {
        const Part &part = *comparison.parts[i];
        if (!part.answered) {
            status = sayState(protocol, part.holder, false, request);
        }
        if (request.answer != nullptr) {
            putChanges(part, request);
        } else {
            printChanges(host::out, part.changes, host::keysAreShown());
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
    if (comparison.stored == Switch::Off) {
        return applyOff(protocol, request);
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

Status applyProtocol(const Protocol &protocol, const Request &request) {
    if (!accepts(protocol.daemon)) {
        if (storedSwitch(protocol) != Switch::On) {
            return host::kAccepted;
        }
        if (!bringUp(protocol, request)) {
            return host::kNotUsable;
        }
    }
    if (request.dryRun) {
        return planProtocol(protocol, request);
    }
    const Outcome outcome =
        applyStored(protocol, host::keysAreShown(), saySent, const_cast<Request *>(&request));
    return statusOf(protocol, outcome, request);
}

} // namespace

Status diffVerb(int count, char **words) {
    return forEach(count, words, false, diffProtocol);
}

Status applyVerb(int count, char **words) {
    return forEach(count, words, true, applyProtocol);
}

} // namespace frruci::apply
