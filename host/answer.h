/* SPDX-License-Identifier: Apache-2.0 */
/* An answer on its way from a pipe to standard output. */
#ifndef FRRUCI_HOST_ANSWER_H
#define FRRUCI_HOST_ANSWER_H

#include <cstddef>

namespace frruci::host {

/// Exit statuses of the program.
enum Status : int {
    kAnsweredOk = 0,
    kAnsweredFail = 1,
    kWrongUsage = 2,
    kNoAnswer = 3,
    kNoLibrary = 4,
};

/// How an answer ends.
enum class Ending {
    Word,   ///< one word, "ok" or "fail"
    Rows,   ///< rows, then "ok"
    Stream, ///< text until the handler returns
    Json,   ///< a JSON text until the handler returns; printed only when it is complete
};

/// Takes the pieces of an answer and prints it. Belongs to the reading process, which ends with it.
class Answer {
public:
    explicit Answer(Ending ending) : ending_(ending) {}

    void take(const char *bytes, std::size_t count);
    /// Prints what is still held back and tells how the answer ended.
    Status finish();

private:
    bool endsWith(const char *word) const;
    void print(std::size_t count);
    Status finishJson();

    Ending ending_;
    bool taken_ = false;
    char *held_ = nullptr; // the end of the answer, or all of it when it must be seen whole
    std::size_t size_ = 0;
};

} // namespace frruci::host

#endif
