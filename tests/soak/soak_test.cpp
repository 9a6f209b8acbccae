// SPDX-License-Identifier: Apache-2.0
// Settings without end: every request of the fault table in turn, rehearsed, and those of the store
// in earnest. Descriptors and memory stay as they are, but for what the interface requires, which
// docs/behaviour.md lists by request.
//
// usage: soak_test SETTINGS

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "ospf/sw_ospf.h"
#include "rip/sw_rip.h"
#include "tests/fault/requests.h"
#include "tests/fault/world.h"
#include "tests/fuzz/rehearsal.h"
#include "vty/startup.h"

namespace {

long long inUse = 0; ///< bytes that were asked for and not given back

/// Stands before each piece of memory.
struct alignas(std::max_align_t) Head {
    std::size_t bytes;
};

void *counted(void *block, std::size_t bytes) {
    if (block == nullptr) {
        abort();
    }
    inUse += static_cast<long long>(bytes);
    static_cast<Head *>(block)->bytes = bytes;
    return static_cast<Head *>(block) + 1;
}

Head *uncounted(void *memory) {
    Head *head = static_cast<Head *>(memory) - 1;
    inUse -= static_cast<long long>(head->bytes);
    return head;
}

} // namespace

// The C library's own under their other names.
// NOLINTBEGIN(bugprone-reserved-identifier)
#pragma GCC visibility push(default)
extern "C" {
void *__libc_malloc(std::size_t bytes);
void *__libc_calloc(std::size_t count, std::size_t bytes);
void *__libc_realloc(void *memory, std::size_t bytes);
void __libc_free(void *memory);

void *malloc(std::size_t bytes) {
    return counted(__libc_malloc(bytes + sizeof(Head)), bytes);
}
void *calloc(std::size_t count, std::size_t bytes) {
    return counted(__libc_calloc(1, count * bytes + sizeof(Head)), count * bytes);
}
void *realloc(void *memory, std::size_t bytes) {
    Head *head = memory == nullptr ? nullptr : uncounted(memory);
    return counted(__libc_realloc(head, bytes + sizeof(Head)), bytes);
}
void free(void *memory) {
    if (memory != nullptr) {
        __libc_free(uncounted(memory));
    }
}
}
#pragma GCC visibility pop
// NOLINTEND(bugprone-reserved-identifier)

namespace {

using fault::Request;

constexpr int kWarmRounds = 20; ///< until the models hold what the requests set
constexpr int kStoreShare = 50; ///< of so many settings one is stored in earnest
constexpr uint8_t kRefusal = 13;

/// The words of a request, which a handler may change.
struct Words {
    explicit Words(const char *text) {
        (void)snprintf(bytes, sizeof bytes, "%s", text);
        for (char *rest = bytes; *rest != '\0'; ++count) {
            rest += strspn(rest, " ");
            pointers[count] = rest;
            rest += strcspn(rest, " ");
            if (*rest != '\0') {
                *rest++ = '\0';
            }
        }
    }

