// SPDX-License-Identifier: Apache-2.0
// The notes of this process, and a file of lines whose words are separated by tabs:
//
//     1732200000 3
//     ospf ospfd interface eth1.2 ip ospf cost 70000 % Unknown command

#include "apply/refusals.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "apply/report.h"
#include "host/lock.h"
#include "host/text.h"

namespace frruci::apply {

namespace {

constexpr const char *kFile = "applied";
constexpr std::size_t kFields = 5;
constexpr std::size_t kTargets = 4;

/// A line of the file, its fields in their order.
struct Note {
    char *fields[kFields];
};

struct Notes {
    const Protocol *protocol; ///< whose notes are made now; null for nobody's
    host::List<Note> refused;
    host::List<const char *> applied; ///< protocols about which the notes are complete
    std::size_t changes[kTargets];    ///< a retry has less to send than the first try
    bool areQuiet;
};

Notes notes = {};

/// In one field of one line.
char *fieldOf(const char *text) {
    char *field = host::copyOf(text);
    for (char *at = field; *at != '\0'; ++at) {
        *at = *at == '\t' || *at == '\n' || *at == '\r' ? ' ' : *at;
    }
    return field;
}

void release(Note &note) {
    for (char *field : note.fields) {
        free(field);
    }
}

void release(host::List<Note> &list) {
    for (Note &note : list) {
        release(note);
    }
    list.release();
}

bool isSame(const Note &a, const Note &b) {
    for (std::size_t i = 0; i < kFields; ++i) {
        if (!host::equals(a.fields[i], b.fields[i])) {
            return false;
        }
    }
    return true;
}

void addOnce(host::List<Note> &list, Note note) {
    for (const Note &other : list) {
        if (isSame(other, note)) {
            return release(note);
        }
    }
    list.add(note);
}

/// Takes the protocol's notes out of a list.
void drop(host::List<Note> &list, const char *protocol) {
    host::List<Note> kept;
    for (Note &note : list) {
        if (host::equals(note.fields[0], protocol)) {
            release(note);
        } else {
            kept.add(note);
        }
    }
    list.release();
    list = kept;
}

void hearAll(const host::List<Note> &list,
             void (*hear)(const char *protocol, const Refusal &refusal, void *context),
             void *context) {
    for (const Note &note : list) {
        hear(note.fields[0], {note.fields[1], note.fields[2], note.fields[3], note.fields[4]},
             context);
    }
}

// ---- the file ----

void addPath(host::Text &path, const char *suffix) {
    path.addf("%s/%s%s", host::kFolder, kFile, suffix);
}

/// Splits a line at its tabs; false when it has another number of fields.
bool readNote(char *line, Note &note) {
    char *rest = line;
    for (std::size_t i = 0; i < kFields; ++i) {
        const char *field = strsep(&rest, "\t\n");
        if (field == nullptr) {
            return false;
        }
        note.fields[i] = const_cast<char *>(field);
    }
    return true;
}

/// Two numbers.
bool readHead(const char *line, Saved &saved) {
    char *tab = nullptr;
    saved.time = strtoll(line, &tab, 10);
    if (tab == line || *tab != '\t') {
        return false;
    }
    char *end = nullptr;
    saved.changes = strtoul(tab + 1, &end, 10);
    return end != tab + 1 && *end == '\n';
}

/// False without a file.
bool readFile(Saved &saved, host::List<Note> &list) {
    host::Text path;
    addPath(path, "");
    const int fd = open(path.get(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    FILE *file = fd < 0 ? nullptr : fdopen(fd, "r");
    if (file == nullptr) {
        return false;
    }
    char *line = nullptr;
    std::size_t room = 0;
    const bool begins = getline(&line, &room, file) > 0 && readHead(line, saved);
    while (begins && getline(&line, &room, file) > 0) {
        Note note = {};
        if (readNote(line, note)) {
            for (char *&field : note.fields) {
                field = host::copyOf(field);
            }
            list.add(note);
        }
    }
    free(line);
    (void)fclose(file); // only read from
    return begins;
}

bool writeLines(FILE *file, const Saved &saved, const host::List<Note> &list) {
    (void)fprintf(file, "%lld\t%zu\n", saved.time, saved.changes);
    for (const Note &note : list) {
        for (std::size_t i = 0; i < kFields; ++i) {
            (void)fprintf(file, "%s%c", note.fields[i], i + 1 < kFields ? '\t' : '\n');
        }
    }
    return ferror(file) == 0;
}

/// As a whole: a reader sees the old file or the new one.
void writeFile(const Saved &saved, const host::List<Note> &list) {
    host::Text path;
    host::Text fresh;
    addPath(path, "");
    addPath(fresh, ".new");
    (void)unlink(fresh.get()); // of a process that was killed
    const int fd = open(fresh.get(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    FILE *file = fd < 0 ? nullptr : fdopen(fd, "w");
    const bool written = file != nullptr && writeLines(file, saved, list);
    const bool closed = file != nullptr && fclose(file) == 0;
    if (!written || !closed || rename(fresh.get(), path.get()) != 0) {
        report("%s: %s", path.get(), strerror(errno));
    }
}

} // namespace

void beginNotes(const Protocol &protocol) {
    notes.protocol = &protocol;
    beginTry();
    for (int i = 0; i < protocol.targetCount; ++i) {
        notes.changes[static_cast<std::size_t>(protocol.targets[i])] = 0;
    }
}

void beginTry() {
    drop(notes.refused, notes.protocol->name);
}

bool noteRefusal(const Refusal &refusal) {
    if (notes.protocol == nullptr) {
        return true;
    }
    const char *inner = strrchr(refusal.context, '\n'); // of contexts in contexts
    addOnce(notes.refused, {fieldOf(notes.protocol->name), fieldOf(refusal.daemon),
                            fieldOf(inner == nullptr ? refusal.context : inner + 1),
                            fieldOf(refusal.command), fieldOf(refusal.answer)});
    return !notes.areQuiet;
}

void noteChanges(Target target, std::size_t count) {
    std::size_t &most = notes.changes[static_cast<std::size_t>(target)];
    most = count > most ? count : most;
}

void endNotes(Outcome outcome) {
    if (outcome <= Outcome::Refused) {
        notes.applied.add(notes.protocol->name);
    }
    notes.protocol = nullptr;
}

void noteOff(const Protocol &protocol) {
    beginNotes(protocol);
    endNotes(Outcome::Same);
}

void keepQuiet() {
    notes.areQuiet = true;
}

std::size_t notedChanges() {
    std::size_t sum = 0;
    for (const std::size_t count : notes.changes) {
        sum += count;
    }
    return sum;
}

void visitNotes(void (*hear)(const char *protocol, const Refusal &refusal, void *context),
                void *context) {
    hearAll(notes.refused, hear, context);
}

void saveNotes() {
    Saved saved = {};
    host::List<Note> list;
    (void)readFile(saved, list); // nothing, then
    const std::size_t before = list.count();
    for (const char *protocol : notes.applied) {
        drop(list, protocol);
    }
    const bool isOver = list.count() < before;
    const bool wasSent = notedChanges() > 0 || !notes.refused.isEmpty();
    for (const Note &note : notes.refused) {
        addOnce(list, note);
    }
    notes.refused.release(); // the texts are the list's
    if (wasSent) {
        saved = {static_cast<long long>(time(nullptr)), notedChanges()};
    }
    if (wasSent || isOver) {
        writeFile(saved, list);
    }
    release(list);
    notes.applied.release();
    for (std::size_t &count : notes.changes) {
        count = 0;
    }
}

bool readSaved(Saved &saved,
               void (*hear)(const char *protocol, const Refusal &refusal, void *context),
               void *context) {
    host::List<Note> list;
    const bool found = readFile(saved, list);
    hearAll(list, hear, context);
    release(list);
    return found;
}

} // namespace frruci::apply
