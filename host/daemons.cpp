// SPDX-License-Identifier: Apache-2.0
// Looks at /proc, at PATH, and asks the daemons.

#include "host/daemons.h"

#include <cstdio>
#include <dirent.h>
#include <unistd.h>

#include "host/timeout.h"

namespace frruci::host {

namespace {

constexpr unsigned kPatienceSeconds = 3;

constexpr const char *kOthersOnZebra[] = {"bgpd",  "staticd", "ospf6d", "ripngd", "isisd",  "pimd",
                                          "pim6d", "ldpd",    "eigrpd", "babeld", "sharpd", "pbrd",
                                          "bfdd",  "fabricd", "vrrpd",  "pathd"};

constexpr const char *kProgram = "frruci";
constexpr const char *kWatchVerb = "watch";

/// The first bytes of a process's file; false when it is gone.
bool readOf(const char *process, const char *file, char *bytes, std::size_t room,
            std::size_t &count) {
    char path[64];
    (void)snprintf(path, sizeof path, "/proc/%.20s/%s", process, file);
    FILE *stream = fopen(path, "re");
    if (stream == nullptr) {
        return false;
    }
    count = fread(bytes, 1, room, stream);
    (void)fclose(stream); // only read from
    return true;
}

/// The process namespace of a process, empty when nobody may know it.
void spaceOf(const char *process, char (&space)[64]) {
    char path[64];
    (void)snprintf(path, sizeof path, "/proc/%.20s/ns/pid", process);
    const ssize_t length = readlink(path, space, sizeof space - 1);
    space[length < 0 ? 0 : length] = '\0';
}

/// The program leaves nothing of its words in its command line but the verb.
bool isWatch(const char *process) {
    char words[256];
    std::size_t count = 0;
    if (!readOf(process, "cmdline", words, sizeof words - 1, count)) {
        return false;
    }
    words[count] = '\0';
    const char *end = words + count;
    const char *verb = words + strlen(words) + 1;
    while (verb < end && *verb == '\0') {
        ++verb;
    }
    return verb < end && equals(verb, kWatchVerb);
}

} // namespace

bool isInstalled(const char *program) {
    const char *path = getenv("PATH");
    for (const char *at = path == nullptr ? "/usr/sbin:/usr/bin:/sbin:/bin" : path; *at != '\0';) {
        const std::size_t length = strcspn(at, ":");
        Text full;
        full.add(at, length);
        full.addf("/%s", program);
        if (access(full.get(), X_OK) == 0) {
            return true;
        }
        at += length + (at[length] == ':' ? 1 : 0);
    }
    return false;
}

std::span<const char *const> othersOnZebra() {
    return kOthersOnZebra;
}

Processes::Processes() {
    DIR *processes = opendir("/proc");
    char here[64];
    spaceOf("self", here);
    for (const dirent *entry = nullptr;
         processes != nullptr && (entry = readdir(processes)) != nullptr;) {
        char name[32];
        char space[64];
        std::size_t count = 0;
        if (*entry->d_name < '0' || *entry->d_name > '9' ||
            !readOf(entry->d_name, "comm", name, sizeof name - 1, count)) {
            continue;
        }
        // What runs in a container is not on this router.
        spaceOf(entry->d_name, space);
        if (*space != '\0' && !equals(space, here)) {
            continue;
        }
        name[count] = '\0';
        name[strcspn(name, "\n")] = '\0';
        names_.add(copyOf(name));
        hasWatch_ = hasWatch_ || (equals(name, kProgram) && isWatch(entry->d_name));
    }
    if (processes != nullptr) {
        (void)closedir(processes); // only read from
    }
}

Processes::~Processes() {
    for (char *name : names_) {
        free(name);
    }
    names_.release();
}

bool Processes::has(const char *name) const {
    for (const char *other : names_) {
        if (equals(other, name)) {
            return true;
        }
    }
    return false;
}

unsigned shortPatience() {
    return timeoutSeconds() < kPatienceSeconds ? timeoutSeconds() : kPatienceSeconds;
}

void greet(const char *daemon, Greeting &greeting) {
    static constexpr const char *kName = "FRRouting ";
    Exchange exchange(daemon, shortPatience());
    Text answer;
    const bool answered = exchange.ask("show version", answer) == 0;
    greeting.reach = exchange.reach();
    const char *name = answered ? strstr(answer.get(), kName) : nullptr;
    if (name != nullptr) {
        name += strlen(kName);
        greeting.version.add(name, strcspn(name, " \r\n"));
    }
}

} // namespace frruci::host
