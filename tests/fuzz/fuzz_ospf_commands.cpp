// SPDX-License-Identifier: Apache-2.0
// Any sequence of OSPF commands and model calls on one model. The input is lines: the function's
// letter (see kCalls), then a word for each argument; "~" is a null text. The letter "!" and two
// numbers set the daemon's completion code and how many exchanges come before it.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "common/dlist.h"
#include "common/front_end.h"
#include "ospf/frr_ospf.h"
#include "ospf/sw_ospf.h"
#include "ospf/vty_ospf.h"
#include "tests/fuzz/lists.h"
#include "tests/fuzz/request.h"
#include "vty/frr_util.h"

namespace {

using fuzz::insist;

constexpr std::size_t kMaxBytes = 4096;
constexpr int kMaxLines = 64;
constexpr int kMaxArguments = 13;
constexpr std::size_t kCommandBytes = 256;
constexpr std::size_t kKeyBytes = 16;

int exchangesLeft = 0; // before the daemon answers lateCode
int32_t lateCode = 0;

} // namespace

// These take the place of the library's own: no daemon, no shell.
int32_t frrVtyConnect(const char *path, int32_t *out_fd) {
    insist(strcmp(path, "/var/ospfd.vty") == 0);
    *out_fd = INT32_MAX; // never a descriptor of this process
    return 0;
}

int32_t frrVtyDisconnect(int32_t fd) {
    return fd < 1 ? 1 : 0;
}

int32_t frrVtyRun(int32_t fd, const char *cmd, uint8_t *out_code, char *reply, int32_t reply_size) {
    insist(fd == INT32_MAX && strnlen(cmd, kCommandBytes) < kCommandBytes);
    insist(out_code != nullptr && reply != nullptr && reply_size == 512);
    if (exchangesLeft > 0) {
        --exchangesLeft;
        return 0;
    }
    return lateCode;
}

int32_t sw_is_lan_vid(int32_t vid) {
    return vid % 3 == 1 ? 1 : 0;
}

int32_t sw_is_wan_vid(int32_t vid) {
    return vid % 3 == 2 ? 1 : 0;
}

int32_t record_log_act(const char *, ...) {
    return 0;
}

