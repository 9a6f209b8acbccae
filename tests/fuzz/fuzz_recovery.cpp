// SPDX-License-Identifier: Apache-2.0
// Both recoveries from any store file, with any answer file and any process listing. The input's
// first line is the protocol's letter (o or r) and the daemons' completion code as one digit; then
// come the store file, the answer and the listing, with a line "==" between them.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>

#include "ospf/frr_ospf_recovery.h"
#include "ospf/sw_ospf.h"
#include "ospf/uc_ospf.h"
#include "rip/frr_rip_recovery.h"
#include "rip/sw_rip.h"
#include "tests/fuzz/rehearsal.h"
#include "vty/startup.h"

namespace {

using namespace fuzz;

constexpr std::size_t kMostCommand = 255;
constexpr uint32_t kSlots = 2;

void clear(dlist *list) {
    while (list->head != nullptr) {
        insist(dlistDelete(list, list->head) == 0);
    }
}

} // namespace

// In place of the library's own, which keeps the list: a leak with every input would be looked into
// with every input.
void dlistDestroy(dlist *list) {
    if (list != nullptr) {
        clear(list);
        free(list);
    }
}

namespace {

/// Takes the text up to the next line "==".
std::string take(std::string &rest) {
    static constexpr char kBetween[] = "\n==\n";
    const std::size_t end = rest.find(kBetween);
    const std::string text = rest.substr(0, end);
    rest.erase(0, end == std::string::npos ? end : end + sizeof kBetween - 1);
    return text;
}

void writeStore(const char *path, const std::string &text) {
    FILE *file = fopen(path, "w");
    insist(file != nullptr && fwrite(text.data(), 1, text.size(), file) == text.size());
    insist(fputc('\n', file) == '\n' && fclose(file) == 0);
}

/// The models of before the first input.
void prepare() {
    static RipVrfNode *vrf = nullptr;
    if (vrf == nullptr) {
        insist(frrVtyInit() == 0 && swOspfInit() == 0 && swRipInit() == 0 &&
               ucRipVrfAppend("default", &vrf) == 0);
    }
    clear(vrf->networks);
    clear(gRipIfList);
    for (uint32_t slot = 0; slot < kSlots; ++slot) {
        insist(ucOspfDefaultProcessByNum(slot) == 0);
    }
}

void checkSessions(const Rehearsal &rehearsal, const std::string &path) {
    for (const Line &line : rehearsal.lines) {
        insist(line.commands.rfind(path, 0) == 0 || line.commands.empty());
        for (std::size_t at = 0; (at = line.commands.find(" | ", at)) != std::string::npos;) {
            at += 3;
            insist(std::min(line.commands.find(" | ", at), line.commands.size()) - at <=
                   kMostCommand);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
    std::string rest(reinterpret_cast<const char *>(data), std::min(size, kMaxBytes));
    if (rest.size() < 3 || rest[2] != '\n' || (rest[0] != 'o' && rest[0] != 'r')) {
        return 0;
    }
    const bool ospf = rest[0] == 'o';
    prepare();
    Rehearsal rehearsal;
    rehearsal.code = static_cast<uint8_t>(rest[1] - '0');
    rest.erase(0, 3);
    writeStore(ospf ? "/etc/config/ospf" : "/etc/config/rip", take(rest));
    rehearsal.file = take(rest);
    rehearsal.listing = take(rest);
    if (ospf) {
        (void)ospf_cfg_recovery();
    } else {
        rip_cfg_recovery();
    }
    checkSessions(rehearsal, ospf ? "/var/ospfd.vty" : "/var/ripd.vty");
    insist(rehearsal.stored == 0 &&
           rehearsal.replies.empty()); // a replay stores and replies nothing
    insist(std::all_of(rehearsal.shells.begin(), rehearsal.shells.end(), isKnownShell));
    // A view whose step was refused leaves its session open.
    insist(rehearsal.leftOpen() == 0 || rehearsal.code != 0);
    return 0;
}
