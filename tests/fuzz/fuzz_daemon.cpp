// SPDX-License-Identifier: Apache-2.0
// Any bytes of a daemon, in any pieces. The input's first line is the letter of what is asked (see
// kQuestions), the size of a piece and a number; the rest is what the daemon says before it ends
// its answer.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "nhrp/frr_nhrp.h"
#include "ospf/frr_ospf.h"
#include "ospf/sw_ospf.h"
#include "rip/frr_rip.h"
#include "tests/fuzz/rehearsal.h"
#include "vty/frr_util.h"
#include "vty/startup.h"

namespace {

using namespace fuzz;

constexpr std::size_t kChunkBytes = 256; // the library receives no more at once
constexpr std::size_t kMostPieces = 32;  // a socket holds them while nobody reads
constexpr int32_t kFailed = 1;
constexpr char kEnding[] = "\0\0\0"; // and the completion code

int32_t connected() {
    int32_t session = -1;
    insist(frrVtyConnect("/var/ospfd.vty", &session) == 0);
    return session;
}

void insistOnRows(const Rehearsal &rehearsal, const std::string &pipe) {
    for (const std::string &reply : rehearsal.replies) {
        insist(reply.rfind(pipe + ": ", 0) == 0);
    }
}

/// One command; the answer's room ends where number says.
void run(Rehearsal & /*rehearsal*/, uint32_t number) {
    const int32_t session = connected();
    std::vector<char> room(4 + number % 600);
    uint8_t code = 0;
    const int32_t result =
        frrVtyRun(session, "show", &code, room.data(), static_cast<int32_t>(room.size()));
    insist(result == -1 || result == code);
    insist(frrVtyDisconnect(session) == 0);
}

/// The completion code follows the first three NULs, wherever a piece ends.
uint8_t codeIn(const Rehearsal &rehearsal) {
    const std::string all =
        rehearsal.bytes + std::string(kEnding, 3) + static_cast<char>(rehearsal.code);
    return static_cast<uint8_t>(all[all.find(std::string(kEnding, 3)) + 3]);
}

void print(Rehearsal &rehearsal, uint32_t number) {
    const int32_t session = connected();
    uint8_t code = 0;
    const int32_t result = frrVtyPrint(session, "show", &code, number / 2 % 5, number / 10 % 2,
                                       static_cast<int32_t>(number % 2));
    const uint8_t sent = codeIn(rehearsal);
    insist(code == sent && result == (sent == 2 || sent == 3 ? kFailed : sent));
    insist(frrVtyDisconnect(session) == 0);
}

void neighbors(Rehearsal &rehearsal, uint32_t /*number*/) {
    process_ospf_neighbor();
    insistOnRows(rehearsal, "/tmp/tmp/ospf_pipe_c2lua_neighbor");
}

void database(Rehearsal &rehearsal, uint32_t /*number*/) {
    process_ospf_lsdb();
    insistOnRows(rehearsal, "/tmp/tmp/ospf_pipe_c2lua_database");
}

void ospfInterfaces(Rehearsal &rehearsal, uint32_t /*number*/) {
    char word[] = "show";
    char *words[] = {word, nullptr};
    process_ospf_interface(1, words);
    insistOnRows(rehearsal, "/tmp/tmp/ospf_pipe_c2lua");
}

void ripStatus(Rehearsal &rehearsal, uint32_t /*number*/) {
    (void)process_rip_interface_show(0, nullptr);
    insist(rehearsal.replies.empty());
}

/// What is kept of one piece, up to its first NUL.
std::string kept(const std::string &piece) {
    std::string text;
    std::copy_if(piece.begin(), piece.end(), std::back_inserter(text),
                 [](char c) { return c != ' ' && c != '\b' && c != '\t' && c != '\n'; });
    return text.c_str();
}

/// A reply for each piece, to the first one that is not a whole chunk.
void cache(Rehearsal &rehearsal, uint32_t /*number*/) {
    char words[4][6] = {"x", "ip", "nhrp", "cache"};
    char *argv[] = {words[0], words[1], words[2], words[3], nullptr};
    process_nhrp_show(4, argv);
    std::vector<std::string> wanted;
    std::size_t size = kChunkBytes;
    for (std::size_t at = 0; size == kChunkBytes; at += size) {
        const bool ended = at >= rehearsal.bytes.size();
        const std::string piece = ended ? "" : rehearsal.bytes.substr(at, rehearsal.pieceSize);
        wanted.push_back("/tmp/tmp/nhrp_pipe_c2lua_cache: " + kept(piece));
        size = piece.size();
    }
    insist(rehearsal.replies == wanted);
}

struct Question {
    char letter;
    void (*ask)(Rehearsal &rehearsal, uint32_t number);
};

constexpr Question kQuestions[] = {
    {'r', run           },
    {'p', print         },
    {'n', neighbors     },
    {'d', database      },
    {'i', ospfInterfaces},
    {'s', ripStatus     },
    {'c', cache         },
};

/// So many bytes at once that there are not too many pieces, and no piece is cut.
std::size_t pieceSizeFor(std::size_t asked, std::size_t size) {
    const std::size_t least = size / kMostPieces + 1;
    return std::clamp(asked, least, kChunkBytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
    static const bool ready = frrVtyInit() == 0 && swOspfInit() == 0;
    insist(ready);
    const std::string input(reinterpret_cast<const char *>(data), std::min(size, kMaxBytes));
    const std::size_t line = input.find('\n');
    char letter = '\0';
    unsigned piece = 0;
    unsigned number = 0;
    if (line == std::string::npos ||
        sscanf(input.c_str(), "%c%3u%4u", &letter, &piece, &number) != 3) {
        return 0;
    }
    for (const Question &question : kQuestions) {
        if (question.letter == letter) {
            Rehearsal rehearsal;
            rehearsal.answerTo = "show";
            rehearsal.bytes = input.substr(line + 1);
            rehearsal.pieceSize = pieceSizeFor(piece, rehearsal.bytes.size());
            question.ask(rehearsal, number);
            insist(rehearsal.leftOpen() == 0);
        }
    }
    return 0;
}
