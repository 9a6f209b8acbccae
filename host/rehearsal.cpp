// SPDX-License-Identifier: Apache-2.0
// The answers of a world in which every command works.

#include "host/rehearsal.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include "host/exchange.h"
#include "host/text.h"

namespace frruci::host {

namespace {

constexpr const char *kProcessQuestion = "ps -w | grep -v grep | grep ";
constexpr const char *kVlanQuestion = "lua -e ";
constexpr const char *kAnswerNames[] = {"/cli_vid", "/cli_ipaddr"};

/// Its answer files are shared with requests that are made in earnest, so a rehearsal's go into a
/// folder of its own. A module that does not write them by io.open still writes the shared ones.
constexpr const char *kOwnAnswers =
    "lua -e 'local open = io.open function io.open(path, ...) return open(path:gsub(\"^/tmp/cli_\","
    " \"%s/cli_\"), ...) end' -e ";

int daemonEnd = -1;
List<int> killed;
List<const char *> started;
char folder[] = "/tmp/frruci.XXXXXX";
bool hasFolder = false;

/// A descriptor from which the text is read, and then its end; -1 when there is none.
int hold(const Text &text) {
    const int held = memfd_create("answer", MFD_CLOEXEC);
    if (write(held, text.get(), text.size()) < 0 || lseek(held, 0, SEEK_SET) != 0) {
        (void)close(held);
        return -1;
    }
    return held;
}

void readAll(FILE *file, Text &text) {
    char bytes[4096];
    std::size_t count = 0;
    while ((count = fread(bytes, 1, sizeof bytes, file)) > 0) {
        text.add(bytes, count);
    }
}

void runListing(const char *command, Text &text) {
    FILE *listing = popen(command, "r");
    if (listing != nullptr) {
        readAll(listing, text);
        (void)pclose(listing); // what it says is in its lines
    }
}

bool isKilled(const char *line) {
    const int process = static_cast<int>(strtol(line, nullptr, 10));
    for (const int dead : killed) {
        if (dead == process) {
            return true;
        }
    }
    return false;
}

/// The lines of the process list that name a daemon, as they would be by now.
void listProcesses(const char *name, Text &lines) {
    Text all;
    runListing("ps -w", all);
    for (const char *line = all.get(); *line != '\0';) {
        const std::size_t length = strcspn(line, "\n");
        char *one = copyOf(line, length);
        if (strstr(one, name) != nullptr && strstr(one, "grep") == nullptr && !isKilled(one)) {
            lines.addf("%s\n", one);
        }
        free(one);
        line += length + (line[length] == '\n' ? 1 : 0);
    }
    for (const char *daemon : started) {
        if (strstr(daemon, name) != nullptr) {
            lines.addf("999999 root %s\n", daemon);
        }
    }
}

void answerListing(FrruciEvent &event) {
    Text lines;
    if (startsWith(event.text, kProcessQuestion)) {
        listProcesses(event.text + strlen(kProcessQuestion), lines);
    } else {
        runListing(event.text, lines); // the others only look, too
    }
    event.fd = hold(lines);
}

void startDaemons(const char *command) {
    for (const char *daemon : kDaemons) {
        if (strstr(command, daemon) != nullptr) {
            (void)started.add(daemon);
        }
    }
}

void askFrontEnd(const char *question) {
    hasFolder = hasFolder || mkdtemp(folder) != nullptr;
    Text command;
    command.addf(kOwnAnswers, folder);
    command.add(question + strlen(kVlanQuestion));
    if (hasFolder && system(command.get()) != 0) {
        // What went wrong shows in the answer, as it does in earnest.
    }
}

void answerShell(const FrruciEvent &event) {
    if (startsWith(event.text, kVlanQuestion)) {
        askFrontEnd(event.text);
    } else {
        startDaemons(event.text);
    }
}

void answerFile(FrruciEvent &event) {
    Text path;
    path.addf("%s%s", folder, strrchr(event.place, '/'));
    event.fd = open(path.get(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
}

void answerConnect(FrruciEvent &event) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        event.result = -1;
        return;
    }
    (void)close(daemonEnd); // the session before has ended
    event.fd = ends[0];
    daemonEnd = ends[1];
}

void answerCommand(FrruciEvent &event) {
    static constexpr char kAcceptedWithoutWords[4] = {};
    if (send(daemonEnd, kAcceptedWithoutWords, sizeof kAcceptedWithoutWords, MSG_NOSIGNAL) < 0) {
        event.result = -1;
    }
}

} // namespace

void rehearse(FrruciEvent &event) {
    switch (event.kind) {
    case FRRUCI_CONNECT:
        return answerConnect(event);
    case FRRUCI_COMMAND:
        return answerCommand(event);
    case FRRUCI_LISTING:
        return answerListing(event);
    case FRRUCI_SHELL:
        return answerShell(event);
    case FRRUCI_FILE:
        return answerFile(event);
    case FRRUCI_KILL:
        (void)killed.add(static_cast<int>(event.number));
        return;
    default:
        return;
    }
}

void endRehearsal() {
    if (!hasFolder) {
        return;
    }
    for (const char *name : kAnswerNames) {
        Text path;
        path.addf("%s%s", folder, name);
        (void)unlink(path.get()); // only there when it was asked for
    }
    (void)rmdir(folder);
}

} // namespace frruci::host
