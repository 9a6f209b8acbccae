// SPDX-License-Identifier: Apache-2.0
// Methods that do what a verb does: diff, apply, doctor, call.

#include <sys/wait.h>
#include <unistd.h>

#include "apply/verbs.h"
#include "host/call.h"
#include "host/doctor.h"
#include "host/library.h"
#include "host/secrets.h"
#include "host/streams.h"
#include "rpcd/answers.h"
#include "rpcd/messages.h"
#include "rpcd/methods.h"

namespace frruci::rpcd {

namespace {

using host::Status;

/// The texts of an argument, as the words of a verb.
class Words {
public:
    explicit Words(Json texts) {
        host::forEach(texts, [&](const char *, Json text) {
            words_.add(const_cast<char *>(host::textOf(text)));
        });
        words_.add(nullptr);
    }
    ~Words() { words_.release(); }
    Words(const Words &) = delete;
    Words &operator=(const Words &) = delete;

    int count() const { return static_cast<int>(words_.count()) - 1; }
    char **get() { return words_.begin(); }

private:
    host::List<char *> words_;
};

// ---- diff ----

void appendLine(const char *daemon, const char *line, void *context) {
    const char sign[] = {*line, '\0'};
    Json object = host::jsonObject();
    host::put(object, "sign", sign);
    host::put(object, "daemon", daemon);
    host::put(object, "text", line + 1);
    host::append(static_cast<Json>(context), object);
}

} // namespace

void appendRefusal(const char *protocol, const apply::Refusal &refusal, void *context) {
    Json object = host::jsonObject();
    if (protocol != nullptr) {
        host::put(object, "protocol", protocol);
    }
    host::put(object, "daemon", refusal.daemon);
    if (*refusal.context != '\0') {
        host::put(object, "context", refusal.context);
    }
    host::put(object, "command", refusal.command);
    host::put(object, "answer", refusal.answer);
    host::append(static_cast<Json>(context), object);
}

Json diff(Json arguments) {
    const Messages messages;
    Words names(host::member(arguments, "protocols"));
    Json lines = host::jsonArray();
    std::size_t differences = 0;
    const Status status =
        apply::diffLines(names.count(), names.get(), appendLine, lines, differences);
    Json answer = host::jsonObject();
    host::put(answer, "differences", static_cast<int64_t>(differences));
    host::put(answer, "lines", lines);
    host::put(answer, "status", static_cast<int64_t>(status));
    messages.putInto(answer);
    return answer;
}

// ---- apply ----

Json apply(Json arguments) {
    const Messages messages;
    Words names(host::member(arguments, "protocols"));
    apply::keepQuiet();
    const Status status = apply::applyStores(names.count(), names.get());
    Json refused = host::jsonArray();
    apply::visitNotes(appendRefusal, refused);
    Json answer = host::jsonObject();
    host::put(answer, "changes", static_cast<int64_t>(apply::notedChanges()));
    host::put(answer, "refused", refused);
    host::put(answer, "status", static_cast<int64_t>(status));
    apply::saveNotes();
    messages.putInto(answer);
    return answer;
}

// ---- doctor ----

Json doctor(Json /*arguments*/) {
    Json list = host::jsonArray();
    host::Findings findings;
    host::examine(findings);
    for (const host::Finding &finding : findings) {
        Json one = host::jsonObject();
        host::put(one, "state", host::nameOf(finding.level));
        host::put(one, "subject", finding.what);
        host::put(one, "text", finding.text);
        host::append(list, one);
    }
    host::release(findings);
    Json answer = host::jsonObject();
    host::put(answer, "findings", list);
    return answer;
}

// ---- call ----

namespace {

Json callAnswer(const char *reply, Status status, Json refused) {
    host::Text masked;
    host::addMasked(reply, masked);
    Json answer = host::jsonObject();
    host::put(answer, "reply", masked.get());
    host::put(answer, "status", static_cast<int64_t>(status));
    host::put(answer, "refused", refused);
    return answer;
}

void appendVerdict(Json refused, const host::Verdict &verdict) {
    const host::Command &command = *host::decisive(*verdict.step);
    host::Text context;
    host::Text text;
    host::Text answer;
    host::addContext(*verdict.step, context);
    host::addMasked(command.text, text);
    host::addAnswer(command, answer);
    appendRefusal(nullptr, {verdict.step->daemon, context.get(), text.get(), answer.get()},
                  refused);
}

void hearCalled(const host::Called &called, void *context) {
    Json refused = host::jsonArray();
    called.judgement.visitTold(
        [](const host::Verdict &verdict, const char *line, void *into) {
            if (verdict.outcome == host::Outcome::kRefused) {
                appendVerdict(static_cast<Json>(into), verdict);
            } else {
                host::complain("%s", line);
            }
        },
        refused);
    *static_cast<Json *>(context) = callAnswer(called.reply.get(), called.status, refused);
}

/// Null, and the status, when the handler was not called.
Json callOnce(const char *name, Words &words, Status &status) {
    status = host::kWrongUsage;
    const host::Handler *handler = host::findHandler(name);
    if (handler == nullptr) {
        host::complain("unknown handler %s", name);
        return nullptr;
    }
    status = host::checkWords(*handler, words.count(), words.get());
    if (status != host::kAccepted) {
        return nullptr;
    }
    Json answer = nullptr;
    status = host::prepare()
                 ? host::callHandler(*handler, words.count(), words.get(), hearCalled, &answer)
                 : host::kNotUsable;
    return answer;
}

} // namespace

/// In a child process, which may end at any time: the library's patience ends with its process.
Json call(Json arguments) {
    const Messages messages;
    Words words(host::member(arguments, "words"));
    const char *name = host::textOf(host::member(arguments, "handler"));
    FILE *told = host::scratchFile();
    const pid_t child = told == nullptr ? -1 : fork();
    if (child == 0) {
        Status status = host::kNotUsable;
        Json answer = callOnce(name, words, status);
        if (answer != nullptr) {
            host::out = told;
            host::printJson(answer);
        }
        _exit(status);
    }
    int ended = 0;
    const bool isKnown = child > 0 && waitpid(child, &ended, 0) == child && WIFEXITED(ended);
    host::Text text;
    if (isKnown) {
        rewind(told);
        text.addRest(told);
    }
    Json answer = host::jsonOf(text.get());
    if (answer == nullptr) {
        const int status = isKnown ? WEXITSTATUS(ended) : host::kNotUsable;
        answer = callAnswer("", static_cast<Status>(status), host::jsonArray());
    }
    messages.putInto(answer);
    return answer;
}

} // namespace frruci::rpcd
