// SPDX-License-Identifier: Apache-2.0
// One place that knows where messages go.

#include "apply/report.h"

#include <cstdarg>
#include <cstdio>
#include <syslog.h>

#include "host/streams.h"

namespace frruci::apply {

namespace {

constexpr int kLineBytes = 1024;

bool toLog = false;

} // namespace

void report(const char *format, ...) {
    char line[kLineBytes];
    va_list arguments;
    va_start(arguments, format);
    (void)vsnprintf(line, sizeof line, format, arguments); // a longer one is cut
    va_end(arguments);
    host::complain("%s", line);
    if (toLog) {
        syslog(LOG_NOTICE, "%s", line);
    }
}

void reportToLog() {
    openlog("frruci", 0, LOG_DAEMON);
    toLog = true;
}

} // namespace frruci::apply
