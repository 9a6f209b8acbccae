// SPDX-License-Identifier: Apache-2.0
// Prints the tables for people.

#include "host/help.h"

#include "host/handlers.h"
#include "host/json.h"
#include "host/options.h"
#include "host/streams.h"
#include "host/verbs.h"

namespace frruci::host {

namespace {

struct StatusText {
    Status status;
    const char *means;
};

constexpr StatusText kStatuses[] = {
    {kAccepted,   "all that matters was accepted"                                     },
    {kRefused,    "a daemon refused; the command and the reason are on standard error"},
    {kWrongUsage, "wrong usage; nothing was sent"                                     },
    {kNoAnswer,   "no answer in time"                                                 },
    {kNotUsable,  "a daemon, the library or the store cannot be used"                 },
};

constexpr const char *kEnvironment = "FRRUCI_LIBRARY names another libfrruci.so.";

constexpr std::size_t kColumns = 78;

/// Prints a text in lines that fit a terminal.
void printWrapped(const char *text, FILE *to) {
    std::size_t column = 0;
    while (*text != '\0') {
        const std::size_t length = strcspn(text, " ");
        const bool fits = column + 1 + length <= kColumns;
        (void)fprintf(to, "%s%.*s",
                      column == 0 ? ""
                      : fits      ? " "
                                  : "\n",
                      static_cast<int>(length), text);
        column = column != 0 && fits ? column + 1 + length : length;
        text += length + strspn(text + length, " ");
    }
    (void)fputc('\n', to);
}

void printVerb(const Verb &verb) {
    (void)fprintf(out, "usage: frruci [OPTION...] %s%s%s\n\n%s\n", verb.name,
                  *verb.text.words == '\0' ? "" : " ", verb.text.words, verb.text.does);
    if (*verb.text.details != '\0') {
        (void)fputc('\n', out);
        printWrapped(verb.text.details, out);
    }
}

void printHandler(const Handler &handler) {
    Text forms;
    addForms(handler, forms);
    (void)fprintf(out, "%s: %s\n\n%s", handler.name, handler.does, forms.get());
}

Json jsonOfVerb(const Verb &verb) {
    Json object = jsonObject();
    put(object, "verb", verb.name);
    put(object, "words", verb.text.words);
    put(object, "does", verb.text.does);
    put(object, "details", verb.text.details);
    return object;
}

void printAllJson() {
    Json all = jsonArray();
    for (std::size_t i = 0; i < kVerbCount; ++i) {
        append(all, jsonOfVerb(kVerbs[i]));
    }
    printJson(all);
}

// ---- the manual page ----

void printTroff(const char *text) {
    for (; *text != '\0'; ++text) {
        if (*text == '-') {
            (void)fputs("\\-", out);
        } else if (*text == '\\') {
            (void)fputs("\\e", out);
        } else {
            (void)fputc(*text, out);
        }
    }
}

void printTagged(const char *tag, const char *rest, const char *text) {
    (void)fputs(".TP\n.B \"", out);
    printTroff(tag);
    (void)fputs("\"", out);
    if (rest != nullptr && *rest != '\0') {
        (void)fputs("\n.RI \\ ", out);
        printTroff(rest);
    }
    (void)fputs("\n", out);
    printTroff(text);
    (void)fputs("\n", out);
}

void printManual() {
    (void)fprintf(out,
                  ".TH FRRUCI 8 \"\" \"frruci %s\"\n.SH NAME\nfrruci \\- routing settings "
                  "for the FRRouting daemons\n.SH SYNOPSIS\n.B frruci\n[OPTION...] COMMAND "
                  "[WORD...]\n.SH COMMANDS\n",
                  FRRUCI_VERSION);
    for (std::size_t i = 0; i < kVerbCount; ++i) {
        const Verb &verb = kVerbs[i];
        Text heading;
        heading.addf("%s %s", verb.name, verb.text.words);
        Text text;
        text.addf("%s.%s%s", verb.text.does, *verb.text.details == '\0' ? "" : "\n",
                  verb.text.details);
        printTagged(heading.get(), nullptr, text.get());
    }
    (void)fputs(".SH OPTIONS\n", out);
    for (std::size_t i = 0; i < kOptionCount; ++i) {
        Text heading;
        heading.addf("%s %s", kOptions[i].name,
                     kOptions[i].value == nullptr ? "" : kOptions[i].value);
        printTagged(heading.get(), nullptr, kOptions[i].does);
    }
    (void)fputs(".SH HANDLERS\n.nf\n", out);
    for (std::size_t i = 0; i < kHandlerCount; ++i) {
        Text forms;
        addForms(kHandlers[i], forms);
        printTroff(forms.get());
    }
    (void)fputs(".fi\n.SH EXIT STATUS\n", out);
    for (const StatusText &row : kStatuses) {
        Text number;
        number.addf("%d", row.status);
        printTagged(number.get(), nullptr, row.means);
    }
    (void)fprintf(out, ".SH ENVIRONMENT\n%s\n", kEnvironment);
}

} // namespace

void printUsage(FILE *to) {
    (void)fprintf(to, "usage: frruci [OPTION...] COMMAND [WORD...]\n\ncommands:\n");
    for (std::size_t i = 0; i < kVerbCount; ++i) {
        (void)fprintf(to, "  %-9s %s\n", kVerbs[i].name, kVerbs[i].text.does);
    }
    (void)fprintf(to, "\noptions:\n");
    for (std::size_t i = 0; i < kOptionCount; ++i) {
        Text heading;
        heading.addf("%s %s", kOptions[i].name,
                     kOptions[i].value == nullptr ? "" : kOptions[i].value);
        (void)fprintf(to, "  %-18s %s\n", heading.get(), kOptions[i].does);
    }
    (void)fprintf(to, "  --help, --version\n\nexit status:\n");
    for (const StatusText &row : kStatuses) {
        (void)fprintf(to, "  %d  %s\n", row.status, row.means);
    }
    (void)fprintf(to, "\n\"frruci help COMMAND\" says more. %s\n", kEnvironment);
}

Status help(int count, char **words) {
    if (count == 0) {
        if (wantsJson()) {
            printAllJson();
        } else {
            printUsage(out);
        }
        return kAccepted;
    }
    const Verb *verb = findVerb(words[0]);
    const Handler *handler = findHandler(words[0]);
    if (equals(words[0], "--man")) {
        printManual();
    } else if (verb != nullptr && wantsJson()) {
        printJson(jsonOfVerb(*verb));
    } else if (verb != nullptr) {
        printVerb(*verb);
    } else if (handler != nullptr) {
        printHandler(*handler);
    } else {
        return wrongUsage("there is no help on %s", words[0]);
    }
    return kAccepted;
}

} // namespace frruci::host
