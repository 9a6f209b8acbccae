// SPDX-License-Identifier: Apache-2.0
// Show commands of ospfd, and the handlers that take their output line by line.

#include <arpa/inet.h>

#include "common/front_end.h"
#include "common/text.h"
#include "ospf/frr_ospf.h"
#include "ospf/frr_ospf_settings.h"
#include "ospf/vty_ospf.h"
#include "vty/session.h"

namespace {

using frruci::common::equals;
using frruci::common::format;
using frruci::vty::kCommandBytes;

constexpr int32_t kShown = 0;
constexpr int32_t kShowFailed = 1;

constexpr const char *kSocket = "/var/ospfd.vty";
constexpr uint32_t kWanPass = 1;
constexpr uint32_t kLanPass = 0;
constexpr int32_t kRipLines = 0;

// Fixed by the interface: the two WAN banners differ by one star.
constexpr const char *kShowBanner =
    "********************************WAN***********************************";
constexpr const char *kWanDatabaseBanner =
    "********************************WAN************************************";
constexpr const char *kLanDatabaseBanner =
    "********************************LAN************************************";

enum Kind : uint32_t { kOther, kInterface, kNeighbor, kDatabase };

struct KindWord {
    Kind kind;
    const char *word;
};

constexpr KindWord kKindWords[] = {
    {kInterface, "interface"},
    {kNeighbor,  "neighbor" },
    {kDatabase,  "database" },
};

Kind kindOf(const char *what) {
    for (const KindWord &row : kKindWords) {
        if (equals(what, row.word)) {
            return row.kind;
        }
    }
    return kOther;
}

int32_t show(const char *banner, const char *command, Kind kind, uint32_t pass, int32_t mode) {
    (void)puts(banner);
    return vtyPrint(command, kSocket, kind, pass, mode) == 0 ? kShown : kShowFailed;
}

const char *when(uint32_t given, const char *text) {
    return given != 0 ? text : "";
}

// Rows for the front-end.

constexpr const char *kNeighborPipe = "/tmp/tmp/ospf_pipe_c2lua_neighbor";
constexpr const char *kDatabasePipe = "/tmp/tmp/ospf_pipe_c2lua_database";

constexpr std::size_t kRowBytes = 257;

/// Copies the first word of a line that is short enough to be an address; only blanks separate.
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

// Drops headings, blank lines and the daemon's remarks.
void forwardRow(const char *line, const char *pipe) {
    char row[kRowBytes + 1] = {};
    memcpy(row, line, kRowBytes);
    char word[kRowBytes + 1];
    in_addr address = {};
    if (firstWord(row, word) && inet_aton(word, &address) != 0) {
        (void)write_pipe_to_lua(row, pipe); // without a pipe there is nobody to tell
    }
}

} // namespace

int32_t swOspfShowOspf(uint16_t, const char *what, int32_t mode) {
    what = what == nullptr ? "" : what;
    char command[kCommandBytes];
    format(command, "show ip ospf %s", what);
    return show(kShowBanner, command, kindOf(what), kWanPass, mode);
}

int32_t swOspfShowOspfDatabase(uint16_t, const OspfDatabaseRequest *request) {
    if (request == nullptr) {
        return kShowFailed;
    }
    const bool self = request->self_originate != 0;
    const bool byRouter = !self && request->has_adv_router != 0;
    char command[kCommandBytes];
    format(command, "show ip ospf database %.64s %.64s %s%.64s",
           request->lsa_type == nullptr ? "" : request->lsa_type,
           when(request->has_link_state_id, request->link_state_id),
           self ? "self-originate" : when(byRouter, "adv-router "),
           when(byRouter, request->adv_router));
    if (show(kWanDatabaseBanner, command, kDatabase, kWanPass, kRipLines) != kShown) {
        return kShowFailed;
    }
    return show(kLanDatabaseBanner, command, kDatabase, kLanPass, kRipLines);
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
        forwardRow(line, kNeighborPipe);
    }
}

void handle_ospf_show_database(char *line, uint32_t arg) {
    if (line != nullptr && arg != 0) {
        forwardRow(line, kDatabasePipe);
    }
}
