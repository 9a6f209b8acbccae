// SPDX-License-Identifier: Apache-2.0
// The OSPF handlers that the web front-end calls with its words.

#include "ospf/frr_ospf.h"

#include "common/front_end.h"
#include "ospf/frr_ospf_settings.h"
#include "ospf/frr_ospf_words.h"

namespace {

using frruci::ospf::kNoVrf;
using frruci::ospf::kWanWord;
using frruci::ospf::loggedWord;
using frruci::ospf::Words;

constexpr const char *kReplyPipe = "/tmp/tmp/ospf_pipe_c2lua";

constexpr int32_t kInterfaceShowWords = 1;
constexpr int32_t kInterfaceWords = 4;

constexpr int32_t kSimplePasswordWords = kInterfaceWords + 1;
constexpr int32_t kMessageDigestWords = kInterfaceWords + 2;

constexpr int32_t kSet = 1;

// The front-end stores the settings itself and asks the daemon for their effect: a refusal is only
// logged, and every reply is "ok".
void replyOk() {
    (void)write_pipe_to_lua("ok", kReplyPipe); // without a pipe there is nobody to tell
}

void logFailure(uint32_t status, const char *what) {
    if (status != 0) {
        (void)record_log_act("frr_ospf:%d:  ret=%d, %s\n", __LINE__, static_cast<int32_t>(status),
                             what);
    }
}

// One wording for every keyword, on purpose: support tools look for it.
void logInterfaceFailure(uint32_t status) {
    logFailure(status, "ip_ospf_cost, failed");
}

struct Interface {
    const char *name;
    int32_t wan;
};

// The front-end gives up by itself when no reply comes.
void leaveUnanswered() {
    (void)record_log_act("frr_ospf:%d: ip_ospf_cost, failed\n", __LINE__);
}

void setAuthentication(const Interface &interface, const Words &words) {
    const int32_t type = words.number(3);
    logInterfaceFailure(ip_ospf_auth(kNoVrf, interface.name, interface.wan, kSet, type));
    // The results of the key commands are not looked at, on purpose: the reply is "ok" anyway.
    if (type == frruci::ospf::kSimplePassword) {
        if (words.count() < kSimplePasswordWords) {
            return leaveUnanswered();
        }
        (void)ip_ospf_auth_key(kNoVrf, interface.name, interface.wan, kSet, words[4]);
    } else if (type == frruci::ospf::kMessageDigest) {
        if (words.count() < kMessageDigestWords) {
            return leaveUnanswered();
        }
        (void)ip_ospf_auth_md5key(kNoVrf, interface.name, interface.wan, kSet, words.number(4),
                                  words[5]);
    }
    replyOk();
}

void setByKeyword(const Interface &interface, const Words &words) {
    for (const auto &keyword : frruci::ospf::interfaceKeywords()) {
        if (words.is(2, keyword.word)) {
            logInterfaceFailure(keyword.apply(interface.name, interface.wan, words.number(3)));
            break;
        }
    }
    replyOk();
}

} // namespace

void process_ospf_interface(int32_t argc, char **argv) {
    const Words words(argc, argv);
    if (argc == kInterfaceShowWords) {
        return;
    }
    (void)record_log_act("frr_ospf:%d: process_ospf_interface %d\n", __LINE__, argc);
    (void)record_log_act("frr_ospf:%d: process_ospf_interface %s %s %s %s\n", __LINE__,
                         loggedWord(argv, 0), loggedWord(argv, 1), loggedWord(argv, 2),
                         loggedWord(argv, 3));
    if (words.count() < kInterfaceWords) {
        return;
    }
    const Interface interface = {words[0], words.is(1, kWanWord) ? 1 : 0};
    if (words.is(2, frruci::ospf::kAuthenticationWord)) {
        setAuthentication(interface, words);
    } else {
        setByKeyword(interface, words);
    }
}