namespace {

/// A function and what its arguments are: n number, t text, and by address k key of 16
/// bytes, v number, L virtual link of that area.
struct Call {
    char letter;
    const char *arguments;
    void (*function)();
};

template <typename Function> void (*any(Function function))() {
    return reinterpret_cast<void (*)()>(function);
}

const Call kCalls[] = {
    {'a', "nnt",           any(swOspfRouterId)            },
    {'b', "nn",            any(swOspfGracefulRestart)     },
    {'c', "nn",            any(swOspfRfc1583Compa)        },
    {'d', "nnn",           any(swOspfDefaultMetric)       },
    {'e', "nnn",           any(swOspfdistance)            },
    {'f', "nnn",           any(swOspfMaxPaths)            },
    {'g', "nnn",           any(swOspfAutoCostRef)         },
    {'h', "nn",            any(swOspfPassiveInterface)    },
    {'i', "nnnnn",         any(swOspfTimerThrottleSpf)    },
    {'j', "nnnnnnn",       any(swOspfOrignate)            },
    {'k', "nttnnn",        any(swOspfNetwork)             },
    {'l', "nnnnnnn",       any(swOspfRedistribute)        },
    {'m', "ntnnn",         any(swOspfArea)                },
    {'n', "ntnnn",         any(swOspfAreaSummary)         },
    {'o', "ntnnn",         any(swOspfAreaDefaultCost)     },
    {'p', "ntttnnnnn",     any(swOspfAreaRange)           },
    {'q', "nttnnnnnnnnnn", any(swOspfVirtualLink)         },
    {'r', "nttnn",         any(swOspfVirtualLinkAuth)     },
    {'s', "nttkn",         any(swOspfVirtualLinkAuthKey)  },
    {'t', "nttnkn",        any(swOspfVirtualLinkMd5Key)   },
    {'u', "nnnn",          any(swIpOspfHelloInterval)     },
    {'v', "nnnn",          any(swIpOspfDeadInterval)      },
    {'w', "nnnn",          any(swIpOspfRetransmitInterval)},
    {'x', "nnnn",          any(swIpOspfTransmitDelay)     },
    {'y', "nnnn",          any(swIpOpsfCost)              },
    {'z', "nnnn",          any(swIpOspfPriority)          },
    {'A', "nnn",           any(swIpOspfMtuIgnore)         },
    {'B', "nnnn",          any(swIpOspfNetwork)           },
    {'C', "nnnn",          any(swIpOspfAuth)              },
    {'D', "nnnk",          any(swIpOspfAuthKey)           },
    {'E', "nnnnk",         any(swIpOspfAuthM5dKey)        },
    {'F', "n",             any(swOspfDisableProcess)      },
    {'G', "n",             any(ucOspfEnableProcess)       },
    {'H', "n",             any(ucOspfDefaultProcessByNum) },
    {'I', "nnkn",          any(ucIpOpsfBasicSetParaByKey) },
    {'J', "nnvn",          any(ucIpOpsfInfSetParaByKey)   },
    {'K', "nnnnnnnn",      any(ucOspfRedistribute)        },
    {'L', "nnn",           any(ucOspfAreaDelete)          },
    {'M', "nn",            any(ucOspfVirtualLinkDelete)   },
    {'N', "nnn",           any(ucOspfAreaRangeDelete)     },
    {'O', "nn",            any(ucOspfNetworkDelete)       },
    {'P', "nL",            any(ucOspfVirtualLinkInsert)   },
    {'Q', "n",             any(ucOspfProcessIsEnable)     },
    {'R', "ntnt",          any(doVtyOspfConfigInterface)  },
    {'S', "nntn",          any(vtyOspfConfigNetwork)      },
    {'T', "",              any(ucOspfShowConfig)          },
};

const Call *callOf(char letter) {
    for (const Call &call : kCalls) {
        if (call.letter == letter) {
            return &call;
        }
    }
    return nullptr;
}

/// Room for one argument that is passed by address; exactly as large as the function may read.
union Room {
    char key[kKeyBytes];
    OspfVirtualLinkCfg link;
    int32_t number;
};

/// Every argument travels as a 64-bit word, whatever the function takes.
[[clang::no_sanitize("function")]] void play(const Call &call, char *words) {
    uint64_t at[kMaxArguments] = {};
    Room rooms[kMaxArguments] = {};
    for (int i = 0; call.arguments[i] != '\0'; ++i) {
        char *word = words == nullptr ? nullptr : strsep(&words, " ");
        const uint64_t number = word == nullptr ? 0 : strtoull(word, nullptr, 0);
        Room &room = rooms[i];
        switch (call.arguments[i]) {
        case 'n':
            at[i] = number;
            continue;
        case 't':
            at[i] =
                word == nullptr || strcmp(word, "~") == 0 ? 0 : reinterpret_cast<uint64_t>(word);
            continue;
        case 'k':
            if (word != nullptr) {
                strncpy(room.key, word, sizeof room.key - 1);
            }
            break;
        case 'L':
            (void)ucOspfVirtualLinkInit(&room.link); // always 0
            room.link.areaId = static_cast<uint32_t>(number);
            break;
        default:
            room.number = static_cast<int32_t>(number);
            break;
        }
        at[i] = reinterpret_cast<uint64_t>(&room);
    }
    using Function =
        uint64_t (*)(uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t,
                     uint64_t, uint64_t, uint64_t, uint64_t, uint64_t);
    (void)reinterpret_cast<Function>(call.function)(at[0], at[1], at[2], at[3], at[4], at[5], at[6],
                                                    at[7], at[8], at[9], at[10], at[11], at[12]);
}

void checkModel() {
    for (const OspfInterfaceEntry &entry : pucOspf->interface) {
        insist(entry.inUse <= 1 && entry.spare == 1);
    }
    fuzz::checkLists();
}

void setDaemon(const char *words) {
    char *rest = nullptr;
    lateCode = static_cast<int32_t>(strtol(words, &rest, 10));
    exchangesLeft = static_cast<int>(strtol(rest, nullptr, 10) % 1000);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    char text[kMaxBytes + 1] = {};
    memcpy(text, data, size < kMaxBytes ? size : kMaxBytes);
    insist(ucOspfInit() == 0);
    setDaemon("0 0");
    char *rest = text;
    for (int line = 0; line < kMaxLines && rest != nullptr; ++line) {
        char *words = strsep(&rest, "\n");
        const char letter = words[0];
        const Call *call = callOf(letter);
        char *arguments = letter == '\0' ? words : words + 1;
        arguments += *arguments == ' ' ? 1 : 0;
        if (letter == '!') {
            setDaemon(arguments);
        } else if (call != nullptr) {
            play(*call, arguments);
        }
    }
    checkModel();
    fuzz::releaseLists();
    free(pucOspf);
    pucOspf = nullptr;
    return 0;
}
