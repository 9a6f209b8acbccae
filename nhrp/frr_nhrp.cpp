// SPDX-License-Identifier: Apache-2.0
// The NHRP front-end handlers: the phrases that they know, and what each of them sets.

#include "nhrp/frr_nhrp.h"

#include <cstddef>
#include <cstring>

#include "common/front_end.h"
#include "common/shell.h"
#include "common/text.h"
#include "nhrp/settings.h"
#include "nhrp/sw_nhrp.h"

namespace {

using frruci::common::equals;
using frruci::nhrp::apply;
using frruci::nhrp::Setting;
using frruci::nhrp::valueCount;
using frruci::nhrp::Values;

constexpr const char *kReplyPipe = "/tmp/tmp/nhrp_pipe_c2lua";
constexpr uint32_t kAccepted = 0;

constexpr int kFirstPhraseWord = 2; // behind the handler's name and the interface

constexpr bool isValue(const char *word) {
    return *word >= 'A' && *word <= 'Z';
}

constexpr std::size_t lengthOf(const char *word) {
    std::size_t length = 0;
    while (word[length] != '\0' && word[length] != ' ') {
        ++length;
    }
    return length;
}

constexpr const char *behind(const char *word) {
    word += lengthOf(word);
    return *word == ' ' ? word + 1 : word;
}

constexpr int wordsOf(const char *phrase) {
    int words = 0;
    for (; *phrase != '\0'; phrase = behind(phrase)) {
        ++words;
    }
    return words;
}

/// One phrase of an interface, and the least argc that a request with it has.
struct Phrase {
    const char *words; // a capital stands for any word; the setting's values are the last ones
    int leastArgc;
    Setting setting;
};

// Not every phrase has its negated one. Fixed by the interface.
constexpr Phrase kPhrases[] = {
    {"ip address A",                     5, Setting::kAddress     },
    {"ip nhrp network-id N",             6, Setting::kNetworkId   },
    {"ip nhrp redirect",                 5, Setting::kWord        },
    {"ip nhrp shortcut",                 5, Setting::kWord        },
    {"ip nhrp registration no-unique",   6, Setting::kNoUnique    },
    {"ip nhrp nhs dynamic nbma A",       8, Setting::kNhsNbma     },
    {"ip nhrp map multicast A",          7, Setting::kMap         },
    {"tunnel protection vici profile P", 7, Setting::kProfile     },
    {"tunnel source S",                  5, Setting::kSource      },
    {"tunnel add A B",                   6, Setting::kAddLink     },
    {"tunnel connect A B",               6, Setting::kConnectLink },
    {"tunnel del A B",                   6, Setting::kDeleteLink  },
    {"no link-detect",                   4, Setting::kNoLinkDetect},
    {"no ip address A",                  6, Setting::kNoAddress   },
    {"no ip nhrp nhs dynamic nbma A",    9, Setting::kNoNhsNbma   },
    {"no ip nhrp shortcut",              6, Setting::kNoWord      },
    {"no ip nhrp map multicast A",       8, Setting::kNoMap       },
};

/// A phrase's words all lie within its least argc, so none is read that a request does not have.
consteval bool leastCountsCoverTheWords() {
    for (const Phrase &phrase : kPhrases) {
        if (phrase.leastArgc != kFirstPhraseWord + wordsOf(phrase.words)) {
            return false;
        }
    }
    return true;
}
static_assert(leastCountsCoverTheWords());

/// A global keyword and what it sets.
struct Keyword {
    const char *word;
    Setting setting;
};

constexpr Keyword kKeywords[] = {
    {"nflog-group",           Setting::kNflogGroup},
    {"multicast-nflog-group", Setting::kMcastGroup},
};

void reply(uint32_t status) {
    // Without a pipe there is nobody to tell.
    (void)write_pipe_to_lua(status == kAccepted ? "ok" : "fail", kReplyPipe);
}

/// For the log.
const char *shown(const char *word) {
    return word == nullptr ? "(null)" : word;
}

/// Whether an entry of the vector may stand for the first word of wanted; a null entry never does.
bool fits(const char *entry, const char *wanted) {
    if (entry == nullptr || isValue(wanted)) {
        return entry != nullptr;
    }
    const std::size_t length = lengthOf(wanted);
    return strlen(entry) == length && strncmp(entry, wanted, length) == 0;
}

bool matches(const Phrase &phrase, int32_t argc, char **argv) {
    if (argc < phrase.leastArgc) {
        return false;
    }
    char **entry = argv + kFirstPhraseWord;
    for (const char *wanted = phrase.words; *wanted != '\0'; wanted = behind(wanted), ++entry) {
        if (!fits(*entry, wanted)) {
            return false;
        }
    }
    return true;
}

uint32_t applyPhrase(const Phrase &phrase, char **argv) {
    const int count = valueCount(phrase.setting);
    Values values;
    for (int i = 0; i < count; ++i) {
        values.at[i] = argv[phrase.leastArgc - count + i];
    }
    return apply(phrase.setting, argv[1], values);
}

uint32_t runPhrase(int32_t argc, char **argv) {
    for (const Phrase &phrase : kPhrases) {
        if (matches(phrase, argc, argv)) {
            return applyPhrase(phrase, argv);
        }
    }
    return kAccepted; // also for unknown and unfinished phrases. Fixed by the interface.
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
            return apply(keyword.setting, nullptr, {value});
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
