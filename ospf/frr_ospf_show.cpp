// SPDX-License-Identifier: Apache-2.0
// The display: what the pages ask for, the show commands of ospfd, and the rows that its lines
// become.

#include "ospf/frr_ospf_show.h"

#include <arpa/inet.h>

#include "common/front_end.h"
#include "common/outside.h"
#include "common/table.h"
#include "common/text.h"
#include "ospf/command.h"
#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_reply.h"
#include "ospf/frr_ospf_settings.h"
#include "vty/daemons.h"

namespace {

using frruci::common::findRow;
using frruci::common::format;
using frruci::common::isInOrder;
using namespace frruci::ospf;

constexpr int32_t kRipLines = 0;
constexpr int32_t kOspfLines = 1;
constexpr unsigned kEndMarkPauseUs = 10000;

// Fixed by the interface: the two WAN banners differ by one star.
constexpr const char *kShowBanner =
    "********************************WAN***********************************";
constexpr const char *kWanDatabaseBanner =
    "********************************WAN************************************";
constexpr const char *kLanDatabaseBanner =
    "********************************LAN************************************";

enum Kind : uint32_t { kOther, kInterface, kNeighbor, kDatabase };

struct Shown {
    Kind kind;
    const char *what;
    const char *pipe; ///< for its rows; null when they go to the store
};

constexpr Shown kShown[] = {
    {kInterface, "interface", nullptr                            },
    {kNeighbor,  "neighbor",  "/tmp/tmp/ospf_pipe_c2lua_neighbor"},
    {kDatabase,  "database",  "/tmp/tmp/ospf_pipe_c2lua_database"},
};

static_assert(isInOrder<&Shown::kind>(kShown, kInterface));

constexpr const Shown &shown(Kind kind) {
    return kShown[kind - kInterface];
}

Kind kindOf(const char *what) {
    const Shown *row = findRow<&Shown::what>(kShown, what);
    return row != nullptr ? row->kind : kOther;
}

uint32_t sendShow(const char *banner, const char *command, Kind kind, const Instance &pass,
                  int32_t mode) {
    (void)puts(banner); // for whoever reads it
    return vtyPrint(command, frruci::vty::kOspfdSocket, kind, pass.selector, mode) == 0 ? kSuccess
                                                                                        : kFailed;
}

/// What a page's show comes to.
uint32_t showForPage(Kind kind) {
    return static_cast<uint32_t>(swOspfShowOspf(kNoVrf, shown(kind).what, kOspfLines));
}

void showRows(Kind kind, int line = __builtin_LINE()) {
    const uint32_t status = showForPage(kind);
    frruci::outside::pauseFor(0, kEndMarkPauseUs);
    replyOk(shown(kind).pipe);
    logFailure(status, "swOspfShowOspf, failed", line);
}

const char *ifGiven(uint32_t given, const char *text) {
    return given != 0 ? text : "";
}

constexpr std::size_t kRowBytes = 257;

/// Copies the first word of a line that is short enough to be an address; only spaces separate.
template <std::size_t N> bool firstWord(const char *line, char (&word)[N]) {
    line += strspn(line, " ");
    const std::size_t length = strcspn(line, " ");
    if (length == 0 || length >= N) {
        return false;
    }
    memcpy(word, line, length);
    word[length] = '\0';
    return true;
}

// Drops headings, empty lines and the daemon's remarks.
void forwardRow(const char *line, Kind kind) {
    char row[kRowBytes + 1] = {};
    memcpy(row, line, kRowBytes);
    char word[kRowBytes + 1];
    in_addr address = {};
    if (firstWord(row, word) && inet_aton(word, &address) != 0) {
        (void)write_pipe_to_lua(row, shown(kind).pipe); // without a pipe there is nobody to tell
    }
}

} // namespace

int32_t swOspfShowOspf(uint16_t /*vrf*/, const char *what, int32_t mode) {
    what = orEmpty(what);
    CommandText command;
    format(command, "show ip ospf %s", what);
    return static_cast<int32_t>(sendShow(kShowBanner, command, kindOf(what), kWan, mode));
}

int32_t swOspfShowOspfDatabase(uint16_t /*vrf*/, const OspfDatabaseRequest *request) {
    if (request == nullptr) {
        return static_cast<int32_t>(kFailed);
    }
    const bool self = request->self_originate != 0;
    const bool byRouter = !self && request->has_adv_router != 0;
    CommandText command;
    format(command, "show ip ospf database %.64s %.64s %s%.64s", orEmpty(request->lsa_type),
           ifGiven(request->has_link_state_id, request->link_state_id),
           self ? "self-originate" : ifGiven(byRouter, "adv-router "),
           ifGiven(byRouter, request->adv_router));
    const uint32_t wan = sendShow(kWanDatabaseBanner, command, kDatabase, kWan, kRipLines);
    return static_cast<int32_t>(onceAccepted(
        wan, [&] { return sendShow(kLanDatabaseBanner, command, kDatabase, kLan, kRipLines); }));
}

void process_ospf_neighbor(void) {
    showRows(kNeighbor);
}

void process_ospf_lsdb(void) {
    showRows(kDatabase);
}

void handle_ospf_show(char *line, uint32_t kind, uint32_t arg) {
    switch (kind) {
    case kInterface:
        return handle_ospf_show_interface(line);
    case kNeighbor:
        return handle_ospf_show_neighbor(line);
    case kDatabase:
        return handle_ospf_show_database(line, arg);
    default:
        break;
    }
}

void handle_ospf_show_neighbor(char *line) {
    if (line != nullptr) {
        forwardRow(line, kNeighbor);
    }
}

void handle_ospf_show_database(char *line, uint32_t arg) {
    if (line != nullptr && arg != 0) {
        forwardRow(line, kDatabase);
    }
}

namespace frruci::ospf {

void showInterfaces(int line) {
    (void)record_log_act("frr_ospf:%d: swOspfShowOspf\n", __LINE__);
    const uint32_t status = showForPage(kInterface);
    replyOk();
    logFailure(status, "swOspfShowOspf, failed", line);
}

} // namespace frruci::ospf
