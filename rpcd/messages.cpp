// SPDX-License-Identifier: Apache-2.0
// Standard error as a list.

#include "rpcd/messages.h"

#include <cstring>

#include "host/report.h"
#include "host/secrets.h"
#include "host/streams.h"

namespace frruci::rpcd {

namespace {

constexpr const char *kHead = "frruci: ";

/// Without the program's name before each line.
void addBare(const char *text, host::Text &bare) {
    while (*text != '\0') {
        text += strncmp(text, kHead, strlen(kHead)) == 0 ? strlen(kHead) : 0;
        const std::size_t length = strcspn(text, "\n") + 1;
        const std::size_t whole = strnlen(text, length);
        bare.add(text, whole);
        text += whole;
    }
}

} // namespace

Messages::Messages() : before_(host::err), file_(host::scratchFile()) {
    host::err = file_ == nullptr ? before_ : file_;
}

Messages::~Messages() {
    host::err = before_;
    if (file_ != nullptr) {
        (void)fclose(file_); // nobody reads it any more
    }
}

void Messages::putInto(host::Json object) const {
    if (file_ == nullptr) {
        return;
    }
    host::Text said;
    rewind(file_);
    said.addRest(file_);
    host::Text bare;
    host::Text masked;
    addBare(said.get(), bare);
    host::addMasked(bare.get(), masked);
    if (masked.size() > 0) {
        host::put(object, "messages", host::linesOf(masked.get()));
    }
}

} // namespace frruci::rpcd
