// SPDX-License-Identifier: Apache-2.0
// Prints what the examinations found.

#include "host/doctor.h"

#include <cstdarg>
#include <cstdio>

#include "host/json.h"
#include "host/streams.h"

namespace frruci::host {

namespace {

constexpr const char *kLevels[] = {"ok", "warning", "fault"};

void printFindings(const Findings &findings) {
    for (const Finding &finding : findings) {
        (void)fprintf(out, "%-8s %-14s %s\n", nameOf(finding.level), finding.what, finding.text);
    }
}

void printFindingsJson(const Findings &findings) {
    Json all = jsonArray();
    for (const Finding &finding : findings) {
        Json one = jsonObject();
        put(one, "level", nameOf(finding.level));
        put(one, "what", finding.what);
        put(one, "text", finding.text);
        append(all, one);
    }
    printJson(all);
}

} // namespace

const char *nameOf(Level level) {
    return kLevels[static_cast<int>(level)];
}

void examine(Findings &findings) {
    examineDaemons(findings);
    examineRouter(findings);
}

void release(Findings &findings) {
    for (const Finding &finding : findings) {
        free(finding.text);
    }
    findings.release();
}

void add(Findings &findings, Level level, const char *what, const char *format, ...) {
    char *text = nullptr;
    va_list arguments;
    va_start(arguments, format);
    const int length = vasprintf(&text, format, arguments);
    va_end(arguments);
    findings.add({level, what, length < 0 ? copyOf("out of memory") : text});
}

Status doctor(int count, char ** /*words*/) {
    if (count != 0) {
        return wrongUsage("doctor takes no words");
    }
    Findings findings;
    examine(findings);
    if (wantsJson()) {
        printFindingsJson(findings);
    } else {
        printFindings(findings);
    }
    Status status = kAccepted;
    for (const Finding &finding : findings) {
        status = finding.level == Level::kFault ? kNotUsable : status;
    }
    release(findings);
    return status;
}

} // namespace frruci::host
