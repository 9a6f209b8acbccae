// SPDX-License-Identifier: Apache-2.0
// The host program from outside: exit statuses, what it prints where, and that it never hangs.

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host/json.h"

namespace {

struct Outcome {
    int status;
    std::string output;
    std::string errors;
};

std::string readFile(const char *path) {
    std::string text;
    FILE *file = fopen(path, "r");
    for (int byte = 0; file != nullptr && (byte = fgetc(file)) != EOF;) {
        text.push_back(static_cast<char>(byte));
    }
    if (file != nullptr) {
        fclose(file);
    }
    return text;
}

Outcome frruci(const std::string &words, const std::string &environment = "") {
    const std::string command =
        environment + " '" HOST_PROGRAM "' " + words + " >/tmp/out 2>/tmp/err";
    const int status = system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile("/tmp/out"),
            readFile("/tmp/err")};
}

bool has(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

class Host : public testing::Test {
protected:
    void SetUp() override { setenv("FRRUCI_LIBRARY", FAKE_LIBRARY, 1); }
};

TEST_F(Host, PrintsTheAnswerAndTellsItByItsStatus) {
    const Outcome ok = frruci("call process_ospf_interface ok");
    EXPECT_EQ(ok.status, 0);
    EXPECT_EQ(ok.output, "ok\n");
    const Outcome fail = frruci("call process_ospf_interface fail");
    EXPECT_EQ(fail.status, 1);
    EXPECT_EQ(fail.output, "fail\n");
}

TEST_F(Host, HandsOverExactlyTheWordsGiven) {
    const Outcome outcome = frruci("call process_ospf_interface ok '' 'two words' --timeout -x");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(has(outcome.errors, "the library says 5 words"));
    EXPECT_TRUE(has(outcome.errors, "word 1 is <>\nword 2 is <two words>\nword 3 is <--timeout>\n"
                                    "word 4 is <-x>\n"));
    EXPECT_TRUE(has(frruci("call process_ospf_interface").errors, "the library says 0 words"));
}

TEST_F(Host, AHandlerWithoutAnswerIsANormalCase) {
    const Outcome outcome = frruci("call process_ospf_interface none");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.output, "");
    EXPECT_TRUE(has(outcome.errors, "process_ospf_interface wrote no answer"));
}

TEST_F(Host, AHandlerThatHangsIsGivenUp) {
    for (const char *words : {"--timeout 1 call process_ospf_interface hang",
                              "call --timeout 1 process_ospf_interface hang"}) {
        const Outcome outcome = frruci(words);
        EXPECT_EQ(outcome.status, 3);
        EXPECT_TRUE(has(outcome.errors, "did not return in time"));
    }
}

