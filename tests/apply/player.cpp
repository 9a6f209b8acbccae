// SPDX-License-Identifier: Apache-2.0
// Plays cases that need no daemon: a running configuration and a replay in, the difference and the
// commands out. README.md beside this file describes the form. Needs no C++ runtime.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "apply/difference.h"
#include "apply/running.h"
#include "apply/wanted.h"
#include "host/text.h"

namespace {

using namespace frruci::apply;

constexpr std::size_t kIndent = 4;
constexpr std::size_t kMaxUnwanted = 16;

struct TargetName {
    const char *name;
    Target target;
};

constexpr TargetName kTargets[] = {
    {"ospfd", Target::Ospfd},
    {"ripd",  Target::Ripd },
    {"nhrpd", Target::Nhrpd},
    {"zebra", Target::Zebra}
};

/// A text that grows.
struct Text {
    char *bytes = nullptr;
    std::size_t size = 0;

    Text() { clear(); }
    ~Text() { free(bytes); }
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;

    void clear() {
        bytes = static_cast<char *>(frruci::host::grow(bytes, 1));
        bytes[0] = '\0';
        size = 0;
    }
    void addLine(const char *line) {
        const std::size_t count = strlen(line);
        bytes = static_cast<char *>(frruci::host::grow(bytes, size + count + 2));
        memcpy(bytes + size, line, count);
        size += count;
        bytes[size++] = '\n';
        bytes[size] = '\0';
    }
};

const char *path;
int lineNumber = 0;
int failures = 0;
char pointToPoint[64] = {};

[[noreturn]] void stop(const char *what) {
    (void)fprintf(stderr, "%s:%d: %s\n", path, lineNumber, what);
    exit(2);
}

bool isPointToPoint(const char *interface) {
    return strcmp(interface, pointToPoint) == 0;
}

Target targetNamed(const char *name) {
    for (const TargetName &row : kTargets) {
        if (strcmp(row.name, name) == 0) {
            return row.target;
        }
    }
    stop("unknown daemon");
}

/// One case: what is given, and what came out of it once it is asked for.
class Case {
public:
    Case(const char *name, Target target) : name_(name), target_(target) {
        surroundings.isPointToPoint = isPointToPoint;
    }
    ~Case() {
        if (checks_ == 0) {
            stop("a case that checks nothing");
        }
    }
    Case(const Case &) = delete;
    Case &operator=(const Case &) = delete;

    Surroundings surroundings;
    bool showKeys = false;

    void running(const char *text) {
        readRunning(target_, text, running_);
        surroundings.majorVersion = majorVersion(text);
    }

    void session(char *line) {
        replay_.beginSession();
        char *rest = nullptr;
        for (char *command = strtok_r(line, "|", &rest); command != nullptr;
             command = strtok_r(nullptr, "|", &rest)) {
            command += *command == ' ' ? 1 : 0;
            const std::size_t bytes = strlen(command);
            if (rest != nullptr && *rest != '\0' && bytes > 0 && command[bytes - 1] == ' ') {
                command[bytes - 1] = '\0';
            }
            replay_.command(command);
        }
    }

    void absent(const char *where, const char *text) {
        char command[kLineBytes];
        (void)snprintf(command, sizeof command, "no %s", text);
        replay_.command(wanted_.arena().copy(where), command);
    }

    void unwanted(const char *where, const char *words) {
        if (unwantedCount_ == kMaxUnwanted) {
            stop("too many unwanted lines");
        }
        unwanted_[unwantedCount_++] = {arena_.copy(where), arena_.copy(words)};
    }

    void expectDifference(const char *expected) {
        char *text = nullptr;
        std::size_t size = 0;
        FILE *out = open_memstream(&text, &size);
        printChanges(out, changes(), showKeys);
        (void)fclose(out); // memory does not fail here
        expect("diff", expected, text);
        free(text);
    }

    void expectCommands(const char *expected) {
        Text text;
        const Steps steps = stepsFor(arena_, changes(), wanted_);
        for (std::size_t i = 0; i < steps.count; ++i) {
            char room[kLineBytes];
            text.addLine(maskedText(steps.items[i], showKeys, room));
        }
        expect("commands", expected, text.bytes);
    }

    void expectImpossible(const char *expected) {
        Text text;
        for (const Impossible *at = replay_.impossible(); at != nullptr; at = at->next) {
            text.addLine(at->text);
        }
        expect("impossible", expected, text.bytes);
    }

private:
    const Changes &changes() {
        if (!settled_) {
            running_.settle();
            settleWanted(wanted_, running_, surroundings);
            if (isOnlyAddedTo(target_)) {
                keepOthers(running_, wanted_, unwanted_, unwantedCount_);
            }
            changes_ = difference(arena_, running_, wanted_);
            settled_ = true;
        }
        return changes_;
    }

