// SPDX-License-Identifier: Apache-2.0
// Reads a running configuration. Its indentation alone tells which context a line stands in, so
// that blocks nobody here knows do no harm.

#include "apply/running.h"

#include <cstdlib>
#include <cstring>

namespace frruci::apply {

namespace {

constexpr int kDeepest = 8;
constexpr const char *kVersionHead = "frr version ";

class Reader {
public:
    Reader(Target target, Settings &running) : target_(target), running_(running) {}

    void take(const char *text, std::size_t bytes) {
        std::size_t depth = 0;
        while (depth < bytes && text[depth] == ' ') {
            ++depth;
        }
        text += depth;
        bytes -= depth;
        while (bytes > 0 && (text[bytes - 1] == ' ' || text[bytes - 1] == '\r')) {
            --bytes;
        }
        // Empty lines and remarks stand anywhere, also in the first column inside a block.
        if (bytes == 0 || text[0] == '!' || bytes >= kLineBytes) {
            return;
        }
        enter(static_cast<int>(depth));
        memcpy(last_, text, bytes);
        last_[bytes] = '\0';
        takeLine();
    }

private:
    /// Goes to the context of a line of this depth; the line before may have opened it.
    void enter(int depth) {
        if (depth > depth_) {
            // More than one step at once, or too many: a block of a form that frruci has no line
            // of.
            const bool isKnown =
                depth == depth_ + 1 && depth < kDeepest && contexts_[depth_] != nullptr;
            for (int i = depth_ + 1; i <= depth && i < kDeepest; ++i) {
                contexts_[i] = nullptr;
            }
            if (isKnown) {
                contexts_[depth] = pathBelow(running_.arena(), contexts_[depth_], last_);
            }
        }
        depth_ = depth < kDeepest ? depth : kDeepest - 1;
    }

    void takeLine() {
        const char *where = contexts_[depth_];
        if (where == nullptr) {
            return;
        }
        const Place place = placeOf(target_, where);
        Line line;
        if (place != Place::Foreign && recognise(target_, place, last_, line) == Found::Yes) {
            running_.add(where, line);
        }
    }

    Target target_;
    Settings &running_;
    const char *contexts_[kDeepest] = {""};
    int depth_ = 0;
    char last_[kLineBytes] = {};
};

} // namespace

void readRunning(Target target, const char *text, Settings &running) {
    Reader reader(target, running);
    while (*text != '\0') {
        const std::size_t bytes = strcspn(text, "\n");
        reader.take(text, bytes);
        text += bytes + (text[bytes] == '\n' ? 1 : 0);
    }
}

int majorVersion(const char *text) {
    const char *found = strstr(text, kVersionHead);
    return found == nullptr ? 0
                            : static_cast<int>(strtol(found + strlen(kVersionHead), nullptr, 10));
}

} // namespace frruci::apply
