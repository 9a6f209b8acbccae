// SPDX-License-Identifier: Apache-2.0
// The shows: one table, one exchange.

#include "host/show.h"

#include "host/exchange.h"
#include "host/json.h"
#include "host/report.h"
#include "host/secrets.h"
#include "host/streams.h"
#include "host/timeout.h"

namespace frruci::host {

namespace {

struct Show {
    const char *what;
    const char *part; ///< the second word; empty for none
    const char *daemon;
    const char *command;
    bool speaksJson; ///< the daemon adds "json" itself
};

constexpr Show kShows[] = {
    {"ospf", "",           "ospfd", "show ip ospf",           true },
    {"ospf", "neighbors",  "ospfd", "show ip ospf neighbor",  true },
    {"ospf", "database",   "ospfd", "show ip ospf database",  true },
    {"ospf", "interfaces", "ospfd", "show ip ospf interface", true },
    {"rip",  "",           "ripd",  "show ip rip status",     false},
    {"rip",  "",           "ripd",  "show ip rip",            false},
    {"nhrp", "",           "nhrpd", "show ip nhrp cache",     true },
};

bool isWanted(const Show &show, int count, char **words) {
    return count >= 1 && count <= 2 && equals(words[0], show.what) &&
           equals(count == 2 ? words[1] : "", show.part);
}

Status complainAbout(const Show &show, const Exchange &exchange, int code, const Text &answer) {
    switch (exchange.reach()) {
    case Reach::kAnswered:
        complain("%s refused \"%s\" (%d): %s", show.daemon, show.command, code, answer.get());
        return kRefused;
    case Reach::kSilent:
        complain("%s did not answer \"%s\" in time", show.daemon, show.command);
        return kNoAnswer;
    default:
        complain("%s cannot be reached", show.daemon);
        return kNotUsable;
    }
}

Status ask(const Show &show, const char *suffix, Text &masked) {
    Exchange exchange(show.daemon, timeoutSeconds());
    Text answer;
    Text command;
    command.addf("%s%s", show.command, suffix);
    int code = exchange.ask("enable", answer);
    if (code == 0) {
        code = exchange.ask(command.get(), answer);
    }
    addMasked(answer.get(), masked);
    return code == 0 ? kAccepted : complainAbout(show, exchange, code, masked);
}

Status showJson(const Show &show, Json all) {
    Text answer;
    const Status status = ask(show, show.speaksJson ? " json" : "", answer);
    if (status != kAccepted) {
        return status;
    }
    Json value = show.speaksJson ? jsonOf(answer.get()) : linesOf(answer.get());
    if (value == nullptr) {
        complain("%s: the answer is not whole JSON (%zu bytes)", show.daemon, answer.size());
        return kNoAnswer;
    }
    put(all, show.command, value);
    return kAccepted;
}

Status showText(const Show &show) {
    Text answer;
    const Status status = ask(show, "", answer);
    if (status == kAccepted) {
        (void)fputs(answer.get(), out);
    }
    return status;
}

} // namespace

Status show(int count, char **words) {
    Json all = jsonObject();
    Status status = kAccepted;
    bool known = false;
    for (const Show &show : kShows) {
        if (isWanted(show, count, words) && status == kAccepted) {
            status = wantsJson() ? showJson(show, all) : showText(show);
            known = true;
        }
    }
    if (!known) {
        return wrongUsage("show what? ospf [neighbors|database|interfaces], rip or nhrp");
    }
    if (wantsJson() && status == kAccepted) {
        printJson(all);
    }
    (void)fflush(out);
    return status;
}

} // namespace frruci::host