    void expect(const char *what, const char *expected, const char *got) {
        ++checks_;
        if (strcmp(expected, got) != 0) {
            ++failures;
            (void)printf("%s:%d: case %s: %s: expected\n%sgot\n%s", path, lineNumber, name_, what,
                         expected, got);
        }
    }

    const char *name_;
    Arena arena_;
    Settings running_{arena_};
    Settings wanted_{arena_};
    Target target_;
    Replay replay_{target_, wanted_};
    Unwanted unwanted_[kMaxUnwanted] = {};
    std::size_t unwantedCount_ = 0;
    bool settled_ = false;
    Changes changes_;
    int checks_ = 0;
};

/// The lines of the file, and the one being played.
struct File {
    char *lines[20000];
    int count = 0;
    int at = 0;
} file;

void readFile() {
    FILE *stream = fopen(path, "r");
    char *line = nullptr;
    std::size_t room = 0;
    ssize_t bytes = 0;
    while (stream != nullptr && (bytes = getline(&line, &room, stream)) >= 0) {
        line[strcspn(line, "\n")] = '\0';
        if (file.count == sizeof file.lines / sizeof *file.lines) {
            stop("too many lines");
        }
        file.lines[file.count++] = line;
        line = nullptr;
    }
    free(line);
    if (file.count == 0) {
        stop("nothing to play");
    }
    (void)fclose(stream); // only read from
}

/// The indented lines behind the present one.
void takeBlock(Text &block) {
    static constexpr const char *kIndentation = "    ";
    while (file.at < file.count && strncmp(file.lines[file.at], kIndentation, kIndent) == 0) {
        block.addLine(file.lines[file.at++] + kIndent);
    }
}

void playReplay(Case &played) {
    while (file.at < file.count && strncmp(file.lines[file.at], "    ", kIndent) == 0) {
        played.session(file.lines[file.at++] + kIndent);
    }
}

/// Words in the style of "interface eth1.2 | ip ospf priority 0".
void playPair(Case &played, char *words, void (Case::*play)(const char *, const char *)) {
    char *bar = strstr(words, " | ");
    if (bar == nullptr) {
        stop("needs a context, a bar and words");
    }
    *bar = '\0';
    (played.*play)(words, bar + 3);
}

void playLine(Case &played, char *line) {
    char *words = line + strcspn(line, " ");
    if (*words != '\0') {
        *words++ = '\0';
    }
    const auto is = [line](const char *keyword) { return strcmp(line, keyword) == 0; };
    if (is("maximum-paths")) {
        played.surroundings.maximumPaths = strtoul(words, nullptr, 10);
    } else if (is("point-to-point")) {
        (void)snprintf(pointToPoint, sizeof pointToPoint, "%s", words);
    } else if (is("show-keys")) {
        played.showKeys = true;
    } else if (is("absent")) {
        playPair(played, words, &Case::absent);
    } else if (is("unwanted")) {
        playPair(played, words, &Case::unwanted);
    } else if (is("replay")) {
        playReplay(played);
    } else {
        Text block;
        takeBlock(block);
        if (is("running")) {
            played.running(block.bytes);
        } else if (is("diff")) {
            played.expectDifference(block.bytes);
        } else if (is("commands")) {
            played.expectCommands(block.bytes);
        } else if (is("impossible")) {
            played.expectImpossible(block.bytes);
        } else {
            stop("unknown keyword");
        }
    }
}

/// "case DAEMON: NAME", up to the next one.
void playCase(char *line) {
    char *colon = strchr(line, ':');
    if (strncmp(line, "case ", 5) != 0 || colon == nullptr) {
        stop("expected case DAEMON: NAME");
    }
    *colon = '\0';
    pointToPoint[0] = '\0';
    Case played(colon + 1 + strspn(colon + 1, " "), targetNamed(line + 5));
    while (file.at < file.count && strncmp(file.lines[file.at], "case ", 5) != 0) {
        lineNumber = file.at + 1;
        char *next = file.lines[file.at++];
        if (next[0] != '\0' && next[0] != '#') {
            playLine(played, next);
        }
    }
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 2) {
        (void)fprintf(stderr, "usage: player FILE\n");
        return 2;
    }
    path = argv[1];
    readFile();
    int cases = 0;
    while (file.at < file.count) {
        lineNumber = file.at + 1;
        char *line = file.lines[file.at++];
        if (line[0] != '\0' && line[0] != '#') {
            playCase(line);
            ++cases;
        }
    }
    (void)printf("%d cases, %d failures\n", cases, failures);
    for (int i = 0; i < file.count; ++i) {
        free(file.lines[i]);
    }
    return failures == 0 && cases > 0 ? 0 : 1;
}