    char bytes[128] = {};
    char *pointers[16] = {};
    int32_t count = 0;
};

struct Flow {
    long long calls = 0;
    long long bytes = 0;
    int descriptors = 0;
};

using Flows = std::map<std::string, Flow>; ///< by request

bool isStore(const Request &request) {
    return strncmp(request.name, "store: ", 7) == 0;
}

/// All but the start-up, which is made once.
std::vector<Request> settings() {
    std::vector<Request> found;
    for (const Request &request : fault::requests()) {
        if ((request.flags & fault::kCold) == 0) {
            found.push_back(request);
        }
    }
    return found;
}

/// Runs a request in a rehearsal; how many sessions it has left open.
int rehearse(const Request &request, uint8_t code) {
    fuzz::Rehearsal rehearsal;
    rehearsal.code = code;
    rehearsal.file = "1\n";
    rehearsal.listing = (request.flags & fault::kStopped) != 0 ? "" : "41 root 50 S d -d\n";
    Words words(request.words);
    request.run(words.count, words.pointers);
    return rehearsal.leftOpen();
}

void run(const Request &request, uint8_t code, Flow &flow) {
    const long long before = inUse;
    flow.descriptors += rehearse(request, code);
    flow.bytes += inUse - before;
    ++flow.calls;
}

void runInEarnest(const Request &request, Flow &flow) {
    const long long before = inUse;
    Words words(request.words);
    request.run(words.count, words.pointers);
    flow.bytes += inUse - before;
    ++flow.calls;
}

/// What a request may lose with each call.
struct Loss {
    long long bytes = 0;
    long long refusedBytes = 0;
    int refusedSessions = 0;
};

/// The rows of the table "| request |" of the page on odd behaviour.
std::map<std::string, Loss> listedLosses() {
    std::map<std::string, Loss> losses;
    std::ifstream page(FRRUCI_BEHAVIOUR);
    bool inside = false;
    for (std::string line; std::getline(page, line);) {
        char request[64];
        Loss loss;
        inside = line.rfind("| request |", 0) == 0 || (inside && !line.empty());
        if (inside && sscanf(line.c_str(), "| %63[^|]| %lld | %lld | %d |", request, &loss.bytes,
                             &loss.refusedBytes, &loss.refusedSessions) == 4) {
            std::string name = request;
            name.erase(name.find_last_not_of(' ') + 1);
            losses[name] = loss;
        }
    }
    return losses;
}

/// Takes off what the calls may lose. What is left in the memory of one request may be the record
/// that another one takes back; the sum counts.
void settle(const std::string &what, Flow &flow, long long bytes, int sessions, Flow &sum) {
    flow.bytes -= bytes * flow.calls;
    flow.descriptors -= static_cast<int>(sessions * flow.calls);
    if (flow.bytes != 0 || flow.descriptors != 0) {
        (void)fprintf(stderr, "%s: %lld bytes and %d descriptors more, in %lld calls\n",
                      what.c_str(), flow.bytes, flow.descriptors, flow.calls);
    }
    sum.calls += flow.calls;
    sum.bytes += flow.bytes;
    sum.descriptors += std::abs(flow.descriptors);
}

long residentKilobytes() {
    long all = 0;
    long resident = 0;
    FILE *file = fopen("/proc/self/statm", "r");
    if (file == nullptr || fscanf(file, "%ld %ld", &all, &resident) != 2) {
        abort();
    }
    (void)fclose(file); // only read from
    return resident * sysconf(_SC_PAGESIZE) / 1024;
}

enum Way { kAccepted, kRefused, kStored, kWays };

class Soak {
public:
    void round(long long number) {
        const Way way = number % 4 == 3 ? kRefused : kAccepted;
        for (const Request &request : requests_) {
            run(request, way == kRefused ? kRefusal : 0, flows_[way][request.name]);
            if (isStore(request) && number % kStoreShare == 0) {
                runInEarnest(request, flows_[kStored][request.name]);
            }
        }
    }

    void begin() {
        for (Flows &flows : flows_) {
            flows.clear();
            for (const Request &request : requests_) {
                flows[request.name] = {};
            }
        }
    }

    long long made() const {
        long long sum = 0;
        for (const Flows &flows : flows_) {
            for (const auto &[name, flow] : flows) {
                sum += flow.calls;
            }
        }
        return sum;
    }

    /// What was lost beyond what is listed.
    Flow settleAll() {
        std::map<std::string, Loss> losses = listedLosses();
        Flow sum;
        for (const Request &request : requests_) {
            const std::string name = request.name;
            const Loss loss = losses[name];
            settle(name, flows_[kAccepted][name], loss.bytes, 0, sum);
            settle(name + ", refused", flows_[kRefused][name], loss.refusedBytes,
                   loss.refusedSessions, sum);
            settle(name + ", in earnest", flows_[kStored][name], 0, 0, sum);
        }
        return sum;
    }

private:
    const std::vector<Request> requests_ = settings();
    Flows flows_[kWays];
};

} // namespace

int main(int argc, char **argv) {
    const long long wanted = argc == 2 ? atoll(argv[1]) : 0;
    if (wanted < 1 || getenv("FRRUCI_SANDBOX") == nullptr) {
        (void)fprintf(stderr, "usage, in the sandbox: soak_test SETTINGS\n");
        return 2;
    }
    const int descriptorsBefore = fault::descriptors().all;
    if (freopen("/dev/null", "w", stdout) == nullptr) {
        return 2;
    }
    fault::reset(false);
    if (frrVtyInit() != 0 || swOspfInit() != 0 || swRipInit() != 0) {
        return 2;
    }
    Soak soak;
    soak.begin();
    long long number = 0;
    while (number < kWarmRounds) {
        soak.round(number++);
    }
    soak.begin();
    const long resident = residentKilobytes();
    while (soak.made() < wanted) {
        soak.round(number++);
    }
    const int opened = fault::descriptors().all - descriptorsBefore;
    const Flow sum = soak.settleAll();
    (void)fprintf(
        stderr, "%lld settings: %lld bytes and %d descriptors more than listed, %ld KiB resident\n",
        sum.calls, sum.bytes, sum.descriptors + opened, residentKilobytes() - resident);
    return sum.bytes == 0 && sum.descriptors == 0 && opened == 0 ? 0 : 1;
}
