// SPDX-License-Identifier: Apache-2.0
// The table of verbs, and what each of them does.

#include "host/verbs.h"

#include <iterator>

#include <cerrno>
#include <cstdio>

#include "apply/verbs.h"
#include "apply/watch.h"
#include "host/call.h"
#include "host/doctor.h"
#include "host/handlers.h"
#include "host/help.h"
#include "host/json.h"
#include "host/library.h"
#include "host/lock.h"
#include "host/options.h"
#include "host/plan.h"
#include "host/replay.h"
#include "host/report.h"
#include "host/show.h"
#include "host/streams.h"
#include "host/words.h"
#include "rpcd/rpcd.h"

namespace frruci::host {

namespace {

constexpr int kMaxWords = 64;

/// The words of a request. A "-" at their end is replaced by the lines of standard input.
class RequestWords {
public:
    RequestWords(int count, char **words) {
        const bool goesOn = count > 0 && equals(words[count - 1], "-");
        given_ = goesOn ? count - 1 : count;
        for (int i = 0; i < given_; ++i) {
            words_.add(words[i]);
        }
        if (goesOn) {
            readLines();
        }
        words_.add(nullptr);
    }
    ~RequestWords() {
        for (int i = given_; i < count(); ++i) {
            free(get()[i]);
        }
        words_.release();
    }
    RequestWords(const RequestWords &) = delete;
    RequestWords &operator=(const RequestWords &) = delete;

    int count() const { return static_cast<int>(words_.count()) - 1; }
    char **get() { return words_.begin(); }

private:
    void readLines() {
        char *line = nullptr;
        size_t room = 0;
        while (getline(&line, &room, in) >= 0) {
            words_.add(copyOf(line, strcspn(line, "\r\n")));
        }
        free(line);
    }

