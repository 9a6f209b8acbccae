// SPDX-License-Identifier: Apache-2.0
// The NHRP front-end handlers: the phrases that they know, and what each of them sets.

#include "nhrp/frr_nhrp.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "common/front_end.h"
#include "common/status.h"
#include "common/table.h"
#include "common/words.h"
#include "nhrp/sw_nhrp.h"
#include "vty/manager.h"

namespace {

using frruci::common::findRow;
using frruci::common::hasUniqueWords;
using frruci::common::kSuccess;
using frruci::common::Words;

constexpr const char *kReplyPipe = "/tmp/tmp/nhrp_pipe_c2lua";
constexpr uint16_t kVrf = 0; // builders ignore it

constexpr const char *kAny = nullptr; // stands for any word

/// A builder of an interface setting; the last words of its phrase are its values.
struct Builder {
    using OfNone = uint32_t (*)(uint16_t vrf, const char *ifname);
    using OfOne = uint32_t (*)(uint16_t vrf, const char *ifname, const char *value);
    using OfTwo = uint32_t (*)(uint16_t vrf, const char *ifname, const char *first,
                               const char *second);
    union {
        OfNone none;
        OfOne one;
        OfTwo two;
    };
    uint8_t values;

    constexpr Builder(OfNone builder) : none(builder), values(0) {}
    constexpr Builder(OfOne builder) : one(builder), values(1) {}
    constexpr Builder(OfTwo builder) : two(builder), values(2) {}

    /// count: how many of the words are the phrase's.
    uint32_t build(const char *ifname, const Words &words, int32_t count) const {
        switch (values) {
        case 0:
            return none(kVrf, ifname);
        case 1:
            return one(kVrf, ifname, words[count - 1]);
        default:
            return two(kVrf, ifname, words[count - 2], words[count - 1]);
        }
    }
};

struct Phrase {
    [[no_unique_address]] Builder builder; // its padding takes what follows
    uint8_t wordCount;
    char words[32] = {}; // each with its NUL, any word an empty one; pointers would take more flash

