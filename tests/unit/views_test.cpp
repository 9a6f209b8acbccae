// SPDX-License-Identifier: Apache-2.0
// Views: the registry, parameter lists, expansion, and runs against fake daemons.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

#include "common/dlist.h"
#include "tests/support/no_memory.h"
#include "tests/support/stage.h"
#include "vty/views.h"

// Only there in programs that look for leaks.
extern "C" [[gnu::weak]] void __lsan_disable();
extern "C" [[gnu::weak]] void __lsan_enable();

namespace {

/// While this lives, memory may be lost: the library does so where its header says it.
class LossExpected {
public:
    LossExpected() {
        if (__lsan_disable != nullptr) {
            __lsan_disable();
        }
    }
    ~LossExpected() {
        if (__lsan_enable != nullptr) {
            __lsan_enable();
        }
    }
    LossExpected(const LossExpected &) = delete;
    LossExpected &operator=(const LossExpected &) = delete;
};

constexpr const char *kRipd = "/var/ripd.vty";
constexpr const char *kRipEntry = "enable\nconfigure\nrouter rip vrf <vrf>";

/// A log text with the line numbers, which are not fixed here, taken out.
std::string withoutNumbers(const char *log) {
    return std::regex_replace(std::string(log), std::regex("frr_util:[0-9]+:"), "frr_util:");
}

class Views : public testing::Test {
protected:
    void SetUp() override { gPreCmdEntryList = dlistCreate(free, nullptr); }
    void TearDown() override {
        (void)frrVtyParamFini(&parameters_);
        while (gPreCmdEntryList->head != nullptr) {
            const std::string name = view(gPreCmdEntryList->head)->name;
            ASSERT_EQ(frrVtyViewUnreg(name.c_str()), 0);
        }
        free(gPreCmdEntryList);
        gPreCmdEntryList = nullptr;
    }

    static FrrVtyView *view(const dlist_node *node) {
        return static_cast<FrrVtyView *>(node->data);
    }
    static std::string registered() {
        std::string names;
        for (const dlist_node *node = gPreCmdEntryList->head; node != nullptr; node = node->next) {
            names += std::string(view(node)->name) + "=" + view(node)->entry_text + ";";
        }
        return names;
    }

    void init() { ASSERT_EQ(frrVtyParamInit(&parameters_), 0); }
    void set(const char *key, const char *value) {
        if (parameters_ == nullptr) {
            init();
        }
        ASSERT_EQ(frrVtyParamStrSet(&parameters_, key, value), static_cast<int32_t>(strlen(value)));
    }
    /// Expands an entry text, registered for the moment, into at most maxLength characters.
    int32_t expand(const std::string &entry, int32_t maxLength = 255) {
        EXPECT_EQ(frrVtyViewReg("moment", entry.c_str()), 0);
        memset(out_, 0, sizeof out_);
        const int32_t result = frrVtyFPreCmdParse("moment", &parameters_, maxLength, out_);
        EXPECT_EQ(frrVtyViewUnreg("moment"), 0);
        return result;
    }
    int32_t run(const char *viewName, const char *cmd) {
        return frrVtyAutoRun(viewName, kRipd, cmd, &parameters_, sizeof reply_, reply_);
    }