    List<char *> words_;
    int given_ = 0;
};

/// The handler that the first word names, its words checked; null with the status otherwise.
const Handler *requested(int count, char **words, const char *verb, Status &status) {
    status = kWrongUsage;
    if (count < 1) {
        complain("%s needs a handler; \"frruci handlers\" lists them", verb);
        return nullptr;
    }
    const Handler *handler = findHandler(words[0]);
    if (handler == nullptr) {
        complain("unknown handler %s; \"frruci handlers\" lists them", words[0]);
        return nullptr;
    }
    status = checkWords(*handler, count - 1, words + 1);
    return status == kAccepted ? handler : nullptr;
}

Status callVerb(int count, char **given) {
    RequestWords words(count, given);
    Status status = kAccepted;
    const Handler *handler = requested(words.count(), words.get(), "call", status);
    if (handler == nullptr) {
        return status;
    }
    return prepare()
               ? callHandler(*handler, words.count() - 1, words.get() + 1, printCalled, nullptr)
               : kNotUsable;
}

/// A request as one context for a child process.
struct Request {
    const Handler *handler;
    int count;
    char **words;
};

Status planRequest(void *context) {
    const auto &request = *static_cast<const Request *>(context);
    return planHandler(*request.handler, request.count, request.words);
}

Status planReplay(void *context) {
    return planRecovery(*static_cast<const Replay *>(context));
}

Status recoverWhat() {
    return wrongUsage("recover what? ospf, rip or nhrp");
}

Status planVerb(int count, char **given) {
    if (count >= 1 && equals(given[0], "recover")) {
        const Replay *replay = count == 2 ? findReplay(given[1]) : nullptr;
        if (replay == nullptr) {
            return recoverWhat();
        }
        return prepare() ? inChild(planReplay, const_cast<Replay *>(replay)) : kNotUsable;
    }
    RequestWords words(count, given);
    Status status = kAccepted;
    Request request = {requested(words.count(), words.get(), "plan", status), words.count() - 1,
                       words.get() + 1};
    if (request.handler == nullptr) {
        return status;
    }
    return prepare() ? inChild(planRequest, &request) : kNotUsable;
}

Json jsonOfForms(const Handler &handler) {
    Json forms = jsonArray();
    for (std::size_t i = 0; i < kFormCount; ++i) {
        if (kForms[i].handler == handler.name) {
            append(forms, jsonText(kForms[i].words));
        }
    }
    return forms;
}

Status handlersVerb(int, char **) {
    Json all = jsonArray();
    for (std::size_t i = 0; i < kHandlerCount; ++i) {
        const Handler &handler = kHandlers[i];
        if (wantsJson()) {
            Json one = jsonObject();
            put(one, "handler", handler.name);
            put(one, "does", handler.does);
            put(one, "pipe", handler.pipe);
            put(one, "forms", jsonOfForms(handler));
            append(all, one);
            continue;
        }
        Text forms;
        addForms(handler, forms);
        (void)fputs(forms.get(), out);
    }
    if (wantsJson()) {
        printJson(all);
    }
    return kAccepted;
}

Status startVerb(int, char **) {
    auto *init = loadLibrary() ? find<int32_t()>("frr_process_init") : nullptr;
    if (init == nullptr) {
        return kNotUsable;
    }
    {
        const Watched watched(Watched::kEarnest);
        (void)init(); // its result says nothing
    }
    return prepare() ? recoverAll() : kNotUsable;
}

Status recoverVerb(int count, char **words) {
    const Replay *replay = count == 1 ? findReplay(words[0]) : nullptr;
    if (replay == nullptr) {
        return recoverWhat();
    }
    return prepare() ? recover(*replay) : kNotUsable;
}

Status reportJson(void (*report)()) {
    FILE *printed = scratchFile();
    if (printed == nullptr) {
        complain("no room for the report");
        return kNotUsable;
    }
    {
        const LibraryPrints prints(fileno(printed));
        report();
    }
    Text text;
    rewind(printed);
    text.addRest(printed);
    (void)fclose(printed); // only read from by now
    Json object = jsonObject();
    put(object, "report", linesOf(text.get()));
    printJson(object);
    return kAccepted;
}

Status reportVerb(int, char **) {
    auto *report = prepare() ? find<void()>("swShowOspfConfig") : nullptr;
    if (report == nullptr) {
        return kNotUsable;
    }
    if (wantsJson()) {
        return reportJson(report);
    }
    const LibraryPrints prints(fileno(out));
    report();
    return kAccepted;
}

/// Splits a line at spaces. Words cannot be empty; that is what the command line is for.
int splitLine(char *line, char **words) {
    int count = 0;
    char *rest = line;
    for (char *word = strtok_r(line, " \t\r\n", &rest); word != nullptr && count < kMaxWords;
         word = strtok_r(nullptr, " \t\r\n", &rest)) {
        words[count++] = word;
    }
    words[count] = nullptr;
    return count;
}

Status runLine(char *line) {
    char *words[kMaxWords + 1];
    const int count = splitLine(line, words);
    return count == 0 || words[0][0] == '#' ? kAccepted : runWords(count, words);
}

Status runVerb(int count, char **words) {
    FILE *input = count == 0 ? in : fopen(words[0], "re");
    if (input == nullptr) {
        return wrongUsage("%s: %s", words[0], strerror(errno));
    }
    Status status = kAccepted;
    char *line = nullptr;
    size_t room = 0;
    while (getline(&line, &room, input) >= 0) {
        status = worse(status, runLine(line));
    }
    free(line);
    if (input != in) {
        (void)fclose(input); // only read from
    }
    return status;
}

constexpr VerbText kCallText = {
    "HANDLER [WORD...] [-]",
    "call a handler and print its answer",
    "The words must fit the handler (see handlers); they are handed over exactly as given. With - "
    "as "
    "the last word the rest comes from standard input, one word a line, so that a key need not "
    "stand "
    "in the process list. What a daemon refuses is told on standard error, in its own words. The "
    "store is the front-end's: what it does not have goes with the next apply.",
};

constexpr VerbText kPlanText = {
    "HANDLER [WORD...] [-] | recover ospf|rip|nhrp",
    "print what would be sent",
    "Session by session, with shell commands, pauses, writes into the store and the reply. Nothing "
    "is sent and nothing is changed.",
};

constexpr VerbText kHandlersText = {
    "",
    "list the handlers with their words",
    "A word in lower case is meant as it stands, alternatives are separated by a bar, a range "
    "stands "
    "for a number in it, and a word in capitals is a kind of word.",
};

constexpr VerbText kStartText = {
    "",
    "prepare folders, then replay everything that is stored",
    "What the router does at boot. Ends with a summary of each protocol.",
};

constexpr VerbText kRecoverText = {
    "ospf|rip|nhrp",
    "replay one stored configuration into its daemons",
    "Ends with a summary: sessions sent, accepted, noted (refused without anything missing) and "
    "refused.",
};

constexpr VerbText kShowText = {
    "ospf [neighbors|database|interfaces] | rip | nhrp",
    "print what a daemon knows",
    "Asks the daemon itself; nothing is written into the store.",
};

constexpr VerbText kReportText = {
    "",
    "print the model of the OSPF configuration",
    "The model is that of this process: useful at the end of run.",
};

constexpr VerbText kRunText = {
    "[FILE]",
    "run verbs, one a line, in one process",
    "From standard input without a file. Lines that begin with # are left out. Goes on after a "
    "failure, and ends with the worst status.",
};

constexpr VerbText kDiffText = {
    "[ospf|rip|nhrp...]",
    "print what differs between the store and the daemons",
    "As + and - lines below their context, in the daemons' own words. Ends with 0 when nothing "
    "differs and with 1 when something does. Without a word all three are meant.",
};

constexpr VerbText kApplyText = {
    "[--dry-run] [ospf|rip|nhrp...]",
    "send the daemons what differs from the store",
    "Starts and stops daemons as the store says. What frruci does not know is left alone. With "
    "--dry-run the commands are printed and nothing is sent. Without a protocol all three are "
    "meant.",
};

constexpr VerbText kWatchText = {
    "",
    "stay, and keep the daemons as the store says",
    "Applies what a daemon lacks that was started anew, starts one that stays gone unless watchfrr "
    "does, and applies everything on SIGHUP. Says in the system's log what it did.",
};

constexpr VerbText kDoctorText = {
    "",
    "look for what keeps settings from working",
    "One line for each thing looked at: ok, warning or fault, and what to do. Nothing is changed. "
    "Ends with 0 without a fault, else with 4.",
};

constexpr VerbText kRpcdText = {
    "list | call METHOD",
    "answer as a plugin of rpcd: the ubus object frruci",
    "What /usr/libexec/rpcd/frruci runs. The arguments of a method are a JSON object on standard "
    "input, its answer is one on standard output. What is wrong with a request is told on standard "
    "error; the answer is no object then, which rpcd reports as an invalid argument. Keys are "
    "never shown.",
};

constexpr VerbText kHelpText = {
    "[VERB|HANDLER]",
    "explain a verb, or the words of a handler",
    "",
};

} // namespace

constexpr Verb kVerbs[] = {
    {"call",     kCallText,     Alone::kYes, true,  callVerb        },
    {"plan",     kPlanText,     Alone::kNo,  true,  planVerb        },
    {"handlers", kHandlersText, Alone::kNo,  false, handlersVerb    },
    {"start",    kStartText,    Alone::kYes, false, startVerb       },
    {"recover",  kRecoverText,  Alone::kYes, false, recoverVerb     },
    {"diff",     kDiffText,     Alone::kNo,  false, apply::diffVerb },
    {"apply",    kApplyText,    Alone::kYes, false, apply::applyVerb},
    {"watch",    kWatchText,    Alone::kNo,  false, apply::watchVerb},
    {"show",     kShowText,     Alone::kNo,  false, show            },
    {"report",   kReportText,   Alone::kNo,  false, reportVerb      },
    {"run",      kRunText,      Alone::kNo,  false, runVerb         },
    {"doctor",   kDoctorText,   Alone::kNo,  false, doctor          },
    {"rpcd",     kRpcdText,     Alone::kNo,  true,  rpcd::rpcdVerb  },
    {"help",     kHelpText,     Alone::kNo,  false, help            },
};
constexpr std::size_t kVerbCount = std::size(kVerbs);

const Verb *findVerb(const char *name) {
    for (const Verb &verb : kVerbs) {
        if (equals(verb.name, name)) {
            return &verb;
        }
    }
    return nullptr;
}

namespace {

Status runAlone(const Verb &verb, int count, char **words) {
    const Lock lock;
    return lock.isHeld() ? verb.run(count, words) : kNotUsable;
}

} // namespace

Status runWords(int count, char **words) {
    const Verb *verb = findVerb(words[0]);
    if (verb == nullptr) {
        return wrongUsage("unknown command %s; \"frruci help\" lists them", words[0]);
    }
    ++words;
    --count;
    if (!takeOptions(count, words, !verb->exactWords)) {
        return kWrongUsage;
    }
    moveLongLog();
    return verb->alone == Alone::kYes ? runAlone(*verb, count, words) : verb->run(count, words);
}

} // namespace frruci::host
