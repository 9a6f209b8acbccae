// SPDX-License-Identifier: Apache-2.0
// --timeout, --json, --show-keys.

#include "host/options.h"

#include <iterator>

#include "host/json.h"
#include "host/secrets.h"
#include "host/streams.h"
#include "host/timeout.h"

namespace frruci::host {

constexpr Option kOptions[] = {
    {"--timeout",   "SECONDS", "end after so many seconds without progress (10)"},
    {"--json",      nullptr,   "answer in JSON"                                 },
    {"--show-keys", nullptr,   "show keys as they are, not as ***"              },
};
constexpr std::size_t kOptionCount = std::size(kOptions);

namespace {

/// How many words an option takes: 0 when the first is no option, -1 when it is used wrongly.
int takeOne(int count, char **words) {
    if (equals(words[0], "--json")) {
        if (wantJson()) {
            return 1;
        }
        complain("this build has no --json");
        return -1;
    }
    if (equals(words[0], "--show-keys")) {
        showKeys();
        return 1;
    }
    if (!equals(words[0], "--timeout")) {
        return 0;
    }
    if (count > 1 && setTimeout(words[1])) {
        return 2;
    }
    complain("--timeout takes whole seconds, 1 to 86400");
    return -1;
}

} // namespace

bool takeOptions(int &count, char **&words, bool everywhere) {
    int kept = 0;
    for (int at = 0; at < count;) {
        const int taken = kept > 0 && !everywhere ? 0 : takeOne(count - at, words + at);
        if (taken < 0) {
            return false;
        }
        if (taken == 0) {
            words[kept++] = words[at++];
        }
        at += taken;
    }
    words[kept] = nullptr;
    count = kept;
    return true;
}

} // namespace frruci::host
