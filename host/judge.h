/* SPDX-License-Identifier: Apache-2.0 */
/* Whether what was asked for has been done, told from what left the library and what came back. */
#ifndef FRRUCI_HOST_JUDGE_H
#define FRRUCI_HOST_JUDGE_H

#include "host/status.h"
#include "host/traffic.h"

namespace frruci::host {

/// Where required commands may be refused without anything missing.
enum class Scene {
    kRequest,
    kReplay,     ///< options that the store lacks are sent as 0
    kNhrpReplay, ///< what is there already is as good as set
};

enum class Outcome {
    kNothing, ///< not a delivery
    kAccepted,
    kNoted,
    kRefused,
    kUnanswered,
    kUnreachable,
    kNotStored,
};

/// One step judged.
struct Verdict {
    const Step *step;
    Outcome outcome;
    const char *why; ///< of a note
};

/// All deliveries of a request, judged.
class Judgement {
public:
    Judgement(const List<Step> &steps, Scene scene);
    ~Judgement() { verdicts_.release(); }
    Judgement(const Judgement &) = delete;
    Judgement &operator=(const Judgement &) = delete;

    const List<Verdict> &verdicts() const { return verdicts_; }
    std::size_t count(Outcome outcome) const;
    std::size_t sent() const;
    Status status() const;

    /// Notes, refusals and the rest, one line each, on err; keys hidden.
    void tell() const;
    /// Hears of what was not accepted, with its line for people; once, though it was sent for both
    /// instances.
    void visitTold(void (*hear)(const Verdict &verdict, const char *line, void *context),
                   void *context) const;

private:
    Verdict judge(const Step &step) const;
    Outcome judgeSession(const Step &step, const char *&why) const;
    bool wasAcceptedOnce(const Step &step) const;

    const List<Step> &steps_;
    Scene scene_;
    List<Verdict> verdicts_;
};

/// The command of a session that tells how it went: the last one. Null for a session without any.
const Command *decisive(const Step &step);

/// "interface eth1.2: ip ospf cost 5": where the decisive command was sent, and the command.
void addPlace(const Step &step, Text &text);

/// Where the decisive command was sent, without the command: "interface eth1.2".
void addContext(const Step &step, Text &text);

/// The daemon's own words in one line; its code where it said nothing.
void addAnswer(const Command &command, Text &text);

const char *nameOf(Outcome outcome);

} // namespace frruci::host

#endif
