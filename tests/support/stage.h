/* SPDX-License-Identifier: Apache-2.0 */
/* The stage for tests that play the library's surroundings: fake daemons on the vty sockets, the
 * front-end's reply pipes, and stand-ins for the shell, the pauses and kill. Whatever leaves the
 * library becomes one line of an ordered trace. Pauses take no time, yet move the monotonic clock:
 *
 *     ospfd: en | configure | router ospf | distance 120     a session, its commands in order
 *     system: "zebra -d "          popen: ps -w | grep zebra
 *     sleep: 1      usleep: 10000      kill: 1234 9
 *     silently: "zebra -d "        a shell command without standard output and error
 *     reply ospf_pipe_c2lua: ok                              one line for each line of a reply
 *
 * A session that the library left open ends in " | (left open)". Texts that a reader could not see
 * whole stand in quotes. Needs no C++ runtime; works only inside the sandbox. */
#ifndef FRRUCI_TESTS_SUPPORT_STAGE_H
#define FRRUCI_TESTS_SUPPORT_STAGE_H

#include <cstddef>
#include <cstdint>

namespace stage {

/// What a fake daemon does when it gets a command. Without any fault: text, three NULs, code.
struct Answer {
    uint8_t code = 0;
    const char *text = "";
    int splitAt = -1;    ///< the answer comes in two segments, the first of this many bytes
    int truncateTo = -1; ///< only this many bytes of the answer come, then the session is closed
    int delayMs = 0;     ///< before the answer
    bool closeEarly = false;        ///< closes instead of answering
    bool silent = false;            ///< never answers
    int times = -1;                 ///< how often this rule serves; -1 always
    const char *rawBytes = nullptr; ///< instead of text, NULs and code: exactly these bytes
    int rawSize = 0;
};

/// What a shell command does that contains a given text.
struct Shell {
    const char *text = "";         ///< what popen reads, or what is written to writeTo
    const char *writeTo = nullptr; ///< a file that the command writes
    int status = 0;                ///< result of system
    bool fails = false;            ///< popen gives no stream
    int times = -1;                ///< how often this rule serves; -1 always
};

/// A fresh world for one test. One at a time.
class Stage {
public:
    Stage();
    ~Stage();
    Stage(const Stage &) = delete;
    Stage &operator=(const Stage &) = delete;

    /// daemon is "zebra", "ospfd", "ripd", "nhrpd" or "mgmtd"; the newest matching rule serves.
    void answer(const char *daemon, const char *command, const Answer &answer);
    /// Every command of that daemon that has no rule of its own.
    void answerAll(const char *daemon, const Answer &answer);
    /// A daemon that is not there by itself: mgmtd.
    void present(const char *daemon);
    /// No socket file at all.
    void absent(const char *daemon);
    /// A socket file without a listener.
    void deaf(const char *daemon);
    void shell(const char *containing, const Shell &shell);
    /// Takes a reply pipe away; name without folder.
    void noPipe(const char *name);

    /// All events since the last call, a line each. The text lives until the next call.
    const char *trace();
    /// The log lines since the last call.
    const char *log();
    /// Standard output since the last call.
    const char *output();
    /// Descriptors that the library's process holds open now.
    static int openDescriptors();
};

/// Writes a file, folders included, for example a store file.
void writeFile(const char *path, const char *text, std::size_t size);
void writeFile(const char *path, const char *text);

} // namespace stage

#endif
