// SPDX-License-Identifier: Apache-2.0
// Prints steps for people and for programs.

#include "host/plan.h"

#include <sys/wait.h>
#include <unistd.h>

#include "host/json.h"
#include "host/rehearsal.h"
#include "host/report.h"
#include "host/secrets.h"
#include "host/streams.h"

namespace frruci::host {

namespace {

constexpr const char *kNames[] = {"session", "shell", "pause", "kill", "store", "reply"};

const char *nameOf(const Step &step) {
    return kNames[static_cast<int>(step.kind)];
}

double secondsOf(const Step &step) {
    return static_cast<double>(step.number) / 1e6;
}

void printSession(const Step &step) {
    const char *label = step.daemon;
    for (const Command &command : *step.commands) {
        Text masked;
        addMasked(command.text, masked);
        (void)fprintf(out, "%-7s %s\n", label, masked.get());
        label = "";
    }
}

void printStep(const Step &step) {
    Text masked;
    addMasked(step.text, masked);
    switch (step.kind) {
    case StepKind::kSession:
        return printSession(step);
    case StepKind::kPause:
        (void)fprintf(out, "%-7s %g s\n", nameOf(step), secondsOf(step));
        return;
    case StepKind::kKill:
        (void)fprintf(out, "%-7s process %llu\n", nameOf(step),
                      static_cast<unsigned long long>(step.number));
        return;
    default:
        (void)fprintf(out, "%-7s %s\n", nameOf(step), masked.get());
    }
}

Json jsonOfStep(const Step &step) {
    Json object = jsonObject();
    put(object, "kind", nameOf(step));
    Text masked;
    addMasked(step.text, masked);
    switch (step.kind) {
    case StepKind::kSession:
        put(object, "daemon", step.daemon);
        put(object, "commands", commandsOf(step));
        break;
    case StepKind::kPause:
        put(object, "microseconds", static_cast<int64_t>(step.number));
        break;
    case StepKind::kKill:
        put(object, "process", static_cast<int64_t>(step.number));
        break;
    default:
        put(object, "text", masked.get());
    }
    return object;
}

} // namespace

void printPlan(const List<Step> &steps) {
    Json array = wantsJson() ? jsonArray() : nullptr;
    for (const Step &step : steps) {
        if (isEmptySession(step)) {
            continue;
        }
        if (wantsJson()) {
            append(array, jsonOfStep(step));
        } else {
            printStep(step);
        }
    }
    if (wantsJson()) {
        Json object = jsonObject();
        put(object, "steps", array);
        printJson(object);
    }
    (void)fflush(out);
}

Status inChild(Status (*rehearsal)(void *context), void *context) {
    (void)fflush(out);
    const pid_t child = fork();
    if (child == 0) {
        const Status status = rehearsal(context);
        endRehearsal();
        (void)fflush(out);
        _exit(status);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        complain("the rehearsal did not come to its end");
        return kNotUsable;
    }
    return static_cast<Status>(WEXITSTATUS(status));
}

} // namespace frruci::host