    template <typename Build, std::size_t N>
    consteval Phrase(Build build, const char *const (&list)[N]) : builder(build), wordCount(N) {
        std::size_t length = 0;
        for (const char *word : list) {
            while (word != kAny && *word != '\0') {
                words[length++] = *word++;
            }
            words[length++] = '\0'; // one that does not fit is no constant expression
        }
    }
};

// Not every phrase has its negated one. Fixed by the interface.
constexpr Phrase kPhrases[] = {
    {nhrp_ip_address,               {"ip", "address", kAny}                             },
    {nhrp_ip_nhrp_network,          {"ip", "nhrp", "network-id", kAny}                  },
    {nhrp_ip_nhrp,                  {"ip", "nhrp", "redirect"}                          },
    {nhrp_ip_nhrp,                  {"ip", "nhrp", "shortcut"}                          },
    {nhrp_ip_nhrp_registration,     {"ip", "nhrp", "registration", "no-unique"}         },
    {nhrp_ip_nhrp_nhs_nbma,         {"ip", "nhrp", "nhs", "dynamic", "nbma", kAny}      },
    {nhrp_ip_nhrp_map_multicast,    {"ip", "nhrp", "map", "multicast", kAny}            },
    {nhrp_tunnel_profile,           {"tunnel", "protection", "vici", "profile", kAny}   },
    {nhrp_tunnel_source,            {"tunnel", "source", kAny}                          },
    {nhrp_tunnel_spoke_link,        {"tunnel", "add", kAny, kAny}                       },
    {nhrp_tunnel_set_spoke_link,    {"tunnel", "connect", kAny, kAny}                   },
    {nhrp_no_tunnel_spoke_link,     {"tunnel", "del", kAny, kAny}                       },
    {nhrp_no_link_detect,           {"no", "link-detect"}                               },
    {no_nhrp_ip_address,            {"no", "ip", "address", kAny}                       },
    {nhrp_no_ip_nhrp_nhs_nbma,      {"no", "ip", "nhrp", "nhs", "dynamic", "nbma", kAny}},
    {nhrp_no_ip_nhrp,               {"no", "ip", "nhrp", "shortcut"}                    },
    {nhrp_no_ip_nhrp_map_multicast, {"no", "ip", "nhrp", "map", "multicast", kAny}      },
};

/// A global setting.
struct Keyword {
    char word[24]; // a text, not a pointer, which would take more flash
    uint32_t (*build)(uint16_t vrf, const char *value);
};

constexpr Keyword kKeywords[] = {
    {"nflog-group",           nhrp_nflog          },
    {"multicast-nflog-group", multicast_nhrp_nflog},
};
static_assert(hasUniqueWords<&Keyword::word>(kKeywords));

/// For the log.
const char *shown(const char *word) {
    return word == nullptr ? "(null)" : word;
}

void replyStatus(uint32_t status) {
    // Without a pipe there is nobody to tell.
    (void)write_pipe_to_lua(status == kSuccess ? "ok" : "fail", kReplyPipe);
}

bool matches(const Phrase &phrase, const Words &words) {
    if (words.count() < phrase.wordCount) {
        return false;
    }
    const char *word = phrase.words;
    for (int32_t i = 0; i < phrase.wordCount; ++i) {
        if (*word != '\0' && !words.is(i, word)) {
            return false;
        }
        word += strlen(word) + 1;
    }
    return true;
}

uint32_t runPhrase(const char *ifname, const Words &words) {
    for (const Phrase &phrase : kPhrases) {
        if (matches(phrase, words)) {
            return phrase.builder.build(ifname, words, phrase.wordCount);
        }
    }
    return kSuccess; // for unknown and unfinished phrases. Fixed by the interface.
}

uint32_t runKeyword(const Words &words) {
    const Keyword *keyword =
        words.count() == 0 ? nullptr : findRow<&Keyword::word>(kKeywords, words[0]);
    return keyword == nullptr ? kSuccess : keyword->build(kVrf, words[1]);
}

} // namespace

void process_nhrp_interface(int32_t argc, char **argv) {
    if (argc <= 1 || argv == nullptr) {
        return;
    }
    const char *ifname = argv[1];
    (void)record_log_act("frr_nhrp:%d: process_nhrp_interface argc:%d,argv:%s\n\n", __LINE__, argc,
                         shown(ifname));
    replyStatus(runPhrase(ifname, Words(argc - 2, argv + 2)));
}

void process_nhrp_global(int32_t argc, char **argv) {
    if (argc < 1 || argv == nullptr) {
        replyStatus(kSuccess);
        return;
    }
    if (argc == 1) {
        (void)record_log_act("frr_nhrp:%d: process_nhrp_global argc:%d,argv:%s\n\n", __LINE__, argc,
                             shown(argv[0]));
        (void)frruci::vty::startDaemon("killall nhrpd;nhrpd -d"); // the next exchange tells
    }
    // argc does not limit the words: after a restart, with argc 1, a keyword still counts.
    replyStatus(runKeyword(Words(2, argv + 1)));
}

void process_nhrp_show(int32_t argc, char **argv) {
    if (argc < 1 || argv == nullptr) {
        return;
    }
    const Words words(3, argv + 1); // whatever argc says. Fixed by the interface.
    (void)record_log_act("frr_nhrp:%d: process_nhrp_show argc:%d,argv:%s,%s,%s\n\n", __LINE__, argc,
                         shown(words[0]), shown(words[1]), shown(words[2]));
    const bool isCache = words.is(0, "ip") && words.is(1, "nhrp") && words.is(2, "cache");
    if (isCache && swNhrpShow(kVrf, "cache") != kSuccess) {
        (void)record_log_act("frr_nhrp:%d: process_nhrp_show argc:%d,argv:%s,failed\n\n", __LINE__,
                             argc, words[2]);
    }
}