TEST_F(Host, AHandlerThatCrashesLeavesNobodyWaiting) {
    const Outcome outcome = frruci("call process_ospf_interface crash");
    EXPECT_NE(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
}

TEST_F(Host, MakesTheReplyPipeAndUsesAnExistingOne) {
    unlink("/tmp/tmp/ospf_pipe_c2lua");
    EXPECT_EQ(frruci("call process_ospf_interface ok").status, 0);
    struct stat made = {};
    ASSERT_EQ(stat("/tmp/tmp/ospf_pipe_c2lua", &made), 0);
    EXPECT_TRUE(S_ISFIFO(made.st_mode));
    EXPECT_EQ(frruci("call process_ospf_interface ok").status, 0);
    struct stat again = {};
    ASSERT_EQ(stat("/tmp/tmp/ospf_pipe_c2lua", &again), 0);
    EXPECT_EQ(again.st_ino, made.st_ino);
}

TEST_F(Host, WrongUsageSaysWhatIsKnown) {
    const Outcome unknown = frruci("call process_ospf_nothing");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_TRUE(has(unknown.errors, "unknown handler process_ospf_nothing"));
    EXPECT_TRUE(has(unknown.errors, "process_rip_network"));
    for (const char *words :
         {"", "call", "nonsense", "--timeout", "--timeout x call process_ospf_lsdb",
          "--timeout 0 call process_ospf_lsdb", "recover", "recover nhrp", "show", "show ospf",
          "run /tmp/no-such-file"}) {
        const Outcome outcome = frruci(words);
        EXPECT_EQ(outcome.status, 2) << words;
        EXPECT_EQ(outcome.output, "") << words;
        EXPECT_NE(outcome.errors, "") << words;
    }
}

TEST_F(Host, ALibraryThatCannotBeUsedIsNamed) {
    EXPECT_EQ(frruci("call process_ospf_interface ok", "FRRUCI_LIBRARY=/tmp/none.so").status, 4);
    const Outcome missing = frruci("call process_ospf_lsdb");
    EXPECT_EQ(missing.status, 4);
    EXPECT_TRUE(has(missing.errors, "the library has no process_ospf_lsdb"));
}

TEST_F(Host, HelpVersionAndHandlersAnswerWithoutALibrary) {
    const std::string none = "FRRUCI_LIBRARY=/tmp/none.so";
    EXPECT_TRUE(has(frruci("--help", none).output, "usage: frruci"));
    EXPECT_EQ(frruci("--version", none).output, "frruci " FRRUCI_VERSION "\n");
    const Outcome handlers = frruci("handlers", none);
    EXPECT_EQ(handlers.status, 0);
    for (const char *name :
         {"process_ospf_global", "process_ospf_network", "process_ospf_interface",
          "process_ospf_advertise_cfg", "process_ospf_ospf_cfg", "process_ospf_neighbor",
          "process_ospf_lsdb", "process_rip_global", "process_rip_config", "process_rip_interface",
          "process_rip_network", "process_nhrp_interface", "process_nhrp_global",
          "process_nhrp_show"}) {
        EXPECT_TRUE(has(handlers.output, std::string("  ") + name + " ")) << name;
    }
}

TEST_F(Host, DisplayRowsComeWithoutTheirEndMark) {
    const Outcome outcome = frruci("call process_ospf_neighbor");
    EXPECT_EQ(outcome.status, 0);
    std::size_t rows = 0;
    for (const char byte : outcome.output) {
        rows += byte == '\n' ? 1 : 0;
    }
    EXPECT_EQ(rows, 5000U);
    EXPECT_EQ(outcome.output.substr(0, 14), "10.0.0.0 row\r\n");
    EXPECT_EQ(outcome.output.substr(outcome.output.size() - 17), "10.0.19.249 row\r\n");
}

TEST_F(Host, TheCacheIsPrintedOnlyWhenItIsWhole) {
    const Outcome whole = frruci("show nhrp-cache", "FAKE_CACHE='{\"a\":[1,2]}'");
    EXPECT_EQ(whole.status, 0);
    EXPECT_EQ(whole.output, "{\"a\":[1,2]}\n");
    const Outcome cut = frruci("show nhrp-cache", "FAKE_CACHE='{\"a\":[1,2'");
    EXPECT_EQ(cut.status, 1);
    EXPECT_EQ(cut.output, "");
    EXPECT_TRUE(has(cut.errors, "not complete JSON (9 bytes)"));
    EXPECT_EQ(frruci("show nhrp-cache").status, 3);
    EXPECT_EQ(frruci("call process_nhrp_show x ip nhrp cache", "FAKE_CACHE=text").output, "text\n");
}

TEST_F(Host, StartRecoverAndReport) {
    EXPECT_EQ(frruci("start").output, "folders made\nospf recovered\nrip recovered\n");
    EXPECT_EQ(frruci("recover ospf").output, "ospf recovered\n");
    EXPECT_EQ(frruci("recover rip").output, "rip recovered\n");
    EXPECT_EQ(frruci("report").output, "report after 0 calls\n");
    EXPECT_EQ(frruci("show rip").output, "status\n");
    EXPECT_EQ(frruci("show rip", "FAKE_NO_ROUTES=1").status, 1);
}

TEST_F(Host, RunKeepsOneModelForAllItsLines) {
    FILE *script = fopen("/tmp/script", "w");
    ASSERT_NE(script, nullptr);
    fputs("# comment\n\ncall process_ospf_interface ok\ncall process_ospf_interface ok\nreport\n",
          script);
    fclose(script);
    const Outcome outcome = frruci("run /tmp/script");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "ok\nok\nreport after 2 calls\n");
    EXPECT_EQ(frruci("run < /tmp/script").output, outcome.output);
}

TEST_F(Host, RunGoesOnAfterAFailureAndTellsTheWorst) {
    FILE *script = fopen("/tmp/script", "w");
    ASSERT_NE(script, nullptr);
    fputs("call process_ospf_interface fail\ncall process_ospf_interface ok", script);
    fclose(script);
    const Outcome outcome = frruci("run /tmp/script");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "fail\nok\n");
}

TEST(Json, WholeTexts) {
    for (const char *text : {"{}", "[]", " {\"a\": [1, -2.5e+3, \"x\\\"y\", true, false, null]} \n",
                             "\"\"", "0", "[[[]]]"}) {
        EXPECT_TRUE(frruci::host::isCompleteJson(text)) << text;
    }
}

TEST(Json, EveryCutOfAWholeTextIsRefused) {
    const std::string whole = "{\"a\":[1,-2.5e3,\"x\\\"y\",true,false,null],\"b\":{}}";
    ASSERT_TRUE(frruci::host::isCompleteJson(whole.c_str()));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(frruci::host::isCompleteJson(whole.substr(0, length).c_str())) << length;
    }
}

TEST(Json, OddTextsAreRefused) {
    const std::string deep = std::string(100, '[') + std::string(100, ']');
    for (const char *text : {"", " ", "{\"a\"}", "{a:1}", "[1,]", "{} {}", "\"\n\"", "nul", "-",
                             "1.", "1e", "\"\\", deep.c_str()}) {
        EXPECT_FALSE(frruci::host::isCompleteJson(text)) << text;
    }
}

} // namespace
