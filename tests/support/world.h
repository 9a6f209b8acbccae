/* SPDX-License-Identifier: Apache-2.0 */
/* The stage's inside: what the fake daemons, the reply pipes and the stand-ins share. */
#ifndef FRRUCI_TESTS_SUPPORT_WORLD_H
#define FRRUCI_TESTS_SUPPORT_WORLD_H

#include <cstdio>
#include <new>
#include <pthread.h>

#include "tests/support/buffer.h"
#include "tests/support/stage.h"

namespace stage {

inline constexpr const char *kDaemons[] = {"zebra", "ospfd", "ripd", "nhrpd", "mgmtd"};
inline constexpr int kDaemonCount = 5;
inline constexpr int kAlwaysThere = 4; ///< mgmtd is there only when a test says so
inline constexpr const char *kPipes[] = {"ospf_pipe_c2lua", "ospf_pipe_c2lua_neighbor",
                                         "ospf_pipe_c2lua_database", "nhrp_pipe_c2lua",
                                         "nhrp_pipe_c2lua_cache"};
inline constexpr int kPipeCount = 5;
inline constexpr int kMaxRules = 256;
inline constexpr int kMaxSessions = 4096;
inline constexpr int kMaxEvents = 65536;

struct AnswerRule {
    int daemon;
    char *command; // null: any command
    Answer answer; // with texts of its own
};

struct ShellRule {
    char *containing;
    Shell shell; // with texts of its own
};

struct Session {
    int fd = -1;
    int daemon = 0;
    Buffer received; // the bytes of a command that is not complete yet
    Buffer commands; // as they stand in the trace
};

/// One line or more of the trace: a session, a reply, or a text that is complete already.
struct Event {
    enum class Kind { Text, Session, Reply } kind;
    int index; // of the session or the pipe
    Buffer text;
};

struct World {
    pthread_mutex_t mutex;
    pthread_t thread;
    int wake[2];
    bool stopping;
    int listeners[kDaemonCount];
    int pipes[kPipeCount];
    AnswerRule answers[kMaxRules];
    int answerCount;
    ShellRule shells[kMaxRules];
    int shellCount;
    Session *sessions[kMaxSessions];
    int sessionCount;
    Event *events[kMaxEvents];
    int eventCount;
    Buffer shown; // what trace, log and output gave out last
    Buffer logText;
    Buffer outputText;
    long logRead;
    int64_t pausedMicroseconds; // how far the stand-ins' pauses have moved the clock
    int realStdout;
    int capturedStdout;
};

/// The world of the present test; null between tests.
extern World *world;

class WorldLock {
public:
    WorldLock();
    ~WorldLock();
    WorldLock(const WorldLock &) = delete;
    WorldLock &operator=(const WorldLock &) = delete;
};

// All of these expect the world's lock to be held.
Event &newEvent(Event::Kind kind, int index);
void pump(); ///< takes in everything that the library has done up to now
void listenAs(int daemon);
void hangUp(Session &session);
char *copyText(const char *text);

void *serve(void *); ///< the thread's body

/// Makes sure that the stand-ins are linked in.
void useStandIns();

template <typename T> T *make() {
    void *memory = calloc(1, sizeof(T));
    if (memory == nullptr) {
        abort();
    }
    return new (memory) T();
}

} // namespace stage

#endif
