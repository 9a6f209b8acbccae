// SPDX-License-Identifier: Apache-2.0
// Any words for any request in earnest, with any one call under it failing: sockets, pipes and
// store files are real, the daemons answer at once. The input's first line is three numbers (the
// request in its table, the kind of call and its number, 0 for none) and flags (m: mgmtd runs, s:
// no process is listed); the second line has the words, or is missing, and the request's own are
// taken.

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "common/frr_uci.h"
#include "ospf/sw_ospf.h"
#include "rip/sw_rip.h"
#include "tests/fault/faults.h"
#include "tests/fault/requests.h"
#include "tests/fault/world.h"
#include "tests/fuzz/request.h"
#include "tests/support/no_memory.h"
#include "vty/startup.h"

// A call that fails may leave memory behind, and so may a walk into a view.
extern "C" int __lsan_is_turned_off() { // NOLINT(bugprone-reserved-identifier)
    return 1;
}

#if __has_feature(address_sanitizer)
// The sanitizer's malloc cannot be replaced: none fails.
namespace stage {
NoMemory::NoMemory(int /*failing*/) {}
NoMemory::~NoMemory() = default;
int NoMemory::left() {
    return 0;
}
} // namespace stage
#endif

namespace {

using namespace fuzz;

constexpr const char *kPipes[] = {"/tmp/tmp/ospf_pipe_c2lua", "/tmp/tmp/ospf_pipe_c2lua_neighbor",
                                  "/tmp/tmp/ospf_pipe_c2lua_database", "/tmp/tmp/nhrp_pipe_c2lua",
                                  "/tmp/tmp/nhrp_pipe_c2lua_cache"};
constexpr int kPipeCount = static_cast<int>(std::size(kPipes));

struct World {
    int pipes[kPipeCount];
    unsigned firstFree; ///< descriptors from here on are the library's

    World() {
        fault::build();
        fault::reset(false);
        fault::setListing(fault::listingWithDaemons);
        for (int i = 0; i < kPipeCount; ++i) {
            pipes[i] = open(kPipes[i], O_RDWR | O_NONBLOCK | O_CLOEXEC);
            insist(pipes[i] >= 0);
        }
        insist(frrVtyInit() == 0 && swOspfInit() == 0 && swRipInit() == 0);
        const int next = dup(pipes[0]);
        insist(next >= 0 && close(next) == 0);
        firstFree = static_cast<unsigned>(next);
    }

    /// Nobody reads the replies, and descriptors may stay open where the interface wants that.
    void tidy() const {
        char bytes[4096];
        for (const int pipe : pipes) {
            while (read(pipe, bytes, sizeof bytes) > 0) {
            }
        }
        (void)close_range(firstFree, UINT_MAX, 0);
        (void)truncate("/tmp/tmp/data", 0);
    }
};

/// A call that fails leaves each file old or new, but never cut.
void checkStore() {
    for (const auto &[package, text] : fault::store()) {
        insist(text.empty() || text.back() == '\n');
    }
    insist(frr_uci_set("iptv", "iptv", "handle_time", "77") == 0);
    char text[8];
    insist(frr_uci_get("iptv", "iptv", "handle_time", text, sizeof text) == 0 &&
           strcmp(text, "77") == 0);
}

/// A text in words.
struct Words {
    explicit Words(const std::string &line) {
        (void)snprintf(text, sizeof text, "%s", line.c_str());
        char *rest = text;
        for (char *word = strsep(&rest, " "); word != nullptr && count < kMaxWords;
             word = strsep(&rest, " ")) {
            pointers[count++] = word;
        }
    }

    char text[kMaxBytes + 1];
    char *pointers[kMaxWords + 1] = {};
    int32_t count = 0;
};

struct Order {
    const fault::Request *request;
    fault::Call call;
    int number;
    bool managed;
    bool stopped;
};

/// False for what is no order.
bool parse(const std::string &line, Order &order) {
    unsigned index = 0;
    unsigned call = 0;
    unsigned number = 0;
    char flags[4] = {};
    if (sscanf(line.c_str(), "%3u %3u %4u %3s", &index, &call, &number, flags) < 3 ||
        index >= fault::requests().size() || call > fault::kCalls) {
        return false;
    }
    order = {&fault::requests()[index], static_cast<fault::Call>(call), static_cast<int>(number),
             strchr(flags, 'm') != nullptr, strchr(flags, 's') != nullptr};
    // The start-up makes a new model each time, which stays.
    return (order.request->flags & fault::kCold) == 0;
}

/// Not all requests look how many words there are, and a package may be any file's path.
bool mayHave(const fault::Request &request, const Words &words) {
    const Words own(request.words);
    return words.count >= own.count &&
           (own.count == 0 || strcmp(words.pointers[0], own.pointers[0]) == 0 ||
            strncmp(request.name, "store", 5) != 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    static const World world;
    const std::string input(reinterpret_cast<const char *>(data),
                            size < kMaxBytes ? size : kMaxBytes);
    const std::size_t line = input.find('\n');
    Order order;
    if (!parse(input, order)) {
        return 0;
    }
    Words words(line == std::string::npos ? order.request->words : input.substr(line + 1));
    if (!mayHave(*order.request, words)) {
        return 0;
    }
    fault::setListing(order.stopped ? fault::listingWithoutDaemons : fault::listingWithDaemons);
    fault::reset(order.managed);
    fault::arm(order.call, order.number);
    order.request->run(words.count, words.pointers);
    (void)fault::disarm();
    world.tidy();
    checkStore();
    world.tidy();
    return 0;
}
