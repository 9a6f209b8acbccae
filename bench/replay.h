/* SPDX-License-Identifier: Apache-2.0 */
/* Records what a piece of work exchanges with daemons and logs, and plays exactly that again in a
 * bare loop: the floor that the work is measured against. */
#ifndef FRRUCI_BENCH_REPLAY_H
#define FRRUCI_BENCH_REPLAY_H

#include <string>
#include <vector>

namespace bench {

/// One step of a recording, in order.
struct Step {
    enum class Kind { Connect, Exchange, Close, Log } kind;
    std::string text; // socket path, command or log line
};

/// Between these two calls every session and log line of this process is recorded.
void startRecording();
std::vector<Step> stopRecording();

/// Plays a recording with nothing but the system calls that it needs. Ends the process when a
/// daemon does not answer.
void play(const std::vector<Step> &steps);

/// How many commands were exchanged.
std::size_t exchanges(const std::vector<Step> &steps);

} // namespace bench

#endif
