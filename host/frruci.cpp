// SPDX-License-Identifier: Apache-2.0
// The host program's beginning and end.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "host/help.h"
#include "host/options.h"
#include "host/streams.h"
#include "host/text.h"
#include "host/verbs.h"

namespace frruci::host {

namespace {

/// The words, kept apart from the process's command line.
char **copyWords(int count, char **words) {
    auto **copies =
        static_cast<char **>(grow(nullptr, sizeof(char *) * (static_cast<std::size_t>(count) + 1)));
    for (int i = 0; i < count; ++i) {
        copies[i] = copyOf(words[i]);
    }
    copies[count] = nullptr;
    return copies;
}

/// Takes the words but the verb out of the process list: keys are nobody's business, and a word
/// that holds a daemon's name would be counted, and killed, as that daemon.
void hideWords(int count, char **words) {
    for (int i = 0; i < count; ++i) {
        if (findVerb(words[i]) == nullptr) {
            memset(words[i], 0, strlen(words[i]));
        }
    }
}

Status run(int count, char **words) {
    if (!takeOptions(count, words, false)) {
        return kWrongUsage;
    }
    if (count == 1 && equals(words[0], "--help")) {
        printUsage(out);
        return kAccepted;
    }
    if (count == 1 && equals(words[0], "--version")) {
        (void)fprintf(out, "frruci %s\n", FRRUCI_VERSION);
        return kAccepted;
    }
    if (count < 1) {
        printUsage(err);
        return kWrongUsage;
    }
    return runWords(count, words);
}

} // namespace

} // namespace frruci::host

int main(int argc, char **argv) {
    using namespace frruci::host;
    if (!takeStreams()) {
        return kNotUsable;
    }
    char **words = copyWords(argc - 1, argv + 1);
    hideWords(argc - 1, argv + 1);
    const Status status = run(argc - 1, words);
    // Descriptors that are full or closed show here at the latest.
    const bool told = fflush(out) == 0 && ferror(out) == 0;
    (void)fflush(err); // nobody is left to tell
    // At once: what the program still holds ends with it.
    _exit(told ? status : worse(status, kNotUsable));
}
