/* SPDX-License-Identifier: Apache-2.0 */
/* What the calls of a request let leave the library, kept in order. */
#ifndef FRRUCI_HOST_TRAFFIC_H
#define FRRUCI_HOST_TRAFFIC_H

#include <cstdint>

#include "frruci/observe.h"
#include "host/text.h"

namespace frruci::host {

inline constexpr int kNoCode = -1;

/// A command of a session.
struct Command {
    char *text;
    int code;     ///< completion code, or kNoCode
    char *answer; ///< what the daemon said
};

enum class StepKind { kSession, kShell, kPause, kKill, kStore, kReply };

/// A session with its commands, or one other thing that left.
struct Step {
    StepKind kind;
    const char *daemon; ///< of a session; of a reply its pipe
    char *text;         ///< shell command, store write, reply
    uint64_t number;    ///< microseconds, process id
    int result;
    List<Command> *commands; ///< of a session
};

/// Everything since the last clearTraffic.
const List<Step> &traffic();
void clearTraffic();

/// The replies into a pipe (name without folder), one after the other.
void addReplies(const char *pipe, Text &text);

/// Whether anything left but replies.
bool somethingLeft();

/// Takes what the library shows. The program's own shell commands go through here, too.
void record(const FrruciEvent &event);

/// Whether a session is one that only asked whether the daemon is there.
inline bool isEmptySession(const Step &step) {
    return step.kind == StepKind::kSession && step.result == 0 && step.commands->isEmpty();
}

/// What is going on now, for one who gives up: async-signal-safe. Null when nothing is.
const char *activity();
void setActivity(const char *what, const char *detail);

} // namespace frruci::host

#endif
