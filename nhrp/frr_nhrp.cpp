// SPDX-License-Identifier: Apache-2.0
// The NHRP front-end handlers: the phrases that they know, and what each of them sets.

#include "nhrp/frr_nhrp.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "common/front_end.h"
#include "common/shell.h"
#include "common/text.h"
#include "nhrp/sw_nhrp.h"

namespace {

using frruci::common::equals;

constexpr const char *kReplyPipe = "/tmp/tmp/nhrp_pipe_c2lua";
constexpr uint32_t kAccepted = 0;
constexpr uint16_t kVrf = 0; // builders ignore it

constexpr int32_t kFirstPhraseWord = 2; // after the handler's name and the interface
constexpr const char *kAny = nullptr;   // stands for any word

/// A builder of an interface setting; it takes the last words of its phrase as its values.
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

    /// end: the entry after the phrase's last word.
    uint32_t build(const char *ifname, char **end) const {
        switch (values) {
        case 0:
            return none(kVrf, ifname);
        case 1:
            return one(kVrf, ifname, end[-1]);
        default:
            return two(kVrf, ifname, end[-2], end[-1]);
        }
    }
};

struct Phrase {
    Builder builder;
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

    constexpr int32_t leastArgc() const { return kFirstPhraseWord + wordCount; }
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
    const char *word;
    uint32_t (*build)(uint16_t vrf, const char *value);
};

constexpr Keyword kKeywords[] = {
    {"nflog-group",           nhrp_nflog          },
    {"multicast-nflog-group", multicast_nhrp_nflog},
};

void reply(uint32_t status) {
    // Without a pipe there is nobody to tell.
    (void)write_pipe_to_lua(status == kAccepted ? "ok" : "fail", kReplyPipe);
}

/// For the log.
const char *shown(const char *word) {
    return word == nullptr ? "(null)" : word;
}

bool matches(const Phrase &phrase, int32_t argc, char **argv) {
    if (argc < phrase.leastArgc()) {
        return false;
    }
    const char *word = phrase.words;
    for (int32_t i = kFirstPhraseWord; i < phrase.leastArgc(); ++i) {
        if (argv[i] == nullptr || (*word != '\0' && !equals(argv[i], word))) {
            return false;
        }
        word += strlen(word) + 1;
    }
    return true;
}

uint32_t runPhrase(int32_t argc, char **argv) {
    for (const Phrase &phrase : kPhrases) {
        if (matches(phrase, argc, argv)) {
            return phrase.builder.build(argv[1], argv + phrase.leastArgc());
        }
    }
    return kAccepted; // for unknown and unfinished phrases. Fixed by the interface.
}

/// The words after the handler's name, up to the first null entry. argc does not limit them: a
/// restart, with argc 1, may be followed by a keyword.
template <int N> void takeWords(char **argv, const char *(&words)[N]) {
    bool ended = false;
    for (int i = 0; i < N; ++i) {
        words[i] = ended ? nullptr : argv[i + 1];
        ended = words[i] == nullptr;
    }
}

void restart(int32_t argc, const char *name) {
    (void)record_log_act("frr_nhrp:%d: process_nhrp_global argc:%d,argv:%s\n\n", __LINE__, argc,
                         shown(name));
    frruci::common::runShell("killall nhrpd;nhrpd -d");
}

uint32_t runKeyword(const char *word, const char *value) {
    for (const Keyword &keyword : kKeywords) {
        if (word != nullptr && equals(word, keyword.word)) {
            return keyword.build(kVrf, value);
        }
    }
    return kAccepted;
}

bool isCacheRequest(const char *const (&words)[3]) {
    return words[2] != nullptr && equals(words[0], "ip") && equals(words[1], "nhrp") &&
           equals(words[2], "cache");
}

} // namespace

void process_nhrp_interface(int32_t argc, char **argv) {
    if (argc <= 1 || argv == nullptr) {
        return;
    }
    (void)record_log_act("frr_nhrp:%d: process_nhrp_interface argc:%d,argv:%s\n\n", __LINE__, argc,
                         shown(argv[1]));
    reply(runPhrase(argc, argv));
}

void process_nhrp_global(int32_t argc, char **argv) {
    const char *words[2] = {};
    if (argv != nullptr && argc >= 1) {
        if (argc == 1) {
            restart(argc, argv[0]);
        }
        takeWords(argv, words);
    }
    reply(runKeyword(words[0], words[1]));
}

void process_nhrp_show(int32_t argc, char **argv) {
    if (argc < 1 || argv == nullptr) {
        return;
    }
    const char *words[3];
    takeWords(argv, words);
    (void)record_log_act("frr_nhrp:%d: process_nhrp_show argc:%d,argv:%s,%s,%s\n\n", __LINE__, argc,
                         shown(words[0]), shown(words[1]), shown(words[2]));
    if (isCacheRequest(words) && swNhrpShow(0, "cache") != 0) {
        (void)record_log_act("frr_nhrp:%d: process_nhrp_show argc:%d,argv:%s,failed\n\n", __LINE__,
                             argc, words[2]);
    }
}
