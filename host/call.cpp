// SPDX-License-Identifier: Apache-2.0
// Calls a handler in earnest or in a rehearsal, and tells what came of it.

#include "host/call.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/json.h"
#include "host/library.h"
#include "host/lock.h"
#include "host/plan.h"
#include "host/report.h"
#include "host/secrets.h"
#include "host/streams.h"

namespace frruci::host {

namespace {

int openPipe = -1;

/// Replies are seen on their way; what the pipe holds only has to make room for the next.
void emptyPipe() {
    char bytes[4096];
    while (read(openPipe, bytes, sizeof bytes) > 0) {
    }
}

/// The reply pipe, open for both ways, so that the library never waits for a reader.
class ReplyPipe {
public:
    explicit ReplyPipe(const char *name) {
        Text path;
        path.addf("%s/%s", kFolder, name);
        (void)mkfifo(path.get(), 0666); // usually there; the open tells
        fd_ = open(path.get(), O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
        if (fd_ < 0) {
            complain("%s: %s", path.get(), strerror(errno));
        }
        openPipe = fd_;
        onEvent = emptyPipe;
    }
    ~ReplyPipe() {
        onEvent = nullptr;
        if (fd_ >= 0) {
            (void)close(fd_); // its reader has what it wants
        }
    }
    ReplyPipe(const ReplyPipe &) = delete;
    ReplyPipe &operator=(const ReplyPipe &) = delete;

    bool isOpen() const { return fd_ >= 0; }

private:
    int fd_;
};

void run(const Handler &handler, void *function, int count, char **words) {
    if (handler.takesWords) {
        reinterpret_cast<void (*)(int32_t, char **)>(function)(count, words);
    } else {
        reinterpret_cast<void (*)()>(function)();
    }
}

/// Takes the end mark off rows. False when the answer is not as the handler ends it.
bool isAnswered(const Handler &handler, Text &reply) {
    switch (handler.ending) {
    case Ending::kNone:
        return true;
    case Ending::kStream:
        return reply.size() > 0;
    case Ending::kRows:
        if (!reply.endsWith("ok")) {
            return false;
        }
        reply.cut(reply.size() - 2);
        return true;
    case Ending::kWord:
        return equals(reply.get(), "ok") || equals(reply.get(), "fail");
    }
    return false;
}

/// RIP's timers are not even sent while the library knows of no RIP.
Status complainOfNothing(const Handler &handler) {
    if (handler.isSwitch || somethingLeft()) {
        return kAccepted;
    }
    complain("%s: nothing is sent while the protocol is off", handler.name);
    return kNotUsable;
}

Status statusOf(const Handler &handler, bool answered, const Text &reply,
                const Judgement &judgement) {
    const Status status = worse(judgement.status(), complainOfNothing(handler));
    if (!answered) {
        complain("%s wrote no answer", handler.name);
        return worse(status, kNoAnswer);
    }
    const bool failed = handler.ending == Ending::kWord && equals(reply.get(), "fail");
    return failed ? worse(status, kRefused) : status;
}

Json wordsOf(const Handler &handler, int count, char **words) {
    Json array = jsonArray();
    for (int i = 0; i < count; ++i) {
        const bool hidden = !keysAreShown() && isSecretWord(handler, count, words, i);
        append(array, jsonText(hidden ? kHidden : words[i]));
    }
    return array;
}

void printJsonOf(const Called &called) {
    Json answer = jsonObject();
    put(answer, "handler", called.handler.name);
    put(answer, "words", wordsOf(called.handler, called.count, called.words));
    put(answer, "reply", called.reply.get());
    putJudgement(answer, called.judgement, called.status);
    printJson(answer);
}

void printReply(const Called &called) {
    (void)fwrite(called.reply.get(), 1, called.reply.size(), out);
    if (called.handler.ending != Ending::kRows && called.reply.size() > 0) {
        (void)fputc('\n', out);
    }
    (void)fflush(out);
}

} // namespace

void printCalled(const Called &called, void * /*context*/) {
    (wantsJson() ? printJsonOf : printReply)(called);
    called.judgement.tell();
}

Status callHandler(const Handler &handler, int count, char **words,
                   void (*hear)(const Called &called, void *context), void *context) {
    void *function = find(handler.name);
    const ReplyPipe pipe(handler.pipe);
    if (function == nullptr || !pipe.isOpen()) {
        return kNotUsable;
    }
    {
        const Watched watched(Watched::kEarnest);
        run(handler, function, count, words);
    }
    Text reply;
    addReplies(handler.pipe, reply);
    const Judgement judgement(traffic(), Scene::kRequest);
    const bool answered = isAnswered(handler, reply);
    const Status status = statusOf(handler, answered, reply, judgement);
    hear({handler, count, words, reply, judgement, status}, context);
    return status;
}

Status planHandler(const Handler &handler, int count, char **words) {
    void *function = find(handler.name);
    if (function == nullptr) {
        return kNotUsable;
    }
    const Watched watched(Watched::kRehearsal);
    run(handler, function, count, words);
    printPlan(traffic());
    return complainOfNothing(handler);
}

} // namespace frruci::host
