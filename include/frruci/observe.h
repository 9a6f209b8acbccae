/* SPDX-License-Identifier: Apache-2.0 */
/* What leaves the library, shown to the host: sessions and commands with the daemons' answers,
 * shell commands, pauses, kills, store writes and replies. The host sets one function that sees
 * each of them, or rehearses: the same calls run and nothing leaves, while the function answers the
 * questions. Without it nothing changes. */
#ifndef FRRUCI_OBSERVE_H
#define FRRUCI_OBSERVE_H

#include <stdint.h>

#include "common/c_interface.h"

/* What an event is about:
 *
 *   FRRUCI_CONNECT   a session begins; place: the vty socket. Before and after.
 *   FRRUCI_COMMAND   text is sent over session fd. Before.
 *   FRRUCI_ANSWER    text, and with the last piece the completion code, came over fd. After.
 *   FRRUCI_SHELL     text is run through the shell. Before and after.
 *   FRRUCI_LISTING   text is run through the shell, and its output read. Before.
 *   FRRUCI_FILE      the file at place is read, where a shell command leaves its answer. Before.
 *   FRRUCI_PAUSE     number: microseconds. Before and after.
 *   FRRUCI_KILL      number: the process that gets signal 9. Before and after.
 *   FRRUCI_STORE     place: the package. Option of section is set to text; without option, a
 *                    section of type text is added. Before and after.
 *   FRRUCI_REPLY     text is written into the reply pipe at place. Before and after.
 *
 * Before means done 0; after means done 1, and result tells how it went. A session is known by its
 * descriptor: it is the one of the latest FRRUCI_CONNECT that succeeded with that fd. An answer may
 * come in pieces; the one with the completion code is the last. A command whose last piece is
 * missing when the next command or session begins was not answered. */
enum {
    FRRUCI_CONNECT = 1,
    FRRUCI_COMMAND,
    FRRUCI_ANSWER,
    FRRUCI_SHELL,
    FRRUCI_LISTING,
    FRRUCI_FILE,
    FRRUCI_PAUSE,
    FRRUCI_KILL,
    FRRUCI_STORE,
    FRRUCI_REPLY
};

/* One event. Texts live until the function returns; what does not apply is null or 0, and fd -1.
 * New fields are only ever added at the end: read none that lies past size. */
typedef struct FrruciEvent {
    uint32_t size; /* bytes of this record */
    int32_t kind;
    int32_t done;
    int32_t fd; /* of the session */
    const char *place;
    const char *text;    /* ends in a NUL, but for FRRUCI_ANSWER: text_size bytes */
    const char *section; /* FRRUCI_STORE: section, or name of the section to add */
    const char *option;  /* FRRUCI_STORE: null adds a section */
    uint64_t number;
    int32_t result;       /* what the call underneath gave: negative for failure, of a shell command
                           * and of the store also above 0. FRRUCI_ANSWER: bytes received */
    uint32_t text_size;   /* FRRUCI_ANSWER: bytes of text */
    int32_t code;         /* FRRUCI_ANSWER: the completion code when this piece ends the answer,
                           * else -1 */
    uint32_t answer_size; /* bytes of answer */
    const char *answer;   /* FRRUCI_COMMAND of a rehearsal: null, or what see sets it to */
} FrruciEvent;

typedef void (*FrruciSee)(FrruciEvent *event, void *context);

typedef struct FrruciObserver {
    uint32_t size;      /* sizeof(FrruciObserver) */
    uint32_t rehearsal; /* 1: nothing leaves, and nothing is logged */
    FrruciSee see;
    void *context; /* handed to see */
} FrruciObserver;

/* Sets the observer; the record is copied. Null ends the observation. See runs on the thread of the
 * call that it observes; from setting to ending, only one thread may be inside the library. Of the
 * library, see may call only what reads the store (frr_uci_get, frr_uci_foreach_section).
 *
 * In a rehearsal each event but FRRUCI_ANSWER is shown before only, does not happen, and counts as
 * having given what see leaves in result, 0 unless it writes there. What answers comes through a
 * descriptor that see writes into fd and the library closes; without one there is no answer:
 *   FRRUCI_CONNECT   a session. Without it the daemon cannot be reached.
 *   FRRUCI_LISTING   the command's output. Without it the command cannot be started.
 *   FRRUCI_FILE      the file's content. Without it there is no such file.
 * What a daemon would answer to a FRRUCI_COMMAND is its text, three NULs, and the completion code.
 * See sets answer to these bytes, which must live until the next event that is not FRRUCI_ANSWER;
 * the session's descriptor is then not read from, and may be any. Or it leaves answer null and
 * writes them into the other end of a socket pair, of which the session is one.
 * Reading the store is real, and each package is read once. Models and views change as they would,
 * so rehearse in a child process. Result: 0; 1 when see is null or size is smaller than this record
 * was in the first version. */
FRRUCI_C_BEGIN
int32_t frruciObserve(const FrruciObserver *observer);
FRRUCI_C_END

#endif