    stage::Stage stage_;
    dlist *parameters_ = nullptr;
    char out_[300] = {};
    char reply_[512] = {};
};

TEST_F(Views, AreKeptInOrderOfRegistration) {
    EXPECT_EQ(frrVtyViewReg("b", "enable"), 0);
    EXPECT_EQ(frrVtyViewReg("a", kRipEntry), 0);
    EXPECT_EQ(frrVtyViewReg("", ""), 0);
    EXPECT_EQ(registered(), std::string("b=enable;a=") + kRipEntry + ";=;");
    EXPECT_EQ(frrVtyViewUnreg("a"), 0);
    EXPECT_EQ(registered(), "b=enable;=;");
    EXPECT_EQ(frrVtyViewUnreg("a"), 1);
}

TEST_F(Views, KeepTheirOwnCopies) {
    char name[] = "named";
    std::string entry(5000, 'e');
    EXPECT_EQ(frrVtyViewReg(name, entry.c_str()), 0);
    name[0] = 'x';
    entry[0] = 'x';
    EXPECT_EQ(registered(), "named=" + std::string(5000, 'e') + ";");
}

TEST_F(Views, RefuseNullAndTakenNames) {
    EXPECT_EQ(frrVtyViewReg(nullptr, "enable"), 1);
    EXPECT_EQ(frrVtyViewReg("a", nullptr), 1);
    EXPECT_EQ(frrVtyViewReg("a", "first"), 0);
    EXPECT_EQ(frrVtyViewReg("a", "second"), 1);
    EXPECT_EQ(frrVtyViewReg("A", "other"), 0);
    EXPECT_EQ(frrVtyViewReg("ab", "longer"), 0);
    EXPECT_EQ(registered(), "a=first;A=other;ab=longer;");
    EXPECT_EQ(frrVtyViewUnreg(nullptr), 1);
    EXPECT_EQ(frrVtyViewUnreg("abc"), 1);
    EXPECT_EQ(frrVtyViewUnreg(std::string(254, 'a').c_str()), 1);
    EXPECT_EQ(frrVtyViewUnreg(std::string(255, 'a').c_str()), 1);
    EXPECT_EQ(frrVtyViewUnreg(std::string(100000, 'a').c_str()), 1);
}

TEST_F(Views, NamesHoldThirtyOneCharacters) {
    const std::string longest(31, 'n');
    EXPECT_EQ(frrVtyViewReg(longest.c_str(), "enable"), 0);
    EXPECT_EQ(frrVtyViewReg((longest + "n").c_str(), "enable"), 1);
    EXPECT_EQ(frrVtyViewReg(std::string(300, 'n').c_str(), "enable"), 1);
    EXPECT_EQ(registered(), longest + "=enable;");
    EXPECT_EQ(frrVtyFPreCmdParse(longest.c_str(), nullptr, 255, out_), 0);
    EXPECT_STREQ(out_, "enable");
    EXPECT_EQ(frrVtyFPreCmdParse((longest + "n").c_str(), nullptr, 255, out_), 1);
}

TEST_F(Views, AreNotRegisteredWithoutMemory) {
    for (const int failing : {1, 2}) { // the record, the copy of the entry text
        const stage::NoMemory none(failing);
        EXPECT_EQ(frrVtyViewReg("a", "enable"), 4);
    }
    EXPECT_EQ(registered(), "");
}

TEST_F(Views, TheResultOfAppendingIsNotLookedAt) {
    {
        const LossExpected lost;
        const stage::NoMemory none(3);
        EXPECT_EQ(frrVtyViewReg("a", "enable"), 0);
    }
    EXPECT_STREQ(stage_.output(), "dlistInsertAfter:275 nn != NULL failed.\r\n");
    EXPECT_EQ(registered(), "");
}

TEST_F(Views, WithoutARegistryOnlyTheListComplains) {
    dlist *const kept = gPreCmdEntryList;
    gPreCmdEntryList = nullptr;
    const std::string find =
        "dlistFindByKey:135 thiz != NULL && cmp != NULL && key != NULL failed.\r\n";
    {
        const LossExpected lost;
        EXPECT_EQ(frrVtyViewReg("a", "enable"), 0);
    }
    EXPECT_EQ(stage_.output(), find + "dlistAppend:349 thiz != NULL failed.\r\n");
    EXPECT_EQ(frrVtyViewUnreg("a"), 1);
    EXPECT_EQ(stage_.output(), find);
    EXPECT_EQ(run("a", "show"), 1);
    EXPECT_EQ(stage_.output(), find);
    gPreCmdEntryList = kept;
}

TEST_F(Views, ParameterListsBeginAndEnd) {
    EXPECT_EQ(frrVtyParamInit(nullptr), 1);
    EXPECT_EQ(frrVtyParamFini(nullptr), 1);
    EXPECT_EQ(frrVtyParamFini(&parameters_), 0);
    EXPECT_EQ(frrVtyParamInit(&parameters_), 0);
    ASSERT_NE(parameters_, nullptr);
    EXPECT_EQ(parameters_->count, 0U);
    EXPECT_EQ(parameters_->data_destroy, free);
    EXPECT_EQ(parameters_->data_cmp, nullptr);
    EXPECT_EQ(frrVtyParamFini(&parameters_), 0);
    EXPECT_EQ(parameters_, nullptr);
    const stage::NoMemory none(1);
    parameters_ = gPreCmdEntryList;
    EXPECT_EQ(frrVtyParamInit(&parameters_), 4);
    EXPECT_EQ(parameters_, nullptr);
}

TEST_F(Views, TextParameters) {
    EXPECT_EQ(frrVtyParamStrSet(nullptr, "key", "value"), -1);
    EXPECT_EQ(frrVtyParamStrSet(&parameters_, "key", "value"), -1); // no list yet
    init();
    EXPECT_EQ(frrVtyParamStrSet(&parameters_, nullptr, "value"), -1);
    EXPECT_EQ(frrVtyParamStrSet(&parameters_, "key", nullptr), -1);
    EXPECT_EQ(frrVtyParamStrSet(&parameters_, "key", std::string(32, 'v').c_str()), -1);
    EXPECT_EQ(frrVtyParamStrSet(&parameters_, std::string(32, 'k').c_str(), "value"), -1);
    EXPECT_EQ(parameters_->count, 0U);

    EXPECT_EQ(frrVtyParamStrSet(&parameters_, "key", std::string(31, 'v').c_str()), 31);
    EXPECT_EQ(frrVtyParamStrSet(&parameters_, std::string(31, 'k').c_str(), "value"), 5);
    EXPECT_EQ(frrVtyParamStrSet(&parameters_, "empty", ""), 0);
    EXPECT_EQ(frrVtyParamStrSet(&parameters_, "key", "other"), -1);
    ASSERT_EQ(parameters_->count, 3U);
    const auto *first = static_cast<FrrVtyParam *>(parameters_->head->data);
    EXPECT_STREQ(first->key, "key");
    EXPECT_EQ(first->value, std::string(31, 'v'));
    for (std::size_t i = strlen("key"); i < sizeof first->key; ++i) {
        EXPECT_EQ(first->key[i], '\0');
    }
}

TEST_F(Views, NumberParameters) {
    EXPECT_EQ(frrVtyParamIntSet(nullptr, "key", 1), -1);
    EXPECT_EQ(frrVtyParamIntSet(&parameters_, "key", 1), -1);
    init();
    EXPECT_EQ(frrVtyParamIntSet(&parameters_, nullptr, 1), -1);
    EXPECT_EQ(frrVtyParamIntSet(&parameters_, std::string(32, 'k').c_str(), 1), -1);
    EXPECT_EQ(frrVtyParamIntSet(&parameters_, "a", 0), 1);
    EXPECT_EQ(frrVtyParamIntSet(&parameters_, "b", INT32_MIN), 11);
    EXPECT_EQ(frrVtyParamIntSet(&parameters_, "c", INT32_MAX), 10);
    EXPECT_EQ(frrVtyParamIntSet(&parameters_, std::string(31, 'k').c_str(), -5), 2);
    EXPECT_EQ(frrVtyParamIntSet(&parameters_, "a", 1), -1);
    EXPECT_EQ(frrVtyParamStrSet(&parameters_, "a", "1"), -1);
    ASSERT_EQ(parameters_->count, 4U);
    EXPECT_STREQ(static_cast<FrrVtyParam *>(parameters_->head->next->data)->value, "-2147483648");
}

TEST_F(Views, ParametersNeedMemory) {
    init();
    for (const int failing : {1, 2}) { // the record, its node
        {
            const LossExpected lost;
            const stage::NoMemory none(failing);
            EXPECT_EQ(frrVtyParamStrSet(&parameters_, "key", "value"), -1);
        }
        const stage::NoMemory none(failing);
        EXPECT_EQ(frrVtyParamIntSet(&parameters_, "key", 5), -1);
    }
    EXPECT_EQ(parameters_->count, 0U);
}

TEST_F(Views, AParameterServesOnce) {
    set("vrf", "default");
    EXPECT_EQ(frrVtyParamIntSet(&parameters_, "keyid", -17), 3);
    strcpy(out_, "xxxxxxxxxx");
    EXPECT_EQ(frrVtyParamGet(&parameters_, "vrf", out_), 7);
    EXPECT_STREQ(out_, "defaultxxx"); // no NUL is written, and the log shows what stands in out
    EXPECT_EQ(withoutNumbers(stage_.log()), "frr_util: argkey vrf, argval defaultxxx\n");
    EXPECT_EQ(parameters_->count, 1U);
    EXPECT_EQ(frrVtyParamGet(&parameters_, "vrf", out_), -1);
    EXPECT_EQ(frrVtyParamGet(&parameters_, "keyi", out_), -1);
    EXPECT_EQ(frrVtyParamGet(&parameters_, "keyid", out_), 3);
    EXPECT_STREQ(out_, "-17aultxxx");
    EXPECT_EQ(frrVtyParamGet(nullptr, "vrf", out_), -1);
    EXPECT_EQ(frrVtyParamGet(&parameters_, nullptr, out_), -1);
    set("vrf", "again");
    EXPECT_EQ(frrVtyParamGet(&parameters_, "vrf", nullptr), -1);
    EXPECT_EQ(frrVtyParamFini(&parameters_), 0);
    EXPECT_EQ(frrVtyParamGet(&parameters_, "vrf", out_), -1);
}

TEST_F(Views, ExpansionFillsPlaceholders) {
    set("vrf", "default");
    EXPECT_EQ(expand(kRipEntry), 0);
    EXPECT_STREQ(out_, "enable\nconfigure\nrouter rip vrf default");
    EXPECT_EQ(parameters_->count, 0U);
    EXPECT_EQ(withoutNumbers(stage_.log()), std::string("frr_util: frrVtyAutoRun moment, ") +
                                                kRipEntry +
                                                "\nfrr_util: argkey vrf, argval default\n");
    set("a", "1");
    set("b", "2");
    EXPECT_EQ(expand("<b><a>.\n\n<"), 0);
    EXPECT_STREQ(out_, "21.\n\n");
    EXPECT_EQ(expand(""), 0);
    EXPECT_STREQ(out_, "");
}

TEST_F(Views, ExpansionRefuses) {
    EXPECT_EQ(frrVtyFPreCmdParse(nullptr, &parameters_, 255, out_), 1);
    EXPECT_EQ(frrVtyFPreCmdParse("unknown", &parameters_, 255, nullptr), 1);
    EXPECT_STREQ(stage_.log(), "");
    EXPECT_EQ(frrVtyFPreCmdParse("unknown", &parameters_, 255, out_), 1);
    EXPECT_EQ(withoutNumbers(stage_.log()), "frr_util: frrVtyAutoRun unknown, \n");
    for (const char *entry : {"a>b", ">", "<a<b>>", "<vrf<", "x<>y", "<missing>", "<vrf>>"}) {
        set("vrf", "default");
        EXPECT_EQ(expand(entry), 1) << entry;
        EXPECT_EQ(frrVtyParamFini(&parameters_), 0);
    }
    EXPECT_EQ(expand("<vrf>"), 1); // no list
    EXPECT_EQ(frrVtyViewReg("plain", "enable"), 0);
    EXPECT_EQ(frrVtyViewReg("filled", "<vrf>"), 0);
    EXPECT_EQ(frrVtyFPreCmdParse("plain", nullptr, 255, out_), 0);
    EXPECT_EQ(frrVtyFPreCmdParse("filled", nullptr, 255, out_), 1);
}

TEST_F(Views, AnEmptyValueOrASecondUseFails) {
    set("vrf", "");
    EXPECT_EQ(expand("a<vrf>"), 1);
    EXPECT_EQ(frrVtyParamFini(&parameters_), 0);
    set("vrf", "default");
    EXPECT_EQ(expand("a<vrf>b<vrf>"), 1);
}

TEST_F(Views, PlaceholderNamesHoldThirtyOneCharacters) {
    const std::string longest(31, 'p');
    set(longest.c_str(), "found");
    EXPECT_EQ(expand("<" + longest + "p>"), 1);
    EXPECT_EQ(expand("<" + std::string(200, 'p') + ">"), 1);
    EXPECT_EQ(expand("<" + std::string(200, 'p')), 1);
    EXPECT_EQ(parameters_->count, 1U);
    EXPECT_EQ(expand("<" + longest + ">"), 0);
    EXPECT_STREQ(out_, "found");
    EXPECT_EQ(expand("open <" + longest), 0); // a name that the text ends in is left out
    EXPECT_STREQ(out_, "open ");
}

TEST_F(Views, LongTextsAreCut) {
    EXPECT_EQ(expand(std::string(254, 'e') + "fg"), 0);
    EXPECT_EQ(out_, std::string(254, 'e'));
    EXPECT_EQ(expand(std::string(250, 'e') + "<vrf>"), 0); // cut to an open placeholder
    EXPECT_EQ(out_, std::string(250, 'e'));

    set("vrf", "0123456789");
    EXPECT_EQ(expand(std::string(248, 'e') + "<vrf>"), 0);
    EXPECT_EQ(out_, std::string(248, 'e') + "0123456");
    EXPECT_EQ(parameters_->count, 0U);

    for (int32_t length = -1; length <= 12; ++length) {
        set("vrf", "0123456789");
        EXPECT_EQ(expand("ab<vrf>cd>", length), 0);
        EXPECT_EQ(out_, std::string("ab0123456789")
                            .substr(0, static_cast<std::size_t>(length < 0 ? 0 : length)));
        EXPECT_EQ(parameters_->count, length > 2 ? 0U : 1U);
        EXPECT_EQ(frrVtyParamFini(&parameters_), 0);
    }
}

TEST_F(Views, RunSendsTheContextAndTheCommand) {
    EXPECT_EQ(frrVtyViewReg("view_rip", kRipEntry), 0);
    set("vrf", "default");
    EXPECT_EQ(run("view_rip", "network 10.0.0.0/8"), 0);
    EXPECT_EQ(parameters_, nullptr);
    EXPECT_STREQ(stage_.trace(),
                 "ripd: enable | configure | router rip vrf default | network 10.0.0.0/8\n");
    EXPECT_EQ(withoutNumbers(stage_.log()),
              std::string("frr_util: frrVtyAutoRun : view: view_rip, cmd: network 10.0.0.0/8 param "
                          "count 1\nfrr_util: frrVtyAutoRun view_rip, ") +
                  kRipEntry +
                  "\nfrr_util: argkey vrf, argval default\n"
                  "frr_util: frrVtyAutoRun precmd enable\nconfigure\nrouter rip vrf default\n"
                  "frr_util: frrVtyRun: enable\nfrr_util: frrVtyRun: configure\n"
                  "frr_util: frrVtyRun: router rip vrf default\n"
                  "frr_util: frrVtyRun: network 10.0.0.0/8\n");
}

TEST_F(Views, RunWithoutParameters) {
    EXPECT_EQ(frrVtyViewReg("odd", "\n\nenable\n\nconfigure\n"), 0);
    EXPECT_EQ(run("odd", "hostname r1"), 0);
    EXPECT_EQ(frrVtyAutoRun("odd", kRipd, "", nullptr, sizeof reply_, reply_), 0);
    EXPECT_STREQ(stage_.trace(), "ripd: enable | configure | hostname r1\n"
                                 "ripd: enable | configure | \"\"\n");
    EXPECT_EQ(withoutNumbers(stage_.log()).substr(0, 64),
              "frr_util: frrVtyAutoRun : view: odd, cmd: hostname r1\nfrr_util: ");
}

TEST_F(Views, RunCutsTheContextAtTwoHundredFiftyFive) {
    const std::string begin(240, 'e');
    EXPECT_EQ(frrVtyViewReg("long", (begin + "<vrf>").c_str()), 0);
    set("vrf", "0123456789abcdefghij");
    EXPECT_EQ(run("long", "cmd"), 0);
    EXPECT_EQ(stage_.trace(), "ripd: " + begin + "0123456789abcde | cmd\n");
}

TEST_F(Views, RunRefusesNullAndFinishesTheList) {
    EXPECT_EQ(frrVtyViewReg("v", "enable"), 0);
    const auto refused = [this](const char *view, const char *path, const char *cmd, char *reply) {
        set("vrf", "default");
        EXPECT_EQ(frrVtyAutoRun(view, path, cmd, &parameters_, 512, reply), 1);
        EXPECT_EQ(parameters_, nullptr);
    };
    refused(nullptr, kRipd, "cmd", reply_);
    refused("v", nullptr, "cmd", reply_);
    refused("v", kRipd, nullptr, reply_);
    refused("v", kRipd, "cmd", nullptr);
    stage_.absent("ospfd");
    refused("v", "/var/ospfd.vty", "cmd", reply_);
    EXPECT_EQ(frrVtyAutoRun(nullptr, kRipd, "cmd", nullptr, 512, reply_), 1);
    EXPECT_STREQ(stage_.trace(), "");
    EXPECT_STREQ(stage_.log(), "");
}

TEST_F(Views, RunOfAnUnknownViewConnectsAndStaysOpen) {
    set("vrf", "default");
    EXPECT_EQ(run(std::string(32, 'v').c_str(), "cmd"), 1);
    EXPECT_EQ(parameters_, nullptr);
    EXPECT_STREQ(stage_.trace(), "ripd: | (left open)\n");
}

TEST_F(Views, RunWithAMissingParameterSendsNothing) {
    EXPECT_EQ(frrVtyViewReg("view_rip", kRipEntry), 0);
    const int before = stage::Stage::openDescriptors();
    EXPECT_EQ(run("view_rip", "cmd"), 1);
    EXPECT_EQ(stage::Stage::openDescriptors(), before + 1);
    EXPECT_STREQ(stage_.trace(), "ripd: | (left open)\n");
    EXPECT_EQ(withoutNumbers(stage_.log()),
              std::string("frr_util: frrVtyAutoRun : view: view_rip, cmd: cmd\n"
                          "frr_util: frrVtyAutoRun view_rip, ") +
                  kRipEntry +
                  "\nfrr_util: frrVtyAutoRun precmd enable\nconfigure\n"
                  "router rip vrf \n");
}

TEST_F(Views, RunStopsAtTheFirstFailureAndStaysOpen) {
    EXPECT_EQ(frrVtyViewReg("view_rip", kRipEntry), 0);
    const std::pair<uint8_t, int32_t> codes[] = {
        {1,   1  },
        {2,   -1 },
        {3,   -1 },
        {7,   7  },
        {255, 255}
    };
    for (const auto &[code, result] : codes) {
        stage_.answer("ripd", "configure", {.code = code});
        set("vrf", "default");
        const int before = stage::Stage::openDescriptors();
        EXPECT_EQ(run("view_rip", "network 10.0.0.0/8"), result);
        EXPECT_EQ(parameters_, nullptr);
        EXPECT_EQ(stage::Stage::openDescriptors(), before + 1);
        EXPECT_STREQ(stage_.trace(), "ripd: enable | configure | (left open)\n");
    }
}

TEST_F(Views, RunOfARefusedCommandStaysOpen) {
    EXPECT_EQ(frrVtyViewReg("v", "enable\nconfigure"), 0);
    stage_.answer("ripd", "bad", {.code = 2, .text = "% unknown\n"});
    EXPECT_EQ(run("v", "bad"), -1);
    EXPECT_STREQ(stage_.trace(), "ripd: enable | configure | bad | (left open)\n");
    stage_.answer("ripd", "bad", {.closeEarly = true});
    EXPECT_EQ(run("v", "bad"), -1);
    stage_.answer("ripd", "bad", {.code = 1, .text = "% warning\n"});
    memset(reply_, 0, sizeof reply_);
    EXPECT_EQ(run("v", "bad"), 1);
    EXPECT_STREQ(stage_.output(), "% warning\n");
}

TEST_F(Views, RunNeedsAReplyBufferOfFourBytes) {
    EXPECT_EQ(frrVtyViewReg("v", "enable"), 0);
    EXPECT_EQ(frrVtyAutoRun("v", kRipd, "cmd", nullptr, 3, reply_), 1);
    EXPECT_STREQ(stage_.trace(), "ripd: | (left open)\n");
    EXPECT_EQ(frrVtyAutoRun("v", kRipd, "cmd", nullptr, 4, reply_), 0);
    EXPECT_STREQ(stage_.trace(), "ripd: enable | cmd\n");
}

} // namespace
