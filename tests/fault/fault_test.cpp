// SPDX-License-Identifier: Apache-2.0
// Every request with every call under it failing once: the first, the second, and so on to the
// last. Each try is a process of its own. It must end by itself and in time, leave the store old or
// new, no file and no descriptor behind, and what answers 0 must be stored; afterwards the same
// request must work.
//
// usage: fault_test STEP [REQUEST]
// Of the calls of one kind each STEPth fails, beginning with another one for each request.

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "common/frr_uci.h"
#include "frruci/observe.h"
#include "ospf/sw_ospf.h"
#include "rip/sw_rip.h"
#include "tests/fault/faults.h"
#include "tests/fault/requests.h"
#include "tests/fault/world.h"
#include "vty/startup.h"

namespace {

using namespace fault;

constexpr unsigned kMostSeconds = 20; ///< a try takes milliseconds
constexpr int kMostSettings = 128;

// ---- What a try tells its parent ----

struct Setting {
    char package[64];
    char section[64];
    char option[64];
    char value[64];
    int32_t result;
};

/// Without memory of its own: it is filled while memory may be out.
struct Report {
    Counts counts;
    Setting settings[kMostSettings];
    int settingCount;
    char trouble[1024];
};

Report *report = nullptr; // shared with the tries

template <std::size_t N> void copy(const char *text, char (&into)[N]) {
    (void)snprintf(into, N, "%s", text == nullptr ? "" : text);
}

/// Takes down each option that is set, and how that went.
void see(FrruciEvent *event, void * /*context*/) {
    if (event->kind != FRRUCI_STORE || event->done == 0 || event->option == nullptr ||
        report->settingCount == kMostSettings) {
        return;
    }
    Setting &setting = report->settings[report->settingCount++];
    copy(event->place, setting.package);
    copy(event->section, setting.section);
    copy(event->option, setting.option);
    copy(event->text, setting.value);
    setting.result = event->result;
}

// ---- What must hold ----

[[noreturn]] void fail(const std::string &why) {
    copy(why.c_str(), report->trouble);
    _exit(1);
}

bool isSameOption(const Setting &a, const Setting &b) {
    return strcmp(a.package, b.package) == 0 && strcmp(a.section, b.section) == 0 &&
           strcmp(a.option, b.option) == 0;
}

/// Index of the last setting of this option that was stored, or -1.
int lastStored(const Setting &of) {
    int last = -1;
    for (int i = 0; i < report->settingCount; ++i) {
        if (report->settings[i].result == 0 && isSameOption(report->settings[i], of)) {
            last = i;
        }
    }
    return last;
}

/// What answered 0 is stored, unless a later setting of the option that failed is there by now.
void checkSettings() {
    for (int i = 0; i < report->settingCount; ++i) {
        const Setting &stored = report->settings[i];
        if (lastStored(stored) != i) {
            continue;
        }
        char text[64];
        (void)frr_uci_get(stored.package, stored.section, stored.option, text, sizeof text);
        bool found = strcmp(text, stored.value) == 0;
        for (int later = i + 1; later < report->settingCount; ++later) {
            const Setting &failed = report->settings[later];
            found = found || (isSameOption(failed, stored) && strcmp(text, failed.value) == 0);
        }
        if (!found) {
            fail(std::string(stored.option) + " is not stored, though 0 was answered");
        }
    }
}

std::set<std::string> linesOf(const std::string &text) {
    std::set<std::string> lines;
    std::istringstream from(text);
    for (std::string line; std::getline(from, line);) {
        lines.insert(line);
    }
    return lines;
}

/// Old and new are equal where one setting was made; where there were several, each of them is.
void checkFile(const std::string &package, const std::string &text, const std::string &before,
               const std::string &after) {
    if (text == before || text == after) {
        return;
    }
    const std::set<std::string> was = linesOf(before);
    const std::set<std::string> is = linesOf(text);
    const std::set<std::string> becomes = linesOf(after);
    if (text.empty() || text.back() != '\n') {
        fail(package + " is cut");
    }
    for (const std::string &line : was) {
        if (becomes.count(line) != 0 && is.count(line) == 0) {
            fail(package + " has lost: " + line);
        }
    }
    for (const std::string &line : is) {
        if (was.count(line) == 0 && becomes.count(line) == 0) {
            fail(package + " has got: " + line);
        }
    }
}

struct Expectation {
    Store before;
    Store after;
    std::set<std::string> files;
};

void checkStore(const Expectation &expected) {
    const Store now = store();
    for (const auto &[package, text] : expected.before) {
        const auto found = now.find(package);
        const auto after = expected.after.find(package);
        if (found == now.end() || after == expected.after.end()) {
            fail(package + " is gone");
        }
        checkFile(package, found->second, text, after->second);
    }
}

#ifdef FRRUCI_STAND_IN
constexpr int kForgotten = 0;
#else
constexpr int kForgotten = 2; ///< files that libuci leaves open, and behind, where a call fails
#endif

bool forgets(Call call) {
    return call == kMalloc || call == kStream || call == kFileLock || call == kFileLockInterrupted;
}

/// Fixed by the interface: a socket that could not be connected stays open, and so does the session
/// of a view in which a step failed.
void checkDescriptors(const Descriptors &before, const Request &request, Call call) {
    const Descriptors now = descriptors();
    const int sockets = now.sockets - before.sockets;
    const int others = now.all - before.all - sockets;
    const int maySockets = call == kConnect || (request.flags & kView) != 0 ? 1 : 0;
    const int mayOthers = forgets(call) ? kForgotten : 0;
    if (sockets < 0 || sockets > maySockets || others < 0 || others > mayOthers) {
        fail("left open: " + std::to_string(sockets) + " sockets, " + std::to_string(others) +
             " others");
    }
}

void checkAfterwards() {
    char text[8];
    if (frr_uci_set("iptv", "iptv", "handle_time", "77") != 0 ||
        frr_uci_get("iptv", "iptv", "handle_time", text, sizeof text) != 0 ||
        strcmp(text, "77") != 0) {
        fail("nothing can be stored afterwards");
    }
}

void checkFiles(const std::set<std::string> &expected, Call call) {
    for (const std::string &file : files()) {
        const bool forgotten = kForgotten != 0 && forgets(call) && file.rfind("/tmp/.", 0) == 0 &&
                               file.find(".uci-") != std::string::npos;
        if (expected.count(file) == 0 && !forgotten) {
            fail(file + " is left");
        }
    }
}

// ---- One try ----

/// The words of a request, in memory of its own.
class Words {
public:
    explicit Words(const char *text) {
        std::istringstream from(text);
        for (std::string word; from >> word;) {
            words_.push_back(word);
        }
        for (std::string &word : words_) {
            pointers_.push_back(word.data());
        }
        pointers_.push_back(nullptr);
    }
    int32_t count() const { return static_cast<int32_t>(words_.size()); }
    char **pointers() { return pointers_.data(); }

private:
    std::vector<std::string> words_;
    std::vector<char *> pointers_;
};

void enterWorld(const Request &request) {
    (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
    (void)alarm(kMostSeconds);
    const int nowhere = open("/dev/null", O_WRONLY);
    (void)dup2(nowhere, STDOUT_FILENO);
    (void)close(nowhere);
    holdPipes();
    setListing((request.flags & kStopped) != 0 ? listingWithoutDaemons : listingWithDaemons);
    if ((request.flags & kCold) == 0) {
        (void)frrVtyInit();
        (void)swOspfInit();
        (void)swRipInit();
    }
}

/// expected is null to find out what is to be expected.
[[noreturn]] void play(const Request &request, Call call, int number, const Expectation *expected) {
    enterWorld(request);
    Words words(request.words);
    const FrruciObserver observer = {sizeof observer, 0, see, nullptr};
    (void)frruciObserve(&observer);
    const Descriptors before = descriptors();
    arm(call, number);
    request.run(words.count(), words.pointers());
    report->counts = disarm();
    (void)frruciObserve(nullptr);
    if (expected != nullptr) {
        checkDescriptors(before, request, call);
        checkStore(*expected);
        checkSettings();
        checkFiles(expected->files, call);
        request.run(words.count(), words.pointers());
        checkAfterwards();
    }
    _exit(0);
}

/// Empty when all is well.
std::string tryOnce(const Request &request, Call call, int number, const Expectation *expected) {
    reset((request.flags & kManaged) != 0);
    new (report) Report();
    const pid_t child = fork();
    if (child == 0) {
        play(request, call, number, expected);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        return "no process";
    }
    if (WIFSIGNALED(status)) {
        return WTERMSIG(status) == SIGALRM ? "does not end" : strsignal(WTERMSIG(status));
    }
    if (WEXITSTATUS(status) != 0) {
        return report->trouble[0] != '\0' ? report->trouble : "ended with an error";
    }
    if (number > 0 && report->counts[call] < number) {
        return "the call was not made";
    }
    return "";
}

// ---- All of them ----

struct Tally {
    int points = 0;
    int failures = 0;
};

void note(const Request &request, Call call, int number, const std::string &trouble, Tally &tally) {
    ++tally.points;
    if (!trouble.empty()) {
        ++tally.failures;
        (void)printf("%s, %s %d: %s\n", request.name, call == kCalls ? "none" : kFaults[call].name,
                     number, trouble.c_str());
    }
}

/// Every step-th call of each kind, from the number first on.
void tryAll(const Request &request, int first, int step, Tally &tally) {
    reset((request.flags & kManaged) != 0);
    Expectation expected;
    expected.before = store();
    const std::string trouble = tryOnce(request, kCalls, 0, nullptr);
    if (!trouble.empty()) {
        note(request, kCalls, 0, trouble, tally);
        return;
    }
    const Counts counts = report->counts;
    expected.after = store();
    expected.files = files();
    note(request, kCalls, 0, tryOnce(request, kCalls, 0, &expected), tally);
    for (const Fault &fault : kFaults) {
        for (int number = first; number <= counts[fault.call]; number += step) {
            note(request, fault.call, number, tryOnce(request, fault.call, number, &expected),
                 tally);
        }
    }
}

} // namespace

int main(int argc, char **argv) {
    const int step = argc > 1 ? atoi(argv[1]) : 0;
    if (step < 1) {
        (void)fprintf(stderr, "usage: fault_test STEP [REQUEST]\n");
        return 2;
    }
    void *shared =
        mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) {
        return 2;
    }
    report = new (shared) Report();
    build();
    Tally tally;
    int index = 0;
    for (const Request &request : requests()) {
        if (argc < 3 || strcmp(argv[2], request.name) == 0) {
            tryAll(request, 1 + index % step, step, tally);
        }
        ++index;
        (void)fflush(stdout);
    }
    (void)printf("%d fault points, %d failures\n", tally.points, tally.failures);
    return tally.failures == 0 && tally.points > 0 ? 0 : 1;
}
