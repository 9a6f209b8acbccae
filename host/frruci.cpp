// SPDX-License-Identifier: Apache-2.0
// The command line of the host program.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/call.h"
#include "host/handlers.h"
#include "host/library.h"

namespace frruci::host {

namespace {

constexpr unsigned kDefaultTimeoutSeconds = 10;
constexpr int kMaxWords = 64;

unsigned timeoutSeconds = kDefaultTimeoutSeconds;

struct Command {
    const char *name;
    const char *words; // for people
    const char *help;
    Status (*run)(int count, char **words);
};

Status callCommand(int count, char **words);
Status handlersCommand(int count, char **words);
Status startCommand(int count, char **words);
Status recoverCommand(int count, char **words);
Status reportCommand(int count, char **words);
Status showCommand(int count, char **words);
Status runCommand(int count, char **words);

constexpr Command kCommands[] = {
    {"call",     "[--timeout SECONDS] HANDLER [ARG…]",
     "call a handler with exactly these words and print its answer",                                                                callCommand    },
    {"handlers", "",                                     "list the handlers with their words",                                      handlersCommand},
    {"start",    "",                                     "prepare folders, views and models, then replay the stored configuration",
     startCommand                                                                                                                                  },
    {"recover",  "ospf|rip",                             "replay one stored configuration into its daemon",                         recoverCommand },
    {"report",   "",                                     "print the model of the OSPF configuration",                               reportCommand  },
    {"show",     "rip|nhrp-cache",                       "print RIP status and routes, or the NHRP cache as JSON",
     showCommand                                                                                                                                   },
    {"run",      "[FILE]",                               "run commands, one a line, in one process (standard input without FILE)",
     runCommand                                                                                                                                    },
};

void printUsage(FILE *out) {
    (void)fprintf(out, "usage: frruci [--timeout SECONDS] COMMAND [WORD…]\n\ncommands:\n");
    for (const Command &command : kCommands) {
        (void)fprintf(out, "  %-9s %-15s %s\n", command.name, command.words, command.help);
    }
    (void)fprintf(
        out, "\noptions:\n"
             "  --timeout SECONDS   how long a handler may take (default 10)\n"
             "  --help, --version\n\n"
             "Exit status: 0 answered \"ok\", 1 answered \"fail\", 2 wrong usage, 3 no answer,\n"
             "4 the library cannot be used. FRRUCI_LIBRARY names another libfrruci.so.\n");
}

Status wrongUsage(const char *what) {
    (void)fprintf(stderr, "frruci: %s\n", what);
    return kWrongUsage;
}

bool ready() {
    return loadLibrary() && prepare();
}

bool readTimeout(const char *text) {
    char *end = nullptr;
    const unsigned long seconds = strtoul(text, &end, 10);
    if (*text < '0' || *text > '9' || *end != '\0' || seconds == 0 || seconds > 86400) {
        return false;
    }
    timeoutSeconds = static_cast<unsigned>(seconds);
    return true;
}

/// Takes --timeout SECONDS from the front of the words; false when the seconds are no number.
bool takeTimeout(int &count, char **&words) {
    while (count >= 1 && strcmp(words[0], "--timeout") == 0) {
        if (count == 1 || !readTimeout(words[1])) {
            (void)fprintf(stderr, "frruci: --timeout takes whole seconds, 1 to 86400\n");
            return false;
        }
        count -= 2;
        words += 2;
    }
    return true;
}

Status callCommand(int count, char **words) {
    if (!takeTimeout(count, words)) {
        return kWrongUsage;
    }
    if (count < 1) {
        return wrongUsage("call needs a handler");
    }
    const Handler *handler = findHandler(words[0]);
    if (handler == nullptr) {
        (void)fprintf(stderr, "frruci: unknown handler %s; the handlers are:\n", words[0]);
        listHandlers(stderr);
        return kWrongUsage;
    }
    if (!ready()) {
        return kNoLibrary;
    }
    return callHandler(*handler, count - 1, words + 1, timeoutSeconds);
}

Status handlersCommand(int, char **) {
    listHandlers(stdout);
    return kAnsweredOk;
}

Status runEntry(const char *name) {
    auto *entry = find<void()>(name);
    if (entry == nullptr) {
        return kNoLibrary;
    }
    entry();
    (void)fflush(stdout);
    return kAnsweredOk;
}

Status startCommand(int, char **) {
    if (!loadLibrary() || runEntry("frr_process_init") != kAnsweredOk || !prepare()) {
        return kNoLibrary;
    }
    const Status ospf = runEntry("ospf_cfg_recovery");
    return ospf == kAnsweredOk ? runEntry("rip_cfg_recovery") : ospf;
}

Status recoverCommand(int count, char **words) {
    if (count == 1 && strcmp(words[0], "ospf") == 0) {
        return ready() ? runEntry("ospf_cfg_recovery") : kNoLibrary;
    }
    if (count == 1 && strcmp(words[0], "rip") == 0) {
        return ready() ? runEntry("rip_cfg_recovery") : kNoLibrary;
    }
    return wrongUsage("recover what? ospf or rip");
}

Status reportCommand(int, char **) {
    return ready() ? runEntry("swShowOspfConfig") : kNoLibrary;
}

Status showRip() {
    static constexpr const char *kShows[] = {"swRipShowIpRipStatus", "swRipShowIpRip"};
    for (const char *name : kShows) {
        auto *show = find<uint32_t()>(name);
        if (show == nullptr) {
            return kNoLibrary;
        }
        const uint32_t result = show();
        (void)fflush(stdout);
        if (result != 0) {
            (void)fprintf(stderr, "frruci: ripd did not answer\n");
            return kAnsweredFail;
        }
    }
    return kAnsweredOk;
}

Status showNhrpCache() {
    static constexpr const char *kPhrase[] = {"show", "ip", "nhrp", "cache"};
    char *words[5] = {};
    for (int i = 0; i < 4; ++i) {
        words[i] = const_cast<char *>(kPhrase[i]); // handlers do not write to their words
    }
    Handler show = *findHandler("process_nhrp_show");
    show.ending = Ending::Json;
    return callHandler(show, 4, words, timeoutSeconds);
}

Status showCommand(int count, char **words) {
    if (count == 1 && strcmp(words[0], "rip") == 0) {
        return ready() ? showRip() : kNoLibrary;
    }
    if (count == 1 && strcmp(words[0], "nhrp-cache") == 0) {
        return ready() ? showNhrpCache() : kNoLibrary;
    }
    return wrongUsage("show what? rip or nhrp-cache");
}

Status runWords(int count, char **words) {
    for (const Command &command : kCommands) {
        if (strcmp(command.name, words[0]) == 0) {
            return command.run(count - 1, words + 1);
        }
    }
    (void)fprintf(stderr, "frruci: unknown command %s\n", words[0]);
    printUsage(stderr);
    return kWrongUsage;
}

/// Splits a line at blanks. Words cannot be empty; that is what the command line is for.
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

Status worse(Status a, Status b) {
    return a > b ? a : b;
}

Status runCommand(int count, char **words) {
    FILE *input = count == 0 ? stdin : fopen(words[0], "r");
    if (input == nullptr) {
        perror(words[0]);
        return kWrongUsage;
    }
    Status status = kAnsweredOk;
    char *line = nullptr;
    size_t room = 0;
    while (getline(&line, &room, input) >= 0) {
        char *lineWords[kMaxWords + 1];
        const int lineCount = splitLine(line, lineWords);
        if (lineCount > 0 && lineWords[0][0] != '#') {
            status = worse(status, runWords(lineCount, lineWords));
        }
    }
    free(line);
    if (input != stdin) {
        (void)fclose(input); // only read from
    }
    return status;
}

Status run(int count, char **words) {
    if (!takeTimeout(count, words)) {
        return kWrongUsage;
    }
    if (count == 1 && strcmp(words[0], "--help") == 0) {
        printUsage(stdout);
        return kAnsweredOk;
    }
    if (count == 1 && strcmp(words[0], "--version") == 0) {
        (void)printf("frruci %s\n", FRRUCI_VERSION);
        return kAnsweredOk;
    }
    if (count < 1) {
        printUsage(stderr);
        return kWrongUsage;
    }
    return runWords(count, words);
}

} // namespace

} // namespace frruci::host

int main(int argc, char **argv) {
    return frruci::host::run(argc - 1, argv + 1);
}
