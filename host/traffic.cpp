// SPDX-License-Identifier: Apache-2.0
// Sorts the library's events into steps.

#include "host/traffic.h"

#include <cstdio>
#include <new>

namespace frruci::host {

namespace {

List<Step> steps;
char now[512];

/// "/var/ospfd.vty" is the daemon "ospfd".
const char *daemonOf(const char *socketPath) {
    const char *slash = strrchr(socketPath, '/');
    const char *name = slash == nullptr ? socketPath : slash + 1;
    return copyOf(name, strcspn(name, "."));
}

Step &addStep(StepKind kind, const char *text, const FrruciEvent &event) {
    return steps.add({kind, nullptr, copyOf(text), event.number, event.result, nullptr});
}

void beginSession(const FrruciEvent &event) {
    Step &step = addStep(StepKind::kSession, "", event);
    step.daemon = daemonOf(event.place);
    step.commands = new (grow(nullptr, sizeof(List<Command>))) List<Command>;
    setActivity(step.daemon, "takes no session");
}

/// Sessions never overlap, so a command belongs to the one that began last.
Step *currentSession() {
    for (std::size_t i = steps.count(); i > 0; --i) {
        if (steps[i - 1].kind == StepKind::kSession) {
            return &steps[i - 1];
        }
    }
    return nullptr;
}

void addCommand(const FrruciEvent &event) {
    Step *session = currentSession();
    if (session != nullptr) {
        session->commands->add({copyOf(event.text), kNoCode, copyOf("")});
        setActivity(session->daemon, "did not answer");
    }
}

void addAnswer(const FrruciEvent &event) {
    Step *session = currentSession();
    if (session == nullptr || session->commands->isEmpty() || event.text == nullptr) {
        return;
    }
    Command &command = session->commands->last();
    Text answer;
    answer.add(command.answer);
    answer.add(event.text, event.text_size);
    free(command.answer);
    command.answer = copyOf(answer.get());
    command.code = event.code;
    if (event.code != kNoCode) {
        now[0] = '\0';
    }
}

void addStore(const FrruciEvent &event) {
    Text text;
    text.addf("%s.%s", event.place, event.section == nullptr ? "" : event.section);
    if (event.option == nullptr) {
        text.addf(" (%s)", event.text);
    } else {
        text.addf(".%s=%s", event.option, event.text == nullptr ? "" : event.text);
    }
    (void)addStep(StepKind::kStore, text.get(), event);
}

void addReply(const FrruciEvent &event) {
    Step &step = addStep(StepKind::kReply, event.text, event);
    const char *slash = strrchr(event.place == nullptr ? "" : event.place, '/');
    step.daemon = copyOf(slash == nullptr ? "" : slash + 1);
}

void release(Step &step) {
    free(step.text);
    free(const_cast<char *>(step.daemon));
    if (step.commands == nullptr) {
        return;
    }
    for (Command &command : *step.commands) {
        free(command.text);
        free(command.answer);
    }
    step.commands->release();
    free(step.commands);
}

void begin(const FrruciEvent &event) {
    switch (event.kind) {
    case FRRUCI_CONNECT:
        return beginSession(event);
    case FRRUCI_COMMAND:
        return addCommand(event);
    case FRRUCI_SHELL:
        (void)addStep(StepKind::kShell, event.text, event);
        return setActivity(event.text, "did not end");
    case FRRUCI_LISTING:
        return setActivity(event.text, "did not end");
    case FRRUCI_PAUSE:
        (void)addStep(StepKind::kPause, "", event);
        return;
    case FRRUCI_KILL:
        (void)addStep(StepKind::kKill, "", event);
        return;
    case FRRUCI_STORE:
        addStore(event);
        return setActivity("the store", "was not written");
    case FRRUCI_REPLY:
        addReply(event);
        return setActivity("the reply pipe", "is not read");
    default:
        return;
    }
}

} // namespace

const List<Step> &traffic() {
    return steps;
}

void clearTraffic() {
    for (Step &step : steps) {
        release(step);
    }
    steps.clear();
}

void addReplies(const char *pipe, Text &text) {
    for (const Step &step : steps) {
        if (step.kind == StepKind::kReply && equals(step.daemon, pipe)) {
            text.add(step.text);
        }
    }
}

bool somethingLeft() {
    for (const Step &step : steps) {
        if (step.kind != StepKind::kReply) {
            return true;
        }
    }
    return false;
}

void record(const FrruciEvent &event) {
    if (event.kind == FRRUCI_ANSWER) {
        return addAnswer(event);
    }
    if (event.done == 0) {
        return begin(event);
    }
    if (!steps.isEmpty()) {
        steps.last().result = event.result;
    }
    now[0] = '\0';
}

const char *activity() {
    return now[0] == '\0' ? nullptr : now;
}

void setActivity(const char *what, const char *detail) {
    (void)snprintf(now, sizeof now, "%.400s %s", what, detail);
}

} // namespace frruci::host
